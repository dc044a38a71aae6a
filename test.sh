#!/usr/bin/env bash
# Builds Folioscope (installing missing Debian packages first) and runs every
# test: the unit and integration tests, then the same tests built with
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
jobs=$(nproc)
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build build -j "$jobs"
ctest --test-dir build -j "$jobs" --output-on-failure
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFOLIOSCOPE_SANITIZE=ON
cmake --build build-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 ctest --test-dir build-asan -j "$jobs" --output-on-failure
