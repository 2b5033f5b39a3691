#!/usr/bin/env bash
# What the libraries take from others and what they show:
#   1. only the object files of the table speak to the switch library;
#   2. libdatacache.so takes nothing but the switch library, the host and the standard libraries, and loads no other;
#   3. libdatacache.so exports its interface, libzovlib.so the switch library's and its control interface.
#
#   scripts/gates/symbols.sh BUILD-DIRECTORY
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
cd "$top"
build=${1:?the build directory}
library=$build/lib/libdatacache.so
simulator=$build/lib/libzovlib.so
objects=$build/CMakeFiles/datacache.dir
bad=0
complain() {
    printf '%s\n' "$*"
    bad=1
}
for file in "$library" "$simulator"; do [ -e "$file" ] || die "$file is missing: build first"; done

# Source files that may call the switch library. The others go through the access layer in swlib/.
may_call='^(swlib/.*|zoning/.*|datacache/DataCache|datacache/SmlEntries|datacache/refresh/zoning)\.cc$'
# Standard libraries that may be loaded.
may_load='^(libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld(64)?(-linux.*)?\.so\.[0-9])$'
# What clients may use (demangled names).
library_exports='^((vtable|typeinfo|typeinfo name) for )?(DataCache|DataCacheEvent|DCEvent[A-Za-z]*|ZoningCache|MERO_Except|Wwn|FabricCache|SwitchCache|PortCache|Element<SwitchCache>|List<Element<SwitchCache>>)(::.*)?$|^(zov_sml[A-Za-z]*|isErrors|get_(first|next)_(lsdb_record|attached_port)|get_lsdb_record_link_[a-z_]+|get_Active_ZoneSet|ZOV_WWNToStr|byteToStr|formatMemberId|ZoneMemberToString|toUpper|get_Switch_[A-Za-z0-9_]+|is_Switch_[A-Za-z_]+|get_(Principal|Local)_Switch_World_Wide_Name|get_Product_Info|(req|release)AdminMode|(get|save|cancel)ConfigEdit(Mode)?|(backup|restore)Config|hSwitch|cim_log|DataCacheLogger)$|^(booltostr)\('
simulator_exports='^(zov_|zovsim_)[A-Za-z]*$'

# names HEADER...: the functions that C headers declare
names() {
    sed -e 's|//.*||' "$@" | grep -oE '\b[A-Za-z_][A-Za-z0-9_]* *\(' | tr -d ' (' | sort -u
}
platform=$(names platform/zovlib.h | grep '^zov_')
host=$(names platform/host.h)

# 1. who speaks to the switch library
while IFS= read -r object; do
    source=${object#"$objects"/}
    source=${source%.o}
    ! [[ $source =~ $may_call ]] || continue
    calls=$(nm --undefined-only --format=posix "$object" | awk '{ print $1 }' | grep -xF "$platform" || true)
    [ -z "$calls" ] || complain "$source: calls the switch library (${calls//$'\n'/ }), which only these files may: $may_call"
done < <(find "$objects" -name '*.o' | sort)

# 2. what the library takes: symbols without a version belong to no standard library
taken=$(nm --dynamic --undefined-only --format=posix "$library" | awk '$2 == "U" && $1 !~ /@/ { print $1 }')
foreign=$(grep -vxF "$platform"$'\n'"$host" <<<"$taken" || true)
[ -z "$foreign" ] || complain "$library: takes from nowhere: ${foreign//$'\n'/ }"
while IFS= read -r needed; do
    [[ $needed =~ $may_load ]] || complain "$library: loads $needed"
done < <(readelf --dynamic --wide "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')

# 3. what the libraries show. Weak symbols of the standard library's templates are in every C++ library.
shown() {
    nm --dynamic --defined-only --demangle "$1" | sed -E 's/^[0-9a-f]* *//' |
        awk '{ kind = $1; sub(/^[^ ]+ /, ""); sub(/@@?.*/, ""); if (kind ~ /[WVu]/ && / (std|__gnu_cxx)::|^(std|__gnu_cxx)::/) next; print }' | sort -u
}
extra=$(shown "$library" | grep -vE "$library_exports" || true)
[ -z "$extra" ] || complain "$library: exports what no client may use:"$'\n'"$extra"
extra=$(nm --dynamic --defined-only --format=posix "$simulator" | awk '{ print $1 }' | grep -vE "$simulator_exports" || true)
[ -z "$extra" ] || complain "$simulator: exports more than the switch library and its control interface:"$'\n'"$(c++filt <<<"$extra")"
exit $bad
