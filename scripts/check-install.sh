#!/usr/bin/env bash
# Installs the build into a clean DESTDIR, as the Debian package lays it out,
# and checks the tree: the programs, the desktop entry (desktop-file-validate),
# the icons, the man page and the bash completion, and that the installed
# kestractl runs.
set -euo pipefail
build=${1:?build folder}
dest=$(mktemp -d)
trap 'rm -rf "$dest"' EXIT
DESTDIR="$dest" cmake --install "$build" --prefix /usr > /dev/null
root="$dest/usr"
status=0
for f in bin/kestractl share/applications/kestra.desktop share/icons/hicolor/scalable/apps/kestra.svg \
         share/icons/hicolor/64x64/apps/kestra.png share/man/man1/kestractl.1 \
         share/bash-completion/completions/kestractl; do
  [ -f "$root/$f" ] || { echo "missing: /usr/$f"; status=1; }
done
if grep -q 'add_executable(kestra ' "$(dirname "$0")/../CMakeLists.txt" && [ -x "$build/kestra" ]; then
  [ -x "$root/bin/kestra" ] || { echo "missing: /usr/bin/kestra"; status=1; }
fi
command -v desktop-file-validate > /dev/null || { echo "desktop-file-validate is not installed"; exit 1; }
desktop-file-validate "$root/share/applications/kestra.desktop" | grep -v ': hint: ' && status=1
grep -q '^Categories=.*HamRadio;.*Utility;' "$root/share/applications/kestra.desktop" || { echo "categories"; status=1; }
version=$("$root/bin/kestractl" --version) || { echo "the installed kestractl does not run"; status=1; }
[[ $version == "kestractl "* ]] || { echo "unexpected version line: $version"; status=1; }
man -l "$root/share/man/man1/kestractl.1" > /dev/null 2>&1 || { echo "the man page does not format"; status=1; }
bash -n "$root/share/bash-completion/completions/kestractl" || status=1
exit $status
