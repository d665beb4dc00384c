#!/usr/bin/env bash
# A short run (a few seconds) of each fuzz target of the readers of outside
# input, under AddressSanitizer and UndefinedBehaviorSanitizer. A crash or a
# broken rule of a target fails the run. Without clang it says so and passes.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v clang++ >/dev/null 2>&1; then
    echo "fuzz smoke run: skipped, no clang++ on this machine"
    exit 0
fi
CXX=clang++ cmake -S fuzz -B build-fuzz -G Ninja >/dev/null
cmake --build build-fuzz -j "$(nproc)" >/dev/null
for target in build-fuzz/*_fuzz; do
    corpus="build-fuzz/corpus-$(basename "$target")"
    mkdir -p "$corpus"
    "$target" -max_total_time="${KESTRA_FUZZ_SECONDS:-5}" -print_final_stats=1 "$corpus" 2>&1 | tail -n 3
done
echo "fuzz smoke run: no crash"
