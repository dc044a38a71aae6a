#!/usr/bin/env python3
"""Opens a generated web report in headless Chromium and checks it as a reader
would meet it: the frame page loads every frame, every link and referenced
file (style sheets, scripts, pictures) of every page resolves, a menu node
opens and closes, and clicking a module in the menu shows that module's page
in the content frame. With --umlauts the report is of a project named with
umlauts throughout (tests/umlauts), and the test clicks on from the module
page to a member page whose file name holds one.

The report is generated first with the folioscope binary under test. Chromium
is driven through ChromeDriver's WebDriver interface with nothing but the
standard library. Exit status: 0 passed, 1 failed, 77 skipped (only when
Chromium and ChromeDriver are missing and cannot be installed).
"""

import argparse
import html.parser
import json
import os
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.parse
import urllib.request

SKIP = 77
CHROMIUM = "/usr/bin/chromium"
CHROMEDRIVER = "/usr/bin/chromedriver"
ELEMENT_KEY = "element-6066-11e4-a52e-4f735466cecf"
CHROMIUM_FLAGS = [
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--disable-dev-shm-usage",
]


class Failure(Exception):
    pass


def check(condition, message):
    if not condition:
        raise Failure(message)


# --- Getting a browser ------------------------------------------------------

def ensure_chromium(source_dir):
    """True when Chromium and ChromeDriver are there, installing them through
    the project's dependency script when they are not."""
    if os.access(CHROMIUM, os.X_OK) and os.access(CHROMEDRIVER, os.X_OK):
        return True
    script = os.path.join(source_dir, "scripts", "install-deps.sh")
    print("Chromium or ChromeDriver missing; trying", script, flush=True)
    try:
        subprocess.run(["bash", script], check=False, timeout=600,
                       stdout=sys.stdout, stderr=sys.stderr)
    except (OSError, subprocess.TimeoutExpired) as e:
        print("install failed:", e)
    return os.access(CHROMIUM, os.X_OK) and os.access(CHROMEDRIVER, os.X_OK)


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class WebDriver:
    """The few WebDriver commands this test needs."""

    def __init__(self, profile_dir):
        self.port = free_port()
        self.base = "http://127.0.0.1:%d" % self.port
        self.process = subprocess.Popen(
            [CHROMEDRIVER, "--port=%d" % self.port],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.time() + 15
        while True:
            try:
                if self._call("GET", "/status")["ready"]:
                    break
            except (OSError, urllib.error.URLError):
                pass
            check(time.time() < deadline, "ChromeDriver did not start")
            time.sleep(0.1)
        caps = {"capabilities": {"alwaysMatch": {
            "browserName": "chrome",
            "goog:chromeOptions": {
                "binary": CHROMIUM,
                "args": CHROMIUM_FLAGS + ["--user-data-dir=" + profile_dir],
            },
        }}}
        self.session = self._call("POST", "/session", caps)["sessionId"]

    def _call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data=data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=30) as response:
                return json.load(response)["value"]
        except urllib.error.HTTPError as e:
            raise Failure("WebDriver %s %s: %s" % (method, path, e.read().decode(errors="replace")))

    def cmd(self, method, path, body=None):
        return self._call(method, "/session/%s%s" % (self.session, path), body)

    def open(self, url):
        self.cmd("POST", "/url", {"url": url})

    def script(self, source, *args):
        return self.cmd("POST", "/execute/sync", {"script": source, "args": list(args)})

    def top(self):
        self.cmd("POST", "/frame", {"id": None})

    def frame(self, index):
        self.cmd("POST", "/frame", {"id": index})

    def find(self, css):
        return self.cmd("POST", "/element", {"using": "css selector", "value": css})[ELEMENT_KEY]

    def find_all(self, css):
        found = self.cmd("POST", "/elements", {"using": "css selector", "value": css})
        return [e[ELEMENT_KEY] for e in found]

    def click(self, element):
        self.cmd("POST", "/element/%s/click" % element, {})

    def quit(self):
        try:
            self.cmd("DELETE", "")
        except Exception:  # the browser may already be gone
            pass
        self.process.terminate()
        try:
            self.process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            self.process.kill()


# --- Static checks of the written files -------------------------------------

class References(html.parser.HTMLParser):
    """Every href, src and background reference of a page."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.refs = []

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src", "background") and value:
                self.refs.append((tag, value))


def local_target(page_path, ref):
    """The file a reference points to, or None for references that leave the
    report (web addresses, mail, script and in-page anchors)."""
    ref = ref.strip()
    if re.match(r"^(https?:|mailto:|javascript:|#|about:|data:)", ref, re.I):
        return None
    path = urllib.parse.unquote(ref.split("#", 1)[0].split("?", 1)[0])
    if not path:
        return None
    if path.startswith("file://"):
        path = urllib.parse.urlparse(path).path
    return os.path.normpath(os.path.join(os.path.dirname(page_path), path.replace("\\", "/")))


def check_files(report_dir):
    """Every reference of every page, and every url() of every style sheet,
    names a file of the report. Returns the number of references checked."""
    missing = []
    checked = 0
    for name in sorted(os.listdir(report_dir)):
        path = os.path.join(report_dir, name)
        if name.lower().endswith((".htm", ".html")):
            parser = References()
            with open(path, encoding="cp1252", errors="replace") as f:
                parser.feed(f.read())
            refs = [ref for _, ref in parser.refs]
        elif name.lower().endswith(".css"):
            with open(path, encoding="cp1252", errors="replace") as f:
                refs = re.findall(r"url\(\s*['\"]?([^'\")]+)['\"]?\s*\)", f.read())
        else:
            continue
        for ref in refs:
            target = local_target(path, ref)
            if target is None:
                continue
            checked += 1
            if not os.path.isfile(target):
                missing.append("%s -> %s" % (name, ref))
    check(not missing, "references that do not resolve:\n  " + "\n  ".join(missing))
    return checked


# --- Browser checks ---------------------------------------------------------

FRAME_STATE = """
const frames = Array.from(document.querySelectorAll('frame, iframe'));
return frames.map(f => ({name: f.name || '', src: f.getAttribute('src') || ''}));
"""

PAGE_STATE = """
return {
  href: location.href,
  ready: document.readyState,
  title: document.title,
  text: document.body ? document.body.innerText : '',
  frames: document.querySelectorAll('frame, iframe').length,
  brokenImages: Array.from(document.images)
      .filter(i => !(i.complete && i.naturalWidth > 0)).map(i => i.getAttribute('src')),
  sheets: Array.from(document.querySelectorAll('link[rel~="stylesheet" i]'))
      .filter(l => !l.sheet).map(l => l.getAttribute('href')),
};
"""


def wait_loaded(driver, what):
    deadline = time.time() + 10
    while True:
        state = driver.script(PAGE_STATE)
        if state["ready"] == "complete":
            return state
        check(time.time() < deadline, what + " did not finish loading")
        time.sleep(0.05)


def walk_frames(driver, path, pages):
    """Checks the current document and, recursively, every frame below it.
    `path` lists frame indexes from the top; `pages` collects (path, name,
    state) of every frame."""
    frames = driver.script(FRAME_STATE)
    for index, info in enumerate(frames):
        driver.frame(index)
        where = "frame %r (%s)" % (info["name"], info["src"])
        state = wait_loaded(driver, where)
        check(state["href"].startswith("file://"), where + " did not load: " + state["href"])
        check(urllib.parse.unquote(state["href"]).endswith(
                  "/" + info["src"].replace("\\", "/").split("/")[-1]),
              where + " shows " + state["href"])
        check(not state["brokenImages"], where + ": pictures not shown: %r" % state["brokenImages"])
        check(not state["sheets"], where + ": style sheets not loaded: %r" % state["sheets"])
        pages.append((path + [index], info["name"], state))
        if state["frames"]:
            walk_frames(driver, path + [index], pages)
        driver.cmd("POST", "/frame/parent", {})


def goto_frame(driver, path):
    driver.top()
    for index in path:
        driver.frame(index)


VISIBLE = """
const e = document.getElementById(arguments[0]);
if (!e) return null;
return e.offsetHeight > 0 && getComputedStyle(e).display !== 'none'
    && getComputedStyle(e).visibility !== 'hidden';
"""

MENU_LINKS = """
const node = document.getElementById(arguments[0]);
return node ? Array.from(node.querySelectorAll('a[href]'))
    .map(a => ({text: a.innerText.trim(), href: a.getAttribute('href')})) : [];
"""


def check_menu(driver, menu_path, pages):
    """Opens and closes a menu node that holds modules, then clicks its first
    module and expects that module's page in another frame."""
    goto_frame(driver, menu_path)
    node = None
    for n in range(1, 6):
        if driver.script(MENU_LINKS, "Element%d" % n):
            node = n
            break
    check(node is not None, "no menu node lists a module")
    element_id = "Element%d" % node
    toggle = driver.find("#MenuIcon%d" % node)
    before = driver.script(VISIBLE, element_id)
    driver.click(toggle)
    time.sleep(0.1)
    after = driver.script(VISIBLE, element_id)
    check(before != after, "clicking MenuIcon%d does not open or close its node" % node)
    if not after:
        driver.click(toggle)
        time.sleep(0.1)
        check(driver.script(VISIBLE, element_id), "node %s does not open" % element_id)

    link = driver.script(MENU_LINKS, element_id)[0]
    module = link["text"]
    anchors = driver.find_all("#%s a[href]" % element_id)
    driver.click(anchors[0])
    expected = "/" + link["href"].replace("\\", "/").split("/")[-1]
    deadline = time.time() + 10
    while True:
        shown = []
        for path, name, _ in pages:
            if path == menu_path:
                continue
            goto_frame(driver, path)
            state = driver.script(PAGE_STATE)
            shown.append(state["href"])
            shown_file = urllib.parse.unquote(state["href"])
            if shown_file.endswith(expected) and state["ready"] == "complete":
                check(module in state["text"],
                      "the page of %s does not name the module" % module)
                return module, name
        check(time.time() < deadline,
              "clicking %s showed no frame with %s; frames show %r" % (module, expected, shown))
        time.sleep(0.1)


MEMBER_LINKS = """
return Array.from(document.querySelectorAll('td.member-name a[href]'))
    .map(a => ({text: a.innerText.trim(), href: a.getAttribute('href')}));
"""


def open_member(driver, content_path, module):
    """On the module page in the content frame, clicks the first member link
    whose page name goes beyond ASCII and expects that page to load there."""
    goto_frame(driver, content_path)
    links = driver.script(MEMBER_LINKS)
    chosen = next((k for k, link in enumerate(links) if not link["href"].isascii()), None)
    check(chosen is not None, "the page of %s links no member named beyond ASCII: %r"
          % (module, links))
    link = links[chosen]
    driver.click(driver.find_all("td.member-name a[href]")[chosen])
    expected = "/" + link["href"]
    deadline = time.time() + 10
    while True:
        goto_frame(driver, content_path)
        state = driver.script(PAGE_STATE)
        shown_file = urllib.parse.unquote(state["href"])
        if shown_file.endswith(expected) and state["ready"] == "complete":
            check(link["text"] in state["text"], "the page of %s does not name it" % link["text"])
            check(not state["sheets"], "%s: style sheets not loaded" % link["href"])
            return link["text"]
        check(time.time() < deadline, "clicking %s did not show %s (shows %s)"
              % (link["text"], expected, state["href"]))
        time.sleep(0.1)


def run_browser_checks(report_dir, profile_dir, to_member=False):
    driver = WebDriver(profile_dir)
    try:
        index = os.path.join(report_dir, "_Index.htm")
        driver.open("file://" + urllib.parse.quote(index))
        top = wait_loaded(driver, "_Index.htm")
        check(top["frames"] > 0, "_Index.htm holds no frames")
        pages = []
        walk_frames(driver, [], pages)
        names = [p[2]["href"].rsplit("/", 1)[-1] for p in pages]
        for required in ("Menu.htm", "Logo.htm"):
            check(required in names, "no frame shows %s; frames show %r" % (required, names))
        menu_path = next(p[0] for p in pages if p[2]["href"].endswith("/Menu.htm"))
        module, frame = check_menu(driver, menu_path, pages)
        if to_member:
            content = next(p[0] for p in pages if p[1] == frame)
            module += " > " + open_member(driver, content, module)
        return names, module, frame
    finally:
        driver.quit()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folioscope", required=True)
    parser.add_argument("--app-dir", required=True)
    parser.add_argument("--project", help="the project to report on")
    parser.add_argument("--umlauts", action="store_true",
                        help="report on the umlaut fixture project (tests/umlauts) and click "
                             "on to one of its member pages")
    parser.add_argument("--source-dir", required=True)
    parser.add_argument("--work", required=True)
    args = parser.parse_args()
    started = time.time()

    if not ensure_chromium(args.source_dir):
        print("SKIPPED: Chromium and ChromeDriver (Debian packages chromium, chromium-driver) "
              "are not installed and could not be installed.")
        return SKIP

    shutil.rmtree(args.work, ignore_errors=True)
    os.makedirs(args.work)
    if args.umlauts:
        sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..",
                                        "umlauts"))
        import umlaut_fixture
        args.project = umlaut_fixture.write_project(os.path.join(args.work, "B\u00fccherei"))
    check(args.project, "--project or --umlauts is needed")
    report_dir = os.path.join(args.work, "report")
    run = subprocess.run(
        [args.folioscope, "--app-dir", args.app_dir,
         "--registry", os.path.join(args.work, "registry.reg"), "--no-progress",
         "report", args.project, "-o", report_dir],
        capture_output=True, text=True, timeout=60)
    check(run.returncode == 0, "folioscope report exited %d:\n%s%s"
          % (run.returncode, run.stdout, run.stderr))
    check(os.path.isfile(os.path.join(report_dir, "_Index.htm")), "no _Index.htm was written")

    checked = check_files(report_dir)
    with tempfile.TemporaryDirectory(prefix="fs-chromium-") as profile:
        names, module, frame = run_browser_checks(report_dir, profile, args.umlauts)
    print("frames: %s; %d references resolve; %s opened in frame %r (%.1f s)"
          % (", ".join(names), checked, module, frame, time.time() - started))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as e:
        print("FAILED:", e)
        sys.exit(1)
