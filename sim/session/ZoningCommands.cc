#include "sim/session/ZoningCommands.h"

#include <iterator>
#include <utility>

namespace sim {

namespace {

Status lockFabric(CommandContext &context, const Arguments &) {
    return context.zoningSession.lock(context.client);
}

Status unlockFabric(CommandContext &context, const Arguments &) {
    return context.zoningSession.unlock(context.client);
}

Status openEdit(CommandContext &context, const Arguments &) {
    return context.zoningSession.open(*context.zoning.defined.database);
}

Status clearEdit(CommandContext &context, const Arguments &) {
    context.zoningSession.edit() = {};
    return kOk;
}

Status saveEdit(CommandContext &context, const Arguments &) {
    ZoneDatabase edited;
    const Status status = context.zoningSession.close(edited);
    if (status == kOk)
        context.announcements = commit(context.zoning, std::move(edited));
    return status;
}

template <Status (*create)(ZoneDatabase &, const Limits &, const std::string &)>
Status createNamed(CommandContext &context, const Arguments &arguments) {
    return create(context.zoningSession.edit(), context.zoning.limits, arguments[0]);
}

/// A text that names an alias means it, whatever else it could mean.
std::optional<MemberId> memberNamed(const ZoneDatabase &database, const std::string &text) {
    return database.aliases.find(text) ? parseMember(ZOV_ZMT_ALIAS, text) : memberFromDigits(text);
}

template <Status (*add)(ZoneDatabase &, const Limits &, const std::string &, const MemberId &)>
Status addMemberTo(CommandContext &context, const Arguments &arguments) {
    ZoneDatabase &database = context.zoningSession.edit();
    const std::optional<MemberId> member = memberNamed(database, arguments[1]);
    return member ? add(database, context.zoning.limits, arguments[0], *member) : kBadMember;
}

Status addZoneTo(CommandContext &context, const Arguments &arguments) {
    return addZone(context.zoningSession.edit(), context.zoning.limits, arguments[0], arguments[1]);
}

struct ZoneType {
    const char *word;
    zov_fzs_zone_type_e type;
};

constexpr ZoneType kZoneTypes[] = {
    {"Soft", ZOV_ZT_SOFT},
    {"HardVPF", ZOV_ZT_HARDVPF},
    {"HardACL", ZOV_ZT_HARDACL},
};

Status setType(CommandContext &context, const Arguments &arguments) {
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID; // refused, unless the zone is not there either
    for (const ZoneType &candidate : kZoneTypes)
        if (arguments[1] == candidate.word)
            type = candidate.type;
    return setZoneType(context.zoningSession.edit(), arguments[0], type);
}

constexpr Command kCommands[] = {
    {"Cmd.Zoning.FabricLock.77", Needs::admin, lockFabric},
    {"Cmd.Zoning.FabricUnlock.77", Needs::admin, unlockFabric},
    {"Cmd.Zoning.EditConfig", Needs::zoningLock, openEdit},
    {"Cmd.Zoning.ClearConfig", Needs::zoningEdit, clearEdit},
    {"Cmd.Zoning.Alias.%s.Create", Needs::zoningEdit, createNamed<createAlias>},
    {"Cmd.Zoning.Alias.%s.AddZoneMember.%s", Needs::zoningEdit, addMemberTo<addAliasMember>},
    {"Cmd.Zoning.Zone.%s.Create", Needs::zoningEdit, createNamed<createZone>},
    {"Cmd.Zoning.Zone.%s.ZoneType.%s", Needs::zoningEdit, setType},
    {"Cmd.Zoning.Zone.%s.AddZoneMember.%s", Needs::zoningEdit, addMemberTo<addZoneMember>},
    {"Cmd.Zoning.ZoneSet.%s.Create", Needs::zoningEdit, createNamed<createZoneSet>},
    {"Cmd.Zoning.ZoneSet.%s.AddZone.%s", Needs::zoningEdit, addZoneTo},
    {"Cmd.Zoning.SaveConfig", Needs::zoningEdit, saveEdit},
};

} // namespace

CommandRows zoningCommands() {
    return {kCommands, std::size(kCommands)};
}

} // namespace sim
