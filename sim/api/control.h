/*
 * Switches that answer by a script.
 *
 * Thread-safe.
 */
#ifndef SIM_API_CONTROL_H
#define SIM_API_CONTROL_H

#include <memory>

#include "sim/Simulator.h"
#include "sim/core/Script.h"

namespace sim {

/// A switch of the default profile whose clients are answered by a script. New connections reach it, as if it had been
/// made by zovsim_create().
std::unique_ptr<Simulator> makeScripted(std::shared_ptr<Script> script);

} // namespace sim

#endif // SIM_API_CONTROL_H
