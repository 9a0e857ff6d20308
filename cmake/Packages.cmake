# SPDX-License-Identifier: GPL-3.0-or-later
# Debian packages of the installed components, made by CPack; tools/package makes and tries them.
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL program library development python)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_VENDOR "The function editor's maintainers")
set(CPACK_PACKAGE_CONTACT "Function editor maintainers <maintainers@example.org>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE function-editor)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

# editor_package(COMPONENT NAME SECTION SUMMARY LINE...)
function(editor_package component name section summary)
    string(TOUPPER ${component} component)
    list(JOIN ARGN "\n" description)
    set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
endfunction()

editor_package(program function-editor science
    "edits functions of time that a simulation takes as an input"
    "A simulation host starts the program with the path of an exchange file. The"
    "user edits the points in a grid beside a chart, and OK writes them back."
    "Annual, monthly, weekly and daily consumption profiles come with it.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
# French texts of the toolkit's own dialogs.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS qt6-translations-l10n)

editor_package(library libfunctioneditor${PROJECT_VERSION_MAJOR} libs
    "dialog that edits functions of time, for other programs"
    "Shows the function editor's dialog inside another program, for functions of"
    "time and for annual, monthly, weekly and daily consumption profiles. It has an"
    "entry for C and one for C++ with Qt 6.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS qt6-translations-l10n)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS function-editor)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

editor_package(development libfunctioneditor-dev libdevel
    "dialog that edits functions of time, development files"
    "Headers, CMake package, pkg-config files and example hosts in C, C++, Python"
    "and shell for programs that show the function editor's dialog."
    ""
    "Hosts in C++ need qt6-base-dev as well, hosts in C do not.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libfunctioneditor${PROJECT_VERSION_MAJOR} (= ${version}), function-editor (= ${version})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS
    "cmake, pkg-config, python3-functioneditor, qt6-base-dev (>= 6.4)")

editor_package(python python3-functioneditor python
    "dialog that edits functions of time, for Python"
    "Python package that shows the function editor's dialog on the points of a"
    "function or on a consumption profile and returns what the user made of it.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "python3:any (>= 3.8), libfunctioneditor${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS function-editor)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/cmake/debian/postinst ${PROJECT_SOURCE_DIR}/cmake/debian/prerm)

# What Debian wants in each package beside its files.
string(TIMESTAMP release_time "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian/changelog.in debian-changelog @ONLY)
configure_file(cmake/debian/FinishPackages.cmake.in FinishPackages.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/FinishPackages.cmake)

include(CPack)
