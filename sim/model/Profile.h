/*
 * Profiles: the kinds of switch that can be simulated, by name. Thread-safe.
 */
#ifndef SIM_MODEL_PROFILE_H
#define SIM_MODEL_PROFILE_H

#include <string>

#include "sim/model/Switch.h"

namespace sim {

/// The switch a program gets that asks for none in particular.
constexpr const char *kDefaultProfile = "fixed-24";

/// A healthy switch of the named kind. Throws std::invalid_argument, naming the kinds there are, for any other name.
Switch makeSwitch(const std::string &profile);

} // namespace sim

#endif // SIM_MODEL_PROFILE_H
