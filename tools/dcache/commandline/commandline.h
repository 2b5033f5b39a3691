/*
 * The command line. Nouns with verbs, "show" being the verb of a noun alone.
 *
 * Each add...() gives the program a command, or several; the request and the output live as long as the program.
 */
#ifndef TOOLS_DCACHE_COMMANDLINE_COMMANDLINE_H
#define TOOLS_DCACHE_COMMANDLINE_COMMANDLINE_H

#include <CLI/CLI.hpp>

#include "tools/dcache/commandline/request.h"
#include "tools/dcache/output.h"

namespace dcache {

void addNouns(CLI::App &app, Request &request, Output &output);
void addZoning(CLI::App &app, Request &request, Output &output);
void addConfig(CLI::App &app, Request &request, Output &output);
void addDoctor(CLI::App &app, Request &request, Output &output);
void addWatch(CLI::App &app, Request &request, Output &output);

/// Does what the command line says and returns the exit code; a wrong command line is told on stderr. Throws as the
/// commands do, but for Misuse.
int runCommandLine(int argc, char **argv);

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDLINE_COMMANDLINE_H
