#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A host that starts the program: writes an exchange file, waits for the editor and plots what
# changed. usage: host.sh [EDITOR]
set -euo pipefail
export LC_ALL=C

editor=${1-function-editor}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
file=$folder/fan.txt

# Line 11 holds the number of cycles (1), line 12 the number of points less one, line 13 the number of
# point lines. From line 14 on a time and a value take turns. What follows "!" is a comment.
{
    printf '%s\n' '! Exchange file of the component Fan F1, input air flow' \
        '3 ! Number of the component' 'Fan ! Name of the component' '3 1 flow ! Input' \
        '0 ! Start of the simulation|hr|0|+Inf' '24 ! End of the simulation|hr|0|+Inf' \
        '1 ! Time step|hr|0|+Inf' '0 ! Lower bound' '5000 ! Upper bound' '! The function' \
        '1 ! Number of cycles' '5 ! Number of points - 1' '12 ! Number of point lines'
    for point in '0 300' '6 300' '7 2400' '18 3100' '20 900' '24 300'; do
        # shellcheck disable=SC2086  # two words
        printf '%s ! Time at point|hr|0|+Inf\n%s ! Value at point |any|-Inf|+Inf\n' $point
    done
} >"$file"

# points FILE: one line a point, its time and its value.
points() {
    awk '{ sub(/\r$/, "") } NR == 13 { last = 13 + $1 }
        NR > 13 && NR <= last { if (NR % 2 == 0) time = $1; else print time, $1 }' "$1"
}

points "$file" >"$folder/before"
# Its standard output traces what it reads. The status is 0 whatever the user did; else no dialog could
# be shown, and standard error says why.
"$editor" "$file" >/dev/null || exit 1
points "$file" >"$folder/after"

if cmp -s "$folder/before" "$folder/after"; then
    echo 'Nothing changed.'
    exit
fi
# A bar a point; "-" marks points that are gone or were changed, "+" what they are now.
diff --old-line-format='- %L' --new-line-format='+ %L' --unchanged-line-format='  %L' \
    "$folder/before" "$folder/after" | awk '
    { mark[NR] = substr($0, 1, 1); split(substr($0, 3), point, " ")
      time[NR] = point[1]; value[NR] = point[2] + 0
      if (NR == 1 || value[NR] > top) top = value[NR]
      if (NR == 1 || value[NR] < bottom) bottom = value[NR] }
    END {
        if (bottom > 0) bottom = 0
        for (i = 1; i <= NR; ++i) {
            width = top > bottom ? int(50 * (value[i] - bottom) / (top - bottom) + 0.5) : 0
            bar = sprintf("%*s", width, ""); gsub(/ /, "#", bar)
            printf "%s %8s h %10g %s\n", mark[i], time[i], value[i], bar
        }
    }' || true
