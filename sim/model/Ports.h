/*
 * The user ports: state, type, name, and the transceiver in each. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_PORTS_H
#define SIM_MODEL_PORTS_H

#include <optional>
#include <string>

#include "sim/Simulator.h"
#include "sim/model/Announcement.h"
#include "sim/model/Media.h"
#include "sim/tree/Row.h"

namespace sim {

struct UserPort {
    std::string operState = "Offline";
    std::string adminState = "Online";
    std::string type = "GL";      ///< as configured
    Media media;                  ///< all empty without a transceiver
    std::optional<unsigned> slot; ///< where the blade is that the port is on; none for a port of the box itself
};

Rows portsRows();

/// What can be done to transceivers; errors as in Simulator.h.
Announcements plugTransceiver(Switch &device, unsigned port, const Transceiver &transceiver);
Announcements pullTransceiver(Switch &device, unsigned port);

/// Whether there is a port of this number; the ports of an empty slot are not there.
bool hasPort(const Switch &device, unsigned port);

/// The ports of a slot come with its blade, as new ones, and go with it. Their settings stay.
void bringPortsOf(Switch &device, unsigned slot);
void takePortsOf(Switch &device, unsigned slot);

} // namespace sim

#endif // SIM_MODEL_PORTS_H
