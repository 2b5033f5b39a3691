# What ./run, ./check and the scripts beside this file share. Sourced by bash from the top of the tree; the caller
# has `set -euo pipefail` on and `top` set to the absolute path of the tree.
# shellcheck shell=bash
: "${top:?}"

# The same on every machine: plain C texts and sort order, and no questions from the package manager.
export LC_ALL=C
export DEBIAN_FRONTEND=noninteractive
# Debian's tools live here too; a bare environment may not say so.
export PATH="${PATH:-/usr/bin:/bin}:/usr/local/sbin:/usr/sbin:/sbin"
# A clone elsewhere on this machine finds the same objects in the compiler cache.
export CCACHE_BASEDIR="$top" CCACHE_NOHASHDIR=1
# git refuses a tree that another user owns (a container's mount, say); only reading the list of files is safe.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0="$top"
export GIT_OPTIONAL_LOCKS=0

program=${program:-$(basename "$0")}

# say TEXT...: a line for the person, on stderr.
say() { printf '%s: %s\n' "$program" "$*" >&2; }

# die TEXT...: says why it stops, and stops.
die() {
    say "$*"
    exit 1
}

# show_end_of LOG [LINES]: the last lines of a log, indented, and where the rest is.
show_end_of() {
    {
        tail -n "${2:-25}" "$1" | sed 's/^/    /'
        printf '    (all of it: %s)\n' "${1#"$top"/}"
    } >&2
}

# own_files PATTERN...: the files of the tree that match git's patterns, committed or new, without what is ignored.
own_files() {
    if git -C "$top" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git -C "$top" ls-files -co --exclude-standard -- "$@" | while IFS= read -r file; do
            [ ! -e "$top/$file" ] || printf '%s\n' "$file"
        done | sort -u
    else
        die "this is no git clone, so the list of its files is not known"
    fi
}

# needs_configure PRESET: true when build/PRESET was never configured, was made for another place, or is older than
# the presets. Everything else ninja sees by itself.
needs_configure() {
    local dir="$top/build/$1"
    [ ! -e "$dir/build.ninja" ] || [ ! -e "$dir/.configured" ] || [ "$top/CMakePresets.json" -nt "$dir/.configured" ] ||
        ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$top" "$dir/CMakeCache.txt"
}

# configure_preset PRESET [cmake's arguments...]
configure_preset() {
    cmake --fresh --preset "$@" && touch "$top/build/$1/.configured"
}
