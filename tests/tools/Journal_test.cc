#include "tools/dcache/journal.h"

#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <thread>
#include <unistd.h>

#include "tests/tools/RunDcache.h"

using namespace dcache;
using std::chrono::milliseconds;
using std::chrono::system_clock;

namespace {

// 2026-03-01 09:05:07.004 UTC
const system_clock::time_point kMoment = system_clock::from_time_t(1772355907) + milliseconds(4);

class JournalEntry : public testing::Test {
protected:
    JournalEntry() {
        support::setVariable("TZ", "UTC-2"); // two hours east
        tzset();
    }

    const EventDescription _failure = {21,
                                       "PowerSupplyFail",
                                       "power supply 2 failed, 1 of 2 good",
                                       {{"switchWwn", "10:00:00:C0:DD:00:A1:B2"}, {"number", 2}}};
    const Entry _event = {kMoment, EntryKind::event, _failure};
    const Entry _change = {kMoment, EntryKind::switchChange, {0, "", "fan 1 fails", {}}};
    const Entry _nothing = {kMoment, EntryKind::noEvent, {0, "", "fans raise none", {}}};
    const Entry _plainNothing = {kMoment, EntryKind::noEvent, {0, "", "", {}}};
};

/// A journal writing into a pipe.
class JournalOutput : public testing::Test {
protected:
    JournalOutput() {
        if (pipe(_ends) != 0)
            throw std::runtime_error("no pipe");
    }
    ~JournalOutput() override {
        closeEnd(0);
        closeEnd(1);
    }
    void closeEnd(int end) {
        if (_ends[end] >= 0)
            close(_ends[end]);
        _ends[end] = -1;
    }
    /// What stands in the pipe, without times.
    std::vector<std::string> written() {
        closeEnd(1);
        std::string text;
        char c = 0;
        while (read(_ends[0], &c, 1) == 1)
            text += c;
        return support::lines(support::withoutTimes(text));
    }

    int _ends[2] = {-1, -1};
    std::vector<int> _failures;
    const std::function<void(int)> _noteFailure = [this](int error) { _failures.push_back(error); };
    const EventDescription _someEvent = {32, "CIMChange", "CIM configuration changed", {}};
};

} // namespace

TEST_F(JournalEntry, InATableTheLocalTimeComesFirst) {
    EXPECT_EQ(render(_event, Format::table, false), "11:05:07.004  event   power supply 2 failed, 1 of 2 good\n");
    EXPECT_EQ(render(_change, Format::table, false), "11:05:07.004  switch  fan 1 fails\n");
}

TEST_F(JournalEntry, NoEventStandsBelowWhatHappened) {
    EXPECT_EQ(render(_nothing, Format::table, false), "              (no event: fans raise none)\n");
    EXPECT_EQ(render(_plainNothing, Format::table, false), "              (no event)\n");
}

TEST_F(JournalEntry, JsonIsOneObjectOnOneLine) {
    EXPECT_EQ(render(_event, Format::json, true),
              R"({"time":"2026-03-01T09:05:07.004Z","kind":"event","type":21,"name":"PowerSupplyFail",)"
              R"("text":"power supply 2 failed, 1 of 2 good",)"
              R"("fields":{"switchWwn":"10:00:00:C0:DD:00:A1:B2","number":2}})"
              "\n");
    EXPECT_EQ(render(_change, Format::json, true),
              R"({"time":"2026-03-01T09:05:07.004Z","kind":"switch","text":"fan 1 fails"})"
              "\n");
    EXPECT_EQ(render(_nothing, Format::json, true),
              R"({"time":"2026-03-01T09:05:07.004Z","kind":"no-event","text":"fans raise none"})"
              "\n");
}

TEST_F(JournalEntry, AnEventWithoutFieldsHasAnEmptyObjectInJson) {
    const Entry entry = {kMoment, EntryKind::event, {32, "CIMChange", "CIM configuration changed", {}}};
    EXPECT_THAT(render(entry, Format::json, false), testing::HasSubstr("\"fields\":{}"));
}

TEST_F(JournalEntry, TerseIsSeparatedByTabs) {
    EXPECT_EQ(render(_event, Format::terse, true),
              "2026-03-01T09:05:07.004Z\tevent\tPowerSupplyFail\tswitchWwn=10:00:00:C0:DD:00:A1:B2\tnumber=2\n");
    EXPECT_EQ(render(_change, Format::terse, true), "2026-03-01T09:05:07.004Z\tswitch\tfan 1 fails\n");
    EXPECT_EQ(render(_plainNothing, Format::terse, true), "2026-03-01T09:05:07.004Z\tno-event\t\n");
}

TEST_F(JournalEntry, TimesBeforeTheEpochKeepTheirMilliseconds) {
    const Entry entry = {system_clock::from_time_t(0) - milliseconds(1), EntryKind::switchChange, _change.event};
    EXPECT_THAT(render(entry, Format::terse, false), testing::StartsWith("1969-12-31T23:59:59.999Z\t"));
}

TEST_F(JournalOutput, WritesEachKindOfLineAndCountsTheEvents) {
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    journal.tellSwitchChange("fan 1 fails");
    journal.tellNoEvent("");
    EXPECT_EQ(journal.eventCount(), 0u);
    journal.tellEvent(_someEvent);
    EXPECT_EQ(journal.eventCount(), 1u);
    EXPECT_THAT(written(), testing::ElementsAre("TIME  switch  fan 1 fails", "              (no event)",
                                                "TIME  event   CIM configuration changed"));
    EXPECT_TRUE(_failures.empty());
}

TEST_F(JournalOutput, EventsThatComeDuringAChangeStandBehindIt) {
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    journal.beginSwitchChange();
    journal.tellEvent(_someEvent);
    EXPECT_EQ(journal.eventCount(), 0u);
    journal.tellSwitchChange("fan 1 fails");
    journal.endSwitchChange();
    EXPECT_EQ(journal.eventCount(), 1u);
    journal.tellEvent(_someEvent);
    EXPECT_THAT(written(), testing::ElementsAre("TIME  switch  fan 1 fails", "TIME  event   CIM configuration changed",
                                                "TIME  event   CIM configuration changed"));
}

TEST_F(JournalOutput, AnEventThatTellsOfNoChangeIsWrittenAndNotCounted) {
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    EventDescription event = _someEvent;
    event.tellsChange = false;
    journal.tellEvent(event);
    EXPECT_EQ(journal.eventCount(), 0u);
    EXPECT_THAT(written(), testing::ElementsAre("TIME  event   CIM configuration changed"));
}

TEST_F(JournalOutput, AClosedJournalKeepsSilent) {
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    journal.close();
    journal.tellEvent(_someEvent);
    journal.tellSwitchChange("fan 1 fails");
    EXPECT_EQ(journal.eventCount(), 0u);
    EXPECT_TRUE(written().empty());
}

TEST_F(JournalOutput, AReaderThatWentAwayIsReportedOnceAndClosesTheJournal) {
    signal(SIGPIPE, SIG_IGN);
    closeEnd(0);
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    journal.tellEvent(_someEvent);
    journal.tellEvent(_someEvent);
    EXPECT_THAT(_failures, testing::ElementsAre(EPIPE));
    EXPECT_EQ(journal.eventCount(), 0u);
}

TEST_F(JournalOutput, LinesOfManyThreadsComeOutWhole) {
    Output output(_ends[1]);
    Journal journal(output, Format::table, _noteFailure);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&journal, this] {
            for (int line = 0; line < 50; ++line)
                journal.tellEvent(_someEvent);
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(journal.eventCount(), 200u);
    EXPECT_EQ(written(), std::vector<std::string>(200, "TIME  event   CIM configuration changed"));
}
