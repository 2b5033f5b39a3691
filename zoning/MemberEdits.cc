// Edits of the members of zones and aliases. The checks of each come in the order that decides its result.
//
// Where the edits of aliases differ from those of zones in what they repeat, and in counting anew, they do so on
// purpose: clients rely on it.
#include "common/AccessLock.h"
#include "foundation/cim_log.h"
#include "zoning/ZoningCache.h"
#include "zoning/edits.h"
#include "zoning/objects.h"

using namespace zoning;

// ---- members of zones ---------------------------------------------------------------------------------

int ZoningCache::addMemberToZone(const char *zone, zov_fzs_zonemember_type_e type, const char *member) {
    const AccessLock lock;
    void *edited = find(zov_ZonesetFindZone, _uberZoneset, zone);
    if (edited == nullptr)
        return kNotThere;
    if (membersPerZoneAtMax(edited))
        return kFailed;
    const MemberName name(type, member);
    if (!name.isValid())
        return kNotValid;
    if (name.in(edited, zov_ZoneFindMember) != nullptr)
        return kThereAlready;
    if (name.addTo(edited, zov_ZoneAddMember) != kDone)
        return kFailed;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind != ZONESET_INACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindZone, zoneset.handle, zone);
        if (copy != nullptr && name.addTo(copy, zov_ZoneAddMember) != kDone)
            return kFailed;
    }
    updateZoningCounts();
    return kDone;
}

int ZoningCache::removeMemberFromZone(const char *zone, zov_fzs_zonemember_type_e type, const char *member) {
    const AccessLock lock;
    void *edited = find(zov_ZonesetFindZone, _uberZoneset, zone);
    if (edited == nullptr)
        return kNotThere;
    const MemberName name(type, member);
    if (!name.isValid())
        return kNotValid;
    void *found = name.in(edited, zov_ZoneFindMember);
    if (found == nullptr)
        return kNotThere;
    if (zov_ZoneDeleteMember(edited, &found) != 0)
        return kFailed;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind != ZONESET_INACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindZone, zoneset.handle, zone);
        if (copy == nullptr)
            continue;
        found = name.in(copy, zov_ZoneFindMember);
        if (found == nullptr)
            return kNotThere;
        if (zov_ZoneDeleteMember(copy, &found) != 0)
            return kFailed;
    }
    updateZoningCounts();
    return kDone;
}

// ---- members of aliases -------------------------------------------------------------------------------

int ZoningCache::addMemberToZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *member) {
    const AccessLock lock;
    void *edited = find(zov_ZonesetFindAlias, _uberZoneset, alias);
    if (edited == nullptr)
        return kNotThere;
    if (membersPerAliasAtMax(edited))
        return kFailed;
    const MemberName name(type, member);
    if (!name.isValid())
        return kNotValid;
    if (name.in(edited, zov_ZoneAliasFindMember) != nullptr)
        return kThereAlready;
    if (name.addTo(edited, zov_ZoneAliasAddMember) != kDone)
        return kFailed;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind != ZONESET_INACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindAlias, zoneset.handle, alias);
        if (copy != nullptr && name.addTo(copy, zov_ZoneAliasAddMember) != kDone)
            return kFailed;
    }
    return kDone;
}

int ZoningCache::removeMemberFromZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *member) {
    const AccessLock lock;
    void *edited = find(zov_ZonesetFindAlias, _uberZoneset, alias);
    if (edited == nullptr)
        return kNotThere;
    const MemberName name(type, member);
    if (!name.isValid())
        return kNotValid;
    void *found = name.in(edited, zov_ZoneAliasFindMember);
    if (found == nullptr)
        return kNotThere;
    if (zov_ZoneAliasDeleteMember(edited, &found) != 0) {
        if (found != nullptr)
            zov_MemberDestroy(found);
        return kFailed;
    }
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind != ZONESET_ACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindAlias, zoneset.handle, alias);
        if (copy == nullptr)
            continue;
        found = name.in(copy, zov_ZoneAliasFindMember);
        if (found == nullptr)
            return kNotThere;
        if (zov_ZoneAliasDeleteMember(copy, &found) != 0)
            return kFailed;
    }
    return kDone;
}

// ---- a member wherever it is --------------------------------------------------------------------------

namespace {

/// The calls for the zones, or for the aliases, of a zone set.
struct Groups {
    int32_t (*count)(void *);
    void *(*at)(void *, int32_t);
    void *(*findMember)(void *, zov_fzs_zonemember_type_e, zov_fzs_memberid_s *);
    int32_t (*deleteMember)(void *, void **);
    const char *failure; ///< what is logged of a member that could not be deleted
};

constexpr Groups kZones = {zov_ZonesetGetZoneCount, zov_ZonesetListZones, zov_ZoneFindMember, zov_ZoneDeleteMember,
                           "Deletion failed"};
constexpr Groups kAliases = {zov_ZonesetGetAliasCount, zov_ZonesetListAliases, zov_ZoneAliasFindMember,
                             zov_ZoneAliasDeleteMember, "Alias Deletion failed"};

/// False when the zone set does not hand out all its groups.
bool removeFromAll(const Groups &groups, void *zoneset, const MemberName &name) {
    const int count = countOf(groups.count, zoneset);
    for (int i = 0; i < count; ++i) {
        void *group = groups.at(zoneset, i);
        if (group == nullptr)
            return false;
        void *found = name.in(group, groups.findMember);
        const int32_t result = found != nullptr ? groups.deleteMember(group, &found) : 0;
        if (result != 0)
            cim_log(CIM_LOG_INFO, "DCACHE: %s, result = %d\n", groups.failure, static_cast<int>(result));
    }
    return true;
}

} // namespace

int ZoningCache::removeMember(zov_fzs_zonemember_type_e type, const char *member) {
    const AccessLock lock;
    const MemberName name(type, member);
    if (!name.isValid())
        return kNotValid;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind == ZONESET_ACTIVE)
            continue;
        if (!removeFromAll(kZones, zoneset.handle, name) || !removeFromAll(kAliases, zoneset.handle, name))
            return kFailed;
    }
    return kDone;
}
