#!/usr/bin/env bash
# install.sh SOURCES BUILD WORK
set -euo pipefail
sources=$1 build=$2 work=$3

fail() {
    echo "$*" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/installed" >"$work/install.log"
# Somewhere else than configured, to see that no file holds on to its first place.
mv "$work/installed" "$work/moved"
prefix=$work/moved
pc=$(find "$prefix" -name dfdl.pc)
[ -n "$pc" ] || fail "no pkg-config file"
export PKG_CONFIG_PATH=${pc%/*}
libraries=$(pkg-config --variable=libdir dfdl)
[ -e "$libraries/libdfdlparserres.so" ] || fail "no message bundle beside the library"
[ -e "$prefix/include/dfdl/pifwrapper.h" ] || fail "no pifwrapper.h"

program=$sources/examples/readme.c
[ "$(wc -l <"$program")" -lt 60 ] || fail "the README's program is too long"
shown=$(sed -n '/^```c$/,/^```$/p' "$sources/README.md" | sed '1d;$d')
[ "$shown" = "$(cat "$program")" ] || fail "the README shows another program than examples/readme.c"

"$prefix/bin/dfdl" grammar encode "$sources/examples/ustar.txt" -o "$work/ustar.pif"
tar --format=ustar -C "$sources/examples" -cf "$work/archive.tar" ustar.txt

expect() { # expect NAME OUTPUT: a field of the archive that the program must have shown
    grep -qx 'name = ustar.txt' <<<"$2" || fail "$1 did not print the name: $2"
    grep -qx 'magic = ustar' <<<"$2" || fail "$1 did not print the magic: $2"
    grep -qx "size = $(stat -c %s "$sources/examples/ustar.txt")" <<<"$2" || fail "$1 did not print the size: $2"
}

# shellcheck disable=SC2086,SC2046
$CC -std=c11 -Wall -Werror ${CFLAGS:-} "$program" $(pkg-config --cflags --libs dfdl) -Wl,-rpath,"$libraries" \
    -o "$work/readme"
expect "the program by pkg-config" "$("$work/readme" "$work/ustar.pif" header "$work/archive.tar")"

# shellcheck disable=SC2086,SC2046
$CXX -std=c++20 -Wall -Werror ${CFLAGS:-} "$sources/tests/install/wrapper.cpp" \
    $(pkg-config --cflags --libs dfdl) -Wl,-rpath,"$libraries" -o "$work/wrapper"
"$work/wrapper" || fail "the program that makes a grammar in memory ended with $?"

cmake -G Ninja -S "$sources/tests/install/consumer" -B "$work/consumer" -DREADME_C="$program" \
    -DCMAKE_PREFIX_PATH="$prefix" >"$work/consumer.log"
cmake --build "$work/consumer" >>"$work/consumer.log"
expect "the program by find_package" \
    "$("$work/consumer/readme" "$work/ustar.pif" header "$work/archive.tar")"

expect_error=$("$work/readme" "$work/ustar.pif" nowhere "$work/archive.tar" || true)
grep -q 'nowhere' <<<"$expect_error" || fail "no message text from the installed bundle: $expect_error"
