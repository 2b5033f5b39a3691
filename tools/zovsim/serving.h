/*
 * Programs that serve a switch until a signal ends them: one of a scenario, or a recording that stands in for one.
 *
 * They return the exit code. Errors: what scenarios.h throws, dcache::Misuse for a profile that does not exist, and
 * std::runtime_error for a socket, a state file or a recording that cannot be used.
 */
#ifndef TOOLS_ZOVSIM_SERVING_H
#define TOOLS_ZOVSIM_SERVING_H

#include <cstdint>
#include <optional>
#include <string>

#include "tools/dcache/output.h"
#include "tools/zovsim/speed.h"

namespace zovsim {

struct ServeRequest {
    std::optional<std::string> scenario; ///< a file, or the name of a shipped one
    std::optional<std::string> profile;  ///< in place of a scenario
    std::optional<std::string> socket;
    std::string stateFile; ///< empty: none
    std::string recording; ///< likewise
    bool goesOn = false;   ///< with a recording that is there
    Speed speed;
    uint64_t seed = 0;
    bool quiet = false;
};

int serve(const ServeRequest &request, dcache::Output &output);

struct ReplayRequest {
    std::string recording;
    std::optional<std::string> socket;
    bool quiet = false;
};

/// 1 when something was called that was not recorded.
int replay(const ReplayRequest &request, dcache::Output &output);

/// The line by which a shell tells clients of a socket.
std::string exportLine(const std::string &socket);

} // namespace zovsim

#endif // TOOLS_ZOVSIM_SERVING_H
