#!/bin/bash
# run_bench.sh: times `folioscope report` and `folioscope chm` (help project
# written, compiler absent) on synthetic projects of 100, 1,000 and 3,000
# modules, and compares each report with the write floor: the time a plain
# program needs to write the same files with the same bytes. `folioscope
# lint`, which writes nothing, is timed on the same projects and compared
# with the report.
#
#   run_bench.sh BUILD_DIR [WORK_DIR] [SIZES...]
#
# BUILD_DIR holds folioscope, make_project, write_floor and Res/ (the build
# tree is an application folder). WORK_DIR defaults to BUILD_DIR/bench-work
# and keeps the generated projects and the logs. SIZES default to
# "100 1000 3000". Every run is preceded by one untimed run, so that all
# figures are taken with the source files in the page cache.
#
# Reports and floors are written to a memory file system first
# ($BENCH_MEMORY_DIR, default /dev/shm), where creating a file costs only
# the kernel's own work and the figures repeat from run to run; then, for a
# second table, to WORK_DIR on the disk. BENCH_TABLES picks "memory", "disk"
# or "memory disk" (the default). The reports of the last table stay in its
# folder (reportN, chmN) for compare_reports.sh.
set -euo pipefail

if [ $# -lt 1 ]; then
  echo "usage: run_bench.sh BUILD_DIR [WORK_DIR] [SIZES...]" >&2
  exit 2
fi
build=$(cd "$1" && pwd)
work=${2:-$build/bench-work}
shift $(( $# >= 2 ? 2 : 1 ))
sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(100 1000 3000)
seed=${BENCH_SEED:-20261123}

folioscope=$build/folioscope
for tool in "$folioscope" "$build/make_project" "$build/write_floor" /usr/bin/time; do
  [ -x "$tool" ] || { echo "run_bench.sh: missing $tool" >&2; exit 2; }
done
mkdir -p "$work"
work=$(cd "$work" && pwd)
registry=$work/registry.reg
rm -f "$registry"

# The help compiler is named by a path that does not exist, so `chm` writes
# the pages and the help project files and stops before compiling.
no_compiler=$work/no-such-dir/chmcmd

# less_than A B: true when the number A is below B (or B is empty).
less_than() { [ -z "$2" ] || awk -v a="$1" -v b="$2" 'BEGIN { exit !(a < b) }'; }

# timed_round LABEL COMMAND...: one run of COMMAND under /usr/bin/time;
# keeps it as "wall user sys maxrss_kb" in $work/LABEL.time when it is the
# fastest since that file was removed, and leaves its exit status in $status.
timed_round() {
  local label=$1 last
  shift
  status=0
  /usr/bin/time -f "%e %U %S %M" -o "$work/$label.run" "$@" \
    >/dev/null 2>"$work/$label.log" || status=$?
  last=$(tail -n 1 "$work/$label.run")
  rm -f "$work/$label.run"
  if [ ! -e "$work/$label.time" ] ||
     less_than "${last%% *}" "$(cut -d' ' -f1 "$work/$label.time")"; then
    echo "$last" >"$work/$label.time"
  fi
}

# run_timed LABEL OUT ROOT -- COMMAND...: runs COMMAND once untimed, then
# $BENCH_REPEAT rounds (default 3) of: the write floor of the output just
# made (written below ROOT), then COMMAND under /usr/bin/time. Floor and command take turns, so
# both meet the file system in the same state: creating files right after
# many were deleted costs ext4 far more than on a quiet disk, and that
# state drifts over a run. Leaves the fastest command run as
# "wall user sys maxrss_kb" in $work/LABEL.time and the fastest floor as
# "files bytes seconds cpu_seconds" in $work/LABEL.floor.
run_timed() {
  local label=$1 out=$2 root=$3
  shift 4
  local status=0 run best_floor="" floor_line
  rm -rf "$out" "$work/$label.time"
  "$@" >/dev/null 2>"$work/$label.log" || true
  for ((run = 0; run < ${BENCH_REPEAT:-3}; run++)); do
    floor_line=$("$build/write_floor" "$out" "$root/floor-$label" --repeat 1 2>/dev/null |
      sed 's/[a-z_]*=//g')
    if less_than "$(echo "$floor_line" | cut -d' ' -f3)" "$best_floor"; then
      best_floor=$(echo "$floor_line" | cut -d' ' -f3)
      echo "$floor_line" >"$work/$label.floor"
    fi
    rm -rf "$root/floor-$label" "$out"
    timed_round "$label" "$@"
  done
  echo "$status" >"$work/$label.status"
}

# time_best LABEL -- COMMAND...: runs COMMAND once untimed, then
# $BENCH_REPEAT rounds under /usr/bin/time; leaves the fastest as "wall
# user sys maxrss_kb" in $work/LABEL.time and the last exit status in
# $work/LABEL.status. For commands that write no files.
time_best() {
  local label=$1 status=0 run
  shift 2
  rm -f "$work/$label.time"
  "$@" >/dev/null 2>"$work/$label.log" || true
  for ((run = 0; run < ${BENCH_REPEAT:-3}; run++)); do
    timed_round "$label" "$@"
  done
  echo "$status" >"$work/$label.status"
}

tables=(${BENCH_TABLES:-memory disk})
# Named after the work folder, so that benchmarks of two build trees on one
# machine do not write into each other's reports.
memory_root=${BENCH_MEMORY_DIR:-/dev/shm}/folioscope-bench-$(printf '%s' "$work" | cksum | cut -d' ' -f1)

# out_root TABLE: the folder that takes the reports and floors of TABLE.
out_root() {
  case $1 in
    memory) echo "$memory_root" ;;
    disk) echo "$work" ;;
    *) echo "run_bench.sh: unknown table $1 (memory or disk)" >&2; exit 2 ;;
  esac
}

# Projects first, and lint once per project: it writes no file, so the file
# system under the reports does not change its figures.
declare -A lint_line source_size
for n in "${sizes[@]}"; do
  project=$work/p$n
  if [ ! -f "$project/Grossprojekt.vbp" ]; then
    rm -rf "$project"
    "$build/make_project" --modules "$n" --seed "$seed" --out "$project" >"$work/p$n.made"
  fi
  source_size[$n]=$(du -sbL "$project" | cut -f1)
  common=(--app-dir "$build" --registry "$registry" --quiet --no-progress)
  time_best lint$n -- "$folioscope" "${common[@]}" lint "$project/Grossprojekt.vbp" --missing
  read -r l_wall l_user l_sys l_rss < <(tail -n 1 "$work/lint$n.time")
  lint_line[$n]="$(cat "$work/lint$n.status") $l_wall $l_user $l_sys $l_rss"
done

# measure_table TABLE: report and chm of every size, written below the
# table's folder; prints one line of figures per size.
measure_table() {
  local root n project floor_files floor_bytes floor_s floor_cpu
  local chm_floor_files chm_floor_bytes chm_floor_s chm_floor_cpu
  root=$(out_root "$1")
  mkdir -p "$root"
  for n in "${sizes[@]}"; do
    project=$work/p$n
    common=(--app-dir "$build" --registry "$registry" --quiet --no-progress)
    run_timed report$n-$1 "$root/report$n" "$root" -- \
      "$folioscope" "${common[@]}" report "$project/Grossprojekt.vbp" -o "$root/report$n"
    run_timed chm$n-$1 "$root/chm$n" "$root" -- \
      env FOLIOSCOPE_HHC="$no_compiler" \
      "$folioscope" "${common[@]}" chm "$project/Grossprojekt.vbp" -o "$root/chm$n"

    read -r floor_files floor_bytes floor_s floor_cpu <"$work/report$n-$1.floor"
    read -r chm_floor_files chm_floor_bytes chm_floor_s chm_floor_cpu <"$work/chm$n-$1.floor"
    # /usr/bin/time puts "Command exited with non-zero status" above the figures.
    read -r r_wall r_user r_sys r_rss < <(tail -n 1 "$work/report$n-$1.time")
    read -r c_wall c_user c_sys c_rss < <(tail -n 1 "$work/chm$n-$1.time")
    echo "$n ${source_size[$n]} $(cat "$work/report$n-$1.status") $r_wall $r_user $r_sys $r_rss \
$floor_files $floor_bytes $floor_s $(cat "$work/chm$n-$1.status") $c_wall $c_user $c_sys $c_rss \
$chm_floor_files $chm_floor_s $floor_cpu $chm_floor_cpu ${lint_line[$n]}"
  done
}

# print_table TITLE: the figures of measure_table's lines on stdin.
print_table() {
  awk -v title="$1" '
function ratio(a, b) { return b > 0 ? sprintf("%.2f", a / b) : "n/a" }
BEGIN { printf "\n######## %s\n", title }
{
  n = $1; src = $2
  printf "\n== %d modules: source %.1f MB\n", n, src / 1e6
  printf "report  exit %d  wall %.3f s  cpu %.3f s  peak RSS %.1f MB  files %d  output %.1f MB\n",
         $3, $4, $5 + $6, $7 / 1024, $8, $9 / 1e6
  printf "        write floor %.3f s (cpu %.3f s)  report/floor %s (cpu %s)  peak RSS/source %s\n",
         $10, $18, ratio($4, $10), ratio($5 + $6, $18), ratio($7 * 1024, src)
  printf "chm     exit %d  wall %.3f s  cpu %.3f s  peak RSS %.1f MB  files %d\n",
         $11, $12, $13 + $14, $15 / 1024, $16
  printf "        write floor %.3f s (cpu %.3f s)  chm/floor %s (cpu %s)  peak RSS/source %s\n",
         $17, $19, ratio($12, $17), ratio($13 + $14, $19), ratio($15 * 1024, src)
  printf "lint    exit %d  wall %.3f s  cpu %.3f s  peak RSS %.1f MB  lint/report %s\n",
         $20, $21, $22 + $23, $24 / 1024, ratio($21, $4)
  lwall[n] = $21
  wall[n] = $4; cwall[n] = $12; floor[n] = $10; rss[n] = $7 * 1024; source[n] = src
  cpu[n] = $5 + $6; ccpu[n] = $13 + $14; fcpu[n] = $18
}
END {
  if ((1000 in wall) && (3000 in wall)) {
    printf "\ngrowth 1,000 -> 3,000 modules: report %s x (cpu %s x), chm %s x (cpu %s x), floor %s x\n",
           ratio(wall[3000], wall[1000]), ratio(cpu[3000], cpu[1000]),
           ratio(cwall[3000], cwall[1000]), ratio(ccpu[3000], ccpu[1000]),
           ratio(floor[3000], floor[1000])
  }
  if (3000 in wall) {
    printf "\ntargets (3,000 modules):\n"
    printf "  report within 3x the floor:   %s (%s x)\n",
           wall[3000] <= 3 * floor[3000] ? "met" : "MISSED", ratio(wall[3000], floor[3000])
    printf "  report within 2 s:            %s (%.3f s)\n", wall[3000] <= 2 ? "met" : "MISSED", wall[3000]
    if (1000 in wall)
      printf "  growth at most 3.3x:          %s (%s x)\n",
             wall[3000] <= 3.3 * wall[1000] ? "met" : "MISSED", ratio(wall[3000], wall[1000])
    printf "  lint within half the report:  %s (%s x)\n",
           lwall[3000] <= 0.5 * wall[3000] ? "met" : "MISSED", ratio(lwall[3000], wall[3000])
    printf "  peak memory below 10x source: %s (%s x)\n",
           rss[3000] < 10 * source[3000] ? "met" : "MISSED", ratio(rss[3000], source[3000])
  }
}'
}

for table in "${tables[@]}"; do
  case $table in
    memory) title="in memory ($memory_root)" ;;
    *) title="on disk ($work)" ;;
  esac
  measure_table "$table" >"$work/figures-$table.txt"
  print_table "$title" <"$work/figures-$table.txt"
done
echo
echo "logs: $work; reports: $(out_root "${tables[-1]}")"
