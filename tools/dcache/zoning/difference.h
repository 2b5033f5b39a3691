/*
 * What is different between two pictures of a zoning database.
 *
 * Pure functions, callable from any thread.
 */
#ifndef TOOLS_DCACHE_ZONING_DIFFERENCE_H
#define TOOLS_DCACHE_ZONING_DIFFERENCE_H

#include <string>
#include <vector>

#include "tools/dcache/zoning/picture.h"

namespace dcache {

/// One difference, in the words it is shown in.
struct ZoningChange {
    const char *change; ///< "added", "removed" or "changed"
    const char *object; ///< "alias", "zone" or "zone set"
    std::string name;   ///< of the object
    const char *part;   ///< "member", "type" or "zone": of a part of the object; empty for the object itself
    std::string value;  ///< the part; of a type that changed, both
};

/// From one to the other: aliases, zones, zone sets, each in the order of the names. What has been added is listed with
/// its parts, what has been removed goes without. The order of things is no difference.
std::vector<ZoningChange> difference(const ZoningPicture &before, const ZoningPicture &after);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_DIFFERENCE_H
