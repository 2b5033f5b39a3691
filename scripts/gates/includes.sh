#!/usr/bin/env bash
# Data flows upward, includes point downward: each folder includes only what the table allows it, and itself.
# The cache and the simulated switch meet in platform/ and nowhere else; only programs know both.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"

# folder: folders it may include
allowed='
platform:
common: platform
foundation: common platform
swlib: foundation common platform
zoning: swlib foundation common platform
datacache: zoning swlib foundation common platform
sim: platform
tools: datacache zoning swlib foundation common platform sim
bench: datacache zoning swlib foundation common platform sim tools
tests: datacache zoning swlib foundation common platform sim tools
examples: datacache zoning swlib foundation common platform
docs: datacache zoning swlib foundation common platform sim tests
'

cd "$top"
# shellcheck disable=SC2016 # awk's own fields
own_files '*.h' '*.cc' '*.c' 'common/include/*' | xargs -r awk -v allowed="$allowed" '
    BEGIN {
        count = split(allowed, rows, "\n")
        for (i = 1; i <= count; i++) {
            if (split(rows[i], row, ": *") < 1 || row[1] == "") continue
            may[row[1]] = row[2]
            n = split(row[2], names, " ")
            for (j = 1; j <= n; j++) ok[row[1], names[j]] = 1
            ok[row[1], row[1]] = 1
        }
    }
    FNR == 1 {
        folder = FILENAME
        sub(/\/.*/, "", folder)
        if (!(folder in may)) complain(0, "folder " folder "/ has no row in the table of scripts/gates/includes.sh")
    }
    /^[ \t]*#[ \t]*include[ \t]*["<]/ {
        quoted = ($0 ~ /include[ \t]*"/)
        path = $0
        sub(/^[^"<]*["<]/, "", path)
        sub(/[">].*/, "", path)
        target = path
        if (!sub(/\/.*/, "", target)) target = ""
        if (target in may) {
            if (!((folder, target) in ok))
                complain(FNR, folder "/ may not include " path "; it may include " folder " " may[folder])
        } else if (quoted)
            complain(FNR, "\"" path "\" is not a path from the root of the tree (others: write it in angle brackets)")
    }
    function complain(line, text) {
        printf "%s:%d: %s\n", FILENAME, line, text
        bad = 1
    }
    END { exit bad }'
