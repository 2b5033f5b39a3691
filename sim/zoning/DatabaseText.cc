// The database in the form in which it goes in and out of the switch by the control interface.

#include <stdexcept>

#include "sim/Record.h"
#include "sim/zoning/Database.h"

namespace sim {

namespace {

const char *reasonFor(Status status) {
    switch (status) {
    case kBadName:
        return "not a valid name";
    case kBadValue:
        return "not a zone type";
    case kBadMember:
        return "no such member can be there";
    case kNotFound:
        return "nothing of this name is defined";
    case kLimitReached:
        return "more than the switch can hold";
    default:
        return "refused";
    }
}

[[noreturn]] void refuse(const std::string &what, const std::string &why) {
    throw std::invalid_argument(what + ": " + why);
}

void mustBe(Status status, const std::string &what) {
    if (status != kOk)
        refuse(what, reasonFor(status));
}

void mustBeNew(const void *present, const std::string &what) {
    if (present)
        refuse(what, "there twice");
}

/// "zone 'oak'"
std::string called(const char *kind, const std::string &name) {
    return std::string(kind) + " '" + escaped(name) + "'";
}

MemberId memberFrom(const ZoneMember &member, const std::string &what) {
    const std::optional<MemberId> id = parseMember(member.type, member.text);
    if (!id)
        refuse(what, "not a member");
    return *id;
}

/// `add` adds a member to the stored thing.
template <class Add>
void takeMembers(const Catalog<MemberId> &present, const std::vector<ZoneMember> &members, const std::string &owner,
                 const Add &add) {
    for (const ZoneMember &member : members) {
        const std::string what = called("member", member.text) + " of " + owner;
        const MemberId id = memberFrom(member, what);
        mustBeNew(present.find(keyOf(id)), what);
        mustBe(add(id), what);
    }
}

void take(ZoneDatabase &database, const Limits &limits, const ZoneAlias &alias) {
    const std::string what = called("alias", alias.name);
    mustBeNew(database.aliases.find(alias.name), what);
    mustBe(createAlias(database, limits, alias.name), what);
    takeMembers(database.aliases.find(alias.name)->members, alias.members, what,
                [&](const MemberId &id) { return addAliasMember(database, limits, alias.name, id); });
}

void take(ZoneDatabase &database, const Limits &limits, const Zone &zone) {
    const std::string what = called("zone", zone.name);
    mustBeNew(database.zones.find(zone.name), what);
    mustBe(createZone(database, limits, zone.name), what);
    mustBe(setZoneType(database, zone.name, zone.type), what);
    takeMembers(database.zones.find(zone.name)->members, zone.members, what,
                [&](const MemberId &id) { return addZoneMember(database, limits, zone.name, id); });
}

void take(ZoneDatabase &database, const Limits &limits, const ZoneSet &zoneset) {
    const std::string what = called("zone set", zoneset.name);
    mustBeNew(database.zonesets.find(zoneset.name), what);
    mustBe(createZoneSet(database, limits, zoneset.name), what);
    for (const std::string &zone : zoneset.zones) {
        const std::string part = called("zone", zone) + " of " + what;
        mustBeNew(database.zonesets.find(zoneset.name)->zones.find(zone), part);
        mustBe(addZone(database, limits, zoneset.name, zone), part);
    }
}

std::vector<ZoneMember> shownMembers(const Catalog<MemberId> &members) {
    std::vector<ZoneMember> shown;
    for (const MemberId &member : members)
        shown.push_back({member.type, textOf(member)});
    return shown;
}

} // namespace

ZoneDatabase databaseFrom(const ZoningDatabase &database, const Limits &limits) {
    ZoneDatabase stored;
    for (const ZoneAlias &alias : database.aliases)
        take(stored, limits, alias);
    for (const Zone &zone : database.zones)
        take(stored, limits, zone);
    for (const ZoneSet &zoneset : database.zonesets)
        take(stored, limits, zoneset);
    return stored;
}

ZoningDatabase shownDatabase(const ZoneDatabase &database) {
    ZoningDatabase shown;
    for (const StoredZoneSet &zoneset : database.zonesets)
        shown.zonesets.push_back({zoneset.name, {zoneset.zones.begin(), zoneset.zones.end()}});
    for (const StoredZone &zone : database.zones)
        shown.zones.push_back({zone.name, zone.type, shownMembers(zone.members)});
    for (const StoredAlias &alias : database.aliases)
        shown.aliases.push_back({alias.name, shownMembers(alias.members)});
    return shown;
}

} // namespace sim
