#!/usr/bin/env python3
"""Runs `folioscope coverage` on a project as a build would: the JSON output
parses, --min gates with exit status 0 or 1, usage errors and unreadable
projects end with 2. Then (unless --no-browser) opens the HTML page and the
badge in headless Chromium: the page's table lists every module, the worst
share first, a click on the share heading reverses the order, and the
badge's text shows the share.

Exit status: 0 passed, 1 failed, 77 skipped (only the browser part, when
Chromium and ChromeDriver are missing and cannot be installed).
"""

import argparse
import json
import math
import os
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.parse

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from report_in_browser import SKIP, Failure, WebDriver, check, ensure_chromium, wait_loaded  # noqa: E402

ROWS = """
return Array.from(document.querySelectorAll('table.coverage tbody tr')).map(r => ({
  name: r.cells[0].textContent, share: parseFloat(r.cells[r.cells.length - 1].dataset.value)}));
"""


def coverage(args, *extra):
    return subprocess.run(
        [args.folioscope, "--app-dir", args.app_dir,
         "--registry", os.path.join(args.work, "registry.reg"), "coverage", *extra],
        capture_output=True, text=True, timeout=60)


def check_gate(args, page, badge):
    """The command-line contract; returns the JSON figures."""
    run = coverage(args, args.project, "--format", "json", "--html", page, "--badge", badge)
    check(run.returncode == 0, "coverage exited %d:\n%s" % (run.returncode, run.stderr))
    figures = json.loads(run.stdout)
    share = figures["total"]["share"]
    check(0 < share < 100, "the sample should be partly documented, share %r" % share)
    cases = [
        ((args.project, "--min", str(share)), 0),
        ((args.project, "--min", "%.1f" % (share + 0.1)), 1),
        ((args.project, "--min", "0", "--scope", "private"), 0),
        ((args.project, "--min", "101"), 2),
        ((args.project, "--scope", "everyone"), 2),
        ((os.path.join(args.work, "missing.vbp"),), 2),
    ]
    for extra, status in cases:
        run = coverage(args, *extra)
        check(run.returncode == status, "coverage %s exited %d, not %d:\n%s"
              % (" ".join(extra), run.returncode, status, run.stderr))
    return figures


def check_in_browser(figures, page, badge, profile):
    driver = WebDriver(profile)
    try:
        driver.open("file://" + urllib.parse.quote(page))
        wait_loaded(driver, "the coverage page")
        rows = driver.script(ROWS)
        names = sorted(m["name"] for m in figures["modules"])
        check(sorted(r["name"] for r in rows) == names,
              "the table lists %r, the project has %r" % ([r["name"] for r in rows], names))
        shares = [r["share"] for r in rows]
        check(shares == sorted(shares), "not the worst first: %r" % shares)
        driver.click(driver.find("table.coverage th:last-child"))
        time.sleep(0.1)
        shares = [r["share"] for r in driver.script(ROWS)]
        check(shares == sorted(shares, reverse=True), "a click did not reverse: %r" % shares)

        driver.open("file://" + urllib.parse.quote(badge))
        wait_loaded(driver, "the badge")
        text = driver.script("return document.documentElement.textContent;")
        expected = "%d%%" % math.floor(figures["total"]["share"])
        check("docs" in text and expected in text, "the badge reads %r, not %s" % (text, expected))
    finally:
        driver.quit()


def main():
    parser = argparse.ArgumentParser()
    for name in ("--folioscope", "--app-dir", "--project", "--source-dir", "--work"):
        parser.add_argument(name, required=True)
    parser.add_argument("--no-browser", action="store_true")
    args = parser.parse_args()
    shutil.rmtree(args.work, ignore_errors=True)
    os.makedirs(args.work)
    page = os.path.join(args.work, "coverage.html")
    badge = os.path.join(args.work, "coverage.svg")
    figures = check_gate(args, page, badge)
    if args.no_browser:
        print("gate and JSON checked: %s %% of %d modules" % (
            figures["total"]["share"], len(figures["modules"])))
        return 0
    if not ensure_chromium(args.source_dir):
        print("SKIPPED: Chromium and ChromeDriver are not installed and could not be installed.")
        return SKIP
    with tempfile.TemporaryDirectory(prefix="fs-chromium-") as profile:
        check_in_browser(figures, page, badge, profile)
    print("page lists %d modules worst first; badge shows %s %%"
          % (len(figures["modules"]), figures["total"]["share"]))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as e:
        print("FAILED:", e)
        sys.exit(1)
