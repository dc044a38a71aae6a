#!/usr/bin/env python3
"""Checks the shape of src/: includes point only down the layers, the
component reaches the OS only through the platform files, and functions stay
short.

  scripts/check_layers.py [SRC_FOLDER]

Prints one line per finding ("file:line: text") and exits 1 when there is
any. Needs only python3; reads every file once and takes well under a
second.
"""

import pathlib
import re
import sys

# The layers from the bottom up; folders in one layer may include each other.
LAYERS = [
    {"infra"},
    {"model"},
    {"doccomments", "format", "reportsets"},
    {"pages", "chm"},
    {"engine"},
    {"cli", "com"},
]
RANK = {folder: rank for rank, layer in enumerate(LAYERS) for folder in layer}

# The hosts may use the OS as they like; the component only in the platform
# files: the platforms themselves and the file layer beneath them.
HOSTS = {"cli", "com"}
PLATFORM_FILES = re.compile(
    r"^infra/(posix_|windows_|os_path\.|file_system\.|file_stamp\.)")
# Tests and their helpers make scratch folders with std::filesystem; they
# are not part of the component.
TEST_FILES = re.compile(r"(_test\.cc|test_support\.h|test_folder\.h)$")

MAX_FUNCTION_LINES = 60

# (file, what) pairs that are reported but do not fail the check, for a move
# that is under way; `what` is the included path or "function NAME". Empty
# when the tree is in order.
KNOWN_EXCEPTIONS = set()

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"/]+)/[^"]+"')
OS_USE = re.compile(r"std::filesystem|<filesystem>|^\s*#\s*if.*\b_WIN32\b")
# A definition at namespace scope: clang-format puts its first line and its
# closing brace in column 0.
FUNCTION_START = re.compile(r"^[A-Za-z_][\w:<>,*&\s~]*\b(~?\w+)\s*\(")
NOT_A_FUNCTION = re.compile(r"^(namespace|struct|class|enum|union|extern|template|typedef|using)\b")


def layer_findings(relative, lines):
    folder = relative.split("/", 1)[0]
    for number, line in enumerate(lines, 1):
        match = INCLUDE.match(line)
        if not match or match.group(1) not in RANK:
            continue
        if RANK[match.group(1)] > RANK[folder]:
            included = line.split('"')[1]
            yield number, included, "includes " + included + ", a layer above " + folder + "/"


def os_findings(relative, lines):
    folder = relative.split("/", 1)[0]
    if folder in HOSTS or PLATFORM_FILES.match(relative) or TEST_FILES.search(relative):
        return
    for number, line in enumerate(lines, 1):
        if OS_USE.search(line):
            yield number, "os", "reaches the OS outside the platform: " + line.strip()


def function_findings(relative, lines):
    """Functions whose bodies, the lines between the line that opens the
    body and the closing brace, number more than MAX_FUNCTION_LINES."""
    if not relative.endswith(".cc"):
        return
    start = body = None
    name = ""
    for number, line in enumerate(lines, 1):
        if start is None:
            match = FUNCTION_START.match(line)
            if match and not NOT_A_FUNCTION.match(line) and not line.rstrip().endswith((";", "}")):
                start, name = number, match.group(1)
                body = number if line.rstrip().endswith("{") else None
            continue
        if body is None:
            if line.rstrip().endswith(";"):
                start = None  # a declaration wrapped over several lines
            elif line.rstrip().endswith("{"):
                body = number
            continue
        if line.startswith("}"):
            length = number - body - 1
            if length > MAX_FUNCTION_LINES:
                yield start, "function " + name, "function %s has a body of %d lines (at most %d)" % (
                    name, length, MAX_FUNCTION_LINES)
            start = body = None


def main(argv):
    src = pathlib.Path(argv[1] if len(argv) > 1 else pathlib.Path(__file__).parent.parent / "src")
    failed = False
    checks = (layer_findings, os_findings, function_findings)
    for path in sorted(p for p in src.rglob("*") if p.suffix in (".cc", ".h", ".in")):
        relative = path.relative_to(src).as_posix()
        if relative.split("/", 1)[0] not in RANK:
            continue
        lines = path.read_text(encoding="latin-1").splitlines()
        for check in checks:
            for number, what, text in check(relative, lines):
                known = (relative, what) in KNOWN_EXCEPTIONS
                print("%s:%d: %s%s" % (relative, number, text, " (known exception)" if known else ""))
                failed = failed or not known
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
