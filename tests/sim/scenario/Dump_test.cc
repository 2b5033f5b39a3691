#include "sim/scenario/Dump.h"

#include <random>

#include <gtest/gtest.h>

#include "sim/scenario/Scenario.h"
#include "sim/verbs/perform.h"
#include "tests/sim/Peers.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/scenario/Reading.h"

using simtest::made;
using simtest::pictureOf;
using std::chrono::seconds;

namespace {

/// All there is to compare of two switches that is not in their pictures.
void expectSame(const sim::Simulator &one, const sim::Simulator &other) {
    EXPECT_EQ(pictureOf(one), pictureOf(other));
    for (const std::string &key : one.keys())
        EXPECT_EQ(one.stored(key), other.stored(key)) << key;
    EXPECT_EQ(one.zoning(), other.zoning());
    EXPECT_EQ(one.activeZoning(), other.activeZoning());
    EXPECT_EQ(one.zoningLimits().zones, other.zoningLimits().zones);
    EXPECT_EQ(one.priority(), other.priority());
    EXPECT_EQ(one.uptime(), other.uptime());
    EXPECT_EQ(one.adminModeHolder(), other.adminModeHolder());
    EXPECT_EQ(one.zoningLockHolder(), other.zoningLockHolder());
}

/// Loads what is dumped, compares, and dumps that again.
std::string expectRoundTrip(const sim::Simulator &device) {
    const std::string text = sim::dumpScenario(device);
    try {
        const auto loaded = made(text);
        expectSame(*loaded, device);
        EXPECT_EQ(sim::dumpScenario(*loaded), text);
    } catch (const sim::ScenarioError &error) {
        ADD_FAILURE() << error.what() << "\n" << text;
    }
    return text;
}

class EveryProfile : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(All, EveryProfile,
                         testing::Values("fixed-24", "director-8", "fixed-128", "claims-200", "second-naming",
                                         "fabric-2", "fabric-12", "fabric-60", "fabric-239"));

} // namespace

TEST_P(EveryProfile, IsDumpedAsItsNameAlone) {
    const auto device = sim::create(GetParam());
    EXPECT_EQ(expectRoundTrip(*device), std::string("profile = \"") + GetParam() + "\"\n");
}

TEST(Dump, DoesNotDivertConnections) {
    const auto device = sim::create();
    device->set("Oper.Switch.WWN", "100000C0DD000001");
    sim::dumpScenario(*device);
    EXPECT_EQ(simtest::Client().get("Oper.Switch.WWN").value, "100000C0DD000001");
}

TEST(Dump, SaysOnlyWhatIsDifferent) {
    const auto device = sim::create();
    device->set("Oper.UserPort.0.3.OperState", "Offline");
    device->set("Config.Services.SSHEnable", "True");
    device->set("Oper.Chassis.0.Fan.2", "Bad");
    EXPECT_EQ(expectRoundTrip(*device),
              "profile = \"fixed-24\"\n\n[settings]\n\"Config.Services.SSHEnable\" = \"True\"\n\n[[fan]]\nnumber = 2\n"
              "state = \"Bad\"\n\n[[port]]\nnumber = 3\nstate = \"Offline\"\n");
}

TEST(Dump, TransceiversAreWrittenAsTheyWerePlugged) {
    const auto device = sim::create();
    sim::Transceiver transceiver;
    transceiver.serialNumber = "S \"7\"";
    transceiver.longWave = true;
    transceiver.diagnostics = false;
    transceiver.vendorOui = 7;
    device->plugTransceiver(23, transceiver);
    device->pullTransceiver(0);
    device->set("Oper.UserPort.0.1.SFPSerialNumber", "");
    const std::string text = expectRoundTrip(*device);
    EXPECT_NE(text.find("number = 0\ntransceiver = false\n"), std::string::npos) << text;
    EXPECT_NE(text.find("number = 1\nmedia_ddm = \"True\"\nmedia_0_31 = "), std::string::npos) << text;
    EXPECT_NE(
        text.find("number = 23\ntransceiver = { serial = \"S \\\"7\\\"\", oui = 7, diagnostics = false, long_wave = "
                  "true }\n"),
        std::string::npos)
        << text;
}

TEST(Dump, BladesAreWrittenAsTheyWereExchanged) {
    const auto device = sim::create("director-8");
    device->removeBlade(1);
    device->removeBlade(7);
    device->insertBlade(7, {"FAN", "P", "S", 1, 1});
    device->removeBlade(2);
    device->insertBlade(2, {});
    const std::string text = expectRoundTrip(*device);
    EXPECT_NE(text.find("[[blade]]\nslot = 1\npresent = false\n"), std::string::npos) << text;
    EXPECT_NE(text.find("[[blade]]\nslot = 7\npresent = true\ntype = \"FAN\"\npart = \"P\"\n"), std::string::npos)
        << text;
    EXPECT_EQ(text.find("number = 0\n"), std::string::npos) << text; // ports go with their blade
}

TEST(Dump, LinksAndDevicesStayAtPortsOfABladeThatWasPulled) {
    const auto device = sim::create("director-8");
    device->addPeer(simtest::peerOf(2));
    device->connect({device->get("Oper.Switch.WWN"), 15, simtest::nameOf(2), 0});
    device->removeBlade(1);
    expectRoundTrip(*device);
    EXPECT_EQ(device->links().size(), 1U);
}

TEST(Dump, PartsMayBeMoreOrFewer) {
    const auto device = sim::create();
    device->set("Oper.Switch.MaxPorts", "30");
    device->set("Oper.UserPort.0.29.OperState", "Online");
    device->set("Oper.Chassis.0.MaxSlots", "2");
    device->insertBlade(1, {});
    device->set("Oper.Chassis.0.Fans", "1");
    expectRoundTrip(*device);
    device->set("Oper.Switch.MaxPorts", "5");
    expectRoundTrip(*device);
}

TEST(Dump, ALinkAtAPortThatIsGoneIsLeftOutWithAComment) {
    const auto device = sim::create();
    device->set("Oper.Switch.MaxPorts", "30");
    device->addPeer(simtest::peerOf(2));
    device->connect(simtest::linkOf(1, 29, 2, 0));
    device->set("Oper.Switch.MaxPorts", "24");
    const std::string text = sim::dumpScenario(*device);
    EXPECT_NE(text.find("# The link local:29 100000C0DD990002:0 is left out"), std::string::npos) << text;
    EXPECT_EQ(made(text)->peers().size(), 1U);
}

TEST(Dump, AnAddressThatDoesNotShowIsKept) {
    const auto device = sim::create();
    device->set("Oper.System.Eth.0.IPv6Address.0", "2001:db8::7");
    EXPECT_EQ(device->get("Oper.System.Eth.0.IPv6Address.0"), "");
    const auto loaded = made(expectRoundTrip(*device));
    loaded->set("Config.System.IPv6Enable", "True");
    EXPECT_EQ(loaded->get("Oper.System.Eth.0.IPv6Address.0"), "2001:db8::7");
}

TEST(Dump, TextsMayHoldAnyBytes) {
    const auto device = sim::create();
    device->set("Config.Snmp.SysDescr", "\xFF\x01 \"\\");
    device->set("Oper.Switch.FaultList", "a\tb\n\x7F");
    device->set("Oper.Blade.0.FaultList", "Z\xC3\xBCrich");
    expectRoundTrip(*device);
}

TEST(Dump, AccountsKeepTheirOrder) {
    const auto device = sim::create();
    device->removeAccount("operator");
    device->addAccount("\"ann\"");
    device->addAccount("operator");
    expectRoundTrip(*device);
}

TEST(Dump, FabricIsRebuiltWithItsOrderAndItsMemory) {
    const auto device = sim::create("fabric-12");
    const std::vector<sim::Peer> peers = device->peers();
    const std::vector<sim::Link> links = device->links();
    device->disconnect(links[1]);
    device->connect(links[1]);
    device->removePeer(peers[3].wwn);
    device->addPeer(simtest::peerOf(200, 7));
    device->addPeer(simtest::peerOf(201));
    device->connect({simtest::nameOf(200), 0, device->get("Oper.Switch.WWN"), 20});
    device->disconnect({simtest::nameOf(200), 0, device->get("Oper.Switch.WWN"), 20});
    sim::Peer changed = peers[5];
    changed.topology = {9, false};
    changed.ports = 30;
    device->changePeer(changed);
    device->setPriority(3);
    device->logOut(device->nameServer()[20].portWwn);
    device->logIn(simtest::deviceOf(201, 3));
    device->set("Oper.Switch.WhoIsPrincipal", "2222222222222222");
    expectRoundTrip(*device);
}

TEST(Dump, DomainsAndNamesMayHaveChangedHands) {
    const auto device = sim::create("fabric-2");
    sim::Peer twin = device->peers()[0];
    twin.domain = 77;
    device->changePeer(twin);
    device->set("Oper.Switch.DomainID", "2");
    device->set("Oper.Switch.WWN", "1000abcdef000001");
    twin.domain = 1;
    device->changePeer(twin);
    expectRoundTrip(*device);
}

TEST(Dump, APeerThatTheDatabaseHasForgottenIsForgottenAgain) {
    const auto device = sim::create("fabric-2");
    const sim::Peer twin = device->peers()[0];
    device->removePeer(twin.wwn);
    device->addPeer(twin);
    expectRoundTrip(*device);
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecordList.255"), "1");
}

TEST(Dump, ZoningIsRebuiltWithItsChecksums) {
    const auto device = sim::create();
    sim::ZoningDatabase orchard = simtest::orchard();
    orchard.aliases.push_back({"DECADE", {{ZOV_ZMT_PORTWWN, "2100000000000001"}}});
    orchard.zones[0].members.push_back({ZOV_ZMT_ALIAS, "DECADE"});
    device->setZoning(orchard);
    device->activateZoneset("north");
    device->setZoningLimits({1, 2, 3, 4, 5, 6, 7});
    expectRoundTrip(*device);
}

TEST(Dump, AnActiveSetThatIsNoLongerDefinedStaysActive) {
    const auto device = sim::create();
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    device->setZoning({});
    expectRoundTrip(*device);
    EXPECT_FALSE(device->activeZoning().zones.empty());
}

TEST(Dump, TimeAndOtherClientsAreKept) {
    const auto device = sim::create();
    device->passTime(seconds(123456789));
    device->holdAdminModeElsewhere(true);
    device->holdZoningLockElsewhere(true);
    expectRoundTrip(*device);
}

TEST(Dump, TimeIsKeptToTheMillisecond) {
    const auto device = sim::create();
    device->passTime(seconds(1), std::chrono::milliseconds(1));
    EXPECT_EQ(made(expectRoundTrip(*device))->clock(), std::chrono::milliseconds(3601001));
}

TEST(Dump, RulesGoOnWhereTheyWere) {
    const auto device = sim::create();
    sim::Fault fault;
    fault.call = "zov_smlGet";
    fault.key = "Oper.Switch.*";
    fault.skip = 1;
    fault.times = 2;
    fault.status = -4;
    fault.value = std::string("\0\xFF", 2);
    device->addFault(fault);
    fault = {};
    fault.result = 3;
    fault.nullHandle = true;
    fault.delay = std::chrono::milliseconds(1001);
    fault.times = 0;
    device->addFault(fault); // used up
    fault.times = -1;
    device->addFault(fault);
    fault.action = [] {};
    device->addFault(fault);
    const auto loaded = made(sim::dumpScenario(*device));
    const std::map<int, sim::Fault> rules = loaded->faults();
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules.at(1).call, "zov_smlGet");
    EXPECT_EQ(rules.at(1).key, "Oper.Switch.*");
    EXPECT_EQ(rules.at(1).skip, 1U);
    EXPECT_EQ(rules.at(1).times, 2);
    EXPECT_EQ(rules.at(1).status, -4);
    EXPECT_EQ(rules.at(1).value, std::string("\0\xFF", 2));
    EXPECT_EQ(rules.at(2).result, 3);
    EXPECT_TRUE(rules.at(2).nullHandle);
    EXPECT_EQ(rules.at(2).delay, std::chrono::milliseconds(1001));
    EXPECT_NE(sim::dumpScenario(*device).find("# A rule with an action"), std::string::npos);
}

TEST(Dump, RulesMayHoldAnyBytesInTheirCommands) {
    const auto device = sim::create();
    sim::perform(*device, "rule add do=\"fault \\\"A\\xff\\\"\"\nrule add do=\"who\\x0a\\x0afault \\\"B\\xff\\\"\"");
    const auto loaded = made(expectRoundTrip(*device));
    ASSERT_EQ(loaded->faults().size(), 2U);
    EXPECT_EQ(loaded->faults().begin()->second.actionText, "fault \"A\xff\"");
}

TEST(Dump, ASwitchCannotBeSlowerThanAFileCanSay) {
    const auto device = sim::create();
    EXPECT_THROW(sim::perform(*device, "peer add 100000C0DD00B201 domain=2 slow=1000001"), std::invalid_argument);
    sim::perform(*device, "peer add 100000C0DD00B201 domain=2 slow=1000000");
    EXPECT_THROW(sim::perform(*device, "peer change 2 slow=4000000000"), std::invalid_argument);
    EXPECT_EQ(made(expectRoundTrip(*device))->peers().at(0).topology.seconds, 1000000U);
}

TEST(Dump, RulesOfEveryWordComeBack) {
    const auto device = sim::create();
    sim::perform(*device, R"(
        rule add call=zov_smlGet key="Oper.*" step="after noon" after=90s skip=2 times=3 chance=25 seed=7 status=-24 stale
        rule add key=Oper.Switch.WWN after=1500ms times=always seed=18446744073709551615 garbled delay=2min hang=5ms
        rule add value="\x00\"\\ \xff" result=3 nullhandle
        rule add call=notification key=14 late=1h lost
        rule add call=notification duplicated reordered value=text
        rule add call=notification storm=7
        rule add do="port 3 offline" chance=99
        rule add call=zov_smlGet do="fault \"a b\"\x0a\x0arule add do=\"fault clear\"" skip=1
    )");
    const std::string rules = sim::perform(*device, "rule list");
    const std::string text = expectRoundTrip(*device);
    EXPECT_EQ(sim::perform(*made(text), "rule list"), rules);
    EXPECT_NE(text.find("\ndo = \"port 3 offline\"\n"), std::string::npos) << text;
    EXPECT_NE(text.find("times = \"always\"\nseed = \"18446744073709551615\"\n"), std::string::npos) << text;
    EXPECT_NE(text.find("do = [\"fault \\\"a b\\\"\", \"\", \"rule add do=\\\"fault clear\\\"\"]\n"), std::string::npos)
        << text;
    sim::perform(*device, "clock pass 500ms");
    simtest::Client().get("Oper.Switch.DomainID");
    EXPECT_NE(expectRoundTrip(*device), text);
}

namespace {

using Random = std::minstd_rand;

unsigned below(Random &random, unsigned limit) {
    return static_cast<unsigned>(random() % limit);
}

/// Does something to the switch, if it can be done.
void change(sim::Simulator &device, Random &random) {
    const auto attribute = [&] {
        const std::vector<std::string> keys = device.keys();
        const char *values[] = {"Online", "Offline", "True", "False",        "Bad", "Good",
                                "",       "7",       "E",    "NotInstalled", "text"};
        device.set(keys[below(random, static_cast<unsigned>(keys.size()))], values[below(random, 11)]);
    };
    const unsigned domain = 2 + below(random, 4);
    try {
        switch (below(random, 12)) {
        case 0:
            return device.addPeer(simtest::peerOf(domain, 1 + below(random, 3)));
        case 1:
            return device.removePeer(simtest::nameOf(domain));
        case 2:
            return device.connect(simtest::linkOf(domain, below(random, 4), 2 + below(random, 4), below(random, 4)));
        case 3:
            return device.connect({device.get("Oper.Switch.WWN"), below(random, 24), simtest::nameOf(domain), 5});
        case 4: {
            const std::vector<sim::Link> links = device.links();
            if (!links.empty())
                device.disconnect(links[below(random, static_cast<unsigned>(links.size()))]);
            return;
        }
        case 5:
            return device.logIn(simtest::deviceOf(domain, below(random, 24)));
        case 6: {
            const std::vector<sim::NameServerEntry> entries = device.nameServer();
            if (!entries.empty())
                device.logOut(entries[below(random, static_cast<unsigned>(entries.size()))].portWwn);
            return;
        }
        case 7:
            return device.removeBlade(below(random, 8));
        case 8:
            return device.insertBlade(below(random, 8), {});
        case 9:
            return device.pullTransceiver(below(random, 24));
        case 10:
            return device.plugTransceiver(below(random, 24), {});
        default:
            attribute();
        }
    } catch (const std::invalid_argument &) {
        return; // it could not be done
    }
}

} // namespace

TEST(Dump, WhateverHappenedToASwitchComesBack) {
    constexpr const char *profiles[] = {"fixed-24", "director-8", "fabric-2"};
    for (unsigned seed = 1; seed <= 30 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        const auto device = sim::create(profiles[seed % 3]);
        for (int i = 0; i < 60; ++i)
            change(*device, random);
        if (sim::dumpScenario(*device).find("is left out") == std::string::npos)
            expectRoundTrip(*device);
    }
}
