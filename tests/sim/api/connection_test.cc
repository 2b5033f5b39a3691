#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

void ignore(void *, zov_event_s *, void *) {}

} // namespace

TEST(Connect, ReachesTheSwitchOnThisHostOnly) {
    const auto device = sim::create();
    zov_handle_t handle = 55;
    for (const char *host : {"", "127.0.0.1", "LOCALHOST", "localhost ", "switch1"})
        EXPECT_EQ(zov_IPConnect(host, "cim", "", &handle), simtest::kNoSuchHost) << host;
    EXPECT_EQ(handle, 55U);
    EXPECT_EQ(zov_IPConnect("localhost", "cim", "", &handle), 0);
    EXPECT_NE(handle, 55U);
    EXPECT_EQ(device->connectionCount(), 1U);
}

TEST(Connect, NullArgumentsAreRefused) {
    const auto device = sim::create();
    zov_handle_t handle = 55;
    EXPECT_EQ(zov_IPConnect(nullptr, "cim", "", &handle), simtest::kBadArgument);
    EXPECT_EQ(zov_IPConnect("localhost", nullptr, "", &handle), simtest::kBadArgument);
    EXPECT_EQ(zov_IPConnect("localhost", "cim", nullptr, &handle), simtest::kBadArgument);
    EXPECT_EQ(zov_IPConnect("localhost", "cim", "", nullptr), simtest::kBadArgument);
    EXPECT_EQ(handle, 55U);
    EXPECT_EQ(device->connectionCount(), 0U);
}

TEST(Registration, CodesOutsideTheirRangeGetAResultOfTheirOwn) {
    const auto device = sim::create();
    Client client;
    EXPECT_EQ(client.registerFor({0, 255, 256, -1, INT32_MIN, INT32_MAX, 33}), 0);
    std::vector<int32_t> results;
    for (const zov_eventreg_s &entry : client.registration)
        results.push_back(entry.result);
    EXPECT_EQ(results, (std::vector<int32_t>{0, 0, 22, 22, 22, 22, 0}));
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{33});
}

TEST(Registration, WrongArgumentsAreRefusedAndKeepTheFormerRegistration) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({33}), 0);
    zov_eventreg_s entry = {32, -1};
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, nullptr, nullptr, &entry, 1), simtest::kBadArgument);
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, ignore, nullptr, nullptr, 1), simtest::kBadArgument);
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, ignore, nullptr, &entry, 0), simtest::kBadArgument);
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, ignore, nullptr, &entry, -1), simtest::kBadArgument);
    EXPECT_EQ(zov_enRegisterForEventList(0, ignore, nullptr, &entry, 1), simtest::kBadHandle);
    EXPECT_EQ(entry.result, -1);
    device->set("Oper.Switch.OperState", "Offline");
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{33});
}

TEST(FreeMemory, TakesWhatMallocGave) {
    const auto device = sim::create();
    EXPECT_EQ(zov_libFreeMemory(std::malloc(16)), 0);
    EXPECT_EQ(zov_libFreeMemory(nullptr), simtest::kBadArgument);
}

TEST(FreeMemory, WorksWithoutASwitch) {
    EXPECT_EQ(zov_libFreeMemory(std::malloc(16)), 0);
    EXPECT_EQ(zov_libFreeMemory(nullptr), simtest::kBadArgument);
}
