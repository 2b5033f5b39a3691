// The manual page against the program: what the help tells stands in it, and nothing else does.
#include <regex>
#include <set>
#include <vector>

#include <gmock/gmock.h>

#include "tests/tools/zovsim/RunZovsim.h"

using zovsimtest::contentsOf;
using zovsimtest::run;

namespace {

using Names = std::set<std::string>;

/// Every match's first group, in order.
std::vector<std::string> findAll(const std::string &text, const std::string &pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), expression); at != std::sregex_iterator(); ++at)
        found.push_back((*at)[1]);
    return found;
}

Names namesIn(const std::string &text, const std::string &pattern) {
    const std::vector<std::string> found = findAll(text, pattern);
    return {found.begin(), found.end()};
}

Names commandsOfTheHelp() {
    const std::string help = run("--help").out;
    const size_t list = help.find("\nSubcommands:\n");
    return namesIn(help.substr(list, help.find("\n\n", list) - list), "\n  ([a-z]+) ");
}

std::string manPage() {
    return contentsOf(ZOVSIM_MAN_PAGE);
}

} // namespace

TEST(ZovsimManPage, HasTheCommandsOfTheHelpAndNoOthers) {
    const Names commands = commandsOfTheHelp();
    EXPECT_EQ(commands.size(), 6U);
    EXPECT_EQ(namesIn(manPage(), "\n\\.It Cm ([a-z]+)"), commands);
}

TEST(ZovsimManPage, HasTheOptionsOfTheHelpAndNoOthers) {
    Names options;
    for (const std::string &command : commandsOfTheHelp())
        options.merge(namesIn(run(command + " --help").out, "\n  (?:-[a-z],)?--([a-z-]+)"));
    options.insert("version"); // of the program alone
    const std::string page = manPage();
    EXPECT_EQ(namesIn(page, "Fl Fl ([a-z-]+)"), options);
    Names explained = namesIn(page, "\n\\.It Fl Fl ([a-z-]+)");
    explained.insert({"help", "version"}); // in the text
    EXPECT_EQ(explained, options);
}

TEST(ZovsimManPage, TellsEveryExitCode) {
    const std::string page = manPage();
    const size_t begin = page.find(".Sh EXIT STATUS");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_THAT(findAll(page.substr(begin, page.find(".Sh EXAMPLES") - begin), "\n\\.It ([0-9]+)\n"),
                testing::ElementsAre("0", "1", "2"));
}

TEST(ZovsimManPage, HasExamplesThatWork) {
    ASSERT_EQ(chdir("/tmp"), 0);
    setenv("XDG_RUNTIME_DIR", "/tmp", 1);
    unsetenv("ZOVSIM_SOCKET");
    std::vector<std::string> examples = findAll(manPage(), "\n\\.Dl \\$ zovsim ([^\n]+)(?=\n)");
    ASSERT_GE(examples.size(), 8U);
    std::unique_ptr<zovsimtest::Program> serving;
    for (const std::string &example : examples) {
        if (example.rfind("serve ", 0) != 0 && example.rfind("replay ", 0) != 0) {
            EXPECT_EQ(run(example).exitCode, 0) << example;
            continue;
        }
        EXPECT_TRUE(!serving || serving->endBy(SIGTERM) == 0);
        serving = std::make_unique<zovsimtest::Program>(example);
        EXPECT_TRUE(serving->says("export ZOVSIM_SOCKET=/tmp/zovsim.socket\n")) << example << serving->err();
    }
}
