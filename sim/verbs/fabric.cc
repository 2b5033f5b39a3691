// Verbs for the fabric around the switch: peers, links, the principal, the name server.

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "sim/levers/Nearest.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

std::string localName(const Simulator &device) {
    return device.get("Oper.Switch.WWN");
}

std::string localDomain(const Simulator &device) {
    return device.get("Oper.Switch.DomainID");
}

/// The name of the switch that is meant: a name itself, a domain ID, or "local".
std::string nameOf(const Simulator &device, const std::string &text) {
    if (isSameWord(text, "local") || text == localDomain(device))
        return localName(device);
    if (const std::optional<std::string> wwn = wwnIn(text))
        return *wwn;
    const std::vector<Peer> peers = device.peers();
    const auto peer =
        std::find_if(peers.begin(), peers.end(), [&](const Peer &known) { return numberIn(text) == known.domain; });
    if (peer != peers.end())
        return peer->wwn;
    std::string domains = localDomain(device);
    for (const Peer &known : peers)
        domains += ", " + std::to_string(known.domain);
    throw std::invalid_argument("no switch has domain " + text + "; there are " + domains);
}

// ---- peers -------------------------------------------------------------------------------------------

/// Takes over what was given of a peer.
void overwrite(Peer &peer, const Given &given) {
    if (given.has("domain"))
        peer.domain = given.number("domain");
    if (given.has("priority"))
        peer.priority = given.number("priority");
    if (given.has("ports"))
        peer.ports = given.number("ports");
    if (given.has("slow"))
        peer.topology.seconds = given.number("slow");
    peer.topology.answers = given.isYes("answers", peer.topology.answers);
}

std::string addPeer(Simulator &device, const Given &given) {
    Peer peer;
    peer.wwn = wwnIn(given.text("WWN")).value();
    overwrite(peer, given);
    device.addPeer(peer);
    return "";
}

std::string changePeer(Simulator &device, const Given &given) {
    const std::string name = nameOf(device, given.text("SWITCH"));
    for (Peer &peer : device.peers())
        if (isSameWord(peer.wwn, name)) {
            overwrite(peer, given);
            device.changePeer(peer, given.notify);
            return "";
        }
    throw std::invalid_argument("there is no peer " + given.text("SWITCH") + "; 'peer list' lists them");
}

std::string removePeer(Simulator &device, const Given &given) {
    device.removePeer(nameOf(device, given.text("SWITCH")), given.notify);
    return "";
}

std::string listPeers(Simulator &device, const Given &) {
    Lines lines;
    for (const Peer &peer : device.peers()) {
        std::string line = peer.wwn + " domain=" + std::to_string(peer.domain) +
                           " priority=" + std::to_string(peer.priority) + " ports=" + std::to_string(peer.ports);
        if (peer.topology.seconds != 0)
            line += " slow=" + std::to_string(peer.topology.seconds);
        if (!peer.topology.answers)
            line += " answers=no";
        lines.add(line);
    }
    return lines.text();
}

// ---- links and the principal -------------------------------------------------------------------------

Link linkOf(const Simulator &device, const Given &given) {
    const PlaceText one = placeIn(given.text("END")).value();
    const PlaceText other = placeIn(given.text("OTHER-END")).value();
    return {nameOf(device, one.theSwitch), one.port, nameOf(device, other.theSwitch), other.port};
}

std::string connect(Simulator &device, const Given &given) {
    device.connect(linkOf(device, given), given.notify);
    return "";
}

std::string disconnect(Simulator &device, const Given &given) {
    device.disconnect(linkOf(device, given), given.notify);
    return "";
}

std::string endText(const std::string &wwn, unsigned port) {
    return wwn + ":" + std::to_string(port);
}

std::string listLinks(Simulator &device, const Given &) {
    Lines lines;
    for (const Link &link : device.links())
        lines.add(endText(link.wwn, link.port) + " " + endText(link.otherWwn, link.otherPort));
    return lines.text();
}

std::string setPriority(Simulator &device, const Given &given) {
    device.setPriority(given.number("NUMBER"), given.notify);
    return "";
}

std::string tellPriority(Simulator &device, const Given &) {
    return std::to_string(device.priority());
}

std::string setPrincipal(Simulator &device, const Given &given) {
    device.set("Oper.Switch.WhoIsPrincipal", nameOf(device, given.text("SWITCH")), given.notify);
    return "";
}

// ---- the name server ---------------------------------------------------------------------------------

std::string logIn(Simulator &device, const Given &given) {
    const PlaceText place = placeIn(given.text("END")).value();
    const NameServerEntry entry = {nameOf(device, place.theSwitch), place.port, wwnIn(given.text("node")).value(),
                                   wwnIn(given.text("port")).value()};
    device.logIn(entry, given.notify);
    return "";
}

std::string logOut(Simulator &device, const Given &given) {
    device.logOut(wwnIn(given.text("WWN")).value(), given.notify);
    return "";
}

std::string listLogins(Simulator &device, const Given &) {
    Lines lines;
    for (const NameServerEntry &entry : device.nameServer())
        lines.add(endText(entry.switchWwn, entry.port) + " node=" + entry.nodeWwn + " port=" + entry.portWwn);
    return lines.text();
}

constexpr Verb kVerbs[] = {
    {"peer add WWN domain=NUMBER [priority=NUMBER] [ports=NUMBER] [slow=NUMBER] [answers=yes|no]",
     "Puts another switch next to this one, without a link. The management server answers for it after so many seconds "
     "(slow), or never.",
     "peer add 10:00:00:C0:DD:00:00:07 domain=7 priority=2 ports=48", Tells::nothing, addPeer},
    {"peer change SWITCH [domain=NUMBER] [priority=NUMBER] [ports=NUMBER] [slow=NUMBER] [answers=yes|no]",
     "Gives a peer other properties; what is not said stays.", "peer change 2 priority=1 slow=5", Tells::notification,
     changePeer},
    {"peer remove SWITCH", "Switches a peer off, with its links and devices.", "peer remove 2", Tells::notification,
     removePeer},
    {"peer list", "Lists the peers.", "peer list", Tells::nothing, listPeers},
    {"link list", "Lists the links between switches.", "link list", Tells::nothing, listLinks},
    {"link END OTHER-END", "Brings up a link between two switches.", "link local:17 2:17", Tells::notification,
     connect},
    {"unlink END OTHER-END", "Takes a link down.", "unlink local:16 2:16", Tells::notification, disconnect},
    {"priority NUMBER", "Sets the priority of this switch in the choice of the principal, 1 (the highest) to 254.",
     "priority 200", Tells::notification, setPriority},
    {"priority", "Tells this priority.", "priority", Tells::nothing, tellPriority},
    {"principal SWITCH", "Makes a switch the principal until the next one is chosen.", "principal 2",
     Tells::notification, setPrincipal},
    {"login list", "Lists the devices that are logged in.", "login list", Tells::nothing, listLogins},
    {"login END node=WWN port=WWN", "Logs a device in at a port of a switch.",
     "login 2:20 node=20:00:00:24:FF:00:00:01 port=2100002400000001", Tells::notification, logIn},
    {"logout WWN", "Logs the device with this port name out.", "logout 21000024FF020001", Tells::notification, logOut},
};

} // namespace

VerbGroup fabricVerbs() {
    return {"The fabric", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
