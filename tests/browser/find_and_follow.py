#!/usr/bin/env python3
"""Finds and follows in the sample web report, in headless Chromium, once
opened straight from disk (file://) and once from `python3 -m http.server`:
the search box of the menu (a member name and Enter, a word of a summary
only, an umlaut typed for a spelled-out one), a type link of a parameter
table, <see cref> links, addresses of single pages in the frame set
(`_Index.htm#page`, `_Index.htm?page=`) and the back button.

Uses the WebDriver client of report_in_browser.py. Exit status: 0 passed,
1 failed, 77 skipped (Chromium and ChromeDriver missing).
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.parse

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from report_in_browser import (ELEMENT_KEY, SKIP, Failure, WebDriver, check,  # noqa: E402
                               ensure_chromium, free_port)

# What a reader does, and the page the content frame shows afterwards.
SCENARIO = [
    ("open", "_Index.htm#CKonto_Buchungen.htm", "CKonto_Buchungen.htm"),
    ("follow", "a.see-link", "CBuchung.htm"),  # <see cref="CBuchung"/>
    ("back", None, "CKonto_Buchungen.htm"),
    ("search", "Buchen", "CKonto_Buchen.htm"),  # a member's name, then Enter
    ("follow", "table.params a.type-link", "CBuchung.htm"),
    ("back", None, "CKonto_Buchen.htm"),
    ("search", "pr\u00fcfe", "CBuchung_PruefeOffen.htm"),
    ("search", "kassenbuch", "CBuchung.htm"),  # only in CBuchung's summary
    # Names that begin with it come before those that hold it: the second
    # hit, chosen with the arrow keys, is CKonto.BuchungenZwischen.
    ("search", "buchung\ue015\ue015\ue013\ue015", "CKonto_BuchungenZwischen.htm"),
    ("open", "_Index.htm?page=CKasse_Verkauf.htm", "CKasse_Verkauf.htm"),
]

# The same for the umlaut project of tests/umlauts: names typed without
# their umlauts, page names that hold them.
UMLAUT_SCENARIO = [
    ("open", "_Index.htm", "Projekt.htm"),
    ("search", "prufe", "frmPr\u00fcfung_Pr\u00fcfeEinst.htm"),
    ("search", "zahle", "CB\u00fccher_Z\u00e4hle.htm"),
    ("back", None, "frmPr\u00fcfung_Pr\u00fcfeEinst.htm"),
    ("open", "_Index.htm#CB\u00fccher_Z\u00e4hle.htm", "CB\u00fccher_Z\u00e4hle.htm"),
]

# The links the script makes on a page: (selector, text, target page).
PAGE_LINKS = {
    "CKonto_Buchungen.htm": [
        ("a.see-link", "CBuchung", "CBuchung.htm"),
        ("code.see-unknown", "CStorno", None),
        ("a.type-link", "Collection", None),  # not a module of the project: no link
    ],
    "CKonto_Buchen.htm": [
        ("a.see-link", "LimitUnterschritten", "CKonto_LimitUnterschritten.htm"),
        ("a.see-link", "CKonto.SaldoGeaendert", "CKonto_SaldoGeaendert.htm"),
        ("a.see-link", "CBuchung.Betrag", "CBuchung_Get_Betrag.htm"),
        ("table.params a.type-link", "CBuchung", "CBuchung.htm"),
        ("a.page-link", "Link", "_Index.htm#CKonto_Buchen.htm"),
    ],
}

# Text that must stay on the page after the <see> elements are replaced.
PAGE_TEXTS = {
    "CKonto_Buchungen.htm": "Eine Collection von CBuchung, ohne CStorno.",
    "CKonto_Buchen.htm": "der Betrag steht in CBuchung.Betrag.",
}

FOUND = """
return Array.from(document.querySelectorAll(arguments[0])).map(e => ({
  text: e.textContent.trim(),
  href: e.getAttribute('href') ? decodeURIComponent(e.getAttribute('href')) : null}));
"""

STATE = """
return {href: decodeURIComponent(location.href), ready: document.readyState,
        started: typeof fsStarted != 'undefined' && fsStarted,
        text: document.body ? document.body.innerText.replace(/\\s+/g, ' ') : ''};
"""


ADDRESS = "return [location.hash, location.search];"


def names_page(address, page):
    fragment, query = (urllib.parse.unquote(part) for part in address)
    if not fragment:
        return query == "?page=" + page or (not query and page == "Projekt.htm")
    return fragment == "#" + page


def wait_for(what, probe, timeout=10):
    deadline = time.time() + timeout
    while True:
        value = probe()
        if value:
            return value
        check(time.time() < deadline, what)
        time.sleep(0.05)


def to_frame(driver, name):
    # A frame element found just before a history step may be gone when
    # switched to: look again.
    for attempt in range(20):
        driver.top()
        frame = driver.find("frame[name=%s]" % name)
        try:
            driver.cmd("POST", "/frame", {"id": {ELEMENT_KEY: frame}})
            return
        except Failure as e:
            if "stale" not in str(e) or attempt == 19:
                raise
            time.sleep(0.05)


def content_state(driver, page):
    """The content frame's state once it shows `page` and its script ran."""
    def probe():
        to_frame(driver, "FrameRechts")
        state = driver.script(STATE)
        done = state["href"].endswith("/" + page) and state["ready"] == "complete"
        return state if done and state["started"] else None
    return wait_for("the content frame does not show %s" % page, probe)


def type_into_search(driver, text):
    to_frame(driver, "FrameLinks")
    box = wait_for("the menu has no search box", lambda: driver.find_all("#fsSearch"))[0]
    driver.cmd("POST", "/element/%s/clear" % box, {})
    driver.cmd("POST", "/element/%s/value" % box, {"text": text})
    wait_for("no result for %r" % text, lambda: driver.find_all("#fsResults a.search-hit"))
    driver.cmd("POST", "/element/%s/value" % box, {"text": "\ue007"})  # Enter


def do_step(driver, base, action, argument):
    if action == "open":
        driver.open(base + argument)
    elif action == "follow":
        to_frame(driver, "FrameRechts")
        links = wait_for("no %s on the page" % argument, lambda: driver.find_all(argument))
        driver.click(links[0])
    elif action == "back":
        driver.cmd("POST", "/back", {})
    elif action == "search":
        type_into_search(driver, argument)


def check_links(driver, page, state):
    # Links come together once the names index is loaded: the first entry
    # of a page waits for them, a link that must be missing is looked for
    # after it.
    for selector, text, target in PAGE_LINKS.get(page, []):
        if target is None and selector.startswith("a."):
            found = driver.script(FOUND, selector)
            check(all(f["text"] != text for f in found), "%s: %s is linked" % (page, text))
            continue
        found = wait_for("%s: no %s" % (page, selector), lambda: driver.script(FOUND, selector))
        match = [f for f in found if f["text"] == text]
        check(match, "%s: no %s %r among %r" % (page, selector, text, found))
        if target:
            check(match[0]["href"].endswith(target),
                  "%s: %r links to %s" % (page, text, match[0]["href"]))
    if page in PAGE_TEXTS:
        check(PAGE_TEXTS[page] in state["text"], "%s lost text: %s" % (page, state["text"]))


def run_scenario(driver, base, scenario):
    for action, argument, page in scenario:
        where = "%s %r" % (action, argument)
        try:
            do_step(driver, base, action, argument)
            state = content_state(driver, page)
            check_links(driver, page, state)
            driver.top()
            # The frame set's address names the page shown, by its
            # fragment or, opened by ?page= and not moved on, its query.
            wait_for("the address does not name %s" % page,
                     lambda: names_page(driver.script(ADDRESS), page))
        except Failure as e:
            raise Failure("%s after %s: %s" % (base, where, e))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folioscope", required=True)
    parser.add_argument("--app-dir", required=True)
    parser.add_argument("--project", help="the project to report on")
    parser.add_argument("--umlauts", action="store_true",
                        help="report on the umlaut project of tests/umlauts instead")
    parser.add_argument("--source-dir", required=True)
    parser.add_argument("--work", required=True)
    args = parser.parse_args()
    if not ensure_chromium(args.source_dir):
        print("SKIPPED: Chromium and ChromeDriver are not installed.")
        return SKIP
    shutil.rmtree(args.work, ignore_errors=True)
    os.makedirs(args.work)
    scenario = UMLAUT_SCENARIO if args.umlauts else SCENARIO
    if args.umlauts:
        sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..",
                                        "umlauts"))
        import umlaut_fixture
        args.project = umlaut_fixture.write_project(os.path.join(args.work, "B\u00fccherei"))
    check(args.project, "--project or --umlauts is needed")
    report = os.path.join(args.work, "report")
    run = subprocess.run([args.folioscope, "--app-dir", args.app_dir, "--registry",
                          os.path.join(args.work, "registry.reg"), "--no-progress",
                          "report", args.project, "-o", report],
                         capture_output=True, text=True, timeout=60)
    check(run.returncode == 0, "folioscope report exited %d:\n%s%s"
          % (run.returncode, run.stdout, run.stderr))
    port = free_port()
    server = subprocess.Popen([sys.executable, "-m", "http.server", "--bind", "127.0.0.1",
                               str(port), "--directory", report],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    bases = ["file://" + urllib.parse.quote(report) + "/", "http://127.0.0.1:%d/" % port]
    try:
        with tempfile.TemporaryDirectory(prefix="fs-chromium-") as profile:
            driver = WebDriver(profile)
            try:
                for base in bases:
                    run_scenario(driver, base, scenario)
            finally:
                driver.quit()
    finally:
        server.terminate()
        server.wait(timeout=10)
    print("%d steps passed from disk and from a web server" % len(scenario))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as e:
        print("FAILED:", e)
        sys.exit(1)
