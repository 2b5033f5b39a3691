// What each notification leads to: refreshes in the pass that dispatches it, and events.
#include <algorithm>
#include <cstring>
#include <set>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/WakeUps.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr std::size_t kTextBytes = sizeof(zov_event_s::text);

// What stands right behind a text, in its four bytes: no part of the text, whether or not the text has an end.
constexpr int32_t kLetters = 0x52525252;
constexpr int32_t kBlanks = 0x20202020;

struct AreaName {
    DataCacheArea area;
    const char *name;
};

constexpr AreaName kAreas[] = {
    {DataCacheArea::switchInfo, "switch"}, {DataCacheArea::chassis, "chassis"},   {DataCacheArea::blades, "blades"},
    {DataCacheArea::ports, "ports"},       {DataCacheArea::accounts, "accounts"}, {DataCacheArea::fabric, "fabric"},
    {DataCacheArea::zoning, "zoning"},
};

class Dispatch : public support::CacheTest {
protected:
    /// Everything is read and quiet: the switch knows the faults of its chassis.
    void SetUp() override {
        load();
        cache().updateSwitch();
        pass();
        forget();
        support::takeWakeUps();
    }

    /// Queues a notification without the switch library, and without a wake-up.
    static void queue(int32_t code, const std::string &text = "", std::array<int32_t, 3> source = {0, 0, 0},
                      int32_t rest = kLetters) {
        auto *record = new zov_event_s{};
        record->code = code;
        record->rest = rest;
        std::copy(source.begin(), source.end(), record->source.number);
        text.copy(record->text, kTextBytes);
        cache().queueZovlibEvent(record);
    }

    /// The areas that a pass refreshes only when it is asked to.
    static std::set<std::string> quietAreas() {
        std::set<std::string> names;
        for (const AreaName &row : kAreas) {
            if (cache().isAreaGood(row.area))
                names.insert(row.name);
        }
        return names;
    }

    std::set<std::string> refreshed() const {
        std::set<std::string> names;
        for (const std::string &line : log()) {
            for (const AreaName &row : kAreas) {
                if (line == std::string("DCACHE: Updating ") + row.name + " cache")
                    names.insert(row.name);
            }
        }
        return names;
    }

    /// Sends a notification through the switch library; the pass that follows must refresh exactly these of the
    /// areas that are good, and of the others these at least.
    void expectRefreshes(int32_t code, const std::set<std::string> &areas) {
        const std::set<std::string> quiet = quietAreas();
        ASSERT_THAT(quiet, IsSupersetOf({"switch", "chassis"}));
        theSwitch->deliver(code, {0, 0, 0}, "");
        passAfterNotifications();
        const std::set<std::string> done = refreshed();
        EXPECT_THAT(done, IsSupersetOf(areas)) << code;
        for (const std::string &name : done)
            EXPECT_TRUE(quiet.count(name) == 0 || areas.count(name) != 0) << code << " refreshed " << name;
        EXPECT_THAT(told(), IsEmpty()) << code;
    }

    /// The events of the last pass, but for the one that ends a good pass.
    static std::vector<std::string> told() {
        std::vector<std::string> lines = events();
        lines.erase(std::remove(lines.begin(), lines.end(), "33: DataCacheUpdateComplete"), lines.end());
        return lines;
    }

    static std::string wentOffline() {
        return fmt::format("6: SwitchStatusChange switch={0} principal={0} [2, 0, 0]->[10, 0, 0]", support::kSwitchWwn);
    }

    static std::string alarm(const std::string &words, const std::string &detail) {
        return fmt::format("31: EnvEvent switch={} {} detail={}", support::kSwitchWwn, words, detail);
    }

    /// Dispatches one text after the other and looks at the details of the alarms.
    void expectDetails(int32_t code, const std::string &words,
                       const std::vector<std::pair<std::string, std::string>> &rows) {
        std::vector<std::string> expected;
        for (const auto &[text, detail] : rows) {
            queue(code, text);
            expected.push_back(alarm(words, detail));
        }
        pass();
        const std::vector<std::string> lines = told();
        ASSERT_EQ(lines.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(lines[i], expected[i]) << rows[i].first;
    }
};

constexpr const char *kOvertemp = "category=temperature kind=overtemp";
constexpr const char *kHigh = "category=power supply kind=voltage high";
constexpr const char *kLow = "category=power supply kind=voltage low";

// ---- refreshes ------------------------------------------------------------------------------------------

TEST_F(Dispatch, AStateChangeRefreshesTheSwitch) {
    expectRefreshes(32, {"switch"});
}

TEST_F(Dispatch, AChassisChangeRefreshesTheChassis) {
    expectRefreshes(33, {"chassis"});
}

TEST_F(Dispatch, AFeatureRefreshesSwitchChassisAndPorts) {
    expectRefreshes(52, {"switch", "chassis", "ports"});
}

TEST_F(Dispatch, AServiceRefreshesSwitchChassisAndPorts) {
    expectRefreshes(57, {"switch", "chassis", "ports"});
}

TEST_F(Dispatch, AFaultRefreshesSwitchAndBlades) {
    expectRefreshes(82, {"switch", "blades"});
}

TEST_F(Dispatch, ARefreshReadsTheSwitchInTheSamePass) {
    theSwitch->set("Oper.Switch.OperState", "Offline");
    passAfterNotifications();
    const std::vector<std::string> calls = traffic();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front().rfind("get Oper.Switch.WhoIsPrincipal ", 0), 0U) << calls.front();
    EXPECT_THAT(told(), ElementsAre(wentOffline()));
}

TEST_F(Dispatch, AChassisChangeOfTheSwitchIsToldInTheSamePass) {
    theSwitch->set("Oper.Chassis.0.PowerSupply.1", "Bad");
    passAfterNotifications();
    EXPECT_THAT(told(),
                ElementsAre(fmt::format("21: PowerSupplyFail switch={} number=2 count=1", support::kSwitchWwn)));
}

TEST_F(Dispatch, EventsOfNotificationsComeBeforeThoseOfRefreshes) {
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    queue(32);
    queue(73, "operator");
    queue(78);
    pass();
    EXPECT_THAT(told(), ElementsAre(fmt::format("30: UserLoginFailure switch={} user=operator", support::kSwitchWwn),
                                    "32: CIMChange", wentOffline()));
}

// ---- users and configuration ----------------------------------------------------------------------------

TEST_F(Dispatch, UserEventsNameTheUserByTheWholeText) {
    const std::string longest(kTextBytes, 'u'); // without its end
    for (const std::string &user :
         {std::string("operator"), std::string(), std::string(" two words; and, more "), longest}) {
        queue(72, user);
        queue(73, user);
        pass();
        EXPECT_THAT(told(),
                    ElementsAre(fmt::format("29: UserPasswdChg switch={} user={}", support::kSwitchWwn, user),
                                fmt::format("30: UserLoginFailure switch={} user={}", support::kSwitchWwn, user)));
        EXPECT_EQ(log().at(2), "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (73) ZOV_EVENT_USER_LOGIN_FAILURE : " + user);
    }
}

TEST_F(Dispatch, ACimConfigurationChangeIsToldAsSuch) {
    queue(78, "any text");
    pass();
    EXPECT_THAT(told(), ElementsAre("32: CIMChange"));
}

TEST_F(Dispatch, EventsNeedNoRefresh) {
    const std::set<std::string> quiet = quietAreas();
    for (const int32_t code : {40, 72, 73, 74, 75, 78})
        queue(code, "text");
    pass();
    EXPECT_EQ(told().size(), 6U);
    for (const std::string &name : refreshed())
        EXPECT_EQ(quiet.count(name), 0U) << name;
}

// ---- alarms ---------------------------------------------------------------------------------------------

TEST_F(Dispatch, AnOverheatTextNamesTheSensorUpToTheNextBlank) {
    expectDetails(40, kOvertemp,
                  {
                      {"Temp overheat, Board1 85C", "Board1 sensor"},
                      {"slot 3: Temp overheat, CPU is at 85C", "CPU sensor"},
                      {"Temp overheat, CPU,0; 85C", "CPU,0; sensor"},
                      {"Temp overheat, one Temp overheat, two 85C", "one sensor"},
                      {"Temp overheat,  85C", " sensor"},
                      {"Temp overheat, Board1", "unknown"},
                      {"Temp overheat, ", "unknown"},
                      {"Temp overheat,Board1 85C", "unknown"},
                      {"temp overheat, Board1 85C", "unknown"},
                      {"Temp overheat Board1 85C", "unknown"},
                      {"", "unknown"},
                      {"too hot", "unknown"},
                  });
}

// Around the name of a sensor out of range stand a ")" with five characters on one side, six characters on the other.
TEST_F(Dispatch, AnOutOfRangeTemperatureNamesTheSensorBetweenBracketAndPhrase) {
    const std::string phrase = " temp sensor reading is out of range, it is too high";
    expectDetails(40, kOvertemp,
                  {
                      {"(1)12345Inlet123456" + phrase, "Inlet sensor"},
                      {"(1)12345Inlet123456" + phrase + " by 5C", "Inlet sensor"},
                      {"a) b) c)12345left inlet123456" + phrase, "left inlet sensor"},
                      {")12345I123456" + phrase, "I sensor"},
                      {")12345123456" + phrase, " sensor"},
                      {")1234512345" + phrase, "unknown"},
                      {")" + phrase, "unknown"},
                      {"(1)12345Inlet123456" + phrase + ")", "unknown"},
                      {"Inlet123456" + phrase, "unknown"},
                      {phrase, "unknown"},
                      {phrase + ")", "unknown"},
                      {"12)" + phrase, "unknown"},
                      {")12345One123456" + phrase + "," + phrase, "One sensor"},
                      {"(1)12345Inlet123456 Temp sensor reading is out of range, it is too high", "unknown"},
                      {"(1)12345Inlet123456 temp sensor reading is out of range, it is too low", "unknown"},
                      {"(1)12345Inlet123456 temp sensor reading is out of range", "unknown"},
                  });
}

TEST_F(Dispatch, TheOverheatPhraseDecidesBeforeTheOutOfRangePhrase) {
    const std::string outOfRange = "(1)12345Inlet123456 temp sensor reading is out of range, it is too high";
    expectDetails(40, kOvertemp,
                  {
                      {outOfRange + " Temp overheat, Board1 85C", "Board1 sensor"},
                      {"Temp overheat, Board1 85C " + outOfRange, "Board1 sensor"},
                      {outOfRange + " Temp overheat, Board1", "unknown"},
                  });
}

struct VoltageRow {
    const char *name;
    int32_t code;
    const char *words;
    const char *phrase;
    const char *otherPhrase;
};

constexpr const char *kTooHigh = " voltage supply is out of range, it is too high";
constexpr const char *kTooLow = " voltage supply is out of range, it is too low";

void PrintTo(const VoltageRow &row, std::ostream *out) {
    *out << row.name;
}

class VoltageDispatch : public Dispatch, public testing::WithParamInterface<VoltageRow> {
protected:
    void expectSensors(const std::vector<std::pair<std::string, std::string>> &rows) {
        expectDetails(GetParam().code, GetParam().words, rows);
    }
};

TEST_P(VoltageDispatch, AReadingNamesTheSensorBetweenBracketAndPhrase) {
    const std::string shows = " voltage sensor shows ";
    expectSensors({
        {"PSU 1 [3.3V" + shows + "3.9V", "3.3V sensor"},
        {"[a][b] [12 V" + shows, "12 V sensor"},
        {"[" + shows, " sensor"},
        {"[3.3V" + shows + "3.9V," + shows, "3.3V sensor"},
        {"3.3V" + shows + "3.9V", "unknown"},
        {"3.3V" + shows + "3.9V [", "unknown"},
        {"[3.3V" + shows + "[3.9V]", "unknown"},
        {"[3.3V voltage sensor shows", "unknown"},
        {"[3.3V Voltage sensor shows 3.9V", "unknown"},
        {"[3.3V voltage sensor reads 3.9V", "unknown"},
        {"", "unknown"},
        {"[", "unknown"},
    });
}

TEST_P(VoltageDispatch, AnOutOfRangeVoltageNamesTheSupplyBetweenBracketAndPhrase) {
    const std::string phrase = GetParam().phrase;
    const std::string other = GetParam().otherPhrase;
    expectSensors({
        {"(1)12345Main123456" + phrase, "Main sensor"},
        {"(1)12345Main123456" + phrase + " by 1V", "Main sensor"},
        {"a) b)12345Main 2123456" + phrase, "Main 2 sensor"},
        {")12345123456" + phrase, " sensor"},
        {")1234512345" + phrase, "unknown"},
        {")" + phrase, "unknown"},
        {phrase, "unknown"},
        {phrase + ")", "unknown"},
        {"Main123456" + phrase, "unknown"},
        {"(1)12345Main123456" + phrase + ")", "unknown"},
        {"(1)12345Main123456" + other, "unknown"},
        {"(1)12345Main123456" + phrase.substr(1), "unknown"},
    });
}

TEST_P(VoltageDispatch, AReadingWithABracketDecidesBeforeTheOutOfRangePhrase) {
    const std::string phrase = GetParam().phrase;
    expectSensors({
        {"[3.3V voltage sensor shows 4V (1)12345Main123456" + phrase, "3.3V sensor"},
        {"(1)12345Main123456" + phrase + " [3.3V voltage sensor shows 4V", "3.3V sensor"},
        {"3.3V voltage sensor shows 4V (1)12345Main123456" + phrase, "Main sensor"},
        {"3.3V voltage sensor shows [4V] (1)12345Main123456" + phrase, "unknown"},
    });
}

INSTANTIATE_TEST_SUITE_P(HighAndLow, VoltageDispatch,
                         testing::Values(VoltageRow{"High", 74, kHigh, kTooHigh, kTooLow},
                                         VoltageRow{"Low", 75, kLow, kTooLow, kTooHigh}),
                         [](const auto &row) { return row.param.name; });

TEST_F(Dispatch, AnAlarmTextWithoutItsEndIsReadNoFurtherThanItsBytes) {
    const auto fill = [](const std::string &start, const std::string &end) {
        return start + std::string(kTextBytes - start.size() - end.size(), 'b') + end;
    };
    // The blank that ends a name or a phrase would be the first byte behind the text.
    queue(40, fill("Temp overheat, ", ""), {0, 0, 0}, kBlanks);
    for (const int32_t code : {74, 75})
        queue(code, fill("[", " voltage sensor shows"), {0, 0, 0}, kBlanks);
    pass();
    EXPECT_THAT(told(), ElementsAre(alarm(kOvertemp, "unknown"), alarm(kHigh, "unknown"), alarm(kLow, "unknown")));
}

TEST_F(Dispatch, AnAlarmTextWithoutItsEndIsReadToItsLastByte) {
    const std::string shows = " voltage sensor shows ";
    const std::string sensor(kTextBytes - 1 - shows.size(), 'b');
    for (const int32_t code : {74, 75})
        queue(code, "[" + sensor + shows);
    pass();
    EXPECT_THAT(told(), ElementsAre(alarm(kHigh, sensor + " sensor"), alarm(kLow, sensor + " sensor")));
}

// ---- the switch's name ----------------------------------------------------------------------------------

class EarlyDispatch : public Dispatch {
protected:
    void SetUp() override { connect(); }
};

TEST_F(EarlyDispatch, EventsBeforeTheFirstRefreshHaveTheZeroName) {
    queue(72, "a");
    queue(73, "b");
    queue(40, "c");
    pass();
    EXPECT_THAT(told(), ElementsAre("29: UserPasswdChg switch=0000000000000000 user=a",
                                    "30: UserLoginFailure switch=0000000000000000 user=b",
                                    "31: EnvEvent switch=0000000000000000 category=temperature kind=overtemp "
                                    "detail=unknown",
                                    "27: ActiveZonesetChange switch=100000C0DD00A1B2 ->",
                                    "28: ZoningDBChange switch=100000C0DD00A1B2"));
}

TEST_F(Dispatch, WithoutACallbackNotificationsStillRefresh) {
    cache().startEventMonitor(nullptr);
    theSwitch->set("Oper.Switch.OperState", "Offline", sim::Notify::no);
    for (const int32_t code : {32, 40, 72, 73, 74, 75, 78})
        queue(code, "text");
    pass();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
    EXPECT_EQ(cache().getRootSwitchStatus(), (StatusList{10, 0, 0}));
}

// ---- every code -----------------------------------------------------------------------------------------

TEST_F(Dispatch, EachNotificationHasItsLineWithABlankBeforeTheName) {
    queue(32, "now Offline", {1, -2, 3});
    queue(74, "high", {0, 0, 2147483647});
    queue(1000, "made up", {-2147483647 - 1, 0, 0});
    pass();
    std::vector<std::string> lines;
    for (const std::string &line : log()) {
        if (line.find("dequeueing") != std::string::npos)
            lines.push_back(line);
    }
    EXPECT_THAT(lines,
                ElementsAre("DCACHE: dequeueing ZOV_EVENT_T[1:-2:3] (32) ZOV_EVENT_SWITCH_STATE_CHANGE : now Offline",
                            "DCACHE: dequeueing ZOV_EVENT_T[0:0:2147483647] (74) ZOV_EVENT_OTHER : high",
                            "DCACHE: dequeueing ZOV_EVENT_T[-2147483648:0:0] (1000) ZOV_EVENT_OTHER : made up"));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
}

TEST_F(Dispatch, ACodeWithoutAnActionHasItsLineAndNothingElse) {
    std::vector<int32_t> codes = {-2147483647 - 1,
                                  -40,
                                  -1,
                                  0,
                                  2,
                                  4,
                                  5,
                                  6,
                                  8,
                                  13,
                                  16,
                                  17,
                                  18,
                                  27,
                                  30,
                                  31,
                                  34,
                                  38,
                                  41,
                                  49,
                                  51,
                                  53,
                                  56,
                                  58,
                                  68,
                                  69,
                                  70,
                                  71,
                                  81,
                                  83,
                                  84,
                                  253,
                                  254,
                                  255,
                                  256,
                                  256 + 32,
                                  65536 + 73,
                                  2147483647};
    const std::set<std::string> quiet = quietAreas();
    for (const int32_t code : codes)
        queue(code, "Temp overheat, Board1 85C");
    pass();
    EXPECT_THAT(told(), IsEmpty());
    for (const std::string &name : refreshed())
        EXPECT_EQ(quiet.count(name), 0U) << name;
    const std::vector<std::string> lines = log();
    ASSERT_GT(lines.size(), codes.size());
    for (std::size_t i = 0; i < codes.size(); ++i)
        EXPECT_EQ(lines[i + 1], "DCACHE: dequeueing ZOV_EVENT_T[0:0:0] (" + std::to_string(codes[i]) + ") " +
                                    DataCache::_tagToString(codes[i]) + " : Temp overheat, Board1 85C");
}

// ---- the further pass -----------------------------------------------------------------------------------

TEST_F(Dispatch, ARequestStartsAFurtherPass) {
    for (const int32_t code : {32, 33, 52, 57, 82}) {
        support::takeWakeUps();
        queue(code);
        pass();
        EXPECT_EQ(support::takeWakeUps(), 1U) << code;
    }
}

TEST_F(Dispatch, ANotificationWithoutARequestStartsAFurtherPassOnlyWhileWorkIsLeft) {
    for (const int32_t code : {16, 40, 72, 78, 0, 1000}) {
        zov_event_s record = {};
        record.code = code;
        const bool work = cache().workToDo();
        DataCache::getInstance()->_zovlibNotificationCB(&record);
        DataCache::releaseInstance();
        EXPECT_EQ(support::takeWakeUps(), work ? 1U : 0U) << code;
    }
    cache().updateSwitch();
    for (const int32_t code : {16, 40, 72, 78, 0, 1000}) {
        zov_event_s record = {};
        record.code = code;
        DataCache::getInstance()->_zovlibNotificationCB(&record);
        DataCache::releaseInstance();
        EXPECT_EQ(support::takeWakeUps(), 1U) << code;
    }
}

TEST_F(Dispatch, ANullRecordDoesNothing) {
    DataCache::getInstance()->_zovlibNotificationCB(nullptr);
    DataCache::releaseInstance();
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
}

} // namespace
