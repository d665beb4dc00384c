#!/usr/bin/env bash
# Installs what is needed, builds, and starts the desktop program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
exec ./build/kestra "$@"
