# SPDX-License-Identifier: GPL-3.0-or-later
# Functions for scripts that build the editor and show it on a screen of its own; to be sourced by
# bash after `set -euo pipefail`. What start_editor started ends with the script.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
editor=$root/build/release/function-editor

# What build_editor builds; a script may add to it.
targets=(function-editor)

# Seconds that a window or the end of the editor is waited for.
wait_limit=30

scratch=$(mktemp -d)
editor_pid=''
# The window that wait_for_window found last.
window=''

fail() {
    echo "$*" >&2
    exit 1
}

# Configures and builds the release preset; its output is shown only when it fails.
build_editor() {
    local log
    log=$(mktemp)
    echo "Building the editor ..."
    if ! { (cd "$root" && cmake --preset release && cmake --build --preset release \
        --target "${targets[@]}") </dev/null >"$log" 2>&1; }; then
        cat "$log" >&2
        rm -f "$log"
        fail "The build failed."
    fi
    rm -f "$log"
}

# Calls the command until it succeeds, for wait_limit seconds at most.
wait_until() {
    local end=$((SECONDS + wait_limit))
    until "$@"; do
        [[ $SECONDS -lt $end ]] || return 1
        sleep 0.05
    done
}

stop_all() {
    [[ -z $editor_pid ]] || kill "$editor_pid" 2>/dev/null || true
    rm -rf "$scratch"
}
trap stop_all EXIT
trap 'exit 130' INT TERM HUP

# on_screen WIDTHxHEIGHT "$@": starts the script anew on a virtual screen, unless it is on one.
on_screen() {
    [[ -z ${VIRTUAL_SCREEN-} ]] || return 0
    rm -rf "$scratch"
    exec "$root/tools/virtual-screen" "$1" "$0" "${@:2}"
}

# start_program PROGRAM [ARGUMENT]...: in the background on the virtual screen.
start_program() {
    "$@" </dev/null >/dev/null 2>"$scratch/editor.log" &
    editor_pid=$!
}

# start_editor FILE: the editor as a host starts it.
start_editor() {
    start_program "$editor" "$1"
}

# Ends the program that was started last without asking it.
stop_program() {
    kill "$editor_pid"
    wait "$editor_pid" || true
    editor_pid=''
}

# find_window TITLE: sets `window` to the visible window with this very title once it has the focus.
find_window() {
    window=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1) &&
        [[ -n $window && $(xdotool getactivewindow 2>/dev/null) == "$window" ]]
}

wait_for_window() {
    wait_until find_window "$1" || fail "No window '$1': $(cat "$scratch/editor.log")"
}

editor_has_ended() {
    ! kill -0 "$editor_pid" 2>/dev/null
}

# Waits until the editor has ended; its exit status must be 0.
wait_for_end() {
    local status=0
    wait_until editor_has_ended || fail "The editor does not end."
    wait "$editor_pid" || status=$?
    editor_pid=''
    [[ $status -eq 0 ]] || fail "The editor ended with status $status."
}

is_still() {
    local former=$picture_sum
    picture_sum=$(timeout "$wait_limit" import -window "$1" -depth 8 ppm:- | cksum)
    [[ $picture_sum == "$former" ]] || ! sleep 0.2
}

# take_picture WINDOW FILE.png: once the window no longer changes.
take_picture() {
    picture_sum=''
    wait_until is_still "$1" || fail "The window never comes to rest."
    timeout "$wait_limit" import -window "$1" "$2"
}
