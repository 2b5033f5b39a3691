#include <fmt/format.h>
#include <map>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/topology/graph.h"
#include "tools/dcache/topology/linkstate.h"
#include "tools/dcache/topology/text.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr unsigned short kTheFabric = 1;

Cell count(size_t number) {
    return {number, std::to_string(number)};
}

Cell yesOrNot(bool value) {
    return value ? Cell{true, "yes", Tone::accent} : Cell{false, "-", Tone::faint};
}

/// How the fabric's management server answers for a switch. It is not asked about the local one.
Cell managementServerCell(const SwitchCache &device) {
    if (device.isLocal())
        return emptyCell("-");
    if (device._mserver_timeout != 0)
        return {"timed out", "timed out", Tone::bad};
    if (device._mserver_errors != 0)
        return {"failing", counted(device._mserver_errors, "error"), Tone::bad};
    return {"answers", "answers", Tone::good};
}

struct SwitchField {
    const char *key;
    const char *title; ///< in the table of all switches
    const char *label; ///< in the facts of one
    Cell (*cell)(const SwitchCache &device, const FabricCache &fabric);
};

// clang-format off
constexpr SwitchField kFields[] = {
    {"domain", "DOMAIN", "domain ID", [](const SwitchCache &device, const FabricCache &) { return count(device.getDomainID()); }},
    {"wwn", "WWN", "WWN",
     [](const SwitchCache &device, const FabricCache &) {
         const std::string name = colonForm(device.getWorldWideName());
         return Cell{name, name};
     }},
    {"local", "LOCAL", "local", [](const SwitchCache &device, const FabricCache &) { return yesOrNot(device.isLocal()); }},
    {"principal", "PRINCIPAL", "principal",
     [](const SwitchCache &device, const FabricCache &fabric) {
         return yesOrNot(device.getWorldWideName() == fabric.getFabricWorldWideName());
     }},
    {"portCount", "PORTS", "ports", [](const SwitchCache &device, const FabricCache &) { return count(device._num_ports); }},
    {"managementServer", "MANAGEMENT SERVER", "management server",
     [](const SwitchCache &device, const FabricCache &) { return managementServerCell(device); }},
    {"managementServerErrors", nullptr, nullptr,
     [](const SwitchCache &device, const FabricCache &) { return count(device._mserver_errors); }},
};
// clang-format on

/// The switches in the order of their domain IDs.
std::multimap<unsigned, const SwitchCache *> switchesOf(const FabricCache &fabric) {
    std::multimap<unsigned, const SwitchCache *> switches;
    for (const SwitchCache *device = fabric.getFirstSwitch(); device != nullptr; device = fabric.getNextSwitch(device))
        switches.emplace(device->getDomainID(), device);
    return switches;
}

Cell nameOf(const FabricCache &fabric) {
    const std::string name = colonForm(fabric.getFabricWorldWideName());
    return fabric.getFabricWorldWideName() == Wwn() ? emptyCell("none") : Cell{name, name, Tone::accent};
}

std::vector<std::string> remarksOn(const CacheLock &cache, const FabricCache &fabric) {
    std::vector<std::string> remarks;
    if (cache->isTransparentSwitch())
        remarks.emplace_back("The switch is in transparent mode, and so in no fabric.");
    for (const auto &[domain, device] : switchesOf(fabric))
        if (device->_mserver_timeout != 0)
            remarks.push_back(fmt::format("The management server took too long for domain {}: it is not asked for its "
                                          "ports again.",
                                          domain));
    return remarks;
}

/// The index of the port at which a device is logged in: the middle one of its address' three bytes. -1 when the
/// address is not of this switch, or no address.
int portOf(const std::string &address, unsigned domain) {
    constexpr size_t digits = 6;
    if (address.size() != digits || address.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos)
        return -1;
    const unsigned long number = std::stoul(address, nullptr, 16);
    return number >> 16U == domain ? static_cast<int>(number >> 8U & 0xFFU) : -1;
}

/// The ports with the devices at them; takes the devices that it has placed.
Listing portsWithDevices(const SwitchCache &device, std::multimap<int, std::string> &devices) {
    Listing listing{
        "ports", {{"index", "PORT"}, {"wwn", "WWN"}, {"devices", "DEVICES"}}, {}, "No ports are known of this switch."};
    for (PortCache port = device.getFirstPort(); !port.isNull(); port = device.getNextPort(port)) {
        const std::string name = colonForm(port._wwn);
        Value::List names;
        std::string text;
        const auto [first, last] = devices.equal_range(port._port_index);
        for (auto at = first; at != last; ++at) {
            names.emplace_back(at->second);
            text += (text.empty() ? "" : ", ") + printable(at->second);
        }
        devices.erase(first, last);
        const Cell here = text.empty() ? Cell{names, "-", Tone::faint} : Cell{names, text};
        listing.rows.push_back({count(port._port_index), {name, name}, here});
    }
    return listing;
}

std::string domainsOf(const FabricCache &fabric) {
    std::vector<unsigned> domains;
    for (const auto &[domain, device] : switchesOf(fabric))
        domains.push_back(domain);
    return ranges(domains);
}

/// Null when there is none.
const SwitchCache *findSwitch(const FabricCache &fabric, const std::string &digits) {
    constexpr int largest = 255;
    const int domain = numberIn(digits, largest);
    return domain < 0 ? nullptr : fabric.getSwitchByDomainID(std::to_string(domain));
}

} // namespace

Report showFabric() {
    loadOnce(DataCacheArea::fabric);
    const CacheLock cache;
    const FabricCache &fabric = *cache->getFabric(kTheFabric);
    Listing switches{"switches", {}, {}, "No switch is known."};
    for (const SwitchField &field : kFields)
        switches.columns.push_back({field.key, field.title});
    for (const auto &[domain, device] : switchesOf(fabric)) {
        std::vector<Cell> &row = switches.rows.emplace_back();
        for (const SwitchField &field : kFields)
            row.push_back(field.cell(*device, fabric));
    }
    Report report;
    report.facts = {{"fabricWwn", "fabric", nameOf(fabric)},
                    {"switchCount", "switches", count(fabric.getSwitchCount())}};
    report.listings = {switches};
    report.notes = remarksOn(cache, fabric);
    return report;
}

Report showFabricSwitch(const std::string &digits) {
    loadOnce(DataCacheArea::fabric);
    const CacheLock cache;
    const FabricCache &fabric = *cache->getFabric(kTheFabric);
    const SwitchCache *device = findSwitch(fabric, digits);
    if (device == nullptr)
        throw Failure(
            fmt::format("no switch of the fabric has domain ID {}; there are: {}", digits, domainsOf(fabric)));

    const std::vector<std::string> addresses = readNameServer(device->getDomainID());
    std::multimap<int, std::string> devices;
    for (const std::string &address : addresses)
        devices.emplace(portOf(address, device->getDomainID()), address);
    Report report;
    for (const SwitchField &field : kFields)
        report.facts.push_back({field.key, field.label, field.cell(*device, fabric)});
    report.facts.push_back({"devices", nullptr, {addresses, ""}});
    report.listings = {portsWithDevices(*device, devices)};
    report.notes = {addresses.empty() ? "No device is logged in."
                                      : counted(addresses.size(), "device") + " logged in."};
    for (const auto &[port, address] : devices)
        report.notes.push_back(fmt::format("Device {} is at none of these ports.", inQuotes(address)));
    return report;
}

} // namespace dcache
