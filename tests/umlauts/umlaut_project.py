#!/usr/bin/env python3
"""Runs the folioscope binary on a project whose file, module, member and
parameter names and title hold umlauts, as a user of a German code base on
Linux would: the report holds every page under its UTF-8 name and every
reference resolves, --module/--member select by the names as typed, an
argument Windows-1252 cannot hold is refused, a password is taken as
Windows-1252 bytes, and the help file holds and links the pages (skipped,
with a note, when chmcmd is missing). Exit status: 0 passed, 1 failed.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "browser"))

import umlaut_fixture as fixture  # noqa: E402
from report_in_browser import Failure, check, check_files  # noqa: E402


class Runner:
    def __init__(self, args):
        self.base = [args.folioscope, "--app-dir", args.app_dir, "--registry",
                     os.path.join(args.work, "registry.reg"), "--no-progress"]

    def run(self, *arguments, status=0):
        """Runs folioscope with `arguments` (str as typed in a UTF-8 terminal,
        bytes as they stand) and returns (stdout bytes, stderr text)."""
        argv = [os.fsencode(a) if isinstance(a, str) else a for a in self.base + list(arguments)]
        done = subprocess.run(argv, capture_output=True, timeout=120)
        stderr = done.stderr.decode("utf-8", "replace")
        check(done.returncode == status, "%r exited %d, not %d:\n%s"
              % (arguments, done.returncode, status, stderr))
        return done.stdout, stderr


def check_full_report(folioscope, project, out):
    folioscope.run("report", project, "-o", out,
                   "--option", "ReportStdTitle=" + fixture.TITLE)
    missing = [p for p in fixture.module_pages() if not os.path.isfile(os.path.join(out, p))]
    check(not missing, "pages missing from the report: %r" % missing)
    with open(os.path.join(out, "Logo.htm"), "rb") as f:
        check(fixture.TITLE.encode("cp1252") in f.read(), "the title is not on Logo.htm")
    return check_files(out)


def check_selection(folioscope, project, work):
    out = os.path.join(work, "one-member")
    folioscope.run("report", project, "-o", out, "--module", "CB\u00fccher",
                   "--member", "Get \u00dcberblick")
    written = sorted(os.listdir(out))
    check([w for w in written if w.endswith(".htm")] == ["CB\u00fccher_Get_\u00dcberblick.htm"],
          "--member wrote %r" % written)
    page, _ = folioscope.run("page", "member", project, "--module", "CB\u00fccher",
                             "--member", "Z\u00e4hle")
    for text in ("Z\u00e4hle", "Gr\u00f6\u00dfe", "Die Gr\u00f6\u00dfe des Regals."):
        check(text.encode("cp1252") in page, "the member page lacks %r" % text)
    _, err = folioscope.run("page", "module", project, "--module", "CB\u65e5", status=2)
    check("\u65e5" in err and "U+65E5" in err, "the refusal does not name the character: " + err)


def check_password(folioscope, work):
    """The password is taken as Windows-1252 bytes, as on Windows."""
    plain = os.path.join(work, "plain.txt")
    with open(plain, "wb") as f:
        f.write(b"Geheimnis \xe4\xf6\xfc")
    folioscope.run("crypt", "encrypt", plain, os.path.join(work, "enc"), "--password", "abc\u00e4")
    folioscope.run("crypt", "decrypt", os.path.join(work, "enc"), os.path.join(work, "dec"),
                   "--password", b"abc\xe4")
    with open(os.path.join(work, "dec"), "rb") as f:
        check(f.read() == b"Geheimnis \xe4\xf6\xfc", "the password's bytes differ")


def check_help_file(folioscope, project, work):
    if shutil.which("chmcmd") is None or shutil.which("chmls") is None:
        print("help file part skipped: chmcmd/chmls (fp-utils) not installed")
        return 0
    out = os.path.join(work, "chm")
    folioscope.run("chm", project, "-o", out)
    with open(os.path.join(out, "Project.hhp"), "rb") as f:
        check(b"Compiled File = B\xfccherei.chm" in f.read(), "Project.hhp is not Windows-1252")
    chm = os.path.join(out, "B\u00fccherei.chm")
    check(os.path.isfile(chm), "no B\u00fccherei.chm")
    listing = subprocess.run(["chmls", "-n", "list", chm], capture_output=True,
                             timeout=60).stdout.decode("utf-8", "replace")
    missing = [p for p in fixture.module_pages() if "/" + p not in listing]
    check(not missing, "the help file lacks %r:\n%s" % (missing, listing))
    extracted = os.path.join(work, "chm-extracted")
    subprocess.run(["chmls", "extractall", chm, extracted], capture_output=True, timeout=60)
    with open(os.path.join(extracted, "Table of Contents.hhc"), encoding="cp1252") as f:
        toc = re.findall(r'name="Local" value="([^"]+)"', f.read())
    dead = [t for t in toc if not os.path.isfile(os.path.join(extracted, t))]
    check(not dead, "contents entries without their page: %r" % dead)
    return len(toc) + check_files(extracted)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folioscope", required=True)
    parser.add_argument("--app-dir", required=True)
    parser.add_argument("--work", required=True)
    args = parser.parse_args()
    shutil.rmtree(args.work, ignore_errors=True)
    os.makedirs(args.work)
    folioscope = Runner(args)
    project = fixture.write_project(os.path.join(args.work, "B\u00fccherei"))
    refs = check_full_report(folioscope, project, os.path.join(args.work, "report"))
    check_selection(folioscope, project, args.work)
    check_password(folioscope, args.work)
    chm_links = check_help_file(folioscope, project, args.work)
    print("report: %d references resolve; help file: %d links resolve" % (refs, chm_links))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as e:
        print("FAILED:", e)
        sys.exit(1)
