#include "tests/scenario/Picture.h"

#include <array>
#include <set>
#include <stdexcept>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace scenario {

namespace {

constexpr unsigned kPorts = 256;
constexpr unsigned kSlots = 33;
constexpr unsigned kUnits = 17;
constexpr unsigned kDomains = 240;

/// What a query answers, or what it throws.
template <class Query> std::string answerOf(Query query) {
    try {
        return fmt::format("{}", query());
    } catch (const std::out_of_range &error) {
        return std::string("throws ") + error.what();
    }
}

std::string nameOf(const SwitchCache *item) {
    return item != nullptr ? item->getWwn() : std::string();
}

std::string textOf(const PortCache &port) {
    return port.isNull() ? std::string("-") : fmt::format("{}={}", port.getWwn(), port._port_index);
}

void addSwitch(Lines &lines, const DataCache &cache) {
    lines["switch.name"] = cache.getRootSwitchWwn();
    lines["switch.sameName"] = fmt::format("{}", cache.getRootSwitchWorldWideName() == Wwn(cache.getRootSwitchWwn()));
    lines["switch.status"] = fmt::format("{}", fmt::join(cache.getRootSwitchStatus(), " "));
    lines["switch.transparent"] = fmt::format("{}", cache.isTransparentSwitch());
    lines["switch.fcoe"] = fmt::format("{}", cache.isFCOESwitch());
    lines["switch.passthrough"] = fmt::format("{}", cache.isEthernetPassthroughSwitch());
    lines["switch.domain"] = fmt::format("{}", cache.getRootSwitchDomainID());
    lines["accounts"] = fmt::format("{}", fmt::join(cache.getUserAccounts(), " "));
}

void addChassis(Lines &lines, const DataCache &cache) {
    lines["chassis.faults"] = fmt::format("{}", fmt::join(cache.getSwitchFaults(), " "));
    lines["chassis.slots"] = fmt::format("{}", cache.getRootMaxSlots());
    lines["chassis.supplies"] = fmt::format("{}", cache.getRootPowerSupplyCount());
    lines["chassis.fans"] = fmt::format("{}", cache.getRootFanCount());
    for (unsigned short i = 0; i < kUnits; ++i) {
        lines[fmt::format("supply.{}", i)] = fmt::format("{}", cache.getRootPowerSupplyStatus(i));
        lines[fmt::format("fan.{}", i)] = fmt::format("{}", cache.getRootFanStatus(i));
    }
}

void addBlades(Lines &lines, const DataCache &cache) {
    lines["blades.slots"] = fmt::format("{}", cache.getRootSlotCount());
    lines["blades.first"] = fmt::format("{}", cache.getFirstRootIOBladeIndex());
    for (unsigned short slot = 0; slot < kSlots; ++slot) {
        const auto line = [slot](const char *what) { return fmt::format("slot.{}.{}", slot, what); };
        lines[line("kind")] = fmt::format("{}", cache.getRootBladeKind(slot));
        lines[line("status")] = fmt::format("{}", cache.getRootBladeStatus(slot));
        lines[line("temperatureSensors")] = fmt::format("{}", cache.getRootTemperatureSensorCount(slot));
        lines[line("voltageSensors")] = fmt::format("{}", cache.getRootVoltageSensorCount(slot));
        lines[line("next")] = answerOf([&] { return cache.getNextRootIOBladeIndex(slot); });
    }
}

/// What is in a port's cage; nothing for a port without diagnostics.
std::string transceiverOf(DataCache &cache, const std::string &index) {
    return fmt::format("{} {} {} {}", cache.getTransceiverDDMSupported(index), cache.getTransceiverFormat(index),
                       cache.getTransceiverVendorOUI(index), cache.getTransceiverVendorSN(index));
}

void addPort(Lines &lines, DataCache &cache, unsigned short port) {
    const std::string index = fmt::format("{}", port);
    const auto line = [&index](const char *what) { return fmt::format("port.{}.{}", index, what); };
    const std::string theSwitch = cache.getRootSwitchWwn();
    const std::string name = cache.calcPortWwn(theSwitch, index);
    lines[line("present")] = fmt::format("{}", cache.isPortPresent(index));
    lines[line("type")] = fmt::format("{}", cache.getPortType(index));
    lines[line("hardware")] = fmt::format("{}", cache.getPortHWType(index));
    lines[line("status")] = fmt::format("{}", cache.getPortStatus(index));
    lines[line("transceiver")] = transceiverOf(cache, index);
    lines[line("next")] = cache.getNextRootPortIndex(index);
    lines[line("name")] =
        fmt::format("{} {}", name, cache.calcPortWorldWideName(cache.getRootSwitchWorldWideName(), port).tostring());
    lines[line("index")] = name.empty()
                               ? std::string()
                               : fmt::format("{} {}", cache.calcPortIndex(theSwitch, name),
                                             cache.calcPortIndex(cache.getRootSwitchWorldWideName(), Wwn(name)));
}

void addPorts(Lines &lines, DataCache &cache) {
    lines["ports.count"] = fmt::format("{}", cache.getMaxRootPorts());
    lines["ports.first"] = cache.getFirstRootPortIndex();
    for (unsigned short port = 0; port < kPorts; ++port)
        addPort(lines, cache, port);
}

// ---- the fabric ---------------------------------------------------------------------------------------

/// The ports in the order of the walk, which ends even where the walk would not.
std::vector<PortCache> walkOver(const SwitchCache &item) {
    std::vector<PortCache> ports;
    for (PortCache port = item.getFirstPort(); !port.isNull() && ports.size() <= kPorts; port = item.getNextPort(port))
        ports.push_back(port);
    return ports;
}

std::string portsOf(const SwitchCache &item) {
    std::multiset<std::string> ports;
    for (const PortCache &port : walkOver(item))
        ports.insert(textOf(port));
    return fmt::format("{}", fmt::join(ports, " "));
}

/// The ports that look-ups by each of their names and indexes find, that is, all of them.
std::string foundPorts(DataCache &cache, const SwitchCache &item) {
    std::set<std::string> found;
    for (const PortCache &port : walkOver(item)) {
        const std::string name = port.getWwn();
        const std::string index = cache.calcPortIndex(item.getWwn(), name);
        found.insert(fmt::format("{} {} {} {}", textOf(item.getPortByWwn(name)),
                                 textOf(item.getPortByWorldWideName(Wwn(name))), index,
                                 cache.calcPortWwn(item.getWwn(), index)));
    }
    return fmt::format("{}", fmt::join(found, "; "));
}

/// The switches that look-ups by the names of a switch's ports find.
std::string ownersOf(const FabricCache &fabric, const SwitchCache &item) {
    std::set<std::string> owners;
    for (const PortCache &port : walkOver(item))
        owners.insert(nameOf(fabric.getSwitchByPortWwn(port.getWwn())));
    return fmt::format("{}", fmt::join(owners, " "));
}

/// Look-ups by the indexes that a link-state database might use.
std::string foundByIndex(const SwitchCache &item) {
    constexpr std::array<const char *, 8> indexes = {"0", "1", "7", "0x10", "017", "255", "256", "300"};
    std::vector<std::string> found;
    found.reserve(indexes.size());
    for (const char *index : indexes)
        found.push_back(textOf(item.getPortByLSDBPortIndex(index)));
    return fmt::format("{}", fmt::join(found, " "));
}

/// The base port name; its port field is replaced whenever it is used.
std::string baseOf(const SwitchCache &item) {
    Wwn base = item._port_wwn;
    if (base != Wwn())
        base.Set_Port(0);
    return base.tostring();
}

void addMember(Lines &lines, DataCache &cache, const FabricCache &fabric, const SwitchCache &item) {
    const auto line = [&item](const char *what) { return fmt::format("member.{}.{}", item.getWwn(), what); };
    lines[line("found")] = nameOf(fabric.getSwitchByWwn(item.getWwn()));
    lines[line("domain")] = fmt::format("{}", item.getDomainID());
    lines[line("local")] = fmt::format("{}", item.isLocal());
    lines[line("status")] = fmt::format("{}", item.getStatus());
    lines[line("stale")] = fmt::format("{}", item._stale);
    lines[line("timeout")] = fmt::format("{}", item._mserver_timeout);
    lines[line("errors")] = fmt::format("{}", item._mserver_errors);
    lines[line("base")] = baseOf(item);
    lines[line("ports")] = portsOf(item);
    lines[line("portCount")] = fmt::format("{}", item._num_ports);
    lines[line("foundPorts")] = foundPorts(cache, item);
    lines[line("owners")] = ownersOf(fabric, item);
    lines[line("foundByIndex")] = foundByIndex(item);
}

void addFabric(Lines &lines, DataCache &cache) {
    const FabricCache &fabric = *cache.getFabric(1);
    lines["fabric.name"] = fabric.getFabricWwn();
    lines["fabric.sameName"] = fmt::format("{}", fabric.getFabricWorldWideName() == Wwn(fabric.getFabricWwn()));
    lines["fabric.mode"] = fmt::format("{}", fabric.getOperatingMode());
    lines["fabric.unused"] = fmt::format("{} {} {} {} {}", fabric._second_name.tostring(), fabric._first_flag,
                                         fabric._second_flag, fabric._values[0], fabric._values[1]);
    unsigned count = 0;
    for (const SwitchCache *item = fabric.getFirstSwitch(); item != nullptr; item = fabric.getNextSwitch(item)) {
        addMember(lines, cache, fabric, *item);
        ++count;
    }
    lines["fabric.countFits"] = fmt::format("{}", count == fabric.getSwitchCount());
    for (unsigned domain = 0; domain < kDomains; ++domain) {
        const std::string found = nameOf(fabric.getSwitchByDomainID(fmt::format("{}", domain)));
        if (!found.empty())
            lines[fmt::format("domain.{}", domain)] = found;
    }
}

void addAreas(Lines &lines, const DataCache &cache) {
    constexpr std::array<const char *, 7> names = {"switch",   "chassis", "blades", "ports",
                                                   "accounts", "fabric",  "zoning"};
    for (unsigned area = 0; area < names.size(); ++area)
        lines[fmt::format("good.{}", names[area])] =
            fmt::format("{}", cache.isAreaGood(static_cast<DataCacheArea>(area)));
    lines["good.all"] = fmt::format("{}", cache.isCacheReady());
    lines["asked"] = fmt::format("{}", cache.workToDo());
    lines["queued"] = fmt::format("{}", cache.getQueuedNotificationCount());
}

} // namespace

const std::string &lineOf(const Lines &lines, const std::string &name) {
    static const std::string none = kNoLine;
    const auto found = lines.find(name);
    return found != lines.end() ? found->second : none;
}

Lines pictureOf(DataCache &cache) {
    Lines lines;
    addAreas(lines, cache);
    addSwitch(lines, cache);
    addChassis(lines, cache);
    addBlades(lines, cache);
    addPorts(lines, cache);
    addFabric(lines, cache);
    return lines;
}

} // namespace scenario
