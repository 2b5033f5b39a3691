#include "sim/model/Manufacturing.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class Manufacturing : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(EveryAttribute, Manufacturing,
                         testing::Values("Config.Mfg.BrandName", "Config.Mfg.ChassisPartNum",
                                         "Config.Mfg.ChassisSerialNum", "Config.Mfg.PlanarPartNum",
                                         "Config.Mfg.ProductFeatureType"));

} // namespace

TEST_P(Manufacturing, IsFilledInAndReadable) {
    const auto device = sim::create();
    const Client client;
    EXPECT_EQ(client.get(GetParam()).status, 0);
    EXPECT_NE(client.get(GetParam()).value, "");
    EXPECT_EQ(client.get(GetParam()).value, device->get(GetParam()));
}

TEST_P(Manufacturing, ChangesOnlyBelowTheClientsAndWithoutANotification) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({8, 9, 11, 32, 33, 52, 57}), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(GetParam(), "other"), simtest::kReadOnly);
    device->set(GetParam(), "other");
    EXPECT_EQ(client.get(GetParam()).value, "other");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_P(Manufacturing, RefusesATextThatDoesNotFit) {
    const auto device = sim::create();
    device->set(GetParam(), std::string(255, 'm'));
    EXPECT_THROW(device->set(GetParam(), std::string(256, 'm')), std::invalid_argument);
    EXPECT_EQ(device->get(GetParam()), std::string(255, 'm'));
}

TEST(ManufacturingData, ItsTextsAreNotMixedUp) {
    const auto device = sim::create();
    const std::vector<std::string> keys = {"Config.Mfg.BrandName", "Config.Mfg.ChassisPartNum",
                                           "Config.Mfg.ChassisSerialNum", "Config.Mfg.PlanarPartNum",
                                           "Config.Mfg.ProductFeatureType"};
    for (const std::string &key : keys)
        device->set(key, "text of " + key);
    for (const std::string &key : keys)
        EXPECT_EQ(device->get(key), "text of " + key);
}
