#!/bin/sh
# Starts the built program on a copy of its folder under Xvfb with a short
# generated WAV, waits for the player window, presses Ctrl+Q and checks that
# the settings file was rewritten in its 25-line form.
set -eu
PROGRAM_DIR="$1"

for tool in xvfb-run xdotool sox; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "smoke test needs $tool (installed by scripts/install-deps.sh)" >&2
        exit 1
    fi
done

WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
cp -r "$PROGRAM_DIR" "$WORK/program"
# A settings file that differs from what the program will write.
printf 'English.lng\r\n50\r\n' > "$WORK/program/Files/Quillmere.ini"
for i in $(seq 3 25); do printf '0\r\n' >> "$WORK/program/Files/Quillmere.ini"; done
sox -n -r 8000 -c 1 "$WORK/voice.wav" synth 5 sine 440 2>/dev/null

xvfb-run -a -s "-screen 0 1280x800x24" "$(dirname "$0")/../support/start_and_quit.sh" \
    "$WORK/program/quillmere" "$WORK/voice.wav" "$WORK/out.log"

LINES="$(wc -l < "$WORK/program/Files/Quillmere.ini")"
if [ "$LINES" -ne 25 ]; then
    echo "settings file has $LINES lines, expected 25" >&2
    exit 1
fi
# Line 25 (do not play while typing) and the recent list prove a rewrite
# by the program: the media file went into the list.
if ! grep -q "voice.wav" "$WORK/program/Files/LastFiles.ini"; then
    echo "the media file was not opened" >&2
    exit 1
fi
LINE16="$(sed -n 16p "$WORK/program/Files/Quillmere.ini" | tr -d '\r')"
if [ "$LINE16" != "1" ]; then
    echo "settings file was not rewritten (line 16 is '$LINE16')" >&2
    exit 1
fi
echo "smoke test passed"
