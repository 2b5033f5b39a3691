#include "tools/dcache/simulator.h"

#include <dlfcn.h>

#include "tools/dcache/failure.h"

namespace dcache {

std::unique_ptr<sim::Simulator> makeSimulator(const char *factory) {
    const auto create = reinterpret_cast<decltype(&zovsim_create)>(dlsym(RTLD_DEFAULT, factory));
    if (create == nullptr)
        throw Failure("a story needs the simulated switch, and this is a real switch library");
    std::unique_ptr<sim::Simulator> simulator(create("fixed-24", sim::kInterfaceVersion));
    if (simulator == nullptr)
        throw Failure("the simulated switch is of another version than this program");
    return simulator;
}

} // namespace dcache
