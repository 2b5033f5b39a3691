#include "sim/model/Chassis.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class Chassis : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({33, 82}), 0); }
};

} // namespace

TEST_F(Chassis, HasTwoGoodSuppliesThreeGoodFansAndOneSlot) {
    EXPECT_EQ(client.get("Oper.Chassis.0.PowerSupplies").value, "2");
    EXPECT_EQ(client.get("Oper.Chassis.0.Fans").value, "3");
    EXPECT_EQ(client.get("Oper.Chassis.0.MaxSlots").value, "1");
    for (const char *unit : {"PowerSupply.0", "PowerSupply.1", "Fan.0", "Fan.1", "Fan.2"})
        EXPECT_EQ(client.get(std::string("Oper.Chassis.0.") + unit).value, "Good") << unit;
}

TEST_F(Chassis, UnitsBeyondTheCountDoNotExist) {
    for (const char *key : {"Oper.Chassis.0.PowerSupply.2", "Oper.Chassis.0.Fan.3", "Oper.Blade.1.FaultList",
                            "Oper.Chassis.1.Fan.0", "Oper.Chassis.0.Fan.", "Oper.Chassis.0.Fan.00",
                            "Oper.Chassis.0.Fan.-1", "Oper.Chassis.0.Fan.0x1", "Oper.Chassis.0.Fan.1 "}) {
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << key;
        EXPECT_THROW(device->get(key), std::invalid_argument) << key;
        EXPECT_THROW(device->set(key, "Good"), std::invalid_argument) << key;
    }
}

TEST_F(Chassis, EachUnitTakesItsThreeStatesAndAnnouncesEachChange) {
    for (const char *unit : {"PowerSupply.1", "Fan.2"}) {
        const std::string key = std::string("Oper.Chassis.0.") + unit;
        for (const char *state : {"Bad", "NotInstalled", "Good"}) {
            device->set(key, state);
            EXPECT_EQ(client.get(key).value, state);
        }
        EXPECT_THROW(device->set(key, "good"), std::invalid_argument);
        EXPECT_THROW(device->set(key, ""), std::invalid_argument);
    }
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>(6, 33));
    EXPECT_EQ(client.get("Oper.Chassis.0.PowerSupply.0").value, "Good");
}

TEST_F(Chassis, NotificationSaysWhatChanged) {
    device->set("Oper.Chassis.0.PowerSupply.1", "Bad");
    const std::vector<zov_event_s> events = client.events(1);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_STREQ(events[0].text, "Oper.Chassis.0.PowerSupply.1 is now Bad");
    EXPECT_EQ(events[0].source.number[0], 0);
    EXPECT_EQ(events[0].source.number[1], 0);
    EXPECT_EQ(events[0].source.number[2], 0);
}

TEST_F(Chassis, AnotherCountMakesOrTakesUnits) {
    device->set("Oper.Chassis.0.PowerSupplies", "4");
    EXPECT_EQ(client.get("Oper.Chassis.0.PowerSupply.3").value, "Good");
    device->set("Oper.Chassis.0.PowerSupplies", "1");
    EXPECT_EQ(client.get("Oper.Chassis.0.PowerSupply.1").status, simtest::kNoSuchKey);
    device->set("Oper.Chassis.0.Fans", "0");
    EXPECT_EQ(client.get("Oper.Chassis.0.Fan.0").status, simtest::kNoSuchKey);
    EXPECT_EQ(client.get("Oper.Chassis.0.Fans").value, "0");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>(3, 33));
}

TEST_F(Chassis, CountsAreNumbersUpTo255) {
    for (const char *key : {"Oper.Chassis.0.PowerSupplies", "Oper.Chassis.0.Fans", "Oper.Chassis.0.MaxSlots"}) {
        device->set(key, "255");
        EXPECT_EQ(device->get(key), "255");
        for (const char *refused : {"256", "-1", "", "two", "01", "1 ", "4294967297"})
            EXPECT_THROW(device->set(key, refused), std::invalid_argument) << key << " " << refused;
        EXPECT_EQ(device->get(key), "255");
    }
}

TEST_F(Chassis, EverySlotHasAFaultListOfItsOwn) {
    device->set("Oper.Chassis.0.MaxSlots", "2");
    device->set("Oper.Blade.1.FaultList", "HW_MP_ACCESS_X");
    EXPECT_EQ(client.get("Oper.Blade.0.FaultList").value, "");
    EXPECT_EQ(client.get("Oper.Blade.1.FaultList").value, "HW_MP_ACCESS_X");
    EXPECT_EQ(client.get("Oper.Switch.FaultList").value, "");
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{33, 82}));
}

TEST_F(Chassis, SwitchFaultListIsFreeTextThatFits) {
    const std::string longest(255, 'f');
    device->set("Oper.Switch.FaultList", "FW_POST_FAIL");
    device->set("Oper.Switch.FaultList", longest);
    EXPECT_EQ(client.get("Oper.Switch.FaultList").value, longest);
    EXPECT_THROW(device->set("Oper.Switch.FaultList", longest + "f"), std::invalid_argument);
    EXPECT_THROW(device->set("Oper.Switch.FaultList", std::string("a\0b", 3)), std::invalid_argument);
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{82, 82}));
}

TEST_F(Chassis, FaultListsAreNotThereWithoutEnhancedFaultMonitoring) {
    device->set("Oper.Switch.EnhFaultMonFeature", "False");
    EXPECT_EQ(client.get("Oper.Switch.FaultList").status, simtest::kNotSupported);
    EXPECT_EQ(client.get("Oper.Blade.0.FaultList").status, simtest::kNotSupported);
    device->set("Oper.Switch.FaultList", "FW_POST_FAIL"); // the switch itself still knows
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "FW_POST_FAIL");
    device->set("Oper.Switch.EnhFaultMonFeature", "True");
    EXPECT_EQ(client.get("Oper.Switch.FaultList").value, "FW_POST_FAIL");
}

TEST_F(Chassis, NothingInItIsSetByClients) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    for (const char *key :
         {"Oper.Chassis.0.PowerSupplies", "Oper.Chassis.0.PowerSupply.0", "Oper.Chassis.0.Fans", "Oper.Chassis.0.Fan.0",
          "Oper.Chassis.0.MaxSlots", "Oper.Switch.FaultList", "Oper.Blade.0.FaultList"})
        EXPECT_EQ(client.set(key, "1"), simtest::kReadOnly) << key;
}
