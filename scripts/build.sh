#!/usr/bin/env bash
# Builds Zelvo into a build folder, installing missing Debian packages first.
#   scripts/build.sh                 release build in build/
#   scripts/build.sh --sanitize      ASan+UBSan build in build-asan/
#   scripts/build.sh --fuzz          clang build with the libFuzzer targets in build-fuzz/
# Prints the build folder on the last line of stdout.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"

dir="$root/build"
extra=()
case "${1:-}" in
  --sanitize) dir="$root/build-asan"; extra=(-DZELVO_SANITIZE=ON -DZELVO_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug) ;;
  --fuzz) dir="$root/build-fuzz"; extra=(-DZELVO_FUZZ=ON -DZELVO_BENCH=OFF -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++) ;;
  "") extra=(-DCMAKE_BUILD_TYPE=RelWithDebInfo) ;;
  *) echo "usage: scripts/build.sh [--sanitize|--fuzz]" >&2; exit 2 ;;
esac

# A compiler cache, when the machine has one, makes a second build of the
# same sources (the sanitized tree, a fresh clone) cost little.
if command -v ccache >/dev/null; then
  extra+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

if [[ ! -f "$dir/build.ninja" ]]; then
  cmake -S "$root" -B "$dir" -G Ninja "${extra[@]}" >&2
fi
cmake --build "$dir" >&2
echo "$dir"
