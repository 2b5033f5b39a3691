// The events of the chassis refresh: power supplies that come, go and fail.
#include "tests/datacache/refresh/ChassisTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PowerSupply : public ChassisTest {
protected:
    void SetUp() override {
        ChassisTest::SetUp();
        DataCache *theCache = DataCache::getInstance();
        theCache->_getSwitchInfo(); // for the name in the events
        DataCache::releaseInstance();
    }

    static std::string event(const std::string &kind, const std::string &fields) {
        return kind + " switch=" + support::kSwitchWwn + " " + fields;
    }
};

TEST_F(PowerSupply, EveryChangeOfStateHasItsEvent) {
    const std::string remove = event("20: PowerSupplyRemove", "number=2 count=1");
    const std::string add = event("19: PowerSupplyAdd", "number=2");
    const std::string fail = event("21: PowerSupplyFail", "number=2 count=1");
    struct Row {
        std::string before;
        std::string now;
        std::vector<std::string> events;
    };
    const std::vector<Row> rows = {
        {"Good", "Good", {}},
        {"Good", "Bad", {fail}},
        {"Good", "NotInstalled", {remove}},
        {"Good", "Burning", {}},
        {"Bad", "Good", {}},
        {"Bad", "Bad", {}},
        {"Bad", "NotInstalled", {remove}},
        {"Bad", "Burning", {}},
        {"NotInstalled", "Good", {add}},
        {"NotInstalled", "Bad", {add}},
        {"NotInstalled", "NotInstalled", {}},
        {"NotInstalled", "Burning", {add}},
        {"Burning", "Good", {}},
        {"Burning", "Bad", {fail}},
        {"Burning", "NotInstalled", {remove}},
        {"Burning", "Burning", {}},
    };
    for (const Row &row : rows) {
        theSwitch->clearFaults();
        answer("Oper.Chassis.0.PowerSupply.1", row.before);
        EXPECT_EQ(refresh(), 1);
        theSwitch->clearFaults();
        answer("Oper.Chassis.0.PowerSupply.1", row.now);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(events(), row.events) << row.before << " to " << row.now;
    }
}

TEST_F(PowerSupply, PulledSupplyRaisesRemoveWithItsOneBasedNumber) {
    refresh();
    set("Oper.Chassis.0.PowerSupply.0", "NotInstalled");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("20: PowerSupplyRemove", "number=1 count=1")));
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty()) << "once only";
}

TEST_F(PowerSupply, SeveralChangesAreToldInTheOrderOfTheSuppliesWithTheSameCount) {
    set("Oper.Chassis.0.PowerSupplies", "6");
    set("Oper.Chassis.0.PowerSupply.2", "NotInstalled");
    set("Oper.Chassis.0.PowerSupply.5", "Bad");
    refresh();
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Chassis.0.PowerSupply.1", "NotInstalled");
    set("Oper.Chassis.0.PowerSupply.2", "Good");
    set("Oper.Chassis.0.PowerSupply.3", "Bad");
    set("Oper.Chassis.0.PowerSupply.5", "Good");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(),
                ElementsAre(event("21: PowerSupplyFail", "number=1 count=3"),
                            event("20: PowerSupplyRemove", "number=2 count=3"), event("19: PowerSupplyAdd", "number=3"),
                            event("21: PowerSupplyFail", "number=4 count=3")));
}

TEST_F(PowerSupply, WithNoneLeftTheCountIsZero) {
    refresh();
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Chassis.0.PowerSupply.1", "NotInstalled");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("21: PowerSupplyFail", "number=1 count=0"),
                                      event("20: PowerSupplyRemove", "number=2 count=0")));
}

TEST_F(PowerSupply, TheLastOfSixteenHasItsEvent) {
    set("Oper.Chassis.0.PowerSupplies", "16");
    refresh();
    set("Oper.Chassis.0.PowerSupply.15", "Bad");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("21: PowerSupplyFail", "number=16 count=15")));
}

TEST_F(PowerSupply, TheFirstRefreshRaisesNothing) {
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Chassis.0.PowerSupply.1", "NotInstalled");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(supplies(), ElementsAre(2, 3));
}

TEST_F(PowerSupply, FansAndFaultsRaiseNothingHere) {
    refresh();
    set("Oper.Chassis.0.Fan.0", "Bad");
    set("Oper.Chassis.0.Fan.1", "NotInstalled");
    set("Oper.Switch.FaultList", "FW_POST_FAIL");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(fans(), ElementsAre(2, 3, 1));
}

TEST_F(PowerSupply, ASupplyThatIsNotCountedKeepsItsStateAndIsComparedWhenItIsCountedAgain) {
    refresh();
    set("Oper.Chassis.0.PowerSupply.1", "Bad");
    const int one = answer("Oper.Chassis.0.PowerSupplies", "1");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    theSwitch->removeFault(one);
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("21: PowerSupplyFail", "number=2 count=1")));
}

TEST_F(PowerSupply, SuppliesThatWereNotCountedForAWhileAreComparedWithTheirLastStates) {
    set("Oper.Chassis.0.PowerSupplies", "3");
    set("Oper.Chassis.0.PowerSupply.1", "Bad");
    set("Oper.Chassis.0.PowerSupply.2", "NotInstalled");
    refresh();
    const int one = answer("Oper.Chassis.0.PowerSupplies", "1");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(refresh(), 1);
    theSwitch->removeFault(one);
    set("Oper.Chassis.0.PowerSupply.2", "Good");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("19: PowerSupplyAdd", "number=3")));
}

TEST_F(PowerSupply, ASupplyThatWasNeverThereStartsAsUnknown) {
    refresh();
    set("Oper.Chassis.0.PowerSupplies", "4");
    set("Oper.Chassis.0.PowerSupply.3", "NotInstalled");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(event("20: PowerSupplyRemove", "number=4 count=3")));
}

TEST_F(PowerSupply, AChassisWithoutSuppliesRaisesNothing) {
    refresh();
    set("Oper.Chassis.0.PowerSupplies", "0");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootPowerSupplyCount(), 0);
}

TEST_F(PowerSupply, TheClientSeesTheNewPictureInItsCallback) {
    refresh();
    std::vector<unsigned short> seen;
    StatusList faults;
    support::onEvent([&](DataCacheEvent &) {
        seen = supplies();
        faults = cache().getSwitchFaults();
    });
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Switch.FaultList", "FW_POST_FAIL");
    refresh();
    EXPECT_THAT(seen, ElementsAre(2, 1));
    EXPECT_EQ(faults, (StatusList{32768, 0}));
}

TEST_F(PowerSupply, WithoutACallbackThePictureIsKeptCurrent) {
    cache().startEventMonitor(nullptr);
    refresh();
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(supplies(), ElementsAre(2, 1));
}

TEST_F(ChassisTest, EventsOfASwitchThatWasNeverReadHaveTheZeroName) {
    refresh();
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre("21: PowerSupplyFail switch=0000000000000000 number=1 count=1"));
}

} // namespace
