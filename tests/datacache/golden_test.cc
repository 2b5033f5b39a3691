// Two stories told whole: every log line and every exchange with the switch, in order.
#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Wait.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// Identification data of a transceiver, as the switch tells it; empty for an empty cage.
struct Media {
    const char *ddm;
    const char *first;
    const char *second;
};
constexpr Media kShortWave = {"True", "0304070000000020400C5401550000000502000F46494E4953415220434F5250",
                              "2E2020200000906546544C4638353238503342435620202041202020035200D4"};
constexpr Media kLongWave = {"True", "03040700000000120001540155000A640000000046494E4953415220434F5250",
                             "2E2020200000906546544C46313432385033424E5620202041202020051E00A4"};
constexpr Media kNoMedia = {"", "", ""};

class Golden : public support::CacheTest {
protected:
    /// The read of a port whole.
    static std::string portRead(unsigned port, const char *state, const char *type, const Media &media,
                                const char *serial) {
        return fmt::format(R"(zov_smlGetBatch(2) = 0: Oper.UserPort.0.{0}.OperState="{1}", )"
                           R"(Oper.UserPort.0.{0}.AdminState="Online", Config.UserPort.0.{0}.Type="{2}", )"
                           R"(Oper.UserPort.0.{0}.DDM.Supported="{3}", Oper.UserPort.0.{0}.SFPData0_31="{4}", )"
                           R"(Oper.UserPort.0.{0}.SFPData32_63="{5}", Oper.UserPort.0.{0}.SFPSerialNumber="{6}", )"
                           R"(Oper.Switch.Nop="GL")",
                           port, state, type, media.ddm, media.first, media.second, serial);
    }

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
    sim::ZoningDatabase zoning;
    zoning.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_PORTWWN, "21000024FF4A0001"}}}};
    zoning.zonesets = {{"day", {"oak"}}};
    theSwitch->setZoning(zoning, sim::Notify::no);
    theSwitch->activateZoneset("day", sim::Notify::no);
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
                           "DCACHE: _getBladeInfo()",
                           "DCACHE: Updating ports cache",
                           "DCACHE: _getPortInfo()",
                           "DCACHE: _processPort0Wwn() update local switch in fabric",
                           "DCACHE: _processPort0Wwn() adding port 0 with smlindex 0",
                           "DCACHE: _processPort0Wwn() adding port 1 with smlindex 1",
                           "DCACHE: _processPort0Wwn() adding port 2 with smlindex 2",
                           "DCACHE: _processPort0Wwn() adding port 3 with smlindex 3",
                           "DCACHE: _processPort0Wwn() adding port 4 with smlindex 4",
                           "DCACHE: _processPort0Wwn() adding port 5 with smlindex 5",
                           "DCACHE: _processPort0Wwn() adding port 6 with smlindex 6",
                           "DCACHE: _processPort0Wwn() adding port 7 with smlindex 7",
                           "DCACHE: _processPort0Wwn() adding port 8 with smlindex 8",
                           "DCACHE: _processPort0Wwn() adding port 9 with smlindex 9",
                           "DCACHE: _processPort0Wwn() adding port 10 with smlindex 10",
                           "DCACHE: _processPort0Wwn() adding port 11 with smlindex 11",
                           "DCACHE: _processPort0Wwn() adding port 12 with smlindex 12",
                           "DCACHE: _processPort0Wwn() adding port 13 with smlindex 13",
                           "DCACHE: _processPort0Wwn() adding port 14 with smlindex 14",
                           "DCACHE: _processPort0Wwn() adding port 15 with smlindex 15",
                           "DCACHE: _processPort0Wwn() adding port 16 with smlindex 16",
                           "DCACHE: _processPort0Wwn() adding port 17 with smlindex 17",
                           "DCACHE: _processPort0Wwn() adding port 18 with smlindex 18",
                           "DCACHE: _processPort0Wwn() adding port 19 with smlindex 19",
                           "DCACHE: _processPort0Wwn() adding port 20 with smlindex 20",
                           "DCACHE: _processPort0Wwn() adding port 21 with smlindex 21",
                           "DCACHE: _processPort0Wwn() adding port 22 with smlindex 22",
                           "DCACHE: _processPort0Wwn() adding port 23 with smlindex 23",
                           "DCACHE: Updating accounts cache",
                           "DCACHE: _getAcctInfo()",
                           "DCACHE: Updating fabric cache",
                           "DCACHE: _load_fabric_info()",
                           "DCACHE: Initializing _origFabric with 100000C0DD00A1B2",
                           "DCACHE: _load_switch_domain_list()",
                           "DCACHE: LsdbRecordList: 1",
                           "DCACHE: Validating domainID 1",
                           "DCACHE: _load_switch_domain_list() - skip local switch 100000C0DD00A1B2",
                           "DCACHE: _load_mserver_ports()",
                           "DCACHE: _load_mserver_ports - skip local 100000C0DD00A1B2",
                           "DCACHE: Updating zoning cache",
                           "DCACHE: Active zoneset added, 0s",
                           "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                           "DCACHE: DCEventActiveZonesetChange: activeZoneset=day previousActiveZoneset=",
                           "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                           "DCACHE: zsl = 1, zl = 0, al = 0, zml = 0",
                           "DCACHE: Inactive zoneset 'day' added, 0s",
                           "DCACHE: zsl = 1, zl = 1, al = 0, zml = 1",
                           "DCACHE: Uber zoneset added, 0s",
                           "DCACHE: Zoning database update complete",
                           "DCACHE: DCEventZoningDBChange",
                           "DCACHE: Updating zoning cache (Done)",
                       }));
    EXPECT_THAT(
        calls(),
        ElementsAreArray(std::vector<std::string>{
            R"(zov_IPConnect(2, "localhost", "cim", "") = 0)",
            R"(zov_fzsGetZoningLimitations(2) = 0 -> zonesets 300, zones 3000, members 12000, zones per zoneset 1000, )"
            R"(members per zone 500, aliases 3000, members per alias 500)",
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
            R"(zov_smlGetBatch(2) = 0: Oper.Chassis.0.MaxSlots="1")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.Nop="GL", Oper.Blade.0.TempSensors="3", )"
            R"(Oper.Blade.0.VoltageSensors="5")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.MaxPorts="24")",
            portRead(0, "Online", "F", kShortWave, "FNS0331A00000001"),
            portRead(1, "Online", "F", kShortWave, "FNS0331A00000002"),
            portRead(2, "Online", "F", kShortWave, "FNS0331A00000003"),
            portRead(3, "Online", "F", kShortWave, "FNS0331A00000004"),
            portRead(4, "Online", "F", kShortWave, "FNS0331A00000005"),
            portRead(5, "Online", "F", kShortWave, "FNS0331A00000006"),
            portRead(6, "Online", "F", kShortWave, "FNS0331A00000007"),
            portRead(7, "Online", "F", kShortWave, "FNS0331A00000008"),
            portRead(8, "Online", "F", kShortWave, "FNS0331A00000009"),
            portRead(9, "Online", "F", kShortWave, "FNS0331A00000010"),
            portRead(10, "Online", "F", kShortWave, "FNS0331A00000011"),
            portRead(11, "Online", "F", kShortWave, "FNS0331A00000012"),
            portRead(12, "Online", "F", kShortWave, "FNS0331A00000013"),
            portRead(13, "Online", "F", kShortWave, "FNS0331A00000014"),
            portRead(14, "Online", "F", kShortWave, "FNS0331A00000015"),
            portRead(15, "Online", "F", kShortWave, "FNS0331A00000016"),
            portRead(16, "Offline", "E", kLongWave, "FNS0331A00000017"),
            portRead(17, "Offline", "GL", kShortWave, "FNS0331A00000018"),
            portRead(18, "Offline", "GL", kShortWave, "FNS0331A00000019"),
            portRead(19, "Offline", "GL", kShortWave, "FNS0331A00000020"),
            portRead(20, "Offline", "GL", kNoMedia, ""),
            portRead(21, "Offline", "GL", kNoMedia, ""),
            portRead(22, "Offline", "GL", kNoMedia, ""),
            portRead(23, "Offline", "GL", kNoMedia, ""),
            R"(zov_smlGetBatch(2) = 0: Oper.UserPort.0.0.WWN="200000C0DD00A1B2", Oper.Switch.DomainID="1", )"
            R"(Oper.Switch.WhoIsPrincipal="100000C0DD00A1B2")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.FirstPotentialUser="admin")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.NextPotentialUser.admin="operator")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.NextPotentialUser.operator="monitor")",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.NextPotentialUser.monitor="" status 24)",
            R"(zov_smlGetBatch(2) = 0: Oper.Switch.WhoIsPrincipal="100000C0DD00A1B2", )"
            R"(Oper.Switch.WWN="100000C0DD00A1B2", Oper.Switch.DomainID="1")",
            R"(zov_smlGetBatch(2) = 0: Oper.Eport.LsdbRecordList.255="1")",
            R"(zov_smlGetBatch(2) = 0: Oper.Eport.LsdbRecord.1.WWN="100000C0DD00A1B2", )"
            R"(Oper.Eport.LsdbRecord.1.Hops="0")",
            fmt::format(R"(zov_smlGetBatch(2) = 0: Oper.Switch.WhoIsPrincipal="100000C0DD00A1B2", )"
                        R"(Oper.Zoning.ActiveChecksum="{}", Oper.Zoning.InactiveChecksum="{}", )"
                        R"(Oper.Zoning.ActiveZoneSet="day")",
                        theSwitch->get("Oper.Zoning.ActiveChecksum"), theSwitch->get("Oper.Zoning.InactiveChecksum")),
            R"(zov_fzsGetActiveZoneset(2, #1) = 0 -> "day": zone "oak" 3 ["port 21000024ff4a0001"])",
            R"(zov_fzsGetZonesetList(2) = 0 -> "day")",
            R"(zov_fzsGetZoneset(2, "day", #4) = 0 -> "day": zone "oak" 3 ["port 21000024ff4a0001"])",
            R"(zov_ZonesetGetName(#4) = 0)",
            R"(zov_fzsGetAllZonesAndAliases(2, "__UberZoneset__", #7) = 0 -> "__UberZoneset__": )"
            R"(zone "oak" 3 ["port 21000024ff4a0001"])",
            R"(zov_ZonesetGetZoneCount(#7) = 1)",
            R"(zov_ZonesetListZones(#7, 0) = 8)",
            R"(zov_ZoneGetMemberCount(#8) = 1)",
            R"(zov_ZoneListMembers(#8, 0) = 9)",
            R"(zov_MemberGetAttr(#9) = 0)",
            R"(zov_ZonesetGetAliasCount(#7) = 0)",
        }));
    EXPECT_THAT(events(), ElementsAre("27: ActiveZonesetChange switch=100000C0DD00A1B2 ->day",
                                      "28: ZoningDBChange switch=100000C0DD00A1B2", support::kUpdateComplete));
}

TEST_F(Golden, APowerSupplyFails) {
    load();
    theSwitch->set("Oper.Chassis.0.PowerSupply.1", "Bad");
    ASSERT_TRUE(theSwitch->waitUntilQuiet());
    EXPECT_TRUE(cache().evaluateCaches());

    EXPECT_THAT(log(), ElementsAreArray({
                           "DCACHE: queueing ZOV_EVENT_T[0:0:0] (33)ZOV_EVENT_CHASSIS_OPERCHANGE : "
                           "Oper.Chassis.0.PowerSupply.1 is now Bad",
                           "DCACHE: evaluateCaches",
                           "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (33) ZOV_EVENT_CHASSIS_OPERCHANGE : "
                           "Oper.Chassis.0.PowerSupply.1 is now Bad",
                           "DCACHE: Updating chassis cache",
                           "DCACHE: _getChassisInfo()",
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
    EXPECT_THAT(events(),
                ElementsAre("21: PowerSupplyFail switch=100000C0DD00A1B2 number=2 count=1", support::kUpdateComplete));
}

} // namespace
