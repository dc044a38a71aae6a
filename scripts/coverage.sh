#!/usr/bin/env bash
# Line and function coverage of the component and the host by the Linux test
# suite: builds build-cov/ without optimisation and with --coverage, runs
# ctest one test at a time (parallel runs would corrupt the counters) and
# prints gcovr's summary over src/, leaving out src/com (the Windows COM
# server is not built here) and the test files themselves (every file with
# "test" in its name).
#
#   scripts/coverage.sh [extra ctest arguments]
#
# The HTML details go to build-cov/coverage/index.html. Not part of
# ./test.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=build-cov
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_FLAGS="--coverage -O0" -DCMAKE_EXE_LINKER_FLAGS="--coverage"
cmake --build "$dir" -j "${COVERAGE_JOBS:-2}"
find "$dir" -name '*.gcda' -delete
ctest --test-dir "$dir" -j1 --output-on-failure "$@" || true
mkdir -p "$dir/coverage"
# gcov sometimes writes negative branch counts for code run by several
# threads; those lines are skipped rather than failing the summary.
gcovr --root . --object-directory "$dir" --gcov-ignore-parse-errors \
  --filter 'src/' --exclude 'src/com/' \
  --exclude '.*/[^/]*test[^/]*$' \
  --html-details "$dir/coverage/index.html" --print-summary
