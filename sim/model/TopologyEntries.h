/*
 * The ports of the fabric's switches, as its management server lists them. Thread-safe: a constant table; the switch is
 * guarded by its owner.
 */
#ifndef SIM_MODEL_TOPOLOGYENTRIES_H
#define SIM_MODEL_TOPOLOGYENTRIES_H

#include "sim/tree/Row.h"

namespace sim {

/// How many seconds the management server may think before it answers for a switch. No client waits for so long.
constexpr unsigned kSlowestTopology = 1000000;

Rows topologyEntriesRows();

} // namespace sim

#endif // SIM_MODEL_TOPOLOGYENTRIES_H
