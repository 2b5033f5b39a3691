#include "tools/dcache/events.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "tools/dcache/words.h"

namespace dcache {
namespace {

using Fields = std::vector<Field>;

Field field(const char *name, const Wwn &value) {
    return {name, colonForm(value)};
}
template <class Plain> Field field(const char *name, const Plain &value) {
    return {name, value};
}

/// " on switch 10:00:...", or nothing for the switch that is watched.
std::string elsewhere(const Wwn &name, const Surroundings &around) {
    return name == around.ownSwitch ? "" : " on switch " + colonForm(name);
}

/// "the fabric" for the one of the switch that is watched, "fabric 10:00:..." for any other.
std::string fabricName(const Wwn &name, const Surroundings &around) {
    return name == around.ownFabric ? "the fabric" : "fabric " + colonForm(name);
}

/// "this switch" for the one that is watched, "switch 10:00:..." for any other.
std::string switchName(const Wwn &name, const Surroundings &around) {
    return name == around.ownSwitch ? "this switch" : "switch " + colonForm(name);
}

/// The name server of the fabric that is watched, or of another.
std::string nameServer(const Wwn &fabric, const Surroundings &around) {
    return fabric == around.ownFabric ? "the name server" : "the name server of fabric " + colonForm(fabric);
}

/// Supplies of a chassis are numbered from 1. A number that none of them has is the slot of a supply blade.
bool isSupplyBlade(unsigned short number, const Surroundings &around) {
    return number == 0 || number > around.powerSupplies;
}

/// "port 5" for a port of the switch that is watched, "port 20:05:..." for any other.
std::string portName(const Wwn &owner, const Wwn &port, const Surroundings &around) {
    const bool isOwn = owner == around.ownSwitch && around.portIndex;
    const unsigned short index = isOwn ? around.portIndex(port) : kNoPort;
    return index != kNoPort ? fmt::format("port {}", index) : "port " + colonForm(port);
}

std::string portState(const StatusList &status) {
    return status.empty() ? "not read yet" : portStateWord(status.front());
}

// ---- fabric and switches ----------------------------------------------------------------------------

std::string words(const DCEventFabricAdd &event, const Surroundings &) {
    return fmt::format("now part of fabric {}", colonForm(event.fabricWwn));
}
Fields fields(const DCEventFabricAdd &event) {
    return {field("fabricWwn", event.fabricWwn)};
}

std::string words(const DCEventFabricRemove &event, const Surroundings &) {
    return fmt::format("no longer part of fabric {}", colonForm(event.fabricWwn));
}
Fields fields(const DCEventFabricRemove &event) {
    return {field("fabricWwn", event.fabricWwn)};
}

std::string words(const DCEventFabricChange &event, const Surroundings &around) {
    return fmt::format("switches {} {}", event.added ? "joined" : "left", fabricName(event.fabricWwn, around));
}
Fields fields(const DCEventFabricChange &event) {
    return {field("fabricWwn", event.fabricWwn), field("added", event.added)};
}

std::string words(const DCEventSwitchAdd &event, const Surroundings &around) {
    return fmt::format("{} joined {}", switchName(event.switchWwn, around), fabricName(event.fabricWwn, around));
}
Fields fields(const DCEventSwitchAdd &event) {
    return {field("fabricWwn", event.fabricWwn), field("switchWwn", event.switchWwn)};
}

std::string words(const DCEventSwitchRemove &event, const Surroundings &around) {
    return fmt::format("{} left {}", switchName(event.switchWwn, around), fabricName(event.fabricWwn, around));
}
Fields fields(const DCEventSwitchRemove &event) {
    return {field("fabricWwn", event.fabricWwn), field("switchWwn", event.switchWwn)};
}

std::string words(const DCEventSwitchStatusChange &event, const Surroundings &around) {
    return fmt::format("switch status {}{}", statusChange(event.prevStatus, event.newStatus),
                       elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventSwitchStatusChange &event) {
    return {field("switchWwn", event.switchWwn), field("principalWwn", event.principalWwn),
            field("prevStatus", event.prevStatus), field("newStatus", event.newStatus)};
}

// ---- blades, fans, power supplies, processors -------------------------------------------------------

template <class Event> Fields slotFields(const Event &event) {
    return {field("switchWwn", event.switchWwn), field("slot", event.slot)};
}

std::string words(const DCEventBladeAdd &event, const Surroundings &around) {
    return fmt::format("I/O blade inserted in slot {}{}", event.slot, elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventBladeAdd &event) {
    return slotFields(event);
}

std::string words(const DCEventBladeRemove &event, const Surroundings &around) {
    return fmt::format("I/O blade removed from slot {}{}", event.slot, elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventBladeRemove &event) {
    return slotFields(event);
}

std::string words(const DCEventFanAdd &event, const Surroundings &around) {
    return fmt::format("fan blade inserted in slot {}{}", event.slot, elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventFanAdd &event) {
    return slotFields(event);
}

std::string words(const DCEventFanRemove &event, const Surroundings &around) {
    return fmt::format("fan blade removed from slot {}{}, {} left", event.slot, elsewhere(event.switchWwn, around),
                       event.count);
}
Fields fields(const DCEventFanRemove &event) {
    return {field("switchWwn", event.switchWwn), field("slot", event.slot), field("count", event.count)};
}

std::string words(const DCEventPowerSupplyAdd &event, const Surroundings &around) {
    const std::string place = elsewhere(event.switchWwn, around);
    if (isSupplyBlade(event.number, around))
        return fmt::format("power supply blade inserted in slot {}{}", event.number, place);
    return fmt::format("power supply {} installed{}", event.number, place);
}
Fields fields(const DCEventPowerSupplyAdd &event) {
    return {field("switchWwn", event.switchWwn), field("number", event.number)};
}

std::string words(const DCEventPowerSupplyRemove &event, const Surroundings &around) {
    const std::string place = elsewhere(event.switchWwn, around);
    if (isSupplyBlade(event.number, around))
        return fmt::format("power supply blade removed from slot {}{}, {} left", event.number, place, event.count);
    return fmt::format("power supply {} removed{}, {} of {} good", event.number, place, event.count,
                       around.powerSupplies);
}
Fields fields(const DCEventPowerSupplyRemove &event) {
    return {field("switchWwn", event.switchWwn), field("number", event.number), field("count", event.count)};
}

std::string words(const DCEventPowerSupplyFail &event, const Surroundings &around) {
    return fmt::format("power supply {} failed{}, {} of {} good", event.number, elsewhere(event.switchWwn, around),
                       event.count, around.powerSupplies);
}
Fields fields(const DCEventPowerSupplyFail &event) {
    return {field("switchWwn", event.switchWwn), field("number", event.number), field("count", event.count)};
}

std::string words(const DCEventCPUAdd &event, const Surroundings &around) {
    return fmt::format("CPU blade inserted in slot {}{}", event.slot, elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventCPUAdd &event) {
    return slotFields(event);
}

std::string words(const DCEventCPURemove &event, const Surroundings &around) {
    return fmt::format("CPU blade removed from slot {}{}", event.slot, elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventCPURemove &event) {
    return slotFields(event);
}

// ---- ports ------------------------------------------------------------------------------------------

template <class Event> Fields portFields(const Event &event) {
    return {field("ownerWwn", event.ownerWwn), field("portWwn", event.portWwn), field("origin", event.origin)};
}

std::string words(const DCEventPortAdd &event, const Surroundings &around) {
    if (event.origin == 0)
        return fmt::format("{} appeared{}", portName(event.ownerWwn, event.portWwn, around),
                           elsewhere(event.ownerWwn, around));
    return fmt::format("port {} entered {}", colonForm(event.portWwn), nameServer(event.ownerWwn, around));
}
Fields fields(const DCEventPortAdd &event) {
    return portFields(event);
}

std::string words(const DCEventPortRemove &event, const Surroundings &around) {
    return fmt::format("port {} left {}", colonForm(event.portWwn), nameServer(event.ownerWwn, around));
}
Fields fields(const DCEventPortRemove &event) {
    return portFields(event);
}

std::string words(const DCEventPortStatusChange &event, const Surroundings &around) {
    return fmt::format("{} went from {} to {}{}", portName(event.switchWwn, event.portWwn, around),
                       portState(event.prevStatus), portState(event.newStatus), elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventPortStatusChange &event) {
    return {field("switchWwn", event.switchWwn), field("portWwn", event.portWwn), field("fabricWwn", event.fabricWwn),
            field("prevStatus", event.prevStatus), field("newStatus", event.newStatus)};
}

// ---- accounts and logins ----------------------------------------------------------------------------

std::string words(const DCEventUserAcctAdd &event, const Surroundings &around) {
    return fmt::format("user account {} added{}", inQuotes(event.name), elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventUserAcctAdd &event) {
    return {field("switchWwn", event.switchWwn), field("name", event.name)};
}

std::string words(const DCEventUserAcctRemove &event, const Surroundings &around) {
    return fmt::format("user account {} removed{}", inQuotes(event.name), elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventUserAcctRemove &event) {
    return {field("switchWwn", event.switchWwn), field("name", event.name)};
}

std::string words(const DCEventUserPasswdChg &event, const Surroundings &around) {
    return fmt::format("password of user {} changed{}", inQuotes(event.user), elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventUserPasswdChg &event) {
    return {field("switchWwn", event.switchWwn), field("user", event.user)};
}

std::string words(const DCEventUserLoginFailure &event, const Surroundings &around) {
    return fmt::format("login of user {} failed{}", inQuotes(event.user), elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventUserLoginFailure &event) {
    return {field("switchWwn", event.switchWwn), field("user", event.user)};
}

// ---- zoning -----------------------------------------------------------------------------------------

std::string zonesetWords(const std::string &now, const std::string &before) {
    if (now.empty())
        return before.empty() ? "no zone set is active"
                              : fmt::format("no zone set is active, was {}", inQuotes(before));
    if (before.empty())
        return fmt::format("zone set {} is active now", inQuotes(now));
    if (now == before)
        return fmt::format("active zone set {} changed", inQuotes(now));
    return fmt::format("zone set {} is active now, was {}", inQuotes(now), inQuotes(before));
}

// The switch of the zoning events is the fabric's principal: it is not where the change was made, so words leave it out.
std::string words(const DCEventActiveZonesetChange &event, const Surroundings &) {
    return zonesetWords(event.zoneset, event.prevZoneset);
}
Fields fields(const DCEventActiveZonesetChange &event) {
    return {field("switchWwn", event.switchWwn), field("zoneset", event.zoneset),
            field("prevZoneset", event.prevZoneset)};
}

std::string words(const DCEventZoningDBChange &, const Surroundings &) {
    return "zoning database changed";
}
Fields fields(const DCEventZoningDBChange &event) {
    return {field("switchWwn", event.switchWwn)};
}

// ---- alarms and the cache itself --------------------------------------------------------------------

std::string words(const DCEventEnvEvent &event, const Surroundings &around) {
    const std::string what = event.kind == "overtemp" ? "too hot" : printable(event.kind);
    const std::string where = event.detail == "unknown" ? "unknown sensor" : printable(event.detail);
    return fmt::format("{} alarm: {}, {}{}", printable(event.category), what, where,
                       elsewhere(event.switchWwn, around));
}
Fields fields(const DCEventEnvEvent &event) {
    return {field("switchWwn", event.switchWwn), field("category", event.category), field("kind", event.kind),
            field("detail", event.detail)};
}

std::string words(const DCEventCIMChange &, const Surroundings &) {
    return "CIM configuration changed";
}
Fields fields(const DCEventCIMChange &) {
    return {};
}

std::string words(const DCEventDataCacheUpdateComplete &, const Surroundings &) {
    return "every area of the cache is up to date";
}
Fields fields(const DCEventDataCacheUpdateComplete &) {
    return {};
}

// ---- the table --------------------------------------------------------------------------------------

struct EventRow {
    int32_t type;
    const char *name;
    std::string (*words)(const DataCacheEvent &, const Surroundings &);
    Fields (*fields)(const DataCacheEvent &);
};

template <class Event> constexpr EventRow row(int32_t type, const char *name) {
    return {type, name,
            [](const DataCacheEvent &event, const Surroundings &around) {
                return words(static_cast<const Event &>(event), around);
            },
            [](const DataCacheEvent &event) { return fields(static_cast<const Event &>(event)); }};
}

constexpr int32_t kUpdateComplete = 33;

constexpr std::array<EventRow, 27> kEvents = {
    row<DCEventFabricAdd>(1, "FabricAdd"),
    row<DCEventFabricRemove>(2, "FabricRemove"),
    row<DCEventFabricChange>(3, "FabricChange"),
    row<DCEventSwitchAdd>(4, "SwitchAdd"),
    row<DCEventSwitchRemove>(5, "SwitchRemove"),
    row<DCEventSwitchStatusChange>(6, "SwitchStatusChange"),
    row<DCEventBladeAdd>(7, "BladeAdd"),
    row<DCEventBladeRemove>(8, "BladeRemove"),
    row<DCEventPortAdd>(10, "PortAdd"),
    row<DCEventPortRemove>(11, "PortRemove"),
    row<DCEventPortStatusChange>(12, "PortStatusChange"),
    row<DCEventFanAdd>(16, "FanAdd"),
    row<DCEventFanRemove>(17, "FanRemove"),
    row<DCEventPowerSupplyAdd>(19, "PowerSupplyAdd"),
    row<DCEventPowerSupplyRemove>(20, "PowerSupplyRemove"),
    row<DCEventPowerSupplyFail>(21, "PowerSupplyFail"),
    row<DCEventCPUAdd>(22, "CPUAdd"),
    row<DCEventCPURemove>(23, "CPURemove"),
    row<DCEventUserAcctAdd>(25, "UserAcctAdd"),
    row<DCEventUserAcctRemove>(26, "UserAcctRemove"),
    row<DCEventActiveZonesetChange>(27, "ActiveZonesetChange"),
    row<DCEventZoningDBChange>(28, "ZoningDBChange"),
    row<DCEventUserPasswdChg>(29, "UserPasswdChg"),
    row<DCEventUserLoginFailure>(30, "UserLoginFailure"),
    row<DCEventEnvEvent>(31, "EnvEvent"),
    row<DCEventCIMChange>(32, "CIMChange"),
    row<DCEventDataCacheUpdateComplete>(kUpdateComplete, "DataCacheUpdateComplete"),
};

constexpr bool ascending() {
    for (size_t i = 1; i < kEvents.size(); ++i)
        if (kEvents[i - 1].type >= kEvents[i].type)
            return false;
    return true;
}
static_assert(ascending(), "one row per event type, in order");

} // namespace

EventDescription describe(const DataCacheEvent &event, const Surroundings &surroundings) {
    const auto found = std::find_if(kEvents.begin(), kEvents.end(),
                                    [&event](const EventRow &candidate) { return candidate.type == event.type; });
    if (found == kEvents.end())
        return {event.type, "Unknown", fmt::format("event of unknown type {}", event.type), {}};
    return {event.type, found->name, found->words(event, surroundings), found->fields(event),
            event.type != kUpdateComplete};
}

} // namespace dcache
