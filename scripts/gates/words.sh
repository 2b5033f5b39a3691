#!/usr/bin/env bash
# What no file may hold: tests that assert nothing or are switched off, notes of work left undone, and references to
# papers that a reader of this tree does not have. Files stay short enough to be read as one story.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
limit=500
bad=0

# The patterns are written so that they do not match themselves.
leftovers='EXPECT_TRUE[(]true|ASSERT_TRUE[(]true|SUCCEED[(]|GTEST_[S]KIP|DISABLED[_]|[T]ODO|[F]IXME|[X]XX'
papers='\b[P]arts? [0-9]+\.[0-9]|\b[Ss]pec(ification)?\b|\b[Ss]pec\.md|\.\./[s]hared|\b[i]ssue #?[0-9]'

# search WHAT PATTERN FILE-PATTERN...
search() {
    local what=$1 pattern=$2 rows
    shift 2
    rows=$(own_files "$@" | tr '\n' '\0' | xargs -0 -r grep -nHIE -e "$pattern" -- || true)
    [ -n "$rows" ] || return 0
    printf '%s\n' "$rows" | sed "s/\$/   <- $what/"
    bad=1
}

search 'a leftover, or a test that may assert nothing' "$leftovers" '*.cc' '*.h' '*.sh' '*CMakeLists.txt' '*.cmake'
search 'refers to a paper that is not in the tree' "$papers" '*'

long=$(own_files '*.cc' '*.h' 'common/include/*' | tr '\n' '\0' | xargs -0 -r wc -l |
    awk -v limit=$limit '$2 != "total" && $1 > limit { printf "%s: %d lines, at most %d: is it one thing?\n", $2, $1, limit }')
if [ -n "$long" ]; then
    printf '%s\n' "$long"
    bad=1
fi
exit $bad
