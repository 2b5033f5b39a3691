#include "sim/session/Commands.h"

namespace sim {

namespace {

Status requestAdmin(CommandContext &context) {
    return context.admin.request(context.client);
}

/// An edit is open only as long as its editor holds admin mode.
Status releaseAdmin(CommandContext &context) {
    const Status status = context.admin.release(context.client);
    if (status == kOk)
        context.edit.drop();
    return status;
}

template <Configuration configuration> Status openEdit(CommandContext &context) {
    return context.edit.open(configuration);
}

template <Configuration configuration> Status cancelEdit(CommandContext &context) {
    return context.edit.cancel(configuration);
}

Status saveSwitch(CommandContext &context) {
    return context.edit.saveSwitch();
}

Status saveCim(CommandContext &context) {
    context.changed = Configuration::cim;
    return context.edit.saveCim(context.running);
}

Status activateSwitch(CommandContext &context) {
    context.changed = Configuration::wholeSwitch;
    return context.edit.activate(context.running);
}

constexpr Command kCommands[] = {
    {"Cmd.Switch.ReqAdmin", false, requestAdmin},
    {"Cmd.Switch.RelAdmin", false, releaseAdmin},
    {"Cmd.Switch.CancelAdmin", false, releaseAdmin},
    {"Cmd.Switch.EditConfig", true, openEdit<Configuration::wholeSwitch>},
    {"Cmd.Switch.SaveConfig", true, saveSwitch},
    {"Cmd.Switch.ActConfig", true, activateSwitch},
    {"Cmd.Switch.CancelConfig", true, cancelEdit<Configuration::wholeSwitch>},
    {"Cmd.Cim.EditConfig", true, openEdit<Configuration::cim>},
    {"Cmd.Cim.SaveConfig", true, saveCim},
    {"Cmd.Cim.CancelConfig", true, cancelEdit<Configuration::cim>},
};

} // namespace

const Command *findCommand(std::string_view key) {
    for (const Command &command : kCommands)
        if (key == command.key)
            return &command;
    return nullptr;
}

Status runCommand(const Command &command, CommandContext &context) {
    if (command.needsAdmin && !context.admin.heldBy(context.client))
        return kAdminRequired;
    return command.run(context);
}

std::vector<const char *> allCommands() {
    std::vector<const char *> keys;
    for (const Command &command : kCommands)
        keys.push_back(command.key);
    return keys;
}

} // namespace sim
