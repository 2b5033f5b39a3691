#include "sim/core/Device.h"

#include <limits>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;

TEST(Device, ServesEveryKeyOfABatchAndReportsEachOne) {
    const auto device = sim::create();
    const Client client;
    const std::vector<SmlMessage> messages =
        client.getBatch({"Oper.Switch.WWN", "Oper.Nothing", "Cmd.Switch.ReqAdmin", "Oper.Chassis.0.Fan.2"});
    EXPECT_EQ(client.batchResult, 0);
    EXPECT_EQ(messages[0].status, 0);
    EXPECT_STREQ(messages[0].value, "100000C0DD00A1B2");
    EXPECT_EQ(messages[1].status, simtest::kNoSuchKey);
    EXPECT_EQ(messages[2].status, simtest::kNotReadable);
    EXPECT_EQ(messages[3].status, 0);
    EXPECT_STREQ(messages[3].value, "Good");
}

TEST(Device, SettingIsCheckedStepByStep) {
    const auto device = sim::create();
    const Client client;
    EXPECT_EQ(client.set("Config.Switch.Color", "True"), simtest::kNoSuchKey);
    EXPECT_EQ(client.set("Oper.Switch.OperState", "Offline"), simtest::kReadOnly);
    EXPECT_EQ(client.set("Config.Mfg.BrandName", "x"), simtest::kReadOnly);
    device->set("Oper.Switch.IPv6Feature", "False");
    EXPECT_EQ(client.set("Oper.System.Eth.0.IPv6Address.0", "::1"), simtest::kReadOnly);
    EXPECT_EQ(client.set("Config.System.IPv6Enable", "True"), simtest::kNotSupported);
    EXPECT_EQ(client.set("Config.Switch.TransparentMode", "True"), simtest::kAdminRequired);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Config.Switch.TransparentMode", "True"), simtest::kEditRequired);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set("Config.Switch.TransparentMode", "Maybe"), simtest::kBadValue);
    EXPECT_EQ(client.set("Config.Switch.TransparentMode", "True"), 0);
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
}

TEST(Device, ARefusedChangeChangesAndSaysNothing) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32, 33}), 0);
    EXPECT_THROW(device->set("Oper.Switch.OperState", "Sideways"), std::invalid_argument);
    EXPECT_THROW(device->set("Oper.Chassis.0.Fan.3", "Bad"), std::invalid_argument);
    EXPECT_THROW(device->set("Cmd.Switch.ReqAdmin", ""), std::invalid_argument);
    EXPECT_THROW(device->get("Cmd.Switch.ReqAdmin"), std::invalid_argument);
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST(Device, ABatchSeesOneStateOfTheSwitch) {
    const auto device = sim::create();
    const Client client;
    std::thread flips([&device] {
        for (int i = 0; i < 500; ++i)
            device->set("Oper.Switch.DomainID", i % 2 ? "1" : "2");
    });
    for (int i = 0; i < 500; ++i) {
        const std::vector<SmlMessage> messages =
            client.getBatch({"Oper.Switch.DomainID", "Oper.Switch.WWN", "Oper.Switch.DomainID"});
        EXPECT_STREQ(messages[0].value, messages[2].value);
    }
    flips.join();
}

TEST(Device, ANewSwitchRemembersNothingOfTheOldOne) {
    auto device = sim::create();
    device->set("Oper.Switch.OperState", "Downed");
    device->set("Oper.Chassis.0.Fans", "9");
    device->holdAdminModeElsewhere(true);
    device.reset();
    device = sim::create();
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.Chassis.0.Fans"), "3");
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_TRUE(device->records().empty());
    EXPECT_EQ(device->connectionCount(), 0U);
}

TEST(Device, ARestartEndsSessionsAndKeepsTheRest) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32, 52}), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set("Config.Switch.TransparentMode", "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    const long uptime = device->uptime();
    device->restart();
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(device->uptime(), uptime);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
    EXPECT_EQ(client.get("Oper.Switch.OperState").value, "Online");
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kEditRequired);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0); // what was saved stays saved
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{52, 32}));
}

TEST(Device, ARestartTakesItFromOtherClientsToo) {
    const auto device = sim::create();
    device->holdAdminModeElsewhere(true);
    device->holdZoningLockElsewhere(true);
    device->restart();
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(device->zoningLockHolder(), 0U);
}

TEST(Device, ClockRunsWhenItIsToldTo) {
    const auto device = sim::create();
    EXPECT_EQ(device->uptime(), 3600);
    device->passTime(std::chrono::seconds(11));
    device->passTime(std::chrono::hours(24));
    EXPECT_EQ(device->uptime(), 3600 + 11 + 86400);
    device->passTime(std::chrono::seconds(0));
    EXPECT_THROW(device->passTime(std::chrono::seconds(-1)), std::invalid_argument);
    EXPECT_EQ(device->uptime(), 3600 + 11 + 86400);
    EXPECT_EQ(sim::create()->uptime(), 3600);
}

TEST(Device, ClockStopsAtTheLastTimeItCanTell) {
    const auto device = sim::create();
    device->passTime(std::chrono::seconds::max());
    EXPECT_EQ(device->uptime(), std::numeric_limits<long>::max());
    device->passTime(std::chrono::seconds(1));
    EXPECT_EQ(device->uptime(), std::numeric_limits<long>::max());
}

TEST(Device, NotificationsOfOneChangeStayTogether) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({1, 7}), 0);
    const auto flap = [&device](unsigned domain) {
        device->addPeer(simtest::peerOf(domain));
        for (int i = 0; i < 200; ++i) {
            device->connect(simtest::linkOf(1, domain, domain, 0));
            device->disconnect(simtest::linkOf(1, domain, domain, 0));
        }
    };
    std::thread other(flap, 16);
    flap(17);
    other.join();
    const std::vector<int32_t> codes = client.codes(*device);
    std::vector<int32_t> pairs;
    for (int i = 0; i < 800; ++i)
        pairs.insert(pairs.end(), {7, 1});
    EXPECT_EQ(codes, pairs);
}

TEST(Device, ABatchSeesOneStateOfTheFabric) {
    const auto device = sim::create();
    const Client client;
    device->addPeer(simtest::peerOf(2));
    std::thread flaps([&device] {
        for (int i = 0; i < 300; ++i) {
            device->connect(simtest::linkOf(1, 16, 2, 0));
            device->disconnect(simtest::linkOf(1, 16, 2, 0));
        }
    });
    for (int i = 0; i < 300; ++i) {
        const std::vector<SmlMessage> messages =
            client.getBatch({"Oper.Eport.LsdbRecord.1.NumberOfLinks", "Oper.Eport.LsdbRecord.1.Link.0.LocalPort",
                             "Oper.TopologyAll.2.PortEntries"});
        const bool isLinked = std::string(messages[0].value) == "1";
        EXPECT_EQ(messages[1].status, isLinked ? 0 : simtest::kNoSuchKey);
        EXPECT_EQ(messages[2].status, isLinked ? 0 : simtest::kNoSuchKey);
    }
    flaps.join();
}
