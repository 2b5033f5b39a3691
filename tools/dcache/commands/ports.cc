#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <map>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

/// What the cache knows of a port.
struct Port {
    unsigned short index;
    bool isPresent;
    Wwn name; ///< zero when not known
    unsigned short status;
    unsigned short type;
    unsigned short hardwareType;
    bool hasDiagnostics; ///< and only then are the next three known
    unsigned short format;
    std::string vendorOui;
    std::string vendorSerial;

    std::string state() const { return isPresent ? portStateWord(status) : kAbsent; }
};

Port readPort(const CacheLock &cache, unsigned short index) {
    const std::string text = std::to_string(index);
    return {
        index,
        cache->isPortPresent(text),
        cache->calcPortWorldWideName(cache->getRootSwitchWorldWideName(), index),
        cache->getPortStatus(text),
        cache->getPortType(text),
        cache->getPortHWType(text),
        cache->getTransceiverDDMSupported(text),
        cache->getTransceiverFormat(text),
        cache->getTransceiverVendorOUI(text),
        cache->getTransceiverVendorSN(text),
    };
}

std::vector<Port> readPorts(const CacheLock &cache) {
    std::vector<Port> ports;
    for (unsigned short index = 0; index < cache->getMaxRootPorts(); ++index)
        ports.push_back(readPort(cache, index));
    return ports;
}

Cell wwnCell(const Port &port) {
    const std::string name = colonForm(port.name);
    return port.name == Wwn() ? emptyCell("-") : Cell{name, name};
}

Tone toneOf(const std::string &state) {
    static const std::map<std::string, Tone> tones = {
        {"online", Tone::good}, {"error", Tone::bad}, {"diagnostics", Tone::accent}};
    const auto tone = tones.find(state);
    return tone != tones.end() ? tone->second : Tone::faint;
}

Cell stateCell(const Port &port) {
    const std::string word = port.state();
    return {word, fmt::format("{} ({})", word, port.status), toneOf(word)};
}

/// What is known of ports that are there: an absent one may still have what it had when it was.
Cell ofPresent(const Port &port, const std::string &word) {
    return port.isPresent ? Cell{word, printable(word)} : emptyCell("-");
}

Cell ofTransceiver(const Port &port, const std::string &word) {
    return port.hasDiagnostics ? Cell{word, printable(word)} : emptyCell("-");
}

Cell diagnosticsCell(const Port &port) {
    return {port.hasDiagnostics, port.hasDiagnostics ? "yes" : "no"};
}

/// One thing to tell of a port: its key, its title in the table of all ports, its label in the facts of one. Null: for
/// programs and scripts only.
struct PortField {
    const char *key;
    const char *title;
    const char *label;
    Cell (*cell)(const Port &port);
};

// clang-format off
constexpr PortField kFields[] = {
    {"index", "PORT", "port", [](const Port &port) { return Cell{port.index, std::to_string(port.index)}; }},
    {"wwn", "WWN", "WWN", wwnCell},
    {"operationalStatus", nullptr, nullptr, [](const Port &port) { return Cell{StatusList{port.status}, ""}; }},
    {"state", "STATE", "state", stateCell},
    {"type", "TYPE", "type", [](const Port &port) { return ofPresent(port, portTypeWord(port.type)); }},
    {"cimType", nullptr, nullptr, [](const Port &port) { return Cell{port.type, ""}; }},
    {"hardwareType", "HW", "hardware type",
     [](const Port &port) { return ofPresent(port, hardwareTypeWord(port.hardwareType)); }},
    {"cimHardwareType", nullptr, nullptr, [](const Port &port) { return Cell{port.hardwareType, ""}; }},
    {"transceiverFormat", "FORMAT", "transceiver format",
     [](const Port &port) { return ofTransceiver(port, transceiverFormatWord(port.format)); }},
    {"vendorOui", "OUI", "vendor OUI", [](const Port &port) { return ofTransceiver(port, port.vendorOui); }},
    {"vendorSerial", "SERIAL", "vendor serial", [](const Port &port) { return ofTransceiver(port, port.vendorSerial); }},
    {"diagnostics", "DIAG", "diagnostics", diagnosticsCell},
};
// clang-format on

bool isWanted(const Port &port, const PortFilter &filter) {
    if (filter.state)
        return port.state() == *filter.state;
    return port.isPresent || filter.all;
}

/// "24 ports: 16 online, 8 offline."
std::string summary(const std::vector<Port> &ports, bool absentAreListed) {
    std::string states;
    for (const std::string &word : portStateWords()) {
        const auto count =
            std::count_if(ports.begin(), ports.end(), [&word](const Port &port) { return port.state() == word; });
        if (count == 0)
            continue;
        states += fmt::format("{}{} {}", states.empty() ? "" : ", ", count, word);
        if (word == kAbsent && !absentAreListed)
            states += " (--all lists them)";
    }
    return fmt::format("{} {}: {}.", ports.size(), ports.size() == 1 ? "port" : "ports", states);
}

/// The index that the digits name, 65535 when they name more.
unsigned short indexOf(const std::string &digits) {
    unsigned short index = kNoPort;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    return result.ec == std::errc() ? index : kNoPort;
}

} // namespace

Report showPorts(const PortFilter &filter) {
    loadOnce(DataCacheArea::ports);
    const CacheLock cache;
    const std::vector<Port> ports = readPorts(cache);
    Listing listing{"ports",
                    {},
                    {},
                    filter.state ? fmt::format("No port is in state \"{}\".", *filter.state) : "No port is there."};
    for (const PortField &field : kFields)
        listing.columns.push_back({field.key, field.title});
    for (const Port &port : ports) {
        if (!isWanted(port, filter))
            continue;
        std::vector<Cell> &row = listing.rows.emplace_back();
        for (const PortField &field : kFields)
            row.push_back(field.cell(port));
    }
    Report report;
    report.listings = {listing};
    report.notes = {summary(ports, filter.all || filter.state)};
    return report;
}

Report showPort(const std::string &digits) {
    loadOnce(DataCacheArea::ports);
    const CacheLock cache;
    const unsigned short index = indexOf(digits);
    const unsigned short count = cache->getMaxRootPorts();
    if (index >= count)
        throw Failure(fmt::format("there is no port {}; the switch has ports 0 to {}", digits, count - 1));
    const Port port = readPort(cache, index);
    Report report;
    for (const PortField &field : kFields)
        report.facts.push_back({field.key, field.label, field.cell(port)});
    if (port.isPresent && !port.hasDiagnostics)
        report.notes = {"No transceiver, or one without digital diagnostics: the cache keeps no data of it."};
    return report;
}

} // namespace dcache
