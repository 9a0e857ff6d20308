# SPDX-License-Identifier: GPL-3.0-or-later
# The program on Windows: no console of its own, with icon, version and manifest.
set_target_properties(function-editor PROPERTIES WIN32_EXECUTABLE ON)

enable_language(RC)
configure_file(${PROJECT_SOURCE_DIR}/resources/windows/function-editor.rc.in
    ${PROJECT_BINARY_DIR}/function-editor.rc @ONLY)
set(manifest ${PROJECT_SOURCE_DIR}/resources/windows/function-editor.manifest)
# A library of its own: the flags of C++ are none of the resource compiler.
add_library(function_editor_resources OBJECT ${PROJECT_BINARY_DIR}/function-editor.rc)
set_source_files_properties(${PROJECT_BINARY_DIR}/function-editor.rc PROPERTIES
    OBJECT_DEPENDS "${manifest};${PROJECT_BINARY_DIR}/pictures/function-editor.ico")
add_dependencies(function_editor_resources editor_dialog)
target_sources(function-editor PRIVATE $<TARGET_OBJECTS:function_editor_resources>)
if(MSVC)
    # The linker merges it with its own.
    target_sources(function-editor PRIVATE ${manifest})
else()
    target_compile_definitions(function_editor_resources PRIVATE EMBED_MANIFEST)
endif()
