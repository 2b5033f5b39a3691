/*
 * What surrounds a switch of a profile: devices, and other switches. Pure functions of the switch they are given.
 */
#ifndef SIM_MODEL_FABRICPROFILE_H
#define SIM_MODEL_FABRICPROFILE_H

#include "sim/model/Switch.h"

namespace sim {

/// Links the switch to one like it.
void joinTwin(Switch &device);

/// Puts the switch at the edge of a fabric of so many switches, the cores among them. The cores have the lowest domain
/// IDs, the first of them is the principal, and each has a link to every other core; every edge has links to two.
void joinCoreAndEdge(Switch &device, unsigned switches, unsigned cores);

/// Logs a device in at every port of the switch that is Online and has no link, and at the first ports of every edge.
void logInDevices(Switch &device);

} // namespace sim

#endif // SIM_MODEL_FABRICPROFILE_H
