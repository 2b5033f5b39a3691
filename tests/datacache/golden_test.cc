// Two stories told whole: every log line and every exchange with the switch, in order.
#include "tests/support/CacheTest.h"
#include "tests/support/Wait.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class Golden : public support::CacheTest {
protected:
    /// Every call and notification whole: the connection, arguments, keys with their values and statuses, the result.
    std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        for (const sim::Record &record : theSwitch->records())
            lines.push_back(record.line());
        return lines;
    }
};

TEST_F(Golden, ColdStart) {
    connectAnotherClient();
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_TRUE(cache().start(support::recordEvent));
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() == 1; }));

    EXPECT_THAT(log(), ElementsAreArray({
                           "DCACHE: Creating a new datacache()",
                           "DCACHE: attempting zovlib connection",
                           "DCACHE: zovlib connection established",
                           "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                           "DCACHE: Zoning limits loaded",
                           "DCACHE: (DataCache) creating EVAL thread",
                           "DCACHE: (EVAL) starting",
                           "DCACHE: (EVAL) awake",
                           "DCACHE: evaluateCaches",
                           "DCACHE: Updating switch cache",
                           "DCACHE: _getSwitchInfo()",
                           "DCACHE: Updating chassis cache",
                           "DCACHE: _getChassisInfo()",
                           "DCACHE: Updating blades cache",
                           "DCACHE: Updating ports cache",
                           "DCACHE: Updating accounts cache",
                           "DCACHE: Updating fabric cache",
                           "DCACHE: Updating zoning cache",
                           "DCACHE: Updating zoning cache (Done)",
                           "DCACHE: _bladesOK = false",
                           "DCACHE: _portsOK = false",
                           "DCACHE: _accountsOK = false",
                           "DCACHE: _fabricOK = false",
                           "DCACHE: _zoningOK = false",
                           "DCACHE: (EVAL) Cache update failed or incomplete",
                       }));
    EXPECT_THAT(
        calls(),
        ElementsAreArray({
            R"(zov_IPConnect(2, "localhost", "cim", "") = 0)",
            R"(zov_fzsGetZoningLimitations(2) = 0)",
            R"(zov_enRegisterForEventList(2, 32, 52, 57, 28, 39, 29, 82, 50, 14, 15, 72, 73, 33, 40, 74, 75, 76, 77, )"
            R"(78, 16, 68, 69, 79, 80, 3, 1, 7, 70) = 0)",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.WhoIsPrincipal="100000C0DD00A1B2", )"
            R"(Oper.Switch.WWN="100000C0DD00A1B2", Oper.Switch.OperState="Online", )"
            R"(Oper.Switch.TransparentModeFeature="True", Config.Switch.TransparentMode="False", )"
            R"(Config.Mfg.ProductFeatureType="Standard", Oper.Switch.FCOEFeature="False", )"
            R"(Oper.Switch.EthernetPassthroughFeature="False")",
            R"(zov_smlGetBatch(2) = 0: Oper.Chassis.0.PowerSupplies="2", Oper.Chassis.0.Fans="3", )"
            R"(Oper.Chassis.0.MaxSlots="1", Oper.Switch.EnhFaultMonFeature="True")",
            R"(zov_smlGetBatch(2) = 0: Oper.Chassis.0.PowerSupply.0="Good", Oper.Chassis.0.PowerSupply.1="Good", )"
            R"(Oper.Chassis.0.Fan.0="Good", Oper.Chassis.0.Fan.1="Good", Oper.Chassis.0.Fan.2="Good", )"
            R"(Oper.Switch.FaultList="")",
        }));
    EXPECT_THAT(events(), ElementsAre());
}

TEST_F(Golden, APowerSupplyFails) {
    load();
    theSwitch->set("Oper.Chassis.0.PowerSupply.1", "Bad");
    ASSERT_TRUE(theSwitch->waitUntilQuiet());
    EXPECT_FALSE(cache().evaluateCaches());

    EXPECT_THAT(log(), ElementsAreArray({
                           "DCACHE: queueing ZOV_EVENT_T[0:0:0] (33)ZOV_EVENT_CHASSIS_OPERCHANGE : "
                           "Oper.Chassis.0.PowerSupply.1 is now Bad",
                           "DCACHE: evaluateCaches",
                           "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (33) ZOV_EVENT_CHASSIS_OPERCHANGE : "
                           "Oper.Chassis.0.PowerSupply.1 is now Bad",
                           "DCACHE: Updating chassis cache",
                           "DCACHE: _getChassisInfo()",
                           "DCACHE: Updating blades cache",
                           "DCACHE: Updating ports cache",
                           "DCACHE: Updating accounts cache",
                           "DCACHE: Updating fabric cache",
                           "DCACHE: Updating zoning cache",
                           "DCACHE: Updating zoning cache (Done)",
                           "DCACHE: _bladesOK = false",
                           "DCACHE: _portsOK = false",
                           "DCACHE: _accountsOK = false",
                           "DCACHE: _fabricOK = false",
                           "DCACHE: _zoningOK = false",
                       }));
    EXPECT_THAT(
        calls(),
        ElementsAreArray({
            R"(notification(2, 33 [0:0:0] "Oper.Chassis.0.PowerSupply.1 is now Bad"))",
            R"(zov_smlGetBatch(2) = 0: Oper.Chassis.0.PowerSupplies="2", Oper.Chassis.0.Fans="3", )"
            R"(Oper.Chassis.0.MaxSlots="1", Oper.Switch.EnhFaultMonFeature="True")",
            R"(zov_smlGetBatch(2) = 0: Oper.Chassis.0.PowerSupply.0="Good", Oper.Chassis.0.PowerSupply.1="Bad", )"
            R"(Oper.Chassis.0.Fan.0="Good", Oper.Chassis.0.Fan.1="Good", Oper.Chassis.0.Fan.2="Good", )"
            R"(Oper.Switch.FaultList="")",
        }));
    EXPECT_THAT(events(), ElementsAre("21: PowerSupplyFail switch=100000C0DD00A1B2 number=2 count=1"));
}

} // namespace
