/*
 * Zoning objects: zone sets, zones, aliases and members, as clients build and read them.
 *
 * An object is a number that is never given out twice; 0 is none. Every operation checks that its numbers
 * are live objects of the right kind. A zone or alias belongs to one zone set at most, a member to one zone
 * or alias at most. Destroying an object destroys what belongs to it. A zone or alias that belongs to a zone set
 * ("linked") is destroyed through the set only; a member leaves its zone or alias when it is destroyed.
 *
 * There is one store for the process, and it is never destroyed. Thread-safe.
 */
#ifndef SIM_ZONING_OBJECTS_H
#define SIM_ZONING_OBJECTS_H

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sim/Simulator.h"
#include "sim/Status.h"
#include "sim/zoning/MemberId.h"

namespace sim {

using ObjectNumber = uint32_t;

enum class ObjectKind { zoneSet, zone, alias, member };

class Objects {
public:
    static Objects &instance();

    // ---- zone sets ---------------------------------------------------------------------------------

    /// A name is used as it is given; whoever takes one from a client checks it.
    ObjectNumber createZoneSet(const std::string &name);
    Status destroyZoneSet(ObjectNumber set);
    Status zoneSetName(ObjectNumber set, std::string &name) const;
    /// Counts are 0 for what is not a zone set.
    size_t zoneCount(ObjectNumber set) const;
    size_t aliasCount(ObjectNumber set) const;
    ObjectNumber zoneAt(ObjectNumber set, int32_t index) const;
    ObjectNumber aliasAt(ObjectNumber set, int32_t index) const;
    ObjectNumber findZone(ObjectNumber set, const std::string &name) const;
    ObjectNumber findAlias(ObjectNumber set, const std::string &name) const;
    Status addZone(ObjectNumber set, ObjectNumber zone);
    Status addAlias(ObjectNumber set, ObjectNumber alias);
    Status removeZone(ObjectNumber set, ObjectNumber zone);
    Status removeAlias(ObjectNumber set, ObjectNumber alias);

    // ---- zones -------------------------------------------------------------------------------------

    ObjectNumber createZone(const std::string &name);
    ObjectNumber copyZone(ObjectNumber zone, const std::string &name);
    Status destroyZone(ObjectNumber zone);
    Status renameZone(ObjectNumber zone, const std::string &name);
    Status zoneName(ObjectNumber zone, std::string &name) const;
    Status setZoneType(ObjectNumber zone, zov_fzs_zone_type_e type);
    Status zoneType(ObjectNumber zone, zov_fzs_zone_type_e &type) const;

    // ---- aliases -----------------------------------------------------------------------------------

    ObjectNumber createAlias(const std::string &name);
    Status destroyAlias(ObjectNumber alias);
    Status aliasName(ObjectNumber alias, std::string &name) const;

    // ---- members -----------------------------------------------------------------------------------

    ObjectNumber createMember(const MemberId &id);
    Status destroyMember(ObjectNumber member);
    Status memberId(ObjectNumber member, MemberId &id) const;

    size_t zoneMemberCount(ObjectNumber zone) const;
    ObjectNumber zoneMemberAt(ObjectNumber zone, int32_t index) const;
    ObjectNumber findZoneMember(ObjectNumber zone, const MemberId &id) const;
    Status addZoneMember(ObjectNumber zone, ObjectNumber member);
    Status removeZoneMember(ObjectNumber zone, ObjectNumber member);

    size_t aliasMemberCount(ObjectNumber alias) const;
    ObjectNumber aliasMemberAt(ObjectNumber alias, int32_t index) const;
    ObjectNumber findAliasMember(ObjectNumber alias, const MemberId &id) const;
    /// An alias does not hold aliases.
    Status addAliasMember(ObjectNumber alias, ObjectNumber member);
    Status removeAliasMember(ObjectNumber alias, ObjectNumber member);

    // ---- all kinds ---------------------------------------------------------------------------------

    /// Why a number cannot be used where an object of a kind is needed, in words; none when it can.
    std::optional<std::string> misuseOf(ObjectNumber number, ObjectKind needed) const;
    ZoningObjectCounts liveCounts() const;

private:
    using Numbers = std::vector<ObjectNumber>;

    /// Parts that have names, in order.
    struct Parts {
        Numbers numbers;
        std::unordered_map<std::string, ObjectNumber> byName;
    };
    struct ZoneSet {
        std::string name;
        Parts zones;
        Parts aliases;
    };
    struct Group { ///< what zones and aliases have in common
        std::string name;
        Numbers members;
        std::unordered_multimap<size_t, ObjectNumber> byHash; ///< the members, by hashes of their identifiers
        ObjectNumber owner = 0;
    };
    struct Zone : Group {
        zov_fzs_zone_type_e type = ZOV_ZT_SOFT;
    };
    struct Alias : Group {};
    struct Member {
        MemberId id;
        ObjectNumber owner = 0;
    };
    template <class Kind> using Table = std::unordered_map<ObjectNumber, Kind>;

    Objects() = default;
    template <class Kind> ObjectNumber create(Table<Kind> &table, Kind object);
    template <class Kind> Status link(Table<Kind> &table, Parts ZoneSet::*parts, ObjectNumber set, ObjectNumber group);
    template <class Kind>
    Status unlink(Table<Kind> &table, Parts ZoneSet::*parts, ObjectNumber set, ObjectNumber group);
    ObjectNumber partAt(Parts ZoneSet::*parts, ObjectNumber set, int32_t index) const;
    ObjectNumber findPart(Parts ZoneSet::*parts, ObjectNumber set, const std::string &name) const;
    size_t partCount(Parts ZoneSet::*parts, ObjectNumber set) const;
    ObjectNumber memberIn(const Group &group, const MemberId &id) const;
    void linkMember(Group &group, ObjectNumber owner, ObjectNumber member);
    void unlinkMember(Group &group, ObjectNumber member);
    template <class Kind>
    ObjectNumber findMember(const Table<Kind> &table, ObjectNumber group, const MemberId &id) const;
    template <class Kind> Status addMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member);
    template <class Kind> Status removeMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member);
    template <class Kind> Status destroyGroup(Table<Kind> &table, ObjectNumber group);
    template <class Kind> void erase(Table<Kind> &table, ObjectNumber group);

    mutable std::mutex _mutex;
    Table<ZoneSet> _sets;
    Table<Zone> _zones;
    Table<Alias> _aliases;
    Table<Member> _members;
    ObjectNumber _last = 0; ///< numbers run through all kinds
};

} // namespace sim

#endif // SIM_ZONING_OBJECTS_H
