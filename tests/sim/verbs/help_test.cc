#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sim/verbs/Commands.h"

using simtest::refusalOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(Help, ListsEveryVerbUnderItsGroupWithAnExample) {
    const auto device = sim::create();
    const std::string help = sim::perform(*device, "help");
    EXPECT_EQ(help, sim::verbsHelp());
    EXPECT_THAT(help,
                StartsWith("The switch and its parts:\n    switch online|offline|diagnostics|downed [silently]\n"));
    for (const char *group : {"The fabric:", "Zoning, by another management client:", "Clients and notifications:",
                              "The clock:", "Misbehaviour:", "Attributes:", "Help:"})
        EXPECT_THAT(help, HasSubstr(std::string("\n\n") + group + "\n    "));
}

TEST(Help, ExplainsEveryWordInCapitals) {
    const std::string help = sim::verbsHelp();
    for (const simtest::HelpEntry &entry : simtest::helpEntries()) {
        std::string word;
        for (const char c : entry.pattern + " ") {
            if ((c >= 'A' && c <= 'Z') || (c == '-' && !word.empty())) {
                word += c;
                continue;
            }
            const bool isChoice = c == '|' || entry.pattern.find("|" + word) != std::string::npos;
            if (word.size() > 1 && !isChoice) {
                EXPECT_THAT(help, HasSubstr("\n    " + word + " ")) << entry.pattern;
            }
            word.clear();
        }
    }
}

TEST(Help, OnAVerbTellsOfItsCommandsOnly) {
    const auto device = sim::create();
    const std::string help = sim::perform(*device, "help Port");
    EXPECT_EQ(simtest::linesIn(help).size(), 9U);
    EXPECT_THAT(help, StartsWith("port PORT online|"));
    EXPECT_THAT(help, Not(HasSubstr("blade")));
    const std::string more = sim::perform(*device, "help port 3 type");
    EXPECT_EQ(simtest::linesIn(more).size(), 3U);
    EXPECT_THAT(more, StartsWith("port PORT type G|"));
    EXPECT_THAT(more, HasSubstr("\n        Example: port 3 type GL"));
    EXPECT_EQ(sim::perform(*device, "help port PORT type"), more);
}

TEST(Help, OnWhatThereIsNotSuggestsTheNearest) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "help prot"), "no command begins like this; did you mean 'help port'?");
    EXPECT_EQ(refusalOf(*device, "help xyzzyxyzzy"), "no command begins like this");
    EXPECT_EQ(refusalOf(*device, "help port 3 offline now"), "no command begins like this; did you mean 'help port'?");
}
