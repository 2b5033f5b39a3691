#include "sim/levers/CallNames.h"

#include <algorithm>

#include "sim/Fault.h"

namespace sim {

const std::vector<std::string> &callNames() {
    // clang-format off
    static const std::vector<std::string> names = {
        kNotificationCall,
        "zov_IPConnect", "zov_enRegisterForEventList", "zov_libFreeMemory",
        "zov_smlGet", "zov_smlGetBatch", "zov_smlSet", "zov_smlSetBatch",
        "zov_fzsGetZoningLimitations", "zov_fzsGetActiveZonesetName", "zov_fzsGetActiveZoneset", "zov_fzsGetZonesetList",
        "zov_fzsGetZoneset", "zov_fzsGetAllZonesAndAliases",
        "zov_ZonesetTestName", "zov_ZonesetCreate", "zov_ZonesetDestroy", "zov_ZonesetGetName", "zov_ZonesetGetZoneCount",
        "zov_ZonesetGetAliasCount", "zov_ZonesetListZones", "zov_ZonesetListAliases", "zov_ZonesetFindZone",
        "zov_ZonesetFindAlias", "zov_ZonesetAddZone", "zov_ZonesetAddAlias", "zov_ZonesetRemoveZone",
        "zov_ZonesetRemoveAlias",
        "zov_ZoneCreate", "zov_ZoneCreateCopy", "zov_ZoneDestroy", "zov_ZoneSetName", "zov_ZoneGetName", "zov_ZoneSetType",
        "zov_ZoneGetType", "zov_ZoneGetMemberCount", "zov_ZoneListMembers", "zov_ZoneFindMember", "zov_ZoneAddMember",
        "zov_ZoneDeleteMember",
        "zov_ZoneAliasCreate", "zov_ZoneAliasDestroy", "zov_ZoneAliasGetName", "zov_ZoneAliasGetMemberCount",
        "zov_ZoneAliasListMembers", "zov_ZoneAliasFindMember", "zov_ZoneAliasAddMember", "zov_ZoneAliasDeleteMember",
        "zov_MemberCreate", "zov_MemberDestroy", "zov_MemberGetAttr", "zov_strToMemberIdentifier",
    };
    // clang-format on
    return names;
}

bool isCallName(const std::string &name) {
    return std::find(callNames().begin(), callNames().end(), name) != callNames().end();
}

} // namespace sim
