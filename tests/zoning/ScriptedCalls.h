/*
 * The switch library's zoning calls, as ScriptedZoning.h answers them. Include that one.
 */
#ifndef TESTS_ZONING_SCRIPTEDCALLS_H
#define TESTS_ZONING_SCRIPTEDCALLS_H

#include "tests/zoning/ScriptedZoning.h"

// NOLINTBEGIN(misc-definitions-in-headers): see there
extern "C" {

using scripted::Call;
using scripted::Kind;

// ---- the database of the switch ----------------------------------------------------------------------

int32_t zov_fzsGetZoningLimitations(zov_handle_t handle, zov_fzs_zoninglimits_s *limits) {
    const Call call("fzsGetZoningLimitations");
    EXPECT_EQ(handle, scripted::zoning.connection);
    *limits = scripted::zoning.limits;
    if (call.fails)
        limits->zonesets = 77; // nobody may rely on what a failed call leaves
    return call.fails ? call.result() : 0;
}

int32_t zov_fzsGetActiveZonesetName(zov_handle_t handle, char *name) {
    const Call call("fzsGetActiveZonesetName");
    EXPECT_EQ(handle, scripted::zoning.connection);
    std::strcpy(name, scripted::zoning.activeName.c_str()); // also when it fails: nobody may rely on it
    return call.fails ? call.result() : 0;
}

int32_t zov_fzsGetActiveZoneset(zov_handle_t handle, void **zoneset) {
    const Call call("fzsGetActiveZoneset");
    return scripted::fetchZoneset(call, handle, scripted::zoning.activeName, zoneset);
}

int32_t zov_fzsGetZonesetList(zov_handle_t handle, int32_t *count, char **names) {
    const Call call("fzsGetZonesetList");
    EXPECT_EQ(handle, scripted::zoning.connection);
    if (call.fails && call.result() != 0)
        return call.result();
    *count = static_cast<int32_t>(scripted::zoning.listed.size());
    if (call.fails)
        return 0; // and no list
    scripted::zoning.fields.clear();
    for (std::string name : scripted::zoning.listed) {
        name.resize(65, '\0');
        scripted::zoning.fields += name;
    }
    *names = scripted::zoning.fields.empty() ? nullptr : &scripted::zoning.fields[0];
    return 0;
}

int32_t zov_fzsGetZoneset(zov_handle_t handle, const char *name, void **zoneset) {
    const Call call("fzsGetZoneset", name);
    return scripted::fetchZoneset(call, handle, name, zoneset);
}

int32_t zov_fzsGetAllZonesAndAliases(zov_handle_t handle, const char *newName, void **zoneset) {
    const Call call("fzsGetAllZonesAndAliases", newName);
    return scripted::fetchZoneset(call, handle, newName, zoneset);
}

// ---- zone sets ---------------------------------------------------------------------------------------

int32_t zov_ZonesetTestName(const char *name) {
    const Call call("ZonesetTestName", name);
    return call.fails || std::strchr(name, '!') != nullptr ? call.result() : 0;
}

void *zov_ZonesetCreate(const char *name) {
    const Call call("ZonesetCreate", name);
    return scripted::makeNamed(call, Kind::zoneset, name);
}

int32_t zov_ZonesetDestroy(void *zoneset) {
    const Call call("ZonesetDestroy", zoneset);
    return scripted::destroy(call, zoneset, Kind::zoneset);
}

int32_t zov_ZonesetGetName(void *zoneset, char *name) {
    const Call call("ZonesetGetName", zoneset);
    return scripted::nameOf(call, zoneset, Kind::zoneset, name);
}

int32_t zov_ZonesetGetZoneCount(void *zoneset) {
    const Call call("ZonesetGetZoneCount", zoneset);
    return scripted::countOf(call, zoneset, Kind::zoneset, Kind::zone);
}

int32_t zov_ZonesetGetAliasCount(void *zoneset) {
    const Call call("ZonesetGetAliasCount", zoneset);
    return scripted::countOf(call, zoneset, Kind::zoneset, Kind::alias);
}

void *zov_ZonesetListZones(void *zoneset, int32_t index) {
    const Call call("ZonesetListZones", zoneset, index);
    return scripted::partAt(call, zoneset, Kind::zoneset, Kind::zone, index);
}

void *zov_ZonesetListAliases(void *zoneset, int32_t index) {
    const Call call("ZonesetListAliases", zoneset, index);
    return scripted::partAt(call, zoneset, Kind::zoneset, Kind::alias, index);
}

void *zov_ZonesetFindZone(void *zoneset, const char *name) {
    const Call call("ZonesetFindZone", zoneset, name);
    return scripted::partNamed(call, zoneset, Kind::zone, name);
}

void *zov_ZonesetFindAlias(void *zoneset, const char *name) {
    const Call call("ZonesetFindAlias", zoneset, name);
    return scripted::partNamed(call, zoneset, Kind::alias, name);
}

int32_t zov_ZonesetAddZone(void *zoneset, void *zone) {
    const Call call("ZonesetAddZone", zoneset, zone);
    return scripted::addPart(call, zoneset, Kind::zoneset, zone, Kind::zone);
}

int32_t zov_ZonesetAddAlias(void *zoneset, void *alias) {
    const Call call("ZonesetAddAlias", zoneset, alias);
    return scripted::addPart(call, zoneset, Kind::zoneset, alias, Kind::alias);
}

int32_t zov_ZonesetRemoveZone(void *zoneset, void *zone) {
    const Call call("ZonesetRemoveZone", zoneset, zone);
    return scripted::removePart(call, zoneset, zone, Kind::zone);
}

int32_t zov_ZonesetRemoveAlias(void *zoneset, void *alias) {
    const Call call("ZonesetRemoveAlias", zoneset, alias);
    return scripted::removePart(call, zoneset, alias, Kind::alias);
}

// ---- zones -------------------------------------------------------------------------------------------

void *zov_ZoneCreate(const char *name) {
    const Call call("ZoneCreate", name);
    return scripted::makeNamed(call, Kind::zone, name);
}

void *zov_ZoneCreateCopy(void *zone, const char *newName) {
    const Call call("ZoneCreateCopy", zone, newName);
    const scripted::Object *original = scripted::use(zone, Kind::zone);
    if (original == nullptr || call.fails)
        return nullptr;
    scripted::Object *copy = scripted::zone(nullptr, newName, original->zoneType);
    for (const scripted::Object *each : original->members)
        scripted::member(copy, each->memberType, each->name);
    return copy;
}

int32_t zov_ZoneDestroy(void *zone) {
    const Call call("ZoneDestroy", zone);
    return scripted::destroy(call, zone, Kind::zone);
}

int32_t zov_ZoneSetName(void *zone, const char *name) {
    const Call call("ZoneSetName", zone, name);
    scripted::Object *object = scripted::use(zone, Kind::zone);
    if (object == nullptr || call.fails)
        return call.result();
    object->name = name;
    return 0;
}

int32_t zov_ZoneGetName(void *zone, char *name) {
    const Call call("ZoneGetName", zone);
    return scripted::nameOf(call, zone, Kind::zone, name);
}

int32_t zov_ZoneSetType(void *zone, zov_fzs_zone_type_e type) {
    const Call call("ZoneSetType", zone, static_cast<int32_t>(type));
    scripted::Object *object = scripted::use(zone, Kind::zone);
    if (object == nullptr || call.fails)
        return call.result();
    object->zoneType = type;
    return 0;
}

int32_t zov_ZoneGetType(void *zone, zov_fzs_zone_type_e *type) {
    const Call call("ZoneGetType", zone);
    const scripted::Object *object = scripted::use(zone, Kind::zone);
    if (object == nullptr || call.fails)
        return call.result();
    *type = object->zoneType;
    return 0;
}

int32_t zov_ZoneGetMemberCount(void *zone) {
    const Call call("ZoneGetMemberCount", zone);
    return scripted::countOf(call, zone, Kind::zone, Kind::member);
}

void *zov_ZoneListMembers(void *zone, int32_t index) {
    const Call call("ZoneListMembers", zone, index);
    return scripted::partAt(call, zone, Kind::zone, Kind::member, index);
}

void *zov_ZoneFindMember(void *zone, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    const Call call("ZoneFindMember", zone, scripted::memberText(type, *id));
    return scripted::memberOf(call, zone, Kind::zone, type, id);
}

int32_t zov_ZoneAddMember(void *zone, void *member) {
    const Call call("ZoneAddMember", zone, member);
    return scripted::addPart(call, zone, Kind::zone, member, Kind::member);
}

int32_t zov_ZoneDeleteMember(void *zone, void **member) {
    const Call call("ZoneDeleteMember", *member);
    return scripted::deleteMember(call, zone, Kind::zone, member);
}

// ---- aliases -----------------------------------------------------------------------------------------

void *zov_ZoneAliasCreate(const char *name) {
    const Call call("ZoneAliasCreate", name);
    return scripted::makeNamed(call, Kind::alias, name);
}

int32_t zov_ZoneAliasDestroy(void *alias) {
    const Call call("ZoneAliasDestroy", alias);
    return scripted::destroy(call, alias, Kind::alias);
}

int32_t zov_ZoneAliasGetName(void *alias, char *name) {
    const Call call("ZoneAliasGetName", alias);
    return scripted::nameOf(call, alias, Kind::alias, name);
}

int32_t zov_ZoneAliasGetMemberCount(void *alias) {
    const Call call("ZoneAliasGetMemberCount", alias);
    return scripted::countOf(call, alias, Kind::alias, Kind::member);
}

void *zov_ZoneAliasListMembers(void *alias, int32_t index) {
    const Call call("ZoneAliasListMembers", alias, index);
    return scripted::partAt(call, alias, Kind::alias, Kind::member, index);
}

void *zov_ZoneAliasFindMember(void *alias, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    const Call call("ZoneAliasFindMember", alias, scripted::memberText(type, *id));
    return scripted::memberOf(call, alias, Kind::alias, type, id);
}

int32_t zov_ZoneAliasAddMember(void *alias, void *member) {
    const Call call("ZoneAliasAddMember", alias, member);
    return scripted::addPart(call, alias, Kind::alias, member, Kind::member);
}

int32_t zov_ZoneAliasDeleteMember(void *alias, void **member) {
    const Call call("ZoneAliasDeleteMember", *member);
    return scripted::deleteMember(call, alias, Kind::alias, member);
}

// ---- members -----------------------------------------------------------------------------------------

void *zov_MemberCreate(zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    const std::string text = scripted::memberText(type, *id);
    const Call call("MemberCreate", text);
    std::memset(id, 0xEE, sizeof *id);
    return call.fails ? nullptr : scripted::member(nullptr, type, text);
}

int32_t zov_MemberDestroy(void *member) {
    const Call call("MemberDestroy", member);
    return scripted::destroy(call, member, Kind::member);
}

int32_t zov_MemberGetAttr(void *member, zov_fzs_zonemember_type_e *type, void *attribute) {
    const Call call("MemberGetAttr", member);
    const scripted::Object *object = scripted::use(member, Kind::member);
    if (object == nullptr)
        return call.result();
    *type = object->memberType; // also when it fails: nobody may rely on it
    if (call.fails)
        return call.result();
    if (object->attribute.empty())
        std::memcpy(attribute, object->id.u.byte, sizeof object->id.u.byte);
    else
        std::memcpy(attribute, object->attribute.c_str(), std::min<std::size_t>(object->attribute.size() + 1, 256));
    return 0;
}

int32_t zov_strToMemberIdentifier(const char *text, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    const Call call("strToMemberIdentifier", text);
    return call.fails || !scripted::readMember(text, type, *id) ? call.result() : 0;
}

} // extern "C"
// NOLINTEND(misc-definitions-in-headers)

#endif // TESTS_ZONING_SCRIPTEDCALLS_H
