// What the program makes of its arguments, and the commands that need no switch.
#include <gmock/gmock.h>

#include "tests/tools/zovsim/RunZovsim.h"

using testing::HasSubstr;
using testing::StartsWith;
using zovsimtest::Outcome;
using zovsimtest::run;
using zovsimtest::writeFile;

TEST(CommandLine, WhatItDoesNotUnderstandIsAMatterOfUsage) {
    struct {
        const char *arguments;
        const char *complaint;
    } const bad[] = {
        {"", "zovsim: nothing asked for; commands are: serve, do, dump, validate, replay, scenarios\n"},
        {"srve", "zovsim: The following argument was not expected: srve; commands are: serve, "},
        {"serve demo", "zovsim: The following argument was not expected: demo\n"},
        {"serve --speed 0", "zovsim: --speed: 0 is neither a number above 0, up to 1000000, nor max\n"},
        {"serve --speed nan", "nan is neither"},
        {"serve --speed 1 --paused", "--speed excludes --paused"},
        {"serve --profile fixed-24 --scenario demo", "--scenario excludes --profile"},
        {"serve --force", "--force requires --record"},
        {"serve --seed -1", "--seed: -1 is not a number from 0 to 18446744073709551615\n"},
        {"serve --seed 18446744073709551616", "is not a number from 0 to 18446744073709551615\n"},
        {"do", "command is required"},
        {"validate", "file is required"},
        {"replay", "file is required"},
    };
    for (const auto &[arguments, complaint] : bad) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_THAT(outcome.err, HasSubstr(complaint)) << arguments;
        EXPECT_THAT(outcome.err, HasSubstr("Run \"zovsim --help\" for help.\n")) << arguments;
    }
}

TEST(CommandLine, HelpAndVersionAreData) {
    EXPECT_THAT(run("--version").out, StartsWith("zovsim "));
    EXPECT_THAT(run("--help").out, HasSubstr("Serve a switch to clients of other processes"));
    const Outcome help = run("do --help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.out, HasSubstr("Usage: zovsim do "));
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAFailure) {
    EXPECT_EQ(run("scenarios >/dev/full").exitCode, 1);
    EXPECT_EQ(run("serve --socket /tmp/switch >/dev/full").exitCode, 1);
}

TEST(Validate, TellsOfEveryFileAndOfEveryMistake) {
    writeFile("/tmp/good.toml", "[[step]]\nat = 1\ndo = 'port 3 offline'\n");
    writeFile("/tmp/bad.toml", "profile = 'toaster'\n[[step]]\nat = 'soon'\ndo = 'port 3 offlin'\n");
    const Outcome outcome = run("validate /tmp/bad.toml /tmp/nothing.toml /tmp/good.toml");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "/tmp/good.toml: good, 1 step\n");
    EXPECT_THAT(outcome.err, HasSubstr("/tmp/bad.toml:1:11: no switch profile 'toaster'"));
    EXPECT_THAT(outcome.err, HasSubstr("\n/tmp/bad.toml:3:6: "));
    EXPECT_THAT(outcome.err, HasSubstr("\n/tmp/bad.toml:4:6: "));
    EXPECT_THAT(outcome.err, HasSubstr("zovsim: cannot read /tmp/nothing.toml: No such file or directory\n"));
    EXPECT_EQ(run("validate /tmp/good.toml").exitCode, 0);
}

TEST(Validate, KnowsTheShippedScenariosByTheirNames) {
    EXPECT_THAT(run("validate demo").out, StartsWith("demo: good, "));
    EXPECT_THAT(run("validate dmo").err, HasSubstr("there is no scenario 'dmo'; shipped are: demo, "));
}

TEST(Validate, TriesEveryStepOnceOnASwitchOfItsOwn) {
    writeFile("/tmp/bad.toml", "[[step]]\nat = '23h'\nevery = 1\ndo = ['clock pace running', 'port 99 offline']\n"
                               "[[step]]\nat = '24h'\ndo = 'port 98 offline'\n");
    const Outcome outcome = run("validate /tmp/bad.toml");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err,
                StartsWith("/tmp/bad.toml:4:29: 82800 s: port 99 offline: there is no port 99; the switch has 24"));
    EXPECT_THAT(outcome.err, HasSubstr("\n/tmp/bad.toml:7:6: 86400 s: port 98 offline: there is no port 98; "));
}

TEST(Validate, FindsWhatOnlyTheSwitchKnows) {
    writeFile("/tmp/bad.toml", "[[port]]\nnumber = 99\nstate = 'Offline'\n");
    const Outcome outcome = run("validate - </tmp/bad.toml");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, StartsWith("standard input:"));
}

TEST(Scenarios, AreListedWithWhatTheyAreAboutAndPrintedToBeginWith) {
    const std::string list = run("scenarios").out;
    EXPECT_THAT(list, HasSubstr("demo                   A fabric on a bad day\n"));
    EXPECT_THAT(list, HasSubstr("scale-239-domains      The largest fabric there can be\n"));
    EXPECT_EQ(run("scenarios demo").out, zovsimtest::contentsOf(std::string(SHIPPED_SCENARIOS) + "/demo.toml"));
    const Outcome none = run("scenarios dmo");
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_THAT(none.err, HasSubstr("there is no scenario 'dmo'; shipped are: demo, director, director-8-blades, "));
}
