/*
 * The calls that a rule of misbehaviour can be about, by their names. Constant.
 */
#ifndef SIM_LEVERS_CALLNAMES_H
#define SIM_LEVERS_CALLNAMES_H

#include <string>
#include <vector>

namespace sim {

/// The functions of the switch library, and "notification".
const std::vector<std::string> &callNames();

bool isCallName(const std::string &name);

} // namespace sim

#endif // SIM_LEVERS_CALLNAMES_H
