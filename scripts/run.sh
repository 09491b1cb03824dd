#!/bin/sh
# Starts the player with the bundled demo dictation.
set -eu
BUILD="${1:-build}"
PROGRAM="$BUILD/bin/quillmere"
DEMO="$(cd "$BUILD/bin" && pwd)/Demo/dictation.ogg"

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    cat >&2 <<MSG
No display found: Quillmere is a desktop program and needs one.
Run it from a desktop session, or under a virtual display:
    xvfb-run -a make run
MSG
    exit 1
fi

exec "$PROGRAM" "$DEMO"
