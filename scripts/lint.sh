#!/usr/bin/env bash
# The lint stage: everything that can be said about the code without running it. All parts run, so that one run tells
# everything; the exit status is 1 when any of them found something.
#
#   scripts/lint.sh [PART...]     parts: format includes words tests symbols abi readme docs shell cppcheck tidy tidy_rest
#
# Needs build/dev configured (compile database), and its libraries built for `symbols`, `abi`, `readme` and `docs`.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
build=build/dev
database=$build/compile_commands.json
gates=scripts/gates

part_format() {
    local file bad=()
    while IFS= read -r file; do
        clang-format --dry-run -Werror "$file" >/dev/null 2>&1 || bad+=("$file")
    done < <(own_files '*.h' '*.cc' 'common/include/*')
    [ ${#bad[@]} -eq 0 ] || { printf 'Lay out with: clang-format -i %s\n' "${bad[*]}" && return 1; }
}

part_includes() { $gates/includes.sh; }
part_words() { $gates/words.sh; }
part_tests() { $gates/tests.sh $database; }
part_symbols() { $gates/symbols.sh $build; }
part_abi() { $gates/abi.sh $build; }
part_readme() { $gates/readme.sh $build; }
part_docs() { $gates/docs.sh $build; }
# Of everything that runs on the switch. The rest takes longer than a change should wait, and is not among the parts that
# run by default. Examples are no part of this build.
part_tidy() { scripts/tidy.sh $build '*.cc' ':!tests' ':!examples' ':!sim' ':!tools'; }
# Of the simulated switch, the tools and the tests. Their precompiled headers are GCC's, which clang cannot read.
part_tidy_rest() {
    mkdir -p build/lint/plain
    sed -E 's# -Winvalid-pch -include [^ "]*/cmake_pch\.hxx##' $build/compile_commands.json >build/lint/plain/compile_commands.json
    scripts/tidy.sh build/lint/plain 'sim/*.cc' 'tools/*.cc' 'tests/*.cc'
}

part_shell() {
    local scripts
    scripts=$(own_files | while IFS= read -r file; do
        case $file in
        *.sh) printf '%s\n' "$file" ;;
        *) ! head -c 64 "$file" | grep -qaE '^#!.*\b(ba|da)?sh\b' || printf '%s\n' "$file" ;;
        esac
    done)
    # shellcheck disable=SC2086 # a list of words
    shellcheck --external-sources $scripts
}

part_cppcheck() {
    # As the shipped form is: 32 bits, plain char unsigned.
    own_files '*.cc' ':!tests' | xargs cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++17 \
        --platform=unix32-unsigned --enable=warning,performance,portability --suppress=missingIncludeSystem -j 2 -I .
}

parts=("$@")
[ ${#parts[@]} -gt 0 ] || parts=(format includes words tests symbols abi readme docs shell cppcheck tidy)
failed=()
for part in "${parts[@]}"; do
    printf '\n==> lint: %s\n' "$part"
    began=$SECONDS
    "part_$part" || failed+=("$part")
    printf '    (%d s)\n' $((SECONDS - began))
done
[ ${#failed[@]} -eq 0 ] || {
    printf '\n==> lint: %s\n' "${failed[*]}"
    exit 1
}
