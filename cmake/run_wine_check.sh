#!/bin/sh
# Runs a cross-built Windows check program under Wine in a prefix of its own.
#   run_wine_check.sh PROGRAM.exe PREFIX
# Exit status 77 (skipped) when the program has not been built or Wine is
# missing.
exe=$1
prefix=$2
if [ ! -f "$exe" ]; then
  echo "skipped: $exe is not built (cmake --preset mingw-x86_64 && cmake --build --preset mingw-x86_64)"
  exit 77
fi
if ! command -v wine >/dev/null 2>&1; then
  echo "skipped: wine is not installed"
  exit 77
fi
unset DISPLAY WAYLAND_DISPLAY
# No Mono or Gecko installation prompts while the prefix is made.
WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" exec wine "$exe"
