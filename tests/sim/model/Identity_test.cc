#include "sim/model/Identity.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

/// One attribute: what it starts as, what it can become, what it cannot, and what then is sent.
struct Attribute {
    const char *key;
    const char *initial;
    const char *changed;
    const char *refused;
    int32_t notification;
};

void PrintTo(const Attribute &attribute, std::ostream *out) {
    *out << attribute.key;
}

class Identity : public testing::TestWithParam<Attribute> {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
};

constexpr const char *kFreeText = nullptr;

INSTANTIATE_TEST_SUITE_P(
    EveryAttribute, Identity,
    testing::Values(Attribute{"Oper.Switch.WWN", "100000C0DD00A1B2", "100000c0dd00ffff", "100000C0DD00A1B", 8},
                    Attribute{"Oper.Switch.WhoIsPrincipal", "100000C0DD00A1B2", "100000C0DD000001", "100000C0DD00A1BG",
                              1},
                    Attribute{"Oper.Switch.OperState", "Online", "Offline", "online", 32},
                    Attribute{"Oper.Switch.DomainID", "1", "239", "240", 49},
                    Attribute{"Oper.Switch.Nop", "GL", "EXG", kFreeText, 0},
                    Attribute{"Oper.Switch.TransparentModeFeature", "True", "False", "true", 52},
                    Attribute{"Oper.Switch.FCOEFeature", "False", "True", "", 52},
                    Attribute{"Oper.Switch.EthernetPassthroughFeature", "False", "True", "Yes", 52},
                    Attribute{"Oper.Switch.EnhFaultMonFeature", "True", "False", "0", 52},
                    Attribute{"Config.Switch.TransparentMode", "False", "True", "FALSE", 52}));

} // namespace

TEST_P(Identity, IsReadByClientsAndThroughTheControlInterface) {
    const Client client;
    EXPECT_EQ(client.get(GetParam().key).status, 0);
    EXPECT_EQ(client.get(GetParam().key).value, GetParam().initial);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST_P(Identity, ChangesAndSaysSoOnce) {
    Client client;
    ASSERT_EQ(client.registerFor({1, 8, 32, 49, 52}), 0);
    device->set(GetParam().key, GetParam().changed);
    EXPECT_EQ(client.get(GetParam().key).value, GetParam().changed);
    device->set(GetParam().key, GetParam().changed); // no change, nothing to say
    const std::vector<int32_t> expected(GetParam().notification ? 1 : 0, GetParam().notification);
    EXPECT_EQ(client.codes(*device), expected);
}

TEST_P(Identity, ChangesInSilenceWhenAsked) {
    Client client;
    ASSERT_EQ(client.registerFor({1, 8, 32, 49, 52}), 0);
    device->set(GetParam().key, GetParam().changed, sim::Notify::no);
    EXPECT_EQ(device->get(GetParam().key), GetParam().changed);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_P(Identity, RefusesWhatItCannotBeAndStaysAsItWas) {
    const std::string refused = GetParam().refused ? GetParam().refused : std::string(256, 'x');
    EXPECT_THROW(device->set(GetParam().key, refused), std::invalid_argument);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST_P(Identity, IsSetByClientsOnlyIfItIsConfiguration) {
    const Client client;
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    const bool isConfiguration = std::string(GetParam().key).rfind("Config.", 0) == 0;
    EXPECT_EQ(client.set(GetParam().key, GetParam().changed), isConfiguration ? 0 : simtest::kReadOnly);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST(SwitchState, TakesItsFourStatesOnly) {
    const auto device = sim::create();
    for (const char *state : {"Offline", "Diagnostics", "Downed", "Online"}) {
        device->set("Oper.Switch.OperState", state);
        EXPECT_EQ(device->get("Oper.Switch.OperState"), state);
    }
    EXPECT_THROW(device->set("Oper.Switch.OperState", "Rebooting"), std::invalid_argument);
}
