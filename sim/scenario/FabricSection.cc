// The fabric of a scenario file: peers, links, devices that are logged in, and what of them is the local switch's.

#include "sim/model/PortName.h"
#include "sim/model/TopologyEntries.h"
#include "sim/scenario/FabricDeeds.h"
#include "sim/scenario/KeySections.h"

namespace sim {

namespace {

constexpr unsigned kHighestPort = 255;

// ---- peers -------------------------------------------------------------------------------------------

/// What a file says of a peer; the rest is as it was, or as it comes.
struct PeerFields {
    std::string wwn;
    std::optional<int64_t> domain, priority, ports, topologySeconds;
    std::optional<bool> topologyAnswers;
};

template <class Number> void overwrite(Number &number, const std::optional<int64_t> &given) {
    if (given)
        number = static_cast<Number>(*given);
}

void addOrChange(Simulator &device, const PeerFields &fields) {
    const std::optional<Peer> present = peerNamed(device, fields.wwn);
    Peer peer = present.value_or(Peer());
    peer.wwn = fields.wwn;
    overwrite(peer.domain, fields.domain);
    overwrite(peer.priority, fields.priority);
    overwrite(peer.ports, fields.ports);
    overwrite(peer.topology.seconds, fields.topologySeconds);
    peer.topology.answers = fields.topologyAnswers.value_or(peer.topology.answers);
    if (present)
        device.changePeer(peer, Notify::no);
    else
        device.addPeer(peer);
}

void readPeer(Fields &fields, Reading &reading) {
    PeerFields peer;
    const std::optional<std::string> wwn = fields.require("wwn") ? fields.text("wwn") : std::nullopt;
    const bool present = fields.flag("present").value_or(true);
    const bool remembered = fields.flag("remembered").value_or(false);
    peer.wwn = plainWwn(wwn.value_or(""));
    peer.domain = fields.number("domain", 1, 239);
    peer.priority = fields.number("priority", 1, 254);
    peer.ports = fields.number("ports", 0, 256);
    peer.topologySeconds = fields.number("topology_seconds", 0, kSlowestTopology);
    peer.topologyAnswers = fields.flag("topology_answers");
    fields.refuseOthers();
    if (!wwn)
        return;
    // One that is taken away may come again as another.
    if (!reading.named.insert((present ? "peer" : "no peer") + upperCase(peer.wwn)).second) {
        fields.complainOf("wwn", "is that of an earlier table");
        return;
    }
    if (!present) {
        reading.plan.add(Phase::partings, fields.at("wwn"),
                         [name = peer.wwn](Simulator &device) { device.removePeer(name, Notify::no); });
        return;
    }
    reading.plan.add(Phase::peers, fields.at("wwn"), [peer](Simulator &device) { addOrChange(device, peer); });
    if (remembered)
        reading.plan.add(Phase::peers, fields.at("remembered"),
                         [name = peer.wwn](Simulator &device) { linkForAMoment(device, name); });
}

// ---- links and devices -------------------------------------------------------------------------------

/// "local:16", "2:20" or "100000C0DD00B201:20".
std::optional<std::pair<std::string, unsigned>> endIn(const std::string &text) {
    constexpr size_t mostDigits = 3;
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return std::nullopt;
    const std::string digits = text.substr(colon + 1);
    if (digits.empty() || digits.size() > mostDigits || digits.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    return std::make_pair(text.substr(0, colon), static_cast<unsigned>(std::stoul(digits)));
}

void readLink(Fields &fields, Reading &reading) {
    const bool present = fields.flag("present").value_or(true);
    const bool isThere = fields.require("ends");
    const std::vector<ScenarioCommand> ends = fields.texts("ends");
    fields.refuseOthers();
    if (!isThere)
        return;
    const auto one = ends.size() == 2 ? endIn(ends[0].text) : std::nullopt;
    const auto other = ends.size() == 2 ? endIn(ends[1].text) : std::nullopt;
    if (!one || !other) {
        fields.complainOf("ends", "must be two texts, each \"local:PORT\", \"DOMAIN:PORT\" or \"WWN:PORT\"");
        return;
    }
    reading.plan.add(
        present ? Phase::cables : Phase::partings, fields.at("ends"),
        [one = *one, other = *other, present](Simulator &device) {
            const Link link = {nameIn(device, one.first), one.second, nameIn(device, other.first), other.second};
            if (present)
                device.connect(link, Notify::no);
            else
                device.disconnect(link, Notify::no);
        });
}

void readLogin(Fields &fields, Reading &reading) {
    const bool present = fields.flag("present").value_or(true);
    const std::optional<std::string> portWwn = fields.require("port_wwn") ? fields.text("port_wwn") : std::nullopt;
    const std::string switchName = fields.text("switch").value_or(kLocalEnd);
    const std::optional<std::string> nodeWwn = fields.text("node_wwn");
    const std::optional<int64_t> port = fields.number("port", 0, kHighestPort);
    if (present) {
        fields.require("node_wwn");
        fields.require("port");
    }
    fields.refuseOthers();
    if (portWwn && !present)
        reading.plan.add(Phase::partings, fields.at("port_wwn"),
                         [name = plainWwn(*portWwn)](Simulator &device) { device.logOut(name, Notify::no); });
    if (!portWwn || !present || !nodeWwn || !port)
        return;
    const NameServerEntry entry = {switchName, static_cast<unsigned>(*port), plainWwn(*nodeWwn), plainWwn(*portWwn)};
    reading.plan.add(Phase::cables, fields.at("port_wwn"), [entry](Simulator &device) {
        NameServerEntry named = entry;
        named.switchWwn = nameIn(device, entry.switchWwn);
        device.logIn(named, Notify::no);
    });
}

void readLocalPart(const toml::table &table, Reading &reading) {
    Fields fields(table, "the fabric", reading.complaints);
    if (const std::optional<int64_t> priority = fields.number("priority", 1, 254))
        reading.plan.add(Phase::identity, fields.at("priority"), [priority = *priority](Simulator &device) {
            device.setPriority(static_cast<unsigned>(priority), Notify::no);
        });
    if (const std::optional<std::string> principal = fields.text("principal"))
        planValue(reading, Phase::conditions, fields.at("principal"), kPrincipalKey, plainWwn(*principal));
    fields.refuseOthers();
}

} // namespace

void readFabric(Fields &file, Reading &reading) {
    using Read = void (*)(Fields &, Reading &);
    struct List {
        const char *name;
        const char *called;
        Read read;
    };
    // What is taken away goes in this order: a peer takes its links and devices with it.
    constexpr List lists[] = {
        {"login", "a login", readLogin}, {"link", "a link", readLink}, {"peer", "a peer", readPeer}};
    for (const List &list : lists)
        for (const toml::table *table : file.tables(list.name)) {
            Fields fields(*table, list.called, reading.complaints);
            list.read(fields, reading);
        }
    if (const toml::table *table = file.table("fabric"))
        readLocalPart(*table, reading);
}

} // namespace sim
