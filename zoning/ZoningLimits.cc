// How full the cached database is, and how full the switch lets it become.
#include <cstdint>
#include <iterator>

#include "common/AccessLock.h"
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "zoning/ZoningCache.h"
#include "zoning/objects.h"

namespace {

/// A switch library may tell any count: sums of them wrap around.
void add(int &sum, int count) {
    sum = static_cast<int>(static_cast<uint32_t>(sum) + static_cast<uint32_t>(count));
}

/// Logs a limit that has been reached; `format` takes a number.
__attribute__((format(printf, 2, 0))) bool reached(bool atMax, const char *format, int number) {
    if (atMax)
        cim_log(CIM_LOG_INFO, format, number); // NOLINT(clang-diagnostic-format-nonliteral): checked at the callers
    return atMax;
}

} // namespace

bool ZoningCache::updateZoningCounts() {
    const AccessLock lock;
    _zonesetCount = _zoneCount = _aliasCount = _memberCount = 0;
    for (const auto &[key, zoneset] : _zonesets)
        _zonesetCount += zoneset.kind == ZONESET_INACTIVE ? 1 : 0;

    _zoneCount = zoning::countOf(zov_ZonesetGetZoneCount, _uberZoneset);
    for (int i = 0; i < _zoneCount; ++i)
        add(_memberCount, _weightedMembers(zov_ZonesetListZones(_uberZoneset, i)));

    _aliasCount = zoning::countOf(zov_ZonesetGetAliasCount, _uberZoneset);
    for (int i = 0; i < _aliasCount; ++i)
        add(_memberCount, zoning::countOf(zov_ZoneAliasGetMemberCount, zov_ZonesetListAliases(_uberZoneset, i)));

    cim_log(CIM_LOG_INFO, "DCACHE: zsl = %d, zl = %d, al = %d, zml = %d\n", _zonesetCount, _zoneCount, _aliasCount,
            _memberCount);
    return true;
}

/// The members of a zone, and those of every alias among them.
int ZoningCache::_weightedMembers(void *zone) const {
    const int count = zoning::countOf(zov_ZoneGetMemberCount, zone);
    int weighted = count;
    for (int i = 0; i < count; ++i) {
        void *member = zov_ZoneListMembers(zone, i);
        zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
        zoning::Buffer attribute{};
        if (member == nullptr || zov_MemberGetAttr(member, &type, attribute.data()) != 0 || type != ZOV_ZMT_ALIAS)
            continue;
        attribute.back() = '\0';
        add(weighted, zoning::countOf(zov_ZoneAliasGetMemberCount,
                                      zoning::find(zov_ZonesetFindAlias, _uberZoneset, attribute.data())));
    }
    return weighted;
}

bool ZoningCache::initZoningLimits() {
    const AccessLock lock;
    updateZoningCounts();
    zov_fzs_zoninglimits_s limits = {};
    if (zov_fzsGetZoningLimitations(hSwitch, &limits) != 0)
        return false;
    _limits = limits;
    return true;
}

zov_fzs_zoninglimits_s ZoningCache::getZoningCounts() const {
    const AccessLock lock;
    zov_fzs_zoninglimits_s counts = {};
    counts.zonesets = _zonesetCount;
    counts.zones = _zoneCount;
    counts.members = _memberCount;
    counts.aliases = _aliasCount;
    return counts;
}

zov_fzs_zoninglimits_s ZoningCache::getZoningLimits() const {
    const AccessLock lock;
    return _limits;
}

// Of the database as a whole, only the very number of the limit stops an edit.

bool ZoningCache::zonesetLimitAtMax() const {
    const AccessLock lock;
    return reached(_zonesetCount == _limits.zonesets, "DCACHE: Zoneset maximum of %d reached\n", _zonesetCount);
}

bool ZoningCache::zoneLimitAtMax() const {
    const AccessLock lock;
    return reached(_zoneCount == _limits.zones, "DCACHE: Zone maximum of %d reached\n", _zoneCount);
}

bool ZoningCache::aliasLimitAtMax() const {
    const AccessLock lock;
    return reached(_aliasCount == _limits.aliases, "DCACHE: Zone alias maximum of %d reached\n", _aliasCount);
}

bool ZoningCache::memberLimitAtMax() const {
    const AccessLock lock;
    return reached(_memberCount == _limits.members, "DCACHE: Member maximum of %d reached\n", _memberCount);
}

bool ZoningCache::zonesPerZonesetAtMax(void *zoneset) const {
    const AccessLock lock;
    return reached(zoning::countOf(zov_ZonesetGetZoneCount, zoneset) >= _limits.zonesPerZoneset,
                   "DCACHE: Zones per zoneset maximum of %d reached\n", _limits.zonesPerZoneset);
}

bool ZoningCache::membersPerZoneAtMax(void *zone) const {
    const AccessLock lock;
    return reached(zoning::countOf(zov_ZoneGetMemberCount, zone) >= _limits.membersPerZone,
                   "DCACHE: Members per zone maximum of %d reached\n", _limits.membersPerZone);
}

bool ZoningCache::membersPerAliasAtMax(void *alias) const {
    const AccessLock lock;
    return reached(zoning::countOf(zov_ZoneAliasGetMemberCount, alias) >= _limits.membersPerAlias,
                   "DCACHE: Members per alisa maximum of %d reached\n", _limits.membersPerAlias);
}
