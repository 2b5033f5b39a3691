/*
 * User ports of the simulated switch, by the keys that the cache reads.
 */
#ifndef TESTS_SUPPORT_PORTS_H
#define TESTS_SUPPORT_PORTS_H

#include <string>
#include <vector>

#include "foundation/Wwn.h"
#include "sim/Simulator.h"

namespace support {

/// Key of a port's attribute: "Oper.UserPort.0.5.OperState".
std::string portKey(unsigned port, const std::string &attribute);

/// Sets a port's attribute without a notification.
void setPort(sim::Simulator &theSwitch, unsigned port, const std::string &attribute, const std::string &value);

/// Makes all ports alike: online F ports without transceiver data.
void levelPorts(sim::Simulator &theSwitch);

/// The ports whose states stand in these exchanges, as CacheTest::traffic() tells them.
std::vector<unsigned> portsRead(const std::vector<std::string> &traffic);

/// The name of a port: the switch's own name as a port name, with this number in the port field.
Wwn portName(const std::string &switchName, unsigned portNumber);

} // namespace support

#endif // TESTS_SUPPORT_PORTS_H
