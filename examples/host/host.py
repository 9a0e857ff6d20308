#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A host in Python: shows the dialog through the C entry and prints what came back.

FUNCTIONEDITOR_LIBRARY names the module's file when it is not where the system looks for libraries.
"""

import argparse
import ctypes
import ctypes.util
import os
import sys

KINDS = {"function": -1, "annual": 0, "monthly": 1, "weekly": 2, "daily": 3}
MODES = {"open": 1, "view": 2, "edit": 3}
NAME_SIZE = 1024

RowCallback = ctypes.CFUNCTYPE(None, ctypes.c_size_t, ctypes.c_char_p, ctypes.c_char_p,
                               ctypes.c_char_p, ctypes.c_void_p)


class Request(ctypes.Structure):
    """functioneditor_request of functioneditor.h."""

    _fields_ = [
        ("size", ctypes.c_size_t),
        ("kind", ctypes.c_int),
        ("mode", ctypes.c_int),
        ("text", ctypes.c_char_p),
        ("program_folder", ctypes.c_char_p),
        ("name", ctypes.c_char_p),
        ("name_size", ctypes.c_size_t),
        ("name_length", ctypes.c_size_t),
        ("times", ctypes.POINTER(ctypes.c_char_p)),
        ("values", ctypes.POINTER(ctypes.c_char_p)),
        ("names", ctypes.POINTER(ctypes.c_char_p)),
        ("count", ctypes.c_size_t),
        ("on_row", RowCallback),
        ("user", ctypes.c_void_p),
    ]


def load_module():
    path = (os.environ.get("FUNCTIONEDITOR_LIBRARY") or ctypes.util.find_library("functioneditor")
            or "libfunctioneditor.so.0")
    module = ctypes.CDLL(path)
    module.functioneditor_prompt.argtypes = [ctypes.POINTER(Request)]
    module.functioneditor_prompt.restype = ctypes.c_int
    module.functioneditor_result_text.argtypes = [ctypes.c_int]
    module.functioneditor_result_text.restype = ctypes.c_char_p
    return module


def texts(column):
    return (ctypes.c_char_p * len(column))(*(text.encode() for text in column))


def prompt(module, kind, mode, name="", file="", data="", rows=()):
    """Shows the dialog on rows of (time, value, name): result, name and the rows after OK."""
    after = []

    @RowCallback
    def on_row(_row, label, value, profile, _user):
        after.append((label.decode(), value.decode(), profile.decode()))

    times, values, names = (texts(column) for column in zip(*rows)) if rows else (texts(()),) * 3
    buffer = ctypes.create_string_buffer(name.encode(), NAME_SIZE)
    request = Request(
        size=ctypes.sizeof(Request), kind=KINDS[kind], mode=MODES[mode], text=file.encode(),
        program_folder=data.encode(), name=ctypes.cast(buffer, ctypes.c_char_p),
        name_size=NAME_SIZE, times=times, values=values, names=names, count=len(rows),
        on_row=on_row)
    result = module.functioneditor_prompt(ctypes.byref(request))
    return result, buffer.value.decode(), after


def row(argument):
    time, value, *rest = argument.split("=")
    return time, value, rest[0] if rest else ""


def main():
    parser = argparse.ArgumentParser(description="Shows the function editor's dialog.")
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("mode", choices=MODES)
    parser.add_argument("--name", default="")
    parser.add_argument("--file", default="", help="profile to open or view")
    parser.add_argument("--data", default="", help='folder that holds "Data"')
    parser.add_argument("rows", nargs="*", type=row, metavar="TIME=VALUE[=NAME]")
    arguments = parser.parse_intermixed_args()

    module = load_module()
    result, name, after = prompt(module, **vars(arguments))
    for number, cells in enumerate(after, 1):
        print(f"row {number}:", " | ".join(cells))
    print(f"result: {result}\nname: {name}")
    if result < 0:
        sys.exit(module.functioneditor_result_text(result).decode())


if __name__ == "__main__":
    main()
