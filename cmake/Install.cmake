# SPDX-License-Identifier: GPL-3.0-or-later
# The program stands beside its profiles, with a link to it on the user's path. Each component is a
# package, see Packages.cmake.
include(CMakePackageConfigHelpers)

# Debug information stays in the build folder; a debug build is installed as it is.
install(CODE [[
    if(NOT CMAKE_INSTALL_CONFIG_NAME STREQUAL "Debug")
        set(CMAKE_INSTALL_DO_STRIP ON)
    endif()]])

set(program_folder ${CMAKE_INSTALL_LIBEXECDIR}/function-editor)
if(WIN32)
    set(program_folder ${CMAKE_INSTALL_BINDIR})
endif()
install(TARGETS function-editor RUNTIME DESTINATION ${program_folder} COMPONENT program)
install(DIRECTORY resources/Data DESTINATION ${program_folder} COMPONENT program)
if(NOT WIN32)
    file(RELATIVE_PATH link_target /${CMAKE_INSTALL_BINDIR} /${program_folder}/function-editor)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/link)
    file(CREATE_LINK ${link_target} ${PROJECT_BINARY_DIR}/link/function-editor SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/link/function-editor DESTINATION ${CMAKE_INSTALL_BINDIR}
        COMPONENT program)
endif()

# The module: library, headers, CMake package and pkg-config files. functioneditor-cxx is there for
# C++ hosts, since pkg-config asks for the toolkit even where only C is wanted.
install(TARGETS functioneditor EXPORT functioneditorTargets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(FILES include/functioneditor.h include/InputAPI.h ${module_headers}/functioneditor_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/function-editor COMPONENT development)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/functioneditor)
install(EXPORT functioneditorTargets NAMESPACE functioneditor:: DESTINATION ${package_folder}
    COMPONENT development)
set(program ${CMAKE_INSTALL_BINDIR}/function-editor${CMAKE_EXECUTABLE_SUFFIX})
configure_package_config_file(cmake/functioneditorConfig.cmake.in functioneditorConfig.cmake
    INSTALL_DESTINATION ${package_folder} PATH_VARS program program_folder)
# Hosts built for a version work with all later ones of the same major version.
write_basic_package_version_file(functioneditorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/functioneditorConfig.cmake
    ${PROJECT_BINARY_DIR}/functioneditorConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT development)
file(RELATIVE_PATH prefix_from_package /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_package ${prefix_from_package})
foreach(name functioneditor functioneditor-cxx)
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

set(EDITOR_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING
    "Where the Python package goes, relative to the prefix")
install(DIRECTORY python/functioneditor DESTINATION ${EDITOR_PYTHON_FOLDER} COMPONENT python
    PATTERN __pycache__ EXCLUDE)

# Desktop.
install(FILES resources/function-editor.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT program)
install(FILES resources/icons/function-editor.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT program)
string(TIMESTAMP release_date "%Y-%m-%d" UTC)
set(metainfo org.example.function_editor.metainfo.xml)
configure_file(resources/function-editor.metainfo.xml.in ${metainfo} @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${metainfo}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT program)

# Documents. Debian's packages name the licence in a file of their own.
install(FILES docs/function-editor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT licence)
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program OPTIONAL)
install(FILES docs/EMBEDDING.md docs/PACKAGES.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY examples/host DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
    USE_SOURCE_PERMISSIONS COMPONENT development)
