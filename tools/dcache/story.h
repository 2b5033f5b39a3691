/*
 * Stories: what happens on the simulated switch, step by step.
 *
 * Constant tables, readable from any thread.
 */
#ifndef TOOLS_DCACHE_STORY_H
#define TOOLS_DCACHE_STORY_H

#include <chrono>
#include <string>
#include <vector>

#include "sim/Simulator.h"

namespace dcache {

struct Step {
    const char *words;             ///< what happens on the switch
    void (*act)(sim::Simulator &); ///< makes it happen; throws when the switch does not know how
    const char *whyNoEvent;        ///< said when the step has passed without an event; null: nothing to say
};

struct Story {
    const char *name;
    const char *about;              ///< for the help text
    const char *profile;            ///< the kind of switch it plays on
    std::chrono::milliseconds pace; ///< from step to step, at speed 1
    std::vector<Step> steps;

    /// When a step comes, after the story's begin and at speed 1.
    std::chrono::milliseconds at(size_t step) const { return pace * (step + 1); }
};

/// The story of this name, null if there is none.
const Story *findStory(const std::string &name);

/// The names of all stories.
std::vector<std::string> storyNames();

} // namespace dcache

#endif // TOOLS_DCACHE_STORY_H
