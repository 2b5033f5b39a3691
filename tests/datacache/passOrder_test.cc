// Changes in all areas but the fabric, told in one pass.
#include "tests/support/CacheTest.h"
#include "tests/support/Ports.h"

namespace {

using testing::ElementsAre;

class PassOrder : public support::CacheTest {
protected:
    PassOrder() {
        theSwitch.reset();
        theSwitch = sim::create("director-8");
    }
};

TEST_F(PassOrder, EventsFollowTheOrderOfTheAreas) {
    load();
    cache().updateSwitch();
    pass(); // the faults of the first chassis refresh are in the status now
    theSwitch->addAccount("zoe");
    support::setPort(*theSwitch, 1, "OperState", "Diagnostics");
    theSwitch->deliver(14, {0, 0, 1}, "");
    theSwitch->removeBlade(7);
    theSwitch->set("Oper.Chassis.0.PowerSupply.1", "Bad");
    theSwitch->set("Oper.Switch.OperState", "Diagnostics");
    sim::ZoningDatabase zoning;
    zoning.zonesets = {{"day", {}}};
    theSwitch->setZoning(zoning);
    theSwitch->activateZoneset("day");
    theSwitch->deliver(73, {0, 0, 0}, "guest");
    passAfterNotifications();
    EXPECT_THAT(events(), ElementsAre("30: UserLoginFailure switch=100000C0DD00A800 user=guest",
                                      "6: SwitchStatusChange switch=100000C0DD00A800 principal=100000C0DD00A800 "
                                      "[2, 0, 0]->[11, 0, 0]",
                                      "21: PowerSupplyFail switch=100000C0DD00A800 number=2 count=1",
                                      "8: BladeRemove switch=100000C0DD00A800 slot=7",
                                      "12: PortStatusChange switch=100000C0DD00A800 port=200100C0DD00A800 "
                                      "fabric=100000C0DD00A800 [2]->[11]",
                                      "25: UserAcctAdd switch=100000C0DD00A800 name=zoe",
                                      "27: ActiveZonesetChange switch=100000C0DD00A800 ->day",
                                      "28: ZoningDBChange switch=100000C0DD00A800", support::kUpdateComplete));
}

} // namespace
