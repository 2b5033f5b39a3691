/*
 * Why the cache may have nothing to tell about something that was done to the switch. What the commands of the simulated
 * switch do, it knows; what the cache makes of them, this does.
 *
 * A constant table, readable from any thread.
 */
#ifndef TOOLS_DCACHE_QUIET_H
#define TOOLS_DCACHE_QUIET_H

#include <string>

namespace dcache {

/// The reason why a command to the simulated switch raises no event, when it raised none; empty if none is known.
std::string whyNoEvent(const std::string &command);

} // namespace dcache

#endif // TOOLS_DCACHE_QUIET_H
