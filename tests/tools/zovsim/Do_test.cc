// zovsim do and dump, the program itself.
#include <gmock/gmock.h>

#include "tests/tools/zovsim/RunZovsim.h"
#include "tools/zovsim/remote.h"

using testing::HasSubstr;
using testing::StartsWith;
using zovsimtest::Outcome;
using zovsimtest::run;
using zovsimtest::Serving;
using zovsimtest::writeFile;
using Words = std::vector<std::string>;

TEST(Do, TellsOfItsCommandsWithoutASwitch) {
    const Outcome all = run("do help");
    EXPECT_EQ(all.exitCode, 0);
    EXPECT_THAT(all.out, HasSubstr("port PORT online|offline"));
    EXPECT_THAT(all.out, HasSubstr("Example: "));
    const Outcome one = run("do help reboot");
    EXPECT_EQ(one.exitCode, 0);
    EXPECT_THAT(one.out, StartsWith("reboot\n"));
    const Outcome none = run("do help reboots");
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_THAT(none.err, HasSubstr("did you mean 'help reboot'?"));
}

TEST(Do, SaysHowToStartASwitchWhenThereIsNone) {
    for (const char *command : {"do --socket /tmp/switch reboot", "dump --socket /tmp/switch"}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.err, "zovsim: no switch is served at /tmp/switch; \"zovsim serve\" starts one\n");
    }
}

TEST(Do, ACommandIsItsWordsOrOneTextOrALineOfInput) {
    Serving serving("serve");
    zovsimtest::goOverTheSocket();
    EXPECT_EQ(run("do port 3 offline").exitCode, 0);
    EXPECT_EQ(run("do 'get Oper.UserPort.0.3.OperState'").out, "Offline\n");
    writeFile("/tmp/commands", "port 3 online # again\nget Oper.UserPort.0.3.OperState\nget Oper.Switch.DomainID\n");
    EXPECT_EQ(run("do - </tmp/commands").out, "Online\n1\n");
    EXPECT_EQ(run("do deliver 40 0 0 0 'CPU too hot'").exitCode, 0);
}

TEST(Do, WhatIsRefusedIsToldOnStderrAndChangesNothing) {
    Serving serving("serve");
    zovsimtest::goOverTheSocket();
    const Outcome unknown = run("do prt 3 offline");
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.out, "");
    EXPECT_EQ(unknown.err, "zovsim: there is no verb 'prt'; did you mean 'port'?\n");
    writeFile("/tmp/commands", "port 3 offline\n\nprt 3 online\n");
    const Outcome lines = run("do - </tmp/commands");
    EXPECT_EQ(lines.exitCode, 1);
    EXPECT_THAT(lines.err, StartsWith("zovsim: line 3: there is no verb 'prt'"));
    EXPECT_EQ(run("do get Oper.UserPort.0.3.OperState").out, "Online\n");
}

TEST(Do, ADumpIsAScenarioOfTheSwitchAsItIs) {
    Serving serving("serve --profile fabric-2 --paused");
    zovsimtest::goOverTheSocket();
    EXPECT_EQ(run("do port 3 offline").exitCode, 0);
    const Outcome dump = run("dump >/tmp/now.toml");
    EXPECT_EQ(dump.exitCode, 0) << dump.err;
    EXPECT_THAT(zovsimtest::contentsOf("/tmp/now.toml"), StartsWith("profile = \"fabric-2\"\n"));
    EXPECT_EQ(run("validate /tmp/now.toml").out, "/tmp/now.toml: good, 0 steps\n");
    EXPECT_EQ(serving.endBy(SIGTERM), 0);
    Serving again("serve --paused --scenario /tmp/now.toml");
    EXPECT_EQ(run("dump").out, zovsimtest::contentsOf("/tmp/now.toml"));
}

TEST(Commands, OfSeveralArgumentsEachIsAWord) {
    EXPECT_EQ(zovsim::commandOf(Words{"port 3 offline"}), "port 3 offline");
    EXPECT_EQ(zovsim::commandOf(Words{"port", "3", "offline"}), "port 3 offline");
    EXPECT_EQ(zovsim::commandOf(Words{"deliver", "40", "CPU too hot"}), "deliver 40 \"CPU too hot\"");
    EXPECT_EQ(zovsim::commandOf(Words{"rule", "add", "value=a b"}), "rule add value=\"a b\"");
    EXPECT_EQ(zovsim::commandOf(Words{"set", "Key", ""}), "set Key \"\"");
    EXPECT_EQ(zovsim::commandOf(Words{"set", "Key", "#1"}), "set Key \"#1\"");
    EXPECT_EQ(zovsim::commandOf(Words{"set", "Key", "a\\b c"}), "set Key \"a\\\\b c\"");
    EXPECT_EQ(zovsim::commandOf(Words{"set", "Key", "\"a b\""}), "set Key \"a b\"") << "quoted by the person";
    EXPECT_EQ(zovsim::commandOf(Words{"rule", "add", "do=\"who #\""}), "rule add do=\"who #\"") << "likewise";
    EXPECT_EQ(zovsim::commandOf(Words{"fault", "say \"hi\" twice"}), "fault \"say \\\"hi\\\" twice\"");
    EXPECT_EQ(zovsim::commandOf(Words{"fault", "x y\""}), "fault \"x y\\\"\"");
}

TEST(Commands, NoArgumentBecomesASecondCommand) {
    EXPECT_EQ(zovsim::commandOf(Words{"fault", "x\nreboot"}), "fault \"x\\x0areboot\"");
    EXPECT_EQ(zovsim::commandOf(Words{"fault", "\"x\nreboot\""}), "fault \"x\\x0areboot\"");
    EXPECT_EQ(zovsim::commandOf(Words{"rule", "add", "do=who\nfault A\r"}), "rule add do=\"who\\x0afault A\\x0d\"");
}

TEST(Commands, TheSocketIsTheOneAskedForOrThatOfTheEnvironmentOrTheUsers) {
    setenv("XDG_RUNTIME_DIR", "/tmp", 1);
    unsetenv("ZOVSIM_SOCKET");
    EXPECT_EQ(zovsim::socketPath(std::nullopt), "/tmp/zovsim.socket");
    setenv("ZOVSIM_SOCKET", "", 1);
    EXPECT_EQ(zovsim::socketPath(""), "/tmp/zovsim.socket");
    setenv("ZOVSIM_SOCKET", "/tmp/mine", 1);
    EXPECT_EQ(zovsim::socketPath(std::nullopt), "/tmp/mine");
    EXPECT_EQ(zovsim::socketPath("/tmp/asked"), "/tmp/asked");
}
