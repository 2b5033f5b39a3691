#include "sim/scenario/FabricDeeds.h"

#include <algorithm>
#include <stdexcept>

#include "sim/scenario/KeyFields.h"

namespace sim {

namespace {

std::string upperCase(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return name;
}

/// False when the local port is not there, or has a link.
bool connects(Simulator &device, const Link &link) {
    try {
        device.connect(link, Notify::no);
        return true;
    } catch (const std::invalid_argument &) {
        return false;
    }
}

} // namespace

std::string nameIn(const Simulator &device, const std::string &name) {
    constexpr size_t mostDigits = 3;
    const bool isDomain =
        !name.empty() && name.size() <= mostDigits && name.find_first_not_of("0123456789") == std::string::npos;
    if (name == kLocalEnd || (isDomain && name == device.get("Oper.Switch.DomainID")))
        return device.get("Oper.Switch.WWN");
    if (!isDomain)
        return plainWwn(name);
    for (const Peer &peer : device.peers())
        if (std::to_string(peer.domain) == name)
            return peer.wwn;
    throw std::invalid_argument("no switch has domain " + name);
}

std::optional<Peer> peerNamed(const Simulator &device, const std::string &wwn) {
    for (const Peer &peer : device.peers())
        if (peer.wwn == upperCase(wwn))
            return peer;
    return std::nullopt;
}

void linkForAMoment(Simulator &device, const std::string &wwn) {
    constexpr unsigned mostPorts = 256;
    const std::optional<Peer> peer = peerNamed(device, wwn);
    if (!peer)
        return;
    Peer withPort = *peer;
    withPort.ports = std::max(1U, peer->ports);
    device.changePeer(withPort, Notify::no);
    Link link = {nameIn(device, kLocalEnd), 0, wwn, 0};
    while (link.port < mostPorts && !connects(device, link))
        ++link.port;
    if (link.port < mostPorts)
        device.disconnect(link, Notify::no);
    device.changePeer(*peer, Notify::no);
}

} // namespace sim
