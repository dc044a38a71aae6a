#!/bin/sh
# compare_reports.sh A B: succeeds when the two report folders hold the same
# files with the same bytes. Use it around every optimisation of the report
# code: generate a report before and after, then compare.
set -eu
if [ $# -ne 2 ]; then
  echo "usage: compare_reports.sh REPORT_A REPORT_B" >&2
  exit 2
fi
if diff -r -q -- "$1" "$2"; then
  echo "identical: $(find "$1" -type f | wc -l) files"
else
  echo "reports differ" >&2
  exit 1
fi
