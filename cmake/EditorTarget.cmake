# SPDX-License-Identifier: GPL-3.0-or-later
# Flags that every target of the editor shares.
function(editor_flags target)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY)
    if(WIN32)
        target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX=1)
    endif()
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /utf-8 /permissive-)
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    endif()
    set_target_properties(${target} PROPERTIES
        COMPILE_WARNING_AS_ERROR ${EDITOR_WARNINGS_AS_ERRORS})
    if(EDITOR_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined
            -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
    if(EDITOR_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined
            -fno-sanitize-recover=all -fno-omit-frame-pointer
            -fprofile-instr-generate -fcoverage-mapping)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined -fprofile-instr-generate)
    endif()
endfunction()

# A target of the editor: the shared flags, and the precompiled headers if there are any.
function(editor_target target)
    editor_flags(${target})
    set_property(GLOBAL APPEND PROPERTY EDITOR_TARGETS ${target})
endfunction()

# Makes the headers of a folder known as "folder/Name.h" to the libraries of that folder and to
# whatever links them. An include of any other folder does not compile.
function(editor_room folder)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/${folder}
        ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    foreach(header ${headers})
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/rooms/${folder}/${folder}/${header}
            CONTENT "#include \"${PROJECT_SOURCE_DIR}/${folder}/${header}\"\n")
    endforeach()
endfunction()

# A static library of one folder: editor_library(NAME FOLDER SOURCE...).
function(editor_library name folder)
    add_library(${name} STATIC ${ARGN})
    editor_target(${name})
    target_include_directories(${name} PUBLIC ${PROJECT_BINARY_DIR}/rooms/${folder})
endfunction()

# A program around the editor (test, measurement): sees every folder.
function(editor_outside target)
    editor_target(${target})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
endfunction()
