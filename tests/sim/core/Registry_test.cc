#include "sim/core/Registry.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Registry, TwoConnectionsAreTwoClientsOfOneSwitch) {
    const auto device = sim::create();
    Client first;
    Client second;
    EXPECT_EQ(first.connected, 0);
    EXPECT_EQ(second.connected, 0);
    EXPECT_NE(first.handle, 0U);
    EXPECT_NE(first.handle, second.handle);
    EXPECT_EQ(device->connectionCount(), 2U);
    ASSERT_EQ(first.registerFor({33}), 0);
    ASSERT_EQ(second.registerFor({32}), 0);
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(first.codes(*device), std::vector<int32_t>{33});
    EXPECT_EQ(second.codes(*device), std::vector<int32_t>{32});
    EXPECT_EQ(second.get("Oper.Chassis.0.Fan.0").value, "Bad");
}

TEST(Registry, NewConnectionsReachTheSwitchMadeLast) {
    const auto first = sim::create();
    Client ofFirst;
    auto second = sim::create();
    second->set("Oper.Switch.WWN", "100000C0DD000002");
    Client ofSecond;
    EXPECT_EQ(ofFirst.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
    EXPECT_EQ(ofSecond.get("Oper.Switch.WWN").value, "100000C0DD000002");
    EXPECT_EQ(first->connectionCount(), 1U);
    EXPECT_EQ(second->connectionCount(), 1U);
    second.reset();
    const Client again;
    EXPECT_EQ(again.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
    EXPECT_EQ(first->connectionCount(), 2U);
}

TEST(Registry, SwitchesSideBySideShareNothing) {
    const auto first = sim::create();
    Client ofFirst;
    ASSERT_EQ(ofFirst.registerFor({32}), 0);
    const auto second = sim::create();
    Client ofSecond;
    ASSERT_EQ(ofSecond.registerFor({32}), 0);
    first->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(ofFirst.codes(*first), std::vector<int32_t>{32});
    EXPECT_EQ(ofSecond.codes(*second), std::vector<int32_t>());
    EXPECT_EQ(ofSecond.get("Oper.Switch.OperState").value, "Online");
    sim::Fault fault;
    fault.result = 9;
    fault.times = -1;
    first->addFault(fault);
    EXPECT_EQ(ofFirst.get("Oper.Switch.WWN").status, 9);
    EXPECT_EQ(ofSecond.get("Oper.Switch.WWN").status, 0);
}

TEST(Registry, OldestSwitchOffLeavesTheNewestReached) {
    auto first = sim::create();
    const auto second = sim::create();
    first.reset();
    const Client client;
    EXPECT_EQ(second->connectionCount(), 1U);
    EXPECT_EQ(client.get("Oper.Switch.OperState").value, "Online");
}

TEST(Registry, ConnectionsOfASwitchedOffSwitchStayDead) {
    auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32}), 0);
    device.reset();
    const auto successor = sim::create();
    const Client other;
    EXPECT_NE(other.handle, client.handle);
    char value[] = "x";
    char *text = nullptr;
    uint32_t size = 77;
    SmlMessage message = simtest::messageOf("Oper.Switch.WWN", "before");
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.WWN", &text, &size), simtest::kBadHandle);
    EXPECT_EQ(zov_smlSet(client.handle, "Cmd.Switch.ReqAdmin", value), simtest::kBadHandle);
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 1), simtest::kBadHandle);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 1), simtest::kBadHandle);
    EXPECT_EQ(client.registerFor({32}), simtest::kBadHandle);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(size, 77U);
    EXPECT_STREQ(value, "x");
    EXPECT_STREQ(message.value, "before");
    EXPECT_EQ(client.registration[0].result, -1);
}

TEST(Registry, NumbersThatAreNoConnectionAreRefused) {
    const auto device = sim::create();
    const Client client;
    SmlMessage message = simtest::messageOf("Oper.Switch.WWN");
    for (const zov_handle_t handle : {0U, client.handle + 1, 0xFFFFFFFFU})
        EXPECT_EQ(zov_smlGetBatch(handle, &message, 1), simtest::kBadHandle) << handle;
}

TEST(Registry, WithoutASimulatorThereIsABuiltInSwitch) {
    Client first;
    ASSERT_EQ(first.connected, 0);
    EXPECT_EQ(first.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
    EXPECT_EQ(first.registerFor({32}), 0);
    ASSERT_EQ(first.set("Cmd.Switch.ReqAdmin"), 0);
    const Client second;
    EXPECT_EQ(second.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy); // it is one and the same
    {
        const auto device = sim::create();
        const Client third;
        EXPECT_EQ(device->connectionCount(), 1U);
        EXPECT_EQ(first.get("Oper.Switch.OperState").value, "Online"); // and it stays on
    }
    const Client fourth;
    EXPECT_EQ(fourth.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    EXPECT_EQ(first.set("Cmd.Switch.RelAdmin"), 0);
}
