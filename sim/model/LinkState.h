/*
 * The link-state database as clients read it. Thread-safe: a constant table; the switch is guarded by its owner.
 */
#ifndef SIM_MODEL_LINKSTATE_H
#define SIM_MODEL_LINKSTATE_H

#include "sim/tree/Row.h"

namespace sim {

Rows linkStateRows();

/// The domains of the switches in the fabric, for the keys of whatever there is by switch.
extern const Axis kMembers;

} // namespace sim

#endif // SIM_MODEL_LINKSTATE_H
