// The C interface: zone sets, zones, aliases and members. These calls name no connection: the levers and the
// recorder of the newest switch see them.

#include <cstring>

#include "sim/api/ObjectCall.h"
#include "sim/zoning/Names.h"

using namespace sim;

namespace {

void *created(ObjectNumber number) {
    return pointerOf(number);
}

int32_t countOf(size_t count) {
    return static_cast<int32_t>(count);
}

/// The identifier that a client passed; none for a null pointer and for what is no member.
std::optional<MemberId> memberFrom(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s *id) {
    return id ? normalized(type, *id) : std::nullopt;
}

std::string shownMember(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s *id) {
    const std::optional<MemberId> member = memberFrom(type, id);
    return member ? quoted(describe(*member)) : "type " + std::to_string(static_cast<int32_t>(type));
}

/// An identifier is the client's to give, not to keep: like the hardware's own library, this one uses its
/// memory.
void spend(zov_fzs_memberid_s *id) {
    if (id)
        std::memset(id, 0xEE, sizeof *id);
}

/// A name that a client reads into 65 bytes of its own.
template <class Read> int32_t readName(char *destination, const Read &read) {
    if (!destination)
        return kBadArgument;
    std::string name;
    const Status status = read(name);
    if (status == kOk)
        putName(destination, name);
    return status;
}

/// An object that is made under a name of the client's; null unless the name is valid.
template <class Create> void *createNamed(const char *text, const Create &create) {
    const std::optional<std::string> name = nameFrom(text);
    return name && isValidName(*name) ? created(create(*name)) : nullptr;
}

/// Deletes a member through the client's pointer to it, which is cleared.
template <class Remove> int32_t deleteMember(void **member, const Remove &remove) {
    if (!member)
        return kBadArgument;
    const Status status = remove(numberOf(*member));
    if (status == kOk)
        *member = nullptr;
    return status;
}

template <class Find> void *findMember(zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id, const Find &find) {
    const std::optional<MemberId> member = memberFrom(type, id);
    spend(id);
    return member ? pointerOf(find(*member)) : nullptr;
}

} // namespace

extern "C" {

// ---- zone sets -----------------------------------------------------------------------------------------

int32_t zov_ZonesetTestName(const char *name) {
    return onObjects<int32_t>(
        "zov_ZonesetTestName", {}, [&] { return shownAll(name); },
        [&](Objects &) -> int32_t {
            const std::optional<std::string> text = nameFrom(name);
            if (!name)
                return kBadArgument;
            return text && isValidName(*text) ? kOk : kBadName;
        });
}

void *zov_ZonesetCreate(const char *name) {
    return onObjects<void *>(
        "zov_ZonesetCreate", {}, [&] { return shownAll(name); },
        [&](Objects &objects) {
            return createNamed(name, [&](const std::string &text) { return objects.createZoneSet(text); });
        });
}

int32_t zov_ZonesetDestroy(void *zoneset) {
    return onObjects<int32_t>(
        "zov_ZonesetDestroy", {aSet(zoneset)}, [&] { return shownAll(zoneset); },
        [&](Objects &objects) { return objects.destroyZoneSet(numberOf(zoneset)); });
}

int32_t zov_ZonesetGetName(void *zoneset, char *name) {
    return onObjects<int32_t>(
        "zov_ZonesetGetName", {aSet(zoneset)}, [&] { return shownAll(zoneset); },
        [&](Objects &objects) {
            return readName(name, [&](std::string &text) { return objects.zoneSetName(numberOf(zoneset), text); });
        });
}

int32_t zov_ZonesetGetZoneCount(void *zoneset) {
    return onObjects<int32_t>(
        "zov_ZonesetGetZoneCount", {aSet(zoneset)}, [&] { return shownAll(zoneset); },
        [&](Objects &objects) { return countOf(objects.zoneCount(numberOf(zoneset))); });
}

int32_t zov_ZonesetGetAliasCount(void *zoneset) {
    return onObjects<int32_t>(
        "zov_ZonesetGetAliasCount", {aSet(zoneset)}, [&] { return shownAll(zoneset); },
        [&](Objects &objects) { return countOf(objects.aliasCount(numberOf(zoneset))); });
}

void *zov_ZonesetListZones(void *zoneset, int32_t index) {
    return onObjects<void *>(
        "zov_ZonesetListZones", {aSet(zoneset)}, [&] { return shownAll(zoneset, index); },
        [&](Objects &objects) { return pointerOf(objects.zoneAt(numberOf(zoneset), index)); });
}

void *zov_ZonesetListAliases(void *zoneset, int32_t index) {
    return onObjects<void *>(
        "zov_ZonesetListAliases", {aSet(zoneset)}, [&] { return shownAll(zoneset, index); },
        [&](Objects &objects) { return pointerOf(objects.aliasAt(numberOf(zoneset), index)); });
}

void *zov_ZonesetFindZone(void *zoneset, const char *name) {
    return onObjects<void *>(
        "zov_ZonesetFindZone", {aSet(zoneset)}, [&] { return shownAll(zoneset, name); },
        [&](Objects &objects) -> void * {
            const std::optional<std::string> text = nameFrom(name);
            return text ? pointerOf(objects.findZone(numberOf(zoneset), *text)) : nullptr;
        });
}

void *zov_ZonesetFindAlias(void *zoneset, const char *name) {
    return onObjects<void *>(
        "zov_ZonesetFindAlias", {aSet(zoneset)}, [&] { return shownAll(zoneset, name); },
        [&](Objects &objects) -> void * {
            const std::optional<std::string> text = nameFrom(name);
            return text ? pointerOf(objects.findAlias(numberOf(zoneset), *text)) : nullptr;
        });
}

int32_t zov_ZonesetAddZone(void *zoneset, void *zone) {
    return onObjects<int32_t>(
        "zov_ZonesetAddZone", {aSet(zoneset), aZone(zone)}, [&] { return shownAll(zoneset, zone); },
        [&](Objects &objects) { return objects.addZone(numberOf(zoneset), numberOf(zone)); });
}

int32_t zov_ZonesetAddAlias(void *zoneset, void *alias) {
    return onObjects<int32_t>(
        "zov_ZonesetAddAlias", {aSet(zoneset), anAlias(alias)}, [&] { return shownAll(zoneset, alias); },
        [&](Objects &objects) { return objects.addAlias(numberOf(zoneset), numberOf(alias)); });
}

int32_t zov_ZonesetRemoveZone(void *zoneset, void *zone) {
    return onObjects<int32_t>(
        "zov_ZonesetRemoveZone", {aSet(zoneset), aZone(zone)}, [&] { return shownAll(zoneset, zone); },
        [&](Objects &objects) { return objects.removeZone(numberOf(zoneset), numberOf(zone)); });
}

int32_t zov_ZonesetRemoveAlias(void *zoneset, void *alias) {
    return onObjects<int32_t>(
        "zov_ZonesetRemoveAlias", {aSet(zoneset), anAlias(alias)}, [&] { return shownAll(zoneset, alias); },
        [&](Objects &objects) { return objects.removeAlias(numberOf(zoneset), numberOf(alias)); });
}

// ---- zones ---------------------------------------------------------------------------------------------

void *zov_ZoneCreate(const char *name) {
    return onObjects<void *>(
        "zov_ZoneCreate", {}, [&] { return shownAll(name); },
        [&](Objects &objects) {
            return createNamed(name, [&](const std::string &text) { return objects.createZone(text); });
        });
}

/// The copy takes any name that fits.
void *zov_ZoneCreateCopy(void *zone, const char *newName) {
    return onObjects<void *>(
        "zov_ZoneCreateCopy", {aZone(zone)}, [&] { return shownAll(zone, newName); },
        [&](Objects &objects) -> void * {
            const std::optional<std::string> text = nameFrom(newName);
            return text ? pointerOf(objects.copyZone(numberOf(zone), *text)) : nullptr;
        });
}

int32_t zov_ZoneDestroy(void *zone) {
    return onObjects<int32_t>(
        "zov_ZoneDestroy", {aZone(zone)}, [&] { return shownAll(zone); },
        [&](Objects &objects) { return objects.destroyZone(numberOf(zone)); });
}

int32_t zov_ZoneSetName(void *zone, const char *name) {
    return onObjects<int32_t>(
        "zov_ZoneSetName", {aZone(zone)}, [&] { return shownAll(zone, name); },
        [&](Objects &objects) -> int32_t {
            const std::optional<std::string> text = nameFrom(name);
            if (!name)
                return kBadArgument;
            return text && isValidName(*text) ? objects.renameZone(numberOf(zone), *text) : kBadName;
        });
}

int32_t zov_ZoneGetName(void *zone, char *name) {
    return onObjects<int32_t>(
        "zov_ZoneGetName", {aZone(zone)}, [&] { return shownAll(zone); },
        [&](Objects &objects) {
            return readName(name, [&](std::string &text) { return objects.zoneName(numberOf(zone), text); });
        });
}

int32_t zov_ZoneSetType(void *zone, zov_fzs_zone_type_e type) {
    return onObjects<int32_t>(
        "zov_ZoneSetType", {aZone(zone)}, [&] { return shownAll(zone, static_cast<int32_t>(type)); },
        [&](Objects &objects) { return objects.setZoneType(numberOf(zone), type); });
}

int32_t zov_ZoneGetType(void *zone, zov_fzs_zone_type_e *type) {
    return onObjects<int32_t>(
        "zov_ZoneGetType", {aZone(zone)}, [&] { return shownAll(zone); },
        [&](Objects &objects) { return type ? objects.zoneType(numberOf(zone), *type) : kBadArgument; });
}

int32_t zov_ZoneGetMemberCount(void *zone) {
    return onObjects<int32_t>(
        "zov_ZoneGetMemberCount", {aZone(zone)}, [&] { return shownAll(zone); },
        [&](Objects &objects) { return countOf(objects.zoneMemberCount(numberOf(zone))); });
}

void *zov_ZoneListMembers(void *zone, int32_t index) {
    return onObjects<void *>(
        "zov_ZoneListMembers", {aZone(zone)}, [&] { return shownAll(zone, index); },
        [&](Objects &objects) { return pointerOf(objects.zoneMemberAt(numberOf(zone), index)); });
}

void *zov_ZoneFindMember(void *zone, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    return onObjects<void *>(
        "zov_ZoneFindMember", {aZone(zone)}, [&] { return shown(zone) + ", " + shownMember(type, id); },
        [&](Objects &objects) {
            return findMember(type, id,
                              [&](const MemberId &member) { return objects.findZoneMember(numberOf(zone), member); });
        });
}

int32_t zov_ZoneAddMember(void *zone, void *member) {
    return onObjects<int32_t>(
        "zov_ZoneAddMember", {aZone(zone), aMember(member)}, [&] { return shownAll(zone, member); },
        [&](Objects &objects) { return objects.addZoneMember(numberOf(zone), numberOf(member)); });
}

int32_t zov_ZoneDeleteMember(void *zone, void **member) {
    return onObjects<int32_t>(
        "zov_ZoneDeleteMember", {aZone(zone), aMember(member ? *member : nullptr)},
        [&] { return shownAll(zone, member ? *member : nullptr); },
        [&](Objects &objects) {
            return deleteMember(member,
                                [&](ObjectNumber number) { return objects.removeZoneMember(numberOf(zone), number); });
        });
}

// ---- aliases -------------------------------------------------------------------------------------------

void *zov_ZoneAliasCreate(const char *name) {
    return onObjects<void *>(
        "zov_ZoneAliasCreate", {}, [&] { return shownAll(name); },
        [&](Objects &objects) {
            return createNamed(name, [&](const std::string &text) { return objects.createAlias(text); });
        });
}

int32_t zov_ZoneAliasDestroy(void *alias) {
    return onObjects<int32_t>(
        "zov_ZoneAliasDestroy", {anAlias(alias)}, [&] { return shownAll(alias); },
        [&](Objects &objects) { return objects.destroyAlias(numberOf(alias)); });
}

int32_t zov_ZoneAliasGetName(void *alias, char *name) {
    return onObjects<int32_t>(
        "zov_ZoneAliasGetName", {anAlias(alias)}, [&] { return shownAll(alias); },
        [&](Objects &objects) {
            return readName(name, [&](std::string &text) { return objects.aliasName(numberOf(alias), text); });
        });
}

int32_t zov_ZoneAliasGetMemberCount(void *alias) {
    return onObjects<int32_t>(
        "zov_ZoneAliasGetMemberCount", {anAlias(alias)}, [&] { return shownAll(alias); },
        [&](Objects &objects) { return countOf(objects.aliasMemberCount(numberOf(alias))); });
}

void *zov_ZoneAliasListMembers(void *alias, int32_t index) {
    return onObjects<void *>(
        "zov_ZoneAliasListMembers", {anAlias(alias)}, [&] { return shownAll(alias, index); },
        [&](Objects &objects) { return pointerOf(objects.aliasMemberAt(numberOf(alias), index)); });
}

void *zov_ZoneAliasFindMember(void *alias, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    return onObjects<void *>(
        "zov_ZoneAliasFindMember", {anAlias(alias)}, [&] { return shown(alias) + ", " + shownMember(type, id); },
        [&](Objects &objects) {
            return findMember(type, id,
                              [&](const MemberId &member) { return objects.findAliasMember(numberOf(alias), member); });
        });
}

int32_t zov_ZoneAliasAddMember(void *alias, void *member) {
    return onObjects<int32_t>(
        "zov_ZoneAliasAddMember", {anAlias(alias), aMember(member)}, [&] { return shownAll(alias, member); },
        [&](Objects &objects) { return objects.addAliasMember(numberOf(alias), numberOf(member)); });
}

int32_t zov_ZoneAliasDeleteMember(void *alias, void **member) {
    return onObjects<int32_t>(
        "zov_ZoneAliasDeleteMember", {anAlias(alias), aMember(member ? *member : nullptr)},
        [&] { return shownAll(alias, member ? *member : nullptr); },
        [&](Objects &objects) {
            return deleteMember(
                member, [&](ObjectNumber number) { return objects.removeAliasMember(numberOf(alias), number); });
        });
}

// ---- members -------------------------------------------------------------------------------------------

void *zov_MemberCreate(zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    return onObjects<void *>(
        "zov_MemberCreate", {}, [&] { return shownMember(type, id); },
        [&](Objects &objects) -> void * {
            const std::optional<MemberId> member = memberFrom(type, id);
            spend(id);
            return member ? created(objects.createMember(*member)) : nullptr;
        });
}

int32_t zov_MemberDestroy(void *member) {
    return onObjects<int32_t>(
        "zov_MemberDestroy", {aMember(member)}, [&] { return shownAll(member); },
        [&](Objects &objects) { return objects.destroyMember(numberOf(member)); });
}

int32_t zov_MemberGetAttr(void *member, zov_fzs_zonemember_type_e *type, void *attribute) {
    return onObjects<int32_t>(
        "zov_MemberGetAttr", {aMember(member)}, [&] { return shownAll(member); },
        [&](Objects &objects) -> int32_t {
            if (!type || !attribute)
                return kBadArgument;
            MemberId id;
            const Status status = objects.memberId(numberOf(member), id);
            if (status != kOk)
                return status;
            *type = id.type;
            std::memcpy(attribute, &id.id, sizeof id.id);
            return kOk;
        });
}

int32_t zov_strToMemberIdentifier(const char *text, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id) {
    return onObjects<int32_t>(
        "zov_strToMemberIdentifier", {}, [&] { return shownAll(text, static_cast<int32_t>(type)); },
        [&](Objects &) -> int32_t {
            if (!text || !id)
                return kBadArgument;
            const std::optional<MemberId> member = parseMember(type, text);
            if (!member)
                return kBadMember;
            *id = member->id;
            return kOk;
        });
}

} // extern "C"
