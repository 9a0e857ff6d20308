# SPDX-License-Identifier: GPL-3.0-or-later
# Functions for scripts that build the editor and show it on a screen of its own; to be sourced by
# bash after `set -euo pipefail`. What start_screen and start_editor started ends with the script.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
editor=$root/build/release/function-editor

# What build_editor builds; a script may add to it.
targets=(function-editor)

# Seconds that a window, the screen or the end of the editor is waited for.
wait_limit=30

scratch=''
screen_pid=''
manager_pid=''
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
    local pid
    for pid in $editor_pid $manager_pid $screen_pid; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    [[ -z $scratch ]] || rm -rf "$scratch"
}

has_window_manager() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q '#'
}

# start_screen WIDTHxHEIGHT: a virtual screen with a small window manager, under a free number.
start_screen() {
    local number ready=''
    scratch=$(mktemp -d)
    trap stop_all EXIT
    trap 'exit 130' INT TERM HUP
    mkfifo "$scratch/ready"
    # The server can look for a free number by itself, but two that start or end at the same time then
    # get in each other's way. With a number given it locks it, or ends at once if it is in use.
    for _ in {1..10}; do
        number=$((100 + RANDOM % 9900))
        Xvfb ":$number" -displayfd 3 -screen 0 "${1}x24" -nolisten tcp 3>"$scratch/ready" \
            </dev/null >"$scratch/xvfb.log" 2>&1 &
        screen_pid=$!
        read -t "$wait_limit" -r ready <"$scratch/ready" && break
        kill "$screen_pid" 2>/dev/null || true
    done
    [[ -n $ready ]] || fail "No virtual screen: $(cat "$scratch/xvfb.log")"
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY XAUTHORITY
    openbox --sm-disable </dev/null >"$scratch/openbox.log" 2>&1 &
    manager_pid=$!
    wait_until has_window_manager || fail "No window manager: $(cat "$scratch/openbox.log")"
}

# start_program PROGRAM [ARGUMENT]...: in the background on the virtual screen.
start_program() {
    QT_QPA_PLATFORM=xcb "$@" </dev/null >/dev/null 2>"$scratch/editor.log" &
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
