#!/usr/bin/env bash
# clang-tidy over the code of a build directory's compile database, two files at a time. The checks stand in .clang-tidy.
#
#   scripts/tidy.sh BUILD-DIRECTORY FILE-PATTERN...     patterns as git's; ':!tests' is everything but the tests
# A file that passed is looked at again when it, a header of this tree, its compile command or the checks have changed.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
build=${1:?the build directory}
shift
stamps=build/lint/tidy
mkdir -p $stamps

# What all files have in common.
common=$(own_files '*.h' 'common/include/*' .clang-tidy '*/.clang-tidy' | xargs sha256sum)
common+=$(clang-tidy --version)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
while IFS= read -r file; do
    command=$(grep -F -B 1 -A 1 "\"file\": \"$top/$file\"" "$build/compile_commands.json") ||
        die "$file is not in the compile database"
    key=$(printf '%s\n' "$file" "$(sha256sum <"$file")" "$command" "$common" | sha256sum | cut -c1-32)
    [ -e "$stamps/$key" ] || printf '%s %s\n' "$key" "$file"
done < <(own_files "$@" | grep '\.cc$') >"$work/todo"

# shellcheck disable=SC2016 # expanded by the inner shell
xargs -r -a "$work/todo" -P 2 -L 1 sh -c '
    if clang-tidy -p "$0" --quiet --warnings-as-errors="*" "$3" >"$1/$2.out" 2>"$1/$2.err"; then
        : >"'"$stamps"'/$2"
    else
        cat "$1/$2.out" "$1/$2.err" >>"$1/findings"
    fi' "$build" "$work" || true
if [ -e "$work/findings" ]; then
    # A finding in a header comes once per file that includes it: show it once.
    grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed |^Use -header-filter' "$work/findings" |
        awk '/^[^ ].*:[0-9]+:[0-9]+: / { new = !seen[$0]++ } new'
    exit 1
fi
# A key is good for one state of the tree: forget the old ones.
find $stamps -type f -mtime +14 -delete
