#!/usr/bin/env bash
# Fuzzes what comes from outside: show files, settings, JSON, drawings, the box's replies, and the desk that opens a
# show. Each target goes through its corpus, then on from there; a line each tells how far it got.
usage="usage: bench/fuzz.sh [SECONDS] [TARGET...]
  SECONDS  for each target (15)
  TARGET   show open settings json dxf box (all)
New finds stay in build/fuzz/finds, inputs that broke something in build/fuzz/broken; exit code 1 when there are any."
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=15
case "${1:-}" in
  -h | --help) echo "$usage"; exit 0 ;;
  [0-9]*) seconds=$1; shift ;;
esac
targets=("$@")
[ $# -gt 0 ] || targets=(show open settings json dxf box)

out=build/fuzz
bin=$out/bin
cmake --preset fuzz --log-level=ERROR >/dev/null
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}" >"$out/build.log" 2>&1 || { cat "$out/build.log"; exit 1; }

# Files that are only read by name lie in memory.
TMPDIR=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo /tmp)")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
ASAN_SYMBOLIZER_PATH=$(command -v addr2line || true)
export ASAN_SYMBOLIZER_PATH

longest() {
  case $1 in
    json) echo 16384 ;;
    settings) echo 2048 ;;
    *) echo 6144 ;;
  esac
}

# The words that an input is likely to hold.
words() {
  [ "$1" = open ] && echo bench/fuzz/show.dict || echo "bench/fuzz/$1.dict"
}

# The reader of exchange drawings loses memory on files that it refuses (tests/support/library_leaks.cpp), and each
# such input would be looked through for leaks of ours.
leaks() {
  [ "$1" != dxf ] && echo 1 || echo 0
}

# fuzz TARGET: one run, and its line.
fuzz() {
  local target=$1 log=$out/$1.log status=0
  local finds=$out/finds/$1 broken=$out/broken/$1/ corpus=tests/data/fuzz/$1
  mkdir -p "$finds" "$broken"
  "$bin/fuzz_$target" -max_total_time="$seconds" -max_len="$(longest "$target")" -dict="$(words "$target")" \
    -timeout=20 -detect_leaks="$(leaks "$target")" -print_final_stats=1 -print_funcs=0 -artifact_prefix="$broken" "$finds" "$corpus" \
    >"$log" 2>&1 || status=$?
  local found=clean
  [ $status -eq 0 ] || found=$(sed -n 's/.*Test unit written to //p' "$log" | tail -1)
  [ -n "$found" ] || found="exit code $status, see $log"
  printf '%-9s %9s runs %6s/s %6s edges  corpus %4d  %s\n' "$target" \
    "$(last 's/^stat::number_of_executed_units: *//p' "$log")" "$(last 's/^stat::average_exec_per_sec: *//p' "$log")" \
    "$(last 's/.* cov: \([0-9]*\) .*/\1/p' "$log")" "$(find "$corpus" -type f | wc -l)" "$found"
  return "$((status != 0))"
}

# last PATTERN FILE: what the last match gives.
last() {
  sed -n "$1" "$2" | tail -1
}

broken=0
for target in "${targets[@]}"; do fuzz "$target" || broken=1; done
exit $broken
