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

/// Takes a simulated switch out of use before it is destroyed.
struct SimulatorRemover {
    void operator()(sim::Simulator *simulator) const;
};
using SimulatorHold = std::unique_ptr<sim::Simulator, SimulatorRemover>;

/// Makes a switch of this kind, which connections made from now on reach. Throws Misuse, naming the kinds there are, for
/// an unknown one; Failure when the switch library exports no such factory, or is of another version than this tool.
SimulatorHold makeSimulator(const std::string &profile, const char *factory = "zovsim_create");

/// Whether the switch library is the simulated switch, so that whatever is done to it ends with this process.
bool isSimulated(const char *factory = "zovsim_create");

/// By how much the clock of the switch made last has gone on since it was made, in seconds; 0 when there is none. May be
/// called from any thread.
long simulatedSeconds();

} // namespace dcache

#endif // TOOLS_DCACHE_SIMULATOR_H
