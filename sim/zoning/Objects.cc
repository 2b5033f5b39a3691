#include "sim/zoning/Objects.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace sim {

namespace {

using Lock = std::lock_guard<std::mutex>;

/// The object of a number; null when there is none of this kind.
template <class Table> auto *lookUp(Table &table, ObjectNumber number) {
    const auto found = table.find(number);
    return found == table.end() ? nullptr : &found->second;
}

template <class Table> size_t memberCount(const Table &table, ObjectNumber group) {
    const auto *object = lookUp(table, group);
    return object ? object->members.size() : 0;
}

ObjectNumber at(const std::vector<ObjectNumber> &numbers, int32_t index) {
    return index >= 0 && static_cast<size_t>(index) < numbers.size() ? numbers[static_cast<size_t>(index)] : 0;
}

void eraseNumber(std::vector<ObjectNumber> &numbers, ObjectNumber number) {
    numbers.erase(std::remove(numbers.begin(), numbers.end(), number), numbers.end());
}

template <class Table> ObjectNumber memberAt(const Table &table, ObjectNumber group, int32_t index) {
    const auto *object = lookUp(table, group);
    return object ? at(object->members, index) : 0;
}

template <class Table> Status nameOf(const Table &table, ObjectNumber number, std::string &name) {
    const auto *object = lookUp(table, number);
    if (!object)
        return kBadObject;
    name = object->name;
    return kOk;
}

size_t hashOf(const MemberId &id) {
    return std::hash<std::string>()(keyOf(id));
}

const char *articleAndName(ObjectKind kind) {
    switch (kind) {
    case ObjectKind::zoneSet:
        return "a zone set";
    case ObjectKind::zone:
        return "a zone";
    case ObjectKind::alias:
        return "an alias";
    case ObjectKind::member:
        break;
    }
    return "a member";
}

} // namespace

Objects &Objects::instance() {
    static Objects &objects = *new Objects;
    return objects;
}

ZoningObjectCounts Objects::liveCounts() const {
    const Lock lock(_mutex);
    return {_sets.size(), _zones.size(), _aliases.size(), _members.size()};
}

std::optional<std::string> Objects::misuseOf(ObjectNumber number, ObjectKind needed) const {
    const Lock lock(_mutex);
    const std::pair<ObjectKind, bool> kinds[] = {{ObjectKind::zoneSet, lookUp(_sets, number) != nullptr},
                                                 {ObjectKind::zone, lookUp(_zones, number) != nullptr},
                                                 {ObjectKind::alias, lookUp(_aliases, number) != nullptr},
                                                 {ObjectKind::member, lookUp(_members, number) != nullptr}};
    for (const auto &[kind, isOne] : kinds)
        if (isOne)
            return kind == needed ? std::nullopt
                                  : std::optional<std::string>(std::string("is ") + articleAndName(kind) + ", not " +
                                                               articleAndName(needed));
    return number != 0 && number <= _last ? "has been destroyed" : "is no object";
}

// ---- what all kinds share ------------------------------------------------------------------------------

template <class Kind> ObjectNumber Objects::create(Table<Kind> &table, Kind object) {
    table.emplace(_last + 1, std::move(object));
    return ++_last;
}

template <class Kind>
Status Objects::link(Table<Kind> &table, Parts ZoneSet::*parts, ObjectNumber set, ObjectNumber group) {
    ZoneSet *owner = lookUp(_sets, set);
    Kind *part = lookUp(table, group);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != 0)
        return kLinked;
    if (!(owner->*parts).byName.emplace(part->name, group).second)
        return kDuplicate;
    (owner->*parts).numbers.push_back(group);
    part->owner = set;
    return kOk;
}

template <class Kind>
Status Objects::unlink(Table<Kind> &table, Parts ZoneSet::*parts, ObjectNumber set, ObjectNumber group) {
    ZoneSet *owner = lookUp(_sets, set);
    const Kind *part = lookUp(table, group);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != set)
        return kNotFound;
    (owner->*parts).byName.erase(part->name);
    eraseNumber((owner->*parts).numbers, group);
    erase(table, group);
    return kOk;
}

ObjectNumber Objects::partAt(Parts ZoneSet::*parts, ObjectNumber set, int32_t index) const {
    const Lock lock(_mutex);
    const ZoneSet *owner = lookUp(_sets, set);
    return owner ? at((owner->*parts).numbers, index) : 0;
}

ObjectNumber Objects::findPart(Parts ZoneSet::*parts, ObjectNumber set, const std::string &name) const {
    const Lock lock(_mutex);
    const ZoneSet *owner = lookUp(_sets, set);
    if (!owner)
        return 0;
    const auto found = (owner->*parts).byName.find(name);
    return found == (owner->*parts).byName.end() ? 0 : found->second;
}

size_t Objects::partCount(Parts ZoneSet::*parts, ObjectNumber set) const {
    const Lock lock(_mutex);
    const ZoneSet *owner = lookUp(_sets, set);
    return owner ? (owner->*parts).numbers.size() : 0;
}

ObjectNumber Objects::memberIn(const Group &group, const MemberId &id) const {
    const auto [first, last] = group.byHash.equal_range(hashOf(id));
    const auto found = std::find_if(first, last, [&](const auto &entry) { return _members.at(entry.second).id == id; });
    return found == last ? 0 : found->second;
}

void Objects::linkMember(Group &group, ObjectNumber owner, ObjectNumber member) {
    Member &part = _members.at(member);
    group.byHash.emplace(hashOf(part.id), member);
    group.members.push_back(member);
    part.owner = owner;
}

void Objects::unlinkMember(Group &group, ObjectNumber member) {
    const auto [first, last] = group.byHash.equal_range(hashOf(_members.at(member).id));
    group.byHash.erase(std::find_if(first, last, [&](const auto &entry) { return entry.second == member; }));
    eraseNumber(group.members, member);
}

template <class Kind>
ObjectNumber Objects::findMember(const Table<Kind> &table, ObjectNumber group, const MemberId &id) const {
    const Kind *owner = lookUp(table, group);
    return owner ? memberIn(*owner, id) : 0;
}

template <class Kind> Status Objects::addMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member) {
    Kind *owner = lookUp(table, group);
    const Member *part = lookUp(_members, member);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != 0)
        return kLinked;
    if (memberIn(*owner, part->id) != 0)
        return kDuplicate;
    linkMember(*owner, group, member);
    return kOk;
}

template <class Kind> Status Objects::removeMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member) {
    Kind *owner = lookUp(table, group);
    const Member *part = lookUp(_members, member);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != group)
        return kNotFound;
    unlinkMember(*owner, member);
    _members.erase(member);
    return kOk;
}

template <class Kind> void Objects::erase(Table<Kind> &table, ObjectNumber group) {
    for (const ObjectNumber member : table.at(group).members)
        _members.erase(member);
    table.erase(group);
}

template <class Kind> Status Objects::destroyGroup(Table<Kind> &table, ObjectNumber group) {
    const Kind *object = lookUp(table, group);
    if (!object)
        return kBadObject;
    if (object->owner != 0)
        return kLinked;
    erase(table, group);
    return kOk;
}

// ---- zone sets -----------------------------------------------------------------------------------------

ObjectNumber Objects::createZoneSet(const std::string &name) {
    const Lock lock(_mutex);
    ZoneSet set;
    set.name = name;
    return create(_sets, std::move(set));
}

Status Objects::destroyZoneSet(ObjectNumber set) {
    const Lock lock(_mutex);
    const ZoneSet *object = lookUp(_sets, set);
    if (!object)
        return kBadObject;
    for (const ObjectNumber zone : object->zones.numbers)
        erase(_zones, zone);
    for (const ObjectNumber alias : object->aliases.numbers)
        erase(_aliases, alias);
    _sets.erase(set);
    return kOk;
}

Status Objects::zoneSetName(ObjectNumber set, std::string &name) const {
    const Lock lock(_mutex);
    return nameOf(_sets, set, name);
}

size_t Objects::zoneCount(ObjectNumber set) const {
    return partCount(&ZoneSet::zones, set);
}

size_t Objects::aliasCount(ObjectNumber set) const {
    return partCount(&ZoneSet::aliases, set);
}

ObjectNumber Objects::zoneAt(ObjectNumber set, int32_t index) const {
    return partAt(&ZoneSet::zones, set, index);
}

ObjectNumber Objects::aliasAt(ObjectNumber set, int32_t index) const {
    return partAt(&ZoneSet::aliases, set, index);
}

ObjectNumber Objects::findZone(ObjectNumber set, const std::string &name) const {
    return findPart(&ZoneSet::zones, set, name);
}

ObjectNumber Objects::findAlias(ObjectNumber set, const std::string &name) const {
    return findPart(&ZoneSet::aliases, set, name);
}

Status Objects::addZone(ObjectNumber set, ObjectNumber zone) {
    const Lock lock(_mutex);
    return link(_zones, &ZoneSet::zones, set, zone);
}

Status Objects::addAlias(ObjectNumber set, ObjectNumber alias) {
    const Lock lock(_mutex);
    return link(_aliases, &ZoneSet::aliases, set, alias);
}

Status Objects::removeZone(ObjectNumber set, ObjectNumber zone) {
    const Lock lock(_mutex);
    return unlink(_zones, &ZoneSet::zones, set, zone);
}

Status Objects::removeAlias(ObjectNumber set, ObjectNumber alias) {
    const Lock lock(_mutex);
    return unlink(_aliases, &ZoneSet::aliases, set, alias);
}

// ---- zones ---------------------------------------------------------------------------------------------

ObjectNumber Objects::createZone(const std::string &name) {
    const Lock lock(_mutex);
    Zone zone;
    zone.name = name;
    return create(_zones, std::move(zone));
}

ObjectNumber Objects::copyZone(ObjectNumber zone, const std::string &name) {
    const Lock lock(_mutex);
    const Zone *original = lookUp(_zones, zone);
    if (!original)
        return 0;
    Zone copy;
    copy.name = name;
    copy.type = original->type;
    const Numbers members = original->members;
    const ObjectNumber number = create(_zones, std::move(copy));
    for (const ObjectNumber member : members) {
        Member twin;
        twin.id = _members.at(member).id;
        linkMember(_zones.at(number), number, create(_members, twin));
    }
    return number;
}

Status Objects::destroyZone(ObjectNumber zone) {
    const Lock lock(_mutex);
    return destroyGroup(_zones, zone);
}

Status Objects::renameZone(ObjectNumber zone, const std::string &name) {
    const Lock lock(_mutex);
    Zone *object = lookUp(_zones, zone);
    if (!object)
        return kBadObject;
    if (name == object->name)
        return kOk;
    if (ZoneSet *owner = lookUp(_sets, object->owner)) {
        if (!owner->zones.byName.emplace(name, zone).second)
            return kDuplicate;
        owner->zones.byName.erase(object->name);
    }
    object->name = name;
    return kOk;
}

Status Objects::zoneName(ObjectNumber zone, std::string &name) const {
    const Lock lock(_mutex);
    return nameOf(_zones, zone, name);
}

Status Objects::setZoneType(ObjectNumber zone, zov_fzs_zone_type_e type) {
    const Lock lock(_mutex);
    Zone *object = lookUp(_zones, zone);
    if (!object)
        return kBadObject;
    if (type != ZOV_ZT_SOFT && type != ZOV_ZT_HARDVPF && type != ZOV_ZT_HARDACL)
        return kBadArgument;
    object->type = type;
    return kOk;
}

Status Objects::zoneType(ObjectNumber zone, zov_fzs_zone_type_e &type) const {
    const Lock lock(_mutex);
    const Zone *object = lookUp(_zones, zone);
    if (!object)
        return kBadObject;
    type = object->type;
    return kOk;
}

// ---- aliases -------------------------------------------------------------------------------------------

ObjectNumber Objects::createAlias(const std::string &name) {
    const Lock lock(_mutex);
    Alias alias;
    alias.name = name;
    return create(_aliases, std::move(alias));
}

Status Objects::destroyAlias(ObjectNumber alias) {
    const Lock lock(_mutex);
    return destroyGroup(_aliases, alias);
}

Status Objects::aliasName(ObjectNumber alias, std::string &name) const {
    const Lock lock(_mutex);
    return nameOf(_aliases, alias, name);
}

// ---- members -------------------------------------------------------------------------------------------

ObjectNumber Objects::createMember(const MemberId &id) {
    const Lock lock(_mutex);
    Member member;
    member.id = id;
    return create(_members, member);
}

Status Objects::destroyMember(ObjectNumber member) {
    const Lock lock(_mutex);
    const Member *object = lookUp(_members, member);
    if (!object)
        return kBadObject;
    if (Zone *zone = lookUp(_zones, object->owner))
        unlinkMember(*zone, member);
    if (Alias *alias = lookUp(_aliases, object->owner))
        unlinkMember(*alias, member);
    _members.erase(member);
    return kOk;
}

Status Objects::memberId(ObjectNumber member, MemberId &id) const {
    const Lock lock(_mutex);
    const Member *object = lookUp(_members, member);
    if (!object)
        return kBadObject;
    id = object->id;
    return kOk;
}

size_t Objects::zoneMemberCount(ObjectNumber zone) const {
    const Lock lock(_mutex);
    return memberCount(_zones, zone);
}

ObjectNumber Objects::zoneMemberAt(ObjectNumber zone, int32_t index) const {
    const Lock lock(_mutex);
    return memberAt(_zones, zone, index);
}

ObjectNumber Objects::findZoneMember(ObjectNumber zone, const MemberId &id) const {
    const Lock lock(_mutex);
    return findMember(_zones, zone, id);
}

Status Objects::addZoneMember(ObjectNumber zone, ObjectNumber member) {
    const Lock lock(_mutex);
    return addMember(_zones, zone, member);
}

Status Objects::removeZoneMember(ObjectNumber zone, ObjectNumber member) {
    const Lock lock(_mutex);
    return removeMember(_zones, zone, member);
}

size_t Objects::aliasMemberCount(ObjectNumber alias) const {
    const Lock lock(_mutex);
    return memberCount(_aliases, alias);
}

ObjectNumber Objects::aliasMemberAt(ObjectNumber alias, int32_t index) const {
    const Lock lock(_mutex);
    return memberAt(_aliases, alias, index);
}

ObjectNumber Objects::findAliasMember(ObjectNumber alias, const MemberId &id) const {
    const Lock lock(_mutex);
    return findMember(_aliases, alias, id);
}

Status Objects::addAliasMember(ObjectNumber alias, ObjectNumber member) {
    const Lock lock(_mutex);
    const Member *object = lookUp(_members, member);
    if (object && object->id.type == ZOV_ZMT_ALIAS)
        return kBadMember;
    return addMember(_aliases, alias, member);
}

Status Objects::removeAliasMember(ObjectNumber alias, ObjectNumber member) {
    const Lock lock(_mutex);
    return removeMember(_aliases, alias, member);
}

} // namespace sim
