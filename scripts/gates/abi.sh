#!/usr/bin/env bash
# The binary interface of libdatacache.so: a provider that was compiled against the baseline, abi/libdatacache.abi, works
# with the library as it is now. Classes with their sizes, members and tables of virtual functions are compared, and the
# types of functions; what is passed over stands in abi/libdatacache.abignore. (That every symbol is there, symbols.sh
# tells. abidw does not see what a class's functions return when they are spread over several source files.)
#
#   scripts/gates/abi.sh BUILD-DIRECTORY              of a Debug build, which knows the types
#   scripts/gates/abi.sh --accept [BUILD-DIRECTORY]   takes the interface as it is now, and the lists of symbols too
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
baseline=abi/libdatacache.abi
inner=abi/standard-library.abignore
passed_over=abi/libdatacache.abignore
[ -e "$library" ] || die "$library is missing: build first"

# The interface as text, without what differs from one build directory to the next.
interface() {
    abidw --suppressions $inner --exported-interfaces-only --type-id-style hash --no-show-locs --no-corpus-path \
        --no-comp-dir-path --no-parameter-names --no-elf-needed "$library" |
        sed -E "s|^ +||; /^<abi-instr/{s|(\.\./)+||; s|$top/||}"
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
interface >"$work/now.abi"
grep -q "<class-decl name='DataCacheEvent' size" "$work/now.abi" ||
    die "$library knows no types: it takes a Debug build for this machine, and not an instrumented one"
if [ -n "$accept" ]; then
    cp "$work/now.abi" $baseline
    scripts/gates/symbols.sh --accept "$build"
    exit
fi
status=0
abidiff --suppressions $passed_over --no-show-locs "$baseline" "$work/now.abi" >"$work/changes" || status=$?
# Enumerations that only functions of classes take are described, and not compared.
enumerations() { awk '/^<enum-decl/ { sub(/ id=.*/, ""); name = $0 } /^<enumerator/ { print name, $2, $3 }' "$1" | sort; }
diff <(enumerations "$baseline") <(enumerations "$work/now.abi") >>"$work/changes" || status=$((status | 4))
[ $status -ne 0 ] || exit 0
head -n 200 "$work/changes"
[ $((status & ~12)) -eq 0 ] || die "abidiff could not compare $baseline with $library"
printf '\n%s: its binary interface is no longer that of %s.\n' "$library" "$baseline"
printf 'Unless things were only added, a provider compiled against that may not work with it: then let the number in the\n'
printf 'soname rise (SOVERSION in CMakeLists.txt) once versions are out.\n'
printf 'If the change is meant:\n    scripts/gates/abi.sh --accept %s      and commit abi/\n' "$build"
exit 1
