// State texts of the switch to CIM values. Every table is written out here once more, so that a changed row fails.
#include <algorithm>
#include <atomic>
#include <cctype>
#include <map>
#include <set>
#include <thread>

#include "tests/support/CacheTest.h"
#include "tests/support/Wait.h"

namespace {

using Table = std::map<std::string, unsigned short>;

class Translate : public support::CacheTest {
protected:
    void SetUp() override { connect(); }
};

std::string withCase(const std::string &text, int (*convert)(int)) {
    std::string out;
    for (const char c : text)
        out += static_cast<char>(convert(static_cast<unsigned char>(c)));
    return out;
}

/// The text and what lies next to it: other case, a character less or more, blanks, a hidden end.
std::set<std::string> around(const std::string &text) {
    return {text,
            withCase(text, std::tolower),
            withCase(text, std::toupper),
            text.substr(0, text.size() - 1),
            text.substr(1),
            text + " ",
            " " + text,
            text + "x",
            text + text,
            ""};
}

std::set<std::string> textsAround(const Table &table) {
    std::set<std::string> texts = {"", " ", "?", "Unknown"};
    for (const auto &[text, value] : table)
        texts.merge(around(text));
    return texts;
}

unsigned short expected(const Table &table, const std::string &text) {
    const auto row = table.find(text);
    return row != table.end() ? row->second : 0;
}

const Table &hardwareStates() {
    static const Table table = {{"Good", 1}, {"Bad", 2}, {"NotInstalled", 3}};
    return table;
}

const Table &hardwareTypes() {
    static const Table table = {{"GL", 1}, {"EXG", 2}};
    return table;
}

const Table &portTypes() {
    static const Table table = {{"G", 2},         {"GL", 3},     {"E", 4},      {"F", 5},      {"FL", 6},
                                {"Donor", 16000}, {"TH", 16001}, {"TF", 16002}, {"TR", 16003}, {"PT", 16004}};
    return table;
}

TEST_F(Translate, HardwareStatesAreExactTexts) {
    for (const std::string &text : textsAround(hardwareStates()))
        EXPECT_EQ(cache()._smlConvToHardwareStatus(text.c_str()), expected(hardwareStates(), text))
            << '"' << text << '"';
}

TEST_F(Translate, NoTextIsAnUnknownHardwareState) {
    EXPECT_EQ(cache()._smlConvToHardwareStatus(nullptr), 0);
}

TEST_F(Translate, HardwareTypesAreExactTexts) {
    for (const std::string &text : textsAround(hardwareTypes()))
        EXPECT_EQ(cache().smlHWTypeToCIMHWType(text), expected(hardwareTypes(), text)) << '"' << text << '"';
}

TEST_F(Translate, PortTypesAreExactTexts) {
    for (const std::string &text : textsAround(portTypes()))
        EXPECT_EQ(cache().smlTypeToCIMType(text), expected(portTypes(), text)) << '"' << text << '"';
    EXPECT_EQ(cache().smlTypeToCIMType("g"), 0);
}

TEST_F(Translate, ATextWithAHiddenEndIsNotTheTextBeforeIt) {
    const std::string hidden("G\0", 2);
    EXPECT_EQ(cache().smlTypeToCIMType(hidden), 0);
    EXPECT_EQ(cache().smlHWTypeToCIMHWType(std::string("GL\0x", 4)), 0);
    EXPECT_EQ(cache().smlPortStateToCIMOperationalStatus(std::string("Online\0", 7), ""), StatusList{0});
}

// ---- ports ------------------------------------------------------------------------------------------------

/// A port's state, and the other states that make a difference to it.
struct PortRow {
    std::set<std::string> otherStates;
    unsigned short withOneOfThem;
    unsigned short otherwise;
};

TEST_F(Translate, APortHasOneStatusFromItsTwoStates) {
    const std::map<std::string, PortRow> rows = {
        {"Online", {{}, 0, 2}},
        {"Offline", {{}, 0, 10}},
        {"Diagnostics", {{}, 0, 11}},
        {"Isolated", {{"Offline", "Down", "Downed"}, 10, 6}},
        {"Down", {{"Down", "Downed"}, 10, 6}},
        {"Downed", {{"Down", "Downed"}, 10, 6}},
    };
    std::set<std::string> texts = {"", "Unknown", "Pending", "PoweredOff", "Do", "Downe"};
    for (const auto &[state, row] : rows)
        texts.merge(around(state));

    for (const std::string &state : texts) {
        for (const std::string &otherState : texts) {
            const auto row = rows.find(state);
            unsigned short status = 0;
            if (row != rows.end())
                status =
                    row->second.otherStates.count(otherState) != 0 ? row->second.withOneOfThem : row->second.otherwise;
            EXPECT_EQ(cache().smlPortStateToCIMOperationalStatus(state, otherState), StatusList{status})
                << '"' << state << "\" \"" << otherState << '"';
        }
    }
}

TEST_F(Translate, AnIsolatedPortThatShouldBeOnlineIsInError) {
    EXPECT_EQ(cache().smlPortStateToCIMOperationalStatus("Isolated", "Online"), StatusList{6});
}

// ---- I/O blades -------------------------------------------------------------------------------------------

unsigned short bladePrimary(const std::string &state, const std::string &otherState, const std::string &health) {
    static const std::set<std::string> down = {"Down", "Downed"};
    static const Table byHealth = {{"Failed", 6}, {"Compromised", 3}};
    if (down.count(state) != 0 && down.count(otherState) != 0)
        return 6;
    return byHealth.count(health) != 0 ? byHealth.at(health) : 2;
}

StatusList bladeSecondary(const std::string &state, const std::string &otherState) {
    static const Table byState = {{"Pending", 8}, {"Diagnostics", 11}, {"Down", 15}, {"Downed", 15}, {"Offline", 15}};
    if (byState.count(state) == 0)
        return {};
    return {state == "Pending" && otherState == "PoweredOff" ? static_cast<unsigned short>(9) : byState.at(state)};
}

TEST_F(Translate, ABladeHasItsHealthAndWhatItGoesThrough) {
    std::set<std::string> states = {"", "Online", "PoweredOff", "Unknown"};
    for (const char *state : {"Pending", "Diagnostics", "Down", "Downed", "Offline"})
        states.merge(around(state));
    std::set<std::string> otherStates = {"", "Online", "Offline", "Pending"};
    for (const char *state : {"PoweredOff", "Down", "Downed"})
        otherStates.merge(around(state));
    std::set<std::string> healths = {"", "Good"};
    for (const char *health : {"Failed", "Compromised"})
        healths.merge(around(health));

    for (const std::string &state : states) {
        for (const std::string &otherState : otherStates) {
            for (const std::string &health : healths) {
                StatusList status = {bladePrimary(state, otherState, health)};
                const StatusList secondary = bladeSecondary(state, otherState);
                status.insert(status.end(), secondary.begin(), secondary.end());
                EXPECT_EQ(cache().smlIOBladeStateToCIMOperationalStatus(state, otherState, health), status)
                    << '"' << state << "\" \"" << otherState << "\" \"" << health << '"';
            }
        }
    }
}

TEST_F(Translate, BladesFromTheField) {
    EXPECT_EQ(cache().smlIOBladeStateToCIMOperationalStatus("Pending", "PoweredOff", "Compromised"),
              (StatusList{3, 9}));
    EXPECT_EQ(cache().smlIOBladeStateToCIMOperationalStatus("Down", "Down", "Good"), (StatusList{6, 15}));
    EXPECT_EQ(cache().smlIOBladeStateToCIMOperationalStatus("Online", "Online", "Good"), StatusList{2});
    EXPECT_EQ(cache().smlIOBladeStateToCIMOperationalStatus("Downed", "Down", "Compromised"), (StatusList{6, 15}));
}

// ---- the switch -------------------------------------------------------------------------------------------

/// Stands for the state's own value in a list below.
constexpr unsigned short kState = 60000;

TEST_F(Translate, ASwitchHasItsStateAndItsFaults) {
    const Table states = {{"Online", 2}, {"Offline", 10}, {"Downed", 10}};
    const std::vector<std::pair<StatusList, StatusList>> lists = {
        {{}, {kState}},
        {{0}, {kState, 0}},
        {{7}, {kState, 7}},
        {{0, 0}, {kState, 0, 0}},
        {{3, 1, 2}, {kState, 3, 1, 2}},
        {{32767}, {kState, 32767}},
        {{32770}, {kState, 32770}},
        {{32768}, {6, 32768}},
        {{32768, 0}, {6, 32768, 0}},
        {{0, 32768}, {6, 0, 32768}},
        {{32768, 32769}, {6, 32768, 32769}},
        {{32769, 32768}, {6, 32769, 32768}},
        {{32768, 32768}, {6, 32768, 32768}},
        {{32769}, {kState, 5, 32769}},
        {{0, 32769}, {kState, 5, 0, 32769}},
        {{32769, 32769}, {kState, 5, kState, 5, 32769, 32769}},
        {{1, 32769, 2, 32769, 3}, {kState, 5, kState, 5, 1, 32769, 2, 32769, 3}},
    };
    for (const std::string &state : textsAround(states)) {
        for (const auto &[faults, withState] : lists) {
            StatusList status = withState;
            std::replace(status.begin(), status.end(), kState, expected(states, state));
            EXPECT_EQ(cache().smlSwitchStateToCIMOperationalStatus(state.c_str(), faults), status)
                << '"' << state << "\" " << testing::PrintToString(faults);
        }
    }
}

TEST_F(Translate, ASwitchInDiagnosticsIsInServiceWhateverItsFaults) {
    for (const StatusList &faults :
         {StatusList{}, StatusList{7}, StatusList{32768}, StatusList{32769}, StatusList{32769, 32768, 32769}}) {
        StatusList status = {11};
        status.insert(status.end(), faults.begin(), faults.end());
        EXPECT_EQ(cache().smlSwitchStateToCIMOperationalStatus("Diagnostics", faults), status);
    }
    EXPECT_EQ(cache().smlSwitchStateToCIMOperationalStatus("diagnostics", {32768}), (StatusList{6, 32768}));
}

TEST_F(Translate, NoTextIsAnUnknownSwitchState) {
    EXPECT_EQ(cache().smlSwitchStateToCIMOperationalStatus(nullptr, {}), StatusList{0});
}

// ---- the lock ---------------------------------------------------------------------------------------------

TEST_F(Translate, DoesNotWaitForTheLock) {
    DataCache &theCache = cache();
    std::atomic<bool> done{false};
    DataCache::getInstance();
    std::thread client([&] {
        theCache._smlConvToHardwareStatus("Good");
        theCache.smlHWTypeToCIMHWType("GL");
        theCache.smlTypeToCIMType("GL");
        theCache.smlPortStateToCIMOperationalStatus("Online", "Online");
        theCache.smlIOBladeStateToCIMOperationalStatus("Online", "Online", "Good");
        theCache.smlSwitchStateToCIMOperationalStatus("Online", {});
        done = true;
    });
    EXPECT_TRUE(support::waitUntil([&done] { return done.load(); }));
    DataCache::releaseInstance();
    client.join();
}

} // namespace
