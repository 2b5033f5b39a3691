// The manual page of scenario files against their reader: every name that it knows stands in the page, under its table,
// and no other one does; the examples load.

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "sim/scenario/Player.h"
#include "tests/sim/scenario/Reading.h"

using Names = std::set<std::string>;

namespace {

std::string manPage() {
    std::ifstream file(std::string(SHIPPED_SCENARIOS) + "/../docs/man/zovsim-scenario.5");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The words of a text between commas or blanks.
Names namesIn(std::string text) {
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// The names that the reader knows in a table, which it tells when it meets one that it does not know.
Names known(const std::string &table) {
    const std::string mark = "has no 'unheard-of'; allowed: ";
    for (const std::string &line : simtest::wrongIn(table))
        if (const size_t at = line.find(mark); at != std::string::npos)
            return namesIn(line.substr(at + mark.size()));
    ADD_FAILURE() << table << " takes anything";
    return {};
}

/// The names that the page explains under a heading.
Names explained(const std::string &heading) {
    const std::string page = manPage();
    const std::string item = ".It Cm ";
    const size_t begin = page.find("\n.Ss " + heading + "\n");
    if (begin == std::string::npos)
        return {};
    const size_t end = std::min(page.find("\n.Ss ", begin + 1), page.find("\n.Sh ", begin + 1));
    Names names;
    std::istringstream lines(page.substr(begin, end - begin));
    for (std::string line; std::getline(lines, line);)
        if (line.compare(0, item.size(), item) == 0)
            names.merge(namesIn(line.substr(item.size())));
    return names;
}

std::vector<std::string> examples() {
    const std::string page = manPage();
    const std::string begin = "\n.Bd -literal -offset indent\n";
    std::vector<std::string> texts;
    for (size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at + 1)) {
        const size_t text = at + begin.size();
        texts.push_back(page.substr(text, page.find("\n.Ed\n", text) + 1 - text));
    }
    return texts;
}

Names tables() {
    Names names = known("unheard-of = 1");
    names.erase("profile");
    return names;
}

} // namespace

TEST(ManPage, ExplainsEveryNameOfEveryTableAndNoOther) {
    const std::vector<std::pair<std::string, std::string>> places = {
        {"[switch]", "[switch]\n"},
        {"[[port]]", "[[port]]\nnumber = 0\n"},
        {"[[blade]]", "[[blade]]\nslot = 0\n"},
        {"[[supply]]", "[[supply]]\nnumber = 0\n"},
        {"[[fan]]", "[[fan]]\nnumber = 0\n"},
        {"[[account]]", "[[account]]\nname = \"a\"\n"},
        {"[fabric]", "[fabric]\n"},
        {"[[peer]]", "[[peer]]\nwwn = \"1000000000000001\"\ndomain = 2\n"},
        {"[[link]]", "[[link]]\n"},
        {"[[login]]", "[[login]]\n"},
        {"[zoning]", "[zoning]\n"},
        {"[[zoning.alias]]", "[[zoning.alias]]\nname = \"a\"\n"},
        {"[[zoning.zone]]", "[[zoning.zone]]\nname = \"a\"\n"},
        {"[[zoning.zoneset]]", "[[zoning.zoneset]]\nname = \"a\"\n"},
        {"[zoning.limits]", "[zoning.limits]\n"},
        {"[[rule]]", "[[rule]]\n"},
        {"[[step]]", "[[step]]\n"},
    };
    Names seen = {"settings"};
    for (const auto &[heading, table] : places) {
        EXPECT_EQ(explained(heading), known(table + "unheard-of = 1")) << heading;
        seen.insert(
            heading.substr(heading.find_last_of('[') + 1, heading.find_first_of(".]") - heading.rfind('[') - 1));
    }
    EXPECT_EQ(explained("transceiver"), known("[[port]]\nnumber = 0\ntransceiver = { unheard-of = 1 }"));
    EXPECT_EQ(explained("Top of the file"), Names{"profile"});
    EXPECT_EQ(seen, tables());
}

TEST(ManPage, HasExamplesThatLoad) {
    EXPECT_GE(examples().size(), 10U);
    for (const std::string &example : examples())
        EXPECT_EQ(simtest::wrongIn(example), simtest::Lines{}) << example;
}

TEST(ManPage, EndsWithAnExampleOfEverythingThatCanBePlayed) {
    ASSERT_FALSE(examples().empty());
    const std::string whole = examples().back();
    for (const std::string &table : tables())
        EXPECT_NE(whole.find("[" + table + "]"), std::string::npos) << table;
    const sim::Scenario scenario = sim::readScenario(whole, simtest::kFile);
    const auto device = sim::makeSwitch(scenario);
    sim::Player player(*device, scenario);
    size_t count = 0;
    while (player.next())
        for (const sim::Played &played : player.playNext()) {
            EXPECT_FALSE(played.isRefused()) << played.line();
            ++count;
        }
    EXPECT_EQ(count, 1U + 6U * 3U + 3U);
}
