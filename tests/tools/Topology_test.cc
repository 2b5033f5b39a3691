// `dcache topology`: commands/topology.cc.
#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using support::runDcache;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::ThrowsMessage;

namespace {

std::string drawn(Picture picture, Lines lines = Lines::ascii) {
    return showTopology(picture, lines, Format::table, false);
}

const std::string kTwin = "Fabric 10:00:00:C0:DD:02:A0:01: 2 switches, 1 link\n"
                          "\n"
                          "DOMAIN  WWN                      PORTS\n"
                          "1       10:00:00:C0:DD:02:A0:01     24  principal; local\n"
                          "`- 2    10:00:00:C0:DD:02:A0:02     24\n"
                          "\n"
                          "LOCAL PORT  TO DOMAIN  ITS PORT\n"
                          "16          2          16\n";

} // namespace

TEST(Topology, TheTextIsDrawnFromTheSwitchesOfTheCacheAndTheLinksOfTheDatabase) {
    const auto twin = sim::create("fabric-2");
    EXPECT_EQ(drawn(Picture::text), kTwin);
}

TEST(Topology, PicturesOfAllThreeSizesHaveAllSwitchesAndLinks) {
    struct Row {
        const char *profile;
        const char *size;
    };
    for (const Row &row : {Row{"fabric-2", "2 switches, 1 link"}, Row{"fabric-12", "12 switches, 21 links"},
                           Row{"fabric-60", "60 switches, 118 links"}}) {
        const auto text = runDcache({"--profile", row.profile, "topology"});
        EXPECT_EQ(text.exitCode, 0);
        EXPECT_THAT(text.out, HasSubstr(row.size));
        const auto dot = runDcache({"--profile", row.profile, "topology", "show", "--format", "dot"});
        EXPECT_EQ(dot.exitCode, 0);
        EXPECT_THAT(dot.out, HasSubstr(row.size));
        EXPECT_THAT(dot.out, StartsWith("graph fabric {\n"));
    }
}

TEST(Topology, ForProgramsAndScriptsItIsSwitchesAndLinks) {
    const auto twin = sim::create("fabric-2");
    const std::string json = showTopology(Picture::text, Lines::ascii, Format::json, false);
    EXPECT_EQ(support::parseJson(json), support::parseJson(R"({
        "fabricWwn": "10:00:00:C0:DD:02:A0:01", "outOfReach": [],
        "switches": [
        {"domain": 1, "wwn": "10:00:00:C0:DD:02:A0:01", "portCount": 24, "local": true, "principal": true},
        {"domain": 2, "wwn": "10:00:00:C0:DD:02:A0:02", "portCount": 24, "local": false, "principal": false}],
        "links": [{"domain": 1, "port": 16, "neighbourDomain": 2, "neighbourPort": 16, "toldByBoth": true}],
        "strayLinks": []})"));
    EXPECT_THAT(showTopology(Picture::text, Lines::ascii, Format::terse, false),
                EndsWith("links.1.domain=1\nlinks.1.port=16\nlinks.1.neighbourDomain=2\nlinks.1.neighbourPort=16\n"
                         "links.1.toldByBoth=true\n"));
}

TEST(Topology, LinksToldInOtherWaysAreForProgramsToo) {
    const auto twin = sim::create("fabric-2");
    const auto answer = [&twin](const char *key, const char *value) {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.times = -1;
        twin->addFault(fault);
    };
    answer("Oper.Eport.LsdbRecord.1.Link.0.Neighbor", "2");
    answer("Oper.Eport.LsdbRecord.2.NumberOfLinks", "2");
    answer("Oper.Eport.LsdbRecord.2.Link.0.Neighbor", "the attic");
    answer("Oper.Eport.LsdbRecord.2.Link.1.LocalPort", "bb_3");
    answer("Oper.Eport.LsdbRecord.2.Link.1.Neighbor", "7:1");
    const auto object = support::parseJson(showTopology(Picture::text, Lines::ascii, Format::json, false));
    EXPECT_EQ(object.at("links"), support::parseJson(R"([
        {"domain": 1, "port": 16, "neighbourDomain": 2, "neighbourPort": null, "toldByBoth": false},
        {"domain": 2, "port": "bb_3", "neighbourDomain": 7, "neighbourPort": 1, "toldByBoth": false}])"));
    EXPECT_EQ(object.at("strayLinks"), support::parseJson(R"([{"domain": 2, "port": 16, "neighbour": "the attic"}])"));
    EXPECT_EQ(object.at("outOfReach"), support::parseJson("[7]"));
}

TEST(Topology, ASwitchThatLinksNoLongerLeadToIsOutOfReach) {
    const auto twin = sim::create("fabric-2");
    twin->disconnect(twin->links().front(), sim::Notify::no);
    EXPECT_EQ(drawn(Picture::text), "Fabric 10:00:00:C0:DD:02:A0:01: 1 switch, 0 links\n"
                                    "\n"
                                    "DOMAIN  WWN                      PORTS\n"
                                    "1       10:00:00:C0:DD:02:A0:01     24  principal; local\n"
                                    "\n"
                                    "Out of reach, though the link-state database names it: 2.\n");
}

TEST(Topology, OfAFabricThatCannotBeReadIsAFailureThatNamesTheArea) {
    const auto twin = sim::create("fabric-2");
    sim::Fault fault;
    fault.key = "Oper.Eport.LsdbRecord.2.WWN";
    fault.status = 7;
    fault.times = -1;
    twin->addFault(fault);
    EXPECT_THAT([] { drawn(Picture::text); }, ThrowsMessage<Failure>(HasSubstr("the fabric data could not be read")));
}

TEST(Topology, OnATerminalInUtf8TheTreeIsDrawnWithLines) {
    const auto lastSwitch = [](const support::Environment &environment) {
        return support::lines(runDcache({"--profile", "fabric-2", "topology"}, support::Stdout::pipe, environment).out)
            .at(4)
            .substr(0, 4);
    };
    EXPECT_EQ(lastSwitch({{"LC_ALL", ""}, {"LC_CTYPE", ""}, {"LANG", "en_US.UTF-8"}}).substr(0, 3), "└");
    EXPECT_EQ(lastSwitch({{"LC_ALL", "C.utf8"}, {"LC_CTYPE", ""}, {"LANG", "C"}}).substr(0, 3), "└");
    EXPECT_EQ(lastSwitch({{"LC_ALL", ""}, {"LC_CTYPE", "de_DE@euro"}, {"LANG", "en_US.UTF-8"}}), "`- 2");
    EXPECT_EQ(lastSwitch({{"LC_ALL", ""}, {"LC_CTYPE", ""}, {"LANG", ""}}), "`- 2");
}

TEST(Topology, OnATerminalItIsTheSameInColour) {
    const support::Environment terminal = {{"TERM", "xterm"}, {"NO_COLOR", ""}, {"LC_ALL", "C"}};
    const auto run = runDcache({"--profile", "fabric-2", "topology"}, support::Stdout::terminal, terminal);
    EXPECT_THAT(run.out, HasSubstr("\x1b[1mprincipal;\x1b[0m \x1b[32mlocal\x1b[0m"));
    EXPECT_EQ(runDcache({"--profile", "fabric-2", "topology"}, support::Stdout::pipe, terminal).out, kTwin);
    const auto dot =
        runDcache({"--profile", "fabric-2", "topology", "--format", "dot"}, support::Stdout::terminal, terminal);
    EXPECT_EQ(dot.out.find('\x1b'), std::string::npos);
    EXPECT_THAT(dot.err, IsEmpty());
}
