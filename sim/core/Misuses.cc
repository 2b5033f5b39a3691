#include "sim/core/Misuses.h"

#include <cstdio>
#include <cstdlib>

namespace sim {

namespace {

#ifdef ZOVSIM_STOP_ON_MISUSE
constexpr bool kStops = true;
#else
constexpr bool kStops = false;
#endif

/// Asked each time: whoever runs tests may forgive some of them.
bool isForgiven() {
    const char *wish = std::getenv("ZOVSIM_MISUSE");
    const std::string word = wish ? wish : "";
    return kStops ? word == "report" : word != "stop";
}

} // namespace

void Misuses::add(const std::string &misuse) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _misuses.push_back(misuse);
}

std::vector<std::string> Misuses::all() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _misuses;
}

void stopUnlessForgiven(const std::string &misuse) {
    if (isForgiven())
        return;
    std::fprintf(stderr, "libzovlib: misuse of a zoning object: %s\n", misuse.c_str());
    std::abort();
}

} // namespace sim
