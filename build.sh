#!/usr/bin/env bash
# Builds Folioscope (installing missing Debian packages first) and runs the
# main job.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build build
# The Debian package build/folioscope_<version>_amd64.deb.
cmake --build build --target package
# The Windows COM server, 32- and 64-bit (see the README's "Windows"), and
# its Windows Installer packages build/Folioscope-<version>-x86.msi / -x64.msi.
for preset in mingw-i686 mingw-x86_64; do
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  cmake --build --preset "$preset" --target msi
done
# build/report belongs to the build (trees from before the report marker lack it).
./build/folioscope --registry build/registry.reg report examples/Kontor/Kontor.vbp -o build/report \
  --force
echo "Open the sample report: build/report/_Index.htm"
echo "Windows COM server: build/mingw-i686/VBFolioscope.dll, build/mingw-x86_64/VBFolioscope.dll"
echo "Packages: $(cd build && echo folioscope_*_amd64.deb Folioscope-*-x86.msi Folioscope-*-x64.msi)"
