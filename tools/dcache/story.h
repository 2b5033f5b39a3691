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
    std::chrono::milliseconds at;  ///< after the story's begin, at speed 1
    const char *words;             ///< what happens on the switch
    void (*act)(sim::Simulator &); ///< makes it happen; throws when the switch does not know how
    const char *whyNoEvent;        ///< said when the step has passed without an event; null: nothing to say
};

struct Story {
    const char *name;
    const char *about; ///< for the help text
    std::vector<Step> steps;
};

/// The story of this name, null if there is none.
const Story *findStory(const std::string &name);

/// The names of all stories.
std::vector<std::string> storyNames();

} // namespace dcache

#endif // TOOLS_DCACHE_STORY_H
