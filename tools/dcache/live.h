/*
 * `dcache watch`: the cache at work, its events told as they come, with or without a scenario that happens to
 * the simulated switch.
 */
#ifndef TOOLS_DCACHE_LIVE_H
#define TOOLS_DCACHE_LIVE_H

#include <chrono>
#include <optional>

#include "sim/Play.h"
#include "tools/dcache/output.h"
#include "tools/dcache/render.h"

namespace dcache {

/// What happens to a switch in minutes is to be seen in seconds.
constexpr int kUsualSpeed = 8;

struct WatchOptions {
    Format format = Format::table;
    std::optional<std::chrono::duration<double>> duration; ///< none: until the scenario is over, or for ever
    sim::Play *play = nullptr;                             ///< the scenario; null: none
    double speed = kUsualSpeed;                            ///< of its clock, in real time
    /// Also the events that tell of no change: those of the first load, and that every area is up to date.
    bool allEvents = false;
};

/// Returns when the time or the scenario is over, or on SIGINT or SIGTERM. Throws OutputFailed when nobody listens any
/// more. Once per process.
void watch(const WatchOptions &options, Output &output);

} // namespace dcache

#endif // TOOLS_DCACHE_LIVE_H
