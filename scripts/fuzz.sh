#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, AddressSanitizer, UBSan) in
# build-fuzz/ and runs each for a bounded time, a few at a time.
#
#   scripts/fuzz.sh [SECONDS] [TARGET ...]
#
# SECONDS per target (default 60); TARGETs default to all of them:
# vb6_reader profile_ini description registry_hive report_set doc_comments
# code_format. FUZZ_JOBS targets run side by side (default 2).
# Grown corpora:  build-fuzz/fuzz-corpus/<target>/ (seeded from fuzz/corpus/)
# Findings:       build-fuzz/fuzz-findings/<target>/ (crash-*, timeout-*, oom-*, leak-*)
# Logs:           build-fuzz/fuzz-logs/<target>.log
# Reproduce one:  build-fuzz/fuzz/fuzz_<target> <finding file>
# The exit status is 1 when any target produced a finding.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=(vb6_reader profile_ini description registry_hive report_set doc_comments code_format)
fi
jobs=${FUZZ_JOBS:-2}
# A small quarantine and no malloc fill keep AddressSanitizer's memory and
# page faults down: the readers allocate many short strings per input, and
# the defaults made them several times slower.
export ASAN_OPTIONS=${ASAN_OPTIONS:-quarantine_size_mb=16:max_malloc_fill_size=0}

max_len() {
  case "$1" in
    vb6_reader | report_set) echo 16384 ;;
    description | doc_comments | code_format) echo 8192 ;;
    *) echo 4096 ;;
  esac
}

cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFOLIOSCOPE_FUZZ=ON >/dev/null
cmake --build build-fuzz -j "$jobs" --target fuzz_all

run_one() {
  local target=$1
  local corpus=build-fuzz/fuzz-corpus/$target
  local findings=build-fuzz/fuzz-findings/$target
  local log=build-fuzz/fuzz-logs/$target.log
  mkdir -p "$corpus" "$findings" build-fuzz/fuzz-logs
  local status=0
  nice -n 10 build-fuzz/fuzz/fuzz_"$target" "$corpus" fuzz/corpus/"$target" \
    -dict=fuzz/dict/"$target".dict -max_len="$(max_len "$target")" \
    -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -print_funcs=0 -artifact_prefix="$findings"/ >"$log" 2>&1 || status=$?
  echo "$target exit $status" >>"$log"
}

pids=()
for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n || true; done
  echo "fuzzing $target for ${seconds}s"
  run_one "$target" &
  pids+=($!)
done
wait || true

found=0
printf '\n%-14s %8s %12s %8s %8s %s\n' target seconds executions cov rss_mb findings
for target in "${targets[@]}"; do
  log=build-fuzz/fuzz-logs/$target.log
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  rss=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log" | tail -1)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  count=$(find build-fuzz/fuzz-findings/"$target" -type f | wc -l)
  [ "$count" -gt 0 ] && found=1
  printf '%-14s %8s %12s %8s %8s %s\n' "$target" "$seconds" "${execs:-?}" "${cov:-?}" \
    "${rss:-?}" "$count"
done
if [ "$found" -ne 0 ]; then
  echo "findings: see build-fuzz/fuzz-findings/ and build-fuzz/fuzz-logs/"
  exit 1
fi
