#!/usr/bin/env python3
"""Runs the VBFolioscope COM server under Wine.

One Wine prefix serves a whole ctest run; the steps are separate commands so
that each check is its own CTest test:

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
           registers it for the current user only and unregisters again.

Exit status 77 means "skipped" (no Wine, or no cross-built DLL).
"""

import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unicodedata

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

    def __init__(self, work, arch):
        self.work = work
        self.arch = arch
        self.prefix = os.path.join(work, "prefix")
        self.env = dict(os.environ)
        self.env.pop("DISPLAY", None)
        self.env.pop("WAYLAND_DISPLAY", None)
        self.env.update({
            "WINEPREFIX": self.prefix,
            # Script errors are only visible through these channels.
            "WINEDEBUG": "-all,fixme+wscript,fixme+vbscript,err+vbscript",
            # No Mono or Gecko installer prompts.
            "WINEDLLOVERRIDES": "mscoree,mshtml=",
        })
        self.env.setdefault("LANG", "C.UTF-8")
        # 32-bit programs of a 64-bit prefix live in syswow64.
        system = "C:\\windows\\syswow64\\" if arch == "i686" else "C:\\windows\\system32\\"
        self.regsvr32 = system + "regsvr32.exe"
        self.cscript = system + "cscript.exe"

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
            proc = subprocess.run(["wine"] + args, env=env, timeout=timeout,
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


def wine32_installed():
    return any(os.path.exists(p) for p in ("/usr/lib/wine/wine", "/usr/lib/i386-linux-gnu/wine"))


def choose_dll(source_dir):
    """(arch, build folder, sentence for the log) or (None, None, reason).
    FOLIOSCOPE_WINE_DLL_DIR names another build folder of the x86_64 DLL."""
    builds = {arch: os.path.join(source_dir, "build", "mingw-" + arch)
              for arch in ("i686", "x86_64")}
    if os.environ.get("FOLIOSCOPE_WINE_DLL_DIR"):
        builds = {"i686": "", "x86_64": os.environ["FOLIOSCOPE_WINE_DLL_DIR"]}
    have = {arch: os.path.isfile(os.path.join(folder, "VBFolioscope.dll"))
            for arch, folder in builds.items()}
    if wine32_installed() and have["i686"]:
        return "i686", builds["i686"], "32-bit Wine with the i686 DLL (the build IDE add-ins load)"
    if have["x86_64"]:
        why = ("32-bit Wine is not installed" if not wine32_installed()
               else "the i686 DLL is not built")
        return "x86_64", builds["x86_64"], f"64-bit Wine with the x86_64 DLL ({why})"
    return None, None, ("no VBFolioscope.dll in build/mingw-i686 or build/mingw-x86_64: "
                        "build them with cmake --preset mingw-x86_64 && "
                        "cmake --build --preset mingw-x86_64")


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
    if shutil.which("wine") is None:
        log("Wine tests skipped: wine is not installed")
        return SKIP
    arch, dll_build, sentence = choose_dll(args.source_dir)
    if arch is None:
        log("Wine tests skipped: " + sentence)
        return SKIP
    log("Wine tests: " + sentence)
    started = time.monotonic()
    wine = Wine(work, arch)
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
        json.dump({"arch": arch, "app": app, "linux_app": linux_app, "reference": reference,
                   "pages": pages, "outputs": outputs, "project": args.project,
                   "umlaut_project": umlaut_project, "umlaut_reference": umlaut_reference}, f)
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
    wine = Wine(args.work, state["arch"])
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
        faults.append(f"{rc} failed checks (exit status)")
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


def run_readme(args):
    """The README's VBScript example, run as a user would run it."""
    state = checked_state(args.work)
    if state is None:
        return SKIP
    with open(os.path.join(args.source_dir, "README.md"), encoding="utf-8") as f:
        text = f.read()
    start = text.find("```vbscript\n")
    if start < 0:
        return finish("readme", ["no vbscript example in README.md"], 0)
    start += len("```vbscript\n")
    script = text[start:text.index("```", start)]
    path = os.path.join(args.work, "scripts", "readme_document.vbs")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="cp1252", newline="\r\n") as f:
        f.write(script)
    output_dir = os.path.join(state["outputs"], "readme")
    shutil.rmtree(output_dir, ignore_errors=True)
    os.makedirs(output_dir)
    wine = Wine(args.work, state["arch"])
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
    wine = Wine(args.work, state["arch"])
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
        faults.append(f"{rc} failed checks (exit status)")
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
    wine = Wine(args.work, state["arch"])
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
    args = parser.parse_args()
    args.work = os.path.abspath(args.work)
    step = {"setup": setup, "vbs": run_vbs, "events": run_events, "readme": run_readme,
            "cleanup": cleanup}[args.step]
    return step(args)


if __name__ == "__main__":
    sys.exit(main())
