#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need,
# but only those that are missing, so a second run costs a dpkg query and
# nothing else. Needs root (or sudo) when something is missing.
set -euo pipefail

packages=(
  # toolchain
  g++ clang cmake ninja-build pkg-config ccache
  libclang-rt-14-dev            # libFuzzer and the sanitizer runtimes for clang
  # the library's dependencies
  libsqlite3-dev libicu-dev
  mdbtools-dev libmdb3          # reading genuine Jet files, the books of earlier installations
  libjpeg62-turbo-dev libpng-dev libgif-dev libtiff-dev
  pybind11-dev python3-dev      # the Python module (left out of the build without them)
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev sqlite3
  libjpeg-turbo-progs           # cjpeg/djpeg: reference encoder and decoder
  mdbtools                      # mdb-count, mdb-export: the reference for converted Jet files
  python3-vobject libez-vcard-java default-jre-headless  # independent vCard parsers
  libvinnie-java default-jdk-headless  # ez-vcard's line parser; javac builds the vCard checker
  # the desktop host; its tests draw offscreen and need a font
  qt6-base-dev fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if ((${#missing[@]} == 0)); then
  exit 0
fi

echo "install-deps: installing ${missing[*]}" >&2
sudo_cmd=()
if [[ $(id -u) -ne 0 ]]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
