#!/bin/sh
# The installed Zelvo as hosts outside the tree meet it. One step per call:
#   install_test.sh STEP BUILD_DIR SOURCE_DIR WORK_DIR [PYTHON]
# STEP install:       install the build into WORK_DIR/prefix and check what is there
#      pkg-config:    build a C++ host with pkg-config against the prefix and run it
#      find-package:  build the same host with CMake's find_package and run it
#      python:        drive a real book through the installed Python module
set -eu
step=$1 build=$2 source=$3 work=$4 python=${5:-python3}
prefix=$work/prefix
consumer=$source/tests/install/consumer

fail() { echo "FAILED: $*" >&2; exit 1; }

# The folder under the prefix that holds a file matching a pattern.
find_one() { find "$prefix" -path "$1" | head -n 1; }

case $step in
install)
    rm -rf "$work"
    mkdir -p "$work"
    cmake --install "$build" --prefix "$prefix" >"$work/install.log" || { cat "$work/install.log"; fail "cmake --install"; }
    for want in "*/lib*/libzelvo.so" "*/lib*/libzelvo.so.0" "*/include/zelvo/addressbook.h" \
                "*/include/zelvo/dispatch.h" "*/pkgconfig/zelvo.pc" "*/cmake/zelvo/zelvoConfig.cmake" \
                "*/share/zelvo/lang/en.lng" "*/bin/zelvo" "*/share/man/man1/zelvo.1"; do
        [ -n "$(find_one "$want")" ] || fail "nothing installed as $want"
    done
    # Only the public surface is visible: no symbol of the engine underneath.
    lib=$(find_one "*/lib*/libzelvo.so.0")
    if nm -DC --defined-only "$lib" | grep -qE '^[0-9a-f]+ [A-Za-z] ((typeinfo|vtable) for )?zelvo::dao::'; then
        fail "the engine's symbols are exported"
    fi
    nm -DC --defined-only "$lib" | grep -q "zelvo::CreateObject" || fail "CreateObject is not exported"
    # The installed headers need nothing of the source tree.
    if grep -rq '#include "platform/' "$prefix/include/zelvo"; then fail "a public header includes an internal one"; fi
    ;;
pkg-config)
    pc=$(dirname "$(find_one "*/pkgconfig/zelvo.pc")")
    flags=$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs zelvo) || fail "pkg-config zelvo"
    libdir=$(PKG_CONFIG_PATH=$pc pkg-config --variable=libdir zelvo)
    mkdir -p "$work/pkg-config"
    # shellcheck disable=SC2086 # the flags are words
    c++ -std=c++20 -o "$work/pkg-config/consumer" "$consumer/consumer.cpp" $flags -Wl,-rpath,"$libdir" \
        || fail "building against pkg-config's flags"
    rm -rf "$work/pkg-config/book"
    out=$("$work/pkg-config/consumer" "$work/pkg-config/book") || fail "the pkg-config host"
    [ "$out" = "persons 0" ] || fail "the pkg-config host printed '$out'"
    ;;
find-package)
    dir=$work/find-package
    rm -rf "$dir"
    cmake -S "$consumer" -B "$dir" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_RPATH="$(dirname "$(find_one "*/lib*/libzelvo.so")")" \
        >"$work/find-package.log" || { cat "$work/find-package.log"; fail "find_package(zelvo)"; }
    cmake --build "$dir" >>"$work/find-package.log" || { cat "$work/find-package.log"; fail "building with find_package"; }
    out=$("$dir/consumer" "$dir/book") || fail "the find_package host"
    [ "$out" = "persons 0" ] || fail "the find_package host printed '$out'"
    ;;
python)
    module=$(find_one "*/zelvo.cpython-*.so")
    [ -n "$module" ] || fail "the Python module is not installed"
    rm -rf "$work/python-book"
    # From a neutral folder, so that nothing of the build tree is found.
    cd "$work"
    PYTHONPATH=$(dirname "$module") "$python" -c 'import zelvo' || fail "import zelvo from the prefix"
    PYTHONPATH=$(dirname "$module") "$python" "$source/tests/install/drive_book.py" "$prefix" "$work/python-book"
    ;;
*)
    fail "unknown step $step"
    ;;
esac
