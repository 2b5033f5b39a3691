/*
 * The "Cmd." keys: commands to the switch, one row each.
 *
 * Thread-safe: the table is constant; what a command works on is guarded by its owner.
 */
#ifndef SIM_SESSION_COMMANDS_H
#define SIM_SESSION_COMMANDS_H

#include <string_view>
#include <vector>

#include "sim/session/AdminMode.h"
#include "sim/session/ConfigEdit.h"

namespace sim {

/// What a command works on.
struct CommandContext {
    zov_handle_t client;
    AdminMode &admin;
    ConfigEdit &edit;
    Edits running = {};                          ///< out: configuration that becomes effective now
    Configuration changed = Configuration::none; ///< out: the configuration it belongs to
};

struct Command {
    const char *key;
    bool needsAdmin;
    Status (*run)(CommandContext &context);
};

/// Null for a key that is no command.
const Command *findCommand(std::string_view key);

/// Runs a command for a client, unless the command needs admin mode and the client does not hold it.
Status runCommand(const Command &command, CommandContext &context);

/// Every command, in the order of the table.
std::vector<const char *> allCommands();

} // namespace sim

#endif // SIM_SESSION_COMMANDS_H
