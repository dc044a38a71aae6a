#!/usr/bin/env python3
"""`folioscope coverage` as a build uses it: JSON that parses, --min gating
with exit status 0 or 1, 2 for usage errors and unreadable projects, and
figures equal to what the written report's member pages show. Then (unless
--no-browser) the HTML page and the badge in headless Chromium: the table
lists every module, the worst share first, a click on the share heading
reverses the order, and the badge reads the share. Exit status 0 passed,
1 failed, 77 skipped (no Chromium)."""

import argparse
import json
import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.parse

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from report_in_browser import SKIP, Failure, WebDriver, check, ensure_chromium, wait_loaded  # noqa: E402

ROWS = """return Array.from(document.querySelectorAll('table.coverage tbody tr')).map(r =>
  ({name: r.cells[0].textContent, share: parseFloat(r.cells[5].dataset.value)}));"""


def folioscope(args, *extra):
    return subprocess.run([args.folioscope, "--app-dir", args.app_dir, "--no-progress", "--registry",
                           os.path.join(args.work, "registry.reg"), *extra],
                          capture_output=True, text=True, timeout=60)


def shown_by_report(report_dir):
    """What the Standard set's member pages show, counted as coverage counts."""
    shown = dict.fromkeys(("members", "withSummary", "parameters", "described", "returning",
                           "withReturns"), 0)
    text = lambda s: bool(s.strip(" \t"))  # noqa: E731
    for name in os.listdir(report_dir):
        with open(os.path.join(report_dir, name), encoding="cp1252") as f:
            page = f.read()
        summary = re.search(r'<DIV class="summary">(.*?)</DIV>', page, re.S)
        if not summary or 'class="return-value"' not in page:
            continue  # not a member page
        shown["members"] += 1
        shown["withSummary"] += text(summary.group(1))
        for row in re.findall(r'<TD class="param-name">.*?</TR>', page, re.S):
            shown["parameters"] += 1
            shown["described"] += text(re.findall(r"<TD[^>]*>(.*?)</TD>", row, re.S)[2])
        returns = re.search(r'"returns-type">(.*?)</CODE></P>\s*<DIV>(.*?)</DIV>', page, re.S)
        if returns.group(1):
            shown["returning"] += 1
            shown["withReturns"] += text(returns.group(2))
    return shown


def check_command(args, page, badge):
    run = folioscope(args, "coverage", args.project, "--format", "json", "--html", page,
                     "--badge", badge)
    check(run.returncode == 0, "coverage exited %d:\n%s" % (run.returncode, run.stderr))
    figures = json.loads(run.stdout)
    share = figures["total"]["share"]
    check(0 < share < 100, "the sample should be partly documented, share %r" % share)
    for extra, status in [(("--min", str(share)), 0), (("--min", "%.1f" % (share + 0.1)), 1),
                          (("--scope", "private", "--min", "0"), 0), (("--min", "101"), 2),
                          (("--scope", "everyone"), 2), (("--format", "xml"), 2)]:
        run = folioscope(args, "coverage", args.project, *extra)
        check(run.returncode == status, "coverage %s exited %d, not %d:\n%s"
              % (" ".join(extra), run.returncode, status, run.stderr))
    run = folioscope(args, "coverage", os.path.join(args.work, "missing.vbp"))
    check(run.returncode == 2, "a missing project gave exit status %d" % run.returncode)

    report_dir = os.path.join(args.work, "report")
    run = folioscope(args, "report", args.project, "-o", report_dir)
    check(run.returncode == 0, "report exited %d:\n%s" % (run.returncode, run.stderr))
    shown = shown_by_report(report_dir)
    counted = {key: figures["total"][key] for key in shown}
    check(shown == counted, "the report shows %r, coverage counts %r" % (shown, counted))
    return figures


def check_in_browser(figures, page, badge, profile):
    driver = WebDriver(profile)
    try:
        driver.open("file://" + urllib.parse.quote(page))
        wait_loaded(driver, "the coverage page")
        rows = driver.script(ROWS)
        names = sorted(m["name"] for m in figures["modules"])
        check(sorted(r["name"] for r in rows) == names, "the table lists %r, not %r" % (rows, names))
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
    page, badge = os.path.join(args.work, "coverage.html"), os.path.join(args.work, "docs.svg")
    figures = check_command(args, page, badge)
    if not args.no_browser:
        if not ensure_chromium(args.source_dir):
            print("SKIPPED: Chromium and ChromeDriver are missing and could not be installed.")
            return SKIP
        with tempfile.TemporaryDirectory(prefix="fs-chromium-") as profile:
            check_in_browser(figures, page, badge, profile)
    print("%s %% documented in %d modules" % (figures["total"]["share"], len(figures["modules"])))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as e:
        print("FAILED:", e)
        sys.exit(1)
