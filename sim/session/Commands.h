/*
 * The "Cmd." keys: commands to the switch, one row each. A pattern may hold placeholders, each "%s", which stands for
 * a text without dots: a name never has one, so a key can be read in one way only.
 *
 * Thread-safe: the tables are constant; what a command works on is guarded by its owner.
 */
#ifndef SIM_SESSION_COMMANDS_H
#define SIM_SESSION_COMMANDS_H

#include <array>
#include <string>
#include <string_view>

#include "sim/model/Announcement.h"
#include "sim/model/Zoning.h"
#include "sim/session/AdminMode.h"
#include "sim/session/Backup.h"
#include "sim/session/ConfigEdit.h"
#include "sim/session/ZoningSession.h"

namespace sim {

/// What a command works on.
struct CommandContext {
    zov_handle_t client;
    AdminMode &admin;
    ConfigEdit &edit;
    ZoningSession &zoningSession;
    Zoning &zoning;
    const Switch &device; ///< as it runs
    Backup &backup;
    Edits running = {};                          ///< out: configuration that becomes effective now
    Configuration changed = Configuration::none; ///< out: the configuration it belongs to
    Announcements announcements = {};            ///< out: what else the switch has to tell
};

/// What the placeholders of a pattern stand for in a key.
using Arguments = std::array<std::string, 2>;

/// What a client must have before it may give a command, each with all that come before it.
enum class Needs { nothing, admin, zoningLock, zoningEdit };

struct Command {
    const char *pattern;
    Needs needs;
    Status (*run)(CommandContext &context, const Arguments &arguments);
};

/// A command that a key gives.
struct GivenCommand {
    const Command *row = nullptr;
    Arguments arguments;

    explicit operator bool() const { return row != nullptr; }
};

/// None for a key that is no command.
GivenCommand findCommand(std::string_view key);

/// Runs a command for a client, unless the client does not have what the command needs.
Status runCommand(const GivenCommand &command, CommandContext &context);

/// Whether a key belongs to the commands that edit zoning, by its form alone.
bool isZoningKey(std::string_view key);

} // namespace sim

#endif // SIM_SESSION_COMMANDS_H
