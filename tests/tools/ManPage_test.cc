// The manual page against the program: what the help tells on all its levels stands in it, and nothing else does.
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "tests/tools/RunDcache.h"

using support::Arguments;
using support::runDcache;

namespace {

std::string manPage() {
    std::ifstream file(DCACHE_MAN_PAGE);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string joined(const Arguments &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

/// Every match's first group.
std::vector<std::string> findAll(const std::string &text, const std::string &pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), expression); at != std::sregex_iterator(); ++at)
        found.push_back((*at)[1]);
    return found;
}

/// The options and commands of the program.
struct Interface {
    std::set<std::string> options; ///< without their dashes
    std::vector<Arguments> commands;
};

void read(const Arguments &command, Interface &interface) {
    Arguments arguments = command;
    arguments.emplace_back("--help");
    const std::string help = runDcache(arguments).out;
    for (const std::string &option : findAll(help, "\n  (?:-[a-z],)?--([a-z-]+)"))
        interface.options.insert(option);
    const size_t list = help.find("\nSubcommands:\n");
    if (list == std::string::npos)
        return;
    for (const std::string &name : findAll(help.substr(list, help.find("\n\n", list) - list), "\n  ([a-z]+) ")) {
        Arguments inner = command;
        inner.push_back(name);
        interface.commands.push_back(inner);
        read(inner, interface);
    }
}

Interface interfaceOfTheProgram() {
    Interface interface;
    read({}, interface);
    return interface;
}

bool contains(const std::string &text, const std::string &pattern) {
    return std::regex_search(text, std::regex(pattern));
}

} // namespace

TEST(ManPage, NamesEveryCommandOfTheHelp) {
    const Interface interface = interfaceOfTheProgram();
    ASSERT_GE(interface.commands.size(), 20u);
    const std::string page = manPage();
    for (const Arguments &command : interface.commands) {
        // A verb may stand behind its noun as one that can be left out.
        const std::string verb = command.size() > 1 ? "( O[po] Cm)? " + command.back() : "";
        EXPECT_TRUE(contains(page, "\n\\.It Cm " + command.front() + verb + "( |\n)")) << joined(command);
    }
}

TEST(ManPage, NamesNoCommandThatTheProgramDoesNotHave) {
    std::set<std::string> commands;
    for (const Arguments &command : interfaceOfTheProgram().commands)
        commands.insert(joined(command));
    const auto named = findAll(manPage(), "\n\\.It Cm ([a-z]+( [a-z]+)?)(?= |\n)");
    ASSERT_GE(named.size(), 16u);
    for (const std::string &name : named)
        EXPECT_THAT(commands, testing::Contains(name));
}

TEST(ManPage, HasTheOptionsOfTheHelpAndNoOthers) {
    const std::string page = manPage();
    const auto named = findAll(page, "Fl Fl ([a-z-]+)");
    EXPECT_EQ(std::set<std::string>(named.begin(), named.end()), interfaceOfTheProgram().options);
    const auto explained = findAll(page, "\n\\.It (?:Fl [a-z] , )?Fl Fl ([a-z-]+)");
    std::set<std::string> all(explained.begin(), explained.end());
    all.insert("zoning"); // explained in the text, since all the verbs of zoning have it
    EXPECT_EQ(all, interfaceOfTheProgram().options);
}

TEST(ManPage, TellsEveryExitCode) {
    const std::string page = manPage();
    const size_t begin = page.find(".Sh EXIT STATUS");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_THAT(findAll(page.substr(begin, page.find(".Sh EXAMPLES") - begin), "\n\\.It ([0-9]+)\n"),
                testing::ElementsAre("0", "1", "2", "3", "4", "5"));
}

TEST(ManPage, HasExamplesThatWork) {
    // A shell's work, and a watch, which takes its time, are left out.
    const auto examples = findAll(manPage(), "\n\\.Dl \\$ dcache ((?!watch)[^|>\n]+)(?=\n)");
    ASSERT_GE(examples.size(), 4u);
    for (const std::string &example : examples)
        EXPECT_EQ(runDcache(support::splitAt(example, ' ')).exitCode, 0) << example;
}
