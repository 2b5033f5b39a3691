#include "tests/scenario/Changes.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "tests/scenario/Attributes.h"

namespace scenario {

namespace {

constexpr unsigned kPeerNames = 14;
constexpr unsigned kPassSteps = 60; // about as many exchanges as a pass has
constexpr unsigned kMostStormed = 8;

/// Peers come back under the names they had. Some number their ports from one, and some have names without room for a
/// port's number.
std::string peerName(unsigned number) {
    const std::array<const char *, 5> beginnings = {"100000C0DD77", "100000C0DD78", "100000C0DD79", "2000000DEC77",
                                                    "500000C0DD77"};
    return fmt::format("{}{:04X}", beginnings[number % beginnings.size()], number);
}

/// The local switch never takes a name again: it would find itself in what its clients remember.
std::string localName(unsigned number) {
    return fmt::format("{}{:04X}", number % 3 == 2 ? "2000000DECAA" : "100000C0DDAA", number);
}

} // namespace

/// A kind of change, and how often it comes up.
struct Changes::Kind {
    unsigned weight;
    std::string (Changes::*make)();
};

const std::vector<Changes::Kind> Changes::kinds = {
    {300, &Changes::setAttribute},
    {1, &Changes::setName},
    {6, &Changes::setDomain},
    {6, &Changes::setPrincipal},
    {25, &Changes::plugTransceiver},
    {25, &Changes::pullTransceiver},
    {12, &Changes::insertBlade},
    {10, &Changes::removeBlade},
    {15, &Changes::addAccount},
    {15, &Changes::removeAccount},
    {40, &Changes::addPeer},
    {10, &Changes::removePeer},
    {70, &Changes::changePeer},
    {8, &Changes::setPriority},
    {110, &Changes::connect},
    {15, &Changes::disconnect},
    {15, &Changes::flap},
    {40, &Changes::logIn},
    {25, &Changes::logOut},
    {40, &Changes::storm},
    {10, &Changes::passTime},
    {4, &Changes::holdAdminMode},
};

Changes::Changes(sim::Simulator &theSwitch, unsigned seed, std::function<void(const std::string &)> tell)
    : _switch(theSwitch), _random(seed), _tell(std::move(tell)) {}

bool Changes::make() {
    unsigned total = 0;
    for (const Kind &kind : kinds)
        total += kind.weight;
    unsigned left = _random.below(total);
    const auto chosen = std::find_if(kinds.begin(), kinds.end(), [&left](const Kind &kind) {
        const bool here = left < kind.weight;
        left -= here ? 0 : kind.weight;
        return here;
    });
    _notify = _random.oneIn(12) ? sim::Notify::no : sim::Notify::yes;
    try {
        const std::string what = (this->*chosen->make)();
        _tell(what + (_notify == sim::Notify::no ? ", silently" : ""));
        return true;
    } catch (const std::invalid_argument &refusal) {
        _tell(std::string("refused: ") + refusal.what());
        return false;
    }
}

// ---- passes -------------------------------------------------------------------------------------------

void Changes::beginPass() {
    for (unsigned faults = _random.oneIn(3) ? 1 + _random.below(3) : 0; faults > 0; --faults)
        addFault();
    _changeDue = _random.oneIn(4);
    if (!_changeDue)
        return;
    sim::Fault change;
    change.call = "zov_smlGetBatch";
    change.skip = _random.below(kPassSteps);
    change.action = [this] {
        _changeDue = false;
        make();
    };
    _switch.addFault(change);
    _tell(fmt::format("a change comes in the pass, after {} exchanges", change.skip));
}

void Changes::endPass() {
    _switch.clearFaults();
    if (std::exchange(_changeDue, false))
        make();
}

/// Some read fails: a key, or a whole exchange.
void Changes::addFault() {
    constexpr std::array<int32_t, 5> statuses = {5, 23, 24, 99, 103};
    constexpr std::array<const char *, 8> keys = {"*",
                                                  "Oper.Eport.*",
                                                  "Oper.TopologyAll.*",
                                                  "Oper.Switch.*",
                                                  "Oper.UserPort.*",
                                                  "Oper.Blade.*",
                                                  "Oper.Chassis.*",
                                                  "Oper.Switch.*User*"};
    sim::Fault fault;
    fault.call = "zov_smlGetBatch";
    fault.key = _random.of(keys);
    fault.skip = _random.below(kPassSteps);
    fault.times = 1 + static_cast<int>(_random.below(3));
    if (_random.oneIn(4))
        fault.result = 2;
    else
        fault.status = _random.of(statuses);
    _switch.addFault(fault);
    _tell(fmt::format("{} fails {} times after {}", fault.key, fault.times, fault.skip));
}

// ---- attributes ---------------------------------------------------------------------------------------

unsigned Changes::number(const char *key) const {
    return static_cast<unsigned>(std::stoul(_switch.get(key)));
}

unsigned Changes::anyPort() {
    return _random.below(std::max(number("Oper.Switch.MaxPorts"), 1U));
}

std::string Changes::set(const std::string &key, const std::string &value) {
    _switch.set(key, value, _notify);
    return key + " = " + value;
}

std::string Changes::setAttribute() {
    const Attribute &attribute = attributeAt(_random.below(attributeWeight()));
    const unsigned count = attribute.count != nullptr ? std::min(number(attribute.count), attribute.most) : 1;
    if (count == 0)
        throw std::invalid_argument(std::string("there is no ") + attribute.pattern);
    const std::string key = fmt::format(fmt::runtime(attribute.pattern), _random.below(count));
    return set(key, _random.of(attribute.values));
}

std::string Changes::setName() {
    return set("Oper.Switch.WWN", localName(_names++));
}

std::string Changes::setDomain() {
    return set("Oper.Switch.DomainID", std::to_string(1 + _random.below(239)));
}

std::string Changes::setPrincipal() {
    return set("Oper.Switch.WhoIsPrincipal", _random.oneIn(3) ? peerName(_random.below(kPeerNames)) : anySwitch());
}

// ---- what can be plugged in ---------------------------------------------------------------------------

std::string Changes::plugTransceiver() {
    constexpr std::array<uint8_t, 5> identifiers = {0x03, 0x0D, 0x11, 0x00, 0x03};
    constexpr std::array<const char *, 5> serials = {"FNS0331A00000001", "AB  12", "X", "", "A B C   D"};
    sim::Transceiver transceiver;
    transceiver.identifier = _random.of(identifiers);
    transceiver.vendorOui = _random.below(0x1000000);
    transceiver.serialNumber = _random.of(serials);
    transceiver.diagnostics = !_random.oneIn(4);
    const unsigned port = anyPort();
    _switch.plugTransceiver(port, transceiver, _notify);
    return fmt::format("transceiver into port {}", port);
}

std::string Changes::pullTransceiver() {
    const unsigned port = anyPort();
    _switch.pullTransceiver(port, _notify);
    return fmt::format("transceiver out of port {}", port);
}

std::string Changes::insertBlade() {
    constexpr std::array<const char *, 5> types = {"IO", "CPU", "PS", "FAN", "IO"};
    sim::Blade blade;
    blade.type = _random.of(types);
    blade.serialNumber = _random.oneIn(8) ? "" : blade.serialNumber;
    blade.temperatureSensors = _random.below(6);
    blade.voltageSensors = _random.below(6);
    const unsigned slot = _random.below(std::clamp(number("Oper.Chassis.0.MaxSlots"), 1U, kBladeSlots));
    _switch.insertBlade(slot, blade, _notify);
    return fmt::format("{} blade into slot {}", blade.type, slot);
}

std::string Changes::removeBlade() {
    const unsigned slot = _random.below(std::max(number("Oper.Chassis.0.MaxSlots"), 1U));
    _switch.removeBlade(slot, _notify);
    return fmt::format("blade out of slot {}", slot);
}

std::string Changes::addAccount() {
    // Some names come back, some differ from others in case only.
    const std::string word = _random.oneIn(2) ? "user" : "User";
    const std::string name = word + std::to_string(_random.oneIn(2) ? ++_accounts : _random.below(_accounts + 1));
    _switch.addAccount(name, _notify);
    return "account " + name + " added";
}

std::string Changes::removeAccount() {
    constexpr std::array<const char *, 3> first = {"admin", "operator", "monitor"};
    const std::string word = _random.oneIn(2) ? "user" : "User";
    const std::string other = word + std::to_string(_random.below(_accounts + 1));
    const std::string name = _random.oneIn(6) ? _random.of(first) : other;
    _switch.removeAccount(name, _notify);
    return "account " + name + " removed";
}

// ---- the fabric ---------------------------------------------------------------------------------------

std::string Changes::anySwitch() {
    const std::vector<sim::Peer> peers = _switch.peers();
    return peers.empty() || _random.oneIn(3) ? _switch.get("Oper.Switch.WWN") : _random.of(peers).wwn;
}

std::string Changes::addPeer() {
    constexpr std::array<unsigned, 8> ports = {0, 1, 2, 5, 8, 16, 24, 32};
    sim::Peer peer;
    peer.wwn = peerName(_random.below(kPeerNames));
    peer.domain = 1 + _random.below(_random.oneIn(2) ? 20 : 239);
    peer.priority = 1 + _random.below(254);
    peer.ports = _random.oneIn(40) ? 256 : _random.of(ports);
    _switch.addPeer(peer);
    return fmt::format("peer {} with domain {} and {} ports", peer.wwn, peer.domain, peer.ports);
}

unsigned Changes::anyPortOf(const std::string &wwn) {
    for (const sim::Peer &peer : _switch.peers())
        if (peer.wwn == wwn)
            return _random.below(std::max(peer.ports, 1U));
    return anyPort();
}

std::string Changes::removePeer() {
    const std::string name = anySwitch();
    _switch.removePeer(name, _notify);
    return "peer " + name + " off";
}

std::string Changes::changePeer() {
    constexpr std::array<unsigned, 5> seconds = {0, 1, 10, 11, 30};
    const std::vector<sim::Peer> peers = _switch.peers();
    if (peers.empty())
        throw std::invalid_argument("there is no peer");
    sim::Peer peer = _random.of(peers);
    switch (_random.below(4)) {
    case 0:
        peer.domain = 1 + _random.below(239);
        break;
    case 1:
        peer.priority = 1 + _random.below(254);
        break;
    case 2:
        peer.ports = _random.below(40);
        break;
    default:
        peer.topology.seconds = _random.of(seconds);
        peer.topology.answers = !_random.oneIn(3);
    }
    _switch.changePeer(peer, _notify);
    return fmt::format("peer {} now domain {}, priority {}, {} ports, {} in {} s", peer.wwn, peer.domain, peer.priority,
                       peer.ports, peer.topology.answers ? "answers" : "refuses", peer.topology.seconds);
}

std::string Changes::setPriority() {
    const unsigned priority = 1 + _random.below(254);
    _switch.setPriority(priority, _notify);
    return fmt::format("priority {}", priority);
}

std::string Changes::tellLink(const char *what, const sim::Link &link) const {
    return fmt::format("{} {}:{} {}:{}", what, link.wwn, link.port, link.otherWwn, link.otherPort);
}

std::string Changes::connect() {
    const std::string one = anySwitch();
    const std::string other = anySwitch();
    const unsigned port = anyPortOf(one);
    const sim::Link link = {one, port, other, anyPortOf(other)};
    _switch.connect(link, _notify);
    return tellLink("link", link);
}

sim::Link Changes::anyLink() {
    const std::vector<sim::Link> links = _switch.links();
    if (links.empty())
        throw std::invalid_argument("there is no link");
    return _random.of(links);
}

std::string Changes::disconnect() {
    const sim::Link link = anyLink();
    _switch.disconnect(link, _notify);
    return tellLink("no link", link);
}

std::string Changes::flap() {
    const sim::Link link = anyLink();
    _switch.disconnect(link, _notify);
    _switch.connect(link, _notify);
    return tellLink("flap", link);
}

std::string Changes::logIn() {
    const std::string name = anySwitch();
    const unsigned device = _random.below(100);
    _switch.logIn(
        {name, anyPortOf(name), fmt::format("20000024FF77{:04X}", device), fmt::format("21000024FF77{:04X}", device)},
        _notify);
    return fmt::format("device {} at {}", device, name);
}

std::string Changes::logOut() {
    const std::vector<sim::NameServerEntry> entries = _switch.nameServer();
    if (entries.empty())
        throw std::invalid_argument("no device is logged in");
    const std::string name = _random.of(entries).portWwn;
    _switch.logOut(name, _notify);
    return "device " + name + " gone";
}

// ---- the rest -----------------------------------------------------------------------------------------

/// Notifications that nothing stands behind.
std::string Changes::storm() {
    constexpr std::array<const char *, 10> texts = {"",
                                                    "0;0;0;3;1;65;SERIAL;1",
                                                    "0;0;0;200;1;65;SERIAL;1",
                                                    "0;0;0;-1;1;65;SERIAL;1",
                                                    "0;0;0;2",
                                                    "010100,2000,2100;,,;x,y",
                                                    "Temp overheat, U12 is hot",
                                                    "(1) ..... U7 ..... voltage supply is out of range, it is too high",
                                                    "[3.3V voltage sensor shows ",
                                                    ";;;"};
    const unsigned count = 1 + _random.below(kMostStormed);
    for (unsigned i = 0; i < count; ++i) {
        const auto code = static_cast<int32_t>(_random.below(_random.oneIn(4) ? 300 : 90));
        const auto port = static_cast<int32_t>(_random.below(300));
        _switch.deliver(code, {0, port, port}, _random.of(texts));
    }
    return fmt::format("{} notifications of nothing", count);
}

std::string Changes::passTime() {
    const unsigned seconds = _random.below(100);
    _switch.passTime(std::chrono::seconds(seconds));
    return fmt::format("{} seconds pass", seconds);
}

std::string Changes::holdAdminMode() {
    const bool held = _random.oneIn(2);
    _switch.holdAdminModeElsewhere(held);
    return held ? "admin mode taken elsewhere" : "admin mode given back elsewhere";
}

} // namespace scenario
