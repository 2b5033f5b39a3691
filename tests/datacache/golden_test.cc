// Two stories told whole: every log line and every exchange with the switch, in order.
#include "tests/support/CacheTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class Golden : public support::CacheTest {};

TEST_F(Golden, ColdStart) {
    forget();
    DataCache::init();
    cache().startEventMonitor(support::recordEvent);
    EXPECT_FALSE(cache().evaluateCaches());

    EXPECT_THAT(log(), ElementsAreArray({
                           "DCACHE: Creating a new datacache()",
                           "DCACHE: attempting zovlib connection",
                           "DCACHE: zovlib connection established",
                           "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                           "DCACHE: Zoning limits loaded",
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
                       }));
    EXPECT_THAT(traffic(),
                ElementsAreArray({
                    "zov_IPConnect",
                    "zov_fzsGetZoningLimitations",
                    "zov_enRegisterForEventList",
                    "get Oper.Switch.WhoIsPrincipal Oper.Switch.WWN Oper.Switch.OperState "
                    "Oper.Switch.TransparentModeFeature Config.Switch.TransparentMode Config.Mfg.ProductFeatureType "
                    "Oper.Switch.FCOEFeature Oper.Switch.EthernetPassthroughFeature",
                    "get Oper.Chassis.0.PowerSupplies Oper.Chassis.0.Fans Oper.Chassis.0.MaxSlots "
                    "Oper.Switch.EnhFaultMonFeature",
                    "get Oper.Chassis.0.PowerSupply.0 Oper.Chassis.0.PowerSupply.1 Oper.Chassis.0.Fan.0 "
                    "Oper.Chassis.0.Fan.1 Oper.Chassis.0.Fan.2 Oper.Switch.FaultList",
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
    EXPECT_THAT(traffic(), ElementsAreArray({
                               "notification",
                               "get Oper.Chassis.0.PowerSupplies Oper.Chassis.0.Fans Oper.Chassis.0.MaxSlots "
                               "Oper.Switch.EnhFaultMonFeature",
                               "get Oper.Chassis.0.PowerSupply.0 Oper.Chassis.0.PowerSupply.1 Oper.Chassis.0.Fan.0 "
                               "Oper.Chassis.0.Fan.1 Oper.Chassis.0.Fan.2 Oper.Switch.FaultList",
                           }));
    EXPECT_THAT(events(), ElementsAre("21: PowerSupplyFail switch=100000C0DD00A1B2 number=2 count=1"));
}

} // namespace
