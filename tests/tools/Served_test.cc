// The program with a switch that another process serves: this one.
#include <gmock/gmock.h>

#include "sim/Server.h"
#include "tests/tools/RunDcache.h"

using support::DcacheRun;
using support::runDcache;
using testing::HasSubstr;

namespace {

const support::Environment kThere = {{"ZOVSIM_SOCKET", "/tmp/switch"}};

class Served : public testing::Test {
protected:
    static sim::ServerOptions options() {
        sim::ServerOptions chosen;
        chosen.socketPath = kThere[0].second;
        return chosen;
    }

    const std::unique_ptr<sim::Simulator> _switch = sim::create("director-8");
    const std::unique_ptr<sim::Server> _server = sim::serve(*_switch, options());
};

} // namespace

TEST_F(Served, ItsSwitchIsTheOneThatIsShown) {
    const auto run = runDcache({"chassis", "-o", "terse"}, support::Stdout::pipe, kThere);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("slots=8\n"));
}

TEST_F(Served, WhatIsDoneToItStays) {
    const auto run = runDcache({"config", "edit", "Config.Services.TelnetEnable=False"}, support::Stdout::pipe, kThere);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out + run.err, testing::Not(HasSubstr("simulated")));
    EXPECT_EQ(_switch->get("Config.Services.TelnetEnable"), "False");
}

TEST_F(Served, ItsChangesAreWatched) {
    DcacheRun run({"watch"}, support::Stdout::pipe, kThere);
    ASSERT_TRUE(run.waitForStderr("Loaded into the cache"));
    _switch->set("Oper.UserPort.0.3.OperState", "Offline");
    ASSERT_TRUE(run.waitForStdout("port 3 went from online to offline\n"));
    run.sendSignal(SIGINT);
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(Served, ScenariosAndProfilesAreNotForIt) {
    for (const char *option : {"--scenario", "--profile"}) {
        const std::string name = option == std::string("--profile") ? "fixed-24" : "demo";
        const auto run = runDcache({"switch", option, name}, support::Stdout::pipe, kThere);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.out, testing::IsEmpty());
        EXPECT_THAT(run.err, testing::AllOf(HasSubstr("/tmp/switch"), HasSubstr("zovsim serve --scenario NAME")));
    }
    EXPECT_EQ(_switch->connectionCount(), 0U);
}
