#include "sim/model/PortName.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

namespace {

/// A switch, and what its ports are called.
struct Naming {
    const char *wwn;
    unsigned port;
    const char *name;
};

void PrintTo(const Naming &naming, std::ostream *out) {
    *out << naming.wwn << " port " << naming.port;
}

class PortName : public testing::TestWithParam<Naming> {};

INSTANTIATE_TEST_SUITE_P(Every, PortName,
                         testing::Values(Naming{"100000C0DD00A1B3", 0, "200000C0DD00A1B3"},
                                         Naming{"100000C0DD00A1B3", 23, "201700C0DD00A1B3"},
                                         Naming{"100000c0dd00a1b3", 255, "20FF00C0DD00A1B3"},
                                         Naming{"200000C0DD00A1B3", 16, "201000C0DD00A1B3"},
                                         Naming{"2123000DEC00A1B3", 0, "2001000DEC00A1B3"},
                                         Naming{"2000000DEC00A1B3", 255, "2100000DEC00A1B3"},
                                         Naming{"1000000DEC00A1B3", 7, "2008000DEC00A1B3"},
                                         Naming{"500000C0DD00A1B3", 7, "500000C0DD00A1B3"}));

} // namespace

TEST_P(PortName, FollowsFromTheSwitchesOfAPeerAndOfTheLocalSwitchAlike) {
    const auto device = sim::create();
    sim::Peer peer;
    peer.wwn = GetParam().wwn;
    peer.domain = 2;
    peer.ports = 256;
    device->addPeer(peer);
    device->connect({device->get("Oper.Switch.WWN"), 16, peer.wwn, 0});
    const std::string port = std::to_string(GetParam().port);
    EXPECT_EQ(device->get("Oper.TopologyAll.2.Entry." + port + ".PortWwn"), GetParam().name);
    device->removePeer(peer.wwn);
    device->set("Oper.Switch.MaxPorts", "255");
    device->set("Oper.Switch.WWN", GetParam().wwn);
    if (GetParam().port == 255)
        return; // a local switch has no such port
    EXPECT_EQ(device->get("Oper.UserPort.0." + port + ".WWN"), GetParam().name);
    EXPECT_EQ(device->get("Oper.TopologyAll.1.Entry." + port + ".PortWwn"), GetParam().name);
}
