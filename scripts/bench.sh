#!/usr/bin/env bash
# Builds and runs the benchmarks (all, or those whose program name matches
# the pattern given): scripts/bench.sh [PATTERN]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$("$root/scripts/build.sh" | tail -n 1)
pattern=${1:-}
shopt -s nullglob
for b in "$dir"/bin/bench_*; do
  [[ -z "$pattern" || "$(basename "$b")" == *"$pattern"* ]] || continue
  echo "== $(basename "$b")"
  "$b"
done
