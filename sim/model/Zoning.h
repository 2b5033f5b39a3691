/*
 * The zoning of the switch: what is defined, what is active, the limits and the checksums. Plain data; guarded by its
 * owner. Both halves are snapshots that never change, so that reading one takes no copy of it.
 */
#ifndef SIM_MODEL_ZONING_H
#define SIM_MODEL_ZONING_H

#include <memory>
#include <string>

#include "platform/zovlib.h"
#include "sim/model/Announcement.h"
#include "sim/tree/Row.h"
#include "sim/zoning/Database.h"

namespace sim {

/// One half of the zoning database, and the hexadecimal number by which clients notice a change of it.
struct ZoningHalf {
    explicit ZoningHalf(const char *name);

    const char *name; ///< has a part in the checksum, so that the halves differ in theirs
    std::shared_ptr<const ZoneDatabase> database;
    std::string checksum;
    unsigned generation = 0; ///< how often it changed
};

struct Zoning {
    zov_fzs_zoninglimits_s limits = {
        300,   // zone sets
        3000,  // zones
        12000, // members
        1000,  // zones per zone set
        500,   // members per zone
        3000,  // aliases
        500,   // members per alias
    };
    ZoningHalf defined{"defined"};
    ZoningHalf active{"active"}; ///< one zone set, or nothing
};

Rows zoningRows();

/// The name of the active zone set, empty when there is none.
std::string activeName(const Zoning &zoning);

/// Replaces what is defined, and with it what is active.
Announcements commit(Zoning &zoning, ZoneDatabase database);

/// What another management client can do; errors as in Simulator.h.
Announcements setZoning(Switch &device, const ZoningDatabase &database);
Announcements activateZoneset(Switch &device, const std::string &name);
Announcements setZoningLimits(Switch &device, const zov_fzs_zoninglimits_s &limits);

} // namespace sim

#endif // SIM_MODEL_ZONING_H
