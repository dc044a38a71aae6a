#!/usr/bin/env bash
# Builds Folioscope (installing missing Debian packages first) and runs every
# test: the unit and integration tests with the Windows DLLs under Wine, then
# the same Linux tests built with AddressSanitizer and
# UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
# Includes point only down the layers, the component reaches the OS only
# through the platform, functions stay short.
python3 scripts/check_layers.py
jobs=$(nproc)
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build build -j "$jobs"
# The Windows COM server, 32- and 64-bit, and its Windows Installer
# packages: the Wine tests of the ctest run below load both DLLs (the i686
# one under 32-bit Wine) and install both packages.
for preset in mingw-i686 mingw-x86_64; do
  cmake --preset "$preset"
  cmake --build --preset "$preset" -j "$jobs"
  cmake --build --preset "$preset" --target msi
done
ctest --test-dir build -j "$jobs" --output-on-failure
# The COM server's own test programs, Windows programs run under Wine.
ctest --test-dir build/mingw-i686 --output-on-failure
ctest --test-dir build/mingw-x86_64 --output-on-failure
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DFOLIOSCOPE_SANITIZE=ON
cmake --build build-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 ctest --test-dir build-asan -j "$jobs" --output-on-failure
