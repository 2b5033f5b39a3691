/*
 * The line that a failed refresh leaves in the log.
 */
#ifndef DATACACHE_REFRESH_FAILURE_H
#define DATACACHE_REFRESH_FAILURE_H

#include "foundation/cim_log.h"

/// Logs which routine failed and where; false, for the routine to return. The numbers tell the places apart in the
/// field, so they stay as they are whatever happens to the source.
inline bool refreshFailed(const char *routine, int line) {
    cim_log(CIM_LOG_INFO, "DCACHE: Cache update failed: %s:%s:%d\n", "DataCache.cc", routine, line);
    return false;
}

#endif // DATACACHE_REFRESH_FAILURE_H
