#include "sim/model/TopologyEntries.h"

#include <iterator>

#include "sim/model/LinkState.h"
#include "sim/model/PortName.h"
#include "sim/model/Routing.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

/// The numbers of the local switch's ports, without those that are not there.
std::vector<unsigned> localPorts(const Switch &device) {
    std::vector<unsigned> ports;
    for (unsigned port = 0; port < device.ports.size(); ++port)
        if (hasPort(device, port))
            ports.push_back(port);
    return ports;
}

unsigned entryCount(const Switch &device, unsigned domain) {
    const Peer *peer = peerAt(device.fabric, domain);
    return peer ? peer->ports : static_cast<unsigned>(localPorts(device).size());
}

std::string readCount(const Switch &device, Index at) {
    return std::to_string(entryCount(device, at.first));
}

std::string readPortName(const Switch &device, Index at) {
    const Peer *peer = peerAt(device.fabric, at.first);
    return peer ? portName(peer->wwn, at.second) : portName(device.identity.wwn, localPorts(device)[at.second]);
}

Status status(const Switch &device, Index at) {
    if (isTransparent(device))
        return kNotSupported;
    const Peer *peer = peerAt(device.fabric, at.first);
    return peer && !peer->topology.answers ? kNoAnswer : kOk;
}

/// A peer that is slow to tell how many ports it has holds up whoever asks.
unsigned seconds(const Switch &device, Index at) {
    const Peer *peer = peerAt(device.fabric, at.first);
    return peer && !isTransparent(device) ? peer->topology.seconds : 0;
}

constexpr Axis kEntries = {entryCount};

constexpr Row kRows[] = {
    {"Oper.TopologyAll.%u.PortEntries", Access::readOnly, &kDerivedRule, 0, readCount, nullptr, &kMembers, Source::none,
     status, nullptr, seconds},
    {"Oper.TopologyAll.%u.Entry.%u.PortWwn", Access::readOnly, &kDerivedRule, 0, readPortName, nullptr, &kMembers,
     Source::none, status, &kEntries},
};

} // namespace

Rows topologyEntriesRows() {
    return {kRows, std::size(kRows)};
}

} // namespace sim
