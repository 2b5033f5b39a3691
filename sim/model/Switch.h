/*
 * The whole state of one simulated switch: one member per domain. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_SWITCH_H
#define SIM_MODEL_SWITCH_H

#include <string>
#include <vector>

#include "sim/model/Accounts.h"
#include "sim/model/Blades.h"
#include "sim/model/Chassis.h"
#include "sim/model/Fabric.h"
#include "sim/model/Identity.h"
#include "sim/model/Manufacturing.h"
#include "sim/model/Ports.h"
#include "sim/model/Settings.h"
#include "sim/model/Zoning.h"

namespace sim {

struct Switch {
    Identity identity;
    std::vector<UserPort> ports;
    Chassis chassis;
    std::vector<Slot> slots;
    std::vector<std::string> accounts; ///< in the order in which they are listed
    Manufacturing manufacturing;
    Settings settings;
    Zoning zoning;
    Fabric fabric;
};

} // namespace sim

#endif // SIM_MODEL_SWITCH_H
