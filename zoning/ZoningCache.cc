#include "zoning/ZoningCache.h"

#include "common/AccessLock.h"
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"

ZoningCache::ZoningCache() = default;
ZoningCache::~ZoningCache() = default;

bool ZoningCache::updateZoningCounts() {
    const AccessLock lock;
    _zonesetCount = _zoneCount = _aliasCount = _memberCount = 0;
    cim_log(CIM_LOG_INFO, "DCACHE: zsl = %d, zl = %d, al = %d, zml = %d\n", _zonesetCount, _zoneCount, _aliasCount,
            _memberCount);
    return true;
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
