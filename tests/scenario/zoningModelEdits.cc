// The edits of the model. The checks of each come in the order that decides its result.
#include "tests/scenario/zoningFind.h"
#include "tests/scenario/zoningModel.h"

namespace scenario {

// ---- edits of zone sets, zones and aliases --------------------------------------------------------------

int ZoningModel::createZoneset(const char *name) {
    if (_counts.zonesets == limits.zonesets)
        return 4;
    if (zoneset(name) != nullptr)
        return 3;
    if (!isZoningName(name))
        return 1;
    _zonesets[name] = {name, ZONESET_INACTIVE, {}, {}};
    recount();
    return 0;
}

int ZoningModel::removeZoneset(const char *name) {
    if (zoneset(name) == nullptr)
        return 2;
    _zonesets.erase(name);
    recount();
    return 0;
}

int ZoningModel::createZone(const char *name, zov_fzs_zone_type_e type) {
    if (_counts.zones == limits.zones)
        return 4;
    if (zoneInUber(name) != nullptr)
        return 3;
    if (!isZoningName(name))
        return 1;
    if (uber() == nullptr || (type != ZOV_ZT_SOFT && type != ZOV_ZT_HARDVPF && type != ZOV_ZT_HARDACL))
        return 4;
    uber()->zones.push_back({name, type, {}});
    recount();
    return 0;
}

int ZoningModel::removeZone(const char *name) {
    if (zoneInUber(name) == nullptr)
        return 2;
    for (auto &[key, zoneset] : _zonesets)
        if (zoneset.kind != ZONESET_ACTIVE)
            eraseNamed(zoneset.zones, name);
    recount();
    return 0;
}

int ZoningModel::createZoneAlias(const char *name) {
    if (_counts.aliases == limits.aliases || uber() == nullptr)
        return 4;
    if (aliasInUber(name) != nullptr)
        return 3;
    if (!isZoningName(name))
        return 4;
    uber()->aliases.push_back({name, {}});
    recount();
    return 0;
}

int ZoningModel::removeZoneAlias(const char *name) {
    if (aliasInUber(name) == nullptr)
        return 2;
    for (auto &[key, zoneset] : _zonesets)
        if (zoneset.kind != ZONESET_ACTIVE)
            eraseNamed(zoneset.aliases, name);
    recount();
    return 0;
}

int ZoningModel::addZoneToZoneset(const char *key, const char *zone) {
    CachedZoneset *set = zoneset(key);
    if (set == nullptr)
        return 2;
    if (static_cast<int32_t>(set->zones.size()) >= limits.zonesPerZoneset)
        return 4;
    if (named(set->zones, zone) != nullptr)
        return 3;
    const sim::Zone *original = zoneInUber(zone);
    if (original == nullptr)
        return 2;
    set->zones.push_back(*original);
    return 0;
}

int ZoningModel::removeZoneFromZoneset(const char *key, const char *zone) {
    CachedZoneset *set = zoneset(key);
    return set != nullptr && eraseNamed(set->zones, zone) ? 0 : 2;
}

// ---- edits of members ---------------------------------------------------------------------------------

int ZoningModel::addMemberToZone(const char *zone, zov_fzs_zonemember_type_e type, const char *text) {
    sim::Zone *edited = zoneInUber(zone);
    if (edited == nullptr)
        return 2;
    if (static_cast<int32_t>(edited->members.size()) >= limits.membersPerZone)
        return 4;
    const std::optional<sim::ZoneMember> member = memberFrom(type, text);
    if (!member)
        return 1;
    if (contains(edited->members, *member))
        return 3;
    edited->members.push_back(*member);
    for (auto &[key, zoneset] : _zonesets) {
        sim::Zone *copy = zoneset.kind == ZONESET_INACTIVE ? named(zoneset.zones, zone) : nullptr;
        if (copy == nullptr)
            continue;
        if (contains(copy->members, *member))
            return 4;
        copy->members.push_back(*member);
    }
    recount();
    return 0;
}

int ZoningModel::removeMemberFromZone(const char *zone, zov_fzs_zonemember_type_e type, const char *text) {
    sim::Zone *edited = zoneInUber(zone);
    if (edited == nullptr)
        return 2;
    const std::optional<sim::ZoneMember> member = memberFrom(type, text);
    if (!member)
        return 1;
    if (!eraseMember(*edited, *member))
        return 2;
    for (auto &[key, zoneset] : _zonesets) {
        sim::Zone *copy = zoneset.kind == ZONESET_INACTIVE ? named(zoneset.zones, zone) : nullptr;
        if (copy != nullptr && !eraseMember(*copy, *member))
            return 2;
    }
    recount();
    return 0;
}

int ZoningModel::addMemberToZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *text) {
    sim::ZoneAlias *edited = aliasInUber(alias);
    if (edited == nullptr)
        return 2;
    if (static_cast<int32_t>(edited->members.size()) >= limits.membersPerAlias)
        return 4;
    const std::optional<sim::ZoneMember> member = memberFrom(type, text);
    if (!member)
        return 1;
    if (contains(edited->members, *member))
        return 3;
    if (member->type == ZOV_ZMT_ALIAS) // aliases do not hold aliases
        return 4;
    edited->members.push_back(*member);
    for (auto &[key, zoneset] : _zonesets) {
        sim::ZoneAlias *copy = zoneset.kind == ZONESET_INACTIVE ? named(zoneset.aliases, alias) : nullptr;
        if (copy == nullptr)
            continue;
        if (contains(copy->members, *member))
            return 4;
        copy->members.push_back(*member);
    }
    return 0;
}

int ZoningModel::removeMemberFromZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *text) {
    sim::ZoneAlias *edited = aliasInUber(alias);
    if (edited == nullptr)
        return 2;
    const std::optional<sim::ZoneMember> member = memberFrom(type, text);
    if (!member)
        return 1;
    if (!eraseMember(*edited, *member))
        return 2;
    CachedZoneset *active = zoneset(kActiveZonesetKey);
    sim::ZoneAlias *copy = active != nullptr ? named(active->aliases, alias) : nullptr;
    return copy == nullptr || eraseMember(*copy, *member) ? 0 : 2;
}

int ZoningModel::removeMember(zov_fzs_zonemember_type_e type, const char *text) {
    const std::optional<sim::ZoneMember> member = memberFrom(type, text);
    if (!member)
        return 1;
    for (auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind == ZONESET_ACTIVE)
            continue;
        for (sim::Zone &zone : zoneset.zones)
            eraseMember(zone, *member);
        for (sim::ZoneAlias &alias : zoneset.aliases)
            eraseMember(alias, *member);
    }
    return 0;
}

} // namespace scenario
