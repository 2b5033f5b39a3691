#include "tools/zovsim/playing.h"

#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <unistd.h>

#include <gmock/gmock.h>

#include "sim/Server.h"
#include "tests/sim/Client.h"
#include "tests/support/Wait.h"
#include "tools/zovsim/scenarios.h"
#include "tools/zovsim/speed.h"

using simtest::Client;
using support::waitUntil;
using testing::HasSubstr;
using zovsim::Playing;

namespace {

/// What a program prints, in a file of the test's own.
class Printed {
public:
    Printed() : output(dup(fileno(_file))) {}
    ~Printed() {
        close(output.descriptor());
        static_cast<void>(std::fclose(_file));
    }
    Printed(const Printed &) = delete;
    Printed &operator=(const Printed &) = delete;

    static std::string text() {
        std::ifstream file("/tmp/printed");
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::FILE *_file = std::fopen("/tmp/printed", "we");

public:
    dcache::Output output;
};

sim::Scenario scenario(const std::string &text) {
    std::ofstream("/tmp/scenario.toml") << text;
    return zovsim::scenarioNamed("/tmp/scenario.toml");
}

} // namespace

TEST(Playing, EachStepComesWhenTheClockShowsItsTime) {
    const sim::Scenario day = scenario("[[step]]\nat = 10\ndo = 'get Oper.Switch.DomainID'\n"
                                       "[[step]]\nat = 20\ndo = 'port 3 offline'\n");
    const auto device = zovsim::makeDevice(day, 0);
    device->setPace(sim::Pace::paused);
    Printed printed;
    zovsim::Log log(printed.output, false);
    const Playing playing(*device, day, log);
    device->passTime(std::chrono::seconds(10));
    EXPECT_TRUE(waitUntil([] { return Printed::text() == "10 s: get Oper.Switch.DomainID\n    1\n"; }));
    EXPECT_FALSE(playing.isOver());
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Online");
    device->passTime(std::chrono::seconds(11));
    EXPECT_TRUE(waitUntil([&] { return playing.isOver(); }));
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_EQ(device->pace(), sim::Pace::paused);
}

TEST(Playing, AsFastAsPossibleEachStepWaitsUntilClientsHaveTakenWhatTheOneBeforeTold) {
    const sim::Scenario day =
        scenario("[[step]]\nat = 1\nevery = '1 h'\nrepeat = 3\ndo = ['port 3 offline', 'port 3 online']\n");
    const auto device = zovsim::makeDevice(day, 0);
    Client client;
    std::vector<long> uptimes; // when it heard of each
    client.inCallback([&](void *, zov_event_s *) { uptimes.push_back(device->uptime()); });
    ASSERT_EQ(client.registerFor({14, 15}), 0);
    device->setPace(sim::Pace::driven);
    Printed printed;
    zovsim::Log log(printed.output, true);
    const Playing playing(*device, day, log);
    EXPECT_TRUE(waitUntil([&] { return playing.isOver(); }));
    EXPECT_EQ(device->pace(), sim::Pace::running) << "for who comes then";
    EXPECT_EQ(uptimes, (std::vector<long>{3601, 3601, 7201, 7201, 10801, 10801}));
    EXPECT_EQ(Printed::text(), "") << "quiet";
}

TEST(Playing, AClientThatTakesNothingIsWaitedForOnce) {
    const sim::Scenario day =
        scenario("[[step]]\nat = 1\nevery = 1\nrepeat = 50\ndo = ['port 3 offline', 'port 3 online']\n");
    const auto device = zovsim::makeDevice(day, 0);
    sim::ServerOptions options;
    options.socketPath = "/tmp/socket";
    const auto server = sim::serve(*device, options);
    setenv("ZOVSIM_SOCKET", "/tmp/socket", 1);
    std::promise<void> enough;
    const std::shared_future<void> isEnough = enough.get_future().share();
    Client client;
    client.inCallback([&](void *, zov_event_s *) { isEnough.wait(); });
    ASSERT_EQ(client.registerFor({14, 15}), 0);
    device->setPace(sim::Pace::driven);
    Printed printed;
    zovsim::Log log(printed.output, true);
    std::chrono::steady_clock::duration took{};
    {
        const auto begin = std::chrono::steady_clock::now();
        const Playing playing(*device, day, log, {[] {}, [] {}, std::chrono::milliseconds(300)});
        EXPECT_TRUE(waitUntil([&] { return playing.isOver(); }));
        took = std::chrono::steady_clock::now() - begin;
    }
    EXPECT_LT(took, 50 * std::chrono::milliseconds(200)) << "at the least, if each step waited";
    enough.set_value();
    EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
}

TEST(Playing, EndsInTheMiddleOfAScenario) {
    const sim::Scenario day = scenario("[[step]]\nat = 1\nevery = 1\ndo = 'port 3 offline'\n");
    const auto device = zovsim::makeDevice(day, 0);
    Printed printed;
    zovsim::Log log(printed.output, false);
    unsigned looks = 0;
    {
        device->setPace(sim::Pace::driven); // for ever
        const Playing playing(*device, day, log, {[] {}, [&] { ++looks; }});
        EXPECT_TRUE(waitUntil([] { return Printed::text().find("20 s: ") != std::string::npos; }));
    }
    EXPECT_GE(looks, 20U);
}

TEST(Log, GoesOnWhenNobodyReadsItAndKeepsQuietFromThenOn) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    std::signal(SIGPIPE, SIG_IGN);
    close(ends[0]);
    dcache::Output output(ends[1]);
    zovsim::Log log(output, false);
    log.tell("once");
    const Printed printed;
    ASSERT_EQ(dup2(printed.output.descriptor(), ends[1]), ends[1]); // somebody would read it now
    log.tell("twice");
    EXPECT_EQ(Printed::text(), "");
    close(ends[1]);
}

TEST(Speed, IsANumberOrMax) {
    EXPECT_EQ(zovsim::parseSpeed("max")->pace, sim::Pace::driven);
    EXPECT_EQ(zovsim::parseSpeed("0.5")->factor, 0.5);
    EXPECT_EQ(zovsim::parseSpeed("1000000")->factor, 1e6);
    for (const char *wrong : {"", "0", "-1", "1e3", "1000000.5", "nan", "inf", "0x10", "1.2.3", ".", "10 ", "maximum"})
        EXPECT_FALSE(zovsim::parseSpeed(wrong).has_value()) << wrong;
    EXPECT_EQ(zovsim::speedWords({sim::Pace::running, 1}), "in real time");
    EXPECT_EQ(zovsim::speedWords({sim::Pace::running, 0.5}), "0.5 times as fast as real time");
    EXPECT_EQ(zovsim::speedWords({sim::Pace::driven, 1}), "as fast as possible");
    EXPECT_EQ(zovsim::speedWords({sim::Pace::paused, 1}), "paused");
}

TEST(Seed, IsWhatRulesWithoutOneDrawFrom) {
    const auto seedOfRule = [](uint64_t seed) {
        const auto device = zovsim::makeDevice(zovsim::scenarioOfProfile("fixed-24"), seed);
        sim::Fault fault;
        fault.chance = 50;
        fault.result = 99;
        const int rule = device->addFault(fault);
        return device->faults().at(rule).seed;
    };
    EXPECT_EQ(seedOfRule(0), 1U);
    EXPECT_EQ(seedOfRule(7), 7000001U);
}

TEST(ScenarioNames, AreFilesOrShippedOnes) {
    EXPECT_EQ(zovsim::scenarioNamed("demo").fileName, "demo.toml");
    ASSERT_EQ(chdir("/tmp"), 0);
    std::ofstream("/tmp/storm") << "profile = 'fixed-128'\n";
    std::ofstream("/tmp/mine") << "profile = 'fixed-128'\n";
    EXPECT_EQ(zovsim::scenarioNamed("storm").profile, "fixed-24") << "shipped";
    EXPECT_EQ(zovsim::scenarioNamed("./storm").profile, "fixed-128");
    EXPECT_EQ(zovsim::scenarioNamed("mine").profile, "fixed-128");
    EXPECT_THROW(zovsim::scenarioNamed("demo.toml"), std::runtime_error) << "a file that is not there";
}
