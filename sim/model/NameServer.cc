#include "sim/model/NameServer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/model/LinkState.h"
#include "sim/model/Routing.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Devices = std::map<Place, LoggedIn>;

constexpr unsigned kPorts = 256; // the numbers of all ports are below this

constexpr size_t kLongestText = sizeof zov_event_s::text - 1;

/// The address of the device at a port: the domain, the port, and 0 where a loop would tell its devices apart.
std::string address(unsigned domain, unsigned port) {
    char text[7];
    std::snprintf(text, sizeof text, "%02X%02X00", domain & 0xFF, port & 0xFF);
    return text;
}

/// The port in an address of a domain.
std::optional<unsigned> portIn(unsigned domain, std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    if (text.size() != 6)
        return std::nullopt;
    const size_t high = digits.find(text[2]);
    const size_t low = digits.find(text[3]);
    if (high == std::string_view::npos || low == std::string_view::npos)
        return std::nullopt;
    const auto port = static_cast<unsigned>(high * 16 + low);
    return address(domain, port) == text ? std::optional<unsigned>(port) : std::nullopt;
}

/// The first device of a switch at one of its ports from this one on; the end without one.
Devices::const_iterator deviceFrom(const Switch &device, unsigned domain, unsigned port) {
    const Devices &devices = device.fabric.devices;
    const std::string name = keyOf(*memberAt(device.fabric.database, domain));
    const auto found = devices.lower_bound({name, port});
    return found != devices.end() && found->first.first == name ? found : devices.end();
}

Status statusFrom(const Switch &device, unsigned domain, unsigned port) {
    if (isTransparent(device))
        return kNotSupported;
    return deviceFrom(device, domain, port) == device.fabric.devices.end() ? kEndOfList : kOk;
}

std::string addressFrom(const Switch &device, unsigned domain, unsigned port) {
    const auto found = deviceFrom(device, domain, port);
    return found == device.fabric.devices.end() ? std::string() : address(domain, found->first.second);
}

constexpr Axis kEntries = {
    [](const Switch &, unsigned) { return kPorts; },
    [](const Switch &device, unsigned domain, unsigned port) {
        return device.fabric.devices.count({keyOf(*memberAt(device.fabric.database, domain)), port}) != 0;
    },
    [](const Switch &, unsigned domain, std::string_view text) { return portIn(domain, text); },
    [](const Switch &, unsigned domain, unsigned port) { return address(domain, port); }};

constexpr Row kRows[] = {
    {"Oper.NameServerAll.%u.FirstNsEntry", Access::readOnly, &kDerivedRule, 0,
     [](const Switch &device, Index at) { return addressFrom(device, at.first, 0); }, nullptr, &kMembers, Source::none,
     [](const Switch &device, Index at) { return statusFrom(device, at.first, 0); }},
    {"Oper.NameServerAll.%u.NextNsEntry.%s", Access::readOnly, &kDerivedRule, 0,
     [](const Switch &device, Index at) { return addressFrom(device, at.first, at.second + 1); }, nullptr, &kMembers,
     Source::none, [](const Switch &device, Index at) { return statusFrom(device, at.first, at.second + 1); },
     &kEntries},
};

std::string shown(const LoggedIn &device, unsigned domain, unsigned port) {
    return address(domain, port) + "," + device.nodeWwn + "," + device.portWwn;
}

/// The domain of a switch that is in the fabric; none for any other.
std::optional<unsigned> domainOf(const Fabric &fabric, const std::string &name) {
    for (const LinkStateRecord &record : fabric.database)
        if (keyOf(record) == name && record.hops != kOutOfReach)
            return record.domain;
    return std::nullopt;
}

Announcements changeOf(const Switch &device, int32_t code, const Place &place, const LoggedIn &entry) {
    const std::optional<unsigned> domain = domainOf(device.fabric, place.first);
    Announcements announcements;
    if (domain && !isTransparent(device))
        appendEntries(announcements, code, {shown(entry, *domain, place.second)});
    return announcements;
}

unsigned anyDomainOf(const Switch &device, const std::string &name) {
    const Peer *peer = peerNamed(device.fabric, name);
    return peer ? peer->domain : device.identity.domainId;
}

} // namespace

Rows nameServerRows() {
    return {kRows, std::size(kRows)};
}

Announcements logIn(Switch &device, const NameServerEntry &entry) {
    Fabric &fabric = device.fabric;
    const Place place = existingPlace(device, entry.switchWwn, entry.port);
    const LoggedIn added = {keptName("node", entry.nodeWwn), keptName("port", entry.portWwn)};
    if (fabric.devices.count(place) != 0)
        throw std::invalid_argument("a device is logged in at port " + std::to_string(entry.port) + " of switch " +
                                    entry.switchWwn + " already");
    if (fabric.places.count(added.portWwn) != 0)
        throw std::invalid_argument("port " + added.portWwn + " is logged in already");
    Announcements announcements = changeOf(device, ZOV_EVENT_NS_ENTRYADDED, place, added);
    fabric.places.emplace(added.portWwn, place);
    fabric.devices.emplace(place, added);
    return announcements;
}

Announcements logOut(Switch &device, const std::string &portWwn) {
    Fabric &fabric = device.fabric;
    const auto found = fabric.places.find(keptName("port", portWwn));
    if (found == fabric.places.end())
        throw std::invalid_argument("port " + portWwn + " is not logged in");
    const auto entry = fabric.devices.find(found->second);
    Announcements announcements = changeOf(device, ZOV_EVENT_NS_ENTRYDELETED, entry->first, entry->second);
    fabric.devices.erase(entry);
    fabric.places.erase(found);
    return announcements;
}

void removeDevicesOf(Fabric &fabric, const std::string &name) {
    auto device = fabric.devices.lower_bound({name, 0});
    while (device != fabric.devices.end() && device->first.first == name) {
        fabric.places.erase(device->second.portWwn);
        device = fabric.devices.erase(device);
    }
}

std::vector<NameServerEntry> nameServerOf(const Switch &device) {
    std::map<std::pair<unsigned, unsigned>, NameServerEntry> ordered; // by domain and port
    for (const auto &[place, entry] : device.fabric.devices)
        ordered[{anyDomainOf(device, place.first), place.second}] = {nameOf(device, place.first), place.second,
                                                                     entry.nodeWwn, entry.portWwn};
    std::vector<NameServerEntry> entries;
    entries.reserve(ordered.size());
    for (const auto &[place, entry] : ordered)
        entries.push_back(entry);
    return entries;
}

std::vector<std::string> entriesGone(const Fabric &from, const Fabric &in) {
    const std::set<std::string> stayed = membersOf(in.database);
    std::vector<std::string> entries;
    for (const LinkStateRecord &record : from.database) {
        const std::string name = keyOf(record);
        if (record.hops == kOutOfReach || stayed.count(name) != 0)
            continue;
        for (auto device = from.devices.lower_bound({name, 0});
             device != from.devices.end() && device->first.first == name; ++device)
            entries.push_back(shown(device->second, record.domain, device->first.second));
    }
    return entries;
}

void appendEntries(Announcements &announcements, int32_t code, const std::vector<std::string> &entries) {
    std::string text;
    const auto send = [&] {
        if (!text.empty())
            announcements.push_back({code, {0, 0, 0}, text});
        text.clear();
    };
    for (const std::string &entry : entries) {
        if (text.size() + 1 + entry.size() > kLongestText)
            send();
        text += (text.empty() ? "" : ";") + entry;
    }
    send();
}

} // namespace sim
