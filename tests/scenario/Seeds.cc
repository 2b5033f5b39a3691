#include "tests/scenario/Seeds.h"

#include <cstdlib>
#include <fstream>
#include <string>

namespace scenario {

// The options that the test framework does not know are not handed on to anybody; the kernel keeps them all.
unsigned seedAsked() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    const std::string option = "--seed=";
    for (std::string argument; std::getline(file, argument, '\0');)
        if (argument.rfind(option, 0) == 0)
            return static_cast<unsigned>(std::strtoul(argument.c_str() + option.size(), nullptr, 10));
    return 0;
}

unsigned seedCount() {
    constexpr unsigned seeds = 200;
    const char *asked = std::getenv("DATACACHE_SEEDS"); // NOLINT(concurrency-mt-unsafe): one thread
    return asked != nullptr ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : seeds;
}

} // namespace scenario
