#include "sim/model/Fabric.h"

#include <algorithm>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/Record.h"
#include "sim/model/NameServer.h"
#include "sim/model/PortName.h"
#include "sim/model/Routing.h"
#include "sim/model/Switch.h"
#include "sim/model/TopologyEntries.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

constexpr unsigned kLowestPriority = 254;
constexpr unsigned kMostPorts = 256;

[[noreturn]] void refuse(const std::string &why) {
    throw std::invalid_argument(why);
}

std::vector<Peer>::iterator existingPeer(Fabric &fabric, const std::string &name) {
    const auto peer =
        std::find_if(fabric.peers.begin(), fabric.peers.end(), [&](const Peer &known) { return known.wwn == name; });
    if (peer == fabric.peers.end())
        refuse("there is no peer " + name);
    return peer;
}

void insertPeer(Fabric &fabric, const Peer &peer) {
    const auto place = std::find_if(fabric.peers.begin(), fabric.peers.end(),
                                    [&](const Peer &known) { return known.domain > peer.domain; });
    fabric.peers.insert(place, peer);
}

void checkPriority(unsigned priority) {
    if (priority < 1 || priority > kLowestPriority)
        refuse("a priority cannot be " + std::to_string(priority) + "; allowed: 1 to 254");
}

/// What a peer says of itself, whoever else there is.
void checkPeer(const Peer &peer) {
    if (!kDomainRule.accepts(std::to_string(peer.domain)))
        refuse("the domain of a switch cannot be " + std::to_string(peer.domain) + "; allowed: " + kDomainRule.allowed);
    checkPriority(peer.priority);
    if (peer.ports > kMostPorts)
        refuse("a peer cannot have " + std::to_string(peer.ports) + " ports; allowed: 0 to 256");
    if (peer.topology.seconds > kSlowestTopology)
        refuse("the management server cannot answer for a peer after " + std::to_string(peer.topology.seconds) +
               " seconds; allowed: 0 to " + std::to_string(kSlowestTopology));
}

/// A peer may keep the domain it has.
void checkDomainIsFree(const Switch &device, const Peer &peer) {
    const Peer *holder = peerAt(device.fabric, peer.domain);
    if (peer.domain == device.identity.domainId || (holder && holder->wwn != peer.wwn))
        refuse("another switch has domain " + std::to_string(peer.domain));
}

/// A port that is used cannot go.
void checkPortsSuffice(const Fabric &fabric, const Peer &peer) {
    unsigned needed = 0;
    for (const Link &link : fabric.links) {
        if (link.wwn == peer.wwn)
            needed = std::max(needed, link.port + 1);
        if (link.otherWwn == peer.wwn)
            needed = std::max(needed, link.otherPort + 1);
    }
    for (auto device = fabric.devices.lower_bound({peer.wwn, 0});
         device != fabric.devices.end() && device->first.first == peer.wwn; ++device)
        needed = std::max(needed, device->first.second + 1);
    if (peer.ports < needed)
        refuse("peer " + peer.wwn + " needs " + std::to_string(needed) + " ports, for its links and devices");
}

bool isEnd(const Link &link, const Place &place) {
    return (link.wwn == place.first && link.port == place.second) ||
           (link.otherWwn == place.first && link.otherPort == place.second);
}

Place existingFreePlace(const Switch &device, const std::string &wwn, unsigned port) {
    Place place = existingPlace(device, wwn, port);
    for (const Link &link : device.fabric.links)
        if (isEnd(link, place))
            refuse("port " + std::to_string(port) + " of switch " + wwn + " has a link already");
    return place;
}

Announcement linkStateChange() {
    return {ZOV_EVENT_LSDB_CHANGE, {0, 0, 0}, "link-state database changed"};
}

Announcement fabricChange(const Database &database, const std::string &principal) {
    const size_t members = membersOf(database).size();
    return {ZOV_EVENT_FABRIC_CHANGE,
            {0, 0, 0},
            "fabric has " + std::to_string(members) + (members == 1 ? " switch" : " switches") + ", principal " +
                principal};
}

/// Whoever is reached now has a record from now on.
void refreshDatabase(const Identity &local, Fabric &fabric) {
    fabric.database = databaseOf(local, fabric);
    fabric.recorded.clear();
    for (const LinkStateRecord &record : fabric.database)
        if (record.hops != 0)
            fabric.recorded.insert(record.wwn);
}

/// A fabric, and its principal.
struct Situation {
    Fabric fabric;
    std::string principal;
};

/// All that there is to tell when one became the other.
Announcements differences(const Situation &before, const Situation &now) {
    const Database &database = now.fabric.database;
    Announcements announcements;
    if (!(database == before.fabric.database))
        announcements.push_back(linkStateChange());
    if (membersOf(database) != membersOf(before.fabric.database) || now.principal != before.principal)
        announcements.push_back(fabricChange(database, now.principal));
    appendEntries(announcements, ZOV_EVENT_NS_ENTRYDELETED, entriesGone(before.fabric, now.fabric));
    appendEntries(announcements, ZOV_EVENT_NS_ENTRYADDED, entriesGone(now.fabric, before.fabric));
    return announcements;
}

/// Does something to the fabric, with whatever follows from it: all of it or, when anything fails, nothing. In
/// transparent mode a switch is in no fabric, and has nothing to tell.
template <class Action> Announcements change(Switch &device, const Action &action) {
    const Situation before = {device.fabric, device.identity.principal};
    Situation now = before;
    action(now.fabric);
    refreshDatabase(device.identity, now.fabric);
    const Electorate electorate = electorateOf(device.identity, now.fabric);
    if (electorate != electorateOf(device.identity, before.fabric))
        now.principal = electorate.begin()->second;
    Announcements announcements = isTransparent(device) ? Announcements() : differences(before, now);
    std::swap(device.fabric, now.fabric);
    std::swap(device.identity.principal, now.principal);
    return announcements;
}

} // namespace

const Peer *peerNamed(const Fabric &fabric, const std::string &name) {
    for (const Peer &peer : fabric.peers)
        if (peer.wwn == name)
            return &peer;
    return nullptr;
}

const Peer *peerAt(const Fabric &fabric, unsigned domain) {
    const auto peer =
        std::lower_bound(fabric.peers.begin(), fabric.peers.end(), domain,
                         [](const Peer &candidate, unsigned wanted) { return candidate.domain < wanted; });
    return peer != fabric.peers.end() && peer->domain == domain ? &*peer : nullptr;
}

Announcements updateLinkState(Switch &device) {
    const Database before = device.fabric.database;
    refreshDatabase(device.identity, device.fabric);
    if (device.fabric.database == before || isTransparent(device))
        return {};
    return {linkStateChange()};
}

Announcements addPeer(Switch &device, const Peer &peer) {
    Peer added = peer;
    added.wwn = keptName("switch", peer.wwn);
    checkPeer(added);
    if (added.wwn == upperCase(device.identity.wwn) || peerNamed(device.fabric, added.wwn))
        refuse("there is a switch " + added.wwn + " already");
    checkDomainIsFree(device, added);
    return change(device, [&](Fabric &fabric) { insertPeer(fabric, added); });
}

Announcements removePeer(Switch &device, const std::string &wwn) {
    const std::string name = keptName("switch", wwn);
    existingPeer(device.fabric, name);
    return change(device, [&](Fabric &fabric) {
        fabric.peers.erase(existingPeer(fabric, name));
        fabric.links.erase(std::remove_if(fabric.links.begin(), fabric.links.end(),
                                          [&](const Link &link) { return link.wwn == name || link.otherWwn == name; }),
                           fabric.links.end());
        removeDevicesOf(fabric, name);
    });
}

Announcements changePeer(Switch &device, const Peer &peer) {
    Peer changed = peer;
    changed.wwn = keptName("switch", peer.wwn);
    existingPeer(device.fabric, changed.wwn);
    checkPeer(changed);
    checkDomainIsFree(device, changed);
    checkPortsSuffice(device.fabric, changed);
    return change(device, [&](Fabric &fabric) {
        fabric.peers.erase(existingPeer(fabric, changed.wwn));
        insertPeer(fabric, changed);
    });
}

Announcements setPriority(Switch &device, unsigned priority) {
    checkPriority(priority);
    return change(device, [&](Fabric &fabric) { fabric.priority = priority; });
}

Announcements connect(Switch &device, const Link &link) {
    const Place one = existingFreePlace(device, link.wwn, link.port);
    const Place other = existingFreePlace(device, link.otherWwn, link.otherPort);
    if (one.first == other.first)
        refuse("a link joins two switches");
    return change(device, [&](Fabric &fabric) {
        fabric.links.push_back({one.first, one.second, other.first, other.second});
    });
}

Announcements disconnect(Switch &device, const Link &link) {
    const std::vector<Link> &links = device.fabric.links;
    const auto keyOfEnd = [&](const std::string &wwn) {
        const std::string name = keptName("switch", wwn);
        return name == upperCase(device.identity.wwn) ? std::string(kLocalName) : name;
    };
    const Place one = {keyOfEnd(link.wwn), link.port};
    const Place other = {keyOfEnd(link.otherWwn), link.otherPort};
    const auto found = std::find_if(links.begin(), links.end(), [&](const Link &known) {
        return one != other && isEnd(known, one) && isEnd(known, other);
    });
    if (found == links.end())
        refuse("there is no such link");
    const auto place = found - links.begin();
    return change(device, [&](Fabric &fabric) { fabric.links.erase(fabric.links.begin() + place); });
}

std::vector<Link> linksOf(const Switch &device) {
    std::vector<Link> links = device.fabric.links;
    for (Link &link : links) {
        link.wwn = nameOf(device, link.wwn);
        link.otherWwn = nameOf(device, link.otherWwn);
    }
    return links;
}

std::string keptName(const char *what, const std::string &text) {
    if (!kWwnRule.accepts(text))
        refuse(std::string("the name of a ") + what + " cannot be '" + escaped(text) +
               "'; allowed: " + kWwnRule.allowed);
    return upperCase(text);
}

Place existingPlace(const Switch &device, const std::string &wwn, unsigned port) {
    const std::string name = keptName("switch", wwn);
    const bool isLocal = name == upperCase(device.identity.wwn);
    const Peer *peer = peerNamed(device.fabric, name);
    if (!isLocal && !peer)
        refuse("there is no switch " + name);
    if (isLocal ? !hasPort(device, port) : port >= peer->ports)
        refuse("there is no port " + std::to_string(port) + " at switch " + name);
    return {isLocal ? kLocalName : name, port};
}

std::string nameOf(const Switch &device, const std::string &name) {
    return name == kLocalName ? device.identity.wwn : name;
}

} // namespace sim
