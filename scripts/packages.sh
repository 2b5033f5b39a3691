#!/usr/bin/env bash
# Installs the Debian packages that a purpose needs and that are missing; when there are none it is done at once.
#
#   scripts/packages.sh PURPOSE...    purposes: run native asan tsan ppc32 lint debian
#   scripts/packages.sh --list        the table
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"

# package | purposes (all: every one) | what it is for
table='
g++                     | all                | the compiler
cmake                   | all                | describes the build
ninja-build             | all                | runs the build
ccache                  | all                | makes the second build quick
libcli11-dev            | all                | command line of dcache
libfmt-dev              | all                | texts of dcache and of the tests
nlohmann-json3-dev      | all                | JSON output of dcache, messages of the simulated switch
libasio-dev             | all                | sockets of the simulated switch
libtomlplusplus-dev     | all                | scenario files of the simulated switch
libgtest-dev            | native asan tsan lint | the tests
libgmock-dev            | native asan tsan lint | the tests
g++-powerpc-linux-gnu   | ppc32              | compiler for 32-bit PowerPC
make                    | native             | the example provider, the way of pkg-config
pkgconf                 | native             | the same
googletest              | ppc32              | source of GoogleTest, built for PowerPC
qemu-user               | ppc32              | runs the PowerPC tests
git                     | lint debian        | the list of files to look at
binutils                | lint               | nm, for the symbols of the libraries
abigail-tools           | lint               | compares the binary interface of the library
clang-format            | lint               | layout of the code
clang-tidy              | lint               | static analysis
cppcheck                | lint               | static analysis
shellcheck              | lint               | analysis of the scripts
debhelper               | debian             | builds the Debian packages
dpkg-dev                | debian             | the same
fakeroot                | debian             | builds them without being root
lintian                 | debian             | looks for mistakes in them
'

# rows PURPOSE...: "package<TAB>what for" for each package that one of the purposes needs
rows() {
    awk -F ' *[|] *' -v purposes="$*" '
        BEGIN { count = split(purposes, wanted, " ") }
        NF == 3 {
            split("", has)
            number = split($2, words, " ")
            for (i = 1; i <= number; i++) has[words[i]] = 1
            hit = has["all"]
            for (i = 1; i <= count; i++) if (has[wanted[i]]) hit = 1
            if (hit) printf "%s\t%s\n", $1, $3
        }' <<<"$table"
}

if [ "${1:-}" = --list ]; then
    printf '%s\n' "${table#?}"
    exit 0
fi

for purpose in "$@"; do
    case $purpose in
    run | native | asan | tsan | ppc32 | lint | debian) ;;
    *) die "packages.sh: there is no purpose '$purpose'" ;;
    esac
done

wanted=$(rows "$@")
if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "this is not a Debian system, so nothing can be installed here. Needed are Debian 12's packages"
    printf '%s\n' "$wanted" | awk -F '\t' '{ printf "    %-22s %s\n", $1, $2 }' >&2
    exit 1
fi

# shellcheck disable=SC2016 # dpkg-query's own variables
installed=$(cut -f 1 <<<"$wanted" | xargs dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null |
    sed -n 's/^installed //p') || true
missing=$(awk -F '\t' 'NR == FNR { have[$1] = 1; next } !($1 in have)' <(printf '%s\n' "$installed") \
    <(printf '%s\n' "$wanted"))
[ -n "$missing" ] || exit 0

mapfile -t names < <(cut -f 1 <<<"$missing")
say "packages to install:"
awk -F '\t' '{ printf "    %-22s %s\n", $1, $2 }' <<<"$missing" >&2

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        say "installing needs root, and there is no sudo. As root, type"
        printf '    apt-get update && apt-get install -y %s\n' "${names[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
    if ! sudo -n true 2>/dev/null; then
        if [ ! -t 0 ] || [ ! -t 2 ]; then
            say "installing needs root, and sudo wants a password that nobody can type here. In a terminal, type"
            printf '    sudo apt-get update && sudo apt-get install -y %s\n' "${names[*]}" >&2
            exit 1
        fi
        sudo -v || die "sudo said no: nothing was installed"
    fi
    as_root=(sudo -n)
fi

mkdir -p "$top/build"
log="$top/build/packages.log"
apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 "$@" >>"$log" 2>&1 </dev/null
}

: >"$log"
say "installing ${#names[@]} packages (a minute or two) ..."
# A list of packages that is out of date may still do; installing tells.
apt update || say "the list of packages could not be updated; trying with the one that is here"
if ! apt install -y --no-install-recommends "${names[@]}"; then
    say "installing failed:"
    show_end_of "$log" 15
    say "the command was: apt-get install -y --no-install-recommends ${names[*]}"
    exit 1
fi
