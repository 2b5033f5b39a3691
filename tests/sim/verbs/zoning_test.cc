#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/verbs/Commands.h"

using simtest::orchard;
using simtest::refusalOf;

namespace {

class ZoningVerbs : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();

    std::string tell(const std::string &commands) { return sim::perform(*device, commands); }
};

} // namespace

TEST_F(ZoningVerbs, DefineWhatClientsDefine) {
    tell(R"(
        zoning define alias ash 21:00:00:00:00:00:00:01 1:10
        zoning define alias fir 0A0B0C
        zoning define zone oak type=hard-acl 21000000000000AB alias:ash
        zoning define zone elm 239:255 type=soft FFFFFE
        zoning define zone yew type=hard-vpf
        zoning define set north oak elm
        zoning define set south oak
    )");
    EXPECT_EQ(device->zoning(), orchard());
}

TEST_F(ZoningVerbs, WhatIsShownCanBeDefinedAgain) {
    device->setZoning(orchard());
    device->activateZoneset("south");
    const std::string defined = tell("zoning show defined");
    const auto other = sim::create();
    sim::perform(*other, defined);
    EXPECT_EQ(other->zoning(), orchard());
    sim::perform(*other, "zoning clear\n" + tell("zoning show active"));
    EXPECT_EQ(other->zoning(), device->activeZoning());
}

TEST_F(ZoningVerbs, DefiningAgainReplacesInItsPlace) {
    device->setZoning(orchard());
    tell("zoning define zone oak 1:1\nzoning define alias ash 1:2\nzoning define set north yew");
    sim::ZoningDatabase expected = orchard();
    expected.zones[0] = {"oak", ZOV_ZT_SOFT, {{ZOV_ZMT_DOMAINPORT, "1:1"}}};
    expected.aliases[0] = {"ash", {{ZOV_ZMT_DOMAINPORT, "1:2"}}};
    expected.zonesets[0] = {"north", {"yew"}};
    EXPECT_EQ(device->zoning(), expected);
}

TEST_F(ZoningVerbs, WhatIsRemovedIsNoLongerReferredTo) {
    device->setZoning(orchard());
    tell("zoning remove zone oak\nzoning remove alias fir\nzoning remove set south");
    sim::ZoningDatabase expected = orchard();
    expected.zones.erase(expected.zones.begin());
    expected.aliases.pop_back();
    expected.zonesets = {{"north", {"elm"}}};
    EXPECT_EQ(device->zoning(), expected);
    device->setZoning(orchard());
    tell("zoning remove alias ash");
    EXPECT_EQ(device->zoning().zones[0].members, orchard().zones[0].members.size() == 2
                                                     ? std::vector<sim::ZoneMember>{orchard().zones[0].members[0]}
                                                     : std::vector<sim::ZoneMember>());
    EXPECT_EQ(refusalOf(*device, "zoning remove zone birch"), "there is no zone 'birch'");
    EXPECT_EQ(refusalOf(*device, "zoning remove set oak"), "there is no zone set 'oak'");
    EXPECT_EQ(refusalOf(*device, "zoning remove alias oak"), "there is no alias 'oak'");
}

TEST_F(ZoningVerbs, ActivateAndDeactivate) {
    device->setZoning(orchard());
    tell("zoning activate south");
    EXPECT_EQ(device->get("Oper.Zoning.ActiveZoneSet"), "south");
    tell("zoning deactivate");
    EXPECT_EQ(device->get("Oper.Zoning.ActiveZoneSet"), "");
    EXPECT_EQ(tell("zoning show active"), "");
    EXPECT_EQ(refusalOf(*device, "zoning activate west"), "there is no zone set 'west'");
}

TEST_F(ZoningVerbs, WhatClientsCouldNotCommitIsRefused) {
    for (const char *command :
         {"zoning define zone oak birch", "zoning define zone oak 0:1", "zoning define zone oak alias:ash",
          "zoning define zone oak 1:1 1:1", "zoning define set north oak", "zoning define alias ash alias:fir",
          "zoning define zone 2fast 1:1", "zoning define alias \"\""}) {
        EXPECT_NE(refusalOf(*device, command), "") << command;
        EXPECT_EQ(device->zoning(), sim::ZoningDatabase()) << command;
    }
}

TEST_F(ZoningVerbs, WhatHasNotTheFormOfAMemberIsRefusedWithWhatHas) {
    for (const char *member : {"foo", "1:", ":1", "1:x", "0A0B0", "0A0B0C0", "210000000000000", "\"\"", "node:1"})
        EXPECT_THAT(refusalOf(*device, std::string("zoning define alias ash 1:1 ") + member),
                    testing::EndsWith("cannot be word 6; expected: MEMBER (a port WWN, DOMAIN:PORT, an address of 6 "
                                      "hexadecimal digits, or alias:NAME)"))
            << member;
}

TEST_F(ZoningVerbs, LimitsThatAreNotSaidStay) {
    const std::string usual = tell("zoning limits");
    tell("zoning limits sets=1 zones=2 members=3 zones-per-set=4 members-per-zone=5 aliases=6 members-per-alias=7");
    EXPECT_NE(tell("zoning limits"), usual);
    tell("zoning limits zones=20");
    EXPECT_EQ(
        tell("zoning limits"),
        "zoning limits sets=1 zones=20 members=3 zones-per-set=4 members-per-zone=5 aliases=6 members-per-alias=7");
    EXPECT_EQ(tell(tell("zoning limits")), "");
    EXPECT_EQ(refusalOf(*device, "zoning limits zones=-1"), "a zoning limit cannot be -1; allowed: 0 and more");
    tell(usual);
    EXPECT_EQ(tell("zoning limits"), usual);
}

TEST_F(ZoningVerbs, ACommitIsAnnouncedOnceUnlessSilent) {
    simtest::Client client;
    ASSERT_EQ(client.registerFor({3}), 0);
    tell("zoning define alias ash 1:1 silently\nzoning define alias fir 1:2\nzoning define alias fir 1:2");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{3});
}
