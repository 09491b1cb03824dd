#!/bin/sh
# Installs the Debian packages that building, running and testing need.
# Idempotent: packages already present are not fetched again, and nothing
# is asked when everything is in place.
set -eu

PACKAGES="
build-essential cmake pkg-config
qt6-base-dev qt6-base-dev-tools qt6-multimedia-dev libqt6opengl6-dev
libqt6svg6 qt6-image-formats-plugins qt6-qpa-plugins
libmpv-dev libgl-dev libgl1-mesa-dri
libavformat-dev libavcodec-dev libswresample-dev libavutil-dev libxkbcommon-dev
libgtest-dev googletest
xvfb xauth xdotool x11-xkb-utils x11-utils openbox dbus
espeak-ng sox libsox-fmt-all ffmpeg
pulseaudio pulseaudio-utils libpulse-dev
libx11-dev libxtst-dev
libreoffice-writer-nogui poppler-utils
desktop-file-utils appstream
clang libclang-rt-14-dev
fonts-dejavu-core
"

# The udev rule that lets the user at the seat read USB foot pedals; only
# root may install it (the README tells how otherwise).
rule="$(dirname "$0")/../data/udev/70-quillmere-pedals.rules"
if [ "$(id -u)" -eq 0 ] && [ -d /etc/udev/rules.d ] \
    && ! cmp -s "$rule" /etc/udev/rules.d/70-quillmere-pedals.rules; then
    cp "$rule" /etc/udev/rules.d/
    udevadm control --reload-rules 2>/dev/null || true
    udevadm trigger --subsystem-match=hidraw --subsystem-match=input 2>/dev/null || true
fi

missing=""
for p in $PACKAGES; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing="$missing $p"
    fi
done

if [ -z "$missing" ]; then
    exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
    SUDO="sudo"
fi

echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
# shellcheck disable=SC2086
$SUDO apt-get install -y -qq --no-install-recommends $missing
