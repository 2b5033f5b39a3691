/*
 * The simulated switch, when it is the switch library this process runs with.
 *
 * Looked up at run time: against a real switch library the tool works too, only without stories and profiles.
 */
#ifndef TOOLS_DCACHE_SIMULATOR_H
#define TOOLS_DCACHE_SIMULATOR_H

#include <memory>
#include <string>

#include "sim/Simulator.h"

namespace dcache {

/// Makes a switch of this kind, which connections made from now on reach. Throws Misuse, naming the kinds there are, for
/// an unknown one; Failure when the switch library exports no such factory, or is of another version than this tool.
std::unique_ptr<sim::Simulator> makeSimulator(const std::string &profile, const char *factory = "zovsim_create");

} // namespace dcache

#endif // TOOLS_DCACHE_SIMULATOR_H
