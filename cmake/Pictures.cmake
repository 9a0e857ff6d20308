# SPDX-License-Identifier: GPL-3.0-or-later
# The buttons' pictures and the window's icon: drawn as SVG, turned into shapes by the build, kept as
# resources of the program.
if(CMAKE_CROSSCOMPILING)
    include(ExternalProject)
    set(compile_pictures ${PROJECT_BINARY_DIR}/native/CompilePictures)
    ExternalProject_Add(picture_tool
        SOURCE_DIR ${PROJECT_SOURCE_DIR}/cmake/pictures
        BINARY_DIR ${PROJECT_BINARY_DIR}/native
        CMAKE_ARGS -DCMAKE_BUILD_TYPE=Release
        BUILD_ALWAYS ON
        BUILD_BYPRODUCTS ${compile_pictures}
        INSTALL_COMMAND "")
    set(picture_tool picture_tool ${compile_pictures})
else()
    add_subdirectory(${PROJECT_SOURCE_DIR}/cmake/pictures ${PROJECT_BINARY_DIR}/native)
    set(compile_pictures CompilePictures)
    set(picture_tool CompilePictures)
endif()

file(GLOB drawings CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/icons/*.svg)
set(picture_folder ${PROJECT_BINARY_DIR}/pictures)
file(MAKE_DIRECTORY ${picture_folder})
set(pictures)
foreach(drawing ${drawings})
    cmake_path(GET drawing STEM name)
    list(APPEND pictures ${picture_folder}/${name}.picture)
endforeach()
add_custom_command(OUTPUT ${pictures} ${picture_folder}/function-editor.ico
    COMMAND ${compile_pictures} ${picture_folder} ${drawings}
    DEPENDS ${picture_tool} ${drawings}
    COMMENT "Turning drawings into pictures"
    VERBATIM)
qt_add_resources(editor_dialog function_editor_pictures PREFIX /function-editor
    BASE ${picture_folder} FILES ${pictures} OPTIONS -no-compress)
