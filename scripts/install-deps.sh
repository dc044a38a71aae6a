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

# 32-bit Wine runs the i686 DLL, the one a 32-bit IDE loads. Debian's
# wine32:i386 needs the i386 architecture, whose package index some mirrors
# serve broken; so unless it is installed already, its packages are
# unpacked into build/wine32-root, which changes nothing on the system.
if [[ ! -x /usr/lib/wine/wine ]]; then
  "$here/wine32-root.sh" "$here/../build/wine32-root" >/dev/null
fi
