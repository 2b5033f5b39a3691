#include "sim/session/Commands.h"

#include <optional>

#include "sim/session/ZoningCommands.h"

namespace sim {

namespace {

Status requestAdmin(CommandContext &context, const Arguments &) {
    return context.admin.request(context.client);
}

/// Edits are open, and the fabric is locked, only as long as the editor holds admin mode.
Status releaseAdmin(CommandContext &context, const Arguments &) {
    const Status status = context.admin.release(context.client);
    if (status != kOk)
        return status;
    context.edit.drop();
    if (context.zoningSession.heldBy(context.client))
        context.zoningSession.force(0);
    return kOk;
}

template <Configuration configuration> Status openEdit(CommandContext &context, const Arguments &) {
    return context.edit.open(configuration);
}

template <Configuration configuration> Status cancelEdit(CommandContext &context, const Arguments &) {
    return context.edit.cancel(configuration);
}

Status saveSwitch(CommandContext &context, const Arguments &) {
    return context.edit.saveSwitch();
}

Status saveCim(CommandContext &context, const Arguments &) {
    context.changed = Configuration::cim;
    return context.edit.saveCim(context.running);
}

Status activateSwitch(CommandContext &context, const Arguments &) {
    context.changed = Configuration::wholeSwitch;
    return context.edit.activate(context.running);
}

Status backUp(CommandContext &context, const Arguments &) {
    context.backup.take(context.device);
    return kOk;
}

Status restore(CommandContext &context, const Arguments &) {
    return context.edit.isOpen() ? kEditOpen : context.backup.restore(context.running);
}

constexpr Command kCommands[] = {
    {"Cmd.Switch.ReqAdmin", Needs::nothing, requestAdmin},
    {"Cmd.Switch.RelAdmin", Needs::nothing, releaseAdmin},
    {"Cmd.Switch.CancelAdmin", Needs::nothing, releaseAdmin},
    {"Cmd.Switch.EditConfig", Needs::admin, openEdit<Configuration::wholeSwitch>},
    {"Cmd.Switch.SaveConfig", Needs::admin, saveSwitch},
    {"Cmd.Switch.ActConfig", Needs::admin, activateSwitch},
    {"Cmd.Switch.CancelConfig", Needs::admin, cancelEdit<Configuration::wholeSwitch>},
    {"Cmd.Switch.BackupConfig", Needs::admin, backUp},
    {"Cmd.Switch.RestoreConfig", Needs::admin, restore},
    {"Cmd.Cim.EditConfig", Needs::admin, openEdit<Configuration::cim>},
    {"Cmd.Cim.SaveConfig", Needs::admin, saveCim},
    {"Cmd.Cim.CancelConfig", Needs::admin, cancelEdit<Configuration::cim>},
};

/// What the placeholders of a pattern stand for in a key; none when the key is not of the pattern.
std::optional<Arguments> match(std::string_view pattern, std::string_view key) {
    constexpr char kPlaceholder = '%';
    constexpr size_t kPlaceholderSize = 2; // "%s"
    Arguments arguments;
    for (std::string &argument : arguments) {
        const size_t fixed = pattern.find(kPlaceholder);
        if (fixed == std::string_view::npos)
            break;
        if (key.substr(0, fixed) != pattern.substr(0, fixed))
            return std::nullopt;
        key.remove_prefix(fixed);
        pattern.remove_prefix(fixed + kPlaceholderSize);
        const std::string_view text = key.substr(0, key.find('.'));
        argument = text;
        key.remove_prefix(text.size());
    }
    return key == pattern ? std::optional<Arguments>(arguments) : std::nullopt;
}

template <class Table> GivenCommand findIn(const Table &commands, std::string_view key) {
    for (const Command &command : commands)
        if (const std::optional<Arguments> arguments = match(command.pattern, key))
            return {&command, *arguments};
    return {};
}

/// What the client lacks for a command.
Status lackedFor(Needs needs, const CommandContext &context) {
    if (needs >= Needs::admin && !context.admin.heldBy(context.client))
        return kAdminRequired;
    if (needs >= Needs::zoningLock && !context.zoningSession.heldBy(context.client))
        return kLockRequired;
    if (needs >= Needs::zoningEdit && !context.zoningSession.isOpen())
        return kEditRequired;
    return kOk;
}

} // namespace

GivenCommand findCommand(std::string_view key) {
    return isZoningKey(key) ? findIn(zoningCommands(), key) : findIn(kCommands, key);
}

Status runCommand(const GivenCommand &command, CommandContext &context) {
    const Status lacked = lackedFor(command.row->needs, context);
    return lacked == kOk ? command.row->run(context, command.arguments) : lacked;
}

bool isZoningKey(std::string_view key) {
    constexpr std::string_view kBranch = "Cmd.Zoning.";
    return key.substr(0, kBranch.size()) == kBranch;
}

} // namespace sim
