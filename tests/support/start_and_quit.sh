#!/bin/sh
# Starts a program with a file on the display in force, waits for the
# player's window, quits it with Ctrl+Q and waits for the process to end.
# Usage: start_and_quit.sh <program> <file> <log>
set -eu
"$1" "$2" > "$3" 2>&1 &
PID=$!
WIN=""
for _ in $(seq 1 100); do
    WIN="$(xdotool search --name '^Quillmere$' 2>/dev/null | head -n 1 || true)"
    [ -n "$WIN" ] && break
    sleep 0.1
done
if [ -z "$WIN" ]; then
    echo "the player window did not appear" >&2
    cat "$3" >&2
    kill "$PID" 2>/dev/null || true
    exit 1
fi
sleep 1
xdotool windowfocus --sync "$WIN" 2>/dev/null || true
xdotool key --clearmodifiers ctrl+q
for _ in $(seq 1 100); do
    kill -0 "$PID" 2>/dev/null || break
    sleep 0.1
done
if kill -0 "$PID" 2>/dev/null; then
    echo "the program did not quit on Ctrl+Q" >&2
    kill "$PID"
    exit 1
fi
wait "$PID"
