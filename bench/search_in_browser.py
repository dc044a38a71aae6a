#!/usr/bin/env python3
"""Measures the search box of a finished web report in headless Chromium:
the size of the index files, the time the menu needs to load the names
part, and the time one keystroke takes, from the changed text to the shown
results (layout included), for queries typed one character at a time.

    bench/search_in_browser.py REPORT_DIR [QUERY...]

Folding every name, which the menu does once after loading, is reported on
its own; the summary file is loaded before the queries, so that they search
the summaries as well. Not a test: it prints figures.
"""

import os
import statistics
import sys
import tempfile
import time
import urllib.parse

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests",
                                "browser"))
from report_in_browser import ELEMENT_KEY, WebDriver, check  # noqa: E402

QUERIES = ["pruefewaehrung", "suche", "idempotent", "pr\u00fcfe", "zzzz", "0001", "e"]

# Types `text` one character at a time into the search box; returns the
# milliseconds of each keystroke and the number of results after the last.
TYPE = """
var input = document.getElementById('fsSearch');
var text = arguments[0], times = [];
input.value = '';
fsRunSearch(true);
for (var i = 1; i <= text.length; i++) {
  var start = performance.now();
  input.value = text.substring(0, i);
  fsRunSearch(false);
  document.getElementById('fsResults').offsetHeight;
  times.push(performance.now() - start);
}
return {times: times, hits: fsHits.length};
"""

LOADED = """
return typeof FolioscopeNames != 'undefined' && document.getElementById('fsSearch') != null
    ? performance.now() : null;
"""


# On a member page: when the names script was there (seen by polling every
# 20 ms), and how long making its links takes once it is.
CONTENT = """
if (typeof FolioscopeNames == 'undefined') return null;
var there = performance.now();
fsModuleByName = null;
var start = performance.now();
fsBuildModules();
fsLinkTypes();
fsLinkReferences(true);
return [there, performance.now() - start];
"""


def content_page(report):
    """A member page of the middle module."""
    pages = sorted(n for n in os.listdir(report) if n.endswith(".htm") and "_" in n[1:])
    return pages[len(pages) // 2]


def wait(driver, script, what, *args):
    deadline = time.time() + 60
    while True:
        value = driver.script(script, *args)
        if value is not None:
            return value
        check(time.time() < deadline, what)
        time.sleep(0.02)


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    report = os.path.abspath(sys.argv[1])
    queries = sys.argv[2:] or QUERIES
    for name in ("folioscope-index.js", "folioscope-index-text.js"):
        size = os.path.getsize(os.path.join(report, name))
        print("%-26s %10d bytes (%.2f MB)" % (name, size, size / 1e6))
    with tempfile.TemporaryDirectory(prefix="fs-bench-chromium-") as profile:
        driver = WebDriver(profile)
        try:
            driver.open("file://" + urllib.parse.quote(os.path.join(report, "_Index.htm")))
            frame = driver.find("frame[name=FrameLinks]")
            driver.cmd("POST", "/frame", {"id": {ELEMENT_KEY: frame}})
            loaded = wait(driver, LOADED, "the names index did not load")
            entries, fold = driver.script(
                "fsEntries = null; var s = performance.now(); fsBuildEntries();"
                "return [fsEntries.length, performance.now() - s];")
            print("names loaded %.0f ms after the menu began; %d modules and members"
                  % (loaded, entries))
            print("folding the names (once, after loading): %.1f ms" % fold)
            driver.script(TYPE, "x")
            wait(driver, "return fsTextsState == 2 ? true : null;", "the summaries did not load")
            every = []
            for query in queries:
                result = driver.script(TYPE, query)
                every += result["times"]
                print("%-12s %3d results; ms per keystroke: %s" % (
                    query, result["hits"], " ".join("%.1f" % t for t in result["times"])))
            print("keystrokes: %d, median %.1f ms, slowest %.1f ms"
                  % (len(every), statistics.median(every), max(every)))
            page = content_page(report)
            driver.open("file://" + urllib.parse.quote(os.path.join(report, page)))
            load, link = wait(driver, CONTENT, "the content page made no links")
            print("content page %s: names there %.0f ms after it began, links made in %.1f ms"
                  % (page, load, link))
        finally:
            driver.quit()
    return 0


if __name__ == "__main__":
    sys.exit(main())
