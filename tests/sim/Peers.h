/*
 * Fabrics as tests build them around the default switch: peers known by their domains, with names that follow the
 * local switch's.
 *
 * Thread-safety: pure functions of what they are given.
 */
#ifndef TESTS_SIM_PEERS_H
#define TESTS_SIM_PEERS_H

#include <cstdio>
#include <string>
#include <vector>

#include "sim/Simulator.h"

namespace simtest {

constexpr const char *kLocal = "100000C0DD00A1B2"; ///< of the default switch, whose domain is 1

inline std::string nameOf(unsigned domain) {
    char name[17];
    std::snprintf(name, sizeof name, "100000C0DD9900%02X", domain & 0xFF);
    return domain == 1 ? kLocal : name;
}

inline sim::Peer peerOf(unsigned domain, unsigned priority = 128) {
    sim::Peer peer;
    peer.wwn = nameOf(domain);
    peer.domain = domain;
    peer.priority = priority;
    return peer;
}

/// A link between switches given by their domains.
inline sim::Link linkOf(unsigned domain, unsigned port, unsigned otherDomain, unsigned otherPort) {
    return {nameOf(domain), port, nameOf(otherDomain), otherPort};
}

/// A device at a port of the switch of a domain.
inline sim::NameServerEntry deviceOf(unsigned domain, unsigned port) {
    char serial[9];
    std::snprintf(serial, sizeof serial, "AB%02X%02XAB", domain & 0xFF, port & 0xFF);
    return {nameOf(domain), port, std::string("20000011") + serial, std::string("21000011") + serial};
}

/// The entry of the same device in a notification.
inline std::string entryOf(unsigned domain, unsigned port) {
    char address[7];
    std::snprintf(address, sizeof address, "%02X%02X00", domain & 0xFF, port & 0xFF);
    const sim::NameServerEntry device = deviceOf(domain, port);
    return std::string(address) + "," + device.nodeWwn + "," + device.portWwn;
}

/// Adds the peers 2 to `last`, each linked to the one before it, without notifications: a chain that the local switch
/// begins with its port 20.
inline void addChain(sim::Simulator &device, unsigned last) {
    for (unsigned domain = 2; domain <= last; ++domain) {
        device.addPeer(peerOf(domain));
        device.connect(linkOf(domain - 1, domain == 2 ? 20 : 1, domain, 0), sim::Notify::no);
    }
}

/// Everything there is to see of a switch.
inline std::vector<std::string> pictureOf(const sim::Simulator &device) {
    std::vector<std::string> picture;
    for (const std::string &key : device.keys())
        picture.push_back(key + "=" + device.get(key));
    for (const sim::Peer &peer : device.peers())
        picture.push_back(peer.wwn + " " + std::to_string(peer.domain) + " " + std::to_string(peer.priority) + " " +
                          std::to_string(peer.ports) + " " + std::to_string(peer.topology.seconds) +
                          (peer.topology.answers ? " answers" : " is silent"));
    for (const sim::Link &link : device.links())
        picture.push_back(link.wwn + ":" + std::to_string(link.port) + "-" + link.otherWwn + ":" +
                          std::to_string(link.otherPort));
    for (const sim::NameServerEntry &entry : device.nameServer())
        picture.push_back(entry.switchWwn + ":" + std::to_string(entry.port) + " " + entry.nodeWwn + " " +
                          entry.portWwn);
    return picture;
}

} // namespace simtest

#endif // TESTS_SIM_PEERS_H
