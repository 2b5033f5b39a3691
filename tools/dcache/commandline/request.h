/*
 * What a command line asks for, as it is being read.
 */
#ifndef TOOLS_DCACHE_COMMANDLINE_REQUEST_H
#define TOOLS_DCACHE_COMMANDLINE_REQUEST_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/dcache/commands/commands.h"
#include "tools/dcache/live.h"
#include "tools/dcache/render.h"

namespace dcache {

/// How something is to be shown.
struct View {
    Format format;
    bool colour;
};

struct Request {
    std::string format = "table";
    std::optional<std::string> profile;  ///< of the simulated switch
    std::optional<std::string> scenario; ///< likewise; a name or a file
    sim::Play *play = nullptr;           ///< of the scenario, as long as the command runs
    PortFilter ports;
    std::optional<std::string> port;   ///< digits
    std::optional<std::string> domain; ///< likewise
    std::optional<std::string> picture;
    std::optional<std::string> zoning; ///< the file that describes that of the simulated switch
    bool activeZoning = false;
    std::optional<std::string> script; ///< a file
    ZoningRun zoningRun;
    bool secrets = false;           ///< show them
    std::vector<std::string> edits; ///< of the configuration, KEY=VALUE each
    double wait = 10;               ///< of the doctor, in seconds
    double seconds = 0;
    double speed = kUsualSpeed;
    bool allEvents = false;
    std::function<int(Format)> run; ///< does it, and returns the exit code
};

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDLINE_REQUEST_H
