#include "tools/dcache/simulator.h"

#include <dlfcn.h>
#include <mutex>
#include <stdexcept>

#include "tools/dcache/failure.h"

namespace dcache {
namespace {

/// The switch that was made last, as long as it is there.
struct Driven {
    std::mutex mutex;
    const sim::Simulator *simulator = nullptr;
    long uptimeAtFirst = 0;
};

/// Never destroyed: the cache's thread may still ask while the process ends.
Driven &driven() {
    static Driven &theOne = *new Driven;
    return theOne;
}

} // namespace

void SimulatorRemover::operator()(sim::Simulator *simulator) const {
    {
        const std::lock_guard<std::mutex> lock(driven().mutex);
        if (driven().simulator == simulator)
            driven().simulator = nullptr;
    }
    delete simulator;
}

SimulatorHold makeSimulator(const std::string &profile, const char *factory) {
    const auto create = reinterpret_cast<decltype(&zovsim_create)>(dlsym(RTLD_DEFAULT, factory));
    if (create == nullptr)
        throw Failure("stories and profiles need the simulated switch, and this is a real switch library");
    SimulatorHold simulator;
    try {
        simulator.reset(create(profile.c_str(), sim::kInterfaceVersion));
    } catch (const std::invalid_argument &error) {
        throw Misuse(error.what());
    }
    if (simulator == nullptr)
        throw Failure("the simulated switch is of another version than this program");
    const std::lock_guard<std::mutex> lock(driven().mutex);
    driven().simulator = simulator.get();
    driven().uptimeAtFirst = simulator->uptime();
    return simulator;
}

bool isSimulated(const char *factory) {
    return dlsym(RTLD_DEFAULT, factory) != nullptr;
}

long simulatedSeconds() {
    const std::lock_guard<std::mutex> lock(driven().mutex);
    return driven().simulator != nullptr ? driven().simulator->uptime() - driven().uptimeAtFirst : 0;
}

} // namespace dcache
