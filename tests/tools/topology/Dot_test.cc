#include "tools/dcache/topology/dot.h"

#include <gmock/gmock.h>
#include <sstream>

#include "tests/tools/topology/Samples.h"

using namespace dcache;
using support::Sample;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

std::string lineWith(const std::string &text, const std::string &part) {
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (line.find(part) != std::string::npos)
            return line;
    return "";
}

size_t countOf(const std::string &text, const std::string &part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

} // namespace

TEST(TopologyDot, IsAGraphWithABoxPerSwitchAndALinePerConnection) {
    const std::string dot = topologyDot(support::coresAndEdges(60, 4).topology());
    EXPECT_THAT(dot, StartsWith("graph fabric {\n"));
    EXPECT_THAT(dot, testing::EndsWith("}\n"));
    EXPECT_EQ(countOf(dot, "24 ports"), 60u);
    EXPECT_EQ(countOf(dot, " -- d"), 118u);
    EXPECT_THAT(dot, HasSubstr("label=\"Fabric 10:00:00:C0:DD:00:A1:01: 60 switches, 118 links\\n \""));
}

TEST(TopologyDot, ABoxTellsDomainNamePortsAndWhatIsSpecialAboutTheSwitch) {
    Sample sample(4, 1, 2);
    sample.switches[2].ports = 1;
    const std::string dot = topologyDot(sample.topology());
    EXPECT_THAT(lineWith(dot, "  d1 ["), AllOf(HasSubstr("<b>1</b>"), HasSubstr("<b>principal</b>"),
                                               HasSubstr("10:00:00:C0:<br/>DD:00:A1:01<br/>24 ports"),
                                               HasSubstr("tooltip=\"10:00:00:C0:DD:00:A1:01\"")));
    EXPECT_THAT(lineWith(dot, "  d2 ["), HasSubstr("<b>local</b>"));
    EXPECT_THAT(lineWith(dot, "  d3 ["),
                AllOf(Not(HasSubstr("principal")), Not(HasSubstr("local")), HasSubstr("<br/>1 port>")));
    const auto look = [&dot](const std::string &box) {
        const std::string line = lineWith(dot, box);
        return line.substr(line.find("fillcolor"));
    };
    EXPECT_NE(look("  d1 ["), look("  d2 ["));
    EXPECT_NE(look("  d1 ["), look("  d3 ["));
    EXPECT_NE(look("  d2 ["), look("  d3 ["));
    EXPECT_EQ(look("  d3 ["), look("  d4 ["));
}

TEST(TopologyDot, ASwitchCanBeLocalAndPrincipal) {
    EXPECT_THAT(topologyDot(Sample(2, 1, 1).topology()), HasSubstr("<b>principal, local</b>"));
}

TEST(TopologyDot, ParallelLinksAreOneThickLineWithACount) {
    Sample sample(3);
    sample.link(1, 2);
    sample.link(1, 2);
    sample.link(2, 3);
    const std::string dot = topologyDot(sample.topology());
    EXPECT_THAT(lineWith(dot, "d1 -- d2"), AllOf(HasSubstr("penwidth=2.5"), HasSubstr("label=\" 2 links \""),
                                                 HasSubstr("tooltip=\"1:0 - 2:0, 1:1 - 2:1\"")));
    EXPECT_THAT(lineWith(dot, "d2 -- d3"), AllOf(Not(HasSubstr("penwidth")), Not(HasSubstr("label="))));
}

TEST(TopologyDot, ALinkThatOneSwitchTellsOfIsDashedAndExplained) {
    Sample sample(3);
    sample.tell(1, "0", "2:0");
    sample.link(2, 3);
    const std::string dot = topologyDot(sample.topology());
    EXPECT_THAT(lineWith(dot, "d1 -- d2"), HasSubstr("style=dashed"));
    EXPECT_THAT(lineWith(dot, "d2 -- d3"), Not(HasSubstr("dashed")));
    EXPECT_THAT(dot, HasSubstr("\\ndashed line: only one of the two switches tells of the link"));
    EXPECT_THAT(topologyDot(support::ring(3).topology()), Not(HasSubstr("dashed")));
}

TEST(TopologyDot, WhatLinksLeadToOutsideTheFabricIsFaint) {
    Sample sample(2);
    sample.tell(1, "4", "9:0");
    sample.tell(1, "5", "a \"b\\c\n");
    const std::string dot = topologyDot(sample.topology());
    EXPECT_THAT(lineWith(dot, "  d9 ["), AllOf(HasSubstr("out of reach"), HasSubstr("dashed")));
    EXPECT_THAT(dot, HasSubstr("  d1 -- d9 ["));
    EXPECT_THAT(lineWith(dot, "  s0 ["), HasSubstr(R"(label="a \"b\\c\\x0A")"));
    EXPECT_THAT(lineWith(dot, "  d1 -- s0 ["), HasSubstr("tooltip=\"port 5\""));
    EXPECT_THAT(dot, HasSubstr("dashed box: not a switch of the fabric"));
}

TEST(TopologyDot, ADomainOutOfReachWithoutALinkIsNotDrawn) {
    const Topology topology = makeTopology("", Sample(2).switches, {{1, {}}, {2, {}}, {8, {}}});
    EXPECT_THAT(topologyDot(topology), Not(HasSubstr("d8")));
}

TEST(TopologyDot, TheLayoutSuitsTheSizeAndForm) {
    EXPECT_THAT(topologyDot(support::chain(2).topology()), HasSubstr("layout=dot; rankdir=LR;"));
    const std::string tiers = topologyDot(support::coresAndEdges(12, 2).topology());
    EXPECT_THAT(tiers, HasSubstr("layout=dot; ordering=out;"));
    EXPECT_THAT(tiers, HasSubstr("{ rank=same; d1; d2; }"));
    EXPECT_THAT(topologyDot(support::ring(12).topology()), HasSubstr("layout=circo;"));
    EXPECT_THAT(topologyDot(support::coresAndEdges(60, 4).topology()),
                AllOf(HasSubstr("layout=neato;"), HasSubstr("splines=true")));
    EXPECT_THAT(topologyDot(support::coresAndEdges(200, 4).topology()),
                AllOf(HasSubstr("layout=neato;"), HasSubstr("splines=line")));
}

TEST(TopologyDot, LinksOfACoreHaveItsColourAndStartAtIt) {
    // The cores are 4 and 5, the edges 1 to 3 and 6 to 8.
    Sample sample(8, 4, 1);
    sample.link(4, 5);
    for (const unsigned edge : {1U, 2U, 3U, 6U, 7U, 8U}) {
        sample.link(edge, 4);
        sample.link(edge, 5);
    }
    const std::string dot = topologyDot(sample.topology());
    const auto colour = [&dot](const std::string &ends) {
        const std::string line = lineWith(dot, "  " + ends + " [");
        const size_t at = line.find("color=");
        return at == std::string::npos ? ends + " is not there" : line.substr(at, 15);
    };
    EXPECT_EQ(colour("d4 -- d1"), colour("d4 -- d8"));
    EXPECT_EQ(colour("d5 -- d1"), colour("d5 -- d8"));
    EXPECT_NE(colour("d4 -- d1"), colour("d5 -- d1"));
    EXPECT_NE(colour("d4 -- d5"), colour("d4 -- d1"));
    EXPECT_NE(colour("d4 -- d5"), colour("d5 -- d1"));
}

TEST(TopologyDot, NoFabricIsAnEmptyDrawing) {
    EXPECT_THAT(topologyDot(makeTopology("", {}, {})), HasSubstr("No fabric: 0 switches, 0 links"));
}
