#include "sim/zoning/Fetch.h"

namespace sim {

namespace {

/// Every part is linked as soon as it exists, so that it goes with its owner.
void addZone(Objects &objects, ObjectNumber set, const StoredZone &stored) {
    const ObjectNumber zone = objects.createZone(stored.name);
    objects.addZone(set, zone);
    objects.setZoneType(zone, stored.type);
    for (const MemberId &member : stored.members)
        objects.addZoneMember(zone, objects.createMember(member));
}

void addAlias(Objects &objects, ObjectNumber set, const StoredAlias &stored) {
    const ObjectNumber alias = objects.createAlias(stored.name);
    objects.addAlias(set, alias);
    for (const MemberId &member : stored.members)
        objects.addAliasMember(alias, objects.createMember(member));
}

} // namespace

ObjectNumber makeZoneSet(const std::string &name, const Contents &contents) {
    Objects &objects = Objects::instance();
    const ObjectNumber set = objects.createZoneSet(name);
    try {
        for (const StoredZone *zone : contents.zones)
            addZone(objects, set, *zone);
        for (const StoredAlias *alias : contents.aliases)
            addAlias(objects, set, *alias);
    } catch (...) {
        objects.destroyZoneSet(set);
        throw;
    }
    return set;
}

} // namespace sim
