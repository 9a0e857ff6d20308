# SPDX-License-Identifier: GPL-3.0-or-later
# Headers of Qt that nearly every file includes, compiled once for all targets without a widget and
# once for all with. A file still includes what it uses: tools/lint compiles it without these.

# A target whose only product is a set of precompiled headers: editor_headers(NAME HEADERS LIBRARY...).
function(editor_headers name headers)
    set(source ${PROJECT_BINARY_DIR}/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    editor_flags(${name})
    target_link_libraries(${name} PRIVATE ${ARGN})
    target_precompile_headers(${name} PRIVATE ${headers})
endfunction()

# Sets `result` to whether the target links the widgets, itself or through another one.
function(editor_links_widgets target result)
    set(${result} FALSE PARENT_SCOPE)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    foreach(library ${libraries})
        set(found FALSE)
        if(library STREQUAL Qt6::Widgets)
            set(found TRUE)
        elseif(TARGET ${library} AND library MATCHES "^[a-z_0-9]+$")
            editor_links_widgets(${library} found)
        endif()
        if(found)
            set(${result} TRUE PARENT_SCOPE)
            return()
        endif()
    endforeach()
endfunction()

# To be called when all targets and what they link are known.
function(editor_precompile_headers)
    set(core_headers <QtCore> <algorithm> <array> <cmath> <functional> <map> <memory> <optional>
        <span> <string> <utility> <vector>)
    editor_headers(editor_core_headers "${core_headers}" Qt6::Core)
    editor_headers(editor_ui_headers "${core_headers};<QtWidgets>" Qt6::Widgets)
    get_property(targets GLOBAL PROPERTY EDITOR_TARGETS)
    foreach(target ${targets})
        editor_links_widgets(${target} has_widgets)
        if(has_widgets)
            target_precompile_headers(${target} REUSE_FROM editor_ui_headers)
        else()
            target_precompile_headers(${target} REUSE_FROM editor_core_headers)
        endif()
    endforeach()
endfunction()
