#include "tests/scenario/Seeds.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace scenario {

namespace {

constexpr unsigned kGroups = 8; // no more than a stage tries seeds: a group without one fails

unsigned seedCount() {
    constexpr unsigned seeds = 200;
    const char *asked = std::getenv("DATACACHE_SEEDS"); // NOLINT(concurrency-mt-unsafe): one thread
    return asked != nullptr ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : seeds;
}

} // namespace

// The options that the test framework does not know are not handed on to anybody; the kernel keeps them all.
unsigned seedAsked() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    const std::string option = "--seed=";
    for (std::string argument; std::getline(file, argument, '\0');)
        if (argument.rfind(option, 0) == 0)
            return static_cast<unsigned>(std::strtoul(argument.c_str() + option.size(), nullptr, 10));
    return 0;
}

std::vector<unsigned> seedGroups() {
    std::vector<unsigned> first;
    for (unsigned group = 1; group <= (seedAsked() != 0 ? 1 : kGroups); ++group)
        first.push_back(group);
    return first;
}

std::vector<unsigned> seedsOf(unsigned group) {
    if (seedAsked() != 0)
        return {seedAsked()};
    std::vector<unsigned> seeds;
    for (unsigned seed = group; seed <= seedCount(); seed += kGroups)
        seeds.push_back(seed);
    EXPECT_FALSE(seeds.empty()) << "a group without a seed tests nothing";
    return seeds;
}

} // namespace scenario
