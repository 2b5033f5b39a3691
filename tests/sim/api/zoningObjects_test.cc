#include <cstdint>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

namespace {

std::string shown(const void *handle) {
    return std::to_string(reinterpret_cast<uintptr_t>(handle));
}

} // namespace

TEST(ZoningObjects, CallsAreRecordedWithTheNumbersOfTheirObjects) {
    simtest::forgiveMisuse();
    const auto device = sim::create();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    zov_ZoneSetType(zone, ZOV_ZT_HARDACL);
    zov_fzs_memberid_s id;
    zov_strToMemberIdentifier("1:10", ZOV_ZMT_DOMAINPORT, &id);
    void *member = zov_MemberCreate(ZOV_ZMT_DOMAINPORT, &id);
    zov_ZoneAddMember(zone, member);
    zov_ZonesetAddZone(set, zone);
    zov_ZonesetFindZone(set, "elm");
    zov_ZonesetListZones(set, 0);
    void *pointer = member;
    zov_ZoneDeleteMember(zone, &pointer);
    zov_ZonesetTestName(nullptr);
    zov_ZonesetDestroy(set);
    zov_ZonesetDestroy(nullptr);
    const std::string s = shown(set);
    const std::string z = shown(zone);
    const std::string m = shown(member);
    const std::vector<std::string> expected = {
        "zov_ZonesetCreate(\"set\") = " + s,
        "zov_ZoneCreate(\"oak\") = " + z,
        "zov_ZoneSetType(#" + z + ", 3) = 0",
        "zov_strToMemberIdentifier(\"1:10\", 2) = 0",
        "zov_MemberCreate(\"domain:port 1:10\") = " + m,
        "zov_ZoneAddMember(#" + z + ", #" + m + ") = 0",
        "zov_ZonesetAddZone(#" + s + ", #" + z + ") = 0",
        "zov_ZonesetFindZone(#" + s + ", \"elm\") = 0",
        "zov_ZonesetListZones(#" + s + ", 0) = " + z,
        "zov_ZoneDeleteMember(#" + z + ", #" + m + ") = 0",
        "zov_ZonesetTestName(null) = 1",
        "zov_ZonesetDestroy(#" + s + ") = 0",
        "zov_ZonesetDestroy(null) = 17",
    };
    EXPECT_EQ(simtest::linesOf(*device), expected);
}

TEST(ZoningObjects, CallsAreSeenByTheSwitchMadeLast) {
    const auto first = sim::create();
    const auto second = sim::create();
    sim::Fault fault;
    fault.call = "zov_ZoneCreate";
    fault.result = 1;
    fault.times = -1;
    first->addFault(fault);
    void *zone = zov_ZoneCreate("oak");
    EXPECT_NE(zone, nullptr);
    EXPECT_TRUE(first->records().empty());
    EXPECT_EQ(second->records().size(), 1U);
    second->addFault(fault);
    EXPECT_EQ(zov_ZoneCreate("elm"), nullptr);
    EXPECT_EQ(zov_ZoneDestroy(zone), 0);
}

TEST(ZoningObjects, WorkWithoutASwitch) {
    void *set = zov_ZonesetCreate("set");
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
}

TEST(ZoningObjects, EveryCallCanBeMadeToFail) {
    const auto device = sim::create();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    sim::Fault fault;
    fault.result = 99;
    fault.times = -1;
    device->addFault(fault);
    EXPECT_EQ(zov_ZonesetAddZone(set, zone), 99);
    EXPECT_EQ(zov_ZoneDestroy(zone), 99);
    EXPECT_EQ(zov_ZonesetDestroy(set), 99);
    device->clearFaults();
    EXPECT_EQ(zov_ZonesetGetZoneCount(set), 0);
    EXPECT_EQ(zov_ZoneDestroy(zone), 0);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
}
