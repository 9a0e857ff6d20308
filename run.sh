#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the function editor and starts it: ./run.sh [exchange-file]
# Without a file it edits a copy of a sample. Without a display it shows a scripted user at work on a
# copy of the file, on a virtual screen.
set -euo pipefail

if [[ $# -gt 1 || ${1-} == -* ]]; then
    echo "usage: ./run.sh [exchange-file]" >&2
    exit 2
fi
# shellcheck source=tools/editor.bash
source "$(dirname "${BASH_SOURCE[0]}")/tools/editor.bash"

file=${1-$root/samples/pump-start.txt}
[[ -r $file ]] || fail "The file cannot be read: $file"
"$root/tools/install-packages" run
[[ -n ${DISPLAY-}${WAYLAND_DISPLAY-} ]] || on_screen 1280x1024 "$@"
build_editor

if [[ -z ${VIRTUAL_SCREEN-} && -n ${DISPLAY-}${WAYLAND_DISPLAY-} ]]; then
    if [[ $# -eq 0 ]]; then
        file=$(mktemp -d)/pump-start.txt
        cp "$root/samples/pump-start.txt" "$file"
        echo "Editing $file"
    fi
    before=$scratch/before.txt
    cp "$file" "$before"
    "$editor" "$file" || fail "No dialog could be shown."
    if diff -u --text --label before --label after "$before" "$file"; then
        echo "The file did not change: $file"
    else
        echo "The file changed: $file"
    fi
    exit
fi

# Line 13 holds twice the number of points; the value of point k (from 1) is on line 13 + 2k.
points=$(awk 'NR == 13 { print int($1 / 2); exit }' "$file")
[[ ${points:-0} -gt 0 ]] || fail "The file holds no points: $file"
row=$((points < 4 ? points : 4))
value=$(LC_ALL=C awk -v line=$((13 + 2 * row)) 'NR == line { printf "%.7g", $1 + 1.5; exit }' "$file")

folder=$(mktemp -d)
before=$folder/before.txt
after=$folder/after.txt
cp "$file" "$before"
cp "$file" "$after"

export QT_SCALE_FACTOR=1
start_editor "$after"
wait_for_window ' Function editor'
xdotool key ctrl+Home Right
for ((i = 1; i < row; ++i)); do
    xdotool key Down
done
xdotool type "$value"
xdotool key Return
take_picture "$window" "$folder/dialog.png"
IFS=, read -r x y <"$root/tools/ok-button"
xdotool mousemove --window "$window" "$x" "$y" click 1
wait_for_end

echo "A user typed $value as the value of point $row and pressed OK."
diff -u --text "$before" "$after" && fail "The file did not change."
echo "Picture of the dialog: $folder/dialog.png"
