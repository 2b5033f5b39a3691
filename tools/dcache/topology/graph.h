/*
 * The fabric as a graph: its switches, and which of them are linked with which.
 *
 * Made from two sources: the switches are those of the cache, the links are those that the records of the link-state
 * database tell of. Every link has two ends and so is told of twice, as a rule; one that only one end tells of is a
 * link all the same.
 *
 * Pure functions on values, callable from any thread. None fails: what makes no sense is kept as text.
 */
#ifndef TOOLS_DCACHE_TOPOLOGY_GRAPH_H
#define TOOLS_DCACHE_TOPOLOGY_GRAPH_H

#include <array>
#include <set>
#include <string>
#include <vector>

namespace dcache {

/// A link as one of its switches tells of it.
struct LinkEnd {
    std::string port;      ///< the switch's own
    std::string neighbour; ///< "DOMAIN:PORT", or whatever the switch says instead
};

/// What the link-state database has of one switch.
struct LinkRecord {
    unsigned domain = 0;
    std::vector<LinkEnd> links;
};

struct TopologySwitch {
    unsigned domain = 0;
    std::string wwn; ///< with colons
    unsigned ports = 0;
    bool isLocal = false;
    bool isPrincipal = false;
};

/// One link. The first end is that of the lower domain.
struct Cable {
    std::array<std::string, 2> ports; ///< empty: not told
    std::array<bool, 2> toldBy{};     ///< which of the two switches tell of it
};

/// All links between two switches.
struct Connection {
    std::array<unsigned, 2> domains{}; ///< the lower one first
    std::vector<Cable> cables;         ///< at least one; in the order of the first port

    /// The only domain that tells of any of the links; 0 when both do.
    unsigned onlyTeller() const;
    /// The domain at the other end.
    unsigned otherThan(unsigned domain) const { return domains[0] == domain ? domains[1] : domains[0]; }
};

/// A link whose other end is not told in a way that leads to a switch.
struct StrayLink {
    unsigned domain = 0;
    std::string port;
    std::string neighbour;
};

struct Topology {
    std::string fabric;                   ///< the fabric's name, with colons; empty for none
    std::vector<TopologySwitch> switches; ///< in the order of the domain IDs
    std::vector<Connection> connections;  ///< likewise
    std::vector<StrayLink> strays;
    std::set<unsigned> outOfReach; ///< domains that records or links name, and that are none of the switches

    const TopologySwitch *find(unsigned domain) const; ///< null if there is none
    const TopologySwitch *local() const;               ///< likewise
    const TopologySwitch *principal() const;           ///< likewise
    /// Links in all, the stray ones not counted.
    size_t linkCount() const;
    /// The connections of one switch.
    std::vector<const Connection *> connectionsOf(unsigned domain) const;
};

/// A neighbour may be told as "DOMAIN:PORT", as a domain ID alone, or by the name of a switch.
Topology makeTopology(std::string fabric, std::vector<TopologySwitch> switches, const std::vector<LinkRecord> &records);

/// A decimal number of digits alone, at most `largest`; -1 for any other text.
int numberIn(const std::string &text, int largest);

/// "2 links", "1 link".
std::string counted(size_t count, const char *thing);

/// "12 switches, 21 links".
std::string sizeOf(const Topology &topology);

} // namespace dcache

#endif // TOOLS_DCACHE_TOPOLOGY_GRAPH_H
