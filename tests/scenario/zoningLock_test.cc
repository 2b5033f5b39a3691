// The fabric lock against a switch that does what switches do: time passes, others take the lock or change zoning, the switch
// restarts. A client that asks before every edit and looks at the results can tell in each case.
#include <chrono>

#include <fmt/format.h>

#include "tests/scenario/zoningSetting.h"
#include "tests/support/Lock.h"
#include "tests/support/Uptime.h"

using namespace scenario;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char *kTake = "set Cmd.Switch.ReqAdmin Cmd.Zoning.FabricLock.77";
constexpr const char *kGiveBack = "set Cmd.Zoning.FabricUnlock.77 Cmd.Switch.RelAdmin";
constexpr const char *kRejected = "DCACHE: Zoning session failed";

enum class Held { yes, no, tooLong };

void PrintTo(Held held, std::ostream *out) {
    *out << (held == Held::yes ? "held" : held == Held::no ? "not held" : "held too long");
}

class ZoningLock : public ZoningScenario {
protected:
    void SetUp() override { loadOrchard(); }

    static Held heldBy(const char *id) {
        bool expired = true;
        if (cache().LockIdOK(id, expired))
            return expired ? Held::tooLong : Held::yes;
        return expired ? Held::tooLong : Held::no;
    }

    void expectNobodyHolds() const {
        EXPECT_EQ(theSwitch->zoningLockHolder(), 0U);
        EXPECT_EQ(theSwitch->adminModeHolder(), 0U);
    }

    /// The exchanges in which something is set, since forget().
    Lines sent() const {
        Lines all;
        for (const std::string &line : traffic())
            if (line.rfind("set ", 0) == 0)
                all.push_back(line);
        return all;
    }

    /// "provider" holds the lock and has made an edit.
    void editUnderTheLock() {
        ASSERT_TRUE(cache().ZoningLock("provider"));
        ASSERT_EQ(cache().createZone("larch", ZOV_ZT_SOFT), 0);
        ASSERT_EQ(cache().addMemberToZone("larch", ZOV_ZMT_ALIAS, "tape"), 0);
        ASSERT_EQ(cache().addZoneToZoneset("south", "larch"), 0);
    }

    /// What editUnderTheLock() makes of the orchard.
    static sim::ZoningDatabase edited(sim::ZoningDatabase database = orchard()) {
        database.zones.push_back({"larch", ZOV_ZT_SOFT, {{ZOV_ZMT_ALIAS, "tape"}}});
        database.zonesets[1].zones.emplace_back("larch");
        return database;
    }

    void expectAcceptedCommit() {
        forget();
        EXPECT_TRUE(cache().replaceZoningDB());
        EXPECT_EQ(heldBy("provider"), Held::yes);
        EXPECT_THAT(log(), Not(Contains(kRejected)));
        expectNobodyHolds();
        EXPECT_TRUE(passAfterNotifications());
        EXPECT_EQ(differencesFromSwitch(), "");
    }

    /// The switch keeps what it has, and the client is told by the lock.
    void expectRejectedCommit() {
        const sim::ZoningDatabase before = theSwitch->zoning();
        forget();
        EXPECT_TRUE(cache().replaceZoningDB());
        EXPECT_EQ(heldBy("provider"), Held::no);
        EXPECT_EQ(cache().getZoningLockHolder(), "");
        EXPECT_THAT(log(), Contains(kRejected));
        EXPECT_EQ(describe(theSwitch->zoning()), describe(before));
        EXPECT_TRUE(support::isLockFree());
    }
};

// ---- time ---------------------------------------------------------------------------------------------

TEST_F(ZoningLock, IsGoodFor90SecondsAndNoLonger) {
    ASSERT_TRUE(cache().ZoningLock("provider"));
    theSwitch->passTime(seconds(90));
    forget();
    EXPECT_EQ(heldBy("provider"), Held::yes);
    EXPECT_THAT(log(), IsEmpty());
    theSwitch->passTime(seconds(1));
    EXPECT_EQ(heldBy("provider"), Held::tooLong);
    EXPECT_THAT(log(), ElementsAre("DCACHE: fabric lock interval expired at 91s"));
    EXPECT_EQ(heldBy("somebody"), Held::no) << "its age says nothing to others";
    EXPECT_EQ(cache().getZoningLockHolder(), "provider");
    EXPECT_NE(theSwitch->zoningLockHolder(), 0U) << "the switch knows of no interval";
}

TEST_F(ZoningLock, CountsItsTimeFromTheRequestHoweverSlowTheAnswer) {
    sim::Fault slow;
    slow.call = "zov_smlSetBatch";
    slow.action = [this] { theSwitch->passTime(seconds(30)); };
    theSwitch->addFault(slow);
    ASSERT_TRUE(cache().ZoningLock("provider"));
    theSwitch->passTime(seconds(60));
    EXPECT_EQ(heldBy("provider"), Held::yes);
    theSwitch->passTime(seconds(1));
    EXPECT_EQ(heldBy("provider"), Held::tooLong);
}

TEST_F(ZoningLock, IsFreshAgainWhenItsHolderAsksAgain) {
    editUnderTheLock();
    theSwitch->passTime(seconds(91));
    ASSERT_EQ(heldBy("provider"), Held::tooLong);
    forget();
    EXPECT_TRUE(cache().ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(kTake));
    theSwitch->passTime(seconds(90));
    EXPECT_EQ(heldBy("provider"), Held::yes);
    expectAcceptedCommit();
    EXPECT_EQ(describe(theSwitch->zoning()), describe(edited()));
}

TEST_F(ZoningLock, LetsACommitPassThatComesTooLate) {
    editUnderTheLock();
    theSwitch->passTime(seconds(1000));
    EXPECT_EQ(heldBy("provider"), Held::tooLong) << "so much the client is told; what it does then is its own affair";
    EXPECT_TRUE(cache().replaceZoningDB());
    EXPECT_EQ(describe(theSwitch->zoning()), describe(edited()));
}

// ---- holders ------------------------------------------------------------------------------------------

TEST_F(ZoningLock, GoesOverToASecondIdWithAnIntervalOfItsOwn) {
    ASSERT_TRUE(cache().ZoningLock("first"));
    theSwitch->passTime(seconds(80));
    EXPECT_TRUE(cache().ZoningLock("second"));
    EXPECT_EQ(heldBy("first"), Held::no);
    theSwitch->passTime(seconds(90));
    EXPECT_EQ(heldBy("first"), Held::no);
    EXPECT_EQ(heldBy("second"), Held::yes);
    EXPECT_EQ(cache().getZoningLockHolder(), "second");
}

TEST_F(ZoningLock, IsGivenBackOnce) {
    ASSERT_TRUE(cache().ZoningLock("provider"));
    EXPECT_TRUE(cache().ZoningUnlock());
    EXPECT_EQ(heldBy("provider"), Held::no);
    expectNobodyHolds();
    EXPECT_FALSE(cache().ZoningUnlock()) << "the switch refuses to take back what it has";
}

TEST_F(ZoningLock, OfAnotherClientIsNotTakenAndAdminModeIsGivenBack) {
    theSwitch->holdZoningLockElsewhere(true);
    forget();
    EXPECT_FALSE(cache().ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(kTake, kGiveBack));
    EXPECT_EQ(heldBy("provider"), Held::no);
    EXPECT_EQ(theSwitch->adminModeHolder(), 0U);
    EXPECT_EQ(theSwitch->zoningLockHolder(), sim::kOtherClient);
    theSwitch->holdZoningLockElsewhere(false);
    EXPECT_TRUE(cache().ZoningLock("provider"));
}

TEST_F(ZoningLock, IsNotTakenWhileAdminModeIsElsewhere) {
    theSwitch->holdAdminModeElsewhere(true);
    forget();
    EXPECT_FALSE(cache().ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(kTake, kGiveBack));
    EXPECT_EQ(heldBy("provider"), Held::no);
    EXPECT_EQ(theSwitch->zoningLockHolder(), 0U);
    EXPECT_EQ(theSwitch->adminModeHolder(), sim::kOtherClient);
}

TEST_F(ZoningLock, ThatIsAskedForAgainInVainIsLostToItsHolder) {
    ASSERT_TRUE(cache().ZoningLock("first"));
    theSwitch->holdZoningLockElsewhere(true);
    EXPECT_FALSE(cache().ZoningLock("second"));
    EXPECT_EQ(heldBy("first"), Held::no);
    EXPECT_EQ(heldBy("second"), Held::no);
}

// ---- between an edit and the commit -------------------------------------------------------------------

TEST_F(ZoningLock, StolenBeforeTheCommitRejectsIt) {
    editUnderTheLock();
    theSwitch->holdZoningLockElsewhere(true);
    EXPECT_EQ(heldBy("provider"), Held::yes) << "the cache does not know yet";
    expectRejectedCommit();
    EXPECT_EQ(theSwitch->zoningLockHolder(), sim::kOtherClient);
    EXPECT_EQ(theSwitch->adminModeHolder(), 0U);
    EXPECT_FALSE(cache().ZoningLock("provider"));

    theSwitch->holdZoningLockElsewhere(false);
    ASSERT_TRUE(cache().ZoningLock("provider"));
    expectAcceptedCommit();
    EXPECT_EQ(describe(theSwitch->zoning()), describe(edited())) << "the edits were still there";
}

TEST_F(ZoningLock, LostWithAdminModeBeforeTheCommitRejectsIt) {
    editUnderTheLock();
    theSwitch->holdAdminModeElsewhere(true);
    expectRejectedCommit();
    EXPECT_EQ(theSwitch->adminModeHolder(), sim::kOtherClient);
    theSwitch->holdAdminModeElsewhere(false);
    ASSERT_TRUE(cache().ZoningLock("provider"));
    expectAcceptedCommit();
}

TEST_F(ZoningLock, LostByARestartOfTheSwitchBeforeTheCommitRejectsIt) {
    editUnderTheLock();
    theSwitch->restart();
    expectRejectedCommit();
    expectNobodyHolds();
    ASSERT_TRUE(cache().ZoningLock("provider"));
    expectAcceptedCommit();
    EXPECT_EQ(describe(theSwitch->zoning()), describe(edited()));
}

TEST_F(ZoningLock, OfARejectedCommitLetsTheEditsBeThrownAway) {
    editUnderTheLock();
    theSwitch->restart();
    expectRejectedCommit();
    loadAnew();
    EXPECT_EQ(differencesFromSwitch(), "");
    EXPECT_EQ(cache().addMemberToZone("larch", ZOV_ZMT_FCADDRESS, "010203"), 2);
}

TEST_F(ZoningLock, StolenInTheMiddleOfTheCommitChangesNothing) {
    editUnderTheLock();
    const sim::ZoningDatabase before = theSwitch->zoning();
    sim::Fault theft; // just before the switch gets to see the batch
    theft.call = "zov_smlSetBatch";
    theft.action = [this] { theSwitch->holdZoningLockElsewhere(true); };
    theSwitch->addFault(theft);
    EXPECT_TRUE(cache().replaceZoningDB());
    EXPECT_EQ(heldBy("provider"), Held::no);
    EXPECT_EQ(describe(theSwitch->zoning()), describe(before));
}

TEST_F(ZoningLock, OnASwitchThatIsOffIsLostAtTheCommit) {
    editUnderTheLock();
    support::setUptime(theSwitch->uptime());
    theSwitch.reset();
    EXPECT_TRUE(cache().replaceZoningDB());
    EXPECT_EQ(heldBy("provider"), Held::no);
    EXPECT_FALSE(cache().ZoningLock("provider"));
    cache().updateZoning();
    EXPECT_FALSE(cache().evaluateCaches());
    EXPECT_EQ(cache().createZone("maple", ZOV_ZT_SOFT), 0) << "what is cached can be edited still";
    cache().clearZoningCache();
}

// ---- a refresh between two edits ----------------------------------------------------------------------

sim::ZoningDatabase elsewhere() {
    sim::ZoningDatabase database;
    database.aliases = {{"tape", {{ZOV_ZMT_FCADDRESS, "0A0B0C"}}}};
    database.zones = {{"maple", ZOV_ZT_SOFT, {{ZOV_ZMT_ALIAS, "tape"}}}};
    database.zonesets = {{"east", {"maple"}}, {"south", {}}};
    return database;
}

TEST_F(ZoningLock, LivesThroughARefreshThatTakesTheEditsAway) {
    editUnderTheLock();
    theSwitch->setZoning(elsewhere());
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_THAT(events(), ElementsAre(kDatabaseChange, kComplete)) << "the client is told";
    EXPECT_EQ(heldBy("provider"), Held::yes);
    EXPECT_EQ(differencesFromSwitch(), "");

    // The results of the next edits tell, too.
    EXPECT_EQ(cache().addMemberToZone("larch", ZOV_ZMT_FCADDRESS, "010203"), 2);
    EXPECT_EQ(cache().removeMemberFromZone("oak", ZOV_ZMT_ALIAS, "disk"), 2);
    EXPECT_EQ(cache().addZoneToZoneset("south", "larch"), 2);
    EXPECT_EQ(cache().removeZoneset("east"), 0);
    EXPECT_EQ(cache().createZoneset("north"), 0);
    EXPECT_EQ(cache().removeZoneset("north"), 0);
}

TEST_F(ZoningLock, LetsTheEditsBeMadeAgainAfterARefresh) {
    editUnderTheLock();
    theSwitch->setZoning(elsewhere());
    passAfterNotifications();
    editUnderTheLock();
    EXPECT_EQ(cache().removeZoneset(kActiveZonesetKey), 0) << "its zones are not defined any more";
    EXPECT_TRUE(cache().replaceZoningDB());
    EXPECT_EQ(heldBy("provider"), Held::yes);
    EXPECT_EQ(describe(theSwitch->zoning()), describe(edited(elsewhere())));

    // What is active on the switch has not changed, so the cache does not load it again before it does.
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_EQ(cache().getActiveZoneset(), nullptr);
    theSwitch->activateZoneset("south");
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_EQ(differencesFromSwitch(), "");
}

TEST_F(ZoningLock, IsLostWhenTheActiveZoneSetStillHoldsAZoneThatIsGone) {
    editUnderTheLock();
    EXPECT_EQ(cache().removeZone("elm"), 0);
    expectRejectedCommit();
    expectNobodyHolds();
    EXPECT_EQ(describe(theSwitch->zoning()), describe(orchard()));
}

TEST_F(ZoningLock, AnActivationBetweenTwoEditsKeepsThem) {
    editUnderTheLock();
    theSwitch->activateZoneset("south");
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_THAT(
        events(),
        ElementsAre(fmt::format("27: ActiveZonesetChange switch={} north->south", support::kSwitchWwn), kComplete));
    EXPECT_EQ(heldBy("provider"), Held::yes);
    EXPECT_EQ(cache().addMemberToZone("larch", ZOV_ZMT_FCADDRESS, "010203"), 0);
    expectAcceptedCommit();
    sim::ZoningDatabase expected = edited();
    expected.zones.back().members.push_back({ZOV_ZMT_FCADDRESS, "010203"});
    expected.zonesets = {expected.zonesets[1], expected.zonesets[0]}; // the active one comes first in the commit
    EXPECT_EQ(describe(theSwitch->zoning()), describe(expected));
    EXPECT_EQ(theSwitch->activeZoning().zones.size(), 2U) << "what is active follows what is defined";
}

TEST_F(ZoningLock, ARefreshThatFailsHalfwayBetweenTwoEditsIsNoticedByTheNextOne) {
    editUnderTheLock();
    theSwitch->setZoning(elsewhere());
    sim::Fault fault;
    fault.call = "zov_fzsGetAllZonesAndAliases";
    fault.result = 7;
    theSwitch->addFault(fault);
    EXPECT_FALSE(passAfterNotifications());
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::zoning));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(heldBy("provider"), Held::yes);
    EXPECT_EQ(cache().createZone("maple", ZOV_ZT_SOFT), 4) << "there is nothing to create it in";
    EXPECT_EQ(cache().addMemberToZone("larch", ZOV_ZMT_FCADDRESS, "010203"), 2);
    EXPECT_EQ(cache().removeZoneAlias("tape"), 2);
    EXPECT_EQ(cache().addZoneToZoneset("south", "larch"), 2);

    EXPECT_TRUE(pass());
    EXPECT_THAT(events(), ElementsAre(kDatabaseChange, kComplete));
    EXPECT_EQ(differencesFromSwitch(), "");
}

TEST_F(ZoningLock, ACommitAfterARefreshThatFailedIsRejectedBecauseTheActiveZonesAreNotDefined) {
    editUnderTheLock();
    const sim::ZoningDatabase other = elsewhere();
    theSwitch->setZoning(other);
    sim::Fault fault;
    fault.call = "zov_fzsGetZonesetList";
    fault.result = 7;
    theSwitch->addFault(fault);
    EXPECT_FALSE(passAfterNotifications());
    expectRejectedCommit();
    EXPECT_TRUE(pass());
    EXPECT_EQ(differencesFromSwitch(), "");
}

} // namespace
