#!/usr/bin/env python3
"""The shape check of src/ (scripts/check_layers.py) on small made-up trees:
each case is one file, its contents and the findings the check must print
for it (none means it passes).

  check_layers_test.py CHECK_SCRIPT
"""

import pathlib
import subprocess
import sys
import tempfile

LONG_BODY = "".join("  Step();\n" for _ in range(61))

CASES = [
    # (file below src/, contents, expected finding lines)
    ("model/a.cc", '#include "infra/x.h"\n#include "model/y.h"\n', []),
    ("model/a.cc", '#include "doccomments/x.h"\n',
     ["model/a.cc:1: includes doccomments/x.h, a layer above model/"]),
    ("format/a.cc", '#include "reportsets/x.h"\n#include "doccomments/y.h"\n', []),
    ("pages/a.h", '#include "chm/x.h"\n', []),
    ("chm/a.cc", '#include "engine/web_report.h"\n',
     ["chm/a.cc:1: includes engine/web_report.h, a layer above chm/"]),
    ("engine/a.cc", '#include "cli/host.h"\n',
     ["engine/a.cc:1: includes cli/host.h, a layer above engine/"]),
    ("cli/a.cc", '#include "engine/x.h"\n#include <filesystem>\n', []),
    ("model/a.cc", "#include <filesystem>\n",
     ["model/a.cc:1: reaches the OS outside the platform: #include <filesystem>"]),
    ("engine/a.cc", "#if defined(_WIN32)\n#endif\n",
     ["engine/a.cc:1: reaches the OS outside the platform: #if defined(_WIN32)"]),
    ("infra/os_path.cc", "#ifdef _WIN32\n#include <filesystem>\n#endif\n", []),
    ("infra/windows_thing.cc", "#ifndef _WIN32\n#endif\n", []),
    ("infra/registry.cc", "#ifndef _WIN32\n#endif\n",
     ["infra/registry.cc:1: reaches the OS outside the platform: #ifndef _WIN32"]),
    ("pages/a_test.cc", "namespace fs = std::filesystem;\n", []),
    ("model/a.cc", "int Short(int a,\n          int b) {\n" + LONG_BODY[10:] + "}\n", []),
    ("model/a.cc", "int Long(int a,\n         int b) {\n" + LONG_BODY + "}\n",
     ["model/a.cc:1: function Long has a body of 61 lines (at most 60)"]),
    ("model/a.cc", "int One() { return 1; }\nint Two();\n", []),
]


def run_case(check, relative, contents):
    with tempfile.TemporaryDirectory() as root:
        path = pathlib.Path(root) / relative
        path.parent.mkdir(parents=True)
        path.write_text(contents, encoding="latin-1")
        done = subprocess.run([sys.executable, check, root], capture_output=True, text=True)
        return done.returncode, done.stdout.splitlines()


def main(argv):
    failures = 0
    for relative, contents, expected in CASES:
        code, lines = run_case(argv[1], relative, contents)
        should_fail = any(not line.endswith("(known exception)") for line in expected)
        if lines != expected or code != (1 if should_fail else 0):
            failures += 1
            print("%s: got %r (exit %d), expected %r" % (relative, lines, code, expected))
    print("%d of %d cases as expected" % (len(CASES) - failures, len(CASES)))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
