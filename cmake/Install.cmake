# SPDX-License-Identifier: GPL-3.0-or-later
# The program stands beside its profiles, with a link to it on the user's path.
include(CMakePackageConfigHelpers)

# Debug information stays in the build folder; a debug build is installed as it is.
install(CODE [[
    if(NOT CMAKE_INSTALL_CONFIG_NAME STREQUAL "Debug")
        set(CMAKE_INSTALL_DO_STRIP ON)
    endif()]])

set(program_folder ${CMAKE_INSTALL_LIBEXECDIR}/function-editor)
install(TARGETS function-editor RUNTIME DESTINATION ${program_folder})
install(DIRECTORY resources/Data DESTINATION ${program_folder})
file(RELATIVE_PATH link_target /${CMAKE_INSTALL_BINDIR} /${program_folder}/function-editor)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/link)
file(CREATE_LINK ${link_target} ${PROJECT_BINARY_DIR}/link/function-editor SYMBOLIC)
install(FILES ${PROJECT_BINARY_DIR}/link/function-editor DESTINATION ${CMAKE_INSTALL_BINDIR})

# The module: library, headers, CMake package and pkg-config file.
install(TARGETS functioneditor EXPORT functioneditorTargets)
install(FILES include/functioneditor.h include/InputAPI.h ${module_headers}/functioneditor_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/function-editor)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/functioneditor)
install(EXPORT functioneditorTargets NAMESPACE functioneditor:: DESTINATION ${package_folder})
configure_package_config_file(cmake/functioneditorConfig.cmake.in functioneditorConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(functioneditorConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/functioneditorConfig.cmake
    ${PROJECT_BINARY_DIR}/functioneditorConfigVersion.cmake
    DESTINATION ${package_folder})
file(RELATIVE_PATH prefix_from_package /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_package ${prefix_from_package})
configure_file(cmake/functioneditor.pc.in functioneditor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/functioneditor.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(EDITOR_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING
    "Where the Python package goes, relative to the prefix")
install(DIRECTORY python/functioneditor DESTINATION ${EDITOR_PYTHON_FOLDER}
    PATTERN __pycache__ EXCLUDE)

# Desktop and documents.
install(FILES resources/function-editor.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES resources/icons/function-editor.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES docs/function-editor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES LICENSE docs/EMBEDDING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
install(DIRECTORY examples/host DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples USE_SOURCE_PERMISSIONS)
