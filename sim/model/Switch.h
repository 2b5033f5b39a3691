/*
 * The whole state of one simulated switch: one member per domain. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_SWITCH_H
#define SIM_MODEL_SWITCH_H

#include "sim/model/Chassis.h"
#include "sim/model/Identity.h"
#include "sim/model/Manufacturing.h"
#include "sim/model/Zoning.h"

namespace sim {

struct Switch {
    Identity identity;
    Chassis chassis;
    Manufacturing manufacturing;
    Zoning zoning;
};

} // namespace sim

#endif // SIM_MODEL_SWITCH_H
