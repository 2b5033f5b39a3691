// What a client can ask about the local switch and its chassis.
#include <array>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SwitchQueries : public support::CacheTest {
protected:
    void set(const std::string &key, const std::string &value) { theSwitch->set(key, value, sim::Notify::no); }
};

TEST_F(SwitchQueries, BeforeTheFirstPassNothingIsKnown) {
    connect();
    EXPECT_EQ(cache().getRootSwitchWorldWideName(), Wwn());
    EXPECT_EQ(cache().getRootSwitchWwn(), "0000000000000000");
    EXPECT_THAT(cache().getRootSwitchStatus(), IsEmpty());
    EXPECT_FALSE(cache().isTransparentSwitch());
    EXPECT_FALSE(cache().isFCOESwitch());
    EXPECT_FALSE(cache().isEthernetPassthroughSwitch());
    EXPECT_THAT(cache().getSwitchFaults(), IsEmpty());
    EXPECT_EQ(cache().getRootMaxSlots(), 0);
    EXPECT_EQ(cache().getRootPowerSupplyCount(), 0);
    EXPECT_EQ(cache().getRootFanCount(), 0);
    EXPECT_EQ(cache().getRootPowerSupplyStatus(0), 0);
    EXPECT_EQ(cache().getRootFanStatus(0), 0);
}

TEST_F(SwitchQueries, AfterAPassTheSwitchIsKnown) {
    set("Oper.Switch.WWN", "100000c0dd123456");
    set("Oper.Switch.OperState", "Offline");
    set("Oper.Switch.TransparentModeFeature", "True");
    set("Config.Switch.TransparentMode", "True");
    load();
    EXPECT_EQ(cache().getRootSwitchWorldWideName(), Wwn("100000C0DD123456"));
    EXPECT_EQ(cache().getRootSwitchWwn(), "100000C0DD123456");
    EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{10});
    EXPECT_TRUE(cache().isTransparentSwitch());
    EXPECT_FALSE(cache().isFCOESwitch());
    EXPECT_FALSE(cache().isEthernetPassthroughSwitch());
}

TEST_F(SwitchQueries, EachFeatureIsItsOwn) {
    set("Oper.Switch.FCOEFeature", "True");
    load();
    EXPECT_TRUE(cache().isFCOESwitch());
    EXPECT_FALSE(cache().isTransparentSwitch());
    EXPECT_FALSE(cache().isEthernetPassthroughSwitch());

    set("Oper.Switch.FCOEFeature", "False");
    set("Oper.Switch.EthernetPassthroughFeature", "True");
    cache().updateSwitch();
    pass();
    EXPECT_FALSE(cache().isFCOESwitch());
    EXPECT_TRUE(cache().isEthernetPassthroughSwitch());
}

TEST_F(SwitchQueries, AfterAPassTheChassisIsKnown) {
    set("Oper.Chassis.0.PowerSupplies", "3");
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Chassis.0.PowerSupply.2", "NotInstalled");
    set("Oper.Chassis.0.Fans", "4");
    set("Oper.Chassis.0.Fan.1", "NotInstalled");
    set("Oper.Chassis.0.Fan.3", "Bad");
    set("Oper.Chassis.0.MaxSlots", "13");
    set("Oper.Switch.FaultList", "HW_MP_DATA_MISMATCH");
    load();
    EXPECT_EQ(cache().getRootMaxSlots(), 13);
    EXPECT_EQ(cache().getSwitchFaults(), (StatusList{0, 32769}));

    std::vector<unsigned short> supplies;
    for (unsigned short i = 0; i < cache().getRootPowerSupplyCount(); ++i)
        supplies.push_back(cache().getRootPowerSupplyStatus(i));
    EXPECT_THAT(supplies, ElementsAre(2, 1, 3));

    std::vector<unsigned short> fans;
    for (unsigned short i = 0; i < cache().getRootFanCount(); ++i)
        fans.push_back(cache().getRootFanStatus(i));
    EXPECT_THAT(fans, ElementsAre(1, 3, 1, 2));
}

TEST_F(SwitchQueries, UnitsThatTheChassisDoesNotHaveAreUnknown) {
    load();
    EXPECT_EQ(cache().getRootPowerSupplyStatus(1), 1);
    EXPECT_EQ(cache().getRootFanStatus(2), 1);
    for (const unsigned short index : std::array<unsigned short, 5>{2, 15, 16, 17, 65535})
        EXPECT_EQ(cache().getRootPowerSupplyStatus(index), 0) << index;
    for (const unsigned short index : std::array<unsigned short, 5>{3, 15, 16, 17, 65535})
        EXPECT_EQ(cache().getRootFanStatus(index), 0) << index;
}

TEST_F(SwitchQueries, UnitsThatTheChassisHasNoLongerAreUnknown) {
    load();
    set("Oper.Chassis.0.PowerSupplies", "1");
    set("Oper.Chassis.0.Fans", "1");
    cache().updateChassis();
    pass();
    EXPECT_EQ(cache().getRootPowerSupplyStatus(0), 1);
    EXPECT_EQ(cache().getRootPowerSupplyStatus(1), 0);
    EXPECT_EQ(cache().getRootFanStatus(0), 1);
    EXPECT_EQ(cache().getRootFanStatus(1), 0);
}

TEST_F(SwitchQueries, FaultsAreACopy) {
    load();
    StatusList faults = cache().getSwitchFaults();
    faults.clear();
    EXPECT_EQ(cache().getSwitchFaults(), (StatusList{0, 0}));
}

TEST_F(SwitchQueries, GiveTheLockBack) {
    load();
    cache().getRootSwitchWorldWideName();
    cache().getRootSwitchWwn();
    cache().getRootSwitchStatus();
    cache().isTransparentSwitch();
    cache().isFCOESwitch();
    cache().isEthernetPassthroughSwitch();
    cache().getSwitchFaults();
    cache().getRootMaxSlots();
    cache().getRootPowerSupplyCount();
    cache().getRootFanCount();
    cache().getRootPowerSupplyStatus(0);
    cache().getRootFanStatus(65535);
    EXPECT_TRUE(support::isLockFree());
}

} // namespace
