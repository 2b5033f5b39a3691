/*
 * The command line of zovsim.
 */
#ifndef TOOLS_ZOVSIM_COMMANDLINE_COMMANDLINE_H
#define TOOLS_ZOVSIM_COMMANDLINE_COMMANDLINE_H

namespace zovsim {

/// Does what the command line says and returns the exit code; a wrong command line is told on stderr. Throws as the
/// commands do, but for dcache::Misuse.
int runCommandLine(int argc, char **argv);

} // namespace zovsim

#endif // TOOLS_ZOVSIM_COMMANDLINE_COMMANDLINE_H
