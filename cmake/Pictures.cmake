# SPDX-License-Identifier: GPL-3.0-or-later
# The buttons' pictures and the window's icon: drawn as SVG, turned into shapes by the build, kept as
# resources of the program.
add_executable(CompilePictures ${PROJECT_SOURCE_DIR}/dialog/CompilePictures.cpp)
target_include_directories(CompilePictures PRIVATE ${PROJECT_BINARY_DIR}/rooms/dialog)
target_link_libraries(CompilePictures PRIVATE Qt6::Svg)

file(GLOB drawings CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/icons/*.svg)
set(picture_folder ${PROJECT_BINARY_DIR}/pictures)
file(MAKE_DIRECTORY ${picture_folder})
set(pictures)
foreach(drawing ${drawings})
    cmake_path(GET drawing STEM name)
    list(APPEND pictures ${picture_folder}/${name}.picture)
endforeach()
add_custom_command(OUTPUT ${pictures}
    COMMAND CompilePictures ${picture_folder} ${drawings}
    DEPENDS CompilePictures ${drawings}
    COMMENT "Turning drawings into pictures"
    VERBATIM)
qt_add_resources(editor_dialog function_editor_pictures PREFIX /function-editor
    BASE ${picture_folder} FILES ${pictures} OPTIONS -no-compress)
