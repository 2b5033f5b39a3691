#!/usr/bin/env bash
# The README's program compiles, and builds against the libraries.
#
#   scripts/gates/readme.sh BUILD-DIRECTORY
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
libraries=${1:?the build directory}/lib

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk '/^```cpp$/ { inside = 1; next } /^```$/ { if (inside) exit } inside' README.md >"$work/client.cc"
grep -q 'int main' "$work/client.cc" || die "README.md shows no program"
g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -I . "$work/client.cc" -o "$work/client" -rdynamic \
    -L "$libraries" -ldatacache -lzovlib
