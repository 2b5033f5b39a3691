// The built program from outside: what it prints, where, and how it exits.
#include <gmock/gmock.h>

#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"

using support::runDcache;
using support::Stdout;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kSwitchTable = "WWN                    10:00:00:C0:DD:00:A1:B2\n"
                                 "operational status     OK (2)\n"
                                 "faults                 none\n"
                                 "transparent mode       off\n"
                                 "FCoE                   not present\n"
                                 "Ethernet pass-through  not present\n";

} // namespace

TEST(CommandLine, SwitchIsATable) {
    for (const support::Arguments &arguments : std::vector<support::Arguments>{
             {"switch"}, {"switch", "show"}, {"-o", "table", "switch"}, {"switch", "--output=table"}}) {
        const auto run = runDcache(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.out, kSwitchTable);
        EXPECT_THAT(run.err, IsEmpty());
    }
}

TEST(CommandLine, SwitchAsJson) {
    const auto run = runDcache({"switch", "show", "-o", "json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(support::parseJson(run.out), support::parseJson(R"({
        "wwn": "10:00:00:C0:DD:00:A1:B2", "operationalStatus": [2, 0, 0], "state": "OK", "faults": [],
        "transparent": false, "fcoe": false, "ethernetPassthrough": false})"));
}

TEST(CommandLine, ChassisInAllThreeForms) {
    EXPECT_EQ(runDcache({"chassis"}).out, "slots   none (single-slot chassis)\n"
                                          "faults  none\n"
                                          "\n"
                                          "POWER SUPPLY  STATE\n"
                                          "1             good\n"
                                          "2             good\n"
                                          "\n"
                                          "FAN  STATE\n"
                                          "1    good\n"
                                          "2    good\n"
                                          "3    good\n");
    EXPECT_EQ(support::parseJson(runDcache({"-o", "json", "chassis"}).out), support::parseJson(R"({
        "slots": 0, "faults": [],
        "powerSupplies": [{"number": 1, "state": "good"}, {"number": 2, "state": "good"}],
        "fans": [{"number": 1, "state": "good"}, {"number": 2, "state": "good"}, {"number": 3, "state": "good"}]})"));
    EXPECT_EQ(runDcache({"chassis", "-o", "terse"}).out, "slots=0\n"
                                                         "faults=\n"
                                                         "powerSupplies.1.number=1\n"
                                                         "powerSupplies.1.state=good\n"
                                                         "powerSupplies.2.number=2\n"
                                                         "powerSupplies.2.state=good\n"
                                                         "fans.1.number=1\n"
                                                         "fans.1.state=good\n"
                                                         "fans.2.number=2\n"
                                                         "fans.2.state=good\n"
                                                         "fans.3.number=3\n"
                                                         "fans.3.state=good\n");
}

TEST(CommandLine, HelpGoesToStdoutAndGivesAnExample) {
    const std::vector<std::pair<support::Arguments, std::string>> rows = {
        {{"--help"}, "dcache watch --scenario demo\n"},
        {{"watch", "--help"}, "dcache watch --scenario demo --speed 20\n"},
        {{"switch", "--help"}, "dcache switch -o json\n"},
        {{"chassis", "show", "--help"}, "dcache chassis -o json\n"},
        {{"blades", "--help"}, "dcache --profile director-8 blades\n"},
        {{"ports", "--help"}, "dcache ports --state offline\n"},
        {{"ports", "show", "--help"}, "dcache ports show 0\n"},
        {{"accounts", "--help"}, "dcache accounts -o json\n"},
        {{"fabric", "--help"}, "dcache --profile fabric-12 fabric\n"},
        {{"fabric", "show", "--help"}, "dcache --profile fabric-12 fabric show 1\n"},
        {{"topology", "--help"}, "dcache --profile fabric-12 topology\n"},
        {{"settings", "--help"}, "dcache settings -o terse\n"},
        {{"config", "--help"}, "dcache config edit Config.Services.TelnetEnable=False\n"},
        {{"config", "edit", "--help"}, "3 admin mode busy, 5 rejected by the\nswitch.\n"},
        {{"doctor", "--help"}, "dcache doctor --wait 60 -o json\n"},
        {{"zoning", "--help"}, "dcache zoning run --zoning before.txt edits.txt\n"},
        {{"zoning", "run", "--help"}, "busy or lost, 4 limit reached, 5 commit rejected by the switch.\n"},
    };
    for (const auto &[arguments, example] : rows) {
        const auto run = runDcache(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.out, HasSubstr(example));
        EXPECT_THAT(run.err, IsEmpty());
    }
}

TEST(CommandLine, HelpFitsEightyColumns) {
    for (const support::Arguments &arguments : std::vector<support::Arguments>{{"--help"},
                                                                               {"watch", "--help"},
                                                                               {"switch", "--help"},
                                                                               {"blades", "--help"},
                                                                               {"ports", "--help"},
                                                                               {"ports", "show", "--help"},
                                                                               {"accounts", "--help"},
                                                                               {"fabric", "--help"},
                                                                               {"fabric", "show", "--help"},
                                                                               {"topology", "--help"},
                                                                               {"settings", "--help"},
                                                                               {"config", "--help"},
                                                                               {"config", "backup", "--help"},
                                                                               {"config", "restore", "--help"},
                                                                               {"config", "edit", "--help"},
                                                                               {"doctor", "--help"},
                                                                               {"zoning", "--help"},
                                                                               {"zoning", "show", "--help"},
                                                                               {"zoning", "run", "--help"},
                                                                               {"zoning", "diff", "--help"},
                                                                               {"zoning", "dump", "--help"}})
        for (const std::string &line : support::lines(runDcache(arguments).out))
            EXPECT_LE(line.size(), 80u) << line;
}

TEST(CommandLine, VersionIsOneLine) {
    const auto run = runDcache({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, testing::MatchesRegex("dcache [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(CommandLine, UsageErrorsExitWithTwoAndKeepStdoutEmpty) {
    const std::vector<support::Arguments> wrong = {
        {},
        {"swich"},
        {"switch", "hide"},
        {"switch", "chassis"},
        {"switch", "-o", "xml"},
        {"switch", "--colour"},
        {"switch", "--state", "online"},
        {"ports", "0"},
        {"ports", "--state", "Online"},
        {"ports", "--state", ""},
        {"ports", "--state"},
        {"ports", "--state", "online", "--all"},
        {"ports", "show", "x"},
        {"ports", "show", "-1"},
        {"ports", "show", "0x1"},
        {"ports", "show", "1.5"},
        {"ports", "show", ""},
        {"ports", "show", "1", "2"},
        {"ports", "show", "1", "--all"},
        {"ports", "--state", "online", "show", "1"},
        {"blades", "0"},
        {"accounts", "admin"},
        {"fabric", "1"},
        {"fabric", "show", "x"},
        {"fabric", "show", "-1"},
        {"fabric", "show", ""},
        {"fabric", "show", "1", "2"},
        {"topology", "1"},
        {"topology", "--format", "png"},
        {"topology", "--format"},
        {"topology", "--format", "dot", "-o", "json"},
        {"topology", "--format", "text", "-o", "terse"},
        {"fabric", "--format", "dot"},
        {"zoning", "hide"},
        {"zoning", "--dry-run"},
        {"zoning", "run"},
        {"zoning", "run", "a", "b"},
        {"zoning", "run", "/dev/null", "--active"},
        {"zoning", "run", "/dev/null", "--id", ""},
        {"zoning", "diff", "a", "b"},
        {"zoning", "dump", "a"},
        {"zoning", "dump", "-o", "json"},
        {"zoning", "--zoning"},
        {"switch", "--zoning", "/dev/null"},
        {"switch", "--all"},
        {"--profile", "nosuchprofile", "ports"},
        {"ports", "--profile", ""},
        {"switch", "--profile"},
        {"--profile", "fixed-24", "watch", "--scenario", "demo"},
        {"--scenario", "demo", "switch", "--profile", "fixed-24"},
        {"--scenario", "nosuchscenario", "switch"},
        {"switch", "--scenario", ""},
        {"settings", "telnet"},
        {"settings", "--secrets", "--all"},
        {"switch", "--secrets"},
        {"config"},
        {"config", "-o", "json"},
        {"config", "show"},
        {"config", "backup", "now"},
        {"config", "backup", "--secrets"},
        {"config", "edit"},
        {"config", "edit", "Config.Services.TelnetEnable"},
        {"config", "edit", "=True"},
        {"config", "edit", "Cmd.Switch.Reset="},
        {"doctor", "switch"},
        {"doctor", "--wait"},
        {"doctor", "--wait", "nan"},
        {"doctor", "--wait", "-1"},
        {"watch", "--for", "soon"},
        {"watch", "--for", "-1"},
        {"watch", "--for", "nan"},
        {"watch", "--for", "inf"},
        {"watch", "--for"},
        {"watch", "--scenario", "nosuchscenario"},
        {"watch", "--scenario"},
        {"watch", "--scenario", "demo", "--speed", "0"},
        {"switch", "--scenario", "demo", "--speed", "2"},
        {"watch", "--speed", "2"},
    };
    for (const support::Arguments &arguments : wrong) {
        const auto run = runDcache(arguments);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(run.out, IsEmpty()) << testing::PrintToString(arguments);
        EXPECT_THAT(run.err, testing::StartsWith("dcache: ")) << testing::PrintToString(arguments);
    }
}

TEST(CommandLine, ColourIsForTerminalsOnly) {
    const support::Environment terminal = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
    EXPECT_THAT(runDcache({"switch"}, Stdout::terminal, terminal).out, HasSubstr("\x1b[32mOK (2)\x1b[0m"));
    EXPECT_EQ(runDcache({"switch"}, Stdout::pipe, terminal).out, kSwitchTable);
    EXPECT_EQ(runDcache({"switch", "-o", "json"}, Stdout::terminal, terminal).out.find('\x1b'), std::string::npos);
    EXPECT_EQ(runDcache({"switch"}, Stdout::terminal, {{"TERM", "xterm"}, {"NO_COLOR", "1"}}).out.find('\x1b'),
              std::string::npos);
}

TEST(CommandLine, AReaderThatWentAwayIsAQuietFailure) {
    const auto run = runDcache({"switch"}, Stdout::pipeWithoutReader);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(CommandLine, AnOutputThatCannotBeWrittenIsAFailureWithAReason) {
    for (const Stdout kind : {Stdout::fullDevice, Stdout::closed}) {
        const auto run = runDcache({"switch"}, kind);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.err, testing::StartsWith("dcache: cannot write to standard output: "));
    }
}
