# SPDX-License-Identifier: GPL-3.0-or-later
"""The function editor's dialog for Python programs.

Shows the dialog on points of a function or on a consumption profile and returns what the user made
of it. Nothing but the standard library and the module `libfunctioneditor` is needed:

    import functioneditor

    result = functioneditor.edit_function([(0, 0), (2.5, 0.4), (24, 1)], name="Valve opening")
    if result.accepted:
        for time, value in result.points:
            print(time, value)

Numbers are handed over and come back as texts, so that no digit is lost; `float()` makes numbers of
them. Call the dialogs from one thread, the first one that shows a dialog. Other threads of the host
keep running meanwhile. `check` can be called from any thread.

The library is looked for under the path in the environment variable FUNCTIONEDITOR_LIBRARY, then
beside this package and in the folders above it, then where the system looks for libraries.
"""

from __future__ import annotations

import ctypes
import ctypes.util
import enum
import math
import os
import sys
from dataclasses import dataclass, field
from pathlib import Path
from typing import Iterable, List, Optional, Sequence, Tuple, Union

__all__ = ["CheckResult", "EditorError", "Ending", "Fault", "FunctionResult", "Kind",
           "NoDisplayError", "ProfileResult", "RequestError", "Row", "check", "edit_function",
           "edit_profile", "library_version", "open_profile", "view_profile"]

Number = Union[str, int, float]


class Kind(enum.IntEnum):
    """The kinds of profiles."""

    FUNCTION = -1  # points of a function; for files only, see `edit_function`
    ANNUAL = 0     # 12 coefficients with mean 1
    MONTHLY = 1    # 12 values in l/day, each with the name of a daily profile
    WEEKLY = 2     # 7 values in l/day, likewise
    DAILY = 3      # 24 coefficients with mean 1


class Ending(enum.IntEnum):
    """How a dialog ended."""

    REFUSED = 0  # the file was not valid, or the user chose none
    OK = 1
    CANCELLED = 2


class EditorError(Exception):
    """The editor could not do what was asked; `code` is its result in functioneditor.h."""

    def __init__(self, code: int, message: str) -> None:
        super().__init__(message)
        self.code = code


class NoDisplayError(EditorError):
    """No dialog can be shown: there is no display, or this is not the thread for windows."""


class RequestError(EditorError, ValueError):
    """The request is wrong: too many rows, or a name or text that cannot be handed over."""


@dataclass(frozen=True)
class Row:
    """A row of a profile: its label, its value and the name of its daily profile, or ""."""

    label: str
    value: str
    name: str


@dataclass(frozen=True)
class ProfileResult:
    """What the user made of a profile. `rows` is empty unless the user pressed OK."""

    ending: Ending
    name: str
    rows: Tuple[Row, ...] = ()

    @property
    def accepted(self) -> bool:
        """True when the user pressed OK."""
        return self.ending == Ending.OK


@dataclass(frozen=True)
class FunctionResult:
    """What the user made of a function: (time in hours, value) as texts.

    `points` is empty unless the user pressed OK.
    """

    ending: Ending
    name: str
    points: Tuple[Tuple[str, str], ...] = ()

    @property
    def accepted(self) -> bool:
        """True when the user pressed OK."""
        return self.ending == Ending.OK


@dataclass(frozen=True)
class Fault:
    """A fault of an exchange file. Lines count from 1."""

    line: int
    text: str


@dataclass(frozen=True)
class CheckResult:
    """The first hundred faults of an exchange file, and how many there are in all."""

    count: int
    faults: List[Fault] = field(default_factory=list)


_RowCallback = ctypes.CFUNCTYPE(None, ctypes.c_size_t, ctypes.c_char_p, ctypes.c_char_p,
                                ctypes.c_char_p, ctypes.c_void_p)
_FaultCallback = ctypes.CFUNCTYPE(None, ctypes.c_size_t, ctypes.c_char_p, ctypes.c_void_p)

_OPEN, _VIEW, _EDIT = 1, 2, 3
_NO_DIALOG, _INTERNAL, _FILE = -1, -8, -9
_NAME_SIZE = 1024


class _Request(ctypes.Structure):
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
        ("on_row", _RowCallback),
        ("user", ctypes.c_void_p),
        ("parent_window", ctypes.c_ulonglong),
    ]


def _library_path() -> str:
    chosen = os.environ.get("FUNCTIONEDITOR_LIBRARY")
    if chosen:
        return chosen
    names = (("functioneditor.dll", "bin/functioneditor.dll") if sys.platform == "win32"
             else ("libfunctioneditor.so.0", "libfunctioneditor.so"))
    here = Path(__file__).resolve().parent
    for folder in (here, *here.parents[:4]):
        for name in names:
            if (folder / name).is_file():
                return str(folder / name)
    return ctypes.util.find_library("functioneditor") or names[0]


_library: Optional[ctypes.CDLL] = None


def _module() -> ctypes.CDLL:
    global _library
    if _library is None:
        module = ctypes.CDLL(_library_path())
        module.functioneditor_prompt.argtypes = [ctypes.POINTER(_Request)]
        module.functioneditor_check.argtypes = [ctypes.c_char_p, _FaultCallback, ctypes.c_void_p]
        module.functioneditor_result_text.argtypes = [ctypes.c_int]
        module.functioneditor_result_text.restype = ctypes.c_char_p
        module.functioneditor_version.restype = ctypes.c_char_p
        _library = module
    return _library


def _raise(code: int) -> None:
    message = _module().functioneditor_result_text(code).decode()
    if code == _NO_DIALOG:
        raise NoDisplayError(code, message)
    if code == _FILE:
        raise FileNotFoundError(message)
    raise EditorError(code, message) if code == _INTERNAL else RequestError(code, message)


def _text(value: Number) -> str:
    """The text of a number with all its digits; texts as they are."""
    if isinstance(value, str):
        return value
    if not math.isfinite(value):
        raise ValueError(f"{value} is not a finite number")
    return repr(value) if isinstance(value, float) else str(value)


def _utf8(text: str) -> bytes:
    if "\0" in text:
        raise ValueError("a text holds a zero character")
    return text.encode()


def _array(texts: Sequence[str]) -> "ctypes.Array[ctypes.c_char_p]":
    return (ctypes.c_char_p * len(texts))(*map(_utf8, texts))


def _prompt(kind: int, mode: int, *, text: str = "", name: str = "", data_folder: str = "",
            parent_window: int = 0,
            columns: Sequence[Sequence[str]] = ((), (), ())) -> Tuple[Ending, str, List[Row]]:
    rows: List[Row] = []

    @_RowCallback
    def on_row(_row: int, label: bytes, value: bytes, profile: bytes, _user: object) -> None:
        rows.append(Row(label.decode(), value.decode(), profile.decode()))

    times, values, names = map(_array, columns)
    buffer = ctypes.create_string_buffer(_utf8(name), max(_NAME_SIZE, len(name.encode()) + 1))
    request = _Request(
        size=ctypes.sizeof(_Request), kind=kind, mode=mode, text=_utf8(text),
        program_folder=_utf8(data_folder), name=ctypes.cast(buffer, ctypes.c_char_p),
        name_size=len(buffer), times=times, values=values, names=names, count=len(columns[1]),
        on_row=on_row, parent_window=parent_window)
    result = _module().functioneditor_prompt(ctypes.byref(request))
    if result < 0:
        _raise(result)
    return Ending(result), buffer.value.decode(errors="ignore"), rows


def edit_function(points: Iterable[Tuple[Number, Number]], *, name: str = "",
                  parent_window: int = 0, data_folder: str = "") -> FunctionResult:
    """Lets the user edit the points of a function: (time in hours, value), in order of time.

    `name` is shown in the title. `parent_window` is the X11 id or HWND of the window that the
    dialog belongs to, 0 for none. `data_folder` holds the folder "Data" of the profiles.
    Raises NoDisplayError without a display and RequestError for a wrong request.
    """
    pairs = [(_text(time), _text(value)) for time, value in points]
    columns = ([time for time, _ in pairs], [value for _, value in pairs], [""] * len(pairs))
    ending, name, rows = _prompt(Kind.FUNCTION, _EDIT, name=name, parent_window=parent_window,
                                 data_folder=data_folder, columns=columns)
    return FunctionResult(ending, name, tuple((row.label, row.value) for row in rows))


def edit_profile(kind: Kind, values: Iterable[Number], names: Optional[Sequence[str]] = None, *,
                 name: str = "", parent_window: int = 0, data_folder: str = "") -> ProfileResult:
    """Lets the user edit a profile; missing rows keep their defaults.

    `names` are the daily profiles of monthly rows. A weekly profile starts from its defaults
    whatever is handed over. The name comes back changed when the user saved the profile.
    """
    if kind == Kind.FUNCTION:
        raise ValueError("a function has times: call edit_function")
    texts = [_text(value) for value in values]
    names = list(names or ())[:len(texts)]
    names += [""] * (len(texts) - len(names))
    ending, name, rows = _prompt(Kind(kind), _EDIT, name=name, parent_window=parent_window,
                                 data_folder=data_folder,
                                 columns=([""] * len(texts), texts, names))
    return ProfileResult(ending, name, tuple(rows))


def open_profile(kind: Kind, path: Union[str, "os.PathLike[str]"] = "", *, name: str = "",
                 parent_window: int = 0, data_folder: str = "") -> ProfileResult:
    """Lets the user edit the profile file at `path`; without a path the user is asked for one."""
    ending, name, rows = _prompt(Kind(kind), _OPEN, text=os.fspath(path), name=name,
                                 parent_window=parent_window, data_folder=data_folder)
    return ProfileResult(ending, name, tuple(rows))


def view_profile(kind: Kind, path: Union[str, "os.PathLike[str]"] = "", *, name: str = "",
                 parent_window: int = 0, data_folder: str = "") -> ProfileResult:
    """Shows the profile file at `path` without letting the user change it."""
    ending, name, rows = _prompt(Kind(kind), _VIEW, text=os.fspath(path), name=name,
                                 parent_window=parent_window, data_folder=data_folder)
    return ProfileResult(ending, name, tuple(rows))


def check(path: Union[str, "os.PathLike[str]"]) -> CheckResult:
    """Looks for faults in the exchange file at `path`, without a dialog or a display.

    Raises FileNotFoundError when the file cannot be read.
    """
    faults: List[Fault] = []

    @_FaultCallback
    def on_fault(line: int, text: bytes, _user: object) -> None:
        faults.append(Fault(line, text.decode()))

    count = _module().functioneditor_check(_utf8(os.fspath(path)), on_fault, None)
    if count < 0:
        _raise(count)
    return CheckResult(count, faults)


def library_version() -> str:
    """The version of the loaded library, such as "0.2.0"."""
    return _module().functioneditor_version().decode()
