#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Exchange files to measure with: bench/points.py POINTS FILE"""

import math
import sys


def value_of(hour):
    rhythm = math.sin(2 * math.pi * hour / 24)
    return f"{500 + 300 * rhythm + hour * 7919 % 1009 / 10:.2f}"


def write_points(path, count):
    """An exchange file in the form in which it is saved."""
    with open(path, "w", encoding="cp1252", newline="\n") as file:
        for line in range(10):
            file.write("12 3 heat ! Input\n" if line == 3 else f"{line} ! Of the host|any|0|9\n")
        file.write("1 ! Number of cycles|any|1|1\n")
        file.write(f"{count - 1} ! Number of points - 1|any|0|+Inf\n")
        file.write(f"{2 * count} ! Number of point lines|any|2|+Inf\n")
        for hour in range(count):
            file.write(f"{hour} ! Time at point|hr|0|+Inf\n")
            file.write(f"{value_of(hour)} ! Value at point |any|-Inf|+Inf\n")


if __name__ == "__main__":
    write_points(sys.argv[2], int(sys.argv[1]))
