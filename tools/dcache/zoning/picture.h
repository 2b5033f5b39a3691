/*
 * The zoning database as plain data: copied out of the cache, to be shown, compared and written as a script.
 *
 * A picture stays as it is when the cache goes on. Functions that take the cache lock it for their whole run; the others
 * are pure.
 */
#ifndef TOOLS_DCACHE_ZONING_PICTURE_H
#define TOOLS_DCACHE_ZONING_PICTURE_H

#include <optional>
#include <string>
#include <vector>

#include "tools/dcache/cache.h"
#include "tools/dcache/zoning/member.h"

namespace dcache {

struct AliasPicture {
    std::string name;
    std::vector<Member> members;
};

struct ZonePicture {
    std::string name;
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID;
    std::vector<Member> members;
};

struct ZonesetPicture {
    std::string name;
    std::vector<std::string> zones; ///< by name
};

/// Everything in the order of the switch.
struct ZoningPicture {
    std::vector<ZonesetPicture> zonesets;
    std::vector<ZonePicture> zones;
    std::vector<AliasPicture> aliases;
};

/// The defined half of the cached database.
ZoningPicture definedZoning(const CacheLock &cache);

/// The active zone set by itself: the one zone set, its zones and the aliases it came with. None when none is active.
std::optional<ZoningPicture> activeZoning(const CacheLock &cache);

/// One zone set of a picture by itself, as activeZoning() has it; without any zone set when there is none of this name.
ZoningPicture zonesetAlone(const ZoningPicture &zoning, const std::string &name);

/// A script that builds this in an empty database, its commit included. What no script can say stands there in comments.
std::string scriptOf(const ZoningPicture &zoning);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_PICTURE_H
