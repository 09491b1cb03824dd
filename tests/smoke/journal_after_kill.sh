#!/bin/sh
# The recovery journal with the real program under a virtual display: type
# into the editor, make the words italic, kill the process with SIGKILL,
# start again and answer the question. Yes brings text and format back into
# the editor (which journals them again), No removes the journal.
set -eu
PROGRAM_DIR="$1"

for tool in xvfb-run xdotool; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "SKIP: the journal test needs $tool (installed by scripts/install-deps.sh)"
        exit 77
    fi
done

WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
cp -r "$PROGRAM_DIR" "$WORK/program"

cat > "$WORK/drive.sh" <<'DRIVE'
#!/bin/sh
set -eu
P="$1/program"
J="$P/Files/Recovery/Document.rtf"
command -v openbox >/dev/null 2>&1 && { openbox >/dev/null 2>&1 & sleep 1; }

fail() { echo "$1" >&2; cat "$P/../out.log" >&2 || true; kill -9 "$PID" 2>/dev/null || true; exit 1; }
start() { "$P/quillmere" > "$P/../out.log" 2>&1 & PID=$!; }
# Waits for a window whose name matches $1 and gives it the keyboard.
window() {
    WIN=""
    for _ in $(seq 1 100); do
        WIN="$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1 || true)"
        [ -n "$WIN" ] && break
        sleep 0.1
    done
    [ -n "$WIN" ] || fail "no window named '$1'"
    sleep 0.5
    xdotool windowactivate --sync "$WIN" 2>/dev/null || xdotool windowfocus --sync "$WIN" 2>/dev/null || true
    sleep 0.3
}
killed() { kill -9 "$PID"; wait "$PID" 2>/dev/null || true; }

# 1. Type, format, wait for the journal, kill.
start
window '^Text Editor - '
xdotool type --delay 20 'Rescued words'
# The editor acts on Ctrl+I when the letter is released with Ctrl still held.
xdotool key ctrl+a; sleep 0.3; xdotool keydown ctrl; sleep 0.2; xdotool key i; sleep 0.2; xdotool keyup ctrl; sleep 0.3; xdotool key End
sleep 3
grep -q 'Rescued words' "$J" 2>/dev/null || fail "no journal with the typed text"
grep -q '\\i' "$J" || fail "the journal lost the italic"
killed
touch -d '1 minute ago' "$J"

# 2. Yes: the text comes back into the editor, which journals it again.
start
window '^Quillmere$'
xdotool key Return
sleep 3
[ -n "$(find "$J" -newermt '20 seconds ago')" ] || fail "the recovered text was not journalled again"
grep -q 'Rescued words' "$J" || fail "the recovered text is not the typed one"
grep -q '\\i' "$J" || fail "the recovered text lost its italic"
killed

# 3. No: the journal is gone.
start
window '^Quillmere$'
xdotool key Escape
sleep 1
[ ! -e "$J" ] || fail "No left the journal behind"
killed
DRIVE
chmod +x "$WORK/drive.sh"

xvfb-run -a -s "-screen 0 1280x800x24" "$WORK/drive.sh" "$WORK"
echo "journal test passed"
