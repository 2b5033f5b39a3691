#include "tools/dcache/topology/graph.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <map>
#include <optional>
#include <utility>

namespace dcache {
namespace {

constexpr int kLargestDomain = 239;
constexpr int kLargestPort = 65535;

struct FarEnd {
    unsigned domain;
    std::string port; ///< empty: not told
};

/// Numbers without leading zeros, so that both ends of a link call its ports the same; other texts as they are.
std::string portText(const std::string &text) {
    const int number = numberIn(text, kLargestPort);
    return number >= 0 ? std::to_string(number) : text;
}

/// The digits of a name, whether there are colons between them or not.
std::string digitsOf(const std::string &name) {
    std::string digits;
    for (const char c : name)
        if (c != ':')
            digits += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return digits;
}

std::optional<FarEnd> farEndOf(const std::string &neighbour, const std::vector<TopologySwitch> &switches) {
    for (const TopologySwitch &candidate : switches)
        if (digitsOf(neighbour) == digitsOf(candidate.wwn))
            return FarEnd{candidate.domain, ""};
    const size_t colon = neighbour.find(':');
    const int domain = numberIn(neighbour.substr(0, colon), kLargestDomain);
    const std::string port = colon == std::string::npos ? "" : neighbour.substr(colon + 1);
    if (domain < 1 || port.find(':') != std::string::npos || (colon != std::string::npos && port.empty()))
        return std::nullopt;
    return FarEnd{static_cast<unsigned>(domain), portText(port)};
}

using Cables = std::map<std::array<unsigned, 2>, std::vector<Cable>>;

/// The same link told from the other end. Of ends that are not told anything may be true.
bool isSame(const Cable &known, const Cable &told, bool exactly) {
    for (const size_t end : {0U, 1U}) {
        const bool isOpen = !exactly && (known.ports[end].empty() || told.ports[end].empty());
        if (!isOpen && known.ports[end] != told.ports[end])
            return false;
    }
    return true;
}

void enter(std::vector<Cable> &cables, const Cable &told, size_t teller) {
    for (const bool exactly : {true, false}) {
        for (Cable &known : cables) {
            if (known.toldBy[teller] || !isSame(known, told, exactly))
                continue;
            known.toldBy[teller] = true;
            for (const size_t end : {0U, 1U})
                if (known.ports[end].empty())
                    known.ports[end] = told.ports[end];
            return;
        }
    }
    cables.push_back(told);
}

void enterLink(Topology &topology, Cables &cables, unsigned domain, const LinkEnd &link) {
    const std::optional<FarEnd> far = farEndOf(link.neighbour, topology.switches);
    if (!far || far->domain == domain) {
        topology.strays.push_back({domain, portText(link.port), link.neighbour});
        return;
    }
    const size_t near = domain < far->domain ? 0 : 1;
    Cable told;
    told.ports[near] = portText(link.port);
    told.ports[1 - near] = far->port;
    told.toldBy[near] = true;
    enter(cables[{std::min(domain, far->domain), std::max(domain, far->domain)}], told, near);
}

/// Ports in the order of their numbers; texts that are none first.
bool isBefore(const Cable &one, const Cable &other) {
    const auto rank = [](const Cable &cable) {
        return std::make_tuple(numberIn(cable.ports[0], kLargestPort), numberIn(cable.ports[1], kLargestPort));
    };
    return rank(one) < rank(other);
}

} // namespace

unsigned Connection::onlyTeller() const {
    std::array<bool, 2> tells{};
    for (const Cable &cable : cables)
        for (const size_t end : {0U, 1U})
            tells[end] = tells[end] || cable.toldBy[end];
    return tells[0] && tells[1] ? 0 : domains[tells[0] ? 0 : 1];
}

const TopologySwitch *Topology::find(unsigned domain) const {
    const auto found = std::find_if(switches.begin(), switches.end(),
                                    [domain](const TopologySwitch &each) { return each.domain == domain; });
    return found != switches.end() ? &*found : nullptr;
}

const TopologySwitch *Topology::local() const {
    const auto found =
        std::find_if(switches.begin(), switches.end(), [](const TopologySwitch &each) { return each.isLocal; });
    return found != switches.end() ? &*found : nullptr;
}

const TopologySwitch *Topology::principal() const {
    const auto found =
        std::find_if(switches.begin(), switches.end(), [](const TopologySwitch &each) { return each.isPrincipal; });
    return found != switches.end() ? &*found : nullptr;
}

size_t Topology::linkCount() const {
    size_t count = 0;
    for (const Connection &connection : connections)
        count += connection.cables.size();
    return count;
}

std::vector<const Connection *> Topology::connectionsOf(unsigned domain) const {
    std::vector<const Connection *> found;
    for (const Connection &connection : connections)
        if (connection.domains[0] == domain || connection.domains[1] == domain)
            found.push_back(&connection);
    return found;
}

Topology makeTopology(std::string fabric, std::vector<TopologySwitch> switches,
                      const std::vector<LinkRecord> &records) {
    Topology topology;
    topology.fabric = std::move(fabric);
    topology.switches = std::move(switches);
    std::stable_sort(topology.switches.begin(), topology.switches.end(),
                     [](const TopologySwitch &one, const TopologySwitch &other) { return one.domain < other.domain; });
    Cables cables;
    std::set<unsigned> named;
    for (const LinkRecord &record : records) {
        named.insert(record.domain);
        for (const LinkEnd &link : record.links)
            enterLink(topology, cables, record.domain, link);
    }
    for (auto &[domains, between] : cables) {
        named.insert(domains.begin(), domains.end());
        std::stable_sort(between.begin(), between.end(), isBefore);
        topology.connections.push_back({domains, std::move(between)});
    }
    for (const unsigned domain : named)
        if (topology.find(domain) == nullptr)
            topology.outOfReach.insert(domain);
    return topology;
}

int numberIn(const std::string &text, int largest) {
    int number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return -1;
        number = number * 10 + (c - '0');
        if (number > largest)
            return -1;
    }
    return text.empty() ? -1 : number;
}

std::string counted(size_t count, const char *thing) {
    const std::string_view word(thing);
    const char *plural = word.back() == 'h' ? "es" : "s";
    return fmt::format("{} {}{}", count, word, count == 1 ? "" : plural);
}

std::string sizeOf(const Topology &topology) {
    return fmt::format("{}, {}", counted(topology.switches.size(), "switch"), counted(topology.linkCount(), "link"));
}

} // namespace dcache
