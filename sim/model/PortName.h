/*
 * The world-wide names of ports. Pure functions.
 */
#ifndef SIM_MODEL_PORTNAME_H
#define SIM_MODEL_PORTNAME_H

#include <string>

namespace sim {

/// A port is named by its switch: the NAA format of the switch's name (1 or 2) becomes 2, and the port's number goes
/// into the 12 bits after it. Switches of one company number their ports from one. A switch name of another format
/// has no place for a port. The name of the switch is 16 hexadecimal digits.
std::string portName(const std::string &switchName, unsigned port);

/// A name in the form in which names are kept and compared.
std::string upperCase(std::string name);

} // namespace sim

#endif // SIM_MODEL_PORTNAME_H
