#include "sim/model/Zoning.h"

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;

namespace {

constexpr const char *kActive = "Oper.Zoning.ActiveChecksum";
constexpr const char *kDefined = "Oper.Zoning.InactiveChecksum";
constexpr const char *kName = "Oper.Zoning.ActiveZoneSet";

struct Checksums {
    std::string active;
    std::string defined;
};

class ZoningModel : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(client.registerFor({ZOV_EVENT_ZONE_CHANGE}), 0); }

    Checksums checksums() const { return {client.get(kActive).value, client.get(kDefined).value}; }

    /// How many notifications have come since the last time.
    size_t news() {
        const size_t all = client.codes(*device).size();
        const size_t fresh = all - _seen;
        _seen = all;
        return fresh;
    }

    /// Which halves have changed since `before`: "active", "defined", both, or nothing.
    std::string changed(const Checksums &before) const {
        const Checksums now = checksums();
        return std::string(now.active != before.active ? "active " : "") +
               (now.defined != before.defined ? "defined" : "");
    }

    sim::ZoningDatabase activeSet() {
        void *zoneset = nullptr;
        if (zov_fzsGetActiveZoneset(client.handle, &zoneset) != 0)
            return {};
        return simtest::takeApart(zoneset);
    }

    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

private:
    size_t _seen = 0;
};

} // namespace

TEST_F(ZoningModel, IsEmptyAtFirstWithTwoChecksums) {
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
    EXPECT_EQ(device->activeZoning(), sim::ZoningDatabase());
    EXPECT_EQ(client.get(kName).value, "");
    EXPECT_EQ(client.get(kName).status, 0);
    const Checksums first = checksums();
    for (const std::string &sum : {first.active, first.defined}) {
        EXPECT_EQ(sum.size(), 8U);
        EXPECT_EQ(sum.find_first_not_of("0123456789ABCDEF"), std::string::npos) << sum;
        EXPECT_NE(std::stoul(sum, nullptr, 16), 1U);
    }
    EXPECT_NE(first.active, first.defined);
}

TEST_F(ZoningModel, ACommitMovesTheChecksumOfTheDefinedHalfAndSendsOneNotification) {
    const Checksums before = checksums();
    simtest::commit(client, simtest::kPlantOrchard);
    EXPECT_EQ(changed(before), "defined");
    EXPECT_EQ(news(), 1U);
    const zov_event_s event = client.events(1)[0];
    EXPECT_EQ(event.code, 3);
    EXPECT_STREQ(event.text, "zoning database committed");
    for (const int32_t number : event.source.number)
        EXPECT_EQ(number, 0);
}

TEST_F(ZoningModel, ACommitOfTheSameInAnotherOrderIsNoChange) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    const Checksums before = checksums();
    news();
    simtest::commit(client, simtest::kPlantOrchard);
    sim::ZoningDatabase shuffled = simtest::orchard();
    std::swap(shuffled.zonesets[0], shuffled.zonesets[1]);
    std::swap(shuffled.zonesets[1].zones[0], shuffled.zonesets[1].zones[1]);
    std::swap(shuffled.zones[0], shuffled.zones[2]);
    std::swap(shuffled.aliases[0], shuffled.aliases[1]);
    std::swap(shuffled.aliases[1].members[0], shuffled.aliases[1].members[1]);
    device->setZoning(shuffled);
    EXPECT_EQ(changed(before), "");
    EXPECT_EQ(news(), 0U);
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(ZoningModel, EveryDifferenceIsAChange) {
    using Change = void (*)(sim::ZoningDatabase &);
    for (const Change change : {+[](sim::ZoningDatabase &d) {
                                    d.zonesets.push_back({"west", {}});
                                },
                                +[](sim::ZoningDatabase &d) { d.zonesets[0].zones.pop_back(); },
                                +[](sim::ZoningDatabase &d) { d.zonesets[1].zones[0] = "yew"; },
                                +[](sim::ZoningDatabase &d) { d.zonesets[1].name = "South"; },
                                +[](sim::ZoningDatabase &d) { d.zones.pop_back(); },
                                +[](sim::ZoningDatabase &d) { d.zones[2].type = ZOV_ZT_SOFT; },
                                +[](sim::ZoningDatabase &d) { d.zones[1].members[0].text = "239:254"; },
                                +[](sim::ZoningDatabase &d) { d.zones[0].members.pop_back(); },
                                +[](sim::ZoningDatabase &d) { d.zones[0].members[1].text = "fir"; },
                                +[](sim::ZoningDatabase &d) { d.aliases[1].name = "pine"; },
                                +[](sim::ZoningDatabase &d) { d.aliases[1].members.clear(); }}) {
        device->setZoning(simtest::orchard());
        const Checksums before = checksums();
        news();
        sim::ZoningDatabase database = simtest::orchard();
        change(database);
        device->setZoning(database);
        EXPECT_EQ(changed(before), "defined");
        EXPECT_EQ(news(), 1U);
        EXPECT_EQ(device->zoning(), database);
    }
}

TEST_F(ZoningModel, AChecksumIsAnotherOneAfterEveryChangeEvenBackToWhatWas) {
    std::set<std::string> seen = {checksums().defined};
    for (int i = 0; i < 200; ++i) {
        device->setZoning(i % 2 ? sim::ZoningDatabase() : simtest::orchard());
        EXPECT_TRUE(seen.insert(checksums().defined).second) << i;
    }
    EXPECT_EQ(seen.count("00000001"), 0U);
}

TEST_F(ZoningModel, TheActiveZonesetIsACopyOfTheDefinedOne) {
    device->setZoning(simtest::orchard());
    const Checksums before = checksums();
    news();
    device->activateZoneset("south");
    EXPECT_EQ(changed(before), "active ");
    EXPECT_EQ(news(), 1U);
    EXPECT_STREQ(client.events(2)[1].text, "zone set south activated");
    EXPECT_EQ(client.get(kName).value, "south");
    char name[65];
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, name), 0);
    EXPECT_STREQ(name, "south");
    const sim::ZoningDatabase all = simtest::orchard();
    sim::ZoningDatabase expected;
    expected.zonesets = {all.zonesets[1]};
    expected.zones = {all.zones[0]};
    expected.aliases = {all.aliases[0]};
    EXPECT_EQ(device->activeZoning(), expected);
    EXPECT_EQ(activeSet(), expected);
}

TEST_F(ZoningModel, ActivatingWhatIsActiveIsNoChange) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("south");
    const Checksums before = checksums();
    news();
    device->activateZoneset("south");
    EXPECT_EQ(changed(before), "");
    EXPECT_EQ(news(), 0U);
}

TEST_F(ZoningModel, AnEmptyNameDeactivates) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("south");
    const Checksums before = checksums();
    news();
    device->activateZoneset("");
    device->activateZoneset("");
    EXPECT_EQ(changed(before), "active ");
    EXPECT_EQ(news(), 1U);
    EXPECT_EQ(client.get(kName).value, "");
    EXPECT_EQ(activeSet(), sim::ZoningDatabase());
}

TEST_F(ZoningModel, AnUnknownZonesetIsNotActivated) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("south");
    EXPECT_THROW(device->activateZoneset("South"), std::invalid_argument);
    EXPECT_EQ(client.get(kName).value, "south");
}

TEST_F(ZoningModel, ACommitReplacesWhatIsActiveToo) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    const Checksums before = checksums();
    news();
    std::vector<std::string> edit = simtest::kPlantOrchard;
    edit.emplace_back("Cmd.Zoning.Alias.ash.AddZoneMember.0F0F0F");
    simtest::commit(client, edit);
    EXPECT_EQ(changed(before), "active defined");
    EXPECT_EQ(news(), 1U);
    EXPECT_EQ(activeSet().aliases[0].members.size(), 3U);
}

TEST_F(ZoningModel, ACommitThatDoesNotTouchTheActiveZonesetLeavesItsChecksum) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("south");
    const Checksums before = checksums();
    sim::ZoningDatabase database = simtest::orchard();
    database.zones[1].type = ZOV_ZT_HARDACL; // not in the set
    device->setZoning(database);
    EXPECT_EQ(changed(before), "defined");
}

TEST_F(ZoningModel, ACommitWithoutTheActiveZonesetLeavesItAsItWas) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("south");
    const Checksums before = checksums();
    const sim::ZoningDatabase active = device->activeZoning();
    EXPECT_EQ(simtest::commit(client, {}), simtest::allDone(0));
    EXPECT_EQ(changed(before), "defined");
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
    EXPECT_EQ(device->activeZoning(), active);
    EXPECT_EQ(client.get(kName).value, "south");
}

TEST_F(ZoningModel, ItChangesSilentlyWhenAskedTo) {
    const Checksums before = checksums();
    device->setZoning(simtest::orchard(), sim::Notify::no);
    device->activateZoneset("south", sim::Notify::no);
    EXPECT_EQ(changed(before), "active defined");
    EXPECT_EQ(news(), 0U);
}

TEST_F(ZoningModel, ChecksumsCanBeSetAndMoveOnFromThere) {
    device->set(kDefined, "1");
    EXPECT_EQ(client.get(kDefined).value, "1");
    EXPECT_EQ(news(), 1U);
    device->setZoning(simtest::orchard());
    const std::string moved = client.get(kDefined).value;
    device->setZoning({}, sim::Notify::no);
    for (const char *wrong : {"", "123456789", "0x1", "G"})
        EXPECT_THROW(device->set(kActive, wrong), std::invalid_argument) << wrong;
    EXPECT_THROW(device->set(kName, "south"), std::invalid_argument);
    EXPECT_NE(moved, client.get(kDefined).value);
}

TEST_F(ZoningModel, ClientsDoNotSetItsKeys) {
    for (const char *key : {kActive, kDefined, kName})
        EXPECT_EQ(client.set(key, "2"), simtest::kReadOnly) << key;
}

TEST_F(ZoningModel, LimitsAreReadAsTheyWereSet) {
    device->setZoningLimits({1, 2, 3, 4, 5, 6, 7});
    zov_fzs_zoninglimits_s limits;
    ASSERT_EQ(zov_fzsGetZoningLimitations(client.handle, &limits), 0);
    EXPECT_EQ(limits.zonesets, 1);
    EXPECT_EQ(limits.zones, 2);
    EXPECT_EQ(limits.members, 3);
    EXPECT_EQ(limits.zonesPerZoneset, 4);
    EXPECT_EQ(limits.membersPerZone, 5);
    EXPECT_EQ(limits.aliases, 6);
    EXPECT_EQ(limits.membersPerAlias, 7);
    EXPECT_THROW(device->setZoningLimits({1, 2, 3, 4, 5, 6, -1}), std::invalid_argument);
    ASSERT_EQ(zov_fzsGetZoningLimitations(client.handle, &limits), 0);
    EXPECT_EQ(limits.membersPerAlias, 7);
    EXPECT_EQ(news(), 0U);
}

TEST_F(ZoningModel, IsEachSwitchsOwn) {
    device->setZoning(simtest::orchard());
    const auto second = sim::create();
    EXPECT_EQ(second->zoning(), sim::ZoningDatabase());
    EXPECT_EQ(device->zoning(), simtest::orchard());
}
