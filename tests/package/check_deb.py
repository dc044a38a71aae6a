#!/usr/bin/env python3
"""The Debian package as a user gets it: built with CPack from the build tree,
unpacked with dpkg-deb -x into a temporary root, and used from there.

  * <root>/usr/bin/folioscope writes the sample report with no --app-dir:
    it finds the packaged Standard set in <root>/usr/share/folioscope, the
    report equals the build tree's byte for byte, and the run writes nothing
    into the installed tree;
  * the man page renders with man -l and names every subcommand;
  * the bash completion offers what --help lists (the examples below, and
    every subcommand and option of every command);
  * lintian reports no error.
"""

import argparse
import filecmp
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile

# Command line typed so far (the cursor at its end) and words the completion
# must offer; "=" means exactly these.
COMPLETIONS = [
    ("folioscope con", "= config"),
    ("folioscope config ", "list get set use --registry"),
    ("folioscope config s", "= set"),
    ("folioscope page ", "project module member --module --member"),
    ("folioscope page mod", "= module"),
    ("folioscope --quiet report -", "-o --output --force --app-dir"),
    ("folioscope report --f", "= --force"),
    ("folioscope crypt de", "= decrypt"),
    ("folioscope --registry ", "= "),  # a file name follows, none here
]


def fail(faults, text):
    faults.append(text)
    print("FAIL: " + text, flush=True)


def run(args, **kwargs):
    return subprocess.run(args, capture_output=True, text=True, **kwargs)


def build_package(build_dir, work):
    config = os.path.join(build_dir, "CPackConfig.cmake")
    out = os.path.join(work, "cpack")
    proc = run(["cpack", "-G", "DEB", "--config", config, "-B", out])
    debs = glob.glob(os.path.join(out, "folioscope_*_amd64.deb"))
    if proc.returncode != 0 or len(debs) != 1:
        sys.exit(f"cpack failed (status {proc.returncode}):\n{proc.stdout}{proc.stderr}")
    return debs[0]


def snapshot(root):
    return sorted(os.path.relpath(os.path.join(d, n), root)
                  for d, _, names in os.walk(root) for n in names)


def check_report(root, args, work, faults):
    env = dict(os.environ, HOME=os.path.join(work, "home"),
               XDG_CONFIG_HOME=os.path.join(work, "config"),
               XDG_STATE_HOME=os.path.join(work, "state"))
    env.pop("FOLIOSCOPE_HOME", None)
    env.pop("FOLIOSCOPE_REGISTRY", None)
    before = snapshot(root)
    packaged = os.path.join(work, "packaged-report")
    proc = run([os.path.join(root, "usr/bin/folioscope"), "--no-progress", "report",
                args.project, "-o", packaged], env=env)
    if proc.returncode != 0:
        fail(faults, f"report from the package: status {proc.returncode}\n{proc.stderr}")
        return
    reference = os.path.join(work, "build-report")
    run([args.folioscope, "--app-dir", args.build_dir, "--registry",
         os.path.join(work, "build.reg"), "--no-progress", "report", args.project, "-o",
         reference], check=True)
    compared = filecmp.dircmp(reference, packaged)
    different = compared.left_only + compared.right_only + compared.diff_files
    if different or not compared.common_files:
        fail(faults, f"the packaged report differs from the build's: {different[:8]}")
    if snapshot(root) != before:
        fail(faults, "the run wrote into the installed tree: " +
             str(sorted(set(snapshot(root)) - set(before))))


def subcommands(folioscope):
    help_text = run([folioscope, "--help"], check=True).stdout
    block = help_text.split("\nSubcommands:\n", 1)[1]
    return re.findall(r"^  ([a-z][a-z0-9-]*)", block, re.M)


def check_man_page(root, names, faults):
    page = os.path.join(root, "usr/share/man/man1/folioscope.1.gz")
    proc = run(["man", "-l", page], env=dict(os.environ, MANWIDTH="80", MAN_KEEP_FORMATTING=""))
    text = proc.stdout
    if proc.returncode != 0 or "SYNOPSIS" not in text or "COMMANDS" not in text:
        fail(faults, f"man -l {page}: status {proc.returncode}\n{proc.stderr[:500]}")
    for name in names:
        if not re.search(rf"^ +{re.escape(name)}$", text, re.M):
            fail(faults, f"the man page has no section for the command {name}")


def complete(script, line, cwd):
    words = line.split(" ")
    bash = (f'source "{script}"\n'
            f"COMP_WORDS=({' '.join(repr(w) for w in words)}); COMP_CWORD={len(words) - 1}\n"
            f"_folioscope; printf '%s\\n' \"${{COMPREPLY[@]}}\"\n")
    proc = run(["bash", "--norc", "-c", bash], cwd=cwd)
    return set(w for w in proc.stdout.split("\n") if w)


def check_completion(root, folioscope, names, work, faults):
    script = os.path.join(root, "usr/share/bash-completion/completions/folioscope")
    empty = os.path.join(work, "empty")  # no file names to offer
    os.makedirs(empty, exist_ok=True)
    for line, expected in COMPLETIONS:
        offered = complete(script, line, empty)
        exact = expected.startswith("=")
        wanted = set(expected.lstrip("= ").split())
        if (exact and offered != wanted) or not wanted <= offered:
            fail(faults, f"completion of {line!r}: {sorted(offered)}, expected {expected!r}")
    if not set(names) <= complete(script, "folioscope ", empty):
        fail(faults, "the completion lacks subcommands of --help")
    for name in names:
        help_text = run([folioscope, name, "--help"], check=True).stdout
        options = set(re.findall(r"(?<![\w-])(--?[a-z][\w-]*)", help_text.split("Options:")[-1]))
        missing = options - complete(script, f"folioscope {name} -", empty)
        if missing:
            fail(faults, f"the completion of {name} lacks {sorted(missing)}")


def check_lintian(deb, faults):
    if shutil.which("lintian") is None:
        fail(faults, "lintian is not installed")
        return
    proc = run(["lintian", deb])
    errors = [line for line in proc.stdout.splitlines() if line.startswith("E:")]
    if errors:
        fail(faults, "lintian:\n  " + "\n  ".join(errors))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build-dir", required=True)
    parser.add_argument("--folioscope", required=True)
    parser.add_argument("--project", required=True)
    args = parser.parse_args()
    faults = []
    with tempfile.TemporaryDirectory(prefix="folioscope-deb-") as work:
        deb = build_package(args.build_dir, work)
        root = os.path.join(work, "root")
        subprocess.run(["dpkg-deb", "-x", deb, root], check=True)
        names = subcommands(args.folioscope)
        check_report(root, args, work, faults)
        check_man_page(root, names, faults)
        check_completion(root, args.folioscope, names, work, faults)
        check_lintian(deb, faults)
    print(f"{os.path.basename(deb)}: {'failed' if faults else 'passed'}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
