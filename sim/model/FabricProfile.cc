#include "sim/model/FabricProfile.h"

#include <algorithm>
#include <cstdio>

#include "sim/model/NameServer.h"

namespace sim {

namespace {

constexpr unsigned kEdgePorts = 24;
constexpr unsigned kCorePorts = 64;
constexpr unsigned kFirstUplink = 16; // of an edge, after the ports with devices

/// Devices have adapters of one company, told apart by where they are.
NameServerEntry deviceAt(const std::string &switchWwn, unsigned domain, unsigned port) {
    char serial[9];
    std::snprintf(serial, sizeof serial, "FF%02X%02X01", domain & 0xFF, port & 0xFF);
    return {switchWwn, port, std::string("20000024") + serial, std::string("21000024") + serial};
}

std::string edgeOrCoreName(unsigned switches, unsigned domain) {
    // One edge was bought elsewhere.
    const char *format = switches == 12 && domain == switches ? "2000000DEC%02uA0%02X" : "100000C0DD%02uA0%02X";
    char name[17];
    std::snprintf(name, sizeof name, format, switches % 100, domain & 0xFF);
    return name;
}

Peer edgeOf(const std::string &wwn, unsigned domain) {
    Peer edge;
    edge.wwn = wwn;
    edge.domain = domain;
    edge.ports = kEdgePorts;
    return edge;
}

// A large fabric is put together at once: nobody looks at it before it is whole.

/// To be called in the order of the domains.
void placePeer(Switch &device, Peer peer) {
    device.fabric.peers.push_back(std::move(peer));
}

void placeLink(Switch &device, const Link &link) {
    const auto kept = [&](const std::string &wwn) {
        return wwn == device.identity.wwn ? std::string(kLocalName) : wwn;
    };
    device.fabric.links.push_back({kept(link.wwn), link.port, kept(link.otherWwn), link.otherPort});
}

/// Computes what follows from peers and links.
void settle(Switch &device) {
    setPriority(device, device.fabric.priority);
}

/// Cores, the first of which wants to be the principal, all linked with each other. The ports used are counted.
void addCores(Switch &device, const std::vector<std::string> &names, std::vector<unsigned> &nextPorts) {
    for (unsigned i = 0; i < names.size(); ++i) {
        Peer core;
        core.wwn = names[i];
        core.domain = i + 1;
        core.priority = i == 0 ? 1 : 2;
        core.ports = kCorePorts;
        placePeer(device, core);
        for (unsigned other = 0; other < i; ++other)
            placeLink(device, {names[other], nextPorts[other]++, names[i], nextPorts[i]++});
    }
}

/// A port of the local switch carries a link now.
void useForLink(UserPort &port) {
    port.operState = "Online";
    port.type = "E";
}

} // namespace

void joinTwin(Switch &device) {
    std::string twin = device.identity.wwn;
    ++twin.back();
    addPeer(device, edgeOf(twin, device.identity.domainId + 1));
    useForLink(device.ports[kFirstUplink]);
    connect(device, {device.identity.wwn, kFirstUplink, twin, kFirstUplink});
}

void joinCoreAndEdge(Switch &device, unsigned switches, unsigned cores) {
    device.identity.domainId = cores + 1;
    device.identity.wwn = edgeOrCoreName(switches, device.identity.domainId);
    device.identity.principal = device.identity.wwn;
    std::vector<std::string> names(cores);
    for (unsigned core = 0; core < cores; ++core)
        names[core] = edgeOrCoreName(switches, core + 1);
    std::vector<unsigned> nextPorts(cores, 0);
    addCores(device, names, nextPorts);
    unsigned core = 0;
    for (unsigned domain = cores + 1; domain <= switches; ++domain) {
        const std::string name = edgeOrCoreName(switches, domain);
        if (domain != device.identity.domainId)
            placePeer(device, edgeOf(name, domain));
        const unsigned otherCore = core + 1 < cores ? core + 1 : 0;
        placeLink(device, {name, kFirstUplink, names[core], nextPorts[core]++});
        placeLink(device, {name, kFirstUplink + 1, names[otherCore], nextPorts[otherCore]++});
        core = otherCore; // the edges go round the cores
    }
    settle(device);
    useForLink(device.ports[kFirstUplink]);
    useForLink(device.ports[kFirstUplink + 1]);
}

void logInDevices(Switch &device) {
    for (const Peer &peer : device.fabric.peers)
        for (unsigned port = 0; peer.ports == kEdgePorts && port < kFirstUplink; ++port)
            logIn(device, deviceAt(peer.wwn, peer.domain, port));
    const std::vector<Link> links = linksOf(device);
    const std::string &name = device.identity.wwn;
    for (unsigned port = 0; port < device.ports.size(); ++port) {
        const bool hasLink = std::any_of(links.begin(), links.end(), [&](const Link &link) {
            return (link.wwn == name && link.port == port) || (link.otherWwn == name && link.otherPort == port);
        });
        if (device.ports[port].operState == "Online" && !hasLink)
            logIn(device, deviceAt(name, device.identity.domainId, port));
    }
}

} // namespace sim
