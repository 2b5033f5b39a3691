#include "sim/core/Misuses.h"

#include <csignal>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

namespace {

std::string shown(const void *handle) {
    return "#" + std::to_string(reinterpret_cast<uintptr_t>(handle));
}

class MisuseReports : public testing::Test {
protected:
    MisuseReports() { simtest::forgiveMisuse(); }
};

} // namespace

TEST_F(MisuseReports, SayWhichCallAndWhichArgument) {
    const auto device = sim::create();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    void *alias = zov_ZoneAliasCreate("ash");
    EXPECT_EQ(device->misuses(), std::vector<std::string>());
    char name[65];
    zov_ZonesetGetName(nullptr, name);
    zov_ZoneGetMemberCount(alias);
    zov_ZonesetAddAlias(zone, set);
    ASSERT_EQ(zov_ZoneDestroy(zone), 0);
    zov_ZoneDestroy(zone);
    zov_ZoneListMembers(zone, 0);
    zov_MemberDestroy(name);
    void *member = nullptr;
    zov_ZoneAliasDeleteMember(alias, &member);
    zov_ZoneAliasDeleteMember(alias, nullptr);
    const std::vector<std::string> expected = {
        "zov_ZonesetGetName: null is no object",
        "zov_ZoneGetMemberCount: " + shown(alias) + " is an alias, not a zone",
        "zov_ZonesetAddAlias: " + shown(zone) + " is a zone, not a zone set",
        "zov_ZonesetAddAlias: " + shown(set) + " is a zone set, not an alias",
        "zov_ZoneDestroy: " + shown(zone) + " has been destroyed",
        "zov_ZoneListMembers: " + shown(zone) + " has been destroyed",
        "zov_ZoneAliasDeleteMember: null is no object",
        "zov_ZoneAliasDeleteMember: null is no object",
    };
    std::vector<std::string> misuses = device->misuses();
    ASSERT_EQ(misuses.size(), expected.size() + 1);
    EXPECT_NE(misuses[6].find("zov_MemberDestroy: #"), std::string::npos);
    EXPECT_NE(misuses[6].find(" is no object"), std::string::npos);
    misuses.erase(misuses.begin() + 6);
    EXPECT_EQ(misuses, expected);
    EXPECT_EQ(zov_ZoneAliasDestroy(alias), 0);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
}

TEST_F(MisuseReports, TellOfPartsThatWentWithTheirOwner) {
    const auto device = sim::create();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    ASSERT_EQ(zov_ZonesetAddZone(set, zone), 0);
    ASSERT_EQ(zov_ZonesetDestroy(set), 0);
    zov_ZoneGetMemberCount(zone);
    EXPECT_EQ(device->misuses(),
              std::vector<std::string>{"zov_ZoneGetMemberCount: " + shown(zone) + " has been destroyed"});
}

TEST_F(MisuseReports, AreKeptByTheSwitchMadeLast) {
    const auto first = sim::create();
    const auto second = sim::create();
    zov_ZonesetDestroy(nullptr);
    EXPECT_TRUE(first->misuses().empty());
    EXPECT_EQ(second->misuses().size(), 1U);
    EXPECT_TRUE(sim::create()->misuses().empty());
}

TEST_F(MisuseReports, DoNotTellOfRefusalsThatAnySwitchLibrarySurvives) {
    const auto device = sim::create();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    void *twin = zov_ZoneCreate("oak");
    ASSERT_EQ(zov_ZonesetAddZone(set, zone), 0);
    EXPECT_EQ(zov_ZonesetAddZone(set, twin), simtest::kDuplicate);
    EXPECT_EQ(zov_ZoneDestroy(zone), simtest::kLinked);
    EXPECT_EQ(zov_ZoneSetName(zone, "1"), simtest::kBadName);
    EXPECT_EQ(zov_ZoneListMembers(zone, 7), nullptr);
    EXPECT_EQ(zov_ZoneDestroy(twin), 0);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
    EXPECT_TRUE(device->misuses().empty());
}

TEST_F(MisuseReports, ComeOfCallsThatALeverFailsToo) {
    const auto device = sim::create();
    sim::Fault fault;
    fault.call = "zov_ZonesetDestroy";
    fault.result = 9;
    device->addFault(fault);
    EXPECT_EQ(zov_ZonesetDestroy(nullptr), 9);
    EXPECT_EQ(device->misuses().size(), 1U);
}

TEST(MisuseDeathTest, EndsTheProcessWhereItIsNotForgiven) {
    const auto misuse = [] {
        setenv("ZOVSIM_MISUSE", "stop", 1);
        zov_ZonesetDestroy(nullptr);
    };
    EXPECT_EXIT(misuse(), testing::KilledBySignal(SIGABRT),
                "libzovlib: misuse of a zoning object: zov_ZonesetDestroy: null is no object");
}
