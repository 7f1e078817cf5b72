#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for SECONDS (default
# 30), starting from its seed corpus. A crash fails the script and leaves the
# crashing input in build-fuzz/crashes/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-30}
dir=$("$root/scripts/build.sh" --fuzz | tail -n 1)
mkdir -p "$dir/crashes"
shopt -s nullglob
targets=("$dir"/bin/fuzz_*)
if ((${#targets[@]} == 0)); then
  echo "fuzz: no fuzz targets built"
  exit 0
fi
for t in "${targets[@]}"; do
  name=$(basename "$t")
  corpus="$dir/corpus/$name"
  mkdir -p "$corpus"
  seeds=()
  [[ -d "$root/tests/fuzz/seeds/$name" ]] && seeds+=("$root/tests/fuzz/seeds/$name")
  # Seed folders outside the checkout (the shared test data) may be absent.
  if [[ -f "$dir/seeds-$name.txt" ]]; then
    while IFS= read -r s; do
      # libFuzzer takes folders; a single seed file joins the working corpus.
      if [[ -n "$s" && -d "$s" ]]; then seeds+=("$s"); elif [[ -n "$s" && -f "$s" ]]; then cp "$s" "$corpus/"; fi
    done < "$dir/seeds-$name.txt"
  fi
  echo "fuzz: $name for ${seconds}s"
  "$t" -max_total_time="$seconds" -rss_limit_mb=2048 -artifact_prefix="$dir/crashes/$name-" \
       -print_final_stats=0 "$corpus" "${seeds[@]}" 2>&1 | tail -n 3
done
echo "fuzz: all targets ran without a crash"
