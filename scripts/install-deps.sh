#!/usr/bin/env bash
# Installs the Debian packages listed in scripts/debian-packages.txt (and in
# any further list given as arguments) that are not installed yet.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
lists=("$here/debian-packages.txt" "$@")
missing=()
for list in "${lists[@]}"; do
  while read -r pkg _; do
    [[ -z "$pkg" || "$pkg" == \#* ]] && continue
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
  done < "$list"
done
if ((${#missing[@]})); then
  echo "Installing Debian packages: ${missing[*]}"
  sudo=""
  [[ $(id -u) -eq 0 ]] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# 32-bit Wine runs the i686 DLL, the one a 32-bit IDE loads. It comes from
# the i386 architecture, whose package index some mirrors serve broken, and
# the tests' 32-bit path has not yet run on a machine that had it: asked for
# with FOLIOSCOPE_WINE32=1, try it once, and go on with 64-bit Wine (the
# x86_64 DLL) when it cannot be had.
# A failed attempt takes the i386 architecture away again (so later
# apt-get updates are not broken by it) and is remembered in build/.
wine32_failed="$here/../build/.wine32-unavailable"
if [[ -n "${FOLIOSCOPE_WINE32:-}" && ! -e "$wine32_failed" ]] &&
   ! dpkg-query -W -f='${Status}' wine32:i386 2>/dev/null | grep -q "install ok installed"; then
  sudo=""
  [[ $(id -u) -eq 0 ]] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  added=""
  dpkg --print-foreign-architectures | grep -qx i386 || added=yes
  if $sudo dpkg --add-architecture i386 &&
     $sudo apt-get update -qq &&
     $sudo apt-get install -y -qq --no-install-recommends wine32:i386; then
    echo "32-bit Wine installed: the Wine tests use the i686 DLL"
  else
    echo "32-bit Wine could not be installed: the Wine tests use the x86_64 DLL"
    if [[ -n "$added" ]]; then
      $sudo dpkg --remove-architecture i386 || true
      $sudo apt-get update -qq || true
    fi
    mkdir -p "$(dirname "$wine32_failed")" && touch "$wine32_failed"
  fi
fi
