// Databases as the control interface takes them and shows them.
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

namespace {

struct Fault {
    const char *what; ///< in the refusal
    void (*make)(sim::ZoningDatabase &database);
};

void PrintTo(const Fault &fault, std::ostream *out) {
    *out << fault.what;
}

class FaultyDatabase : public testing::TestWithParam<Fault> {};

using Database = sim::ZoningDatabase;

// clang-format off
constexpr Fault kFaults[] = {
    {"zone set '1north': not a valid name", [](Database &d) { d.zonesets[0].name = "1north"; }},
    {"zone '': not a valid name", [](Database &d) { d.zones[2].name.clear(); }},
    {"alias 'a.b': not a valid name", [](Database &d) { d.aliases[1].name = "a.b"; }},
    {"zone set 'north': there twice", [](Database &d) { d.zonesets[1].name = "north"; }},
    {"zone 'oak': there twice", [](Database &d) { d.zones[2].name = "oak"; }},
    {"alias 'ash': there twice", [](Database &d) { d.aliases[1].name = "ash"; }},
    {"zone 'oak' of zone set 'north': there twice", [](Database &d) { d.zonesets[0].zones[1] = "oak"; }},
    {"zone 'OAK' of zone set 'south': nothing of this name is defined", [](Database &d) { d.zonesets[1].zones[0] = "OAK"; }},
    {"zone 'yew': not a zone type", [](Database &d) { d.zones[2].type = ZOV_ZT_INVALID; }},
    {"member '' of zone 'elm': not a member", [](Database &d) { d.zones[1].members[0].text.clear(); }},
    {"member 'ash' of zone 'elm': not a member", [](Database &d) { d.zones[1].members[0].text = "ash"; }},
    {"member '2100000000000001' of zone 'elm': not a member",
     [](Database &d) { d.zones[1].members[0] = {ZOV_ZMT_NODENAME, "2100000000000001"}; }},
    {"member 'beech' of zone 'oak': nothing of this name is defined", [](Database &d) { d.zones[0].members[1].text = "beech"; }},
    {"member 'ash' of alias 'fir': no such member can be there", [](Database &d) { d.aliases[1].members[0] = {ZOV_ZMT_ALIAS, "ash"}; }},
    {"member '1:10' of alias 'ash': there twice", [](Database &d) { d.aliases[0].members[0] = {ZOV_ZMT_DOMAINPORT, "1:10"}; }},
    {"member '010a' of alias 'ash': there twice", [](Database &d) { d.aliases[0].members.push_back({ZOV_ZMT_DOMAINPORT, "010a"}); }},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Every, FaultyDatabase, testing::ValuesIn(kFaults));

std::string refusalOf(sim::Simulator &device, const sim::ZoningDatabase &database) {
    try {
        device.setZoning(database);
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "taken";
}

} // namespace

TEST_P(FaultyDatabase, IsRefusedInWordsAndChangesNothing) {
    const auto device = sim::create();
    simtest::Client client;
    ASSERT_EQ(client.registerFor({ZOV_EVENT_ZONE_CHANGE}), 0);
    sim::ZoningDatabase database = simtest::orchard();
    GetParam().make(database);
    EXPECT_EQ(refusalOf(*device, database), GetParam().what);
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST(ZoningDatabaseText, ComesOutAsItWentIn) {
    const auto device = sim::create();
    device->setZoning(simtest::orchard());
    EXPECT_EQ(device->zoning(), simtest::orchard());
    device->setZoning({});
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
}

TEST(ZoningDatabaseText, MembersComeOutInOneForm) {
    const auto device = sim::create();
    sim::ZoningDatabase database;
    database.zones = {
        {"oak",
         ZOV_ZT_SOFT,
         {{ZOV_ZMT_PORTWWN, "21:00:00:00:00:00:ab:cd"}, {ZOV_ZMT_DOMAINPORT, "0a0b"}, {ZOV_ZMT_FCADDRESS, "0a0b0c"}}}};
    device->setZoning(database);
    const std::vector<sim::ZoneMember> expected = {
        {ZOV_ZMT_PORTWWN, "210000000000ABCD"}, {ZOV_ZMT_DOMAINPORT, "10:11"}, {ZOV_ZMT_FCADDRESS, "0A0B0C"}};
    EXPECT_EQ(device->zoning().zones[0].members, expected);
}

TEST(ZoningDatabaseText, MoreThanTheLimitsAllowIsRefused) {
    const auto device = sim::create();
    device->setZoningLimits({2, 3, 9, 2, 2, 2, 2}); // orchard() fits exactly
    EXPECT_EQ(refusalOf(*device, simtest::orchard()), "taken");
    constexpr int32_t zov_fzs_zoninglimits_s::*kEach[] = {
        &zov_fzs_zoninglimits_s::zonesets,       &zov_fzs_zoninglimits_s::zones,
        &zov_fzs_zoninglimits_s::members,        &zov_fzs_zoninglimits_s::zonesPerZoneset,
        &zov_fzs_zoninglimits_s::membersPerZone, &zov_fzs_zoninglimits_s::aliases,
        &zov_fzs_zoninglimits_s::membersPerAlias};
    for (const auto limit : kEach) {
        zov_fzs_zoninglimits_s limits = {2, 3, 9, 2, 2, 2, 2};
        --(limits.*limit);
        device->setZoningLimits(limits);
        EXPECT_NE(refusalOf(*device, simtest::orchard()).find("more than the switch can hold"), std::string::npos);
    }
}
