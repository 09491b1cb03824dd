#!/bin/sh
# Runs a test program on a private X server (Xvfb) with a window manager
# (openbox, for window frames) and a Russian keyboard layout. When any of
# them cannot start, the program runs anyway with QM_X11_SKIP holding the
# reason, and its tests skip with that message.
set -u
TEST="$1"
shift

skip() {
    QM_X11_SKIP="$1" QT_QPA_PLATFORM=offscreen "$TEST" "$@"
    exit $?
}
for tool in Xvfb openbox setxkbmap xprop; do
    command -v "$tool" >/dev/null 2>&1 || skip "$tool is not installed (scripts/install-deps.sh installs it)"
done

WORK="$(mktemp -d)"
XPID=""
WMPID=""
cleanup() {
    [ -n "$WMPID" ] && kill "$WMPID" 2>/dev/null
    [ -n "$XPID" ] && kill "$XPID" 2>/dev/null
    rm -rf "$WORK"
}
trap cleanup EXIT

# -displayfd picks a free display; -noreset keeps the layout set below.
Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1280x800x24 3>"$WORK/display" 2>"$WORK/xvfb.log" &
XPID=$!
for _ in $(seq 1 50); do
    [ -s "$WORK/display" ] && break
    sleep 0.1
done
[ -s "$WORK/display" ] || skip "Xvfb did not start"
export DISPLAY=":$(cat "$WORK/display")"

openbox --sm-disable >"$WORK/openbox.log" 2>&1 &
WMPID=$!
for _ in $(seq 1 50); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break
    sleep 0.1
done
xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" || skip "openbox did not start"
setxkbmap -layout ru || skip "setxkbmap could not set a Russian layout"

QT_QPA_PLATFORM=xcb "$TEST" "$@"
