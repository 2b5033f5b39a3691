// zovsim serve, the program itself, with clients in this process.
#include <chrono>
#include <sys/stat.h>
#include <thread>

#include <gmock/gmock.h>

#include "sim/Server.h"
#include "tests/sim/Client.h"
#include "tests/tools/zovsim/RunZovsim.h"

using simtest::Client;
using testing::HasSubstr;
using zovsimtest::contentsOf;
using zovsimtest::goOverTheSocket;
using zovsimtest::kSocket;
using zovsimtest::Outcome;
using zovsimtest::Program;
using zovsimtest::run;
using zovsimtest::Serving;
using zovsimtest::toldBy;
using zovsimtest::writeFile;

namespace {

constexpr const char *kPortState = "Oper.UserPort.0.3.OperState";

bool isThere(const char *path) {
    struct stat status = {};
    return lstat(path, &status) == 0;
}

} // namespace

TEST(Serve, TellsAShellWhereTheSwitchIsAndServesIt) {
    Serving serving("serve");
    ASSERT_TRUE(serving.isServed) << serving.err();
    EXPECT_EQ(serving.out().substr(0, serving.out().find('\n')), "export ZOVSIM_SOCKET=/tmp/switch");
    EXPECT_TRUE(serving.says("Serving fixed-24, in real time; seed 0.\n"));
    goOverTheSocket();
    const Client client;
    EXPECT_EQ(client.get(kPortState).value, "Online");
    EXPECT_EQ(toldBy("port 3 offline"), "");
    EXPECT_EQ(client.get(kPortState).value, "Offline");
}

TEST(Serve, TheSwitchMayBeOfAnotherProfile) {
    Serving serving("serve --profile director-8 --seed 12 --quiet");
    EXPECT_EQ(serving.out(), "export ZOVSIM_SOCKET=/tmp/switch\n");
    EXPECT_THAT(run("dump --socket /tmp/switch").out, testing::StartsWith("profile = \"director-8\"\n"));
    EXPECT_EQ(run("serve --profile toaster").exitCode, 2);
    EXPECT_THAT(run("serve --profile toaster").err, HasSubstr("no switch profile 'toaster'; there are: fixed-24"));
}

TEST(Serve, PlaysAScenarioTellsWhatItDoesAndGoesOnServing) {
    writeFile("/tmp/day.toml",
              "[[step]]\nat = 1\ndo = ['port 3 offline', 'port 99 offline', 'get Oper.Switch.DomainID']\n"
              "[[step]]\nat = '10 min'\ndo = 'port 4 offline'\n");
    Serving serving("serve --scenario /tmp/day.toml --speed 10000");
    ASSERT_TRUE(serving.says("600 s: port 4 offline\n"));
    EXPECT_THAT(serving.out(),
                HasSubstr("Serving /tmp/day.toml on fixed-24, 2 steps, 10000 times as fast as real time"));
    EXPECT_THAT(serving.out(), HasSubstr("1 s: port 3 offline\n1 s: get Oper.Switch.DomainID\n    1\n600 s: "));
    EXPECT_THAT(serving.err(), HasSubstr("/tmp/day.toml:3:25: 1 s: port 99 offline: "));
    goOverTheSocket();
    const Client client;
    EXPECT_EQ(client.get(kPortState).value, "Offline");
    EXPECT_EQ(client.get("Oper.UserPort.0.4.OperState").value, "Offline");
}

TEST(Serve, AsFastAsPossiblePlaysADayAtOnceAndThenKeepsRealTime) {
    writeFile("/tmp/day.toml", "[[step]]\nat = 0\nevery = '1 h'\nrepeat = 25\ndo = 'port 3 offline'\n");
    Serving serving("serve --scenario /tmp/day.toml --speed max");
    ASSERT_TRUE(serving.says("86400 s: port 3 offline\n"));
    goOverTheSocket();
    Client client; // whom nobody but a clock that goes by itself would tell anything
    ASSERT_EQ(client.registerFor({14, 15}), 0);
    EXPECT_EQ(toldBy("port 3 online"), "");
    EXPECT_EQ(client.events(1).size(), 1U);
}

TEST(Serve, APausedClockGoesByCommandsOnly) {
    writeFile("/tmp/day.toml", "[[step]]\nat = 5\ndo = 'port 3 offline'\n");
    Serving serving("serve --scenario /tmp/day.toml --paused");
    ASSERT_TRUE(serving.says("1 step, paused"));
    EXPECT_EQ(toldBy("clock pass 4 s"), "");
    EXPECT_THAT(toldBy("clock"), HasSubstr("3604"));
    EXPECT_THAT(serving.out(), Not(HasSubstr("port 3")));
    EXPECT_EQ(toldBy("clock pass 1 s"), "");
    EXPECT_TRUE(serving.says("5 s: port 3 offline\n"));
}

TEST(Serve, EverySignalThatEndsProgramsEndsItWell) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Serving serving("serve --scenario storm");
        ASSERT_TRUE(serving.isServed);
        EXPECT_TRUE(isThere(kSocket));
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(serving.endBy(signal), 0) << serving.err();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_FALSE(isThere(kSocket));
        EXPECT_EQ(serving.err(), "");
    }
}

TEST(Serve, ASignalThatItWasStartedToIgnoreIsIgnored) {
    Serving serving("serve", "trap '' HUP");
    ASSERT_TRUE(serving.isServed);
    kill(serving.id(), SIGHUP);
    EXPECT_EQ(toldBy("port 3 offline"), "");
    EXPECT_EQ(serving.endBy(SIGTERM), 0);
}

TEST(Serve, EndsAlsoWhileAClientWaitsForAClockThatStands) {
    Serving serving("serve --paused");
    ASSERT_TRUE(serving.isServed);
    EXPECT_EQ(toldBy("rule add call=zov_smlGet times=1 delay=1h").find("zovsim:"), std::string::npos);
    goOverTheSocket();
    const Client client;
    int32_t status = 0;
    std::thread waiting([&] { status = client.get(kPortState).status; });
    std::string rules; // the rule has no times left once the call is there
    EXPECT_TRUE(support::waitUntil([&] {
        return zovsim_ask(kSocket, "rule list", &rules) && rules.find("times=0") != std::string::npos;
    })) << rules;
    EXPECT_EQ(serving.endBy(SIGTERM), 0);
    waiting.join();
    EXPECT_NE(status, 0);
    EXPECT_FALSE(isThere(kSocket));
}

TEST(Serve, ASocketHasOneServer) {
    Serving first("serve");
    Program second("serve --socket /tmp/switch");
    EXPECT_EQ(second.wait(), 1);
    EXPECT_EQ(second.err(), "zovsim: /tmp/switch: a switch is served there already\n");
    EXPECT_EQ(toldBy("port 3 offline"), "");
}

TEST(Serve, AfterKillAnotherOneTakesThePlaceAndWhatWasKept) {
    {
        Serving killed("serve --state /tmp/state");
        EXPECT_EQ(toldBy("zoning define zone fig 1:3"), "");
        EXPECT_EQ(killed.endBy(SIGKILL), 128 + SIGKILL);
    }
    EXPECT_TRUE(isThere(kSocket));
    Serving next("serve --state /tmp/state");
    ASSERT_TRUE(next.isServed) << next.err();
    EXPECT_THAT(toldBy("zoning show defined"), HasSubstr("zone fig"));
}

TEST(Serve, WhatCannotBeUsedIsToldAndNothingIsServed) {
    writeFile("/tmp/state", "no state");
    writeFile("/tmp/bad.toml", "profil = 'fixed-24'\n[[step]]\nat = 1\ndo = 'prt 3'\n");
    const std::string place = "--socket /tmp/switch ";
    struct {
        std::string arguments;
        std::string complaint;
    } const bad[] = {
        {place + "--state /tmp/state", "zovsim: /tmp/state: not the state of a switch"},
        {place + "--scenario /tmp/bad.toml", "/tmp/bad.toml:1:1: "},
        {place + "--scenario /tmp/bad.toml", "/tmp/bad.toml:4:6: there is no verb 'prt'; did you mean 'port'?"},
        {place + "--scenario dmo", "zovsim: there is no scenario 'dmo'; shipped are: demo, "},
        {place + "--record /no/such/folder", "zovsim: /no/such/folder: No such file or directory"},
        {"--socket /no/such/switch", "zovsim: /no/such/switch.lock: No such file or directory"},
        {"--socket /tmp/" + std::string(110, 'x'), "the path of a socket has at most 107 characters"},
    };
    for (const auto &[arguments, complaint] : bad) {
        const Outcome outcome = run("serve " + arguments);
        EXPECT_EQ(outcome.exitCode, 1) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_THAT(outcome.err, HasSubstr(complaint)) << arguments;
    }
    EXPECT_FALSE(isThere(kSocket));
}

TEST(Serve, RecordsWhatClientsCallAndHear) {
    const std::string arguments = "serve --record /tmp/trouble.rec";
    {
        Serving serving(arguments);
        ASSERT_TRUE(serving.isServed) << serving.err();
        goOverTheSocket();
        const Client client;
        EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1");
        EXPECT_THAT(contentsOf("/tmp/trouble.rec"), HasSubstr("zov_smlGet(1) = 0: Oper.Switch.DomainID=\"1\"\n"));
        EXPECT_EQ(serving.endBy(SIGTERM), 0);
    }
    const Outcome refused = run(arguments);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "zovsim: /tmp/trouble.rec: is there already; --force goes on with it\n");
    const std::string before = contentsOf("/tmp/trouble.rec");
    Serving again(arguments + " --force");
    EXPECT_EQ(again.endBy(SIGTERM), 0);
    EXPECT_EQ(contentsOf("/tmp/trouble.rec").rfind(before, 0), 0U);
    EXPECT_GT(contentsOf("/tmp/trouble.rec").size(), before.size());
}

TEST(Serve, ARecordingThatCannotGrowIsToldOnceAndTheSwitchGoesOn) {
    Serving serving("serve --record /tmp/trouble.rec", "ulimit -f 2; trap '' XFSZ");
    ASSERT_TRUE(serving.isServed) << serving.err();
    goOverTheSocket();
    const Client client;
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1");
    EXPECT_TRUE(serving.complains("zovsim: the recording ends here: /tmp/trouble.rec: File too large\n"));
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1");
    EXPECT_EQ(serving.endBy(SIGTERM), 0);
    EXPECT_EQ(serving.err(), "zovsim: the recording ends here: /tmp/trouble.rec: File too large\n");
}
