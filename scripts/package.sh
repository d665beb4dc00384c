#!/usr/bin/env bash
# Builds the Debian package of Kestra Console and installs it with apt.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
(cd build && cpack -G DEB)
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
deb=$(ls -t build/kestra-console_*.deb | head -n 1)
$sudo apt-get install -y "./$deb"
