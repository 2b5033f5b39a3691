#!/usr/bin/env bash
# Every source file below tests/ is compiled, and every *_test.cc holds at least one test.
#
#   scripts/gates/tests.sh COMPILE-DATABASE
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
database=${1:?the compile database}
bad=0

compiled=$(sed -n 's/^ *"file": *"\(.*\)",\{0,1\}$/\1/p' "$database" | sed "s|^$top/||" | sort -u)
while IFS= read -r file; do
    grep -qxF -- "$file" <<<"$compiled" || { printf '%s: is not built\n' "$file" && bad=1; }
    case $file in
    *_test.cc)
        grep -qE '^(TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P) *\(' "$file" || { printf '%s: holds no test\n' "$file" && bad=1; }
        ;;
    esac
done < <(own_files 'tests/*.cc')
[ -n "$(own_files 'tests/*_test.cc')" ] || { echo "there are no tests" && bad=1; }
exit $bad
