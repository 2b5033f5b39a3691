#include "tools/dcache/zoning/picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>

#include "tools/dcache/words.h"
#include "tools/dcache/zoning/script.h"

namespace dcache {
namespace {

/// The name of an object, by the call for its kind; empty when it cannot be read.
std::string nameOf(void *object, int32_t (*call)(void *, char *)) {
    std::array<char, 256> name{};
    if (object == nullptr || call(object, name.data()) != 0)
        return "";
    name.back() = '\0';
    return name.data();
}

/// The parts of an object, by the calls for its kind.
std::vector<void *> partsOf(void *object, int32_t (*count)(void *), void *(*at)(void *, int32_t)) {
    std::vector<void *> parts;
    const int32_t parted = object != nullptr ? count(object) : 0;
    for (int32_t i = 0; i < parted; ++i)
        if (void *part = at(object, i); part != nullptr)
            parts.push_back(part);
    return parts;
}

std::vector<Member> membersOf(void *object, int32_t (*count)(void *), void *(*at)(void *, int32_t)) {
    std::vector<Member> members;
    for (void *member : partsOf(object, count, at))
        members.push_back(memberOf(member));
    return members;
}

ZonePicture zoneOf(void *zone) {
    ZonePicture picture;
    picture.name = nameOf(zone, zov_ZoneGetName);
    if (zov_ZoneGetType(zone, &picture.type) != 0)
        picture.type = ZOV_ZT_INVALID;
    picture.members = membersOf(zone, zov_ZoneGetMemberCount, zov_ZoneListMembers);
    return picture;
}

/// The zones and aliases that a zone set object holds.
ZoningPicture contentOf(void *zoneset) {
    ZoningPicture picture;
    for (void *zone : partsOf(zoneset, zov_ZonesetGetZoneCount, zov_ZonesetListZones))
        picture.zones.push_back(zoneOf(zone));
    for (void *alias : partsOf(zoneset, zov_ZonesetGetAliasCount, zov_ZonesetListAliases))
        picture.aliases.push_back({nameOf(alias, zov_ZoneAliasGetName),
                                   membersOf(alias, zov_ZoneAliasGetMemberCount, zov_ZoneAliasListMembers)});
    return picture;
}

ZonesetPicture zonesetOf(void *zoneset) {
    ZonesetPicture picture{nameOf(zoneset, zov_ZonesetGetName), {}};
    for (void *zone : partsOf(zoneset, zov_ZonesetGetZoneCount, zov_ZonesetListZones))
        picture.zones.push_back(nameOf(zone, zov_ZoneGetName));
    return picture;
}

/// One line of a script; a comment when it says what no script can say.
std::string lineFor(const Statement &statement, bool canBeSaid = true) {
    return (canBeSaid ? "" : "# ") + inScript(statement) + '\n';
}

std::string membersFor(StatementKind kind, const std::string &name, const std::vector<Member> &members) {
    std::string text;
    for (const Member &member : members)
        text += lineFor({kind, 0, name, "", ZOV_ZT_INVALID, member},
                        member.type == ZOV_ZMT_ALIAS || memberFrom(member.text).has_value());
    return text;
}

} // namespace

ZoningPicture definedZoning(const CacheLock &cache) {
    ZoningPicture picture = contentOf(cache->getUberZoneset());
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    for (void *zoneset = cache->getFirstZoneset(kind); zoneset != nullptr;
         zoneset = cache->getNextZoneset(zoneset, kind))
        if (kind == ZONESET_INACTIVE)
            picture.zonesets.push_back(zonesetOf(zoneset));
    return picture;
}

std::optional<ZoningPicture> activeZoning(const CacheLock &cache) {
    void *active = cache->getActiveZoneset();
    if (active == nullptr)
        return std::nullopt;
    ZoningPicture picture = contentOf(active);
    picture.zonesets = {zonesetOf(active)};
    return picture;
}

ZoningPicture zonesetAlone(const ZoningPicture &zoning, const std::string &name) {
    ZoningPicture alone;
    std::set<std::string> zones;
    for (const ZonesetPicture &zoneset : zoning.zonesets) {
        if (zoneset.name == name) {
            alone.zonesets.push_back(zoneset);
            zones.insert(zoneset.zones.begin(), zoneset.zones.end());
        }
    }
    std::set<std::string> aliases;
    for (const ZonePicture &zone : zoning.zones) {
        if (zones.count(zone.name) == 0)
            continue;
        alone.zones.push_back(zone);
        for (const Member &member : zone.members)
            if (member.type == ZOV_ZMT_ALIAS)
                aliases.insert(member.text);
    }
    std::copy_if(zoning.aliases.begin(), zoning.aliases.end(), std::back_inserter(alone.aliases),
                 [&aliases](const AliasPicture &alias) { return aliases.count(alias.name) != 0; });
    return alone;
}

std::string scriptOf(const ZoningPicture &zoning) {
    std::string text;
    for (const AliasPicture &alias : zoning.aliases) {
        text += lineFor({StatementKind::createAlias, 0, alias.name, "", ZOV_ZT_INVALID, {}});
        text += membersFor(StatementKind::addAliasMember, alias.name, alias.members);
    }
    for (const ZonePicture &zone : zoning.zones) {
        text += lineFor({StatementKind::createZone, 0, zone.name, "", zone.type, {}}, zone.type != ZOV_ZT_INVALID);
        text += membersFor(StatementKind::addMember, zone.name, zone.members);
    }
    for (const ZonesetPicture &zoneset : zoning.zonesets) {
        text += lineFor({StatementKind::createSet, 0, zoneset.name, "", ZOV_ZT_INVALID, {}});
        for (const std::string &zone : zoneset.zones)
            text += lineFor({StatementKind::addZone, 0, zoneset.name, zone, ZOV_ZT_INVALID, {}});
    }
    return text + lineFor({});
}

} // namespace dcache
