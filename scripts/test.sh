#!/usr/bin/env bash
# Runs every test: the suite on a release build, the suite again under
# AddressSanitizer + UndefinedBehaviorSanitizer, then each fuzzer for a
# bounded time. Exits non-zero on the first failure.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc)

echo "== release build and tests"
dir=$("$root/scripts/build.sh" | tail -n 1)
ctest --test-dir "$dir" --output-on-failure -j "$jobs"

echo "== tests under AddressSanitizer and UndefinedBehaviorSanitizer"
dir=$("$root/scripts/build.sh" --sanitize | tail -n 1)
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir "$dir" --output-on-failure -j "$jobs"

echo "== fuzzers, ${ZELVO_FUZZ_SECONDS:-30} s each"
"$root/scripts/fuzz.sh" "${ZELVO_FUZZ_SECONDS:-30}"
