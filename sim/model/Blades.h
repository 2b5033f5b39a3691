/*
 * The slots of the chassis and the blades in them. A switch in one box has a single slot, the box itself. Plain data;
 * guarded by its owner.
 */
#ifndef SIM_MODEL_BLADES_H
#define SIM_MODEL_BLADES_H

#include <string>

#include "sim/Simulator.h"
#include "sim/model/Announcement.h"
#include "sim/tree/Row.h"

namespace sim {

/// As it is by default, a slot is empty.
struct Slot {
    std::string operState = "NotInstalled";
    std::string adminState;
    std::string diagStatus;
    std::string type;
    std::string planarPartNum;
    std::string boardSerialNum;
    std::string tempSensors;    ///< how many, in decimal
    std::string voltageSensors; ///< likewise
    std::string faultList;
};

Rows bladesRows();

/// A slot with a healthy blade in it. Throws std::invalid_argument for a blade there cannot be.
Slot slotWith(const Blade &blade);

/// What can be done to blades; errors as in Simulator.h.
Announcements insertBlade(Switch &device, unsigned slot, const Blade &blade);
Announcements removeBlade(Switch &device, unsigned slot);

} // namespace sim

#endif // SIM_MODEL_BLADES_H
