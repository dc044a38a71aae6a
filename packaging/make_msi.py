#!/usr/bin/env python3
"""Builds the Windows Installer package of the COM server with wixl.

  make_msi.py --arch x86|x64 --version 1.1.0 --app-dir build/mingw-i686
              --wine WINE --work DIR --output Folioscope-1.1.0-x86.msi

The package installs VBFolioscope.dll, Res\\ and sfn.dat into
[ProgramFilesFolder]Folioscope (ProgramFiles64Folder for x64) and carries
the server's registration as registry rows, so that a repair restores it and
an uninstall removes it. The rows are not written down anywhere: the DLL's
own DllRegisterServer runs under Wine (WINE, in a prefix of the package's
architecture kept in DIR), and every key it adds below Software\\Classes
becomes a row, with the DLL's path and folder turned into [#file] and
[INSTALLDIR]. A new class or interface thus reaches the package by itself.
"""

import argparse
import os
import shutil
import subprocess
import sys
import uuid
from xml.sax.saxutils import quoteattr

# One upgrade code per architecture: a newer package replaces an older one
# of the same architecture, and the two architectures install side by side.
UPGRADE_CODES = {
    "x86": "7C0F3B1E-5D2A-4E8B-9A61-3F0C2D9E4B11",
    "x64": "7C0F3B1E-5D2A-4E8B-9A61-3F0C2D9E4B64",
}
# Names of generated component ids derive from this namespace, so that the
# same file keeps its component GUID from one build to the next.
COMPONENT_NAMESPACE = uuid.UUID("0d6c3f8e-2b7a-4c41-9e55-6a1f0b7d3c29")
CAPTURE_FOLDER = "C:\\FolioscopeCapture"
DLL = "VBFolioscope.dll"


def log(text):
    print(text, flush=True)


# --- Wine's registry files -------------------------------------------------

def unescape(text):
    """The text of a Wine registry string (between the quotes, or a key)."""
    out, i = [], 0
    simple = {"\\": "\\", '"': '"', "n": "\n", "r": "\r", "t": "\t", "0": "\0"}
    while i < len(text):
        c = text[i]
        if c != "\\" or i + 1 == len(text):
            out.append(c)
            i += 1
        elif text[i + 1] == "x" and text[i + 2:i + 3] == "{":
            end = text.index("}", i)
            out.append(chr(int(text[i + 3:end], 16)))
            i = end + 1
        else:
            out.append(simple.get(text[i + 1], text[i + 1]))
            i += 2
    return "".join(out)


class RawValue(str):
    """A value that is no plain string (dword:, hex:, str(2):), as written."""


def parse_value(line):
    """(name, text) of one value line; name "" is the default value."""
    if line.startswith("@="):
        name, rest = "", line[2:]
    else:
        end = 1
        while line[end] != '"':
            end += 2 if line[end] == "\\" else 1
        name, rest = unescape(line[1:end]), line[end + 2:]
    if not (rest.startswith('"') and rest.endswith('"')):
        return name, RawValue(rest)
    return name, unescape(rest[1:-1])


def read_registry(path):
    """{key: {name: text}} of a Wine registry file (system.reg)."""
    keys, current = {}, None
    with open(path, encoding="utf-8", errors="surrogateescape") as f:
        for line in f:
            line = line.rstrip("\n")
            if line.startswith("["):
                current = unescape(line[1:line.rindex("]")])
                keys[current] = {}
            elif current is not None and line[:1] in ('"', "@"):
                name, text = parse_value(line)
                keys[current][name] = text
    return keys


# --- capturing the registration --------------------------------------------

class Prefix:
    def __init__(self, wine, arch, folder):
        self.wine, self.folder = wine, folder
        self.env = dict(os.environ, WINEPREFIX=folder, WINEDEBUG="-all",
                        WINEARCH="win32" if arch == "x86" else "win64",
                        WINEDLLOVERRIDES="mscoree,mshtml=")
        self.env.pop("DISPLAY", None)
        self.env.pop("WAYLAND_DISPLAY", None)

    def run(self, *args):
        return subprocess.run([self.wine, *args], env=self.env, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode

    def wait(self):
        # The server writes the registry files when it ends, a few seconds
        # after the last program.
        subprocess.run(["wineserver", "-w"], env=self.env, stdin=subprocess.DEVNULL)

    @property
    def system_reg(self):
        return os.path.join(self.folder, "system.reg")


def fresh_registry(prefix):
    """Brings the prefix back to its state before any registration: made
    once, its registry saved, and restored before every capture."""
    baseline = os.path.join(prefix.folder, "system.reg.baseline")
    if not os.path.isfile(baseline):
        shutil.rmtree(prefix.folder, ignore_errors=True)
        if prefix.run("wineboot", "--init") != 0:
            raise SystemExit("wineboot --init failed in " + prefix.folder)
        prefix.wait()
        shutil.copy2(prefix.system_reg, baseline)
    prefix.wait()
    shutil.copy2(baseline, prefix.system_reg)


def added_classes_keys(before, after):
    """{key: {name: text}}: the keys below Software\\Classes that `after` has
    and `before` lacks, or whose values changed (only those values). The
    Windows Installer's own bookkeeping below Classes\\Installer is left out."""
    added = {}
    for key, values in after.items():
        lower = key.lower()
        if not lower.startswith("software\\classes\\") or \
                lower.startswith("software\\classes\\installer\\"):
            continue
        new = {n: t for n, t in values.items() if before.get(key, {}).get(n) != t}
        if key not in before or new:
            added[key] = new
    # Wine's files leave out keys that hold only subkeys ("TypeLib\\{id}");
    # they are new as well when no earlier key lies below them.
    existing = {a.lower() for key in before for a in ancestors(key)}
    for key in list(added):
        for parent in ancestors(key)[:-1]:
            if parent.lower() not in existing and parent not in added:
                added[parent] = {}
    return added


def ancestors(key):
    """"A\\B\\C" -> ["A", "A\\B", "A\\B\\C"]."""
    parts = key.split("\\")
    return ["\\".join(parts[:i]) for i in range(1, len(parts) + 1)]


def capture_registration(prefix, dll):
    """{key: {name: text}}: what DllRegisterServer adds below Software\\Classes."""
    fresh_registry(prefix)
    before = read_registry(prefix.system_reg)
    folder = os.path.join(prefix.folder, "drive_c", CAPTURE_FOLDER[3:])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    shutil.copy2(dll, folder)
    status = prefix.run("regsvr32", "/s", CAPTURE_FOLDER + "\\" + DLL)
    prefix.wait()
    if status != 0:
        raise SystemExit(f"regsvr32 {DLL} failed under Wine (exit status {status})")
    added = added_classes_keys(before, read_registry(prefix.system_reg))
    if not added:
        raise SystemExit("DllRegisterServer added no keys below Software\\Classes")
    return added


def formatted(text):
    """A registry text as the Registry table's Formatted value: the DLL's
    path and folder become [#file] and [INSTALLDIR]; [ ] { } elsewhere are
    escaped."""
    dll_path = CAPTURE_FOLDER + "\\" + DLL
    if text.lower() == dll_path.lower():
        return "[#" + DLL + "]"
    if text.lower() == CAPTURE_FOLDER.lower():
        return "[INSTALLDIR]"
    if "[" in text or "]" in text:
        text = text.replace("[", "[\\[]").replace("]", "[\\]]")
    if text.startswith("#"):
        text = "#" + text  # "##..." keeps a leading '#' literal
    return text


# --- the package ---------------------------------------------------------

def component_guid(name):
    return str(uuid.uuid5(COMPONENT_NAMESPACE, name)).upper()


def ident(prefix, relative):
    """An MSI identifier for a file or folder (letters, digits, _ and .)."""
    clean = "".join(c if c.isalnum() or c in "._" else "_" for c in relative)
    return (prefix + clean)[:72]


def registry_xml(rows):
    lines = []
    for key in sorted(rows):
        values = rows[key]
        attrs = f'Root="HKLM" Key={quoteattr(key)}'
        # Name "*" without a value: the key is made on install (also when it
        # holds no value, as "Programmable") and removed with all it holds
        # on uninstall.
        lines.append(f'<RegistryValue {attrs} Name="*" Type="string" Value=""/>')
        for name in sorted(values):
            if isinstance(values[name], RawValue):
                raise SystemExit(f"{key}\\{name}: only string values can become rows, "
                                 f"not {values[name]}")
            name_attr = f" Name={quoteattr(name)}" if name else ""
            lines.append(f'<RegistryValue {attrs}{name_attr} Type="string" '
                         f'Value={quoteattr(formatted(values[name]))}/>')
    return lines


def tree_xml(app_dir, folder, arch, indent):
    """Directory and Component elements of the files below `folder` (one
    component per file); returns (lines, component ids)."""
    lines, components = [], []
    root = os.path.join(app_dir, folder)
    for name in sorted(os.listdir(root)):
        path = os.path.join(root, name)
        relative = os.path.join(folder, name)
        if os.path.isdir(path):
            sub, ids = tree_xml(app_dir, relative, arch, indent + "  ")
            lines.append(f'{indent}<Directory Id="{ident("D_", relative)}" Name={quoteattr(name)}>')
            lines += sub
            lines.append(f"{indent}</Directory>")
            components += ids
        else:
            cid = ident("C_", relative)
            lines.append(f'{indent}<Component Id="{cid}" Guid="{component_guid(arch + relative)}"'
                         f'{WIN64[arch]}>')
            lines.append(f'{indent}  <File Id="{ident("F_", relative)}" Name={quoteattr(name)} '
                         f'Source={quoteattr(relative)} KeyPath="yes"/>')
            lines.append(f"{indent}</Component>")
            components.append(cid)
    return lines, components


WIN64 = {"x86": "", "x64": ' Win64="yes"'}


def wxs(args, rows):
    arch = args.arch
    program_files = "ProgramFiles64Folder" if arch == "x64" else "ProgramFilesFolder"
    res_lines, res_components = tree_xml(args.app_dir, "Res", arch, "          ")
    registry = "\n".join("            " + line for line in registry_xml(rows))
    refs = "\n".join(f'      <ComponentRef Id="{c}"/>'
                     for c in ["C_Server", "C_Keywords"] + res_components)
    res = "\n".join(res_lines)
    return f"""<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
  <Product Id="*" Name="Folioscope {args.version} ({arch})" Language="1033"
           Version="{args.version}" Manufacturer="Quillon" UpgradeCode="{UPGRADE_CODES[arch]}">
    <Package InstallerVersion="500" Compressed="yes" InstallScope="perMachine"
             Description="Folioscope COM server VBFolioscope.dll" Manufacturer="Quillon"/>
    <Media Id="1" Cabinet="folioscope.cab" EmbedCab="yes"/>
    <MajorUpgrade DowngradeErrorMessage="A newer version of Folioscope is already installed."/>
    <Directory Id="TARGETDIR" Name="SourceDir">
      <Directory Id="{program_files}">
        <Directory Id="INSTALLDIR" Name="Folioscope">
          <Component Id="C_Server" Guid="{component_guid(arch + DLL)}"{WIN64[arch]}>
            <File Id="{DLL}" Name="{DLL}" Source="{DLL}" KeyPath="yes"/>
{registry}
          </Component>
          <Component Id="C_Keywords" Guid="{component_guid(arch + 'sfn.dat')}"{WIN64[arch]}>
            <File Id="sfn.dat" Name="sfn.dat" Source="sfn.dat" KeyPath="yes"/>
          </Component>
          <Directory Id="D_Res" Name="Res">
{res}
          </Directory>
        </Directory>
      </Directory>
    </Directory>
    <Feature Id="Server" Level="1">
{refs}
    </Feature>
  </Product>
</Wix>
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--arch", choices=("x86", "x64"), required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("--app-dir", required=True, help="the DLL, Res/ and sfn.dat")
    parser.add_argument("--wine", required=True, help="the Wine of the package's architecture")
    parser.add_argument("--work", required=True, help="the capture prefix and the .wxs")
    parser.add_argument("--output", required=True)
    args = parser.parse_args()
    os.makedirs(args.work, exist_ok=True)
    prefix = Prefix(args.wine, args.arch, os.path.join(os.path.abspath(args.work), "prefix"))
    rows = capture_registration(prefix, os.path.join(args.app_dir, DLL))
    log(f"{len(rows)} registry keys from DllRegisterServer ({args.arch})")
    source = os.path.join(args.work, f"Folioscope-{args.arch}.wxs")
    with open(source, "w", encoding="utf-8") as f:
        f.write(wxs(args, rows))
    # wixl reads the files relative to its working folder (Source names are
    # relative to the application folder).
    subprocess.run(["wixl", "--arch", args.arch, "-o", os.path.abspath(args.output),
                    os.path.abspath(source)], check=True, cwd=args.app_dir)
    log("Windows Installer package: " + args.output)
    return 0


if __name__ == "__main__":
    sys.exit(main())
