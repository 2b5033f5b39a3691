/*
 * Fabrics to draw, made without a switch.
 */
#ifndef TESTS_TOOLS_TOPOLOGY_SAMPLES_H
#define TESTS_TOOLS_TOPOLOGY_SAMPLES_H

#include <fmt/format.h>
#include <map>
#include <string>
#include <vector>

#include "tools/dcache/topology/graph.h"

namespace support {

/// A fabric in the making. The ports of a switch are taken in turn, from 0.
class Sample {
public:
    /// Switches with the domain IDs 1 to `count`.
    explicit Sample(unsigned count, unsigned principal = 1, unsigned local = 2) {
        for (unsigned domain = 1; domain <= count; ++domain) {
            switches.push_back({domain, name(domain), 24, domain == local, domain == principal});
            _records[domain].domain = domain;
        }
    }

    static std::string name(unsigned domain) { return fmt::format("10:00:00:C0:DD:00:A1:{:02X}", domain); }

    /// One end of a link.
    void tell(unsigned domain, const std::string &port, const std::string &neighbour) {
        _records[domain].domain = domain;
        _records[domain].links.push_back({port, neighbour});
    }
    void link(unsigned one, unsigned other) {
        const unsigned port = _nextPort[one]++;
        const unsigned otherPort = _nextPort[other]++;
        tell(one, std::to_string(port), fmt::format("{}:{}", other, otherPort));
        tell(other, std::to_string(otherPort), fmt::format("{}:{}", one, port));
    }

    dcache::Topology topology() const {
        std::vector<dcache::LinkRecord> records;
        for (const auto &[domain, record] : _records)
            records.push_back(record);
        return dcache::makeTopology(name(1), switches, records);
    }

    std::vector<dcache::TopologySwitch> switches;

private:
    std::map<unsigned, dcache::LinkRecord> _records;
    std::map<unsigned, unsigned> _nextPort;
};

/// Every switch above the cores on two of them.
inline Sample coresAndEdges(unsigned count, unsigned cores) {
    Sample sample(count, 1, cores + 1);
    for (unsigned one = 1; one <= cores; ++one)
        for (unsigned other = one + 1; other <= cores; ++other)
            sample.link(one, other);
    for (unsigned edge = cores + 1; edge <= count; ++edge) {
        sample.link(edge % cores + 1, edge);
        sample.link((edge + 1) % cores + 1, edge);
    }
    return sample;
}

inline Sample ring(unsigned count) {
    Sample sample(count);
    for (unsigned domain = 1; domain <= count; ++domain)
        sample.link(domain, domain % count + 1);
    return sample;
}

inline Sample chain(unsigned count) {
    Sample sample(count);
    for (unsigned domain = 1; domain < count; ++domain)
        sample.link(domain, domain + 1);
    return sample;
}

} // namespace support

#endif // TESTS_TOOLS_TOPOLOGY_SAMPLES_H
