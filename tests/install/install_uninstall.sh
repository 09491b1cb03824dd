#!/bin/sh
# Installs into a temporary prefix, checks the desktop entry and metainfo with
# their validators, starts the installed `quillmere` under Xvfb with a file
# and quits it with Ctrl+Q, then uninstalls: everything laid down goes, the
# files the user made stay. A second prefix, never run, is left empty.
set -eu
SRC="$1"
BUILD="$2"
ID=net.brackenloft.Quillmere

for tool in desktop-file-validate appstreamcli xvfb-run xdotool sox; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "SKIP: the install test needs $tool (installed by scripts/install-deps.sh)"
        exit 77
    fi
done
fail() { echo "FAIL: $*" >&2; exit 1; }

WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
P="$WORK/prefix"
"$SRC/scripts/install.sh" "$BUILD" "$P" > /dev/null

for f in bin/quillmere lib/quillmere/quillmere lib/quillmere/libquillmere-mpv.so lib/quillmere/libquillmere-capture.so lib/quillmere/libquillmere-web.so \
         lib/quillmere/Files/Quillmere.ini lib/quillmere/Files/Help-en.html lib/quillmere/Versioni.txt \
         share/applications/$ID.desktop share/metainfo/$ID.metainfo.xml \
         share/icons/hicolor/16x16/apps/quillmere.png share/icons/hicolor/256x256/apps/quillmere.png; do
    [ -e "$P/$f" ] || fail "$f was not installed"
done
grep -q "^Exec=$P/bin/quillmere %f$" "$P/share/applications/$ID.desktop" || fail "Exec line"
grep -q "^MimeType=.*audio/mpeg;.*video/mp4;" "$P/share/applications/$ID.desktop" || fail "MimeType line"
desktop-file-validate "$P/share/applications/$ID.desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$P/share/metainfo/$ID.metainfo.xml" || fail "appstreamcli validate"

# The installed command, as a user starts it: with a file, then Ctrl+Q.
sox -n -r 8000 -c 1 "$WORK/voice.wav" synth 3 sine 440 2>/dev/null
xvfb-run -a -s "-screen 0 1280x800x24" "$(dirname "$0")/../support/start_and_quit.sh" "$P/bin/quillmere" "$WORK/voice.wav" "$WORK/out.log" \
    || fail "the installed program did not start and quit"
grep -q "voice.wav" "$P/lib/quillmere/Files/LastFiles.ini" || fail "the installed program did not open the file"

# Uninstall: what was laid down goes; the user's files stay.
printf 'user text' > "$P/lib/quillmere/Bookmarks/notes.rtf"
cp "$P/lib/quillmere/.install-manifest" "$WORK/manifest"
"$SRC/scripts/uninstall.sh" "$P" > /dev/null
sed -n 's/^f //p' "$WORK/manifest" | while IFS= read -r f; do
    case "$f" in lib/quillmere/Files/Quillmere.ini) continue ;; esac
    if [ -e "$P/$f" ] || [ -L "$P/$f" ]; then fail "$f was left behind"; fi
done
[ -f "$P/lib/quillmere/Bookmarks/notes.rtf" ] || fail "a user's document was removed"
[ -f "$P/lib/quillmere/Files/LastFiles.ini" ] || fail "the user's recent list was removed"
LEFT="$(cd "$P" && find . -mindepth 1 ! -path './lib' ! -path './lib/quillmere' ! -path './lib/quillmere/*')"
[ -z "$LEFT" ] || fail "left outside the program folder: $LEFT"

# Installed and removed without a run: nothing at all is left.
P2="$WORK/prefix2"
"$SRC/scripts/install.sh" "$BUILD" "$P2" > /dev/null
"$SRC/scripts/uninstall.sh" "$P2" > /dev/null
LEFT="$(find "$P2" -mindepth 1)"
[ -z "$LEFT" ] || fail "left after install and uninstall: $LEFT"
echo "install test passed"
