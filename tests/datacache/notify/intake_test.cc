// What the switch library's thread does with a notification, and what a caller inside the process can queue.
#include <cstdlib>
#include <cstring>
#include <new>
#include <set>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/WakeUps.h"

namespace {

/// This thread's allocations that still succeed; negative: all of them.
thread_local long allocationsLeft = -1;
/// What this thread has allocated, less what it has freed.
thread_local long blocksHeld = 0;
/// The newest block of a notification's size that this thread has allocated.
thread_local const void *newestRecord = nullptr;

[[gnu::noinline]] void *allocate(std::size_t size) {
    if (allocationsLeft == 0)
        throw std::bad_alloc();
    if (allocationsLeft > 0)
        --allocationsLeft;
    void *memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++blocksHeld;
    if (size == sizeof(zov_event_s))
        newestRecord = std::memset(memory, 0x5A, size); // what the library does not fill shows
    return memory;
}

[[gnu::noinline]] void release(void *memory) {
    if (memory != nullptr)
        --blocksHeld;
    std::free(memory);
}

} // namespace

// The library's allocations come here, too.
void *operator new(std::size_t size) {
    return allocate(size);
}
void *operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void *memory) noexcept {
    release(memory);
}
void operator delete[](void *memory) noexcept {
    release(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void *memory, std::size_t) noexcept {
    release(memory);
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kTextBytes = sizeof(zov_event_s::text);

zov_event_s makeEvent(int32_t code, std::array<int32_t, 3> source = {0, 0, 0}, const std::string &text = "") {
    zov_event_s event = {};
    event.code = code;
    std::copy(source.begin(), source.end(), event.source.number);
    text.copy(event.text, kTextBytes);
    return event;
}

void notify(zov_event_s event) {
    DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
    std::memset(static_cast<void *>(&event), 'z', sizeof(event)); // the record is the switch library's own again
}

class Intake : public support::CacheTest {
protected:
    void SetUp() override {
        connect();
        support::takeWakeUps();
    }

    static void kick(int32_t code, zov_eventsource_s *source, const char *text) {
        cache().zovlibEventKick(static_cast<zov_eventcode_e>(code), source, text);
    }

    /// The dequeueing lines of a pass: what was in the queue, in its order.
    std::vector<std::string> drain() {
        pass();
        std::vector<std::string> lines;
        for (const std::string &line : log()) {
            if (line.find("dequeueing") != std::string::npos)
                lines.push_back(line);
        }
        return lines;
    }
};

// ---- the notification callback --------------------------------------------------------------------------

TEST_F(Intake, EveryCodeIsEitherQueuedWithAWakeUpOrLoggedAsUnhandled) {
    const std::set<int> handled = {1,  3,  7,  14, 15, 16, 28, 29, 32, 33, 39, 40, 50, 52,
                                   57, 68, 69, 72, 73, 74, 75, 76, 77, 78, 79, 80, 82};
    std::vector<std::string> lines;
    std::vector<int32_t> codes = {-2147483647 - 1, -257, -1, 257, 328, 65536 + 32, 2147483647};
    for (int32_t code = 0; code <= 256; ++code)
        codes.push_back(code);
    for (const int32_t code : codes) {
        const unsigned long before = cache().getQueuedNotificationCount();
        notify(makeEvent(code, {code, 2, -3}, "text of it"));
        const bool queued = cache().getQueuedNotificationCount() == before + 1;
        EXPECT_EQ(queued, handled.count(code) != 0) << code;
        EXPECT_EQ(support::takeWakeUps(), queued ? 1U : 0U) << code;
        lines.push_back(fmt::format("DCACHE: {} ZOV_EVENT_T[{}:2:-3] ({}){} : text of it",
                                    queued ? "queueing" : "Unhandled event,", code, code,
                                    DataCache::_tagToString(code)));
    }
    EXPECT_EQ(cache().getQueuedNotificationCount(), 27U);
    EXPECT_EQ(log(), lines);
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(Intake, LinesAreWrittenToTheLetter) {
    notify(makeEvent(32, {1, 0, 7}, "now Offline"));
    notify(makeEvent(70, {-1, 2147483647, -2147483647 - 1}, "a line"));
    notify(makeEvent(2, {0, 0, 0}, ""));
    notify(makeEvent(76, {4, 5, 6}, "0;0;0;1"));
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: queueing ZOV_EVENT_T[1:0:7] (32)ZOV_EVENT_SWITCH_STATE_CHANGE : now Offline",
                            "DCACHE: Unhandled event, ZOV_EVENT_T[-1:2147483647:-2147483648] "
                            "(70)ZOV_EVENT_USERLOG_UPDATE : a line",
                            "DCACHE: Unhandled event, ZOV_EVENT_T[0:0:0] (2)ZOV_EVENT_SWITCHTOPO_CHANGE : ",
                            "DCACHE: queueing ZOV_EVENT_T[4:5:6] (76)ZOV_EVENT_OTHER : 0;0;0;1"));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 2U);
}

TEST_F(Intake, TextIsNotAFormat) {
    notify(makeEvent(78, {0, 0, 0}, "100%n %s %d %"));
    kick(78, nullptr, "%s%s%n");
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: queueing ZOV_EVENT_T[0:0:0] (78)ZOV_EVENT_CIM_CFG_CHANGE : 100%n %s %d %",
                            "DCACHE: queueing - kick - ZOV_EVENT_T[0:0:0] (78)ZOV_EVENT_CIM_CFG_CHANGE : %s%s%n"));
}

TEST_F(Intake, ARecordIsCopiedWithItsSourceAndText) {
    notify(makeEvent(16, {11, -12, 13}, "one"));
    notify(makeEvent(68, {21, 22, 23}, std::string(kTextBytes - 1, 't')));
    EXPECT_THAT(drain(),
                ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[11:-12:13] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : one",
                            "DCACHE: dequeueing ZOV_EVENT_T[21:22:23] (68) ZOV_EVENT_IP_ADDRESS_CHANGE : " +
                                std::string(kTextBytes - 1, 't')));
}

TEST_F(Intake, ARecordIsCopiedToItsLastByte) {
    zov_event_s event = makeEvent(16, {-1, 2, -3}, "short");
    std::memcpy(event.text + 100, "behind the end", 14);
    event.rest = 0x01020304;
    const zov_event_s sent = event;
    DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
    ASSERT_EQ(cache().getQueuedNotificationCount(), 1U);
    EXPECT_EQ(std::memcmp(newestRecord, &sent, sizeof(sent)), 0);
    EXPECT_EQ(std::memcmp(&event, &sent, sizeof(sent)), 0) << "the switch library's own is only read";
    EXPECT_NE(newestRecord, &event);
}

TEST_F(Intake, WhatHappensToANotificationIsNoFailure) {
    for (const int32_t code : {16, 70, 78}) {
        notify(makeEvent(code, {0, 0, 0}, "text"));
        kick(code, nullptr, "text");
    }
    EXPECT_EQ(drain().size(), 5U);
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
}

TEST_F(Intake, TextWithoutItsEndIsReadNoFurtherThanItsBytes) {
    const std::string text(kTextBytes, 'u');
    for (const int32_t code : {16, 70}) {
        zov_event_s event = makeEvent(code, {0, 0, 0}, text);
        std::memset(&event.rest, 'R', sizeof(event.rest));
        notify(event);
    }
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: queueing ZOV_EVENT_T[0:0:0] (16)ZOV_EVENT_NETWORK_CFG_CHANGE : " + text,
                            "DCACHE: Unhandled event, ZOV_EVENT_T[0:0:0] (70)ZOV_EVENT_USERLOG_UPDATE : " + text));
    EXPECT_THAT(drain(),
                ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : " + text));
}

TEST_F(Intake, ANullEventIsIgnored) {
    DataCache::zovlibNotificationCB(nullptr, nullptr, nullptr);
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    EXPECT_EQ(support::takeWakeUps(), 0U);
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(Intake, TheSwitchLibraryReachesIt) {
    theSwitch->deliver(32, {1, 2, 3}, "from the switch");
    theSwitch->deliver(70, {4, 5, 6}, "log line");
    ASSERT_TRUE(theSwitch->waitUntilQuiet());
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: queueing ZOV_EVENT_T[1:2:3] (32)ZOV_EVENT_SWITCH_STATE_CHANGE : from the switch",
                            "DCACHE: Unhandled event, ZOV_EVENT_T[4:5:6] (70)ZOV_EVENT_USERLOG_UPDATE : log line"));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);
    EXPECT_EQ(cache().getPassCount(), 0U);
}

TEST(IntakeWithoutACache, ANotificationIsIgnored) {
    notify(makeEvent(32));
    EXPECT_EQ(support::takeWakeUps(), 0U);
    EXPECT_TRUE(support::isLockFree());
}

// ---- the queue ------------------------------------------------------------------------------------------

TEST_F(Intake, WhatIsQueuedByHandDoesNotWake) {
    cache().queueZovlibEvent(new zov_event_s(makeEvent(16, {1, 2, 3}, "by hand")));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);
    EXPECT_EQ(support::takeWakeUps(), 0U);
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(drain(),
                ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[1:2:3] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : by hand"));
}

TEST_F(Intake, TheQueueKeepsTheOrderOfArrivalHoweverItWasFilled) {
    notify(makeEvent(16, {1, 0, 0}, "a"));
    kick(69, nullptr, "b");
    cache().queueZovlibEvent(new zov_event_s(makeEvent(68, {3, 0, 0}, "c")));
    notify(makeEvent(16, {4, 0, 0}, "d"));
    kick(2, nullptr, "e");
    EXPECT_THAT(drain(), ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[1:0:0] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : a",
                                     "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (69) ZOV_EVENT_IPV6_ADDRESS_CHANGE : b",
                                     "DCACHE: dequeueing ZOV_EVENT_T[3:0:0] (68) ZOV_EVENT_IP_ADDRESS_CHANGE : c",
                                     "DCACHE: dequeueing ZOV_EVENT_T[4:0:0] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : d",
                                     "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (2) ZOV_EVENT_SWITCHTOPO_CHANGE : e"));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
}

// ---- made-up notifications ------------------------------------------------------------------------------

TEST_F(Intake, AKickQueuesWithoutWaking) {
    zov_eventsource_s source = {{-7, 8, 2147483647}};
    const unsigned long passes = cache().getPassCount();
    kick(78, &source, "by hand");
    EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);
    EXPECT_EQ(cache().getPassCount(), passes);
    EXPECT_EQ(support::takeWakeUps(), 0U);
    EXPECT_THAT(log(), ElementsAre("DCACHE: queueing - kick - ZOV_EVENT_T[-7:8:2147483647] "
                                   "(78)ZOV_EVENT_CIM_CFG_CHANGE : by hand"));
    EXPECT_TRUE(support::isLockFree());
    EXPECT_THAT(drain(), ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[-7:8:2147483647] (78) "
                                     "ZOV_EVENT_CIM_CFG_CHANGE : by hand"));
}

TEST_F(Intake, AKickWithoutSourceAndTextHasZerosAndNoText) {
    kick(16, nullptr, nullptr);
    EXPECT_THAT(log(), ElementsAre("DCACHE: queueing - kick - ZOV_EVENT_T[0:0:0] (16)ZOV_EVENT_NETWORK_CFG_CHANGE : "));
    EXPECT_THAT(drain(), ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (16) ZOV_EVENT_NETWORK_CFG_CHANGE : "));
}

TEST_F(Intake, AKickedRecordHoldsZerosWhereNothingWasGiven) {
    kick(16, nullptr, nullptr);
    zov_event_s expected = makeEvent(16);
    EXPECT_EQ(std::memcmp(newestRecord, &expected, sizeof(expected)), 0);

    zov_eventsource_s source = {{1, -2, 3}};
    kick(-5, &source, "text");
    expected = makeEvent(-5, {1, -2, 3}, "text");
    EXPECT_EQ(std::memcmp(newestRecord, &expected, sizeof(expected)), 0);
}

TEST_F(Intake, AKickTakesEveryCode) {
    std::vector<std::string> lines;
    for (const int32_t code : {-1, 0, 2, 16, 70, 74, 255, 2147483647}) {
        kick(code, nullptr, "x");
        lines.push_back("DCACHE: queueing - kick - ZOV_EVENT_T[0:0:0] (" + std::to_string(code) + ")" +
                        DataCache::_tagToString(code) + " : x");
    }
    EXPECT_EQ(cache().getQueuedNotificationCount(), 8U);
    EXPECT_EQ(log(), lines);
}

TEST_F(Intake, LongTextOfAKickIsCut) {
    std::vector<std::string> lines;
    for (const std::size_t length : {1394U, 1395U, 1396U, 1397U, 5000U}) {
        std::string text(length, 'k');
        text[std::min<std::size_t>(length, 1395) - 1] = '!';
        kick(16, nullptr, text.c_str());
        lines.push_back("DCACHE: queueing - kick - ZOV_EVENT_T[0:0:0] (16)ZOV_EVENT_NETWORK_CFG_CHANGE : " +
                        text.substr(0, 1395));
    }
    EXPECT_EQ(log(), lines);
}

// ---- without memory -------------------------------------------------------------------------------------

/// Runs `action` with this many allocations; true if it threw std::bad_alloc.
template <class Action> bool runsOutOfMemory(long allocations, Action action) {
    const long before = blocksHeld;
    try {
        allocationsLeft = allocations;
        action();
        allocationsLeft = -1;
    } catch (const std::bad_alloc &) {
        allocationsLeft = -1;
        EXPECT_EQ(blocksHeld, before) << "what was allocated on the way is freed";
        return true;
    }
    return false;
}

TEST_F(Intake, WithoutMemoryForTheRecordTheExceptionPassesWithTheLockGivenBack) {
    zov_event_s event = makeEvent(16);
    EXPECT_TRUE(runsOutOfMemory(0, [&event] { DataCache::zovlibNotificationCB(nullptr, &event, nullptr); }));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    EXPECT_EQ(support::takeWakeUps(), 0U);
    EXPECT_TRUE(support::isLockFree());

    EXPECT_TRUE(runsOutOfMemory(0, [] { kick(16, nullptr, "x"); }));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    EXPECT_TRUE(support::isLockFree());
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Intake, AnUnhandledNotificationNeedsNoMemory) {
    zov_event_s event = makeEvent(70);
    EXPECT_FALSE(runsOutOfMemory(0, [&event] { DataCache::zovlibNotificationCB(nullptr, &event, nullptr); }));
}

TEST_F(Intake, AnEventIsDeliveredWithoutMemory) {
    static int32_t told = 0;
    told = 0;
    cache().startEventMonitor([](DataCacheEvent *event) { told = event->type; });
    zov_event_s event = makeEvent(78);
    EXPECT_FALSE(runsOutOfMemory(0, [&event] {
        DataCache::getInstance()->_zovlibNotificationCB(&event);
        DataCache::releaseInstance();
    })) << "it is a local object";
    EXPECT_EQ(told, 32);
}

TEST_F(Intake, WithoutMemoryForTheQueueNothingIsQueuedAndNothingLost) {
    // The queue grows now and then; each growth fails once.
    zov_event_s event = makeEvent(16);
    int failures = 0;
    for (unsigned long queued = 0; queued < 400; ++queued) {
        if (runsOutOfMemory(1, [&event] { DataCache::zovlibNotificationCB(nullptr, &event, nullptr); })) {
            ++failures;
            EXPECT_EQ(cache().getQueuedNotificationCount(), queued);
            EXPECT_EQ(log().size(), queued + static_cast<unsigned long>(failures)) << "said before it is done";
            EXPECT_EQ(support::takeWakeUps(), 0U);
            EXPECT_TRUE(support::isLockFree());
            notify(event);
        }
        EXPECT_EQ(cache().getQueuedNotificationCount(), queued + 1);
        EXPECT_EQ(support::takeWakeUps(), 1U);
    }
    EXPECT_GE(failures, 2);
}

TEST_F(Intake, WithoutMemoryForTheQueueAKickIsNotQueued) {
    int failures = 0;
    for (unsigned long queued = 0; queued < 400; ++queued) {
        if (runsOutOfMemory(1, [] { kick(16, nullptr, "x"); })) {
            ++failures;
            EXPECT_EQ(cache().getQueuedNotificationCount(), queued);
            EXPECT_EQ(log().size(), queued + static_cast<unsigned long>(failures)) << "said before it is done";
            EXPECT_TRUE(support::isLockFree());
            kick(16, nullptr, "x");
        }
        EXPECT_EQ(cache().getQueuedNotificationCount(), queued + 1);
    }
    EXPECT_GE(failures, 2);
}

} // namespace
