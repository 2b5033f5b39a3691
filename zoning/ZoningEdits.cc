// Edits of zone sets, zones and aliases. The checks of each come in the order that decides its result.
#include "common/AccessLock.h"
#include "zoning/ZoningCache.h"
#include "zoning/edits.h"
#include "zoning/objects.h"

using namespace zoning;

// ---- zone sets ----------------------------------------------------------------------------------------

int ZoningCache::createZoneset(const char *name) {
    const AccessLock lock;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    if (zonesetLimitAtMax())
        return kFailed;
    if (getZoneset(name, kind) != nullptr)
        return kThereAlready;
    if (name == nullptr || zov_ZonesetTestName(name) != 0)
        return kNotValid;
    void *zoneset = zov_ZonesetCreate(name);
    if (zoneset == nullptr)
        return kFailed;
    return _takeInactive(zoneset) == 0 ? kDone : kFailed;
}

int ZoningCache::removeZoneset(const char *name) {
    const AccessLock lock;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    void *zoneset = getZoneset(name, kind);
    if (zoneset == nullptr)
        return kNotThere;
    return delZoneset(zoneset, kind) == 0 ? kDone : kFailed;
}

int ZoningCache::addZoneToZoneset(const char *zoneset, const char *zone) {
    const AccessLock lock;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    void *set = getZoneset(zoneset, kind);
    if (set == nullptr)
        return kNotThere;
    if (zonesPerZonesetAtMax(set))
        return kFailed;
    if (find(zov_ZonesetFindZone, set, zone) != nullptr)
        return kThereAlready;
    void *original = find(zov_ZonesetFindZone, _uberZoneset, zone);
    if (original == nullptr)
        return kNotThere;
    void *copy = zov_ZoneCreateCopy(original, kTemporaryZone);
    if (copy == nullptr)
        return kFailed;
    if (zov_ZoneSetName(copy, zone) != 0) {
        zov_ZoneDestroy(copy);
        return kFailed;
    }
    // A zone set that does not take the copy leaves it to nobody; it stays, as it always has.
    return zov_ZonesetAddZone(set, copy) == 0 ? kDone : kFailed;
}

int ZoningCache::removeZoneFromZoneset(const char *zoneset, const char *zone) {
    const AccessLock lock;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    void *set = getZoneset(zoneset, kind);
    void *held = find(zov_ZonesetFindZone, set, zone);
    if (held == nullptr)
        return kNotThere;
    return zov_ZonesetRemoveZone(set, held) == 0 ? kDone : kFailed;
}

// ---- zones --------------------------------------------------------------------------------------------

int ZoningCache::createZone(const char *name, zov_fzs_zone_type_e type) {
    const AccessLock lock;
    if (zoneLimitAtMax())
        return kFailed;
    if (find(zov_ZonesetFindZone, _uberZoneset, name) != nullptr)
        return kThereAlready;
    void *zone = name != nullptr ? zov_ZoneCreate(name) : nullptr;
    if (zone == nullptr)
        return kNotValid;
    // A database that has not been loaded takes none, but a name that is not valid is told before that.
    if (zov_ZoneSetType(zone, type) != 0 || _uberZoneset == nullptr || zov_ZonesetAddZone(_uberZoneset, zone) != 0) {
        zov_ZoneDestroy(zone);
        return kFailed;
    }
    updateZoningCounts();
    return kDone;
}

int ZoningCache::removeZone(const char *name) {
    const AccessLock lock;
    void *zone = find(zov_ZonesetFindZone, _uberZoneset, name);
    if (zone == nullptr)
        return kNotThere;
    if (zov_ZonesetRemoveZone(_uberZoneset, zone) != 0)
        return kFailed;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind != ZONESET_INACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindZone, zoneset.handle, name);
        if (copy != nullptr && zov_ZonesetRemoveZone(zoneset.handle, copy) != 0)
            return kFailed;
    }
    updateZoningCounts();
    return kDone;
}

// ---- aliases ------------------------------------------------------------------------------------------

int ZoningCache::createZoneAlias(const char *name) {
    const AccessLock lock;
    if (aliasLimitAtMax() || _uberZoneset == nullptr)
        return kFailed;
    if (find(zov_ZonesetFindAlias, _uberZoneset, name) != nullptr)
        return kThereAlready;
    void *alias = name != nullptr ? zov_ZoneAliasCreate(name) : nullptr;
    if (alias == nullptr)
        return kFailed;
    if (zov_ZonesetAddAlias(_uberZoneset, alias) != 0) {
        zov_ZoneAliasDestroy(alias);
        return kFailed;
    }
    updateZoningCounts();
    return kDone;
}

int ZoningCache::removeZoneAlias(const char *name) {
    const AccessLock lock;
    void *alias = find(zov_ZonesetFindAlias, _uberZoneset, name);
    if (alias == nullptr)
        return kNotThere;
    if (zov_ZonesetRemoveAlias(_uberZoneset, alias) != 0)
        return kFailed;
    for (const auto &[key, zoneset] : _zonesets) {
        if (zoneset.kind == ZONESET_ACTIVE)
            continue;
        void *copy = find(zov_ZonesetFindAlias, zoneset.handle, name);
        if (copy != nullptr && zov_ZonesetRemoveAlias(zoneset.handle, copy) != 0)
            return kFailed;
    }
    updateZoningCounts();
    return kDone;
}
