/*
 * The chassis: power supplies, fans, and what its fault monitoring found. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_CHASSIS_H
#define SIM_MODEL_CHASSIS_H

#include <string>
#include <vector>

#include "sim/tree/Row.h"

namespace sim {

struct Chassis {
    std::vector<std::string> powerSupplies; ///< states: Good, Bad, NotInstalled
    std::vector<std::string> fans;          ///< likewise
    std::string faultList;                  ///< of the switch as a whole
};

Rows chassisRows();

} // namespace sim

#endif // SIM_MODEL_CHASSIS_H
