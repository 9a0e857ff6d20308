#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A host in Python: shows the dialog and prints what came back.

FUNCTIONEDITOR_LIBRARY names the library's file when it is not where the system looks for libraries.
Without an installed package `functioneditor` that of the editor's sources is used.
"""

import argparse
import sys
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[2] / "python"))
import functioneditor  # noqa: E402

KINDS = ("function", "annual", "monthly", "weekly", "daily")


def row(argument):
    time, value, *rest = argument.split("=")
    return time, value, rest[0] if rest else ""


def show(arguments):
    """Shows the dialog and returns its result and the rows as texts."""
    more = {"name": arguments.name, "data_folder": arguments.data}
    if arguments.kind == "function" and arguments.mode == "edit":
        result = functioneditor.edit_function([cells[:2] for cells in arguments.rows], **more)
        return result, [(time, value, "") for time, value in result.points]
    kind = functioneditor.Kind(KINDS.index(arguments.kind) - 1)
    if arguments.mode == "edit":
        result = functioneditor.edit_profile(kind, [cells[1] for cells in arguments.rows],
                                             [cells[2] for cells in arguments.rows], **more)
    else:
        show_file = {"open": functioneditor.open_profile, "view": functioneditor.view_profile}
        result = show_file[arguments.mode](kind, arguments.file, **more)
    return result, [(cells.label, cells.value, cells.name) for cells in result.rows]


def main():
    parser = argparse.ArgumentParser(description="Shows the function editor's dialog.")
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("mode", choices=("open", "view", "edit"))
    parser.add_argument("--name", default="")
    parser.add_argument("--file", default="", help="profile to open or view")
    parser.add_argument("--data", default="", help='folder that holds "Data"')
    parser.add_argument("rows", nargs="*", type=row, metavar="TIME=VALUE[=NAME]")
    try:
        result, rows = show(parser.parse_intermixed_args())
    except functioneditor.EditorError as error:
        sys.exit(f"result: {error.code}\n{error}")
    for number, cells in enumerate(rows, 1):
        print(f"row {number}:", " | ".join(cells))
    print(f"result: {int(result.ending)}\nname: {result.name}")


if __name__ == "__main__":
    main()
