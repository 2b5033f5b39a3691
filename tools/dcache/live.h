/*
 * `dcache watch`: the cache at work, its events told as they come, with or without a story on the simulated switch.
 */
#ifndef TOOLS_DCACHE_LIVE_H
#define TOOLS_DCACHE_LIVE_H

#include <chrono>
#include <optional>

#include "tools/dcache/output.h"
#include "tools/dcache/render.h"
#include "tools/dcache/story.h"

namespace dcache {

struct WatchOptions {
    Format format = Format::table;
    std::optional<std::chrono::duration<double>> duration; ///< none: until the story is over, or for ever
    const Story *story = nullptr;
    double speed = 1; ///< of the story
    /// Also the events that tell of no change: those of the first load, and that every area is up to date.
    bool allEvents = false;
};

/// Returns when the time or the story is over, or on SIGINT or SIGTERM. Throws Failure when the story cannot be played,
/// OutputFailed when nobody listens any more. Once per process.
void watch(const WatchOptions &options, Output &output);

} // namespace dcache

#endif // TOOLS_DCACHE_LIVE_H
