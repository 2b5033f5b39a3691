#!/usr/bin/env bash
# One stage of ./check, which keeps its time and its log. Stops at the first step that fails.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"

# ./check reads these lines to tell what was being done.
step() { printf '\n==> %s\n' "$*"; }

# build PRESET [TARGET...]
build() {
    if needs_configure "$1"; then
        step "preparing build/$1"
        configure_preset "$1"
    fi
    step "building build/$1"
    "${fixed_addresses[@]}" ninja -C "build/$1" "${@:2}"
}

# tests PRESET [ctest's arguments...]
tests() {
    step "tests of build/$1"
    "${fixed_addresses[@]}" ctest --preset "$1" -j2 "${@:2}"
}

# ThreadSanitizer does not start where the kernel spreads addresses too widely: spread them not at all. (Building runs
# the test programs too, for their lists of tests.)
fixed_addresses=()
with_fixed_addresses() {
    ! setarch "$(uname -m)" -R true 2>/dev/null || fixed_addresses=(setarch "$(uname -m)" -R)
}

# Seeds of random changes that the scenarios try: the stages in which a switch lives slowly try fewer.
native_seeds=200
slow_seeds=8

# What a newcomer types first. Every start must end well and show something.
first_start() {
    local shown
    step "./run"
    shown=$(./run)
    printf '%s\n' "$shown"
    [ "$(wc -l <<<"$shown")" -ge 10 ] || { echo "./run showed less than a story" && return 1; }

    step "./run -- switch"
    ./run -- switch

    step "./run with wrong arguments (exit status 2)"
    local status=0
    ./run -- no-such-noun || status=$?
    [ $status -eq 2 ]
}

# What others link with, built against an installed tree.
installed() {
    step "the example provider against what build/$1 installs"
    scripts/gates/install.sh "build/$1"
}

export DATACACHE_SEEDS=$slow_seeds
case $1 in
quick)
    build dev
    DATACACHE_SEEDS=$native_seeds tests dev
    ;;
native)
    build dev
    DATACACHE_SEEDS=$native_seeds tests dev
    installed dev
    first_start
    ;;
lint)
    build dev datacache zovlib
    scripts/lint.sh
    ;;
asan)
    build asan
    tests asan
    ;;
ppc32)
    build ppc32
    tests ppc32
    step "the exported symbols of build/ppc32"
    scripts/gates/symbols.sh build/ppc32
    installed ppc32
    ;;
debian)
    step "the Debian packages"
    scripts/debian.sh
    ;;
tsan)
    with_fixed_addresses
    build tsan
    tests tsan
    ;;
repeat)
    step "clang-tidy of all the rest"
    scripts/lint.sh tidy_rest
    # What comes out once in a while only: races, and tests that need another's leavings.
    with_fixed_addresses
    for preset in tsan asan; do
        configure_preset $preset -DDATACACHE_TESTS_WITHOUT= -DDATACACHE_TESTS_OVER_SOCKET=ON -DDATACACHE_TOOL=ON # all
        build $preset
        tests $preset --repeat until-fail:10 --schedule-random
    done
    configure_preset ppc32 "-DDATACACHE_TESTS_WITHOUT=^tools/" # all but programs that fork with threads
    build ppc32
    tests ppc32
    step "a minute of ten clients, and one of broken frames"
    DATACACHE_CLIENTS_SECONDS=60 build/asan/tests/sim_remote_TenClients_test
    DATACACHE_FUZZ_SECONDS=60 build/asan/tests/sim_serve_Fuzz_test
    ;;
*)
    die "stage.sh: there is no stage '$1'"
    ;;
esac
