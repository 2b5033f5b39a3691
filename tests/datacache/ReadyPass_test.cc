// The pass with every area in the test's hand: what makes the cache ready, and what it does when it is.
#include <array>
#include <set>
#include <stdexcept>

#include <fmt/format.h>

#include "foundation/cim_log.h"
#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/Wait.h"
#include "tests/support/WakeUps.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

/// What the refresh of an area answers: 1, 0, or a text that it throws.
struct Answer {
    bool good = true;
    const char *thrown = nullptr;
};

/// An area, how it is asked for, and the words for it.
struct Row {
    DataCacheArea area;
    const char *name;
    const char *routine;
    void (DataCache::*ask)();
    const char *key; ///< for an area that is read from the switch: a key it cannot do without
    Answer answer;   ///< for the others: what this program makes of their refresh
};

using Rows = std::array<Row, 7>;

Rows &rows() {
    static Rows table{{
        {DataCacheArea::switchInfo, "switch", "_getSwitchInfo", &DataCache::updateSwitch, "Oper.Switch.OperState", {}},
        {DataCacheArea::chassis, "chassis", "_getChassisInfo", &DataCache::updateChassis, "Oper.Chassis.0.Fans", {}},
        {DataCacheArea::blades, "blades", "_getBladeInfo", &DataCache::updateBlades, nullptr, {}},
        {DataCacheArea::ports, "ports", "_getPortInfo", &DataCache::updatePorts, nullptr, {}},
        {DataCacheArea::accounts, "accounts", "_getAcctInfo", &DataCache::updateAccounts, nullptr, {}},
        {DataCacheArea::fabric, "fabric", "_getFabricInfo", &DataCache::updateFabric, nullptr, {}},
        {DataCacheArea::zoning, "zoning", "_getZoningInfo", &DataCache::updateZoning, nullptr, {}},
    }};
    return table;
}

/// Plays the refresh of an area; the line it leaves stands between those of the pass.
bool play(DataCacheArea area) {
    const Row &row = rows().at(static_cast<std::size_t>(area));
    cim_log(CIM_LOG_INFO, "DCACHE: %s()\n", row.routine);
    if (row.answer.thrown != nullptr)
        throw row.answer.thrown;
    return row.answer.good;
}

} // namespace

// The pass of the library finds these before its own.
int DataCache::_getBladeInfo() {
    return play(DataCacheArea::blades) ? 1 : 0;
}
int DataCache::_getPortInfo() {
    return play(DataCacheArea::ports) ? 1 : 0;
}
bool DataCache::_getAcctInfo() {
    return play(DataCacheArea::accounts);
}
bool DataCache::_getFabricInfo() {
    return play(DataCacheArea::fabric);
}
bool DataCache::_getZoningInfo() {
    return play(DataCacheArea::zoning);
}

namespace {

constexpr const char *kComplete = "33: DataCacheUpdateComplete";
constexpr std::size_t kNone = 7;

class ReadyPass : public support::CacheTest {
protected:
    /// All areas are good, and another refresh would find nothing new.
    void beReady() {
        load();
        cache().updateSwitch();
        ASSERT_TRUE(pass());
        ASSERT_FALSE(cache().workToDo());
        forget();
    }

    /// The next refresh of this area fails, once.
    void fail(std::size_t index) {
        Row &row = rows().at(index);
        row.answer.good = false;
        if (row.key == nullptr)
            return;
        sim::Fault fault;
        fault.key = row.key;
        fault.status = 5;
        theSwitch->addFault(fault);
    }

    static void recover() {
        for (Row &row : rows())
            row.answer = {};
    }

    /// The lines of the pass about areas: each refresh that was begun and each routine that ran, in order.
    Lines refreshLines() const {
        Lines lines;
        for (const std::string &line : log()) {
            if (line.rfind("DCACHE: Updating ", 0) == 0 || line.rfind("DCACHE: _get", 0) == 0)
                lines.push_back(line);
        }
        return lines;
    }

    /// What these areas' refreshes leave when they are run to their end.
    static Lines linesOf(const std::set<std::size_t> &areas) {
        Lines lines;
        for (const std::size_t index : areas) {
            lines.push_back(fmt::format("DCACHE: Updating {} cache", rows().at(index).name));
            lines.push_back(fmt::format("DCACHE: {}()", rows().at(index).routine));
            if (rows().at(index).area == DataCacheArea::zoning)
                lines.emplace_back("DCACHE: Updating zoning cache (Done)");
        }
        return lines;
    }

    /// The areas of which the last pass said that they are not good, in its order.
    Lines notGood() const {
        Lines names;
        for (const std::string &line : log()) {
            if (line.size() > 18 && line.rfind("DCACHE: _", 0) == 0 && line.rfind("OK = false") == line.size() - 10)
                names.push_back(line.substr(9, line.size() - 19));
        }
        return names;
    }

    static void expectGoodBut(const std::set<std::size_t> &failed) {
        for (std::size_t i = 0; i < rows().size(); ++i)
            EXPECT_EQ(cache().isAreaGood(rows().at(i).area), failed.count(i) == 0) << rows().at(i).name;
    }

    /// A pass over all areas, of which these fail, and the next one, in which they do not.
    void expectRecovery(const std::set<std::size_t> &failed) {
        cache().updateAll();
        Lines names;
        for (const std::size_t index : failed) {
            fail(index);
            names.emplace_back(rows().at(index).name);
        }
        EXPECT_FALSE(pass());
        EXPECT_THAT(notGood(), ElementsAreArray(names));
        EXPECT_FALSE(cache().isCacheReady());
        EXPECT_TRUE(cache().workToDo());
        EXPECT_THAT(events(), IsEmpty());
        expectGoodBut(failed);

        recover();
        theSwitch->clearFaults();
        EXPECT_TRUE(pass());
        EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf(failed))) << "only what had failed is asked for still";
        EXPECT_THAT(notGood(), IsEmpty());
        EXPECT_EQ(support::readFile(support::kCriticalLog), "");
        EXPECT_TRUE(cache().isCacheReady());
        EXPECT_FALSE(cache().workToDo());
        EXPECT_THAT(events(), ElementsAre(kComplete));
        expectGoodBut({});
    }

    static void queue(int32_t code, const std::string &text = "") {
        auto *record = new zov_event_s{};
        record->code = code;
        text.copy(record->text, sizeof(record->text) - 1);
        cache().queueZovlibEvent(record);
    }

    static std::string loginFailure(const std::string &user) {
        return fmt::format("30: UserLoginFailure switch={} user={}", support::kSwitchWwn, user);
    }
};

// ---- ready ----------------------------------------------------------------------------------------------

TEST_F(ReadyPass, TheFirstPassWithAllAreasGoodMakesTheCacheReady) {
    connect();
    EXPECT_FALSE(cache().isCacheReady());
    EXPECT_EQ(cache().getSecondsSinceReadyPass(), -1);
    EXPECT_TRUE(pass());
    EXPECT_GE(cache().getSecondsSinceReadyPass(), 0);
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_FALSE(cache().workToDo());
    EXPECT_THAT(events(), ElementsAre(kComplete));
    expectGoodBut({});
    Lines expected = linesOf({0, 1, 2, 3, 4, 5, 6});
    expected.insert(expected.begin(), "DCACHE: evaluateCaches");
    EXPECT_THAT(log(), ElementsAreArray(expected));
}

TEST_F(ReadyPass, TheCompletionIsTheLastEventOfItsPass) {
    beReady();
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    queue(32);
    queue(73, "operator");
    EXPECT_TRUE(pass());
    EXPECT_THAT(events(), ElementsAre(loginFailure("operator"),
                                      "6: SwitchStatusChange switch=100000C0DD00A1B2 principal=100000C0DD00A1B2 "
                                      "[2, 0, 0]->[10, 0, 0]",
                                      kComplete));
}

TEST_F(ReadyPass, APassWithNothingToDoCompletesAgain) {
    beReady();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(pass());
        EXPECT_THAT(log(), ElementsAre("DCACHE: evaluateCaches"));
        EXPECT_THAT(traffic(), IsEmpty());
        EXPECT_THAT(events(), ElementsAre(kComplete));
    }
}

TEST_F(ReadyPass, WithoutACallbackTheCacheIsReadyAllTheSame) {
    beReady();
    cache().startEventMonitor(nullptr);
    EXPECT_TRUE(pass());
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_THAT(events(), IsEmpty());
}

// ---- not ready ------------------------------------------------------------------------------------------

TEST_F(ReadyPass, EachAreaAloneKeepsTheCacheFromBeingReadyUntilItRecovers) {
    beReady();
    for (std::size_t i = 0; i < rows().size(); ++i) {
        SCOPED_TRACE(rows().at(i).name);
        expectRecovery({i});
    }
}

TEST_F(ReadyPass, AnyTwoAreasKeepTheCacheFromBeingReadyUntilTheyRecover) {
    beReady();
    for (std::size_t first = 0; first < rows().size(); ++first) {
        for (std::size_t second = first + 1; second < rows().size(); ++second) {
            SCOPED_TRACE(fmt::format("{} and {}", rows().at(first).name, rows().at(second).name));
            expectRecovery({first, second});
        }
    }
}

TEST_F(ReadyPass, AllAreasFailAndRecoverTogether) {
    beReady();
    expectRecovery({0, 1, 2, 3, 4, 5, 6});
}

TEST_F(ReadyPass, AnAreaThatStaysBadIsTriedInEveryPass) {
    beReady();
    rows().at(5).answer.good = false;
    cache().updateFabric();
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(pass());
        EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf({5})));
        EXPECT_THAT(notGood(), ElementsAre("fabric"));
        EXPECT_FALSE(cache().isCacheReady());
    }
}

// ---- a refresh that throws ------------------------------------------------------------------------------

/// A refresh that this program plays, so that it can throw.
class ThrowingRefresh : public ReadyPass, public testing::WithParamInterface<std::size_t> {
protected:
    static std::set<std::size_t> areas(std::size_t first, std::size_t end) {
        std::set<std::size_t> result;
        for (std::size_t i = first; i < end; ++i)
            result.insert(i);
        return result;
    }

    /// What a pass over all areas leaves when this one throws.
    static Lines linesUntilThrown() {
        Lines lines = linesOf(areas(0, GetParam()));
        lines.push_back(fmt::format("DCACHE: Updating {} cache", rows().at(GetParam()).name));
        lines.push_back(fmt::format("DCACHE: {}()", rows().at(GetParam()).routine));
        return lines;
    }
};

TEST_P(ThrowingRefresh, KeepsItsRequestAndAllLaterOnesAndTheCacheReady) {
    beReady();
    rows().at(GetParam()).answer.thrown = "no answer";
    cache().updateAll();
    EXPECT_TRUE(pass()) << "all areas are as good as they were";
    Lines expected = linesUntilThrown();
    expected.insert(expected.begin(), "DCACHE: evaluateCaches");
    expected.emplace_back("DCACHE: Exception: no answer");
    EXPECT_THAT(log(), ElementsAreArray(expected));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog), Lines{"DCACHE: Exception: no answer"});
    EXPECT_THAT(events(), ElementsAre(kComplete));
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_TRUE(cache().workToDo());
    EXPECT_TRUE(support::isLockFree());
    expectGoodBut({});

    recover();
    EXPECT_TRUE(pass());
    EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf(areas(GetParam(), kNone))));
    EXPECT_FALSE(cache().workToDo());
}

TEST_P(ThrowingRefresh, LeavesBadAreasBad) {
    beReady();
    fail(GetParam());
    fail(6);
    cache().updateAll();
    EXPECT_FALSE(pass());
    recover();
    rows().at(GetParam()).answer.thrown = "no answer";
    EXPECT_FALSE(pass());
    expectGoodBut({GetParam(), 6});
    EXPECT_FALSE(cache().isCacheReady());
    EXPECT_THAT(events(), IsEmpty());

    recover();
    EXPECT_TRUE(pass());
    EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf({GetParam(), 6})));
}

TEST_P(ThrowingRefresh, IsNoSuccessBeforeTheFirst) {
    connect();
    rows().at(GetParam()).answer.thrown = "no answer";
    EXPECT_FALSE(pass());
    EXPECT_THAT(refreshLines(), ElementsAreArray(linesUntilThrown()));
    expectGoodBut(areas(GetParam(), kNone));
    EXPECT_THAT(events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachArea, ThrowingRefresh, testing::Range<std::size_t>(2, 7),
                         [](const auto &row) { return std::string(rows().at(row.param).name); });

// ---- clients that throw or call back --------------------------------------------------------------------

TEST_F(ReadyPass, WhatACompletionCallbackThrowsPassesOutAndTheNextPassIsWhole) {
    beReady();
    const unsigned long passes = cache().getPassCount();
    support::onEvent([](DataCacheEvent &) { throw "a text"; });
    EXPECT_THROW(pass(), const char *);
    EXPECT_TRUE(support::isLockFree());
    support::onEvent([](DataCacheEvent &) { throw std::runtime_error("another"); });
    EXPECT_THROW(pass(), std::runtime_error);
    EXPECT_TRUE(support::isLockFree());
    EXPECT_EQ(cache().getPassCount(), passes + 2);
    EXPECT_EQ(support::messagesIn(support::kCriticalLog), Lines{}) << "the pass has nothing to say about it";

    support::onEvent(nullptr);
    EXPECT_TRUE(pass());
    EXPECT_THAT(log(), ElementsAre("DCACHE: evaluateCaches")) << "no pass was running any more";
    EXPECT_THAT(events(), ElementsAre(kComplete));
}

TEST_F(ReadyPass, APassInsideACallbackAnswersThatTheCacheIsReadyAndDoesNothing) {
    beReady();
    std::vector<bool> answers;
    support::onEvent([&answers](DataCacheEvent &) { answers.push_back(cache().evaluateCaches()); });
    queue(73, "operator");
    const unsigned long passes = cache().getPassCount();
    EXPECT_TRUE(pass());
    EXPECT_THAT(answers, ElementsAre(true, true)) << "inside the login failure, and inside the completion";
    EXPECT_EQ(cache().getPassCount(), passes + 1);
    EXPECT_THAT(events(), ElementsAre(loginFailure("operator"), kComplete));
}

TEST_F(ReadyPass, InsideItsCallbackTheFirstCompletionFindsTheCacheReady) {
    connect();
    std::vector<bool> answers;
    support::onEvent([&answers](DataCacheEvent &) {
        answers.push_back(cache().isCacheReady());
        answers.push_back(cache().evaluateCaches());
    });
    EXPECT_TRUE(pass());
    EXPECT_THAT(answers, ElementsAre(true, true));
}

TEST_F(ReadyPass, ARequestFromTheCompletionCallbackWaitsForTheNextPass) {
    beReady();
    support::onEvent([](DataCacheEvent &) { cache().updatePorts(); });
    EXPECT_TRUE(pass());
    EXPECT_THAT(refreshLines(), IsEmpty());
    EXPECT_TRUE(cache().workToDo());
    support::onEvent(nullptr);
    EXPECT_TRUE(pass());
    EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf({3})));
}

// ---- requests -------------------------------------------------------------------------------------------

TEST_F(ReadyPass, EachRequestAsksForExactlyItsArea) {
    beReady();
    for (std::size_t i = 0; i < rows().size(); ++i) {
        EXPECT_FALSE(cache().workToDo());
        (cache().*rows().at(i).ask)();
        EXPECT_TRUE(cache().workToDo()) << rows().at(i).name;
        EXPECT_TRUE(pass());
        EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf({i})));
    }
    EXPECT_FALSE(cache().workToDo());
}

TEST_F(ReadyPass, ARequestForAllIsServedInTheOrderOfTheAreas) {
    beReady();
    cache().updateAll();
    EXPECT_TRUE(cache().workToDo());
    EXPECT_TRUE(pass());
    EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf({0, 1, 2, 3, 4, 5, 6})));
    EXPECT_FALSE(cache().workToDo());
}

TEST_F(ReadyPass, NamingPortsAsksForNoRefresh) {
    beReady();
    cache().localPortRefreshSet();
    cache().localPortRefreshSet(7);
    EXPECT_FALSE(cache().workToDo());
}

// ---- notifications --------------------------------------------------------------------------------------

/// Dispatches this code in a pass of its own.
struct DispatchRow {
    int32_t code;
    std::set<std::size_t> areas;
};

TEST_F(ReadyPass, NotificationsAskForTheirAreasAndThenForOneFurtherPass) {
    beReady();
    const std::vector<DispatchRow> table = {
        {32, {0}}, {33, {1}}, {52, {0, 1, 3}}, {57, {0, 1, 3}}, {82, {0, 2}},
        {16, {}},  {72, {}},  {73, {}},        {78, {}},        {1000, {}},
    };
    for (const DispatchRow &row : table) {
        SCOPED_TRACE(row.code);
        queue(row.code);
        support::takeWakeUps();
        EXPECT_TRUE(pass());
        EXPECT_THAT(refreshLines(), ElementsAreArray(linesOf(row.areas)));
        EXPECT_EQ(support::takeWakeUps(), row.areas.empty() ? 0U : 1U);
    }
}

TEST_F(ReadyPass, ANotificationThatAsksForNothingStartsAFurtherPassWhileWorkIsLeft) {
    beReady();
    cache().updateZoning();
    queue(73);
    queue(16);
    support::takeWakeUps();
    EXPECT_TRUE(pass());
    EXPECT_EQ(support::takeWakeUps(), 2U);
}

// ---- with the EVAL thread -------------------------------------------------------------------------------

TEST_F(ReadyPass, TheEvalThreadCompletesOncePerPass) {
    const auto waitForPasses = [](unsigned long count) {
        EXPECT_TRUE(support::waitUntil([count] { return cache().getPassCount() >= count; }));
        EXPECT_EQ(cache().getPassCount(), count);
    };
    DataCache::init();
    cache().start(support::recordEvent);
    waitForPasses(1);
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_THAT(events(), ElementsAre(kComplete));

    theSwitch->deliver(73, {0, 0, 0}, "operator");
    waitForPasses(2);
    EXPECT_THAT(events(), ElementsAre(loginFailure("operator"), kComplete));

    theSwitch->deliver(33, {0, 0, 0}, "");
    waitForPasses(4); // the one that serves it, and the further one it asks for
    EXPECT_THAT(events(), ElementsAre(kComplete, kComplete));

    theSwitch->deliver(73, {0, 0, 0}, "operator");
    waitForPasses(5);
    EXPECT_THAT(events(), ElementsAre(loginFailure("operator"), kComplete));
    for (const std::string &line : support::messagesIn(support::kMainLog))
        EXPECT_NE(line, "DCACHE: (EVAL) Cache update failed or incomplete");
}

} // namespace
