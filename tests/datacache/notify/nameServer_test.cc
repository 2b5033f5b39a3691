// Notifications of the fabric's name server: one event for each entry.
#include <fmt/format.h>

#include "tests/support/CacheTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int32_t kAdded = 79;
constexpr int32_t kDeleted = 80;
constexpr const char *kFirst = "21000024FF4A0001";
constexpr const char *kSecond = "21000024FF4A0002";
constexpr const char *kNone = "0000000000000000";

class NameServer : public support::CacheTest {
protected:
    void SetUp() override {
        load();
        ASSERT_TRUE(cache().isAreaGood(DataCacheArea::fabric));
    }

    /// The events of a notification with this text.
    std::vector<std::string> told(int32_t code, const std::string &text) {
        theSwitch->deliver(code, {0, 0, 0}, text);
        return told();
    }
    /// The events of the next pass, but for the one that ends it.
    std::vector<std::string> told() {
        EXPECT_TRUE(passAfterNotifications());
        std::vector<std::string> lines = events();
        EXPECT_EQ(lines.back(), support::kUpdateComplete);
        lines.pop_back();
        return lines;
    }

    static std::string added(const std::string &port, const std::string &owner = support::kSwitchWwn) {
        return fmt::format("10: PortAdd owner={} port={} origin=1", owner, port);
    }
    static std::string removed(const std::string &port) {
        return fmt::format("11: PortRemove owner={} port={} origin=1", support::kSwitchWwn, port);
    }
    static std::string entry(const std::string &port) { return "010500,20000024FF4A0001," + port; }
};

TEST_F(NameServer, AnEntryThatCameOrWentIsAPortOfTheFabric) {
    EXPECT_THAT(told(kAdded, entry(kFirst)), ElementsAre(added(kFirst)));
    EXPECT_THAT(told(kDeleted, entry(kFirst)), ElementsAre(removed(kFirst)));
}

TEST_F(NameServer, EntriesAreToldInTheOrderOfTheText) {
    EXPECT_THAT(told(kAdded, entry(kSecond) + ";" + entry(kFirst)), ElementsAre(added(kSecond), added(kFirst)));
    EXPECT_THAT(told(kDeleted, entry(kFirst) + ";" + entry(kSecond) + ";"),
                ElementsAre(removed(kFirst), removed(kSecond)));
}

TEST_F(NameServer, AnEntryWithTwoFieldsTellsNothing) {
    for (const char *text : {"", ",", "a", "a,b", ";;;", "a;b,c"})
        EXPECT_THAT(told(kAdded, text), IsEmpty()) << text;
}

TEST_F(NameServer, TheFirstTwoFieldsMayBeAnything) {
    EXPECT_THAT(told(kAdded, std::string(",,") + kFirst), ElementsAre(added(kFirst)));
    EXPECT_THAT(told(kAdded, std::string(" x , y ,") + kFirst), ElementsAre(added(kFirst)));
}

TEST_F(NameServer, CommasAreLookedForAcrossTheEndsOfEntries) {
    // The second entry lends its first field to the first one, and is gone with it.
    EXPECT_THAT(told(kAdded, fmt::format("a,b;c,{};{}", kFirst, entry(kSecond))),
                ElementsAre(added(kFirst), added(kSecond)));
    EXPECT_THAT(told(kAdded, fmt::format("a;b,c,{}", kFirst)), ElementsAre(added(kFirst)));
}

TEST_F(NameServer, AnEntryThatIsCutShortEndsTheText) {
    EXPECT_THAT(told(kAdded, entry(kFirst) + ";010600,2000"), ElementsAre(added(kFirst)));
}

TEST_F(NameServer, WhatIsNoNameIsToldAsTheZeroName) {
    EXPECT_THAT(told(kAdded, "a,b,"), ElementsAre(added(kNone)));
    EXPECT_THAT(told(kAdded, "a,b,;"), ElementsAre(added(kNone)));
    EXPECT_THAT(told(kAdded, "a,b,no name;" + entry(kFirst)), ElementsAre(added(kNone), added(kFirst)));
    EXPECT_THAT(told(kAdded, entry(kFirst) + ",a fourth field"), ElementsAre(added(kNone)));
    EXPECT_THAT(told(kAdded, entry(kNone)), ElementsAre(added(kNone)));
}

TEST_F(NameServer, NamesMayBeWrittenInPairs) {
    EXPECT_THAT(told(kAdded, entry("21:00:00:24:ff:4a:00:01")), ElementsAre(added("21000024FF4A0000")));
}

TEST_F(NameServer, ATextThatFillsItsRecordIsReadToItsEnd) {
    std::string text;
    std::vector<std::string> expected;
    while (text.size() + 42 < sizeof(zov_event_s::text)) {
        text += entry(kFirst) + ";";
        expected.push_back(added(kFirst));
    }
    EXPECT_EQ(told(kAdded, text), expected);
}

TEST_F(NameServer, TheOwnerIsTheFabricByTheNameItHasThen) {
    theSwitch->set("Oper.Switch.WhoIsPrincipal", kSecond, sim::Notify::no);
    EXPECT_THAT(told(kAdded, entry(kFirst)), ElementsAre(added(kFirst)));
    cache().updateFabric();
    pass();
    EXPECT_THAT(told(kAdded, entry(kFirst)), ElementsAre(added(kFirst, kSecond)));
}

class EarlyNameServer : public NameServer {
protected:
    void SetUp() override { connect(); }
};

TEST_F(EarlyNameServer, UntilTheFabricHasBeenReadTheOwnerIsTheZeroName) {
    const std::vector<std::string> first = told(kAdded, entry(kFirst) + ";" + entry(kSecond));
    ASSERT_GE(first.size(), 2U);
    EXPECT_EQ(first[0], added(kFirst, kNone));
    EXPECT_EQ(first[1], added(kSecond, kNone));
    EXPECT_THAT(told(kAdded, entry(kFirst)), ElementsAre(added(kFirst)));
}

TEST_F(NameServer, TheSwitchsOwnNotificationsAreUnderstood) {
    const sim::NameServerEntry device = {support::kSwitchWwn, 20, "20000024FF4B0001", "21000024FF4B0001"};
    theSwitch->logIn(device);
    EXPECT_THAT(told(), ElementsAre(added(device.portWwn)));
    theSwitch->logOut(device.portWwn);
    EXPECT_THAT(told(), ElementsAre(removed(device.portWwn)));
}

} // namespace
