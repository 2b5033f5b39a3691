// What cannot be done to the fabric of the simulated switch: every refusal with its reason.

#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::deviceOf;
using simtest::linkOf;
using simtest::nameOf;
using simtest::peerOf;

namespace {

struct Refusal {
    const char *name;
    std::function<void(sim::Simulator &)> operation;
    std::string why;
};

void PrintTo(const Refusal &refusal, std::ostream *out) {
    *out << refusal.name;
}

sim::Peer changed(sim::Peer peer, const std::function<void(sim::Peer &)> &change) {
    change(peer);
    return peer;
}

class FabricRefusal : public testing::TestWithParam<Refusal> {};

using S = sim::Simulator;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Every, FabricRefusal, testing::Values(
    Refusal{"PeerWithoutAName", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.wwn = ""; })); },
            "the name of a switch cannot be ''; allowed: 16 hexadecimal digits"},
    Refusal{"PeerWithALongName", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.wwn += "0"; })); },
            "the name of a switch cannot be '100000C0DD9900090'; allowed: 16 hexadecimal digits"},
    Refusal{"PeerNamedAsTheLocal", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.wwn = "100000c0dd00a1b2"; })); },
            "there is a switch 100000C0DD00A1B2 already"},
    Refusal{"PeerNamedAsAnother", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.wwn = nameOf(3); })); },
            "there is a switch 100000C0DD990003 already"},
    Refusal{"PeerInDomain0", [](S &s) { s.addPeer(peerOf(0)); },
            "the domain of a switch cannot be 0; allowed: 1 to 239"},
    Refusal{"PeerInDomain240", [](S &s) { s.addPeer(peerOf(240)); },
            "the domain of a switch cannot be 240; allowed: 1 to 239"},
    Refusal{"PeerInTheLocalDomain", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.domain = 1; })); },
            "another switch has domain 1"},
    Refusal{"PeerInAPeersDomain", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.domain = 3; })); },
            "another switch has domain 3"},
    Refusal{"PeerOfPriority0", [](S &s) { s.addPeer(peerOf(9, 0)); },
            "a priority cannot be 0; allowed: 1 to 254"},
    Refusal{"PeerOfPriority255", [](S &s) { s.addPeer(peerOf(9, 255)); },
            "a priority cannot be 255; allowed: 1 to 254"},
    Refusal{"PeerOf257Ports", [](S &s) { s.addPeer(changed(peerOf(9), [](sim::Peer &p) { p.ports = 257; })); },
            "a peer cannot have 257 ports; allowed: 0 to 256"},
    Refusal{"RemovalOfNobody", [](S &s) { s.removePeer(nameOf(9)); }, "there is no peer 100000C0DD990009"},
    Refusal{"RemovalOfTheLocal", [](S &s) { s.removePeer(simtest::kLocal); }, "there is no peer 100000C0DD00A1B2"},
    Refusal{"RemovalOfNoName", [](S &s) { s.removePeer("3"); },
            "the name of a switch cannot be '3'; allowed: 16 hexadecimal digits"},
    Refusal{"ChangeOfNobody", [](S &s) { s.changePeer(peerOf(9)); }, "there is no peer 100000C0DD990009"},
    Refusal{"ChangeToTheLocalDomain", [](S &s) { s.changePeer(changed(peerOf(3), [](sim::Peer &p) { p.domain = 1; })); },
            "another switch has domain 1"},
    Refusal{"ChangeToAPeersDomain", [](S &s) { s.changePeer(changed(peerOf(3), [](sim::Peer &p) { p.domain = 4; })); },
            "another switch has domain 4"},
    Refusal{"ChangeToDomain240", [](S &s) { s.changePeer(changed(peerOf(3), [](sim::Peer &p) { p.domain = 240; })); },
            "the domain of a switch cannot be 240; allowed: 1 to 239"},
    Refusal{"ChangeToPriority0", [](S &s) { s.changePeer(peerOf(3, 0)); }, "a priority cannot be 0; allowed: 1 to 254"},
    Refusal{"ChangeToTooManyPorts", [](S &s) { s.changePeer(changed(peerOf(3), [](sim::Peer &p) { p.ports = 257; })); },
            "a peer cannot have 257 ports; allowed: 0 to 256"},
    Refusal{"ChangeThatTakesALinkedPort", [](S &s) { s.changePeer(changed(peerOf(4), [](sim::Peer &p) { p.ports = 0; })); },
            "peer 100000C0DD990004 needs 1 ports, for its links and devices"},
    Refusal{"ChangeThatTakesAPortWithADevice", [](S &s) { s.changePeer(changed(peerOf(3), [](sim::Peer &p) { p.ports = 5; })); },
            "peer 100000C0DD990003 needs 6 ports, for its links and devices"},
    Refusal{"LocalPriority0", [](S &s) { s.setPriority(0); }, "a priority cannot be 0; allowed: 1 to 254"},
    Refusal{"LocalPriority255", [](S &s) { s.setPriority(255); }, "a priority cannot be 255; allowed: 1 to 254"},
    Refusal{"LinkToNobody", [](S &s) { s.connect(linkOf(1, 16, 9, 0)); }, "there is no switch 100000C0DD990009"},
    Refusal{"LinkFromNobody", [](S &s) { s.connect(linkOf(9, 0, 1, 16)); }, "there is no switch 100000C0DD990009"},
    Refusal{"LinkAtNoName", [](S &s) { s.connect({"", 16, nameOf(3), 9}); },
            "the name of a switch cannot be ''; allowed: 16 hexadecimal digits"},
    Refusal{"LinkAtNoLocalPort", [](S &s) { s.connect(linkOf(1, 24, 3, 9)); },
            "there is no port 24 at switch 100000C0DD00A1B2"},
    Refusal{"LinkAtALocalPortOfAnEmptySlot", [](S &s) { s.connect(linkOf(1, 5, 3, 9)); },
            "there is no port 5 at switch 100000C0DD00A1B2"},
    Refusal{"LinkAtNoPortOfAPeer", [](S &s) { s.connect(linkOf(1, 16, 3, 24)); },
            "there is no port 24 at switch 100000C0DD990003"},
    Refusal{"LinkAtALinkedLocalPort", [](S &s) { s.connect(linkOf(1, 20, 3, 9)); },
            "port 20 of switch 100000C0DD00A1B2 has a link already"},
    Refusal{"LinkAtALinkedPortOfAPeer", [](S &s) { s.connect(linkOf(1, 16, 4, 0)); },
            "port 0 of switch 100000C0DD990004 has a link already"},
    Refusal{"LinkWithinThePeer", [](S &s) { s.connect(linkOf(3, 8, 3, 9)); }, "a link joins two switches"},
    Refusal{"LinkWithinTheLocal", [](S &s) { s.connect(linkOf(1, 16, 1, 17)); }, "a link joins two switches"},
    Refusal{"LinkThatIsThere", [](S &s) { s.connect(linkOf(3, 1, 4, 0)); },
            "port 1 of switch 100000C0DD990003 has a link already"},
    Refusal{"EndOfALinkThatIsNot", [](S &s) { s.disconnect(linkOf(3, 1, 4, 1)); }, "there is no such link"},
    Refusal{"EndOfTheEndsOfTwoLinks", [](S &s) { s.disconnect(linkOf(1, 20, 4, 0)); }, "there is no such link"},
    Refusal{"EndOfALinkNamedByOneEnd", [](S &s) { s.disconnect(linkOf(4, 0, 4, 0)); }, "there is no such link"},
    Refusal{"EndOfALinkToNobody", [](S &s) { s.disconnect(linkOf(3, 1, 9, 0)); }, "there is no such link"},
    Refusal{"EndOfALinkToNoName", [](S &s) { s.disconnect({nameOf(3), 1, "x", 0}); },
            "the name of a switch cannot be 'x'; allowed: 16 hexadecimal digits"},
    Refusal{"DeviceAtNoSwitch", [](S &s) { s.logIn(deviceOf(9, 0)); }, "there is no switch 100000C0DD990009"},
    Refusal{"DeviceAtNoPort", [](S &s) { s.logIn(deviceOf(3, 24)); },
            "there is no port 24 at switch 100000C0DD990003"},
    Refusal{"DeviceAtAPortOfAnEmptySlot", [](S &s) { s.logIn(deviceOf(1, 5)); },
            "there is no port 5 at switch 100000C0DD00A1B2"},
    Refusal{"DeviceAtATakenPort", [](S &s) { s.logIn({nameOf(3), 5, "2000001100000001", "2100001100000001"}); },
            "a device is logged in at port 5 of switch 100000C0DD990003 already"},
    Refusal{"DeviceThatIsLoggedIn", [](S &s) { s.logIn({nameOf(3), 6, "2000001100000001", deviceOf(3, 5).portWwn}); },
            "port 21000011AB0305AB is logged in already"},
    Refusal{"DeviceWithoutANodeName", [](S &s) { s.logIn({nameOf(3), 6, "", "2100001100000001"}); },
            "the name of a node cannot be ''; allowed: 16 hexadecimal digits"},
    Refusal{"DeviceWithoutAPortName", [](S &s) { s.logIn({nameOf(3), 6, "2000001100000001", "21"}); },
            "the name of a port cannot be '21'; allowed: 16 hexadecimal digits"},
    Refusal{"LogOutOfNobody", [](S &s) { s.logOut("2100001100000001"); }, "port 2100001100000001 is not logged in"},
    Refusal{"LogOutOfNoName", [](S &s) { s.logOut(""); },
            "the name of a port cannot be ''; allowed: 16 hexadecimal digits"}),
    [](const testing::TestParamInfo<Refusal> &refusal) { return std::string(refusal.param.name); });
// clang-format on

} // namespace

TEST_P(FabricRefusal, SaysWhyAndChangesNothing) {
    const auto device = sim::create();
    Client client;
    simtest::addChain(*device, 4);
    device->logIn(deviceOf(3, 5), sim::Notify::no);
    device->set("Oper.UserPort.0.5.OperState", "NotInstalled");
    ASSERT_EQ(client.registerFor({1, 7, 79, 80}), 0);
    const std::vector<std::string> before = simtest::pictureOf(*device);
    std::string why = "nothing";
    try {
        GetParam().operation(*device);
    } catch (const std::invalid_argument &error) {
        why = error.what();
    }
    EXPECT_EQ(why, GetParam().why);
    EXPECT_EQ(simtest::pictureOf(*device), before);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}
