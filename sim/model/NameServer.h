/*
 * The fabric's name server: the devices that are logged in, as the switches tell of them. Guarded by the owner of the
 * switch.
 */
#ifndef SIM_MODEL_NAMESERVER_H
#define SIM_MODEL_NAMESERVER_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/model/Fabric.h"
#include "sim/tree/Row.h"

namespace sim {

Rows nameServerRows();

/// What can be done about devices; errors as in Simulator.h.
Announcements logIn(Switch &device, const NameServerEntry &entry);
Announcements logOut(Switch &device, const std::string &portWwn);
void removeDevicesOf(Fabric &fabric, const std::string &name);

/// All entries in the order of their addresses, with the names that switches have now.
std::vector<NameServerEntry> nameServerOf(const Switch &device);

/// As notifications list them, the entries of switches that are in one fabric and not in the other.
std::vector<std::string> entriesGone(const Fabric &from, const Fabric &in);
/// As many notifications as the entries need.
void appendEntries(Announcements &announcements, int32_t code, const std::vector<std::string> &entries);

} // namespace sim

#endif // SIM_MODEL_NAMESERVER_H
