#!/bin/sh
# Makes a 32-bit Wine that runs from a folder of its own, for machines whose
# package sources cannot install wine32:i386 (a broken i386 index is enough
# to stop it): the i386 packages are downloaded with a private apt state, so
# the system gains no i386 architecture and no package, and unpacked with
# dpkg -x. The 32-bit loader then runs through the unpacked i386 ld.so with
# the unpacked libraries; the system's wineserver (package wine64) serves it.
#
#   scripts/wine32-root.sh ROOT      prints ROOT/bin/wine, the command to use
#
# Runs once; later calls only print the command. Use the command with a
# 32-bit prefix (WINEARCH=win32) and script paths in Z:\ form.
set -eu
root=${1:?usage: wine32-root.sh ROOT}
mkdir -p "$root"
root=$(cd "$root" && pwd)
tree=$root/tree
loader_dir=$tree/usr/lib/wine
if [ -x "$root/bin/wine" ] && [ -f "$loader_dir/wine.elf" ]; then
  echo "$root/bin/wine"
  exit 0
fi

# The i386 indexes, in a private state. An index that fails to download
# (the security suite's i386 index fails its size check on some mirrors) is
# left out: the main suite has every package needed.
apt_options="-o APT::Architectures::=amd64 -o APT::Architectures::=i386
  -o Dir::State::Lists=$root/apt/lists -o Dir::Cache=$root/apt/cache
  -o Dir::State::Status=/var/lib/dpkg/status -o APT::Sandbox::User=$(id -un)"
mkdir -p "$root/apt/lists/partial" "$root/apt/cache/archives/partial" "$root/debs"
# shellcheck disable=SC2086
apt-get $apt_options -qq update >/dev/null 2>&1 || true

# The loader, Wine's 32-bit DLLs and the C library. Without FreeType: with
# libfreetype6:i386 Wine's desktop process restarts without end here.
# zlib1.dll (a PE DLL) is what Debian's 32-bit user32.dll imports.
rm -f "$root"/debs/*.deb
# shellcheck disable=SC2086
(cd "$root/debs" && apt-get $apt_options -qq download \
  wine32:i386 libwine:i386 libc6:i386 libgcc-s1:i386 libz-mingw-w64) >/dev/null
rm -rf "$tree"
mkdir -p "$tree"
for deb in "$root"/debs/*.deb; do dpkg -x "$deb" "$tree"; done

# zlib1.dll goes beside Wine's own DLLs, marked as a Wine builtin DLL (the
# marker winebuild --builtin writes at offset 64), so that Wine loads it.
zlib=$tree/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
cp "$tree/usr/i686-w64-mingw32/lib/zlib1.dll" "$zlib"
{ printf 'Wine builtin DLL'; head -c 16 /dev/zero; } |
  dd of="$zlib" bs=1 seek=64 conv=notrunc status=none

# The loader's interpreter, /lib/ld-linux.so.2, is not on the system. Wine
# finds its own folder through /proc/self/exe and starts "<folder>/wine"
# again for new processes, so a copy of the i386 ld.so sits beside the
# loader, the real loader becomes wine.elf and "wine" runs it through that
# ld.so. (The unpacked wineserver starts the system's wineserver64.)
mv "$loader_dir/wine" "$loader_dir/wine.elf"
cp "$tree/lib/i386-linux-gnu/ld-linux.so.2" "$loader_dir/ld-linux.so.2"
cat >"$loader_dir/wine" <<EOF
#!/bin/sh
exec "$loader_dir/ld-linux.so.2" \\
  --library-path "$tree/lib/i386-linux-gnu:$tree/usr/lib/i386-linux-gnu" \\
  --argv0 "$loader_dir/wine" "$loader_dir/wine.elf" "\$@"
EOF
chmod +x "$loader_dir/wine"
mkdir -p "$root/bin"
cat >"$root/bin/wine" <<EOF
#!/bin/sh
exec "$loader_dir/wine" "\$@"
EOF
chmod +x "$root/bin/wine"
echo "$root/bin/wine"
