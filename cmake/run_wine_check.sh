#!/bin/sh
# Runs a cross-built Windows check program under Wine in a prefix of its own.
#   run_wine_check.sh PROGRAM.exe PREFIX WINE WINEARCH
# WINE is the Wine of the program's architecture (WINEARCH win32 or win64).
# Exit status 77 (skipped) when the program has not been built or 64-bit
# Wine is missing; a missing 32-bit Wine fails.
exe=$1
prefix=$2
wine=${3:-wine}
arch=${4:-win64}
if [ ! -f "$exe" ]; then
  echo "skipped: $exe is not built (cmake --preset mingw-<arch> && cmake --build --preset mingw-<arch>)"
  exit 77
fi
if ! command -v "$wine" >/dev/null 2>&1; then
  if [ "$arch" = win32 ]; then
    echo "FAIL: 32-bit Wine is missing ($wine): scripts/install-deps.sh makes it"
    exit 1
  fi
  echo "skipped: wine is not installed"
  exit 77
fi
unset DISPLAY WAYLAND_DISPLAY
# No Mono or Gecko installation prompts while the prefix is made.
WINEPREFIX=$prefix WINEARCH=$arch WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" exec "$wine" "$exe"
