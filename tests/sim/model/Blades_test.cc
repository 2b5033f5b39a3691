#include "sim/model/Blades.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

constexpr const char *kAttributes[] = {"AdminState",     "DiagStatus",  "Type",          "PlanarPartNum",
                                       "BoardSerialNum", "TempSensors", "VoltageSensors"};

std::string keyOf(unsigned slot, const std::string &attribute) {
    return "Oper.Blade." + std::to_string(slot) + "." + attribute;
}

std::string portKey(unsigned port, const std::string &attribute) {
    return "Oper.UserPort.0." + std::to_string(port) + "." + attribute;
}

class Blades : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create("director-8");
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({14, 28, 29, 39, 77, 82}), 0); }

    /// Notifications as "code [slot] text", once the switch is quiet.
    std::vector<std::string> announced() {
        std::vector<std::string> lines;
        const size_t count = client.codes(*device).size();
        for (const zov_event_s &event : client.events(count)) {
            EXPECT_EQ(event.source.number[0], 0);
            EXPECT_EQ(event.source.number[2], 0);
            lines.push_back(std::to_string(event.code) + " [" + std::to_string(event.source.number[1]) + "] " +
                            event.text);
        }
        return lines;
    }
};

struct Change {
    const char *attribute;
    std::vector<const char *> values; ///< each another one than before
    int32_t notification;
};

void PrintTo(const Change &change, std::ostream *out) {
    *out << change.attribute;
}

class BladeAttribute : public Blades, public testing::WithParamInterface<Change> {};

INSTANTIATE_TEST_SUITE_P(
    Every, BladeAttribute,
    testing::Values(Change{"OperState",
                           {"Offline", "Diagnostics", "Pending", "Down", "Downed", "NotInstalled", "PoweredOff",
                            "Online"},
                           39},
                    Change{"AdminState", {"Offline", "Diagnostics", "Down", "Downed", "PoweredOff", "", "Online"}, 39},
                    Change{"DiagStatus", {"Compromised", "Failed", "", "Good"}, 39},
                    Change{"Type", {"CPU", "PS", "FAN", "", "IO"}, 0}, Change{"PlanarPartNum", {"", "31-00000-00"}, 0},
                    Change{"BoardSerialNum", {"", "S 1"}, 0}, Change{"TempSensors", {"", "0", "255"}, 0},
                    Change{"VoltageSensors", {"", "0", "255"}, 0}, Change{"FaultList", {"FW_POST_FAIL", ""}, 82}));

} // namespace

TEST_P(BladeAttribute, TakesEachOfItsValuesAndAnnouncesItWithItsSlot) {
    const std::string key = keyOf(3, GetParam().attribute);
    std::vector<std::string> expected;
    for (const char *value : GetParam().values) {
        device->set(key, value);
        EXPECT_EQ(client.get(key).value, value);
        if (GetParam().notification)
            expected.push_back(std::to_string(GetParam().notification) + " [3] " + key + " is now " + value);
    }
    EXPECT_EQ(announced(), expected);
}

TEST_P(BladeAttribute, BelongsToItsSlotAloneAndIsNotSetByClients) {
    const std::string before = device->get(keyOf(2, GetParam().attribute));
    device->set(keyOf(3, GetParam().attribute), GetParam().values[0]);
    EXPECT_EQ(device->get(keyOf(2, GetParam().attribute)), before);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(keyOf(2, GetParam().attribute), GetParam().values[0]), simtest::kReadOnly);
}

TEST_F(Blades, ARemovedBladeLeavesEmptyTextsBehind) {
    device->set(keyOf(4, "FaultList"), "HW_MP_ACCESS_X", sim::Notify::no);
    device->removeBlade(4);
    EXPECT_EQ(client.get(keyOf(4, "OperState")).value, "NotInstalled");
    EXPECT_EQ(client.get(keyOf(4, "FaultList")).value, "");
    for (const char *attribute : kAttributes) {
        EXPECT_EQ(client.get(keyOf(4, attribute)).status, 0) << attribute;
        EXPECT_EQ(client.get(keyOf(4, attribute)).value, "") << attribute;
        EXPECT_NE(client.get(keyOf(5, attribute)).value, "") << attribute;
    }
    EXPECT_EQ(announced(), std::vector<std::string>{"29 [4] PS blade removed from slot 4"});
}

TEST_F(Blades, AnInsertedBladeComesUpHealthyAsWhatItIs) {
    device->removeBlade(4, sim::Notify::no);
    device->insertBlade(4, {"FAN", "part", "serial", 7, 0});
    const std::pair<const char *, const char *> expected[] = {
        {"OperState", "Online"}, {"AdminState", "Online"},  {"DiagStatus", "Good"},
        {"Type", "FAN"},         {"PlanarPartNum", "part"}, {"BoardSerialNum", "serial"},
        {"TempSensors", "7"},    {"VoltageSensors", "0"},   {"FaultList", ""},
    };
    for (const auto &[attribute, value] : expected)
        EXPECT_EQ(client.get(keyOf(4, attribute)).value, value) << attribute;
    EXPECT_EQ(announced(), std::vector<std::string>{"28 [4] FAN blade inserted into slot 4"});
}

TEST_F(Blades, ExchangingOneIsARemovalAndAnInsertion) {
    device->removeBlade(7);
    device->insertBlade(7, {"CPU"});
    EXPECT_EQ(client.get(keyOf(7, "Type")).value, "CPU");
    EXPECT_EQ(announced(), (std::vector<std::string>{"29 [7] IO blade removed from slot 7",
                                                     "28 [7] CPU blade inserted into slot 7"}));
}

TEST_F(Blades, ComeAndGoInSilenceWhenAsked) {
    device->removeBlade(7, sim::Notify::no);
    device->insertBlade(7, {"PS"}, sim::Notify::no);
    EXPECT_EQ(client.get(keyOf(7, "Type")).value, "PS");
    EXPECT_EQ(announced(), std::vector<std::string>());
}

TEST_F(Blades, PortsOfAnIoBladeComeAndGoWithItWithoutWordsOfTheirOwn) {
    device->set("Config.UserPort.0.16.Type", "E", sim::Notify::no);
    device->removeBlade(2);
    for (unsigned port = 0; port < 64; ++port) {
        const bool isGone = port >= 16 && port < 32;
        EXPECT_EQ(client.get(portKey(port, "OperState")).value == "NotInstalled", isGone) << port;
    }
    for (const char *attribute : {"DDM.Supported", "SFPData0_31", "SFPData32_63", "SFPSerialNumber"}) {
        EXPECT_EQ(client.get(portKey(16, attribute)).status, 0) << attribute;
        EXPECT_EQ(client.get(portKey(16, attribute)).value, "") << attribute;
        EXPECT_NE(client.get(portKey(15, attribute)).value, "") << attribute;
    }
    device->insertBlade(2, {});
    EXPECT_EQ(client.get(portKey(15, "OperState")).value, "Online");
    EXPECT_EQ(client.get(portKey(16, "OperState")).value, "Offline");
    EXPECT_EQ(client.get(portKey(31, "OperState")).value, "Offline");
    EXPECT_EQ(client.get(portKey(32, "OperState")).value, "Online");
    EXPECT_EQ(client.get(portKey(16, "SFPSerialNumber")).value, "");
    EXPECT_EQ(client.get("Config.UserPort.0.16.Type").value, "E");
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{29, 28}));
}

TEST_F(Blades, AnyOtherBladeBringsNoPorts) {
    device->removeBlade(7);
    device->insertBlade(7, {"CPU"});
    EXPECT_EQ(client.get(portKey(48, "OperState")).value, "NotInstalled");
    EXPECT_EQ(client.get(portKey(63, "OperState")).value, "NotInstalled");
}

TEST_F(Blades, PortsOfASwitchInOneBoxAreThereWhateverIsInItsSlots) {
    const auto box = sim::create();
    box->removeBlade(0);
    EXPECT_EQ(box->get(portKey(0, "OperState")), "Online");
    box->insertBlade(0, {});
    EXPECT_EQ(box->get(portKey(0, "OperState")), "Online");
}

TEST_F(Blades, ASlotHoldsOneBladeAndOnlyWhatItHoldsCanBeRemoved) {
    EXPECT_THROW(device->insertBlade(7, {"PS"}), std::invalid_argument);
    EXPECT_EQ(device->get(keyOf(7, "Type")), "IO");
    device->set(keyOf(7, "OperState"), "PoweredOff", sim::Notify::no);
    EXPECT_THROW(device->insertBlade(7, {"PS"}), std::invalid_argument);
    device->removeBlade(7, sim::Notify::no);
    EXPECT_THROW(device->removeBlade(7), std::invalid_argument);
    EXPECT_THROW(device->removeBlade(8), std::invalid_argument);
    EXPECT_THROW(device->insertBlade(8, {}), std::invalid_argument);
    EXPECT_EQ(announced(), std::vector<std::string>());
}

TEST_F(Blades, ABladeThatCannotBeIsRefusedAndTheSlotStaysEmpty) {
    device->removeBlade(7, sim::Notify::no);
    const sim::Blade refused[] = {{"", "p", "s", 0, 0},
                                  {"io", "p", "s", 0, 0},
                                  {"IO", std::string(256, 'p'), "s", 0, 0},
                                  {"IO", "p", std::string(256, 's'), 0, 0},
                                  {"IO", "p", "s", 256, 0},
                                  {"IO", "p", "s", 0, 256}};
    for (const sim::Blade &blade : refused)
        EXPECT_THROW(device->insertBlade(7, blade), std::invalid_argument);
    EXPECT_EQ(device->get(keyOf(7, "OperState")), "NotInstalled");
    EXPECT_EQ(device->get(portKey(63, "OperState")), "NotInstalled");
    EXPECT_EQ(announced(), std::vector<std::string>());
}

TEST_F(Blades, SlotsThatComeAreEmptyAndSlotsThatGoAreUnknown) {
    device->set("Oper.Chassis.0.MaxSlots", "40", sim::Notify::no);
    EXPECT_EQ(client.get(keyOf(39, "OperState")).value, "NotInstalled");
    EXPECT_EQ(client.get(keyOf(39, "Type")).status, 0);
    EXPECT_EQ(client.get(keyOf(39, "Type")).value, "");
    device->insertBlade(39, {"PS"});
    EXPECT_EQ(client.get(keyOf(39, "Type")).value, "PS");
    device->set("Oper.Chassis.0.MaxSlots", "39", sim::Notify::no);
    EXPECT_EQ(client.get(keyOf(39, "Type")).status, simtest::kNoSuchKey);
}
