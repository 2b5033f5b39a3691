#include "tools/dcache/topology/graph.h"

#include <gmock/gmock.h>

#include "tests/tools/topology/Samples.h"

using namespace dcache;
using support::Sample;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// "1:0=2:3", a "!" behind the switch that does not tell of it.
std::vector<std::string> linksOf(const Topology &topology) {
    std::vector<std::string> links;
    for (const Connection &connection : topology.connections)
        for (const Cable &cable : connection.cables)
            links.push_back(fmt::format("{}{}:{}={}{}:{}", connection.domains[0], cable.toldBy[0] ? "" : "!",
                                        cable.ports[0], connection.domains[1], cable.toldBy[1] ? "" : "!",
                                        cable.ports[1]));
    return links;
}

} // namespace

TEST(Graph, ALinkThatBothSwitchesTellOfIsOneLink) {
    Sample sample(2);
    sample.tell(1, "0", "2:3");
    sample.tell(2, "3", "1:0");
    const Topology topology = sample.topology();
    EXPECT_THAT(linksOf(topology), ElementsAre("1:0=2:3"));
    EXPECT_EQ(topology.connections.front().onlyTeller(), 0u);
    EXPECT_EQ(topology.linkCount(), 1u);
}

TEST(Graph, ALinkThatOneSwitchTellsOfIsALinkToo) {
    Sample sample(3);
    sample.tell(1, "0", "2:3");
    sample.tell(3, "7", "2:8");
    const Topology topology = sample.topology();
    EXPECT_THAT(linksOf(topology), ElementsAre("1:0=2!:3", "2!:8=3:7"));
    EXPECT_EQ(topology.connections[0].onlyTeller(), 1u);
    EXPECT_EQ(topology.connections[1].onlyTeller(), 3u);
}

TEST(Graph, ParallelLinksAreOneConnectionInTheOrderOfThePorts) {
    Sample sample(2);
    sample.tell(2, "3", "1:10");
    sample.tell(2, "4", "1:9");
    sample.tell(1, "9", "2:4");
    sample.tell(1, "10", "2:3");
    const Topology topology = sample.topology();
    EXPECT_THAT(linksOf(topology), ElementsAre("1:9=2:4", "1:10=2:3"));
    EXPECT_EQ(topology.connections.size(), 1u);
    EXPECT_EQ(topology.linkCount(), 2u);
}

TEST(Graph, LeadingZerosDoNotTellPortsApart) {
    Sample sample(2);
    sample.tell(1, "00", "2:03");
    sample.tell(2, "3", "01:0");
    EXPECT_THAT(linksOf(sample.topology()), ElementsAre("1:0=2:3"));
}

TEST(Graph, AnEndWithoutAPortIsFilledInFromTheOther) {
    Sample sample(2);
    sample.tell(1, "5", "2");
    sample.tell(2, "6", "1");
    EXPECT_THAT(linksOf(sample.topology()), ElementsAre("1:5=2:6"));
}

TEST(Graph, AnExactMatchGoesBeforeOneThatIsOpen) {
    Sample sample(2);
    sample.tell(1, "5", "2");
    sample.tell(1, "6", "2:8");
    sample.tell(2, "8", "1:6");
    sample.tell(2, "9", "1:5");
    EXPECT_THAT(linksOf(sample.topology()), ElementsAre("1:5=2:9", "1:6=2:8"));
}

TEST(Graph, ANeighbourMayBeToldByTheNameOfASwitch) {
    Sample sample(2);
    sample.tell(1, "5", "10:00:00:C0:DD:00:A1:02");
    sample.tell(2, "6", "100000c0dd00a101");
    EXPECT_THAT(linksOf(sample.topology()), ElementsAre("1:5=2:6"));
}

TEST(Graph, ANeighbourThatLeadsToNoSwitchIsKeptAsText) {
    for (const char *neighbour : {"", "somewhere", "0:1", "240:1", "2:", "2:3:4", "-2:1", "2 :1",
                                  "20:00:00:C0:DD:00:A1:01", "1:4", "99999999999999999999:1"}) {
        Sample sample(2);
        sample.tell(1, "7", neighbour);
        const Topology topology = sample.topology();
        EXPECT_THAT(topology.connections, IsEmpty()) << neighbour;
        ASSERT_EQ(topology.strays.size(), 1u) << neighbour;
        EXPECT_EQ(topology.strays.front().domain, 1u);
        EXPECT_EQ(topology.strays.front().port, "7");
        EXPECT_EQ(topology.strays.front().neighbour, neighbour);
        EXPECT_THAT(topology.outOfReach, IsEmpty()) << neighbour;
    }
}

TEST(Graph, DomainsThatAreNoSwitchesOfTheFabricAreOutOfReach) {
    Sample sample(2);
    sample.link(1, 2);
    sample.tell(1, "9", "7:0");
    std::vector<LinkRecord> records = {{1, {{"9", "7:0"}}}, {2, {}}, {5, {}}};
    const Topology topology = makeTopology("", sample.switches, records);
    EXPECT_THAT(topology.outOfReach, ElementsAre(5u, 7u));
    EXPECT_THAT(linksOf(topology), ElementsAre("1:9=7!:0"));
}

TEST(Graph, SwitchesAreInTheOrderOfTheirDomainsWhateverTheOrderOfTheCache) {
    Sample sample(3);
    std::swap(sample.switches[0], sample.switches[2]);
    const Topology topology = sample.topology();
    EXPECT_EQ(topology.switches[0].domain, 1u);
    EXPECT_EQ(topology.switches[2].domain, 3u);
    ASSERT_NE(topology.principal(), nullptr);
    EXPECT_EQ(topology.principal()->domain, 1u);
    ASSERT_NE(topology.local(), nullptr);
    EXPECT_EQ(topology.local()->domain, 2u);
    EXPECT_EQ(topology.find(3)->wwn, Sample::name(3));
    EXPECT_EQ(topology.find(4), nullptr);
}

TEST(Graph, AFabricMayHaveNeitherALocalNorAPrincipalSwitch) {
    const Topology topology = makeTopology("", {}, {});
    EXPECT_EQ(topology.local(), nullptr);
    EXPECT_EQ(topology.principal(), nullptr);
    EXPECT_EQ(sizeOf(topology), "0 switches, 0 links");
}

TEST(Graph, ConnectionsOfASwitchAreThoseAtEitherEnd) {
    const Topology topology = support::ring(4).topology();
    const auto connections = topology.connectionsOf(2);
    ASSERT_EQ(connections.size(), 2u);
    EXPECT_EQ(connections[0]->otherThan(2), 1u);
    EXPECT_EQ(connections[1]->otherThan(2), 3u);
    EXPECT_THAT(topology.connectionsOf(9), IsEmpty());
}

TEST(Graph, NumbersAreDigitsAndNothingElse) {
    EXPECT_EQ(numberIn("0", 255), 0);
    EXPECT_EQ(numberIn("255", 255), 255);
    EXPECT_EQ(numberIn("256", 255), -1);
    EXPECT_EQ(numberIn("99999999999999999999", 65535), -1);
    for (const char *text : {"", " 1", "1 ", "+1", "-1", "0x1", "1.0"})
        EXPECT_EQ(numberIn(text, 255), -1) << text;
}

TEST(Graph, CountsAreInTheSingularForOneOnly) {
    EXPECT_EQ(counted(1, "switch"), "1 switch");
    EXPECT_EQ(counted(2, "switch"), "2 switches");
    EXPECT_EQ(counted(0, "link"), "0 links");
    EXPECT_EQ(sizeOf(support::ring(3).topology()), "3 switches, 3 links");
}
