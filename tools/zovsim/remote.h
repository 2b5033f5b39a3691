/*
 * The switch that another process serves: where it is, and what it is asked.
 *
 * Errors: dcache::Failure says what the switch refused, or that there is none.
 */
#ifndef TOOLS_ZOVSIM_REMOTE_H
#define TOOLS_ZOVSIM_REMOTE_H

#include <optional>
#include <string>
#include <vector>

namespace zovsim {

/// The socket that was asked for, or else the one in the environment variable ZOVSIM_SOCKET, or else the user's own.
std::string socketPath(const std::optional<std::string> &asked);

/// The command that these arguments are. A single one is the command itself; of several, each is a word of it, and those
/// that would be taken for more get the quotation marks that a shell has taken away.
std::string commandOf(const std::vector<std::string> &arguments);

/// Has a switch carry out commands, a line each, and returns what there is to tell: lines, or nothing. "help" takes no
/// switch.
std::string carryOut(const std::string &commands, const std::optional<std::string> &socket);

/// The present state of a switch as a scenario.
std::string dump(const std::optional<std::string> &socket);

} // namespace zovsim

#endif // TOOLS_ZOVSIM_REMOTE_H
