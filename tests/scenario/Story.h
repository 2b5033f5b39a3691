/*
 * A story of a simulated switch, told twice: to a cache that follows it from the beginning, and to one that is started at
 * its end and finds the switch as it is then. Each cache lives in a process of its own.
 *
 * A story does the same to the switch in both processes, whoever looks on.
 */
#ifndef TESTS_SCENARIO_STORY_H
#define TESTS_SCENARIO_STORY_H

#include <functional>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "tests/scenario/Picture.h"

namespace scenario {

/// What a story can do.
struct Scene {
    sim::Simulator &theSwitch;
    /// Lets the following cache take in all notifications and run a pass.
    std::function<void()> pass;
    /// Notes a line for whoever wants to know how it came about.
    std::function<void(const std::string &)> tell;
};

using Story = std::function<void(Scene &)>;

/// How it ends for one of the caches. It was asked for everything, and has run a pass.
struct Ending {
    Lines state;   ///< of the switch: all its attributes
    Lines picture; ///< what the cache tells
    Lines notes;   ///< what one must know besides to judge that
    std::vector<std::string> told;
};

struct Endings {
    Ending followed;
    Ending fresh;
};

/// Throws std::runtime_error when a process does not come to its end. Call it while this process has one thread.
Endings tellTwice(const std::string &profile, const Story &story);

} // namespace scenario

#endif // TESTS_SCENARIO_STORY_H
