/*
 * The cached zoning database: its limits and counts.
 *
 * DataCache derives from ZoningCache; the members below are members of the one cache object and are guarded by
 * the cache's lock, which every public operation takes for its whole run. Any thread may call them.
 */
#ifndef ZONING_ZONINGCACHE_H
#define ZONING_ZONINGCACHE_H

#include "foundation/Export.h"
#include "platform/zovlib.h"

class DATACACHE_EXPORT ZoningCache {
public:
    ZoningCache();
    virtual ~ZoningCache();
    ZoningCache(const ZoningCache &) = delete;
    ZoningCache &operator=(const ZoningCache &) = delete;

    /// Counts the zone sets, zones, aliases and members of the cached database, and logs the counts. Always true.
    bool updateZoningCounts();

    /// Counts as above, then asks the switch for its zoning limits; true when it answered. Needs the connection.
    bool initZoningLimits();

private:
    // How full the cached database is. It is empty until it has been loaded.
    int _zonesetCount = 0;
    int _zoneCount = 0;
    int _aliasCount = 0;
    int _memberCount = 0;

    zov_fzs_zoninglimits_s _limits = {};
};

#endif // ZONING_ZONINGCACHE_H
