#!/usr/bin/env bash
# What the guides in docs/ say is so:
#   1. every C++ block is a region of a program in docs/examples/, which is built and run as a test; it is named in a comment
#      on the line before the block: <!-- docs/examples/NAME.cc: REGION -->. A region stands between "// [REGION]" and
#      "// [/REGION]". A text block may be named NAME.cc: output, for what the program says it prints. No region is left out;
#   2. every shell block that is marked <!-- run --> works, after the one of its guide that is marked <!-- before each -->;
#      the others say <!-- not run: WHY -->. A text block marked <!-- printed --> is what the one before it prints;
#   3. files that are named exist, in the tree or as tests of it, and functions that are named are somewhere in the code;
#   4. drawings fit 100 columns.
#
#   scripts/gates/docs.sh BUILD-DIRECTORY
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
build=${1:?the build directory}
bad=0
complain() {
    printf '%s\n' "$*"
    bad=1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
guides=$(own_files 'docs/*.md')
[ -n "$guides" ] || die "there are no guides in docs/"

# region FILE NAME: the lines of a region, without the indentation that all of them have
region() {
    if [ "$2" = output ]; then
        awk '/^\)";$/ { exit } inside; /R"\($/ { inside = 1 }' "$1"
    else
        awk -v begin="// [$2]" -v end="// [/$2]" '
            { text = $0; sub(/^ +/, "", text) }
            text == end { exit }
            inside { lines[++count] = $0
                     if ($0 != "") { match($0, /^ */); if (least == "" || RLENGTH < least) least = RLENGTH } }
            text == begin { inside = 1 }
            END { for (i = 1; i <= count; i++) print substr(lines[i], least + 1) }' "$1"
    fi
}

# Every block in a file of its own; a row for each: file, line, language, what the line before it says.
while IFS= read -r guide; do
    awk -v guide="$guide" -v work="$work" '
        /^```/ && inside { inside = 0; close(file); next }
        /^```/ { inside = 1; language = substr($0, 4); file = work "/block" ++count "." substr(guide, 6)
                 printf "" > file
                 print guide "\t" NR "\t" (language == "" ? "none" : language) "\t" file "\t" before
                 next }
        inside { print > file; next }
        { before = ($0 ~ /^<!-- .* -->$/) ? substr($0, 6, length($0) - 9) : "" }
        END { if (inside) { print guide ": a block has no end" > "/dev/stderr"; exit 1 } }' "$guide" || bad=1
done <<<"$guides" >"$work/blocks"

# ---- 1. C++ and output
awk '$1 == "//" && $2 ~ /^\[[^\/].*\]$/ { print FILENAME ": " substr($2, 2, length($2) - 2) }' docs/examples/*.cc docs/examples/*.h >"$work/regions"
compared=0
while IFS=$'\t' read -r guide line language file name; do
    case $language in
    cpp) [ -n "$name" ] || complain "$guide:$line: this block is of no program in docs/examples/" ;;
    text) ;;
    *) continue ;;
    esac
    case $name in '' | printed) continue ;; esac
    source=${name%%: *}
    region=${name#*: }
    if [ ! -f "$source" ]; then
        complain "$guide:$line: there is no $source"
        continue
    fi
    region "$source" "$region" >"$work/region"
    if [ ! -s "$work/region" ]; then
        complain "$guide:$line: $source has no region '$region'"
    elif ! diff -u --label "$source: $region" --label "$guide:$line" "$work/region" "$file"; then
        bad=1
    fi
    printf '%s\n' "$name" >>"$work/shown"
    compared=$((compared + 1))
done <"$work/blocks"
[ $compared -gt 0 ] || complain "nothing in docs/ shows a program"
while IFS= read -r name; do
    complain "$name: no guide shows this region"
done < <(grep -vxFf "$work/shown" "$work/regions" || true)

# ---- 2. shell
cmake --build "$build" --target docs_examples dcache zovsim >"$work/log" 2>&1 || { cat "$work/log" && die "the programs of the guides do not build"; }

# run FILE: in a process group of its own, of which nothing is left afterwards
run() {
    local status=0 group
    TMPDIR=$work setsid bash -euo pipefail "$1" >"$work/printed" 2>"$work/log" </dev/null &
    group=$!
    wait $group || status=$?
    kill -- -$group 2>/dev/null || true
    return $status
}
# What a watch prints has the time of day in front.
without_times() { sed -E 's/^[0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3}/TIME/' "$1"; }

ran=0
before=/dev/null
before_in=
while IFS=$'\t' read -r guide line language file name; do
    case $language,$name in
    'sh,before each')
        before=$file
        before_in=$guide
        ;;
    sh,run)
        [ "$guide" = "$before_in" ] || before=/dev/null
        cat "$before" "$file" | sed -E "s#build/(dev|release)#$build#g" >"$work/commands"
        run "$work/commands" || {
            cat "$work/printed" "$work/log"
            complain "$guide:$line: these commands fail"
        }
        ran=$((ran + 1))
        ;;
    'sh,not run: '*) ;;
    sh,*) complain "$guide:$line: say <!-- run --> or <!-- not run: WHY --> before these commands" ;;
    text,printed)
        diff -u --label "what the commands print" --label "$guide:$line" <(without_times "$work/printed") <(without_times "$file") || {
            cat "$work/log"
            bad=1
        }
        ;;
    esac
done <"$work/blocks"
[ $ran -gt 0 ] || complain "no commands of docs/ are run"

# ---- 3. names
# Words in backquotes, outside of blocks, with the guide and line they stand in.
while IFS= read -r guide; do
    awk -v guide="$guide" '
        /^```/ { inside = !inside; next }
        inside { next }
        { rest = $0
          while (match(rest, /`[^`]+`/)) {
              print guide ":" NR "\t" substr(rest, RSTART + 1, RLENGTH - 2)
              rest = substr(rest, RSTART + RLENGTH)
          }
          rest = $0
          while (match(rest, /\]\([^)#:]+\)/)) {
              print guide ":" NR "\tlink " substr(rest, RSTART + 2, RLENGTH - 3)
              rest = substr(rest, RSTART + RLENGTH)
          } }' "$guide"
done <<<"$guides" >"$work/words"

# Names of files: with a folder of this tree in front, or with an ending that files of this tree have.
folders=$(own_files | sed -n 's|/.*||p' | sort -u | paste -sd '|')
while IFS=$'\t' read -r place word; do
    case $word in
    'link '*)
        [ -e "docs/${word#link }" ] || complain "$place: links to ${word#link }, which does not exist"
        continue
        ;;
    esac
    [[ $word =~ ^[A-Za-z0-9_.*/-]+$ ]] || continue
    [[ $word =~ ^($folders)/ || $word =~ \.(cc|h|md|sh|map|cmake)$ ]] || continue
    compgen -G "$word" >/dev/null || compgen -G "tests/$word" >/dev/null || complain "$place: there is no $word"
done <"$work/words"

# Names of functions: name() or Class::name(), as a word of the sources. Those of the system are in its headers.
own_files '*.h' '*.cc' '*.c' 'common/include/*' | tr '\n' '\0' | xargs -0 cat | grep -oE '[A-Za-z_~][A-Za-z0-9_]*' | sort -u >"$work/known"
while IFS=$'\t' read -r place word; do
    [[ $word =~ ^([A-Za-z_~][A-Za-z0-9_]*(::|->|\.))*([A-Za-z_~][A-Za-z0-9_]*)\([^\)]*\)$ ]] || continue
    function=${BASH_REMATCH[3]}
    grep -qxF -e "$function" "$work/known" || complain "$place: no code has a function $function()"
done <"$work/words"

# ---- 4. drawings
while IFS=$'\t' read -r guide line language file _; do
    [ "$language" = text ] || [ "$language" = none ] || continue
    awk -v place="$guide:$line" 'length($0) > 100 { print place ": a line of " length($0) " columns: at most 100"; bad = 1 }
        END { exit bad }' "$file" || bad=1
done <"$work/blocks"

exit $bad
