# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when the module shows another symbol than the operations named here:
# cmake -D NM=... -D MODULE=... -P CheckSymbols.cmake
set(expected
    "FUNCTIONEDITOR_0"  # the version that the linker writes as a symbol of its own
    "InputAPI::Init()"
    "InputAPI::Prompt(int, int, QString)"
    "functioneditor_check"
    "functioneditor_prompt"
    "functioneditor_result_text"
    "functioneditor_version")

execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${MODULE}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${output}" output)
string(REPLACE "\n" ";" lines "${output}")
set(found "")
foreach(line IN LISTS lines)
    # Address, type, name, version.
    string(REGEX REPLACE "^[0-9a-f]* *[A-Za-z] " "" name "${line}")
    string(REGEX REPLACE "@.*$" "" name "${name}")
    list(APPEND found "${name}")
endforeach()
list(SORT found)
if(NOT found STREQUAL expected)
    list(JOIN found "\n  " text)
    message(FATAL_ERROR "The module's symbols are\n  ${text}")
endif()
