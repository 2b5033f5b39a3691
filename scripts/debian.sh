#!/usr/bin/env bash
# Builds the Debian packages, for this machine, into build/debian/, and has lintian look at them: an error or a warning
# of its, or a package without what it is for, is a failure.
#
#   scripts/debian.sh
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"

program=debian.sh scripts/packages.sh debian </dev/null
out=$top/build/debian
rm -rf "$out"
mkdir -p "$out/datacache"

# In a copy: the packages' tools write beside the sources, and above them.
own_files '*' | tar --create --files-from=- | tar --extract --directory="$out/datacache"

printf -- '--- building\n'
export DEB_BUILD_OPTIONS="parallel=2 ${DEB_BUILD_OPTIONS:-}"
CCACHE_DIR=$(ccache --get-config cache_dir) # the tools take another home
export CCACHE_DIR CCACHE_BASEDIR=$out/datacache
(cd "$out/datacache" && dpkg-buildpackage --build=binary --no-sign) >"$out/log" 2>&1 || {
    show_end_of "$out/log" 60
    die "the packages could not be built"
}

printf -- '--- lintian\n'
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$out"/*.changes

printf -- '--- contents\n'
bad=0
# holds PACKAGE PATTERN: one of the package's files matches
holds() {
    grep -qE -- "^\./$2\$" <<<"$(dpkg-deb --fsys-tarfile "$out/$1"_*.deb | tar --list)" || {
        printf '%s: does not hold %s\n' "$1" "$2"
        bad=1
    }
}
holds libdatacache0 'usr/lib/[^/]*/libdatacache\.so\.0'
holds libdatacache-dev 'usr/lib/[^/]*/libdatacache\.so'
holds libdatacache-dev 'usr/lib/[^/]*/pkgconfig/datacache\.pc'
holds libdatacache-dev 'usr/lib/[^/]*/cmake/datacache/datacacheConfig\.cmake'
holds libdatacache-dev 'usr/include/datacache/datacache/DataCache\.h'
holds libdatacache-dev 'usr/include/datacache/common/include/list_t'
holds libdatacache-dev 'usr/share/doc/libdatacache-dev/provider-guide\.md(\.gz)?'
holds libzovlib-sim 'usr/lib/[^/]*/libzovlib\.so'
holds libzovlib-sim 'usr/include/datacache/sim/Simulator\.h'
holds dcache 'usr/bin/dcache'
holds dcache 'usr/share/man/man1/dcache\.1\.gz'
holds zovsim 'usr/bin/zovsim'
holds zovsim 'usr/share/man/man1/zovsim\.1\.gz'
holds zovsim 'usr/share/man/man5/zovsim-scenario\.5\.gz'
holds zovsim 'usr/share/datacache/scenarios/demo\.toml'
for name in dcache zovsim; do
    if objdump -p "$out/datacache/debian/$name/usr/bin/$name" | grep -E 'RUNPATH|RPATH'; then
        printf '%s: names folders of its own for libraries\n' "$name"
        bad=1
    fi
done
(cd "$out" && ls -l ./*.deb)
exit $bad
