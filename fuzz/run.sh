#!/bin/sh
# Runs every fuzz target for SECONDS each, starting from its committed seed
# corpus (which it does not modify), and prints executions and coverage.
# Usage: fuzz/run.sh BUILD_DIR/fuzz SECONDS
set -eu
bin=$1
seconds=$2
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
for fuzzer in "$bin"/*_fuzzer; do
  name=$(basename "$fuzzer")
  mkdir -p "$work/$name"
  if "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
       -artifact_prefix="$work/" "$work/$name" "$here/corpus/$name" >"$work/$name.log" 2>&1; then
    runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$work/$name.log" | grep -o '[0-9]*$')
    cov=$(grep -o 'cov: [0-9]*' "$work/$name.log" | tail -n 1)
    echo "$name: ok, $runs executions, $cov"
  else
    echo "$name: FAILED"
    tail -n 40 "$work/$name.log"
    cp "$work"/crash-* "$work"/timeout-* "$work"/leak-* . 2>/dev/null || true
    status=1
  fi
done
exit $status
