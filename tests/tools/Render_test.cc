#include "tools/dcache/render.h"

#include "tests/tools/Json.h"
#include "tools/dcache/json.h"
#include <gmock/gmock.h>

using namespace dcache;

namespace {

Report sample() {
    Report report;
    report.facts = {
        {"name", "name", {"edge 1", "edge 1", Tone::accent}},
        {"status", "operational status", {Value::List{2, 0, 0}, "OK (2)", Tone::good}},
        {"hidden", nullptr, {true, "yes"}},
    };
    report.listings = {
        {"fans",
         {{"number", "FAN"}, {"state", "STATE"}},
         {{{1, "1"}, {"good", "good", Tone::good}}, {{12, "12"}, {"not installed", "not installed"}}}},
        {"slots", {{"number", "SLOT"}}, {}},
    };
    return report;
}

} // namespace

TEST(Render, ATableAlignsLabelsAndColumns) {
    EXPECT_EQ(render(sample(), Format::table, false), "name                edge 1\n"
                                                      "operational status  OK (2)\n"
                                                      "\n"
                                                      "FAN  STATE\n"
                                                      "1    good\n"
                                                      "12   not installed\n"
                                                      "\n"
                                                      "SLOT\n");
}

TEST(Render, AColumnWithoutATitleIsForProgramsAndScriptsOnly) {
    Report report;
    report.listings = {{"ports",
                        {{"index", "PORT"}, {"number", nullptr}, {"state", "STATE"}},
                        {{{0, "0"}, {2, "hidden"}, {"online", "online"}}}}};
    EXPECT_EQ(render(report, Format::table, false), "PORT  STATE\n"
                                                    "0     online\n");
    EXPECT_EQ(render(report, Format::terse, false), "ports.1.index=0\n"
                                                    "ports.1.number=2\n"
                                                    "ports.1.state=online\n");
    EXPECT_EQ(jsonOf(report).at("ports").at(0).at("number"), 2);
}

TEST(Render, ATableWithoutTitlesIsForProgramsAndScriptsOnly) {
    Report report;
    report.facts = {{"name", "name", {"edge 1", "edge 1"}}};
    report.listings = {{"codes", {{"code", nullptr}}, {{{7, "7"}}}}, {"fans", {{"number", "FAN"}}, {{{1, "1"}}}}};
    EXPECT_EQ(render(report, Format::table, false), "name  edge 1\n\nFAN\n1\n");
    EXPECT_EQ(render(report, Format::terse, false), "name=edge 1\ncodes.1.code=7\nfans.1.number=1\n");
}

TEST(Render, AHeadingStandsAboveItsFactsForPeopleOnly) {
    Report report;
    report.facts = {{"telnet", "Telnet", {true, "on"}, "Services"},
                    {"ssh", "SSH", {false, "off"}},
                    {"address", "address", {"192.0.2.1", "192.0.2.1"}, "Network"}};
    EXPECT_EQ(render(report, Format::table, false), "Services\n"
                                                    "Telnet   on\n"
                                                    "SSH      off\n"
                                                    "\n"
                                                    "Network\n"
                                                    "address  192.0.2.1\n");
    EXPECT_EQ(render(report, Format::terse, false), "telnet=true\nssh=false\naddress=192.0.2.1\n");
    EXPECT_THAT(render(report, Format::table, true), testing::StartsWith("\x1b[1mServices\x1b[0m\n"));
}

TEST(Render, ATableWithoutRowsMaySayWhy) {
    Report report;
    report.listings = {{"ports", {{"index", "PORT"}}, {}, "No port is offline."}};
    EXPECT_EQ(render(report, Format::table, false), "No port is offline.\n");
    EXPECT_EQ(render(report, Format::terse, false), "");
    EXPECT_EQ(jsonOf(report), support::parseJson(R"({"ports": []})"));
    report.listings.front().rows = {{{0, "0"}}};
    EXPECT_EQ(render(report, Format::table, false), "PORT\n0\n");
}

TEST(Render, NotesStandBeneathTablesAndNowhereElse) {
    Report report = sample();
    report.notes = {"One.", "Two."};
    EXPECT_THAT(render(report, Format::table, false), testing::EndsWith("SLOT\n\nOne.\nTwo.\n"));
    EXPECT_EQ(render(report, Format::json, false), render(sample(), Format::json, false));
    EXPECT_EQ(render(report, Format::terse, false), render(sample(), Format::terse, false));
    report = Report();
    report.notes = {"Alone."};
    EXPECT_EQ(render(report, Format::table, false), "Alone.\n");
}

TEST(Render, CellsOfSeveralLinesStandBesideOneAnother) {
    Report report;
    report.listings = {{"zones",
                        {{"name", "ZONE"}, {"hidden", nullptr}, {"members", "MEMBERS"}},
                        {{{"db", "db"}, {1, "unseen"}, {Value::List{"a", "bb"}, "a\nbb", Tone::good}},
                         {{"x", "x\ny\nz"}, {2, ""}, {Value::List{"c"}, "c"}}}}};
    EXPECT_EQ(render(report, Format::table, false), "ZONE  MEMBERS\n"
                                                    "db    a\n"
                                                    "      bb\n"
                                                    "x     c\n"
                                                    "y     \n"
                                                    "z     \n");
    EXPECT_THAT(render(report, Format::table, true), testing::HasSubstr("      \x1b[32mbb\x1b[0m\n"));
    EXPECT_THAT(render(report, Format::terse, false), testing::HasSubstr("zones.1.members=a,bb\n"));
}

TEST(Render, ColourChangesNeitherWordsNorAlignment) {
    std::string coloured = render(sample(), Format::table, true);
    EXPECT_THAT(coloured, testing::HasSubstr("\x1b[32mOK (2)\x1b[0m\n"));
    EXPECT_THAT(coloured, testing::HasSubstr("\x1b[1mFAN\x1b[0m  \x1b[1mSTATE\x1b[0m\n"));
    for (size_t at = coloured.find('\x1b'); at != std::string::npos; at = coloured.find('\x1b'))
        coloured.erase(at, coloured.find('m', at) - at + 1);
    EXPECT_EQ(coloured, render(sample(), Format::table, false));
}

TEST(Render, JsonHasEveryFactUnderItsKeyAndListsAsArraysEvenWhenEmpty) {
    const std::string text = render(sample(), Format::json, true);
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_EQ(support::parseJson(text), support::parseJson(R"({
        "name": "edge 1", "status": [2, 0, 0], "hidden": true,
        "fans": [{"number": 1, "state": "good"}, {"number": 12, "state": "not installed"}],
        "slots": []})"));
}

TEST(Render, JsonKeepsTheOrderOfTheFacts) {
    const std::string text = render(sample(), Format::json, false);
    EXPECT_LT(text.find("\"name\""), text.find("\"status\""));
    EXPECT_LT(text.find("\"status\""), text.find("\"hidden\""));
    EXPECT_LT(text.find("\"hidden\""), text.find("\"fans\""));
}

TEST(Render, TerseIsOneKeyAndValuePerLine) {
    EXPECT_EQ(render(sample(), Format::terse, true), "name=edge 1\n"
                                                     "status=2,0,0\n"
                                                     "hidden=true\n"
                                                     "fans.1.number=1\n"
                                                     "fans.1.state=good\n"
                                                     "fans.2.number=12\n"
                                                     "fans.2.state=not installed\n");
}

TEST(Render, TerseValuesStayOnOneLine) {
    EXPECT_EQ(terseValue("a\tb\nc"), "a\\x09b\\x0Ac");
    EXPECT_EQ(terseValue(Value::List{"x", "y"}), "x,y");
    EXPECT_EQ(terseValue(Value::List()), "");
    EXPECT_EQ(terseValue(false), "false");
    EXPECT_EQ(terseValue(7), "7");
    EXPECT_EQ(terseValue(nullptr), "");
}

TEST(Render, JsonOfBytesThatAreNoUtf8IsStillJson) {
    const std::string text = jsonText({{"user", "a\xff\xfe"}}, -1);
    EXPECT_EQ(support::parseJson(text).at("user"), "a\xef\xbf\xbd\xef\xbf\xbd");
}

TEST(Render, PaintLeavesTextAloneWithoutColourOrTone) {
    EXPECT_EQ(painted("bad", Tone::bad, false), "bad");
    EXPECT_EQ(painted("bad", Tone::plain, true), "bad");
    EXPECT_EQ(painted("bad", Tone::bad, true), "\x1b[1;31mbad\x1b[0m");
}
