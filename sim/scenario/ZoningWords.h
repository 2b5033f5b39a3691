/*
 * How zoning is written in a scenario file. Constants and pure functions.
 */
#ifndef SIM_SCENARIO_ZONINGWORDS_H
#define SIM_SCENARIO_ZONINGWORDS_H

#include <optional>
#include <string>

#include "sim/Simulator.h"

namespace sim {

struct ZoneTypeWord {
    const char *word;
    zov_fzs_zone_type_e type;
};

constexpr ZoneTypeWord kZoneTypes[] = {
    {"soft", ZOV_ZT_SOFT}, {"hard-vpf", ZOV_ZT_HARDVPF}, {"hard-acl", ZOV_ZT_HARDACL}};

struct LimitField {
    const char *name;
    int32_t zov_fzs_zoninglimits_s::*limit;
};

constexpr LimitField kLimitFields[] = {
    {"zonesets", &zov_fzs_zoninglimits_s::zonesets},
    {"zones", &zov_fzs_zoninglimits_s::zones},
    {"members", &zov_fzs_zoninglimits_s::members},
    {"zones_per_zoneset", &zov_fzs_zoninglimits_s::zonesPerZoneset},
    {"members_per_zone", &zov_fzs_zoninglimits_s::membersPerZone},
    {"aliases", &zov_fzs_zoninglimits_s::aliases},
    {"members_per_alias", &zov_fzs_zoninglimits_s::membersPerAlias},
};

constexpr const char *kActiveChecksumKey = "Oper.Zoning.ActiveChecksum";
constexpr const char *kDefinedChecksumKey = "Oper.Zoning.InactiveChecksum";

/// The member that a text stands for: 16 hexadecimal digits or 8 pairs with colons are a port name, 6 an address,
/// "domain:port" is one, and anything else is the name of an alias. "alias:NAME" is one whatever the name looks like.
ZoneMember memberOf(const std::string &given);
/// The text that stands for a member.
std::string textOf(const ZoneMember &member);

} // namespace sim

#endif // SIM_SCENARIO_ZONINGWORDS_H
