#!/usr/bin/env bash
# What the libraries take from others and what they show:
#   1. only the object files of the table speak to the switch library;
#   2. libdatacache.so takes nothing but the switch library, the host and the standard libraries, and loads no other;
#   3. what the libraries export is what abi/LIBRARY.symbols lists, the same on every machine.
#
#   scripts/gates/symbols.sh BUILD-DIRECTORY
#   scripts/gates/symbols.sh --accept [BUILD-DIRECTORY]    takes what they export now as what they should (abi.sh calls it)
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
accept=
if [ "${1:-}" = --accept ]; then
    accept=yes
    shift
    set -- "${1:-build/dev}"
fi
build=${1:?the build directory}
library=$build/lib/libdatacache.so
simulator=$build/lib/libzovlib.so
objects=$build/CMakeFiles/datacache.dir
bad=0
complain() {
    printf '%s\n' "$*"
    bad=1
}
for file in "$library" "$simulator"; do [ -e "$file" ] || die "$file is missing: build first"; done

# Source files that may call the switch library. The others go through the access layer in swlib/.
may_call='^(swlib/.*|zoning/.*|datacache/DataCache|datacache/SmlEntries|datacache/refresh/zoning)\.cc$'
# Standard libraries that may be loaded.
may_load='^(libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld(64)?(-linux.*)?\.so\.[0-9])$'
# names HEADER...: the functions that C headers declare
names() {
    sed -e 's|//.*||' "$@" | grep -oE '\b[A-Za-z_][A-Za-z0-9_]* *\(' | tr -d ' (' | sort -u
}
platform=$(names platform/zovlib.h | grep '^zov_')
host=$(names platform/host.h)

# 1. who speaks to the switch library
while IFS= read -r object; do
    source=${object#"$objects"/}
    source=${source%.o}
    ! [[ $source =~ $may_call ]] || continue
    calls=$(nm --undefined-only --format=posix "$object" | awk '{ print $1 }' | grep -xF "$platform" || true)
    [ -z "$calls" ] || complain "$source: calls the switch library (${calls//$'\n'/ }), which only these files may: $may_call"
done < <(find "$objects" -name '*.o' | sort)

# 2. what the library takes: symbols without a version belong to no standard library
taken=$(nm --dynamic --undefined-only --format=posix "$library" | awk '$2 == "U" && $1 !~ /@/ { print $1 }')
foreign=$(grep -vxF "$platform"$'\n'"$host" <<<"$taken" || true)
[ -z "$foreign" ] || complain "$library: takes from nowhere: ${foreign//$'\n'/ }"
while IFS= read -r needed; do
    [[ $needed =~ $may_load ]] || complain "$library: loads $needed"
done < <(readelf --dynamic --wide "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')

# 3. what the libraries show
shown() {
    nm --dynamic --defined-only --demangle "$1" | sed -E 's/^[0-9a-f]* *[A-Za-z] //; s/@@?.*//
        s/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g
        s/std::vector<([^<>,]*), std::allocator<\1> >/std::vector<\1>/g' | sort -u
}
for file in "$library" "$simulator"; do
    list=abi/$(basename "$file" .so).symbols
    if [ -n "$accept" ]; then
        shown "$file" >"$list"
    elif ! changes=$(diff "$list" <(shown "$file")); then
        complain "$file: exports other symbols than $list lists (> new, < gone):"
        grep '^[<>]' <<<"$changes" | sed 's/^/    /'
        complain "  A client that uses what is gone no longer loads; what is new has to stay. If that is meant:"
        complain "    scripts/gates/abi.sh --accept $build      and commit abi/"
    fi
done
exit $bad
