// Broken scenario files: cut off, and with pieces of others in them. They are read or refused, and nothing else.

#include <random>

#include <gtest/gtest.h>

#include "tests/sim/scenario/Reading.h"

namespace {

constexpr const char *kEverything = R"(# a scenario with all there can be
profile = "fabric-2"
[switch]
wwn = "100000C0DD00A1B2"
domain = 9
ports = 26
uptime = "2 h"
admin_mode = "elsewhere"
[settings]
"Config.Snmp.SysDescr" = { bytes = "FF01" }
Config.Services.SSHEnable = true
[[port]]
number = 3
state = "Offline"
transceiver = { serial = "X", oui = 0x9065 }
[[blade]]
slot = 0
present = true
[[supply]]
number = 1
state = "Bad"
[[account]]
name = "ann"
[fabric]
priority = 3
[[peer]]
wwn = "10:00:00:C0:DD:00:00:07"
domain = 7
remembered = true
[[link]]
ends = ["local:17", "7:3"]
[[login]]
switch = "7"
port = 1
node_wwn = "2000000000000001"
port_wwn = "2100000000000001"
[zoning]
active = "day"
[zoning.limits]
zones = 7
[[zoning.alias]]
name = "tape"
members = ["1:6"]
[[zoning.zone]]
name = "backup"
members = ["tape", "010203"]
[[zoning.zoneset]]
name = "day"
zones = ["backup"]
[[rule]]
call = "zov_smlGet"
key = "Oper.*"
step = "busy"
after = "1 min"
skip = 2
times = "always"
chance = 50
seed = 7
status = 5
stale = true
delay = "5 ms"
hang = 0
do = ["port 3 offline", "step next"]
[[rule]]
call = "notification"
key = 14
late = "2 s"
storm = 3
reordered = true
value = { bytes = "FF" }
[[step]]
at = "500 ms"
name = "busy"
every = "1 h"
repeat = 2
do = ["port 3 online"]
)";

/// Reads it; true when it was taken. Every complaint has its place.
bool isTaken(const std::string &text) {
    try {
        sim::readScenario(text, "a.toml");
        return true;
    } catch (const sim::ScenarioError &error) {
        EXPECT_FALSE(error.lines().empty());
        for (const std::string &line : error.lines())
            EXPECT_EQ(line.substr(0, 7), "a.toml:") << line;
        return false;
    }
}

std::string mutated(std::string text, std::minstd_rand &random) {
    const size_t changes = 1 + random() % 4;
    for (size_t i = 0; i < changes; ++i) {
        const size_t at = random() % text.size();
        const size_t length = random() % 12;
        const std::string piece = text.substr(random() % text.size(), length);
        switch (random() % 4) {
        case 0:
            text.erase(at, length);
            break;
        case 1:
            text.insert(at, piece);
            break;
        case 2:
            text.replace(at, length, piece);
            break;
        default:
            text[at] = static_cast<char>(random() % 256);
        }
        if (text.empty())
            return " ";
    }
    return text;
}

} // namespace

TEST(Mutations, TheWholeIsTaken) {
    EXPECT_EQ(simtest::wrongIn(kEverything), simtest::Lines{});
}

TEST(Mutations, WhatIsCutOffAnywhereIsReadOrRefused) {
    const std::string whole = kEverything;
    size_t taken = 0;
    for (size_t size = 0; size < whole.size(); size += 3)
        taken += isTaken(whole.substr(0, size)) ? 1U : 0U;
    EXPECT_GT(taken, 5U);                   // at the ends of lines
    EXPECT_LT(taken, whole.size() / 3 / 2); // not in the middle of them
}

TEST(Mutations, WhatWasTamperedWithIsReadOrRefused) {
    std::minstd_rand random(7);
    size_t refused = 0;
    for (int i = 0; i < 400; ++i)
        refused += isTaken(mutated(kEverything, random)) ? 0U : 1U;
    EXPECT_GT(refused, 100U);
}

TEST(Mutations, ALineThatNoReaderExpectsIsNamed) {
    EXPECT_EQ(simtest::wrongIn("a = 1\n\"b = 2\n").size(), 1U);
    EXPECT_EQ(simtest::wrongIn("profile = \"fixed-24\"\n[switch]\n[[.]]\nx = 1\n").size(), 1U);
}

TEST(Mutations, NonsenseIsRefused) {
    const std::string deep(5000, '[');
    const std::string long_key(100000, 'k');
    for (const std::string &text :
         {std::string(1, '\0'), std::string("\xFF\xFE"), std::string("\xEF\xBB\xBF["), "a = " + deep, "a = \"" + deep,
          "[" + long_key, std::string("a = 99999999999999999999999999"), std::string("a = 1e400"),
          std::string("profile = 1979-05-27T07:32:00Z"), std::string("[switch]\n[switch]"), std::string("'''"),
          std::string("a.b = 1\na = 2")})
        EXPECT_FALSE(isTaken(text)) << text.substr(0, 40);
}
