/*
 * What reading and writing the fabric of a scenario have in common. Functions of what they are given.
 */
#ifndef SIM_SCENARIO_FABRICDEEDS_H
#define SIM_SCENARIO_FABRICDEEDS_H

#include <optional>
#include <string>

#include "sim/Simulator.h"

namespace sim {

/// The name of a switch as the control interface wants it: that of the local switch for kLocalEnd, that of a domain's
/// switch for its number. Throws std::invalid_argument when no switch has the domain.
std::string nameIn(const Simulator &device, const std::string &name);

std::optional<Peer> peerNamed(const Simulator &device, const std::string &wwn);

/// Links a peer to the local switch and takes the link down again: the link-state database keeps its record from then
/// on. Nothing happens without the peer, or without a port that is free.
void linkForAMoment(Simulator &device, const std::string &wwn);

} // namespace sim

#endif // SIM_SCENARIO_FABRICDEEDS_H
