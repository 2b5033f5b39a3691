/*
 * The zoning database of the switch: empty, and what it could hold. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_ZONING_H
#define SIM_MODEL_ZONING_H

#include <string>

#include "platform/zovlib.h"

namespace sim {

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
    std::string activeZoneset; ///< empty: none is active
};

} // namespace sim

#endif // SIM_MODEL_ZONING_H
