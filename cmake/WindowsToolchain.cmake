# SPDX-License-Identifier: GPL-3.0-or-later
# Builds for Windows (x86_64) with Debian's compiler g++-mingw-w64-x86-64-posix. The environment
# variable WINDOWS_TOOLKIT names the folder of Qt and QCustomPlot for Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_PREFIX_PATH $ENV{WINDOWS_TOOLKIT})
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 $ENV{WINDOWS_TOOLKIT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
# Qt's own tools run where the build runs.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake)
# Tests run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
