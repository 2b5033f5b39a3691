#include "tools/dcache/topology/text.h"

#include <gmock/gmock.h>
#include <sstream>

#include "tests/tools/topology/Samples.h"

using namespace dcache;
using support::Sample;
using testing::HasSubstr;
using testing::Not;

namespace {

std::string plain(const Topology &topology) {
    return topologyText(topology, Lines::ascii, false);
}

/// Columns that a terminal shows: bytes that continue a character take none.
size_t columnsOf(const std::string &line) {
    size_t columns = 0;
    for (const char c : line)
        columns += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1 : 0;
    return columns;
}

size_t widestOf(const std::string &text) {
    std::istringstream stream(text);
    size_t widest = 0;
    for (std::string line; std::getline(stream, line);)
        widest = std::max(widest, columnsOf(line));
    return widest;
}

} // namespace

TEST(TopologyText, TwoSwitchesWithTwoLinks) {
    Sample sample(2);
    sample.link(1, 2);
    sample.link(1, 2);
    EXPECT_EQ(plain(sample.topology()), "Fabric 10:00:00:C0:DD:00:A1:01: 2 switches, 2 links\n"
                                        "\n"
                                        "DOMAIN  WWN                      PORTS\n"
                                        "1       10:00:00:C0:DD:00:A1:01     24  principal\n"
                                        "`- 2    10:00:00:C0:DD:00:A1:02     24  local; 2 links\n"
                                        "\n"
                                        "LOCAL PORT  TO DOMAIN  ITS PORT\n"
                                        "0           1          0\n"
                                        "1           1          1\n");
}

TEST(TopologyText, TheTreeGrowsFromThePrincipalAndTellsTheOtherLinksOnce) {
    EXPECT_EQ(topologyText(support::coresAndEdges(6, 2).topology(), Lines::unicode, false),
              "Fabric 10:00:00:C0:DD:00:A1:01: 6 switches, 9 links\n"
              "\n"
              "DOMAIN  WWN                      PORTS\n"
              "1       10:00:00:C0:DD:00:A1:01     24  principal\n"
              "├─ 2    10:00:00:C0:DD:00:A1:02     24\n"
              "├─ 3    10:00:00:C0:DD:00:A1:03     24  local; also to 2\n"
              "├─ 4    10:00:00:C0:DD:00:A1:04     24  also to 2\n"
              "├─ 5    10:00:00:C0:DD:00:A1:05     24  also to 2\n"
              "└─ 6    10:00:00:C0:DD:00:A1:06     24  also to 2\n"
              "\n"
              "LOCAL PORT  TO DOMAIN  ITS PORT\n"
              "0           2          1\n"
              "1           1          1\n");
}

TEST(TopologyText, ASubtreeHangsOnItsTrunk) {
    Sample sample(5, 1, 5);
    sample.link(1, 2);
    sample.link(2, 3);
    sample.link(3, 4);
    sample.link(1, 5);
    EXPECT_THAT(plain(sample.topology()), HasSubstr("1           10:00:00:C0:DD:00:A1:01     24  principal\n"
                                                    "|- 2        10:00:00:C0:DD:00:A1:02     24\n"
                                                    "|  `- 3     10:00:00:C0:DD:00:A1:03     24\n"
                                                    "|     `- 4  10:00:00:C0:DD:00:A1:04     24\n"
                                                    "`- 5        10:00:00:C0:DD:00:A1:05     24  local\n"));
}

TEST(TopologyText, InAMeshEachFurtherLinkIsToldByTheLaterSwitch) {
    Sample mesh(5);
    for (unsigned one = 1; one <= 5; ++one)
        for (unsigned other = one + 1; other <= 5; ++other)
            mesh.link(one, other);
    const std::string text = plain(mesh.topology());
    EXPECT_THAT(text, HasSubstr("A1:02     24  local\n"));
    EXPECT_THAT(text, HasSubstr("A1:03     24  also to 2\n"));
    EXPECT_THAT(text, HasSubstr("A1:04     24  also to 2, 3\n"));
    EXPECT_THAT(text, HasSubstr("A1:05     24  also to 2-4\n"));
}

TEST(TopologyText, WhatIsSpecialAboutALinkIsSaid) {
    Sample sample(4, 1, 4);
    sample.tell(1, "0", "2:0");
    sample.link(1, 3);
    sample.link(1, 4);
    sample.link(3, 4);
    sample.link(3, 4);
    sample.link(2, 4);
    sample.tell(2, "9", "3:9");
    const std::string text = plain(sample.topology());
    EXPECT_THAT(text, HasSubstr("A1:02     24  told by 1 only\n"));
    EXPECT_THAT(text, HasSubstr("A1:03     24  also to 2 (told by 2 only)\n"));
    EXPECT_THAT(text, HasSubstr("A1:04     24  local; also to 2; also to 3 (2 links)\n"));
}

TEST(TopologyText, PartsOfTheFabricThatNoLinkJoinsAreTreesOfTheirOwn) {
    Sample sample(4, 3, 1);
    sample.link(1, 2);
    EXPECT_THAT(plain(sample.topology()), HasSubstr("3       10:00:00:C0:DD:00:A1:03     24  principal\n"
                                                    "1       10:00:00:C0:DD:00:A1:01     24  local\n"
                                                    "`- 2    10:00:00:C0:DD:00:A1:02     24\n"
                                                    "4       10:00:00:C0:DD:00:A1:04     24\n"));
}

TEST(TopologyText, WhatIsOutOfReachAndLinksToNowhereAreTold) {
    Sample sample(2);
    sample.link(1, 2);
    sample.tell(2, "5", "77:1");
    sample.tell(2, "6", "a \x1b[2J b");
    const std::string text = plain(sample.topology());
    EXPECT_THAT(text, HasSubstr("A1:02     24  local; to 77, out of reach\n"));
    EXPECT_THAT(text, HasSubstr("\n5           77         1\n"));
    EXPECT_THAT(text, HasSubstr("Out of reach, though the link-state database names it: 77.\n"
                                "Port 6 of switch 2 is linked to \"a \\x1B[2J b\".\n"));
}

TEST(TopologyText, APortThatIsNotToldIsAQuestionMark) {
    Sample sample(2);
    sample.tell(2, "", "1");
    EXPECT_THAT(plain(sample.topology()), HasSubstr("?           1          ?\n"));
}

TEST(TopologyText, WithoutAFabricThereIsNoTree) {
    EXPECT_EQ(plain(makeTopology("", {}, {})), "No fabric: 0 switches, 0 links\n");
}

TEST(TopologyText, StaysWithinEightyColumnsAtEverySize) {
    Sample tangle(60);
    for (unsigned one = 1; one <= 60; ++one)
        for (unsigned other = one + 2; other <= 60; other += 1 + one % 3)
            tangle.link(one, other);
    for (const Sample &sample : {support::coresAndEdges(12, 2), support::coresAndEdges(60, 4), support::ring(239),
                                 support::chain(239), tangle})
        for (const Lines lines : {Lines::ascii, Lines::unicode})
            EXPECT_LE(widestOf(topologyText(sample.topology(), lines, false)), 80u);
}

TEST(TopologyText, EverySwitchOfALongChainHasItsLine) {
    const std::string text = plain(support::chain(239).topology());
    for (unsigned domain = 1; domain <= 239; ++domain)
        EXPECT_THAT(text, HasSubstr(" " + Sample::name(domain) + " "));
    EXPECT_THAT(text, HasSubstr("\n..                `- 239  "));
}

TEST(TopologyText, RemarksTooLongForALineAreContinuedBesideTheTrunk) {
    Sample sample(4, 1, 1);
    sample.link(1, 2);
    sample.link(1, 3);
    sample.link(3, 4);
    for (const unsigned domain : {2U, 3U})
        for (const char *neighbour : {"100:1", "101:1", "102:1"})
            sample.tell(domain, "9", neighbour);
    EXPECT_THAT(plain(sample.topology()),
                HasSubstr("1        10:00:00:C0:DD:00:A1:01     24  principal; local\n"
                          "|- 2     10:00:00:C0:DD:00:A1:02     24  to 100, out of reach; to 101, out of\n"
                          "|                                        reach; to 102, out of reach\n"
                          "`- 3     10:00:00:C0:DD:00:A1:03     24  to 100, out of reach; to 101, out of\n"
                          "   |                                     reach; to 102, out of reach\n"
                          "   `- 4  10:00:00:C0:DD:00:A1:04     24\n"));
}

TEST(TopologyText, ColourIsAddedAndNothingElse) {
    const Topology topology = support::coresAndEdges(6, 2).topology();
    std::string coloured = topologyText(topology, Lines::ascii, true);
    EXPECT_THAT(coloured, HasSubstr("\x1b[1mprincipal\x1b[0m"));
    EXPECT_THAT(coloured, HasSubstr("\x1b[32mlocal;\x1b[0m also to 2"));
    for (size_t at = coloured.find('\x1b'); at != std::string::npos; at = coloured.find('\x1b'))
        coloured.erase(at, coloured.find('m', at) - at + 1);
    EXPECT_EQ(coloured, plain(topology));
    EXPECT_THAT(plain(topology), Not(HasSubstr("\x1b")));
}

TEST(TopologyText, ThreeNumbersInARowAreARange) {
    EXPECT_EQ(ranges({}), "");
    EXPECT_EQ(ranges({7}), "7");
    EXPECT_EQ(ranges({1, 2}), "1, 2");
    EXPECT_EQ(ranges({1, 2, 3}), "1-3");
    EXPECT_EQ(ranges({1, 3, 4, 5, 9, 10}), "1, 3-5, 9, 10");
}
