#include "tools/dcache/simulator.h"

#include <cstdlib>
#include <dlfcn.h>
#include <fmt/format.h>
#include <mutex>
#include <stdexcept>

#include "tools/dcache/failure.h"
#include "tools/dcache/input.h"

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

void drive(const sim::Simulator &simulator) {
    const std::lock_guard<std::mutex> lock(driven().mutex);
    driven().simulator = &simulator;
    driven().uptimeAtFirst = simulator.uptime();
}

void driveNoMore(const sim::Simulator &simulator) {
    const std::lock_guard<std::mutex> lock(driven().mutex);
    if (driven().simulator == &simulator)
        driven().simulator = nullptr;
}

/// The socket that connections go to; empty when they stay in this process.
std::string socketInUse() {
    const char *path = std::getenv("ZOVSIM_SOCKET"); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    return path != nullptr ? path : "";
}

/// A function of the switch library, by its name.
template <class Function> Function lookUp(const char *name) {
    const auto function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
    if (function == nullptr)
        throw Failure("scenarios and profiles need the simulated switch, and this is a real switch library");
    if (const std::string path = socketInUse(); !path.empty())
        throw Failure(
            fmt::format("the switch is the one that is served at {}, and not ours to make: unset ZOVSIM_SOCKET "
                        "for one of our own, or begin with it: zovsim serve --scenario NAME",
                        path));
    return function;
}

[[noreturn]] void refuseVersion() {
    throw Failure("the simulated switch is of another version than this program");
}

bool isFile(const std::string &scenario) {
    const std::string ending = ".toml";
    const size_t length = scenario.size();
    return scenario == "-" || scenario.find('/') != std::string::npos ||
           (length > ending.size() && scenario.compare(length - ending.size(), ending.size(), ending) == 0);
}

} // namespace

void SimulatorRemover::operator()(sim::Simulator *simulator) const {
    driveNoMore(*simulator);
    delete simulator;
}

void PlayRemover::operator()(sim::Play *play) const {
    driveNoMore(play->device());
    delete play;
}

SimulatorHold makeSimulator(const std::string &profile, const char *factory) {
    const auto create = lookUp<decltype(&zovsim_create)>(factory);
    SimulatorHold simulator;
    try {
        simulator.reset(create(profile.c_str(), sim::kInterfaceVersion));
    } catch (const std::invalid_argument &error) {
        throw Misuse(error.what());
    }
    if (simulator == nullptr)
        refuseVersion();
    drive(*simulator);
    return simulator;
}

PlayHold makePlay(const std::string &scenario, const char *factory) {
    const auto create = lookUp<decltype(&zovsim_play)>(factory);
    const bool isOwn = isFile(scenario);
    const std::string text = isOwn ? readInput(scenario) : scenario;
    PlayHold play;
    try {
        play.reset(create(text.c_str(), isOwn ? scenario.c_str() : nullptr, sim::kInterfaceVersion));
    } catch (const std::invalid_argument &error) {
        throw Misuse(isOwn ? error.what() : fmt::format("{}; a file has a '/' or ends in .toml", error.what()));
    }
    if (play == nullptr)
        refuseVersion();
    play->device().setPace(sim::Pace::running);
    drive(play->device());
    return play;
}

bool isSimulated(const char *factory) {
    return dlsym(RTLD_DEFAULT, factory) != nullptr && socketInUse().empty();
}

long simulatedSeconds() {
    const std::lock_guard<std::mutex> lock(driven().mutex);
    return driven().simulator != nullptr ? driven().simulator->uptime() - driven().uptimeAtFirst : 0;
}

} // namespace dcache
