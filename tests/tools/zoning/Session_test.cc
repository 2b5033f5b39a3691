#include "tools/dcache/zoning/session.h"

#include <gmock/gmock.h>

#include "tests/support/Uptime.h"
#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char *kEdits = "create zone web acl\n"
                               "add member web 1:8\n"
                               "add zone day web\n"
                               "commit\n";

class Session : public testing::Test {
protected:
    Session() {
        support::setUptimeSource([this] { return _zoned->uptime(); });
    }
    ~Session() override { support::setUptime(0); }

    SessionResult run(const std::string &text) {
        ZoningSession session(parseScript(text, ScriptPurpose::edits), "ann", [&](const std::string &words) {
            _progress.push_back(words);
            if (words.rfind(_when, 0) == 0 && !_when.empty())
                _happens(session);
        });
        return session.run();
    }

    /// The exit code and the words with which a run ends.
    std::string failureOf(const std::string &text) {
        try {
            run(text);
        } catch (const Stopped &stopped) {
            return std::to_string(stopped.exitCode) + ": " + stopped.what();
        } catch (const Failure &failure) {
            return failure.what();
        }
        return "none";
    }

    /// What is done when the run tells this of its progress.
    void when(const std::string &words, std::function<void(ZoningSession &)> happens) {
        _when = words;
        _happens = std::move(happens);
    }

    std::string zoningOfTheSwitch() {
        const CacheLock cache;
        cache->reloadZoning();
        EXPECT_TRUE(cache->evaluateCaches());
        return scriptOf(definedZoning(cache));
    }

    void expectNothingHappened() {
        EXPECT_EQ(_zoned->zoningLockHolder(), 0u);
        EXPECT_EQ(_zoned->adminModeHolder(), 0u);
        EXPECT_EQ(zoningOfTheSwitch(), support::kZoning);
    }

    sim::Fault refuse(const char *key) {
        sim::Fault fault;
        fault.key = key;
        fault.status = 7;
        return fault;
    }

    support::ZonedSwitch _zoned;
    std::vector<std::string> _progress;

private:
    std::string _when;
    std::function<void(ZoningSession &)> _happens;
};

} // namespace

TEST_F(Session, AScriptReachesTheSwitchWithItsCommit) {
    const SessionResult result = run(kEdits);
    EXPECT_EQ(result.edits, 3u);
    EXPECT_TRUE(result.committed);
    EXPECT_THAT(result.deviations, IsEmpty());
    EXPECT_THAT(_progress, ElementsAre("zoning lock taken for \"ann\"", "line 1: create zone web acl",
                                       "line 2: add member web 1:8", "line 3: add zone day web", "line 4: commit"));
    const sim::ZoningDatabase zoning = _zoned->zoning();
    EXPECT_THAT(zoning.zonesets.at(0).zones, ElementsAre("db", "mail", "web"));
    EXPECT_EQ(zoning.zones.size(), 4u);
    EXPECT_EQ(scriptOf(result.edited), zoningOfTheSwitch());
    EXPECT_EQ(_zoned->zoningLockHolder(), 0u);
    EXPECT_EQ(_zoned->adminModeHolder(), 0u);
}

TEST_F(Session, WhatADumpSaysBuildsTheSameDatabaseOnAnEmptySwitch) {
    const sim::ZoningDatabase before = _zoned->zoning();
    const std::string dump = zoningOfTheSwitch();
    _zoned->activateZoneset("", sim::Notify::no);
    _zoned->setZoning({}, sim::Notify::no);
    const SessionResult result = run(dump);
    EXPECT_TRUE(result.committed);
    EXPECT_THAT(result.deviations, IsEmpty());
    EXPECT_TRUE(_zoned->zoning() == before);
}

TEST_F(Session, WithoutACommitTheEditsAreTriedOutAndDropped) {
    const SessionResult result = run("create zone web acl\n");
    EXPECT_EQ(result.edits, 1u);
    EXPECT_FALSE(result.committed);
    EXPECT_THAT(_progress, testing::Contains("zoning lock given back"));
    expectNothingHappened();
}

TEST_F(Session, AnEditThatIsRefusedEndsTheRunAndGivesTheLockBack) {
    EXPECT_EQ(failureOf("create zone web acl\n\nadd zone dusk web\ncommit\n"),
              "1: line 3: add zone dusk web: there is no zone set \"dusk\" (code 2); nothing was committed");
    EXPECT_EQ(_progress.back(), "zoning lock given back");
    expectNothingHappened();
}

TEST_F(Session, ALimitHasAnExitCodeOfItsOwn) {
    _zoned->setZoningLimits({2, 3000, 12000, 1000, 500, 3000, 500});
    {
        const CacheLock cache;
        cache->initZoningLimits();
    }
    EXPECT_EQ(failureOf("create set dusk\ncommit"),
              "4: line 1: create set dusk: the switch takes no more than 2 zone sets (code 4); nothing was committed");
    expectNothingHappened();
}

TEST_F(Session, ALockThatIsBusyHasAnExitCodeOfItsOwn) {
    _zoned->holdZoningLockElsewhere(true);
    EXPECT_EQ(failureOf(kEdits), "3: the switch refused the zoning lock: another management client holds it, or holds "
                                 "admin mode");
    EXPECT_THAT(_progress, IsEmpty());
    EXPECT_EQ(_zoned->zoningLockHolder(), sim::kOtherClient) << "and keeps it";
    EXPECT_EQ(_zoned->adminModeHolder(), 0u);
}

TEST_F(Session, NinetySecondsAreEnoughAndOneMoreIsTooLong) {
    when("line 1", [this](ZoningSession &) { _zoned->passTime(std::chrono::seconds(90)); });
    EXPECT_EQ(failureOf(kEdits), "none");
    when("line 1", [this](ZoningSession &) { _zoned->passTime(std::chrono::seconds(91)); });
    EXPECT_EQ(
        failureOf("create zone late acl\ncommit"),
        "3: line 2: the zoning lock has been held for more than 90 seconds, which ends it; nothing was committed");
    EXPECT_EQ(_zoned->zoning().zones.size(), 4u) << "the late one is not there";
    EXPECT_EQ(_zoned->zoningLockHolder(), 0u);
}

TEST_F(Session, ALockThatTheCacheGaveAwayIsLost) {
    when("line 1", [](ZoningSession &) { CacheLock()->ZoningLock("bob"); });
    EXPECT_EQ(failureOf(kEdits), "3: line 2: the zoning lock has been lost; nothing was committed");
}

TEST_F(Session, ALockStolenOnTheSwitchShowsInTheCommit) {
    when("line 3", [this](ZoningSession &) { _zoned->holdZoningLockElsewhere(true); });
    EXPECT_EQ(failureOf(kEdits), "5: the switch rejected the commit; its zoning is as it was before");
    EXPECT_EQ(zoningOfTheSwitch(), support::kZoning);
    EXPECT_EQ(_zoned->adminModeHolder(), 0u);
}

TEST_F(Session, AZoneThatTheActiveZoneSetHoldsCannotBeDeleted) {
    EXPECT_EQ(
        failureOf("delete zone db\ndelete zone mail\ncommit"),
        "5: the switch rejected the commit: the active zone set \"day\" still holds what was deleted, zone \"db\", "
        "\"mail\"; its zoning is as it was before");
    EXPECT_EQ(_progress.back(), "line 3: commit");
    expectNothingHappened();
}

TEST_F(Session, AnyOtherRejectionIsToldWithoutAReason) {
    _zoned->addFault(refuse("Cmd.Zoning.SaveConfig"));
    EXPECT_EQ(failureOf(kEdits), "5: the switch rejected the commit; its zoning is as it was before");
    expectNothingHappened();
}

TEST_F(Session, ACommitThatDidNotReachTheSwitchStillGivesTheLockBack) {
    when("line 4", [this](ZoningSession &) {
        sim::Fault fault;
        fault.call = "zov_smlSetBatch";
        fault.result = 9;
        _zoned->addFault(fault);
    });
    EXPECT_THAT(failureOf(kEdits), HasSubstr("rejected"));
    expectNothingHappened();
}

TEST_F(Session, ADatabaseThatCannotBeReadIsNotCommitted) {
    when("line 4", [this](ZoningSession &) {
        sim::Fault fault;
        fault.call = "zov_ZoneGetType";
        fault.result = 9;
        _zoned->addFault(fault);
    });
    EXPECT_THAT(failureOf(kEdits), HasSubstr("so nothing was committed"));
    expectNothingHappened();
}

TEST_F(Session, WhatOthersCommittedBeforeTheLockIsEditedToo) {
    giveZoning(*_zoned, support::kZoning.substr(0, support::kZoning.rfind("commit")) + "create zone web soft\n");
    EXPECT_THAT(failureOf(kEdits), HasSubstr("there is zone \"web\" already"));
}

TEST_F(Session, WhatOthersCommittedRightAfterwardsIsADeviation) {
    sim::Fault meanwhile;
    meanwhile.call = "zov_fzsGetZonesetList";
    meanwhile.skip = 1; // the reading under the lock
    meanwhile.action = [this] { giveZoning(*_zoned, "create zone other acl\n"); };
    _zoned->addFault(meanwhile);
    const SessionResult result = run(kEdits);
    EXPECT_TRUE(result.committed);
    ASSERT_THAT(result.deviations, testing::Not(IsEmpty()));
    EXPECT_EQ(result.deviations.front().change, std::string("removed"));
}

TEST_F(Session, StoppedItEndsBeforeTheNextEdit) {
    when("line 2", [](ZoningSession &session) { session.stop(); });
    EXPECT_EQ(failureOf(kEdits), "interrupted before line 3; nothing was committed");
    expectNothingHappened();
}

TEST_F(Session, StoppedAtTheEndItDoesNotCommit) {
    when("line 3", [](ZoningSession &session) { session.stop(); });
    EXPECT_EQ(failureOf(kEdits), "interrupted before line 4; nothing was committed");
    expectNothingHappened();
}

TEST_F(Session, ACommitThatIsOnItsWayCannotBeStopped) {
    when("line 4", [](ZoningSession &session) {
        EXPECT_TRUE(session.isCommitting());
        session.stop();
    });
    EXPECT_TRUE(run(kEdits).committed);
}

TEST_F(Session, ASwitchWithoutZoningOfItsOwnIsNotEdited) {
    {
        const CacheLock cache;
        cache->clearZoningCache();
    }
    ZoningSession session(parseScript("commit", ScriptPurpose::edits), "ann", [](const std::string &) {});
    EXPECT_THAT([&session] { session.rehearse(); }, testing::ThrowsMessage<Failure>(HasSubstr("transparent mode")));
}

TEST_F(Session, ARehearsalIsNothingToTheSwitch) {
    _zoned->clearRecords();
    ZoningSession session(parseScript(kEdits, ScriptPurpose::edits), "ann", [](const std::string &) {});
    const SessionResult result = session.rehearse();
    EXPECT_EQ(result.edits, 3u);
    EXPECT_FALSE(result.committed);
    EXPECT_EQ(result.edited.zones.size(), 4u);
    for (const sim::Record &record : _zoned->records())
        EXPECT_EQ(record.call.find("sml"), std::string::npos) << record.line();
    expectNothingHappened();
}

TEST_F(Session, ARehearsalIsRefusedInTheSameWords) {
    ZoningSession session(parseScript("delete zone web", ScriptPurpose::edits), "ann", [](const std::string &) {});
    EXPECT_THAT([&session] { session.rehearse(); },
                testing::ThrowsMessage<Stopped>("line 1: delete zone web: there is no zone \"web\" (code 2)"));
}
