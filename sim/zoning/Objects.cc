#include "sim/zoning/Objects.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

using Lock = std::lock_guard<std::mutex>;

/// The object of a number; null when there is none of this kind.
template <class Table> auto *lookUp(Table &table, ObjectNumber number) {
    const auto found = table.find(number);
    return found == table.end() ? nullptr : &found->second;
}

/// What belongs to an object; nothing when there is no such object.
template <class Table, class List>
const std::vector<ObjectNumber> &listOf(const Table &table, ObjectNumber number, List list) {
    static const auto &nothing = *new std::vector<ObjectNumber>;
    const auto *object = lookUp(table, number);
    return object ? object->*list : nothing;
}

ObjectNumber at(const std::vector<ObjectNumber> &numbers, int32_t index) {
    return index >= 0 && static_cast<size_t>(index) < numbers.size() ? numbers[static_cast<size_t>(index)] : 0;
}

void eraseNumber(std::vector<ObjectNumber> &numbers, ObjectNumber number) {
    numbers.erase(std::remove(numbers.begin(), numbers.end(), number), numbers.end());
}

template <class Table> Status nameOf(const Table &table, ObjectNumber number, std::string &name) {
    const auto *object = lookUp(table, number);
    if (!object)
        return kBadObject;
    name = object->name;
    return kOk;
}

} // namespace

Objects &Objects::instance() {
    static Objects &objects = *new Objects;
    return objects;
}

size_t Objects::liveCount() const {
    const Lock lock(_mutex);
    return _sets.size() + _zones.size() + _aliases.size() + _members.size();
}

// ---- what all kinds share ------------------------------------------------------------------------------

template <class Kind> ObjectNumber Objects::create(Table<Kind> &table, Kind object) {
    table.emplace(_last + 1, std::move(object));
    return ++_last;
}

template <class Kind>
Status Objects::link(Table<Kind> &table, Numbers ZoneSet::*list, ObjectNumber set, ObjectNumber group) {
    ZoneSet *owner = lookUp(_sets, set);
    Kind *part = lookUp(table, group);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != 0)
        return kLinked;
    if (findNamed(table, owner->*list, part->name) != 0)
        return kDuplicate;
    (owner->*list).push_back(group);
    part->owner = set;
    return kOk;
}

template <class Kind>
Status Objects::unlink(Table<Kind> &table, Numbers ZoneSet::*list, ObjectNumber set, ObjectNumber group) {
    ZoneSet *owner = lookUp(_sets, set);
    const Kind *part = lookUp(table, group);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != set)
        return kNotFound;
    eraseNumber(owner->*list, group);
    erase(table, group);
    return kOk;
}

template <class Kind>
ObjectNumber Objects::findNamed(const Table<Kind> &table, const Numbers &numbers, const std::string &name) const {
    const auto found = std::find_if(numbers.begin(), numbers.end(),
                                    [&](ObjectNumber number) { return table.at(number).name == name; });
    return found == numbers.end() ? 0 : *found;
}

template <class Kind>
ObjectNumber Objects::findInSet(const Table<Kind> &table, Numbers ZoneSet::*list, ObjectNumber set,
                                const std::string &name) const {
    const ZoneSet *owner = lookUp(_sets, set);
    return owner ? findNamed(table, owner->*list, name) : 0;
}

template <class Kind>
ObjectNumber Objects::findMember(const Table<Kind> &table, ObjectNumber group, const MemberId &id) const {
    const Kind *owner = lookUp(table, group);
    if (!owner)
        return 0;
    const auto found = std::find_if(owner->members.begin(), owner->members.end(),
                                    [&](ObjectNumber number) { return _members.at(number).id == id; });
    return found == owner->members.end() ? 0 : *found;
}

template <class Kind> Status Objects::addMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member) {
    Kind *owner = lookUp(table, group);
    Member *part = lookUp(_members, member);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != 0)
        return kLinked;
    if (findMember(table, group, part->id) != 0)
        return kDuplicate;
    owner->members.push_back(member);
    part->owner = group;
    return kOk;
}

template <class Kind> Status Objects::removeMember(Table<Kind> &table, ObjectNumber group, ObjectNumber member) {
    Kind *owner = lookUp(table, group);
    const Member *part = lookUp(_members, member);
    if (!owner || !part)
        return kBadObject;
    if (part->owner != group)
        return kNotFound;
    eraseNumber(owner->members, member);
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
    for (const ObjectNumber zone : object->zones)
        erase(_zones, zone);
    for (const ObjectNumber alias : object->aliases)
        erase(_aliases, alias);
    _sets.erase(set);
    return kOk;
}

Status Objects::zoneSetName(ObjectNumber set, std::string &name) const {
    const Lock lock(_mutex);
    return nameOf(_sets, set, name);
}

size_t Objects::zoneCount(ObjectNumber set) const {
    const Lock lock(_mutex);
    return listOf(_sets, set, &ZoneSet::zones).size();
}

size_t Objects::aliasCount(ObjectNumber set) const {
    const Lock lock(_mutex);
    return listOf(_sets, set, &ZoneSet::aliases).size();
}

ObjectNumber Objects::zoneAt(ObjectNumber set, int32_t index) const {
    const Lock lock(_mutex);
    return at(listOf(_sets, set, &ZoneSet::zones), index);
}

ObjectNumber Objects::aliasAt(ObjectNumber set, int32_t index) const {
    const Lock lock(_mutex);
    return at(listOf(_sets, set, &ZoneSet::aliases), index);
}

ObjectNumber Objects::findZone(ObjectNumber set, const std::string &name) const {
    const Lock lock(_mutex);
    return findInSet(_zones, &ZoneSet::zones, set, name);
}

ObjectNumber Objects::findAlias(ObjectNumber set, const std::string &name) const {
    const Lock lock(_mutex);
    return findInSet(_aliases, &ZoneSet::aliases, set, name);
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
        twin.owner = number;
        _zones.at(number).members.push_back(create(_members, twin));
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
    const ObjectNumber namesake = findInSet(_zones, &ZoneSet::zones, object->owner, name);
    if (namesake != 0 && namesake != zone)
        return kDuplicate;
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
    if (object->owner != 0)
        return kLinked;
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
    return listOf(_zones, zone, &Zone::members).size();
}

ObjectNumber Objects::zoneMemberAt(ObjectNumber zone, int32_t index) const {
    const Lock lock(_mutex);
    return at(listOf(_zones, zone, &Zone::members), index);
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
    return listOf(_aliases, alias, &Alias::members).size();
}

ObjectNumber Objects::aliasMemberAt(ObjectNumber alias, int32_t index) const {
    const Lock lock(_mutex);
    return at(listOf(_aliases, alias, &Alias::members), index);
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
