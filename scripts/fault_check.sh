#!/usr/bin/env bash
# Plants one deliberate fault at a time in the sources, rebuilds build/ and
# runs the Linux ctest, then puts the file back: each fault must make at
# least one test fail. Prints the failing tests of each fault, and exits 1
# when a fault went unnoticed.
#
#   scripts/fault_check.sh [NAME ...]       (default: every Linux fault)
#   scripts/fault_check.sh com_dispid       (plants it and builds the
#       mingw-x86_64 preset; run its Wine tests by hand, then
#       `git checkout` the file)
#
# Not part of ./test.sh: ten rebuilds take a while.
set -uo pipefail
cd "$(dirname "$0")/.."

# name|file|text|faulty text (the text must occur exactly once)
faults=(
  "instr_start|src/infra/vb_runtime.cc|haystack.find(needle, static_cast<size_t>(start - 1))|haystack.find(needle, static_cast<size_t>(start))"
  "mid_length|src/infra/vb_runtime.cc|static_cast<size_t>(start - 1), static_cast<size_t>(length))|static_cast<size_t>(start - 1), static_cast<size_t>(length + 1))"
  "tag_cut|src/doccomments/tag_block.cc|vb::Left(content, Len(content) - Len(close_tag))|vb::Left(content, Len(content) - Len(close_tag) + 1)"
  "quote_parity|src/format/code_format.cc|if (quotes % 2 == 0) {|if (quotes % 2 == 1) {"
  "key_length|src/reportsets/winapi_crypt.cc|for (int i = 0; i < 5; ++i)|for (int i = 0; i < 6; ++i)"
  "setting_default|src/cli/host_settings.cc|kCurrentReportKey, false, 0, \"Deutsch\"}|kCurrentReportKey, false, 0, \"English\"}"
  "menu_node|src/pages/component_menu.cc|\"MenuIcon3\", \"Element3\"|\"MenuIcon3\", \"Element4\""
  "chm_map|src/chm/help_topics.cc|std::to_string(topic.context) +|std::to_string(topic.context + 1) +"
  "path_guard|src/infra/path_guard.cc|if (name.back() == '.' \|\| name.back() == ' ') return false;|if (name.back() == ' ') return false;"
  "writer_order|src/infra/page_writer.cc|jobs_.push_back(Job{|jobs_.push_front(Job{"
)
com_fault="com_dispid|src/com/com_communicator.cc|constexpr DISPID kDispidOnReportWorks = 3;|constexpr DISPID kDispidOnReportWorks = 4;"

plant() {  # file text faulty
  python3 - "$1" "$2" "$3" <<'PY'
import sys
path, old, new = sys.argv[1], sys.argv[2].replace("\\|", "|"), sys.argv[3].replace("\\|", "|")
text = open(path, encoding="latin-1").read()
if text.count(old) != 1:
    sys.exit(f"{path}: the text to change occurs {text.count(old)} times: {old!r}")
open(path, "w", encoding="latin-1").write(text.replace(old, new))
PY
}

split() {  # "a|b|c|d" with \| inside fields -> four lines
  python3 -c 'import re,sys; print("\n".join(re.split(r"(?<!\\)\|", sys.argv[1])))' "$1"
}

# The tests that run the built program end to end take most of the time:
# they run only when no other test caught the fault.
slow='browser|umlaut_project|deb_package|coverage_gate'
failing_tests() {
  ctest --test-dir build -j2 "$@" 2>&1 |
    awk '/The following tests FAILED:/ { on = 1; next } on && / - / { sub(/^[^-]* - /, ""); sub(/ \(.*$/, ""); print }'
}

wanted=("$@")
missed=0
for entry in "${faults[@]}" "$com_fault"; do
  mapfile -t f < <(split "$entry")
  name=${f[0]} file=${f[1]}
  if [ ${#wanted[@]} -gt 0 ]; then
    [[ " ${wanted[*]} " == *" $name "* ]] || continue
  elif [ "$name" = com_dispid ]; then
    continue
  fi
  cp "$file" "$file.fault-orig"
  if ! plant "$file" "${f[2]}" "${f[3]}"; then
    mv "$file.fault-orig" "$file"; missed=1; continue
  fi
  if [ "$name" = com_dispid ]; then
    rm "$file.fault-orig"
    cmake --build --preset mingw-x86_64 -j2 >/dev/null
    echo "com_dispid planted in $file; run: ctest --test-dir build -R wine64; then git checkout $file"
    exit 0
  fi
  if ! cmake --build build -j2 >"build/fault-$name.log" 2>&1; then
    echo "$name: the build failed (see build/fault-$name.log)"; missed=1
  else
    failed=$(failing_tests -E "^wine(32|64)_|$slow")
    [ -n "$failed" ] || failed=$(failing_tests -R "$slow")
    if [ -n "$failed" ]; then
      echo "$name: caught by $(echo $failed)"
    else
      echo "$name: NOT caught"; missed=1
    fi
  fi
  mv "$file.fault-orig" "$file"
  touch "$file"  # newer than the faulty build, so that it is rebuilt
done
cmake --build build -j2 >/dev/null
exit $missed
