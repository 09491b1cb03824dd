#!/bin/sh
# Installs the built program for one user, no root needed:
#   scripts/install.sh [build folder] [prefix]     (make install PREFIX=...)
# The whole program folder goes to <prefix>/lib/quillmere, where its user can
# write (the program keeps its settings and bookmarks beside itself), with a
# `quillmere` command in <prefix>/bin, a desktop entry that offers the program
# for audio and video files, the icon and the AppStream metainfo. Everything
# laid down is listed in the program folder's .install-manifest, which
# scripts/uninstall.sh reads.
set -eu

BUILD="${1:-build}"
PREFIX="${2:-$HOME/.local}"
SRC="$(cd "$(dirname "$0")/.." && pwd)"
case "$PREFIX" in /*) ;; *) PREFIX="$(pwd)/$PREFIX" ;; esac
ID=net.brackenloft.Quillmere
APPDIR="$PREFIX/lib/quillmere"

# The modules the program loads from its folder: the player, the sound
# input, the web reader.
MODULES="mpv capture web"
for f in quillmere $(for m in $MODULES; do echo "libquillmere-$m.so"; done); do
    if [ ! -f "$BUILD/bin/$f" ]; then
        echo "install: build the program first ($BUILD/bin/$f is missing)" >&2
        exit 1
    fi
done

# Entries relative to the prefix: "f <file>" for a file, "d <dir>" for a
# folder this installation created.
LIST="$(mktemp)"
trap 'rm -f "$LIST"' EXIT
folder() {
    if [ ! -d "$PREFIX/$1" ]; then
        folder "$(dirname "$1")"
        mkdir "$PREFIX/$1"
        echo "d $1" >> "$LIST"
    fi
}
[ -d "$PREFIX" ] || mkdir -p "$PREFIX"
folder lib/quillmere

# The program folder: executable, player and sound input modules, data.
install -m 755 "$BUILD/bin/quillmere" "$APPDIR/quillmere"
for module in $MODULES; do
    install -m 644 "$BUILD/bin/libquillmere-$module.so" "$APPDIR/libquillmere-$module.so"
    echo "f lib/quillmere/libquillmere-$module.so" >> "$LIST"
done
for sub in Files Files/Lang Bookmarks Demo; do folder "lib/quillmere/$sub"; done
cmake -DSRC="$SRC/data" -DDST="$APPDIR" -P "$SRC/data/LayOut.cmake"
echo "f lib/quillmere/quillmere" >> "$LIST"
(cd "$SRC/data" && find Files Demo Versioni.txt -type f ! -name .keep) | sed 's|^|f lib/quillmere/|' >> "$LIST"

# The command on the PATH.
folder bin
ln -sf "$APPDIR/quillmere" "$PREFIX/bin/quillmere"
echo "f bin/quillmere" >> "$LIST"

# Desktop entry, icons, metainfo.
folder share/applications
sed "s|@BINDIR@|$PREFIX/bin|" "$SRC/data/desktop/$ID.desktop.in" > "$PREFIX/share/applications/$ID.desktop"
echo "f share/applications/$ID.desktop" >> "$LIST"
for icon in "$SRC"/data/desktop/hicolor/*/apps/quillmere.png; do
    size="$(basename "$(dirname "$(dirname "$icon")")")"
    folder "share/icons/hicolor/$size/apps"
    install -m 644 "$icon" "$PREFIX/share/icons/hicolor/$size/apps/quillmere.png"
    echo "f share/icons/hicolor/$size/apps/quillmere.png" >> "$LIST"
done
folder share/metainfo
install -m 644 "$SRC/data/desktop/$ID.metainfo.xml" "$PREFIX/share/metainfo/$ID.metainfo.xml"
echo "f share/metainfo/$ID.metainfo.xml" >> "$LIST"

# A second installation over the first keeps the folders the first made.
MANIFEST="$APPDIR/.install-manifest"
if [ -f "$MANIFEST" ]; then
    grep '^d ' "$MANIFEST" >> "$LIST" || true
fi
echo "f lib/quillmere/.install-manifest" >> "$LIST"
sort -u "$LIST" > "$MANIFEST"

echo "Quillmere installed in $APPDIR"
case ":$PATH:" in
*":$PREFIX/bin:"*) ;;
*) echo "Note: $PREFIX/bin is not on your PATH; add it to start the program as 'quillmere'." ;;
esac
