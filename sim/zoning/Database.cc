#include "sim/zoning/Database.h"

#include <algorithm>

#include "sim/zoning/Names.h"

namespace sim {

namespace {

/// A limit below 0 allows nothing.
bool isFull(size_t count, int32_t limit) {
    return limit < 0 || count >= static_cast<size_t>(limit);
}

bool fits(size_t count, int32_t limit) {
    return limit >= 0 && count <= static_cast<size_t>(limit);
}

template <class Thing> Status create(Catalog<Thing> &things, const std::string &name, int32_t limit) {
    if (!isValidName(name))
        return kBadName;
    if (things.find(name))
        return kOk;
    if (isFull(things.size(), limit))
        return kLimitReached;
    Thing thing;
    thing.name = name;
    things.add(std::move(thing));
    return kOk;
}

/// Adds a member that makes the database's count grow by `weight`.
Status addMember(ZoneDatabase &database, const Limits &limits, Catalog<MemberId> &members, int32_t limit,
                 const MemberId &member, size_t weight) {
    if (isFull(members.size(), limit) || !fits(database.members + weight, limits.members))
        return kLimitReached;
    members.add(member);
    database.members += weight;
    return kOk;
}

/// The alias that a member of a zone refers to; null when it is no alias, or there is none of the name.
template <class Aliases> auto *aliasOf(Aliases &aliases, const MemberId &member) {
    return member.type == ZOV_ZMT_ALIAS ? aliases.find(textOf(member)) : nullptr;
}

} // namespace

// ---- edits -------------------------------------------------------------------------------------------

Status createAlias(ZoneDatabase &database, const Limits &limits, const std::string &name) {
    return create(database.aliases, name, limits.aliases);
}

Status createZone(ZoneDatabase &database, const Limits &limits, const std::string &name) {
    return create(database.zones, name, limits.zones);
}

Status createZoneSet(ZoneDatabase &database, const Limits &limits, const std::string &name) {
    return create(database.zonesets, name, limits.zonesets);
}

Status setZoneType(ZoneDatabase &database, const std::string &zone, zov_fzs_zone_type_e type) {
    StoredZone *owner = database.zones.find(zone);
    if (!owner)
        return kNotFound;
    if (type != ZOV_ZT_SOFT && type != ZOV_ZT_HARDVPF && type != ZOV_ZT_HARDACL)
        return kBadValue;
    owner->type = type;
    return kOk;
}

Status addAliasMember(ZoneDatabase &database, const Limits &limits, const std::string &alias, const MemberId &member) {
    StoredAlias *owner = database.aliases.find(alias);
    if (!owner)
        return kNotFound;
    if (member.type == ZOV_ZMT_ALIAS || textOf(member).empty())
        return kBadMember;
    if (owner->members.find(keyOf(member)))
        return kOk;
    return addMember(database, limits, owner->members, limits.membersPerAlias, member, 1 + owner->references);
}

Status addZoneMember(ZoneDatabase &database, const Limits &limits, const std::string &zone, const MemberId &member) {
    StoredZone *owner = database.zones.find(zone);
    if (!owner)
        return kNotFound;
    if (textOf(member).empty())
        return kBadMember;
    StoredAlias *alias = aliasOf(database.aliases, member);
    if (member.type == ZOV_ZMT_ALIAS && !alias)
        return kNotFound;
    if (owner->members.find(keyOf(member)))
        return kOk;
    const size_t weight = 1 + (alias ? alias->members.size() : 0);
    const Status status = addMember(database, limits, owner->members, limits.membersPerZone, member, weight);
    if (status == kOk && alias)
        ++alias->references;
    return status;
}

Status addZone(ZoneDatabase &database, const Limits &limits, const std::string &zoneset, const std::string &zone) {
    StoredZoneSet *owner = database.zonesets.find(zoneset);
    if (!owner || !database.zones.find(zone))
        return kNotFound;
    if (owner->zones.find(zone))
        return kOk;
    if (isFull(owner->zones.size(), limits.zonesPerZoneset))
        return kLimitReached;
    owner->zones.add(zone);
    return kOk;
}

// ---- looking at one ----------------------------------------------------------------------------------

Contents contentsOf(const ZoneDatabase &database, const StoredZoneSet &zoneset) {
    Contents contents;
    Catalog<std::string> seen;
    for (const std::string &name : zoneset.zones) {
        const StoredZone *zone = database.zones.find(name);
        contents.zones.push_back(zone);
        for (const MemberId &member : zone->members) {
            const StoredAlias *alias = aliasOf(database.aliases, member);
            if (alias && seen.add(alias->name))
                contents.aliases.push_back(alias);
        }
    }
    return contents;
}

Contents contentsOf(const ZoneDatabase &database) {
    Contents contents;
    for (const StoredZone &zone : database.zones)
        contents.zones.push_back(&zone);
    for (const StoredAlias &alias : database.aliases)
        contents.aliases.push_back(&alias);
    return contents;
}

ZoneDatabase extract(const ZoneDatabase &database, const StoredZoneSet &zoneset) {
    ZoneDatabase part;
    const Contents contents = contentsOf(database, zoneset);
    for (const StoredAlias *alias : contents.aliases)
        part.aliases.add(*alias);
    for (const StoredZone *zone : contents.zones)
        part.zones.add(*zone);
    part.zonesets.add(zoneset);
    return part;
}

// ---- comparing ---------------------------------------------------------------------------------------

namespace {

bool isSame(const MemberId &left, const MemberId &right) {
    return left == right;
}

bool isSame(const std::string &left, const std::string &right) {
    return left == right;
}

bool isSame(const StoredAlias &left, const StoredAlias &right);
bool isSame(const StoredZone &left, const StoredZone &right);
bool isSame(const StoredZoneSet &left, const StoredZoneSet &right);

template <class Thing> bool haveSame(const Catalog<Thing> &left, const Catalog<Thing> &right) {
    return left.size() == right.size() && std::all_of(left.begin(), left.end(), [&](const Thing &thing) {
               const Thing *other = right.find(keyOf(thing));
               return other && isSame(thing, *other);
           });
}

bool isSame(const StoredAlias &left, const StoredAlias &right) {
    return haveSame(left.members, right.members);
}

bool isSame(const StoredZone &left, const StoredZone &right) {
    return left.type == right.type && haveSame(left.members, right.members);
}

bool isSame(const StoredZoneSet &left, const StoredZoneSet &right) {
    return haveSame(left.zones, right.zones);
}

/// FNV-1a, 32 bits; every text ends with a byte of its own.
class Digest {
public:
    void add(const std::string &text) {
        for (const char c : text)
            add(static_cast<uint8_t>(c));
        add(uint8_t{0xFF});
    }
    uint32_t value() const { return _value; }

private:
    void add(uint8_t byte) { _value = (_value ^ byte) * 0x01000193U; }

    uint32_t _value = 0x811C9DC5U;
};

void addMembers(Digest &digest, const Catalog<MemberId> &members) {
    for (const MemberId &member : members)
        digest.add(describe(member));
}

} // namespace

bool haveSameContent(const ZoneDatabase &left, const ZoneDatabase &right) {
    return haveSame(left.zonesets, right.zonesets) && haveSame(left.zones, right.zones) &&
           haveSame(left.aliases, right.aliases);
}

uint32_t digestOf(const ZoneDatabase &database) {
    Digest digest;
    for (const StoredAlias &alias : database.aliases) {
        digest.add("alias " + alias.name);
        addMembers(digest, alias.members);
    }
    for (const StoredZone &zone : database.zones) {
        digest.add("zone " + std::to_string(static_cast<int32_t>(zone.type)) + zone.name);
        addMembers(digest, zone.members);
    }
    for (const StoredZoneSet &zoneset : database.zonesets) {
        digest.add("zone set " + zoneset.name);
        for (const std::string &zone : zoneset.zones)
            digest.add(zone);
    }
    return digest.value();
}

} // namespace sim
