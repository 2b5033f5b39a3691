#include "tests/scenario/zoningScript.h"

#include <array>
#include <iterator>

#include <fmt/format.h>

#include "tests/scenario/zoningFind.h"

namespace scenario {

namespace {

using Names = std::vector<std::string>;

// Zone sets before and after the active one in the order of the keys. Aliases that could be a domain and port or an
// address, in the digits of the commands or not.
const Names kZonesetNames = {"Alpha", "Zulu", "alpha", "beta", "m-1", "M_2", "zulu", "B^$"};
const Names kZoneNames = {"oak",   "elm",   "ash",   "Fir",   "yew",   "pine",
                          "larch", "Rowan", "alder", "Birch", "cedar", "ebony"};
const Names kAliasNames = {"disk",   "tape", "Host1", "ABCD",   "abcd",
                           "FADE01", "oak",  "ef10",  "host-2", "A000000000000001"};
const Names kNoNames = {
    "", "1oak", "two words", "a.b", std::string(65, 'n'), "[ActiveZoneSetKey]", "[UberZoneSetKey]", "nobody"};

struct MemberText {
    zov_fzs_zonemember_type_e type;
    const char *text;
};

constexpr std::array<MemberText, 14> kMembers{{
    {ZOV_ZMT_PORTWWN, "2100000000000001"},
    {ZOV_ZMT_PORTWWN, "A000000000000001"},
    {ZOV_ZMT_PORTWWN, "21:00:00:00:00:00:0a:0b"},
    {ZOV_ZMT_PORTWWN, "21000000000000ab"},
    {ZOV_ZMT_DOMAINPORT, "1:10"},
    {ZOV_ZMT_DOMAINPORT, "010a"},
    {ZOV_ZMT_DOMAINPORT, "171:205"},
    {ZOV_ZMT_DOMAINPORT, "239:16"},
    {ZOV_ZMT_DOMAINPORT, "2:0"},
    {ZOV_ZMT_FCADDRESS, "010100"},
    {ZOV_ZMT_FCADDRESS, "FADE01"},
    {ZOV_ZMT_FCADDRESS, "ef0002"},
    {ZOV_ZMT_FCADDRESS, "FFFFFE"},
    {ZOV_ZMT_FCADDRESS, "0A0B0C"},
}};

constexpr std::array<MemberText, 13> kNoMembers{{
    {ZOV_ZMT_PORTWWN, "21000000000000"},
    {ZOV_ZMT_PORTWWN, "21000000000000XY"},
    {ZOV_ZMT_PORTWWN, ""},
    {ZOV_ZMT_PORTWWN, nullptr},
    {ZOV_ZMT_DOMAINPORT, "240:1"},
    {ZOV_ZMT_DOMAINPORT, "1:256"},
    {ZOV_ZMT_DOMAINPORT, "0:1"},
    {ZOV_ZMT_DOMAINPORT, "one:two"},
    {ZOV_ZMT_FCADDRESS, "0101"},
    {ZOV_ZMT_NODENAME, "2100000000000001"},
    {ZOV_ZMT_UNKNOWN, "2100000000000001"},
    {static_cast<zov_fzs_zonemember_type_e>(77), "010100"},
    {ZOV_ZMT_ALIAS, ""},
}};

int32_t upTo(Random &random, unsigned most) {
    return static_cast<int32_t>(1 + random.below(most));
}

// ---- databases ----------------------------------------------------------------------------------------

/// Some of the names, in the order of the list.
Names someOf(Random &random, const Names &names, int32_t most) {
    Names some;
    for (const std::string &name : names)
        if (static_cast<int32_t>(some.size()) < most && !random.oneIn(3))
            some.push_back(name);
    return some;
}

/// Adds some members to a zone or alias while the database has room. `weigh` tells how much of it one takes.
template <class Group, class Weigh>
void fill(Random &random, Group &group, int32_t most, int32_t &room, const std::vector<sim::ZoneMember> &members,
          const Weigh &weigh) {
    for (const sim::ZoneMember &member : members) {
        if (random.below(3) != 0 || static_cast<int32_t>(group.members.size()) >= most || weigh(member) > room)
            continue;
        group.members.push_back(member);
        room -= weigh(member);
    }
}

std::vector<sim::ZoneMember> plainMembers() {
    std::vector<sim::ZoneMember> members;
    for (const MemberText &member : kMembers)
        if (const auto known = memberFrom(member.type, member.text); known && !contains(members, *known))
            members.push_back(*known);
    return members;
}

} // namespace

ZoningLimits smallLimits(Random &random) {
    ZoningLimits limits = {};
    limits.zonesets = upTo(random, 6);
    limits.zones = upTo(random, 12);
    limits.members = 5 + upTo(random, 70);
    limits.zonesPerZoneset = upTo(random, 6);
    limits.membersPerZone = upTo(random, 7);
    limits.aliases = upTo(random, 8);
    limits.membersPerAlias = upTo(random, 6);
    return limits;
}

sim::ZoningDatabase randomDatabase(Random &random, const ZoningLimits &limits) {
    sim::ZoningDatabase database;
    int32_t room = limits.members;
    std::vector<sim::ZoneMember> members = plainMembers();
    for (const std::string &name : someOf(random, kAliasNames, limits.aliases)) {
        database.aliases.push_back({name, {}});
        fill(random, database.aliases.back(), limits.membersPerAlias, room, members, [](const auto &) { return 1; });
    }
    for (const sim::ZoneAlias &alias : database.aliases)
        members.push_back({ZOV_ZMT_ALIAS, alias.name});
    for (const std::string &name : someOf(random, kZoneNames, limits.zones)) {
        database.zones.push_back({name, static_cast<zov_fzs_zone_type_e>(1 + random.below(3)), {}});
        fill(random, database.zones.back(), limits.membersPerZone, room, members, [&](const sim::ZoneMember &member) {
            const sim::ZoneAlias *alias = member.type == ZOV_ZMT_ALIAS ? named(database.aliases, member.text) : nullptr;
            return 1 + static_cast<int32_t>(alias != nullptr ? alias->members.size() : 0);
        });
    }
    Names zones;
    for (const sim::Zone &zone : database.zones)
        zones.push_back(zone.name);
    for (const std::string &name : someOf(random, kZonesetNames, limits.zonesets))
        database.zonesets.push_back({name, someOf(random, zones, limits.zonesPerZoneset)});
    return database;
}

sim::ZoningDatabase fullDatabase() {
    constexpr int zones = 3000;
    sim::ZoningDatabase database;
    for (int i = 0; i < zones; ++i) {
        const std::string alias = fmt::format("a{}", i);
        database.aliases.push_back({alias, {{ZOV_ZMT_FCADDRESS, fmt::format("{:06X}", i)}}});
        database.zones.push_back({fmt::format("z{}", i),
                                  ZOV_ZT_SOFT,
                                  {{ZOV_ZMT_PORTWWN, fmt::format("21000000000{:05X}", i)}, {ZOV_ZMT_ALIAS, alias}}});
    }
    for (int i = 0; i < 300; ++i) {
        database.zonesets.push_back({fmt::format("s{}", i), {}});
        const int size = i == 0 ? 1000 : 10;
        for (int zone = 0; zone < size; ++zone)
            database.zonesets.back().zones.push_back(fmt::format("z{}", (10 * i + zone) % zones));
    }
    return database;
}

// ---- edits --------------------------------------------------------------------------------------------

namespace {

struct Arguments {
    const char *zoneset;
    const char *zone;
    const char *alias;
    const char *member;
    zov_fzs_zonemember_type_e memberType;
    zov_fzs_zone_type_e zoneType;
};

template <class Zoning> using Call = int (*)(Zoning &, const Arguments &);

struct Operation {
    const char *name;
    unsigned weight; ///< how often it comes
    Call<ZoningCache> onCache;
    Call<ZoningModel> onModel;
};

template <class Both> Operation operation(const char *name, unsigned weight, Both both) {
    return {name, weight, both, both};
}

const std::array<Operation, 13> kOperations{{
    operation("createZoneset", 3, [](auto &zoning, const Arguments &a) { return zoning.createZoneset(a.zoneset); }),
    operation("removeZoneset", 2, [](auto &zoning, const Arguments &a) { return zoning.removeZoneset(a.zoneset); }),
    operation("createZone", 5, [](auto &zoning, const Arguments &a) { return zoning.createZone(a.zone, a.zoneType); }),
    operation("removeZone", 2, [](auto &zoning, const Arguments &a) { return zoning.removeZone(a.zone); }),
    operation("createZoneAlias", 3, [](auto &zoning, const Arguments &a) { return zoning.createZoneAlias(a.alias); }),
    operation("removeZoneAlias", 2, [](auto &zoning, const Arguments &a) { return zoning.removeZoneAlias(a.alias); }),
    operation("addMemberToZone", 9,
              [](auto &zoning, const Arguments &a) { return zoning.addMemberToZone(a.zone, a.memberType, a.member); }),
    operation(
        "removeMemberFromZone", 4,
        [](auto &zoning, const Arguments &a) { return zoning.removeMemberFromZone(a.zone, a.memberType, a.member); }),
    operation(
        "addMemberToZoneAlias", 7,
        [](auto &zoning, const Arguments &a) { return zoning.addMemberToZoneAlias(a.alias, a.memberType, a.member); }),
    operation("removeMemberFromZoneAlias", 4,
              [](auto &zoning, const Arguments &a) {
                  return zoning.removeMemberFromZoneAlias(a.alias, a.memberType, a.member);
              }),
    operation("removeMember", 2,
              [](auto &zoning, const Arguments &a) { return zoning.removeMember(a.memberType, a.member); }),
    operation("addZoneToZoneset", 8,
              [](auto &zoning, const Arguments &a) { return zoning.addZoneToZoneset(a.zoneset, a.zone); }),
    operation("removeZoneFromZoneset", 4,
              [](auto &zoning, const Arguments &a) { return zoning.removeZoneFromZoneset(a.zoneset, a.zone); }),
}};

const Operation &operationAtRandom(Random &random) {
    unsigned weights = 0;
    for (const Operation &each : kOperations)
        weights += each.weight;
    unsigned at = random.below(weights);
    const Operation *chosen = kOperations.data();
    for (; at >= chosen->weight; ++chosen)
        at -= chosen->weight;
    return *chosen;
}

/// Mostly a name of something there is.
template <class Things> std::string nameAtRandom(Random &random, const Things &things, const Names &pool) {
    if (random.oneIn(25))
        return random.of(kNoNames);
    return things.empty() || random.oneIn(3) ? random.of(pool) : random.of(things).name;
}

std::string zonesetAtRandom(Random &random, const CachedZonesets &zonesets) {
    if (random.oneIn(12))
        return random.of(kNoNames);
    if (zonesets.empty() || random.oneIn(3))
        return random.of(kZonesetNames);
    const std::string &key = std::next(zonesets.begin(), random.below(static_cast<unsigned>(zonesets.size())))->first;
    // Taking the active and the uber zone set away is possible, but leaves little to edit.
    return key.front() == '[' && !random.oneIn(4) ? random.of(kZonesetNames) : key;
}

/// Mostly a member that the zone or alias has, or that some have.
template <class Group> sim::ZoneMember memberAtRandom(Random &random, const Group *group, const std::string &alias) {
    if (group != nullptr && !group->members.empty() && random.oneIn(3))
        return random.of(group->members);
    if (random.oneIn(5))
        return {ZOV_ZMT_ALIAS, alias};
    const MemberText &member = random.of(kMembers);
    return {member.type, member.text};
}

const char *orNull(Random &random, const std::string &text) {
    return random.oneIn(80) ? nullptr : text.c_str();
}

} // namespace

ZoningEdit editAtRandom(Random &random, ZoningCache &cache, ZoningModel &model) {
    static const CachedZoneset nothing;
    const auto uberEntry = model.zonesets().find(kUberZonesetKey);
    const CachedZoneset &uber = uberEntry == model.zonesets().end() ? nothing : uberEntry->second;
    const Operation &edit = operationAtRandom(random);
    const std::string zoneset = zonesetAtRandom(random, model.zonesets());
    const std::string zone = nameAtRandom(random, uber.zones, kZoneNames);
    const std::string alias = nameAtRandom(random, uber.aliases, kAliasNames);
    const bool isOfAlias = std::string(edit.name).find("Alias") != std::string::npos;
    sim::ZoneMember member = isOfAlias ? memberAtRandom(random, named(uber.aliases, alias), alias)
                                       : memberAtRandom(random, named(uber.zones, zone), alias);
    Arguments arguments{orNull(random, zoneset),
                        orNull(random, zone),
                        orNull(random, alias),
                        member.text.c_str(),
                        member.type,
                        static_cast<zov_fzs_zone_type_e>(random.oneIn(30) ? random.below(9) : 1 + random.below(3))};
    if (random.oneIn(12)) {
        const MemberText &none = random.of(kNoMembers);
        arguments.memberType = none.type;
        arguments.member = none.text;
    }
    const auto shown = [](const char *text) { return text != nullptr ? text : "(null)"; };
    ZoningEdit made{edit.name, fmt::format("{}: zone set {}, zone {} of type {}, alias {}, member {}/{}", edit.name,
                                           shown(arguments.zoneset), shown(arguments.zone),
                                           static_cast<int>(arguments.zoneType), shown(arguments.alias),
                                           static_cast<int>(arguments.memberType), shown(arguments.member))};
    made.onModel = edit.onModel(model, arguments);
    made.onCache = edit.onCache(cache, arguments);
    return made;
}

} // namespace scenario
