#!/usr/bin/env bash
# Installs the Debian packages Kestra Console needs to build, run and test.
# Packages already present are left alone; nothing is fetched when all are there.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins qt6-serialport-dev qt6-multimedia-dev
  libqt6svg6   # draws the SVG pictures of the toolbar and the window icon
  libgl-dev libxkbcommon-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth fonts-liberation poppler-utils
  desktop-file-utils man-db dpkg-dev
  libhamlib-utils python3
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
