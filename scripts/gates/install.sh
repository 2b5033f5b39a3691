#!/usr/bin/env bash
# What is installed is of use to others: the example provider is built against an installed tree and run, the way of
# CMake and the way of pkg-config, with the simulated switch and with another switch library in its place.
#
#   scripts/gates/install.sh BUILD-DIRECTORY      also one for another machine: then the way of CMake only
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
build=$(cd "${1:?the build directory}" && pwd)
work=$build/install-gate
rm -rf "$work"
mkdir -p "$work"

step() { printf -- '--- %s\n' "$*"; }

# quietly COMMAND...: what it prints is shown when it fails
quietly() {
    "$@" >"$work/log" 2>&1 || { cat "$work/log" && die "failed: $*"; }
}

# cached NAME: from the build's own settings
cached() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }

cxx=$(cached CMAKE_CXX_COMPILER)
cc=$(cached CMAKE_C_COMPILER)
toolchain=$(cached CMAKE_TOOLCHAIN_FILE)
if [ -n "$toolchain" ]; then # the compilers stand there
    cxx=$(sed -n 's/^set(CMAKE_CXX_COMPILER \(.*\))/\1/p' "$toolchain")
    cc=$(sed -n 's/^set(CMAKE_C_COMPILER \(.*\))/\1/p' "$toolchain")
fi

# shows TEXT COMMAND...: runs the command, which must succeed and print this line; libraries come from $libraries
shows() {
    local text=$1 run=()
    shift
    if [ -n "$toolchain" ]; then
        run=(timeout 60 qemu-ppc -L /usr/powerpc-linux-gnu -E "LD_LIBRARY_PATH=$libraries")
    else
        run=(timeout 60 env "LD_LIBRARY_PATH=$libraries")
    fi
    "${run[@]}" "$@" >"$work/shown" || die "exit status $? of: $*"
    grep -qxF -- "$text" "$work/shown" || {
        sed 's/^/    /' "$work/shown"
        die "did not print '$text': $*"
    }
}

# installed PREFIX COMPONENT...: installs elsewhere and moves it there, so that nothing may know where it lies
installed() {
    local prefix=$1 component
    rm -rf "$work/made" "$prefix"
    for component in "${@:2}"; do
        quietly cmake --install "$build" --prefix "$work/made" --component "$component"
    done
    mv "$work/made" "$prefix"
}

# by_cmake DIRECTORY PREFIX [OPTION...]: the example, built the way of CMake
by_cmake() {
    local options=("-DCMAKE_PREFIX_PATH=$2" "-DCMAKE_CXX_COMPILER=$cxx" "-DCMAKE_C_COMPILER=$cc")
    [ -z "$toolchain" ] || options=("-Ddatacache_DIR=$2/lib/cmake/datacache" "-DCMAKE_TOOLCHAIN_FILE=$toolchain")
    cmake -G Ninja -S examples/provider -B "$1" "${options[@]}" "${@:3}" &&
        ninja -C "$1"
}

simulated='switch 100000C0DD00A1B2: 24 ports, 2 power supplies, complete'
prefix=$work/all

step "installing everything, and the example by CMake"
installed "$prefix" library development zovlib tool zovsim
! grep -rIlF "$top" "$prefix" | grep . || die "these installed files know where they were built"
quietly by_cmake "$work/cmake" "$prefix"
libraries=
shows "$simulated" "$work/cmake/provider"
[ -z "$toolchain" ] || exit 0

step "the example by pkg-config"
cp -r examples/provider "$work/make"
quietly env PKG_CONFIG_PATH="$prefix/lib/pkgconfig" make -C "$work/make" CXX="$cxx" CC="$cc"
libraries=$prefix/lib
shows "$simulated" "$work/make/provider"

step "every header by itself"
(cd "$prefix/include/datacache" && find . -type f | sort) >"$work/headers"
while IFS= read -r header; do
    printf '#include <%s>\n' "${header#./}" >"$work/header.cc"
    g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$prefix/include/datacache" "$work/header.cc"
done <"$work/headers"

step "the tool, which finds its libraries beside it"
libraries=
shows 'wwn=10:00:00:C0:DD:00:A1:B2' "$prefix/bin/dcache" switch -o terse

step "the simulated switch as a program, which finds its library beside it"
shows 'profile = "fixed-24"' "$prefix/bin/zovsim" scenarios demo
"$prefix/bin/zovsim" validate "$prefix"/share/datacache/scenarios/*.toml >"$work/log" || die "shipped scenarios are bad"

step "another switch library in the place of the simulated one"
cat >"$work/tiny.c" <<'TINY'
/* A switch of another make, which knows its name and its state. */
#include <stdlib.h>
#include <string.h>
#include "platform/zovlib.h"

static int32_t answer(const char *key, char *value) {
    strcpy(value, strcmp(key, "Oper.Switch.WWN") == 0 ? "100000C0DD00BEEF" : "");
    return strstr(key, ".Switch.") == NULL && strstr(key, ".Mfg.") == NULL ? 103 : 0;
}
int32_t zov_IPConnect(const char *host, const char *client, const char *text, zov_handle_t *handle) {
    *handle = host != NULL && client != NULL && text != NULL ? 1 : 0;
    return 0;
}
int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    for (int32_t row = 0; row < count; ++row)
        messages[row].status = answer(messages[row].key, messages[row].value);
    return handle == 1 ? 0 : 1;
}
int32_t zov_smlGet(zov_handle_t handle, const char *key, char **value, uint32_t *size) {
    *value = calloc(1, 256);
    *size = 256;
    return handle == 1 ? answer(key, *value) : 1;
}
int32_t zov_libFreeMemory(void *memory) {
    free(memory);
    return 0;
}
TINY
# All that it does not have is there and fails: handles and counts are 0, results 99.
tr '\n' ' ' <platform/zovlib.h | grep -oE '(void \*|int32_t) *zov_[A-Za-z]+\(' | tr -d '(' | awk '{
    name = $0
    sub(/.*[ *]/, "", name)
    printf "long %s(void) { return %d; }\n", name, /^void/ || name ~ /Count$/ ? 0 : 99
}' | grep -vwF "$(grep -oE '\bzov_[A-Za-z]+\(' "$work/tiny.c" | tr -d '(')" >"$work/rest.c"
mkdir "$work/tiny"
gcc -std=c11 -Wall -Wextra -Wpedantic -Werror -fPIC -shared -I "$prefix/include/datacache" -Wl,-soname,libzovlib.so \
    "$work/tiny.c" "$work/rest.c" -o "$work/tiny/libzovlib.so"
tiny='switch 100000C0DD00BEEF: 0 ports, 0 power supplies, not complete'
libraries=$work/tiny:$prefix/lib
shows "$tiny" "$work/make/provider" 1

step "without the simulated switch: a plug-in links, and a program with the switch library that it names"
prefix=$work/bare
installed "$prefix" library development
[ -z "$(find "$prefix" -name '*zovlib*' ! -path '*/platform/zovlib.h')" ] || die "the development files bring a switch library"
! by_cmake "$work/none" "$prefix" >"$work/log" 2>&1 || die "a program without any switch library was configured"
grep -q 'DATACACHE_SWITCH_LIBRARY names no' "$work/log" || { cat "$work/log" && die "does not say that it lacks a switch library"; }
quietly by_cmake "$work/named" "$prefix" "-DDATACACHE_SWITCH_LIBRARY=$work/tiny/libzovlib.so"
libraries=
shows "$tiny" "$work/named/provider" 1
# shellcheck disable=SC2046 # a list of options
"$cxx" -std=c++17 -shared -fPIC $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs datacache) \
    examples/provider/provider.cc -o "$work/plug-in.so"
