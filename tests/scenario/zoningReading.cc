#include "tests/scenario/zoningReading.h"

#include <array>
#include <cstring>
#include <sstream>

#include <fmt/format.h>

namespace scenario {

namespace {

constexpr const char *kUnreadable = "(unreadable)";

std::string nameBy(int32_t (*read)(void *, char *), void *object) {
    std::array<char, 256> name{};
    return object != nullptr && read(object, name.data()) == 0 ? name.data() : kUnreadable;
}

std::string digitsOf(const unsigned char *bytes, int count) {
    std::string digits;
    for (int i = 0; i < count; ++i)
        digits += fmt::format("{:02X}", bytes[i]);
    return digits;
}

sim::ZoneMember memberOf(void *handle) {
    sim::ZoneMember member{ZOV_ZMT_UNKNOWN, kUnreadable};
    std::array<unsigned char, 256> bytes{};
    if (handle == nullptr || zov_MemberGetAttr(handle, &member.type, bytes.data()) != 0)
        return member;
    std::array<uint32_t, 2> words{};
    std::memcpy(words.data(), bytes.data(), sizeof words);
    if (member.type == ZOV_ZMT_ALIAS)
        member.text = reinterpret_cast<const char *>(bytes.data());
    else if (member.type == ZOV_ZMT_DOMAINPORT)
        member.text = fmt::format("{}:{}", words[0], words[1]);
    else
        member.text = digitsOf(bytes.data(), member.type == ZOV_ZMT_PORTWWN ? 8 : 3);
    return member;
}

template <class Group> void readMembers(Group &group, int32_t count, void *(*at)(void *, int32_t), void *handle) {
    for (int32_t i = 0; i < count; ++i)
        group.members.push_back(memberOf(at(handle, i)));
}

CachedZoneset readZoneset(void *handle, _ZoneSetTypes kind) {
    CachedZoneset zoneset{nameBy(zov_ZonesetGetName, handle), kind, {}, {}};
    const int32_t zones = zov_ZonesetGetZoneCount(handle);
    for (int32_t i = 0; i < zones; ++i) {
        void *zone = zov_ZonesetListZones(handle, i);
        zoneset.zones.push_back({nameBy(zov_ZoneGetName, zone), ZOV_ZT_INVALID, {}});
        zov_ZoneGetType(zone, &zoneset.zones.back().type);
        readMembers(zoneset.zones.back(), zov_ZoneGetMemberCount(zone), zov_ZoneListMembers, zone);
    }
    const int32_t aliases = zov_ZonesetGetAliasCount(handle);
    for (int32_t i = 0; i < aliases; ++i) {
        void *alias = zov_ZonesetListAliases(handle, i);
        zoneset.aliases.push_back({nameBy(zov_ZoneAliasGetName, alias), {}});
        readMembers(zoneset.aliases.back(), zov_ZoneAliasGetMemberCount(alias), zov_ZoneAliasListMembers, alias);
    }
    return zoneset;
}

std::string keyOf(const CachedZoneset &zoneset) {
    if (zoneset.kind == ZONESET_INACTIVE)
        return zoneset.name;
    return zoneset.kind == ZONESET_ACTIVE ? kActiveZonesetKey : kUberZonesetKey;
}

std::string describeCounts(const ZoningLimits &counts) {
    return fmt::format("zone sets {}, zones {}, aliases {}, members {}, each {} {} {}", counts.zonesets, counts.zones,
                       counts.aliases, counts.members, counts.zonesPerZoneset, counts.membersPerZone,
                       counts.membersPerAlias);
}

/// The queries for single zone sets agree with the walk.
std::string differencesOfQueries(const ZoningCache &cache) {
    std::string differences;
    void *active = nullptr;
    void *uber = nullptr;
    std::string before;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    for (void *each = cache.getFirstZoneset(kind); each != nullptr; each = cache.getNextZoneset(each, kind)) {
        const std::string key = keyOf({nameBy(zov_ZonesetGetName, each), kind, {}, {}});
        (kind == ZONESET_ACTIVE ? active : kind == ZONESET_UBER ? uber : each) = each;
        _ZoneSetTypes found = kind == ZONESET_INACTIVE ? ZONESET_UBER : ZONESET_INACTIVE;
        if (cache.getZoneset(key.c_str(), found) != each || found != kind)
            differences += fmt::format("{} is not found by its key\n", key);
        if (key <= before)
            differences += fmt::format("{} comes after {}\n", key, before);
        before = key;
    }
    if (cache.getActiveZoneset() != active || (active != nullptr && !cache.isActiveZoneset(active)))
        differences += "another zone set is the active one\n";
    if (cache.getUberZoneset() != uber || (uber != nullptr && !cache.isUberZoneset(uber)))
        differences += "another zone set is the uber one\n";
    return differences;
}

} // namespace

CachedZonesets zonesetsOf(const ZoningCache &cache) {
    CachedZonesets zonesets;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    for (void *each = cache.getFirstZoneset(kind); each != nullptr; each = cache.getNextZoneset(each, kind)) {
        const CachedZoneset zoneset = readZoneset(each, kind);
        zonesets[keyOf(zoneset)] = zoneset;
    }
    return zonesets;
}

std::string firstDifference(const std::string &what, const std::string &found, const std::string &expected) {
    if (found == expected)
        return "";
    std::istringstream foundLines(found);
    std::istringstream expectedLines(expected);
    std::string one;
    std::string other;
    do {
        if (!std::getline(foundLines, one))
            one = "(the end)";
        if (!std::getline(expectedLines, other))
            other = "(the end)";
    } while (one == other);
    return fmt::format("{}: found \"{}\", expected \"{}\"\n", what, one, other);
}

std::string differencesOfCounts(const ZoningCache &cache, const ZoningModel &model) {
    return firstDifference("counts", describeCounts(cache.getZoningCounts()), describeCounts(model.counts()));
}

std::string differencesOf(const ZoningCache &cache, const ZoningModel &model) {
    return firstDifference("zone sets of the cache", describe(zonesetsOf(cache)), describe(model.zonesets())) +
           differencesOfCounts(cache, model) +
           firstDifference("limits", describeCounts(cache.getZoningLimits()), describeCounts(model.limits)) +
           differencesOfQueries(cache);
}

std::string differencesOf(const sim::Simulator &theSwitch, const ZoningOnSwitch &model) {
    return firstDifference("database of the switch", describe(theSwitch.zoning()), describe(model.defined())) +
           firstDifference("active half of the switch", describe(theSwitch.activeZoning()), describe(model.active()));
}

} // namespace scenario
