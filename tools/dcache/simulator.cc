#include "tools/dcache/simulator.h"

#include <dlfcn.h>
#include <stdexcept>

#include "tools/dcache/failure.h"

namespace dcache {

std::unique_ptr<sim::Simulator> makeSimulator(const std::string &profile, const char *factory) {
    const auto create = reinterpret_cast<decltype(&zovsim_create)>(dlsym(RTLD_DEFAULT, factory));
    if (create == nullptr)
        throw Failure("stories and profiles need the simulated switch, and this is a real switch library");
    std::unique_ptr<sim::Simulator> simulator;
    try {
        simulator.reset(create(profile.c_str(), sim::kInterfaceVersion));
    } catch (const std::invalid_argument &error) {
        throw Misuse(error.what());
    }
    if (simulator == nullptr)
        throw Failure("the simulated switch is of another version than this program");
    return simulator;
}

} // namespace dcache
