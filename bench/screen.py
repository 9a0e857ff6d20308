# SPDX-License-Identifier: GPL-3.0-or-later
"""The screen of tools/virtual-screen for measurements: its picture lies in mapped memory. Keys and
mouse events are made by the server itself (XTest)."""

import ctypes
import ctypes.util
import mmap
import os
import pathlib
import struct

SIZE = (1024, 768)

# Nothing that is measured paints in this colour, so a pixel that has it has not been painted.
ROOT_COLOUR = 0xFF00FF

def _library(name):
    path = ctypes.util.find_library(name)
    if path is None:
        raise RuntimeError(f"lib{name} is missing")
    return ctypes.CDLL(path)


class Screen:
    """The screen that this program runs on."""

    def __init__(self):
        self._map_picture()
        self._connect()

    # The file is a picture in the format of xwd: a header of big-endian numbers, colours, pixels.
    def _map_picture(self):
        path = pathlib.Path(os.environ["VIRTUAL_SCREEN"], "Xvfb_screen0")
        with open(path, "r+b") as file:
            self._map = mmap.mmap(file.fileno(), 0)
        header = struct.unpack(">25I", self._map[:100])
        self._start = header[0] + header[19] * 12
        self._line = header[12]
        if header[11] != 32 or header[7] != 0:
            raise RuntimeError("the virtual screen has an unexpected format")
        self._address = ctypes.addressof(ctypes.c_char.from_buffer(self._map))
        self._compare = ctypes.CDLL(None).memcmp
        self._compare.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t]
        self._copy = ctypes.create_string_buffer(self._line * SIZE[1])

    def _connect(self):
        self._x = _library("X11")
        self._xtest = _library("Xtst")
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._x.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x.XStringToKeysym.restype = ctypes.c_ulong
        display = ctypes.c_void_p(self._x.XOpenDisplay(None))
        if not display:
            raise RuntimeError("no connection to the virtual screen")
        self._display = display
        root = ctypes.c_ulong(self._x.XDefaultRootWindow(display))
        self._x.XSetWindowBackground(display, root, ctypes.c_ulong(ROOT_COLOUR))
        self._x.XClearWindow(display, root)
        self._x.XSync(display, 0)

    def changed(self, height=SIZE[1]):
        """Whether the upper part of the picture differs from what it was at the last call."""
        size = self._line * height
        source = self._address + self._start
        if self._compare(source, self._copy, size) == 0:
            return False
        ctypes.memmove(self._copy, source, size)
        return True

    def row(self, y, left, right):
        """The pixels of a part of a line, four bytes each: blue, green, red, unused."""
        start = self._start + y * self._line
        return self._map[start + 4 * left:start + 4 * right]

    def is_painted(self, width, height):
        """No pixel on a lattice over the top left part of the screen shows the bare screen."""
        bare = tuple(ROOT_COLOUR.to_bytes(4, "little")[:3])
        for y in [*range(1, height, 16), height - 2]:
            row = self.row(y, 0, width)
            for first in (1, (width - 2) % 16):
                if bare in zip(*(row[4 * first + part::64] for part in range(3))):
                    return False
        return True

    def move(self, x, y):
        self._xtest.XTestFakeMotionEvent(self._display, -1, x, y, ctypes.c_ulong(0))
        self._x.XFlush(self._display)

    def button(self, down):
        self._xtest.XTestFakeButtonEvent(self._display, 1, int(down), ctypes.c_ulong(0))
        self._x.XFlush(self._display)

    def key(self, name):
        code = self._x.XKeysymToKeycode(
            self._display, ctypes.c_ulong(self._x.XStringToKeysym(name.encode())))
        for down in (1, 0):
            self._xtest.XTestFakeKeyEvent(self._display, code, down, ctypes.c_ulong(0))
        self._x.XFlush(self._display)

    def type(self, number):
        for character in number:
            self.key({".": "period", "-": "minus"}.get(character, character))
