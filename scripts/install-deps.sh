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
libreoffice-writer-nogui poppler-utils
desktop-file-utils appstream
clang libclang-rt-14-dev
fonts-dejavu-core
"

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
