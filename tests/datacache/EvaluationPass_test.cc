// The evaluation pass: drain, refresh, and what exceptions do to it.
#include <ctime>
#include <stdexcept>

#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/WakeUps.h"

namespace {

// The monotonic clock is ahead by this.
time_t secondsAhead = 0;

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_MONOTONIC)
        time->tv_sec += secondsAhead;
    return static_cast<int>(result);
}
#include "tests/support/Memory.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Pass : public support::CacheTest {
protected:
    void SetUp() override { load(); }

    /// Which areas the last pass refreshed, by their lines in the log.
    std::vector<std::string> refreshed() const {
        const std::string before = "DCACHE: Updating ";
        const std::string after = " cache";
        std::vector<std::string> areas;
        for (const std::string &line : log()) {
            if (line.rfind(before, 0) == 0 && line.compare(line.size() - after.size(), after.size(), after) == 0)
                areas.push_back(line.substr(before.size(), line.size() - before.size() - after.size()));
        }
        return areas;
    }

    static void queue(int32_t code, const std::string &text = "") {
        auto *record = new zov_event_s{};
        record->code = code;
        text.copy(record->text, sizeof(record->text) - 1);
        cache().queueZovlibEvent(record);
    }

    /// The client throws this text when it hears of an event of this class.
    static void throwOn(int32_t type, const char *text) {
        support::onEvent([=](DataCacheEvent &event) {
            if (event.type == type)
                throw text;
        });
    }

    void failKey(const std::string &key, int times = 1) {
        sim::Fault fault;
        fault.key = key;
        fault.status = 5;
        fault.times = times;
        theSwitch->addFault(fault);
    }
};

TEST_F(Pass, RefreshesWhatWasAskedForInTheOrderOfTheAreas) {
    cache().updateAll();
    pass();
    EXPECT_THAT(refreshed(), ElementsAre("switch", "chassis", "blades", "ports", "accounts", "fabric", "zoning"));
}

TEST_F(Pass, SkipsAreasThatNobodyAskedFor) {
    pass();
    EXPECT_THAT(refreshed(), Not(Contains("switch")));
    EXPECT_THAT(refreshed(), Not(Contains("chassis")));
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::switchInfo));
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::chassis));
}

TEST_F(Pass, OneAreaCanBeAskedForAlone) {
    cache().updateChassis();
    EXPECT_TRUE(cache().workToDo());
    pass();
    EXPECT_THAT(refreshed(), Contains("chassis"));
    EXPECT_THAT(refreshed(), Not(Contains("switch")));
}

TEST_F(Pass, AFailedSwitchRefreshIsTriedAgainAndTheOthersGoOn) {
    failKey("Oper.Switch.OperState");
    cache().updateSwitch();
    cache().updateChassis();
    EXPECT_FALSE(pass());
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::switchInfo));
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::chassis));
    EXPECT_THAT(log(), Contains("DCACHE: _switchOK = false"));
    EXPECT_THAT(log(), Not(Contains("DCACHE: _chassisOK = false")));
    EXPECT_THAT(refreshed(), Contains("chassis"));

    pass();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::switchInfo));
    EXPECT_THAT(refreshed(), Contains("switch"));
    EXPECT_THAT(refreshed(), Not(Contains("chassis")));
}

TEST_F(Pass, AFailedChassisRefreshIsTriedAgainAndTheOthersGoOn) {
    failKey("Oper.Chassis.0.Fans");
    cache().updateChassis();
    EXPECT_FALSE(pass());
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::switchInfo));
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::chassis));
    EXPECT_THAT(log(), Contains("DCACHE: _chassisOK = false"));

    pass();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::chassis));
    EXPECT_THAT(refreshed(), Contains("chassis"));
}

TEST_F(Pass, WithAnAreaThatIsNotGoodTheCacheIsNotReady) {
    failKey("Oper.Switch.OperState", -1);
    cache().updateSwitch();
    EXPECT_FALSE(pass());
    EXPECT_FALSE(cache().isCacheReady());
    EXPECT_THAT(events(), Not(Contains("33: DataCacheUpdateComplete")));
}

TEST_F(Pass, DispatchesTheQueueInOrderBeforeAnyRefresh) {
    queue(73, "first");
    queue(32);
    queue(72, "second");
    EXPECT_EQ(cache().getQueuedNotificationCount(), 3U);
    pass();
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    const auto lines = log();
    ASSERT_GE(lines.size(), 5U);
    EXPECT_EQ(lines[0], "DCACHE: evaluateCaches");
    EXPECT_EQ(lines[1], "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (73) ZOV_EVENT_USER_LOGIN_FAILURE : first");
    EXPECT_EQ(lines[2], "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (32) ZOV_EVENT_SWITCH_STATE_CHANGE : ");
    EXPECT_EQ(lines[3], "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (72) ZOV_EVENT_USER_PASSWORD_CHANGED : second");
    EXPECT_EQ(lines[4], "DCACHE: Updating switch cache");
}

TEST_F(Pass, FreesTheNotificationsThatItDispatched) {
    pass();
    forget();
    const long before = support::blocks_held;
    for (int i = 0; i < 100; ++i)
        queue(16);
    EXPECT_GE(support::blocks_held, before + 100);
    pass();
    forget();
    EXPECT_LT(support::blocks_held, before + 50);
}

TEST_F(Pass, AnEmptyPlaceInTheQueueIsTakenAwayWithoutDispatch) {
    cache().queueZovlibEvent(nullptr);
    pass();
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    for (const std::string &line : log())
        EXPECT_EQ(line.find("dequeueing"), std::string::npos) << line;
}

// ---- exceptions -----------------------------------------------------------------------------------------

TEST_F(Pass, ATextThrownByADispatchEndsThePassAndKeepsTheNotification) {
    throwOn(30, "no more");
    queue(73, "operator");
    queue(33);
    cache().updateSwitch();
    support::takeWakeUps();
    pass();
    EXPECT_EQ(support::takeWakeUps(), 0U) << "what was kept waits for another wake-up";
    EXPECT_EQ(cache().getQueuedNotificationCount(), 2U);
    EXPECT_THAT(refreshed(), IsEmpty());
    EXPECT_THAT(log(), Contains("DCACHE: Exception: no more"));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog).back(), "DCACHE: Exception: no more");
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::switchInfo)) << "results stay as they were";
    EXPECT_TRUE(support::isLockFree());

    support::onEvent(nullptr);
    pass();
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    EXPECT_THAT(events(), ElementsAre("30: UserLoginFailure switch=100000C0DD00A1B2 user=operator",
                                      "6: SwitchStatusChange switch=100000C0DD00A1B2 principal=100000C0DD00A1B2 "
                                      "[2]->[2, 0, 0]",
                                      support::kUpdateComplete));
    EXPECT_THAT(refreshed(), Contains("switch"));
    EXPECT_THAT(refreshed(), Contains("chassis"));
}

TEST_F(Pass, ATextThrownByARefreshKeepsItsRequestAndAllLaterOnes) {
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    throwOn(6, "in the middle");
    cache().updateAll();
    pass();
    EXPECT_THAT(refreshed(), ElementsAre("switch"));
    EXPECT_THAT(log(), Contains("DCACHE: Exception: in the middle"));
    EXPECT_THAT(log(), Not(Contains("DCACHE: _switchOK = false"))) << "the result of the last whole refresh stays";

    support::onEvent(nullptr);
    pass();
    EXPECT_THAT(refreshed(), ElementsAre("switch", "chassis", "blades", "ports", "accounts", "fabric", "zoning"));
    EXPECT_THAT(events(), ElementsAre(support::kUpdateComplete))
        << "the picture had been taken before the client threw";
}

TEST_F(Pass, ATextThrownByThePortRefreshFindsItsRequestWithdrawnAndKeepsAllLaterOnes) {
    theSwitch->set("Oper.UserPort.0.5.OperState", "Diagnostics", sim::Notify::no);
    throwOn(12, "in the middle");
    cache().localPortRefreshSet(5);
    cache().updateAll();
    pass();
    EXPECT_THAT(refreshed(), ElementsAre("switch", "chassis", "blades", "ports"));
    EXPECT_THAT(log(), Contains("DCACHE: Exception: in the middle"));

    support::onEvent(nullptr);
    pass();
    EXPECT_THAT(refreshed(), ElementsAre("accounts", "fabric", "zoning"));

    cache().updatePorts();
    pass();
    EXPECT_THAT(traffic(), Contains(testing::StartsWith("get Oper.UserPort.0.5.OperState "))) << "it is still named";
    EXPECT_THAT(events(), ElementsAre(support::kUpdateComplete)) << "but its event is lost";
}

TEST_F(Pass, AThrownTextThatIsNullEndsThePassLikeAnyOther) {
    throwOn(30, nullptr);
    queue(73, "operator");
    pass();
    EXPECT_THAT(log(), Contains("DCACHE: Exception: "));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);
}

TEST_F(Pass, AnyOtherExceptionPassesOutWithTheLockGivenBack) {
    support::onEvent([](DataCacheEvent &) { throw std::runtime_error("mine"); });
    queue(73, "operator");
    EXPECT_THROW(pass(), std::runtime_error);
    EXPECT_TRUE(support::isLockFree());
    EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);

    support::onEvent(nullptr);
    pass();
    EXPECT_THAT(events(),
                ElementsAre("30: UserLoginFailure switch=100000C0DD00A1B2 user=operator", support::kUpdateComplete));
}

// ---- clients that call back -----------------------------------------------------------------------------

TEST_F(Pass, ACallbackMayCallPublicOperations) {
    std::string name;
    support::onEvent([&name](DataCacheEvent &) { name = cache().getRootSwitchWwn(); });
    queue(73, "operator");
    pass();
    EXPECT_EQ(name, support::kSwitchWwn);
}

TEST_F(Pass, APassInsideACallbackDoesNothing) {
    bool inner = true;
    std::vector<std::string> innerLog;
    support::onEvent([&](DataCacheEvent &event) {
        if (event.type != 30)
            return;
        const std::size_t mark = support::logMark();
        inner = cache().evaluateCaches();
        innerLog = support::messagesSince(mark);
    });
    const unsigned long passes = cache().getPassCount();
    queue(73, "operator");
    queue(72, "operator");
    pass();
    EXPECT_EQ(inner, cache().isCacheReady());
    EXPECT_THAT(innerLog, IsEmpty());
    EXPECT_EQ(cache().getPassCount(), passes + 1);
    EXPECT_EQ(events().size(), 3U) << "each notification was dispatched once, and the pass ended once";
}

TEST_F(Pass, WithoutACallbackEventsAreDropped) {
    cache().startEventMonitor(nullptr);
    queue(73, "operator");
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    cache().updateSwitch();
    pass();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(cache().getRootSwitchStatus(), ElementsAre(10, 0, 0));
}

TEST_F(Pass, TellsHowLongAgoTheCacheWasLastComplete) {
    const auto age = [] { return cache().getSecondsSinceReadyPass(); };
    EXPECT_LT(age(), 60);
    secondsAhead = 3600;
    EXPECT_GE(age(), 3600);
    failKey("Oper.Switch.OperState");
    cache().updateSwitch();
    EXPECT_FALSE(pass());
    EXPECT_GE(age(), 3600) << "a pass that leaves an area bad does not count";
    EXPECT_TRUE(pass());
    EXPECT_LT(age(), 60);
}

TEST_F(Pass, InsideTheCompletionsCallbackTheCacheIsAsCompleteAsItSays) {
    secondsAhead = 3600;
    long age = -1;
    support::onEvent([&](DataCacheEvent &) { age = cache().getSecondsSinceReadyPass(); });
    EXPECT_TRUE(pass());
    EXPECT_GE(age, 0);
    EXPECT_LT(age, 60);
}

// ---- requests -------------------------------------------------------------------------------------------

TEST_F(Pass, EachRequestAsksForItsArea) {
    const std::vector<std::pair<void (DataCache::*)(), std::string>> requests = {
        {&DataCache::updateSwitch, "switch"},     {&DataCache::updateChassis, "chassis"},
        {&DataCache::updateBlades, "blades"},     {&DataCache::updatePorts, "ports"},
        {&DataCache::updateAccounts, "accounts"}, {&DataCache::updateFabric, "fabric"},
        {&DataCache::updateZoning, "zoning"},
    };
    for (const auto &[request, area] : requests) {
        (cache().*request)();
        EXPECT_TRUE(cache().workToDo());
        pass();
        EXPECT_THAT(refreshed(), Contains(area));
    }
}

TEST_F(Pass, NamingAPortOutsideTheTableThrowsTheBareText) {
    for (const int port : {-1, 256, 1 << 30}) {
        try {
            cache().localPortRefreshSet(port);
            FAIL() << port;
        } catch (const std::out_of_range &error) {
            EXPECT_STREQ(error.what(), "bitset::set");
        }
        EXPECT_TRUE(support::isLockFree());
    }
    EXPECT_NO_THROW(cache().localPortRefreshSet(0));
    EXPECT_NO_THROW(cache().localPortRefreshSet(255));
    EXPECT_NO_THROW(cache().localPortRefreshSet());
}

} // namespace
