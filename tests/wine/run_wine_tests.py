#!/usr/bin/env python3
"""Runs the VBFolioscope COM server under Wine.

Every step runs for one architecture (--arch): the i686 DLL under 32-bit
Wine in a 32-bit prefix (--wine names that Wine), the x86_64 DLL under 64-bit
Wine. One Wine prefix per architecture serves a whole ctest run; the steps
are separate commands so that each check is its own CTest test:

  setup    makes (or reuses) the prefix, lays out an application folder with
           the DLL, Res/ and sfn.dat, imports the report settings into the Wine
           registry, registers the DLL with regsvr32 and writes the Linux
           reference report with the same settings;
  vbs      runs one test script with cscript (the script ends with the line
           "wine-test-done" and quits with its number of failed checks);
  events   runs the Windows event client (progress events through
           connection points);
  readme   runs the VBScript example of README.md;
  cleanup  unregisters the DLL and checks that its classes are gone, then
           registers it for the current user only and unregisters again;
  msi      installs the Windows Installer package in a fresh prefix, writes
           the sample report through it and uninstalls it again.

Exit status 77 means "skipped": no cross-built DLL, or no 64-bit Wine. A
missing 32-bit Wine is a failure: the i686 DLL is the one the IDE loads.
"""

import argparse
import filecmp
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unicodedata

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..",
                                "packaging"))
import make_msi  # noqa: E402  (the registry reader of the package build)

SKIP = 77
DONE_MARKER = "wine-test-done"
# Wine reports an uncaught script error only through these debug channels;
# cscript itself still exits with status 0.
SCRIPT_ERROR_MARKERS = ("OnScriptError", "ParseScriptText failed", "parser_error")

# The preview pages compared by test_pages.vbs: file, kind, module, member.
PREVIEW_PAGES = [
    ("Projekt.htm", "project", "CKonto", "Buchen"),
    ("CKonto.htm", "module", "CKonto", "Buchen"),
    ("CKonto_Buchen.htm", "member", "CKonto", "Buchen"),
]

# The settings of both runs. Every value is written explicitly: the Linux host
# fills in defaults that a fresh Windows registry does not hold. The title has
# characters outside ASCII, so the registry's code-page handling is compared
# as well.
SETTINGS = [
    ("ReportPath", "Standard"),
    ("ReportLanguage", "Deutsch"),
    ("DelFilesAfterCHMCompiling", "0"),
    ("ShowModulePath", "0"),
    ("ShowModuleRelativePath", "1"),
    ("ShowLOCForModuls", "1"),
    ("ShowLOCForProjects", "1"),
    ("ShowHelpContextID", "1"),
    ("ShowVBInternDescription", "1"),
    ("ToolBarPublicValue", "1"),
    ("ToolBarFriendValue", "1"),
    ("ToolBarPrivateValue", "0"),
    ("ReportStdTitle", "Kontor \u2013 Referenz f\u00fcr \u00c4nderungen"),
    ("CHMReportTitle", "Kontor-Hilfe"),
    ("LNR", "0"),
]


def log(text):
    print(text, flush=True)


def windows_path(path):
    """The Wine name of a Linux path (drive Z: is the Linux root)."""
    return "Z:" + os.path.abspath(path).replace("/", "\\")


class Wine:
    """The Wine commands of one prefix and one architecture."""

    def __init__(self, work, arch, command, prefix=None):
        self.work = work
        self.arch = arch
        self.command = command
        self.prefix = prefix or os.path.join(work, "prefix")
        self.env = dict(os.environ)
        self.env.pop("DISPLAY", None)
        self.env.pop("WAYLAND_DISPLAY", None)
        self.env.update({
            "WINEPREFIX": self.prefix,
            # Script errors are only visible through these channels.
            "WINEDEBUG": "-all,fixme+wscript,fixme+vbscript,err+vbscript",
            # No Mono or Gecko installer prompts.
            "WINEDLLOVERRIDES": "mscoree,mshtml=",
            # The i686 DLL runs in a 32-bit prefix, where the 32-bit
            # programs live in system32 as on 32-bit Windows.
            "WINEARCH": "win32" if arch == "i686" else "win64",
        })
        self.env.setdefault("LANG", "C.UTF-8")
        system = "C:\\windows\\system32\\"
        self.regsvr32 = system + "regsvr32.exe"
        self.cscript = system + "cscript.exe"
        self.msiexec = system + "msiexec.exe"

    def run(self, args, timeout=300, dialog_log=None):
        """Runs a Windows program; with `dialog_log`, the component writes its
        message boxes and error dialogs into that file instead of showing them."""
        env = dict(self.env)
        if dialog_log:
            env["FOLIOSCOPE_DIALOG_LOG"] = windows_path(dialog_log)
        # Output goes to files, not pipes: the Wine services that the first
        # program of a session starts inherit the handles, and a pipe would
        # only reach its end when they exit, a minute later.
        with tempfile.TemporaryFile() as out_file, tempfile.TemporaryFile() as err_file:
            started = time.monotonic()
            proc = subprocess.run([self.command] + args, env=env, timeout=timeout,
                                  stdin=subprocess.DEVNULL, stdout=out_file, stderr=err_file)
            elapsed = time.monotonic() - started
            out_file.seek(0)
            err_file.seek(0)
            # Programs write the ANSI code page (1252) into a file.
            out = out_file.read().decode("cp1252", "replace").replace("\r\n", "\n")
            err = err_file.read().decode("utf-8", "replace").replace("\r\n", "\n")
        return proc.returncode, out, err, elapsed

    def server(self, option):
        # The server outlives this script: it must not hold CTest's output
        # pipe open, or CTest waits for it.
        subprocess.run(["wineserver", option], env=self.env, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def keep_server(self):
        # One wineserver for all steps of the run instead of one start per
        # program (each start costs seconds); it ends 60 s after the last use.
        self.server("-p60")

    def stop_server(self):
        self.server("-k")


def dll_folder(args):
    """The build folder of this architecture's DLL. FOLIOSCOPE_WINE_DLL_DIR
    names another build folder of the x86_64 DLL."""
    if args.arch == "x86_64" and os.environ.get("FOLIOSCOPE_WINE_DLL_DIR"):
        return os.environ["FOLIOSCOPE_WINE_DLL_DIR"]
    return os.path.join(args.source_dir, "build", "mingw-" + args.arch)


def missing_wine(args):
    """None, or why this architecture's Wine cannot run (with the exit status)."""
    if args.arch == "i686":
        if not os.access(args.wine, os.X_OK):
            return 1, (f"32-bit Wine is missing ({args.wine}): scripts/install-deps.sh "
                       "makes it (scripts/wine32-root.sh)")
    elif shutil.which(args.wine) is None:
        return SKIP, "wine is not installed"
    return None


def state_file(work):
    return os.path.join(work, "state.json")


def load_state(work):
    try:
        with open(state_file(work)) as f:
            return json.load(f)
    except OSError:
        return None


def copy_app_folder(dll_build, linux_app_dir, target, with_dll):
    """An application folder: the DLL, Res/ and sfn.dat side by side."""
    shutil.rmtree(target, ignore_errors=True)
    os.makedirs(target)
    origin = dll_build if os.path.isdir(os.path.join(dll_build, "Res")) else linux_app_dir
    shutil.copytree(os.path.join(origin, "Res"), os.path.join(target, "Res"))
    sfn = os.path.join(dll_build, "sfn.dat")
    if not os.path.isfile(sfn):
        sfn = os.path.join(linux_app_dir, "sfn.dat")
    if os.path.isfile(sfn):
        shutil.copy2(sfn, os.path.join(target, "sfn.dat"))
    if with_dll:
        shutil.copy2(os.path.join(dll_build, "VBFolioscope.dll"), target)
    return origin


def write_settings(folioscope, hive):
    if os.path.exists(hive):
        os.remove(hive)
    for name, value in SETTINGS:
        subprocess.run([folioscope, "--registry", hive, "config", "set", name, value],
                       check=True, stdout=subprocess.DEVNULL)


def write_unicode_reg(hive, target):
    """The settings file of the Linux run as a UTF-16 registry file with plain
    strings. Wine's import widens the bytes of a hex(1) value one by one
    instead of reading them as UTF-16, so the strings outside ASCII that the
    Linux host writes as hex(1) are turned into quoted text first."""
    with open(hive, "rb") as f:
        lines = f.read().decode("ascii").splitlines()
    joined, pending = [], ""
    for line in lines:  # hex values continue over lines ending in a backslash
        if line.endswith("\\"):
            pending += line[:-1].strip()
            continue
        joined.append(pending + line.strip() if pending else line)
        pending = ""
    out = []
    for line in joined:
        name, sep, value = line.partition("=")
        if sep and value.startswith("hex(1):"):
            data = bytes(int(b, 16) for b in value[len("hex(1):"):].split(",") if b)
            text = data.decode("utf-16-le").rstrip("\0")
            value = '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'
        out.append(name + sep + value)
    with open(target, "wb") as f:
        f.write(("\r\n".join(out) + "\r\n").encode("utf-16"))


def make_prefix(wine):
    stamp = os.path.join(wine.prefix, ".folioscope-stamp")
    if os.path.isfile(stamp):
        log("Wine prefix: reused " + wine.prefix)
        return
    shutil.rmtree(wine.prefix, ignore_errors=True)
    started = time.monotonic()
    rc, out, err, _ = wine.run(["wineboot", "--init"], timeout=600)
    wine.server("-w")
    log(f"Wine prefix: created in {time.monotonic() - started:.1f} s ({wine.prefix})")
    if rc != 0:
        log(out + err)
        raise SystemExit("wineboot --init failed")
    with open(stamp, "w") as f:
        f.write("folioscope wine tests\n")


def setup(args):
    work = args.work
    os.makedirs(work, exist_ok=True)
    if os.path.exists(state_file(work)):
        os.remove(state_file(work))
    missing = missing_wine(args)
    if missing:
        log(("Wine tests skipped: " if missing[0] == SKIP else "FAIL: ") + missing[1])
        return missing[0]
    arch, dll_build = args.arch, dll_folder(args)
    if not os.path.isfile(os.path.join(dll_build, "VBFolioscope.dll")):
        log(f"Wine tests skipped: no VBFolioscope.dll in {dll_build}: build it with "
            f"cmake --preset mingw-{arch} && cmake --build --preset mingw-{arch}")
        return SKIP
    log(f"Wine tests: the {arch} DLL under {args.wine}")
    started = time.monotonic()
    wine = Wine(work, arch, args.wine)
    make_prefix(wine)
    wine.keep_server()
    log(f"Wine prefix ready: {time.monotonic() - started:.1f} s")

    app = os.path.join(work, "app")
    origin = copy_app_folder(dll_build, args.linux_app_dir, app, with_dll=True)
    log(f"Application folder: {app} (Res/ from {origin})")
    # The Linux run gets its own copy of the same report set and keyword list.
    linux_app = os.path.join(work, "linux-app")
    copy_app_folder(dll_build, args.linux_app_dir, linux_app, with_dll=False)

    hive = os.path.join(work, "settings.reg")
    write_settings(args.folioscope, hive)
    import_file = os.path.join(work, "settings-utf16.reg")
    write_unicode_reg(hive, import_file)
    rc, out, err, elapsed = wine.run(["reg", "import", windows_path(import_file)])
    log(f"reg import {import_file}: exit status {rc} ({elapsed:.1f} s)")
    if rc != 0:
        log(out + err)
        log("FAIL: regedit could not import the settings")
        return 1

    dll = windows_path(os.path.join(app, "VBFolioscope.dll"))
    rc, out, err, elapsed = wine.run([wine.regsvr32, "/s", dll])
    log(f"regsvr32 /s {dll}: exit status {rc} ({elapsed:.1f} s)")
    if rc != 0:
        log(out + err)
        return 1

    linux_started = time.monotonic()
    reference = os.path.join(work, "linux-report")
    shutil.rmtree(reference, ignore_errors=True)
    subprocess.run([args.folioscope, "--registry", hive, "--app-dir", linux_app, "--quiet",
                    "--no-progress", "report", args.project, "-o", reference], check=True,
                   stdout=subprocess.DEVNULL)

    # The preview pages of test_pages.vbs, as the Linux host builds them.
    pages = os.path.join(work, "linux-pages")
    shutil.rmtree(pages, ignore_errors=True)
    os.makedirs(pages)
    for file_name, kind, module, member in PREVIEW_PAGES:
        with open(os.path.join(pages, file_name), "wb") as f:
            subprocess.run([args.folioscope, "--registry", hive, "--app-dir", linux_app, "--quiet",
                            "page", kind, args.project, "--module", module, "--member", member],
                           check=True, stdout=f)

    # The umlaut project, written as a Git checkout leaves it (UTF-8 names),
    # and its Linux report.
    sys.path.insert(0, os.path.join(args.source_dir, "tests", "umlauts"))
    import umlaut_fixture
    umlaut_folder = os.path.join(work, "umlauts")
    shutil.rmtree(umlaut_folder, ignore_errors=True)
    umlaut_project = umlaut_fixture.write_project(umlaut_folder)
    umlaut_reference = os.path.join(work, "linux-umlauts")
    shutil.rmtree(umlaut_reference, ignore_errors=True)
    subprocess.run([args.folioscope, "--registry", hive, "--app-dir", linux_app, "--quiet",
                    "--no-progress", "report", umlaut_project, "-o", umlaut_reference],
                   check=True, stdout=subprocess.DEVNULL)

    log(f"Linux reference report and pages: {time.monotonic() - linux_started:.1f} s")
    outputs = os.path.join(work, "out")
    shutil.rmtree(outputs, ignore_errors=True)
    os.makedirs(outputs)
    with open(state_file(work), "w") as f:
        json.dump({"arch": arch, "app": app, "settings": import_file, "linux_app": linux_app,
                   "reference": reference, "pages": pages, "outputs": outputs,
                   "project": args.project, "umlaut_project": umlaut_project,
                   "umlaut_reference": umlaut_reference}, f)
    log(f"Wine setup: {time.monotonic() - started:.1f} s")
    return 0


def report_differences(expected_dir, actual_dir, normalize=None, part=False):
    """Compares every file of two folders byte for byte; returns the faults.
    `normalize` (Linux bytes, Wine bytes) -> (bytes, bytes) is applied first.
    With `part`, the Wine folder holds a part of the report: files the Linux
    report has and the Wine folder lacks are no fault."""
    faults = []
    if not os.path.isdir(actual_dir):
        return [f"no report folder {actual_dir}"]

    def files(root):
        """The files below `root` by their names as text: UTF-8 as the Linux
        host and Wine write them, a raw Windows-1252 name read as such.
        The Linux host marks its output folders as report folders; the marker
        is the host's, not part of the report."""
        found = {}
        for folder, _, names in os.walk(os.fsencode(root)):
            for name in names:
                path = os.path.join(folder, name)
                relative = os.path.relpath(path, os.fsencode(root))
                try:
                    text = relative.decode("utf-8")
                except UnicodeDecodeError:
                    text = relative.decode("cp1252", "replace")
                if text != ".folioscope-report":
                    found[unicodedata.normalize("NFC", text)] = path
        return found

    expected_paths, actual_paths = files(expected_dir), files(actual_dir)
    expected, actual = set(expected_paths), set(actual_paths)
    for name in sorted(expected - actual) if not part else []:
        faults.append("missing under Wine: " + name)
    for name in sorted(actual - expected):
        faults.append("only under Wine: " + name)
    for name in sorted(expected & actual):
        with open(expected_paths[name], "rb") as f:
            x = f.read()
        with open(actual_paths[name], "rb") as f:
            y = f.read()
        if normalize is not None:
            x, y = normalize(x, y)
        if x != y:
            faults.append("differs: " + name + first_difference(x, y))
    if len(faults) > 8:
        faults[8:] = [f"... and {len(faults) - 8} more files"]
    return faults


def first_difference(x, y):
    at = next((i for i in range(min(len(x), len(y))) if x[i] != y[i]), min(len(x), len(y)))
    return (f" (sizes {len(x)}/{len(y)}, first difference at byte {at}: "
            f"Linux {x[max(0, at - 30):at + 30]!r} / Wine {y[max(0, at - 30):at + 30]!r})")


def preview_normalizer(state):
    """Preview pages name the report set's files by the application folder's
    path, which differs between the two systems: both become "@SET@"."""
    linux = (state["linux_app"] + "/Res/Standard/").encode()
    wine = (windows_path(state["app"]) + "\\Res\\Standard\\").encode()

    def normalize(x, y):
        return x.replace(linux, b"@SET@"), y.replace(wine, b"@SET@")
    return normalize


def checked_state(work):
    state = load_state(work)
    if state is None:
        log("skipped: the Wine setup did not run or was skipped")
    return state


def run_vbs(args):
    state = checked_state(args.work)
    if state is None:
        return SKIP
    wine = Wine(args.work, state["arch"], args.wine)
    name = os.path.splitext(os.path.basename(args.script))[0]
    # Wine's VBScript has no ExecuteGlobal, so the shared helpers are put in
    # front of the test script.
    combined_dir = os.path.join(args.work, "scripts")
    os.makedirs(combined_dir, exist_ok=True)
    combined = os.path.join(combined_dir, name + ".vbs")
    with open(combined, "wb") as out:
        for part in (os.path.join(os.path.dirname(os.path.abspath(args.script)), "lib.vbs"),
                     args.script):
            with open(part, "rb") as f:
                out.write(f.read().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n"))
    output_dir = os.path.join(state["outputs"], name)
    shutil.rmtree(output_dir, ignore_errors=True)
    os.makedirs(output_dir)
    rc, out, err, elapsed = wine.run(
        [wine.cscript, "//nologo", windows_path(combined), windows_path(state["app"]),
         windows_path(output_dir), windows_path(args.source_dir),
         windows_path(state["project"]), windows_path(state["umlaut_project"])],
        timeout=args.timeout,
        dialog_log=os.path.join(output_dir, "dialogs.log") if args.dialog_log else None)
    sys.stdout.write(out)
    faults = []
    script_errors = [line for line in err.splitlines()
                     if any(m in line for m in SCRIPT_ERROR_MARKERS)]
    if script_errors:
        faults.append("script error (Wine does not say which line):\n  " +
                      "\n  ".join(script_errors))
    if DONE_MARKER not in out:
        faults.append("the script did not reach its end")
    if rc != 0:
        faults.append(f"failed checks (exit status {rc})")
    if args.compare:
        faults += report_differences(state["reference"], os.path.join(output_dir, args.compare))
    if args.compare_umlauts:
        faults += report_differences(state["umlaut_reference"],
                                     os.path.join(output_dir, args.compare_umlauts))
    for part in args.compare_part or []:
        faults += report_differences(state["reference"], os.path.join(output_dir, part),
                                     part=True)
    if args.compare_pages:
        faults += report_differences(state["pages"], output_dir, preview_normalizer(state))
    return finish(name, faults, elapsed)


def readme_script(args):
    """The README's VBScript example as a file (None when there is none)."""
    with open(os.path.join(args.source_dir, "README.md"), encoding="utf-8") as f:
        text = f.read()
    start = text.find("```vbscript\n")
    if start < 0:
        return None
    start += len("```vbscript\n")
    path = os.path.join(args.work, "scripts", "readme_document.vbs")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="cp1252", newline="\r\n") as f:
        f.write(text[start:text.index("```", start)])
    return path


def run_readme(args):
    """The README's VBScript example, run as a user would run it."""
    state = checked_state(args.work)
    if state is None:
        return SKIP
    path = readme_script(args)
    if path is None:
        return finish("readme", ["no vbscript example in README.md"], 0)
    output_dir = os.path.join(state["outputs"], "readme")
    shutil.rmtree(output_dir, ignore_errors=True)
    os.makedirs(output_dir)
    wine = Wine(args.work, state["arch"], args.wine)
    rc, out, err, elapsed = wine.run([wine.cscript, "//nologo", windows_path(path),
                                      windows_path(state["project"]), windows_path(output_dir)],
                                     timeout=args.timeout)
    sys.stdout.write(out)
    faults = [line for line in err.splitlines() if any(m in line for m in SCRIPT_ERROR_MARKERS)]
    if "Report: " not in out or rc != 0:
        faults.append(f"the example did not finish (exit status {rc})")
    faults += report_differences(state["reference"], os.path.join(output_dir, "Kontor"))
    return finish("readme", faults, elapsed)


def run_events(args):
    state = checked_state(args.work)
    if state is None:
        return SKIP
    client = args.client_i686 if state["arch"] == "i686" else args.client_x86_64
    if not client or not os.path.isfile(client):
        log(f"skipped: no event client for {state['arch']} ({client})")
        return SKIP
    wine = Wine(args.work, state["arch"], args.wine)
    output_dir = os.path.join(state["outputs"], "events")
    shutil.rmtree(output_dir, ignore_errors=True)
    os.makedirs(output_dir)
    dialog_log = os.path.join(output_dir, "dialogs.log")
    rc, out, err, elapsed = wine.run(
        [client, windows_path(state["project"]), windows_path(output_dir)],
        timeout=args.timeout, dialog_log=dialog_log)
    sys.stdout.write(out)
    faults = []
    # The missing help compiler is also shown in a message box: OK button,
    # exclamation icon (style 48), title "Quillon".
    dialogs = ""
    if os.path.isfile(dialog_log):
        with open(dialog_log, "rb") as f:
            dialogs = f.read().decode("cp1252", "replace")
    if "MessageBox 48 Quillon\r\nDie Datei 'hhc.exe' konnte nicht" not in dialogs:
        faults.append("no message box about the missing hhc.exe; dialogs:\n" + dialogs[:2000])
    if "event-client-done" not in out:
        faults.append("the event client did not reach its end (crash?)\n" + err[-2000:])
    if rc != 0:
        faults.append(f"failed checks (exit status {rc})")
    faults += report_differences(state["reference"], os.path.join(output_dir, "events"))
    return finish("events", faults, elapsed)


MACHINE_KEY = "HKLM\\Software\\Classes\\VBFolioscope.CFolioscope"
USER_KEY = "HKCU\\Software\\Classes\\VBFolioscope.CFolioscope"


def registered(wine, key):
    rc, _, _, _ = wine.run(["reg", "query", key])
    return rc == 0


def cleanup(args):
    """Unregisters the DLL; then registers it for the current user only (as
    for a user who is no administrator) and unregisters again."""
    state = checked_state(args.work)
    if state is None:
        return SKIP
    wine = Wine(args.work, state["arch"], args.wine)
    started = time.monotonic()
    dll = windows_path(os.path.join(state["app"], "VBFolioscope.dll"))
    faults = []
    rc, out, err, _ = wine.run([wine.regsvr32, "/u", "/s", dll])
    if rc != 0:
        faults.append(f"regsvr32 /u exit status {rc}\n{out}{err}")
    for key in (MACHINE_KEY, USER_KEY):
        if registered(wine, key):
            faults.append("still registered after regsvr32 /u: " + key)

    wine.env["FOLIOSCOPE_REGISTER_PER_USER"] = "1"
    rc, out, err, _ = wine.run([wine.regsvr32, "/s", dll])
    del wine.env["FOLIOSCOPE_REGISTER_PER_USER"]
    if rc != 0 or not registered(wine, USER_KEY) or registered(wine, MACHINE_KEY):
        faults.append(f"no registration for the current user only (regsvr32 exit status {rc})")
    # Wine 8 does not merge HKCU\Software\Classes into HKEY_CLASSES_ROOT, so
    # no object can be created through this registration there; the keys are
    # checked instead.
    _, out, _, _ = wine.run(["reg", "query", USER_KEY + "\\CLSID"])
    clsid = re.search(r"\{[0-9A-Fa-f-]{36}\}", out)
    server = ""
    if clsid:
        _, server, _, _ = wine.run(["reg", "query", "HKCU\\Software\\Classes\\CLSID\\" +
                                    clsid.group(0) + "\\InprocServer32"])
    if dll not in server or "Apartment" not in server:
        faults.append("the per-user class has no InprocServer32 with the DLL, apartment-threaded:\n"
                      + server)
    rc, out, err, _ = wine.run([wine.regsvr32, "/u", "/s", dll])
    if rc != 0 or registered(wine, USER_KEY):
        faults.append(f"the per-user registration stays after regsvr32 /u (exit status {rc})")
    wine.stop_server()
    return finish("unregister", faults, time.monotonic() - started)


CREATE_OBJECT_VBS = """On Error Resume Next
Set report = CreateObject("VBFolioscope.CFolioscope")
WScript.Echo "CreateObject: " & Err.Number
"""


def registry_of(wine):
    """The prefix's machine registry, once the server has written it."""
    wine.server("-w")
    return make_msi.read_registry(os.path.join(wine.prefix, "system.reg"))


def comparable(rows):
    # [INSTALLDIR] ends in a backslash, the folder DllRegisterServer writes
    # as the type library's help folder does not.
    return {key: {n: t.rstrip("\\") for n, t in values.items()} for key, values in rows.items()}


def run_msi(args):
    """The package in a fresh prefix: installed, used, replaced by a newer
    release, and uninstalled."""
    state = checked_state(args.work)
    if state is None:
        return SKIP
    if not os.path.isfile(args.msi):
        log(f"skipped: no {args.msi} (cmake --build --preset mingw-{args.arch} --target msi)")
        return SKIP
    started = time.monotonic()
    wine = Wine(args.work, state["arch"], args.wine, os.path.join(args.work, "msi-prefix"))
    shutil.rmtree(wine.prefix, ignore_errors=True)
    args.installed = os.path.join(wine.prefix, "drive_c", "Program Files", "Folioscope")
    faults = msi_install_and_use(wine, state, args)
    if not faults:
        faults += msi_upgrade(wine, state, args)
    faults += msi_uninstall(wine, state, args)
    wine.stop_server()
    shutil.rmtree(wine.prefix, ignore_errors=True)
    return finish("msi", faults, time.monotonic() - started)


def msi_install_and_use(wine, state, args):
    wine.run(["wineboot", "--init"], timeout=600)
    wine.run(["reg", "import", windows_path(state["settings"])])
    before = registry_of(wine)
    rc, out, err, _ = wine.run([wine.msiexec, "/i", windows_path(args.msi), "/qn"])
    if rc != 0:
        return [f"msiexec /i: exit status {rc}\n{out}{err}"]
    args.installed_rows = make_msi.added_classes_keys(before, registry_of(wine))
    faults = installed_differences(state["app"], args.installed)
    output_dir = os.path.join(state["outputs"], "msi")
    shutil.rmtree(output_dir, ignore_errors=True)
    os.makedirs(output_dir)
    rc, out, err, _ = wine.run([wine.cscript, "//nologo", windows_path(readme_script(args)),
                                windows_path(state["project"]), windows_path(output_dir)])
    sys.stdout.write(out)
    if "Report: " not in out or rc != 0:
        faults.append(f"the README example did not finish (exit status {rc})\n{err[-2000:]}")
    faults += report_differences(state["reference"], os.path.join(output_dir, "Kontor"))
    return faults


def msi_property(msi, name):
    table = subprocess.run(["msiinfo", "export", msi, "Property"], capture_output=True,
                           text=True, check=True).stdout
    return dict(line.split("\t", 1) for line in table.splitlines() if "\t" in line)[name]


def products(wine):
    """The product codes Windows lists as installed programs."""
    key = "software\\microsoft\\windows\\currentversion\\uninstall\\"
    return {k[len(key):].upper() for k in registry_of(wine)
            if k.lower().startswith(key) and "\\" not in k[len(key):]}


def msi_upgrade(wine, state, args):
    """A package of the next version, made from the same DLL the way the
    build makes its package, replaces the installed one."""
    version = msi_property(args.msi, "ProductVersion").split(".")
    version[-1] = str(int(version[-1]) + 1)
    newer = os.path.join(args.work, "msi-newer", "Folioscope-newer.msi")
    subprocess.run([sys.executable, "-B", make_msi.__file__, "--arch",
                    "x86" if args.arch == "i686" else "x64", "--version", ".".join(version),
                    "--app-dir", state["app"], "--wine", args.wine, "--work",
                    os.path.dirname(newer), "--output", newer], check=True,
                   stdout=subprocess.DEVNULL)
    old_code = msi_property(args.msi, "ProductCode")
    new_code = msi_property(newer, "ProductCode")
    rc, out, err, _ = wine.run([wine.msiexec, "/i", windows_path(newer), "/qn"])
    faults = [] if rc == 0 else [f"msiexec /i of the newer package: exit status {rc}\n{out}{err}"]
    installed = products(wine)
    if old_code in installed or new_code not in installed:
        faults.append(f"after the upgrade Windows lists {sorted(installed)}, expected only "
                      f"{new_code} (not {old_code})")
    faults += installed_differences(state["app"], args.installed)
    _, out, _, _ = wine.run([wine.cscript, "//nologo", windows_path(create_object_script(args))])
    if "CreateObject: 0" not in out:
        faults.append("CreateObject fails after the upgrade: " + out.strip())
    args.msi = newer  # the package to uninstall
    return faults


def create_object_script(args):
    script = os.path.join(args.work, "scripts", "create_object.vbs")
    with open(script, "w", newline="\r\n") as f:
        f.write(CREATE_OBJECT_VBS)
    return script


def installed_differences(app, installed):
    """The installed files against the application folder's DLL, sfn.dat
    and Res\\ (the tests write more into that folder)."""
    faults = []
    for folder, _, names in os.walk(app):
        for name in names:
            relative = os.path.relpath(os.path.join(folder, name), app)
            if relative not in ("VBFolioscope.dll", "sfn.dat") and \
                    not relative.startswith("Res" + os.sep):
                continue
            target = os.path.join(installed, relative)
            if not os.path.isfile(target):
                faults.append("not installed: " + relative)
            elif not filecmp.cmp(os.path.join(folder, name), target, shallow=False):
                faults.append("installed file differs: " + relative)
    return faults


def msi_uninstall(wine, state, args):
    """Uninstalls; then registers the same DLL at the same place with
    regsvr32 and compares its keys with the package's rows."""
    if not getattr(args, "installed_rows", None):
        return []
    rc, out, err, _ = wine.run([wine.msiexec, "/x", windows_path(args.msi), "/qn"])
    faults = [] if rc == 0 else [f"msiexec /x: exit status {rc}\n{out}{err}"]
    after = registry_of(wine)
    left = sorted(k for k in args.installed_rows if k in after)
    if left:
        faults.append(f"{len(left)} keys stay after msiexec /x, first {left[0]}")
    files = [os.path.relpath(os.path.join(d, n), args.installed)
             for d, _, names in os.walk(args.installed) for n in names]
    if files:
        faults.append(f"files stay after msiexec /x: {files[:5]}")
    _, out, _, _ = wine.run([wine.cscript, "//nologo", windows_path(create_object_script(args))])
    if "CreateObject: 0" in out or "CreateObject: " not in out:
        faults.append("CreateObject still works after msiexec /x: " + out.strip())
    os.makedirs(args.installed, exist_ok=True)
    dll = os.path.join(args.installed, "VBFolioscope.dll")
    shutil.copy2(os.path.join(state["app"], "VBFolioscope.dll"), dll)
    wine.run([wine.regsvr32, "/s", windows_path_in_prefix(wine, dll)])
    registered = make_msi.added_classes_keys(after, registry_of(wine))
    if comparable(registered) != comparable(args.installed_rows):
        only = sorted(set(registered) ^ set(args.installed_rows))
        faults.append(f"the package's rows differ from what regsvr32 writes: {len(registered)} "
                      f"/ {len(args.installed_rows)} keys; first keys in one only: {only[:3]}; "
                      + first_row_difference(registered, args.installed_rows))
    wine.run([wine.regsvr32, "/u", "/s", windows_path_in_prefix(wine, dll)])
    return faults


def first_row_difference(registered, installed):
    for key in sorted(set(registered) & set(installed)):
        if comparable({key: registered[key]}) != comparable({key: installed[key]}):
            return f"{key}: regsvr32 {registered[key]} / package {installed[key]}"
    return ""


def windows_path_in_prefix(wine, path):
    """C:\\... for a file below the prefix's drive_c."""
    relative = os.path.relpath(path, os.path.join(wine.prefix, "drive_c"))
    return "C:\\" + relative.replace("/", "\\")


def finish(name, faults, elapsed):
    for fault in faults:
        log("FAIL: " + fault)
    log(f"{name}: {'failed' if faults else 'passed'} under Wine in {elapsed:.1f} s")
    return 1 if faults else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", required=True, help="folder of the prefix and outputs")
    parser.add_argument("--source-dir", required=True)
    parser.add_argument("--timeout", type=int, default=300)
    parser.add_argument("--arch", choices=("i686", "x86_64"), required=True)
    parser.add_argument("--wine", required=True, help="the Wine of that architecture")
    steps = parser.add_subparsers(dest="step", required=True)
    s = steps.add_parser("setup")
    s.add_argument("--folioscope", required=True, help="the Linux host program")
    s.add_argument("--linux-app-dir", required=True, help="Res/ and sfn.dat of the Linux build")
    s.add_argument("--project", required=True)
    v = steps.add_parser("vbs")
    v.add_argument("script")
    v.add_argument("--compare", help="subfolder of the script's output to compare with the "
                                     "Linux report")
    v.add_argument("--compare-umlauts", help="subfolder of the script's output to compare "
                                             "with the Linux report of the umlaut project")
    v.add_argument("--dialog-log", action="store_true",
                   help="log message boxes and error dialogs to <output>\\dialogs.log")
    v.add_argument("--compare-part", action="append",
                   help="subfolder holding a part of the report (SaveMode 1 or 2)")
    v.add_argument("--compare-pages", action="store_true",
                   help="compare the script's output with the Linux preview pages")
    e = steps.add_parser("events")
    e.add_argument("--client-x86_64")
    e.add_argument("--client-i686")
    steps.add_parser("readme")
    steps.add_parser("cleanup")
    m = steps.add_parser("msi")
    m.add_argument("msi", help="the Windows Installer package of this architecture")
    args = parser.parse_args()
    args.work = os.path.join(os.path.abspath(args.work), args.arch)
    step = {"setup": setup, "vbs": run_vbs, "events": run_events, "readme": run_readme,
            "cleanup": cleanup, "msi": run_msi}[args.step]
    return step(args)


if __name__ == "__main__":
    sys.exit(main())
