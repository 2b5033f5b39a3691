// The fabric on its way into a scenario.

#include <algorithm>
#include <stdexcept>
#include <tuple>

#include "sim/scenario/Dump.h"
#include "sim/scenario/FabricDeeds.h"

namespace sim {

namespace {

/// Switches by their names, the local one as kLocalEnd: its name may be another in the profile.
std::string called(const Simulator &device, const std::string &wwn) {
    return wwn == device.get("Oper.Switch.WWN") ? kLocalEnd : wwn;
}

/// The hops in the record of a domain; none without a record.
std::optional<std::string> hopsTo(const Simulator &device, unsigned domain) {
    try {
        return device.get("Oper.Eport.LsdbRecord." + std::to_string(domain) + ".Hops");
    } catch (const std::invalid_argument &) {
        return std::nullopt;
    }
}

// ---- links and devices -------------------------------------------------------------------------------

using Ends = std::vector<std::string>; ///< two

std::vector<std::pair<Link, Ends>> linksOf(const Simulator &device) {
    std::vector<std::pair<Link, Ends>> links;
    for (const Link &link : device.links())
        links.push_back({link,
                         {called(device, link.wwn) + ":" + std::to_string(link.port),
                          called(device, link.otherWwn) + ":" + std::to_string(link.otherPort)}});
    return links;
}

using Login = std::tuple<std::string, unsigned, std::string, std::string>; ///< switch, port, node, port name

std::vector<Login> loginsOf(const Simulator &device) {
    const std::string local = device.get("Oper.Switch.WWN");
    std::vector<Login> logins;
    for (const NameServerEntry &entry : device.nameServer())
        logins.emplace_back(entry.switchWwn == local ? kLocalEnd : entry.switchWwn, entry.port, entry.nodeWwn,
                            entry.portWwn);
    return logins;
}

/// Those of the first that are not in the second, in their order.
std::vector<Login> without(const std::vector<Login> &logins, std::vector<Login> others) {
    std::sort(others.begin(), others.end());
    std::vector<Login> left;
    std::copy_if(logins.begin(), logins.end(), std::back_inserter(left),
                 [&](const Login &login) { return !std::binary_search(others.begin(), others.end(), login); });
    return left;
}

// ---- what goes ---------------------------------------------------------------------------------------

/// A peer that is not there any more. One with another domain goes and comes again, so that no domain is in the way;
/// and one that the link-state database has forgotten.
bool isGone(const Dump &dump, const Peer &peer) {
    const std::optional<Peer> present = peerNamed(dump.now, peer.wwn);
    return !present || present->domain != peer.domain ||
           (hopsTo(*dump.other, peer.domain) && !hopsTo(dump.now, peer.domain));
}

std::vector<std::string> peersGone(const Dump &dump) {
    std::vector<std::string> names;
    for (const Peer &peer : dump.other->peers())
        if (isGone(dump, peer))
            names.push_back(peer.wwn);
    return names;
}

bool contains(const std::vector<std::string> &names, const std::string &name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void dumpLogouts(Dump &dump, const std::vector<std::string> &gone) {
    for (const Login &login : without(loginsOf(*dump.other), loginsOf(dump.now))) {
        const auto &[switchName, port, nodeWwn, portWwn] = login;
        if (contains(gone, switchName))
            continue;
        dump.other->logOut(portWwn, Notify::no);
        dump.logins.under("[[login]]");
        dump.logins.line("port_wwn", portWwn);
        dump.logins.flag("present", false);
    }
}

/// Links are listed in the order in which they came up: those from the first difference on go, and come again.
void dumpDisconnections(Dump &dump, const std::vector<std::string> &gone) {
    const std::vector<std::pair<Link, Ends>> wanted = linksOf(dump.now);
    size_t kept = 0;
    for (const auto &[link, ends] : linksOf(*dump.other)) {
        if (contains(gone, link.wwn) || contains(gone, link.otherWwn))
            continue;
        if (kept < wanted.size() && wanted[kept].second == ends) {
            ++kept;
            continue;
        }
        dump.other->disconnect(link, Notify::no);
        dump.links.under("[[link]]");
        dump.links.list("ends", ends);
        dump.links.flag("present", false);
    }
}

// ---- what comes --------------------------------------------------------------------------------------

/// Writes how a peer differs from another one.
void writePeer(TomlText &text, const Peer &peer, const Peer &other) {
    if (peer.priority != other.priority)
        text.line("priority", peer.priority);
    if (peer.ports != other.ports)
        text.line("ports", peer.ports);
    if (peer.topology.seconds != other.topology.seconds)
        text.line("topology_seconds", peer.topology.seconds);
    if (peer.topology.answers != other.topology.answers)
        text.flag("topology_answers", peer.topology.answers);
}

/// The header of a peer's table, written with its first line.
std::string headerOf(const Peer &peer) {
    return "[[peer]]\nwwn = " + tomlValue(peer.wwn);
}

void dumpPeer(Dump &dump, const Peer &peer) {
    const std::optional<Peer> present = peerNamed(*dump.other, peer.wwn);
    dump.peers.under(headerOf(peer));
    if (present) {
        writePeer(dump.peers, peer, *present);
        if (dump.peers.hasLines())
            dump.other->changePeer(peer, Notify::no);
    } else {
        dump.peers.line("domain", peer.domain);
        writePeer(dump.peers, peer, Peer());
        dump.other->addPeer(peer);
    }
    constexpr const char *outOfReach = "255";
    if (hopsTo(dump.now, peer.domain) == outOfReach && !hopsTo(*dump.other, peer.domain)) {
        linkForAMoment(*dump.other, peer.wwn);
        dump.peers.flag("remembered", true);
    }
}

/// Does what a table is about to say; where the switch refuses it, a comment takes the table's place.
template <class Act> bool does(TomlText &text, const std::string &what, const Act &act) {
    try {
        act();
        return true;
    } catch (const std::invalid_argument &) {
        text.comment(what + " is left out: its port is not there any more.");
        return false;
    }
}

} // namespace

void dumpPartings(Dump &dump) {
    const std::vector<std::string> gone = peersGone(dump);
    dumpLogouts(dump, gone);
    dumpDisconnections(dump, gone);
    for (const std::string &wwn : gone) {
        dump.other->removePeer(wwn, Notify::no);
        dump.peers.under("[[peer]]");
        dump.peers.line("wwn", wwn);
        dump.peers.flag("present", false);
    }
}

void dumpPeers(Dump &dump) {
    for (const Peer &peer : dump.now.peers())
        dumpPeer(dump, peer);
}

void dumpCables(Dump &dump) {
    const std::vector<std::pair<Link, Ends>> links = linksOf(dump.now);
    for (size_t i = dump.other->links().size(); i < links.size(); ++i) {
        const Link &link = links[i].first;
        const Ends &ends = links[i].second;
        if (!does(dump.links, "The link " + ends[0] + " " + ends[1], [&] { dump.other->connect(link, Notify::no); }))
            continue;
        dump.links.under("[[link]]");
        dump.links.list("ends", ends);
    }
    for (const Login &login : without(loginsOf(dump.now), loginsOf(*dump.other))) {
        const auto &[switchName, port, nodeWwn, portWwn] = login;
        const NameServerEntry entry = {nameIn(*dump.other, switchName), port, nodeWwn, portWwn};
        if (!does(dump.logins, "The login of " + portWwn, [&] { dump.other->logIn(entry, Notify::no); }))
            continue;
        dump.logins.under("[[login]]");
        if (switchName != kLocalEnd)
            dump.logins.line("switch", switchName);
        dump.logins.line("port", port);
        dump.logins.line("node_wwn", nodeWwn);
        dump.logins.line("port_wwn", portWwn);
    }
}

} // namespace sim
