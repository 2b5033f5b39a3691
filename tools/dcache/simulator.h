/*
 * The simulated switch, when it is the switch library this process runs with.
 *
 * Looked up at run time: against a real switch library the tool works too, only without scenarios and profiles.
 */
#ifndef TOOLS_DCACHE_SIMULATOR_H
#define TOOLS_DCACHE_SIMULATOR_H

#include <memory>
#include <string>

#include "sim/Play.h"
#include "sim/Simulator.h"

namespace dcache {

/// Takes a simulated switch out of use before it is destroyed.
struct SimulatorRemover {
    void operator()(sim::Simulator *simulator) const;
};
using SimulatorHold = std::unique_ptr<sim::Simulator, SimulatorRemover>;

/// The same of the switch of a scenario.
struct PlayRemover {
    void operator()(sim::Play *play) const;
};
using PlayHold = std::unique_ptr<sim::Play, PlayRemover>;

/// Makes a switch of this kind, which connections made from now on reach. Throws Misuse, naming the kinds there are, for
/// an unknown one; Failure when the switch library exports no such factory, or is of another version than this tool, and
/// when connections go to a switch that is served by another process.
SimulatorHold makeSimulator(const std::string &profile, const char *factory = "zovsim_create");

/// Makes the switch of a scenario, in real time: of one that is shipped with the library, by its name, or of a file, whose
/// name has a '/' in it, ends with ".toml", or is "-" for standard input. Throws as makeSimulator() does, for a mistake
/// in the file Misuse.
PlayHold makePlay(const std::string &scenario, const char *factory = "zovsim_play");

/// Whether the switch is a simulated one in this process, so that whatever is done to it ends with the process.
bool isSimulated(const char *factory = "zovsim_create");

/// By how much the clock of the switch made last has gone on since it was made, in seconds; 0 when there is none. May be
/// called from any thread.
long simulatedSeconds();

} // namespace dcache

#endif // TOOLS_DCACHE_SIMULATOR_H
