# SPDX-License-Identifier: GPL-3.0-or-later
# The module `functioneditor`: the dialog for other programs, through InputAPI and the C entry.
include(GenerateExportHeader)

add_library(functioneditor SHARED app/InputAPI.cpp app/functioneditor.cpp)
add_library(functioneditor::functioneditor ALIAS functioneditor)
# Not with the precompiled headers, which are compiled for visible symbols.
editor_flags(functioneditor)
set(module_headers ${PROJECT_BINARY_DIR}/module)
generate_export_header(functioneditor EXPORT_FILE_NAME ${module_headers}/functioneditor_export.h)
set_target_properties(functioneditor PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
if(WIN32)
    # One name whatever the compiler: functioneditor.dll.
    set_target_properties(functioneditor PROPERTIES PREFIX "")
endif()
target_include_directories(functioneditor PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<BUILD_INTERFACE:${module_headers}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/function-editor>)
target_link_libraries(functioneditor PRIVATE editor_app)
target_compile_definitions(functioneditor PRIVATE FUNCTION_EDITOR_VERSION="${PROJECT_VERSION}")

# Hidden visibility does not reach the static libraries and the templates of the standard library.
if(UNIX AND NOT APPLE)
    set(symbol_list ${PROJECT_SOURCE_DIR}/app/functioneditor.map)
    target_link_options(functioneditor PRIVATE
        LINKER:--exclude-libs,ALL LINKER:--version-script=${symbol_list} LINKER:--no-undefined)
    set_target_properties(functioneditor PROPERTIES LINK_DEPENDS ${symbol_list})
endif()

# What C++ programs link: the module and the toolkit's strings.
add_library(functioneditor_cxx INTERFACE)
add_library(functioneditor::InputAPI ALIAS functioneditor_cxx)
target_include_directories(functioneditor_cxx INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
target_link_libraries(functioneditor_cxx INTERFACE functioneditor Qt6::Core)

# The shipped profiles beside the built program, which looks for them there.
file(GLOB_RECURSE shipped_profiles CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/Data/*)
add_custom_command(
    OUTPUT ${PROJECT_BINARY_DIR}/Data/copied
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/resources/Data
        ${PROJECT_BINARY_DIR}/Data
    COMMAND ${CMAKE_COMMAND} -E touch ${PROJECT_BINARY_DIR}/Data/copied
    DEPENDS ${shipped_profiles})
add_custom_target(profile_data ALL DEPENDS ${PROJECT_BINARY_DIR}/Data/copied)
add_dependencies(function-editor profile_data)
