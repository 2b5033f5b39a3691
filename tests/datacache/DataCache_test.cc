// Birth, connection, registration, the EVAL thread, and death of the cache.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <pthread.h>
#include <thread>
#include <unistd.h>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/Wait.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

// ---- functions of the C library and the switch library that these tests watch or replace ---------------

std::vector<unsigned> sleeps;
std::function<unsigned(unsigned)> sleepAction;
std::vector<std::size_t> stackSizes;
int stackSizeResult = 0;
int threadResult = 0;
std::vector<zov_eventreg_s> registered;
std::function<int32_t(zov_eventreg_s *, int32_t)> registerAction;

template <class Function> Function *original(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" unsigned sleep(unsigned seconds) {
    sleeps.push_back(seconds);
    return sleepAction ? sleepAction(seconds) : 0;
}

extern "C" int pthread_attr_setstacksize(pthread_attr_t *attributes, std::size_t size) {
    stackSizes.push_back(size);
    if (stackSizeResult != 0)
        return stackSizeResult;
    return original<int(pthread_attr_t *, std::size_t)>("pthread_attr_setstacksize")(attributes, size);
}

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*body)(void *),
                              void *argument) {
    if (threadResult != 0 && body == DataCache::evalThread)
        return threadResult;
    return original<int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *)>("pthread_create")(
        thread, attributes, body, argument);
}

extern "C" int32_t zov_enRegisterForEventList(zov_handle_t handle, zov_eventcallback_t callback, void *context,
                                              zov_eventreg_s *list, int32_t count) {
    registered.assign(list, list + count);
    if (registerAction)
        return registerAction(list, count);
    return original<int32_t(zov_handle_t, zov_eventcallback_t, void *, zov_eventreg_s *, int32_t)>(
        "zov_enRegisterForEventList")(handle, callback, context, list, count);
}

namespace {

class Lifecycle : public support::CacheTest {
protected:
    static std::vector<int32_t> registrationResults() {
        std::vector<int32_t> results;
        for (const zov_eventreg_s &entry : cache().getRegistrations())
            results.push_back(entry.result);
        return results;
    }
};

std::vector<std::string> only(const std::vector<std::string> &lines, const std::string &part) {
    std::vector<std::string> found;
    for (const std::string &line : lines) {
        if (line.find(part) != std::string::npos)
            found.push_back(line);
    }
    return found;
}

void notify(int32_t code, const std::string &text) {
    zov_event_s event = {};
    event.code = code;
    text.copy(event.text, sizeof(event.text) - 1);
    DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
}

// ---- birth ----------------------------------------------------------------------------------------------

TEST_F(Lifecycle, BeforeInitTheInstanceIsNullAndTheLockIsTakenAllTheSame) {
    EXPECT_EQ(DataCache::getInstance(), nullptr);
    std::atomic<bool> other{false};
    std::thread waiting([&other] {
        DataCache::getInstance();
        other = true;
        DataCache::releaseInstance();
    });
    EXPECT_FALSE(other);
    DataCache::releaseInstance();
    waiting.join();
    EXPECT_TRUE(other);
}

TEST_F(Lifecycle, AClientMayHoldTheLockWhileTheCacheIsMade) {
    EXPECT_EQ(DataCache::getInstance(), nullptr);
    EXPECT_TRUE(DataCache::init());
    EXPECT_NE(DataCache::getInstance(), nullptr);
    DataCache::releaseInstance();
    DataCache::releaseInstance();
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(Lifecycle, InitConnectsAndLoadsTheZoningLimits) {
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(log(), ElementsAre("DCACHE: Creating a new datacache()", "DCACHE: attempting zovlib connection",
                                   "DCACHE: zovlib connection established", "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                                   "DCACHE: Zoning limits loaded"));
    EXPECT_THAT(traffic(), ElementsAre("zov_IPConnect", "zov_fzsGetZoningLimitations"));
    EXPECT_EQ(theSwitch->connectionCount(), 1U);
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(Lifecycle, ASecondInitNeitherMakesACacheNorConnects) {
    DataCache::init();
    const DataCache *first = &cache();
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_EQ(&cache(), first);
    EXPECT_THAT(log(), ElementsAre("DCACHE: attempting zovlib connection", "DCACHE: zovlib connection established",
                                   "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0", "DCACHE: Zoning limits loaded"));
    EXPECT_THAT(traffic(), ElementsAre("zov_fzsGetZoningLimitations"));
}

TEST_F(Lifecycle, ZoningLimitsThatDoNotLoadAreLoggedAndOtherwiseIgnored) {
    sim::Fault fault;
    fault.call = "zov_fzsGetZoningLimitations";
    fault.result = 5;
    theSwitch->addFault(fault);
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_EQ(log().back(), "DCACHE: Zoning limits failed to load");
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(Lifecycle, ARefusedConnectionIsTriedAgainEveryTenSeconds) {
    sim::Fault refused;
    refused.call = "zov_IPConnect";
    refused.result = 7;
    refused.times = 3;
    theSwitch->addFault(refused);
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(sleeps, ElementsAre(10U, 10U, 10U));
    const auto failures = only(log(), "CRIT:");
    ASSERT_EQ(failures.size(), 3U);
    for (const std::string &line : failures)
        EXPECT_THAT(
            line,
            MatchesRegex(
                R"(CRIT:DataCache\.cc:startZovlib\[[0-9]+\] zovlib connection failed: 7 : retrying in 10 seconds\.\.\.)"));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog), failures);
    EXPECT_EQ(log().back(), "DCACHE: Zoning limits loaded");
}

TEST_F(Lifecycle, ASleepThatASignalCutsShortIsSleptToItsEnd) {
    sim::Fault refused;
    refused.call = "zov_IPConnect";
    refused.result = -1;
    theSwitch->addFault(refused);
    sleepAction = [](unsigned seconds) { return seconds == 10 ? 4U : 0U; };
    DataCache::init();
    EXPECT_THAT(sleeps, ElementsAre(10U, 4U));
}

TEST_F(Lifecycle, ASuccessWithoutAHandleIsTriedAgainAtOnce) {
    sim::Fault empty;
    empty.call = "zov_IPConnect";
    empty.nullHandle = true;
    empty.times = 2;
    theSwitch->addFault(empty);
    forget();
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(sleeps, IsEmpty());
    EXPECT_THAT(log(), ElementsAre("DCACHE: Creating a new datacache()", "DCACHE: attempting zovlib connection",
                                   "DCACHE: zovlib connection established", "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0",
                                   "DCACHE: Zoning limits loaded"));
}

// ---- registration ---------------------------------------------------------------------------------------

TEST_F(Lifecycle, RegistersForTheCodesInTheirOrder) {
    connect();
    std::vector<int32_t> numbers;
    for (const zov_eventreg_s &entry : registered) {
        numbers.push_back(entry.code);
        EXPECT_EQ(entry.result, 0);
    }
    EXPECT_THAT(numbers, ElementsAre(32, 52, 57, 28, 39, 29, 82, 50, 14, 15, 72, 73, 33, 40, 74, 75, 76, 77, 78, 16, 68,
                                     69, 79, 80, 3, 1, 7, 70));
}

TEST_F(Lifecycle, AFailedRegistrationIsLoggedAndOtherwiseIgnored) {
    DataCache::init();
    registerAction = [](zov_eventreg_s *, int32_t) { return 3; };
    forget();
    EXPECT_TRUE(cache().startEventMonitor(nullptr));
    EXPECT_THAT(log(), ElementsAre("DCACHE: Unable to register for events via zov_enRegisterForEvents"));
    EXPECT_THAT(registrationResults(), testing::Each(3));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(Lifecycle, CodesThatCannotBeRegisteredAreLoggedInTheirOrder) {
    DataCache::init();
    registerAction = [](zov_eventreg_s *list, int32_t count) {
        list[0].result = 1;
        list[5].result = -1;
        list[count - 1].result = 24;
        return 9;
    };
    forget();
    EXPECT_TRUE(cache().startEventMonitor(nullptr));
    EXPECT_THAT(log(), ElementsAre("DCACHE: Unable to register for events via zov_enRegisterForEvents",
                                   "DCACHE: Unable to register for event 32", "DCACHE: Unable to register for event 29",
                                   "DCACHE: Unable to register for event 70"));
    std::vector<int32_t> results(28, 9); // a code without a result of its own shares that of the call
    results.front() = 1;
    results[5] = -1;
    results.back() = 24;
    EXPECT_EQ(registrationResults(), results);
}

TEST_F(Lifecycle, HowTheRegistrationEndedCanBeAskedFor) {
    DataCache::init();
    EXPECT_THAT(cache().getRegistrations(), IsEmpty());
    cache().startEventMonitor(nullptr);
    const std::vector<zov_eventreg_s> registrations = cache().getRegistrations();
    ASSERT_EQ(registrations.size(), registered.size());
    for (std::size_t i = 0; i < registered.size(); ++i)
        EXPECT_EQ(registrations[i].code, registered[i].code);
    EXPECT_THAT(registrationResults(), testing::Each(0));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

// ---- the EVAL thread ------------------------------------------------------------------------------------

TEST_F(Lifecycle, TheEvalThreadHasAStackOf128KiB) {
    connect();
    stackSizes.clear();
    EXPECT_TRUE(cache().startEvalThread());
    EXPECT_THAT(stackSizes, Contains(131072U)); // a sanitizer may start a thread of its own besides
}

TEST_F(Lifecycle, WithoutItsStackSizeTheThreadIsNotStarted) {
    connect();
    stackSizeResult = EINVAL;
    EXPECT_FALSE(cache().startEvalThread());
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: (DataCache) creating EVAL thread", "DCACHE: pthread_attr_setstacksize failed"));
}

TEST_F(Lifecycle, AThreadThatCannotBeMadeIsReported) {
    connect();
    threadResult = EAGAIN;
    EXPECT_FALSE(cache().startEvalThread());
    EXPECT_THAT(log(), ElementsAre("DCACHE: (DataCache) creating EVAL thread", "DCACHE: Thread creation failed"));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog),
                testing::Not(Contains("DCACHE: (DataCache) creating EVAL thread")));
}

TEST_F(Lifecycle, StartSucceedsAlsoWithoutItsThread) {
    DataCache::init();
    threadResult = EAGAIN;
    EXPECT_TRUE(cache().start(support::recordEvent));
    EXPECT_EQ(log().back(), "DCACHE: Thread creation failed");
}

TEST_F(Lifecycle, TheFirstPassNeedsNoNotification) {
    DataCache::init();
    EXPECT_EQ(cache().getPassCount(), 0U);
    EXPECT_TRUE(cache().start(support::recordEvent));
    EXPECT_TRUE(support::waitUntil([] { return cache().getPassCount() == 1; }));
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::switchInfo));
    EXPECT_EQ(cache().getRootSwitchWwn(), support::kSwitchWwn);
    EXPECT_EQ(support::readFile(support::kCriticalLog), "") << "all is well";
}

/// Starts the cache and waits for the first pass.
class Running : public Lifecycle {
protected:
    void SetUp() override {
        DataCache::init();
        cache().start(support::recordEvent);
        ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() == 1; }));
    }

    /// Sends a login failure of this user and waits for its event: all earlier wake-ups have been served then, or are
    /// served together with it.
    static void mark(const std::string &user) {
        notify(73, user);
        const std::string event = fmt::format("30: UserLoginFailure switch={} user={}", support::kSwitchWwn, user);
        std::vector<std::string> seen;
        ASSERT_TRUE(support::waitUntil([&] {
            for (const std::string &line : takeAll())
                seen.push_back(line);
            return std::find(seen.begin(), seen.end(), event) != seen.end();
        }));
    }

    static std::vector<std::string> takeAll() { return support::takeEvents(); }

    /// The numbers of passes between the marks in the log: passes that began before the first one, between the first and
    /// the second, and so on. The pass that serves a mark counts as before it.
    static std::vector<int> passesBetweenMarks() {
        std::vector<int> counts = {0};
        for (const std::string &line : support::messagesIn(support::kMainLog)) {
            if (line == "DCACHE: evaluateCaches")
                ++counts.back();
            if (line.find("dequeueing") != std::string::npos && line.find("mark") != std::string::npos)
                counts.push_back(0);
        }
        return counts;
    }
};

TEST_F(Running, ANotificationStartsAPass) {
    takeAll();
    theSwitch->set("Oper.Switch.OperState", "Offline");
    EXPECT_TRUE(support::waitForEvents(2));
    const std::vector<std::string> events = takeAll();
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ(events[0], "6: SwitchStatusChange switch=100000C0DD00A1B2 principal=100000C0DD00A1B2 [2]->[10, 0, 0]");
    EXPECT_EQ(events[1], support::kUpdateComplete);
}

TEST_F(Running, NotificationsThatArriveDuringAPassShareOneFurtherPass) {
    // The callback runs in the middle of a pass, after the queue has been drained.
    support::onEvent([](DataCacheEvent &event) {
        if (event.type != 6)
            return;
        for (int i = 0; i < 50; ++i)
            notify(73, fmt::format("burst {}", i));
    });
    mark("mark 1");
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    {
        DataCache::getInstance()->updateSwitch();
        notify(73, "mark 2");
        DataCache::releaseInstance();
    }
    ASSERT_TRUE(support::waitForEvents(53)); // mark, status change, end of the pass, burst
    std::vector<int> passes;
    mark("mark 3");
    passes = passesBetweenMarks();
    // The pass of the burst, and the pass that each dispatch with work left to do asks for; it may serve the next mark.
    EXPECT_GE(passes.at(2), 2);
    EXPECT_LE(passes.at(2), 3);
}

TEST_F(Running, AskingForARefreshStartsNoPass) {
    mark("mark 1");
    cache().updateAll();
    cache().localPortRefreshSet();
    cache().zovlibEventKick(ZOV_EVENT_USER_LOGIN_FAILURE, nullptr, "kicked");
    mark("mark 2");
    EXPECT_EQ(passesBetweenMarks().at(1), 1) << "that of mark 2";
    EXPECT_EQ(only(support::messagesIn(support::kMainLog), "dequeueing").size(), 3U);
}

TEST_F(Running, AFailedOrIncompletePassIsSaid) {
    const auto failures = [] {
        const auto lines = support::messagesIn(support::kMainLog);
        return std::count(lines.begin(), lines.end(), "DCACHE: (EVAL) Cache update failed or incomplete");
    };
    mark("mark 1");
    EXPECT_EQ(failures(), 0);
    sim::Fault fault;
    fault.key = "Oper.Zoning.ActiveChecksum";
    fault.status = 5;
    fault.times = -1;
    theSwitch->addFault(fault);
    cache().updateZoning();
    mark("mark 2");
    EXPECT_TRUE(support::waitUntil([&failures] { return failures() >= 1; }));
}

TEST_F(Running, ATextThrownByTheCallbackDoesNotEndTheThread) {
    bool thrown = false;
    support::onEvent([&thrown](DataCacheEvent &event) {
        if (event.type == 29 && !thrown) {
            thrown = true;
            throw "first time";
        }
    });
    notify(72, "operator");
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() >= 2; }));
    mark("mark 1"); // what was kept waits for another wake-up
    const auto log = support::messagesIn(support::kMainLog);
    EXPECT_THAT(only(log, "Exception"), ElementsAre("DCACHE: Exception: first time"));
    // Once more for the record that stayed in the queue.
    EXPECT_EQ(only(log, "dequeueing ZOV_EVENT_T[0:0:0] (72)").size(), 2U);
}

TEST_F(Running, ATextThrownAtTheEventThatEndsAPassDoesNotEndTheThreadEither) {
    support::onEvent([](DataCacheEvent &event) {
        if (event.type == 33)
            throw "at the end";
    });
    mark("mark 1"); // its own event comes before the one that ends the pass
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() >= 2; }));
    support::onEvent(nullptr);
    mark("mark 2");
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_TRUE(support::isLockFree());
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), Contains("DCACHE: Exception: at the end"));
}

/// Runs the cache with this callback, until the process ends. What ends it says whether the lock is free.
void runUntilTheEnd(void (*callback)(DataCacheEvent &)) {
    const auto theSwitch = sim::create();
    std::set_terminate([] {
        std::fputs(support::isLockFree() ? "ended, lock free\n" : "ended, lock held\n", stderr);
        std::_Exit(3);
    });
    support::onEvent(callback);
    DataCache::init();
    DataCache::getInstance()->start(support::recordEvent);
    DataCache::releaseInstance();
    notify(73, "operator");
    for (;;)
        pause();
}

// Without a fixture: the process that is to end must not have had a thread when it was made.
TEST(LifecycleDeathTest, AnotherExceptionOutOfAPassGivesTheLockBackAndEndsTheProcess) {
    const auto throwing = [](DataCacheEvent &) { throw std::runtime_error("not a text"); };
    EXPECT_EXIT(runUntilTheEnd(throwing), testing::ExitedWithCode(3), "ended, lock free");
}

// ---- death ----------------------------------------------------------------------------------------------

TEST_F(Lifecycle, TheDestructorSaysSoAndFreesWhatIsQueued) {
    connect();
    notify(73, "operator");
    forget();
    delete &cache();
    EXPECT_THAT(log(), ElementsAre("DCACHE: ~DataCache()", "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0"));
    EXPECT_EQ(DataCache::getInstance(), nullptr);
    DataCache::releaseInstance();
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(Lifecycle, NotificationsAfterTheEndAreDropped) {
    connect();
    delete &cache();
    forget();
    theSwitch->set("Oper.Switch.OperState", "Offline");
    EXPECT_TRUE(theSwitch->waitUntilQuiet());
    EXPECT_THAT(log(), IsEmpty());
}

} // namespace
