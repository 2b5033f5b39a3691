// The scenarios in scenarios/: each is loaded and played on its clock, and does what its first comment says.

#include <algorithm>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "sim/scenario/Player.h"
#include "sim/verbs/perform.h"
#include "tests/sim/Client.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/scenario/Reading.h"

using simtest::Answer;
using simtest::Client;
using simtest::Lines;
using Codes = std::vector<int32_t>;

namespace {

/// All that the scenarios send.
constexpr std::initializer_list<int32_t> kAllCodes = {1,  3,  7,  13, 14, 15, 28, 29, 32, 33, 34, 35,
                                                      36, 37, 39, 40, 50, 76, 77, 79, 80, 82, 200};

sim::Scenario shipped(const std::string &name) {
    const std::string file = std::string(SHIPPED_SCENARIOS) + "/" + name + ".toml";
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_TRUE(in.good()) << file;
    return sim::readScenario(text.str(), name + ".toml");
}

/// A scenario being played, and a client that hears all of it.
class Play {
public:
    explicit Play(const std::string &name)
        : _scenario(shipped(name)), device(sim::makeSwitch(_scenario)), player(*device, _scenario) {
        EXPECT_EQ(client.registerFor(kAllCodes), 0);
    }

    /// The codes of what is heard until this many seconds after the beginning.
    Codes heardUntil(long seconds) {
        const std::chrono::milliseconds end = std::chrono::seconds(kFirstUptime + seconds);
        for (auto due = player.next(); due && *due <= end; due = player.next())
            for (const sim::Played &played : player.playNext())
                EXPECT_FALSE(played.isRefused()) << played.line();
        if (device->clock() < end)
            device->passTime(std::chrono::seconds(0), end - device->clock());
        const Codes all = client.codes(*device);
        Codes heard(all.begin() + static_cast<std::ptrdiff_t>(_heard), all.end());
        _heard = all.size();
        return heard;
    }

    bool isOver() const { return !player.next(); }
    std::string get(const std::string &key) const { return client.get(key).value; }

private:
    static constexpr long kFirstUptime = 3600;

    const sim::Scenario _scenario;
    size_t _heard = 0;

public:
    const std::unique_ptr<sim::Simulator> device;
    sim::Player player;
    Client client;
};

constexpr const char *kDomains = "Oper.Eport.LsdbRecordList.255";
constexpr const char *kPrincipal = "Oper.Switch.WhoIsPrincipal";

long count(const Codes &codes, int32_t code) {
    return static_cast<long>(std::count(codes.begin(), codes.end(), code));
}

} // namespace

TEST(Shipped, DemoIsAFabricOnABadDay) {
    Play play("demo");
    EXPECT_EQ(play.heardUntil(10), Codes{14});
    EXPECT_EQ(play.heardUntil(20), (Codes{7, 1}));
    EXPECT_EQ(play.heardUntil(30), (Codes{79, 79, 79}));
    EXPECT_EQ(play.heardUntil(40), (Codes{7, 1}));
    EXPECT_EQ(play.get(kDomains), "1,2,10");
    EXPECT_EQ(play.get(kPrincipal), "100000C0DD00C001");
    EXPECT_EQ(play.heardUntil(50), Codes{7});
    EXPECT_EQ(play.heardUntil(60), (Codes{7, 1}));
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.10.Hops"), "255");
    EXPECT_EQ(play.heardUntil(70), (Codes{7, 1}));
    EXPECT_EQ(play.heardUntil(80), Codes{1});
    EXPECT_EQ(play.get(kPrincipal), "100000C0DD00B201");
    EXPECT_EQ(play.heardUntil(90), Codes{80});
    EXPECT_EQ(play.heardUntil(100), Codes{79});
    EXPECT_EQ(play.heardUntil(110), (Codes{7, 1}));
    EXPECT_EQ(play.heardUntil(119), Codes{});
    EXPECT_EQ(play.heardUntil(120), Codes{40});
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, TwoSwitchLosesItsNeighbourForAMinute) {
    Play play("two-switch");
    EXPECT_EQ(play.heardUntil(60), (Codes{14, 7}));
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.2.NumberOfLinks"), "2");
    EXPECT_EQ(play.heardUntil(120), (Codes{7, 14}));
    EXPECT_EQ(play.heardUntil(180), (Codes{14, 7, 1, 80}));
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.2.Hops"), "255");
    EXPECT_NE(play.client.get("Oper.NameServerAll.2.FirstNsEntry").status, 0);
    EXPECT_EQ(play.heardUntil(240), (Codes{14, 7, 1, 79}));
    EXPECT_EQ(play.get("Oper.NameServerAll.2.FirstNsEntry"), "020000");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, DirectorLosesABladeAndGetsANewOne) {
    Play play("director-8-blades");
    EXPECT_EQ(play.heardUntil(60), (Codes{39, 82}));
    EXPECT_EQ(play.get("Oper.UserPort.0.48.OperState"), "Offline");
    EXPECT_EQ(play.heardUntil(120), Codes{29});
    EXPECT_EQ(play.get("Oper.Blade.7.OperState"), "NotInstalled");
    for (int port = 48; port < 64; ++port)
        EXPECT_EQ(play.get("Oper.UserPort.0." + std::to_string(port) + ".OperState"), "NotInstalled") << port;
    EXPECT_EQ(play.heardUntil(600), Codes{28});
    EXPECT_EQ(play.get("Oper.Blade.7.BoardSerialNum"), "0331B00017");
    EXPECT_EQ(play.get("Oper.UserPort.0.63.OperState"), "Offline");
    EXPECT_EQ(play.get("Oper.UserPort.0.48.SFPData0_31"), "");
    EXPECT_EQ(play.heardUntil(660), (Codes{76, 76}));
    EXPECT_EQ(play.get("Oper.UserPort.0.49.SFPSerialNumber"), "FNS0331A00000149");
    EXPECT_EQ(play.heardUntil(720), (Codes{14, 14}));
    EXPECT_EQ(play.get("Config.UserPort.0.49.Type"), "E");
    EXPECT_EQ(play.get("Oper.UserPort.0.49.OperState"), "Online");
    EXPECT_EQ(play.heardUntil(1200), (Codes{29, 28}));
    EXPECT_EQ(play.get("Oper.Blade.6.BoardSerialNum"), "0331B00016");
    EXPECT_EQ(play.heardUntil(1500), Codes{29});
    EXPECT_EQ(play.get("Oper.UserPort.0.15.OperState"), "NotInstalled");
    EXPECT_EQ(play.heardUntil(1560), Codes{28});
    EXPECT_EQ(play.get("Oper.UserPort.0.15.OperState"), "Offline");
    EXPECT_EQ(play.heardUntil(1860), (Codes{29, 28}));
    EXPECT_EQ(play.get("Oper.Blade.7.Type"), "CPU");
    EXPECT_EQ(play.heardUntil(1920), Codes{28});
    EXPECT_EQ(play.get("Oper.Blade.7.Type"), "IO");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, DirectorHasABadDay) {
    Play play("director");
    EXPECT_EQ(play.heardUntil(10), (Codes{14, 14}));
    EXPECT_EQ(play.heardUntil(30), (Codes{15, 76, 77, 14}));
    EXPECT_EQ(play.heardUntil(60), (Codes{14, 29, 28, 50, 50, 33}));
    play.heardUntil(110);
    EXPECT_EQ(play.get("Oper.Switch.FaultList"), "FW_POST_FAIL");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, ZoningIsChangedByAnotherClient) {
    Play play("zoning");
    EXPECT_EQ(play.heardUntil(19), Codes{3});
    EXPECT_EQ(play.heardUntil(29), Codes{3});
    EXPECT_EQ(play.get("Oper.Zoning.ActiveZoneSet"), "day");
    EXPECT_EQ(play.heardUntil(39), Codes{3});
    EXPECT_EQ(play.heardUntil(59), (Codes{3, 3}));
    EXPECT_EQ(play.get("Oper.Zoning.ActiveZoneSet"), "night");
    EXPECT_EQ(play.heardUntil(70), (Codes{3, 3}));
    EXPECT_EQ(play.get("Oper.Zoning.ActiveZoneSet"), "");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, PowerLossEndsInARebootAndWithANewSupply) {
    Play play("power-loss");
    ASSERT_EQ(play.client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(play.heardUntil(60), Codes{33});
    EXPECT_EQ(play.heardUntil(120), Codes{33});
    EXPECT_EQ(play.get("Oper.Chassis.0.PowerSupply.1"), "NotInstalled");
    EXPECT_EQ(play.heardUntil(300), (Codes{33, 33, 33, 33, 82}));
    EXPECT_EQ(play.device->adminModeHolder(), play.client.handle);
    EXPECT_EQ(play.heardUntil(360), Codes{32});
    EXPECT_EQ(play.get("Oper.Switch.OperState"), "Offline");
    EXPECT_EQ(play.device->adminModeHolder(), 0U);
    EXPECT_EQ(play.heardUntil(900), (Codes{33, 33, 33, 33, 33, 82, 32}));
    EXPECT_EQ(play.get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(play.get("Oper.Switch.FaultList"), "");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, FlappingPortGoesThirtyTimesAndComesBackOneTimeLess) {
    Play play("flapping-port");
    EXPECT_EQ(play.heardUntil(59), Codes{});
    EXPECT_EQ(play.heardUntil(60), (Codes{14, 80}));
    EXPECT_EQ(play.get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_EQ(play.heardUntil(65), (Codes{14, 79}));
    EXPECT_EQ(play.get("Oper.UserPort.0.3.OperState"), "Online");
    const Codes rest = play.heardUntil(3600);
    EXPECT_EQ(count(rest, 14), 29 + 28);
    EXPECT_EQ(count(rest, 80), 29);
    EXPECT_EQ(count(rest, 79), 28);
    EXPECT_EQ(play.get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, FabricsMergeAndSegment) {
    Play play("merge-and-segment");
    EXPECT_EQ(play.get(kDomains), "1");
    EXPECT_EQ(play.heardUntil(60), (Codes{14, 7, 1, 79}));
    EXPECT_EQ(play.get(kDomains), "1,10,11");
    EXPECT_EQ(play.get(kPrincipal), "100000C0DD00C001");
    EXPECT_EQ(play.get("Oper.NameServerAll.11.FirstNsEntry"), "0B0000");
    EXPECT_EQ(play.heardUntil(120), (Codes{7, 1, 80}));
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.11.Hops"), "255");
    EXPECT_EQ(play.heardUntil(180), (Codes{7, 1, 80, 14}));
    EXPECT_EQ(play.get(kPrincipal), play.get("Oper.Switch.WWN"));
    EXPECT_EQ(play.get(kDomains), "1,10,11");
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.10.Hops"), "255");
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, LocksAreContended) {
    Play play("lock-contention");
    const auto locks = [&] { return play.client.set("Cmd.Zoning.FabricLock.77"); };
    ASSERT_EQ(play.client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_NE(locks(), 0);
    EXPECT_EQ(simtest::listedZonesets(play.client), (Lines{"day", "night"}));
    EXPECT_EQ(play.get("Oper.Zoning.ActiveZoneSet"), "day");
    EXPECT_EQ(play.heardUntil(60), Codes{3});
    EXPECT_EQ(play.get("Oper.Zoning.ActiveZoneSet"), "night");
    EXPECT_NE(locks(), 0);
    play.heardUntil(120);
    EXPECT_EQ(locks(), 0);
    play.heardUntil(180);
    EXPECT_EQ(play.device->adminModeHolder(), sim::kOtherClient);
    EXPECT_NE(play.client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(play.device->zoningLockHolder(), 0U);
    play.heardUntil(240);
    EXPECT_EQ(play.client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(locks(), 14);
    EXPECT_EQ(locks(), 14);
    EXPECT_EQ(locks(), 0);
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, SlowNameServerMakesClientsWait) {
    using Clock = std::chrono::steady_clock;
    Play play("slow-name-server");
    const auto walk = [&] {
        std::vector<int32_t> statuses;
        std::string address = play.get("Oper.NameServerAll.7.FirstNsEntry");
        for (int i = 0; i < 6; ++i) {
            const Answer next = play.client.get("Oper.NameServerAll.7.NextNsEntry." + address);
            statuses.push_back(next.status);
            address = next.status == 0 ? next.value : address;
        }
        return statuses;
    };
    const auto begin = Clock::now();
    EXPECT_EQ(walk(), (std::vector<int32_t>{0, 0, 0, 0, 20, 0}));
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(6 * 50)); // all but the one that is not answered
    const long uptime = play.device->uptime();
    EXPECT_EQ(play.get("Oper.TopologyAll.5.PortEntries").empty(), false);
    EXPECT_EQ(play.device->uptime(), uptime + 10);
    EXPECT_EQ(play.heardUntil(60), (Codes{7, 1, 79, 79}));
    EXPECT_EQ(play.heardUntil(120), Codes{});
    EXPECT_TRUE(play.device->faults().empty());
    const long before = play.device->uptime();
    EXPECT_EQ(play.get("Oper.TopologyAll.5.PortEntries").empty(), false);
    EXPECT_EQ(play.device->uptime(), before);
    EXPECT_EQ(play.heardUntil(160), (Codes{7, 1, 80, 7, 1, 79, 79}));
    EXPECT_EQ(play.heardUntil(180), (Codes{80, 80}));
    EXPECT_EQ(walk(), (std::vector<int32_t>{0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(play.isOver());
}

TEST(Shipped, StormIsHeardInFullAndLeavesNothingBehind) {
    Play play("storm");
    const Codes heard = play.heardUntil(3600);
    EXPECT_EQ(count(heard, 14), 60 * 2 + 60 * 2); // port 2 is online already the first time, and once more at the end
    EXPECT_EQ(count(heard, 33), 120);
    EXPECT_EQ(count(heard, 50), 120);
    EXPECT_EQ(count(heard, 79), 60);
    EXPECT_EQ(count(heard, 80), 60);
    EXPECT_EQ(count(heard, 200), 10);
    EXPECT_EQ(heard.size(), 240U + 120U + 120U + 60U + 60U + 10U);
    EXPECT_TRUE(play.isOver());
    const auto fresh = sim::create();
    for (const std::string &key : fresh->keys())
        EXPECT_EQ(play.device->get(key), fresh->get(key)) << key;
}

TEST(Shipped, ScaleHasAllTheDomainsThereCanBe) {
    Play play("scale-239-domains");
    EXPECT_EQ(play.device->peers().size(), 238U);
    EXPECT_EQ(play.device->nameServer().size(), 230U * 16U);
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.239.Hops"), "3");
    EXPECT_EQ(play.get(kPrincipal), "100000C0DD39A001");
    EXPECT_EQ(play.heardUntil(60), (Codes{7, 1, 80}));
    EXPECT_NE(play.client.get("Oper.Eport.LsdbRecord.239.Hops").status, 0);
    EXPECT_EQ(play.heardUntil(120), (Codes{14, 7}));
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.1.Hops"), "2");
    EXPECT_EQ(play.get("Oper.Eport.LsdbRecord.2.Hops"), "1");
    EXPECT_EQ(play.heardUntil(180), (Codes{7, 1}));
    EXPECT_EQ(play.get(kPrincipal), "100000C0DD39A002");
    EXPECT_TRUE(play.isOver());
}

namespace {

class EveryShipped : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(All, EveryShipped,
                         testing::Values("demo", "two-switch", "director", "zoning", "director-8-blades", "power-loss",
                                         "flapping-port", "merge-and-segment", "lock-contention", "slow-name-server",
                                         "storm", "scale-239-domains"));

} // namespace

TEST_P(EveryShipped, IsPlayedAlikeEveryTime) {
    std::vector<Lines> logs;
    for (int run = 0; run < 2; ++run) {
        const sim::Scenario scenario = shipped(GetParam());
        const auto device = sim::makeSwitch(scenario);
        sim::Player player(*device, scenario);
        Lines &log = logs.emplace_back();
        while (player.next())
            for (const sim::Played &played : player.playNext())
                log.push_back(played.line());
        log.push_back(sim::dumpScenario(*device));
    }
    EXPECT_EQ(logs[0], logs[1]);
    EXPECT_GT(logs[0].size(), 3U); // a step or more, and the switch at the end
}
