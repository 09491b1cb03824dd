#!/bin/sh
# Removes what scripts/install.sh laid down under the prefix (make uninstall
# PREFIX=...), and nothing else: the user's settings, recent lists,
# bookmarks and documents in the program folder stay, and so does the
# folder while it holds any of them. The settings file counts as the user's
# once it differs from the one shipped.
set -eu

PREFIX="${1:-$HOME/.local}"
SRC="$(cd "$(dirname "$0")/.." && pwd)"
case "$PREFIX" in /*) ;; *) PREFIX="$(pwd)/$PREFIX" ;; esac
MANIFEST="$PREFIX/lib/quillmere/.install-manifest"

if [ ! -f "$MANIFEST" ]; then
    echo "uninstall: nothing installed in $PREFIX (no $MANIFEST)" >&2
    exit 1
fi
ENTRIES="$(cat "$MANIFEST")"

echo "$ENTRIES" | sed -n 's/^f //p' | while IFS= read -r path; do
    target="$PREFIX/$path"
    if [ "$path" = "lib/quillmere/Files/Quillmere.ini" ] \
        && ! cmp -s "$target" "$SRC/data/Files/Quillmere.ini"; then
        continue
    fi
    if [ -f "$target" ] || [ -L "$target" ]; then
        rm -f "$target"
    fi
done

# The folders it made, deepest first, as far as they are empty now.
echo "$ENTRIES" | sed -n 's/^d //p' | sort -r | while IFS= read -r dir; do
    rmdir "$PREFIX/$dir" 2>/dev/null || true
done
echo "Quillmere removed from $PREFIX"
