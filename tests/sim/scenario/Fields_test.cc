// What is wrong with a scenario file: where, what, and what would be right.

#include "sim/scenario/Fields.h"

#include <map>

#include <gtest/gtest.h>

#include "tests/sim/scenario/Reading.h"

using simtest::Lines;
using simtest::wrongIn;

TEST(Fields, TextThatIsNoTomlIsRefusedWhereItEnds) {
    const Lines lines = wrongIn("profile = \"fixed-24\"\n[switch\n");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].substr(0, 9), "a.toml:2:");
}

TEST(Fields, UnknownProfileIsRefusedNamingTheKnown) {
    const Lines lines = wrongIn("\nprofile = \"fixed\"");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].substr(0, 67), "a.toml:2:11: no switch profile 'fixed'; there are: fixed-24 directo");
}

TEST(Fields, UnknownNamesAreRefusedWithTheKnownOnes) {
    EXPECT_EQ(
        wrongIn("[switc]\n[fabric]\nprio = 1\n[[fan]]\nnumber = 0\n  stat = \"Bad\""),
        (Lines{"a.toml:1:2: a scenario has no 'switc'; allowed: account, blade, fabric, fan, link, login, peer, port, "
               "profile, rule, settings, step, supply, switch, zoning; did you mean 'switch'?",
               "a.toml:3:1: the fabric has no 'prio'; allowed: principal, priority; did you mean 'priority'?",
               "a.toml:6:3: a fan has no 'stat'; allowed: number, state; did you mean 'state'?"}));
}

TEST(Fields, WrongTypesAreRefusedSayingTheRightOne) {
    EXPECT_EQ(
        wrongIn("port = 3\n[switch]\nwwn = 1000\ndomain = \"7\"\nuptime = 1.5\n[settings]\nA = [1]\n[[peer]]\n"
                "wwn = \"100000C0DD00B201\"\ndomain = 2\nremembered = \"yes\"\n[[link]]\nends = \"local:3\"\n"
                "[[link]]\nends = [\"local:3\", 7]\n"),
        (Lines{"a.toml:1:8: 'port' of a scenario must be a list of tables, each under [[...]]",
               "a.toml:3:7: 'wwn' of the switch must be a text, in quotes",
               "a.toml:4:10: 'domain' of the switch must be a whole number from 1 to 239",
               "a.toml:5:10: 'uptime' of the switch must be an hour or more: a whole number of seconds, or a text such "
               "as \"90 min\", \"2 h\", \"400 d\", of ten years at most",
               "a.toml:7:5: 'A' must be a text in quotes, a whole number, true or false",
               "a.toml:11:14: 'remembered' of a peer must be true or false",
               "a.toml:13:8: 'ends' of a link must be a list of texts",
               "a.toml:13:8: 'ends' of a link must be two texts, each \"local:PORT\", \"DOMAIN:PORT\" or \"WWN:PORT\"",
               "a.toml:15:8: 'ends' of a link must be two texts, each \"local:PORT\", \"DOMAIN:PORT\" or \"WWN:PORT\"",
               "a.toml:15:20: 'ends' of a link must be a list of texts, each in quotes"}));
}

TEST(Fields, ImpossibleValuesAreRefusedWithWhatTheSwitchAllows) {
    EXPECT_EQ(
        wrongIn("[switch]\ndomain = 240\nuptime = 5\n[[port]]\nnumber = 2\nstate = \"online\"\n[[port]]\n"
                "number = 24\nstate = \"Online\"\n[settings]\n\"Oper.X\" = \"1\"\n[[account]]\nname = \"a b\"\n"),
        (Lines{"a.toml:2:10: 'domain' of the switch must be a whole number from 1 to 239",
               "a.toml:3:10: the switch has been on for 3600 s when it is made; 'uptime' must be that or more",
               "a.toml:6:9: 'Oper.UserPort.0.2.OperState' cannot be 'online'; allowed: Online, Offline, Diagnostics, "
               "Isolated, Down, Downed, NotInstalled, PoweredOff",
               "a.toml:8:10: there is no port 24; the switch has 24, counted from 0",
               "a.toml:11:12: the switch has no attribute 'Oper.X'",
               "a.toml:13:8: 'a b' is no account name; allowed: 1 to 64 printing characters without blanks"}));
}

TEST(Fields, WhatIsMissingIsRefusedAtItsTable) {
    EXPECT_EQ(
        wrongIn("[[port]]\n[[peer]]\ndomain = 2\n[[link]]\n[[login]]\nport_wwn = \"2100000000000001\"\n[[account]]\n"
                "[[zoning.zone]]\n[[step]]\n"),
        (Lines{"a.toml:1:1: a port needs 'number'", "a.toml:2:1: a peer needs 'wwn'", "a.toml:4:1: a link needs 'ends'",
               "a.toml:5:1: a login needs 'node_wwn'", "a.toml:5:1: a login needs 'port'",
               "a.toml:7:1: an account needs 'name'", "a.toml:8:1: a zone needs 'name'",
               "a.toml:8:1: zone '': not a valid name", "a.toml:9:1: a step needs 'at'",
               "a.toml:9:1: a step needs 'do'"}));
}

TEST(Fields, FabricsThatCannotBeAreRefusedWhereTheyStand) {
    EXPECT_EQ(
        wrongIn("[[peer]]\nwwn = \"100000C0DD00B201\"\ndomain = 1\n[[link]]\nends = [\"local:99\", \"local:1\"]\n"
                "[[login]]\nswitch = \"17\"\nport = 1\nnode_wwn = \"2000000000000001\"\nport_wwn = \"21\"\n"),
        (Lines{"a.toml:2:7: another switch has domain 1", "a.toml:5:8: there is no port 99 at switch 100000C0DD00A1B2",
               "a.toml:10:12: no switch has domain 17"}));
}

TEST(Fields, ZoningThatCannotBeIsRefusedThingByThing) {
    EXPECT_EQ(wrongIn("[[zoning.zone]]\nname = \"oak\"\nmembers = [\"ash\"]\n[[zoning.zone]]\nname = \"elm\"\n"
                      "type = \"hard\"\n[[zoning.zone]]\nname = \"elm\"\n[[zoning.zoneset]]\nname = \"n\"\n"
                      "zones = [\"elm\", \"fir\"]\n[zoning]\nactive = \"south\"\n"),
              (Lines{"a.toml:1:1: member 'ash' of zone 'oak': nothing of this name is defined",
                     "a.toml:6:8: 'type' of a zone cannot be 'hard'; allowed: hard-acl, hard-vpf, soft; did you mean "
                     "'hard-vpf'?",
                     "a.toml:7:1: zone 'elm': there twice",
                     "a.toml:9:1: zone 'fir' of zone set 'n': nothing of this name is defined",
                     "a.toml:13:10: there is no zone set 'south'"}));
}

TEST(Fields, StepsThatCannotBeAreRefused) {
    EXPECT_EQ(
        wrongIn("[[step]]\nat = \"1 week\"\ndo = \"port 3 offline\"\n[[step]]\nat = 1\nrepeat = 2\ndo = 3\n[[step]]\n"
                "every = \"500 ms\"\ndo = \"wiat\"\n[[step]]\nevery = 0\ndo = [\"fan 0 bad\", \"pot 1 online\"]\n"
                "[[step]]\nat = 1\nname = \"\"\n"),
        (Lines{"a.toml:2:6: 'at' of a step must be a time: a whole number of seconds, or a text such as \"500 ms\", "
               "\"90 s\", "
               "\"2 min\", \"1 h\", \"1 d\", of ten years at most",
               "a.toml:6:10: 'repeat' of a step needs 'every', the time from one to the next",
               "a.toml:7:6: 'do' of a step must be a command in quotes, or a list of them",
               "a.toml:10:6: there is no verb 'wiat'; did you mean 'wait'?",
               "a.toml:12:9: 'every' of a step must be more than no time",
               "a.toml:13:20: there is no verb 'pot'; did you mean 'port'?",
               "a.toml:16:8: 'name' of a step must not be empty"}));
}

TEST(Fields, RulesThatCannotBeAreRefusedAtTheirWords) {
    EXPECT_EQ(
        wrongIn("[[rule]]\ncall = \"zov_smlGte\"\nskip = -1\n  chance = \"some\"\nstale = 1\nhang = \"1 week\"\n"
                "result = 1.5\ndo = [\"who\", \"hwo\"]\ndelya = 5\n[[rule]]\ntimes = 2\n[[rule]]\nlost = true\n"
                "[[rule]]\ncall = \"notification\"\nlost = true\nstorm = 5\n[[rule]]\ndo = []\nstale = false\n"),
        (Lines{"a.toml:2:8: 'call' of a rule must be a function of the switch library, such as 'zov_smlGet', or "
               "'notification', not 'zov_smlGte'; did you mean 'zov_smlGet'?",
               "a.toml:3:8: 'skip' of a rule must be a whole number from 0 to 4294967295, not '-1'",
               "a.toml:4:12: 'chance' of a rule must be a whole number from 1 to 100, not 'some'",
               "a.toml:5:9: 'stale' of a rule must be true or false",
               "a.toml:6:8: 'hang' of a rule must be a time, at most a year: a whole number with ms, s, min, h or d, "
               "or of seconds without, not '1 week'",
               "a.toml:7:10: 'result' of a rule must be a whole number from -2147483648 to 2147483647",
               "a.toml:8:14: there is no verb 'hwo'; did you mean 'who'?",
               "a.toml:9:1: a rule has no 'delya'; allowed: after, call, chance, delay, do, duplicated, garbled, hang, "
               "key, late, lost, nullhandle, reordered, result, seed, skip, stale, status, step, storm, times, value; "
               "did you "
               "mean 'delay'?",
               "a.toml:10:1: a rule says what happens; allowed: result, status, value, stale, garbled, nullhandle, "
               "delay, late, hang, lost, duplicated, storm, reordered, do",
               "a.toml:12:1: only notifications are lost, repeated or reordered",
               "a.toml:17:9: 'storm' of a rule contradicts what was said: a notification is lost, duplicated or comes "
               "as a storm, one of these",
               "a.toml:19:6: 'do' of a rule must be a command in quotes, or a list of them"}));
}

TEST(Fields, AllLinesTogetherAreWhatTheErrorSays) {
    try {
        sim::readScenario("a = 1\nb = 2\n", "x");
        FAIL() << "took it";
    } catch (const sim::ScenarioError &error) {
        ASSERT_EQ(error.lines().size(), 2U);
        EXPECT_EQ(error.what(), error.lines()[0] + "\n" + error.lines()[1]);
    }
}

TEST(Fields, AComplaintIsOneLineWhateverItIsAbout) {
    EXPECT_EQ(wrongIn("[[account]]\nname = \"a\\nb\"\n"),
              Lines{"a.toml:2:8: 'a\\x0ab' is no account name; allowed: 1 to 64 printing characters without blanks"});
}

TEST(Fields, BytesThatAreNoTextAreHexadecimal) {
    EXPECT_EQ(wrongIn("[switch]\nfaults = { bytes = \"F\" }\nhardware = { bytes = \"GG\" }\n"),
              (Lines{"a.toml:2:10: 'faults' of the switch must be a text, in quotes",
                     "a.toml:3:12: 'hardware' of the switch must be a text, in quotes"}));
}

TEST(Fields, NumbersOutOfRangeAreRefusedWhereTheyStand) {
    EXPECT_EQ(
        wrongIn("[switch]\nports = 256\nuptime = -1\n[[port]]\nnumber = 255\n[[peer]]\n"
                "wwn = \"100000C0DD00B201\"\ndomain = 2\ntopology_seconds = 1000001\n[[rule]]\nchance = 200\n"
                "hang = \"500 d\"\ntimes = -2\ncall = \"notification\"\nstorm = 20000\n[[rule]]\n"
                "times = 1.5\nstale = true\n[[step]]\nat = 0.5\nname = \"x\"\n"),
        (Lines{"a.toml:2:9: 'ports' of the switch must be a whole number from 0 to 255",
               "a.toml:3:10: 'uptime' of the switch must be an hour or more: a whole number of seconds, or a text "
               "such as \"90 min\", \"2 h\", \"400 d\", of ten years at most",
               "a.toml:5:10: 'number' of a port must be a whole number from 0 to 254",
               "a.toml:9:20: 'topology_seconds' of a peer must be a whole number from 0 to 1000000",
               "a.toml:11:10: 'chance' of a rule must be a whole number from 1 to 100, not '200'",
               "a.toml:12:8: 'hang' of a rule must be a time, at most a year: a whole number with ms, s, min, h or "
               "d, or of seconds without, not '500 d'",
               "a.toml:13:9: 'times' of a rule must be a whole number from 0 to 2147483647, or 'always', not '-2'",
               "a.toml:15:9: 'storm' of a rule must be a whole number from 0 to 10000, not '20000'",
               "a.toml:17:9: 'times' of a rule must be a whole number from 0 to 2147483647, or 'always'",
               "a.toml:20:6: 'at' of a step must be a time: a whole number of seconds, or a text such as \"500 "
               "ms\", \"90 s\", \"2 min\", \"1 h\", \"1 d\", of ten years at most"}));
}

TEST(Fields, ARefusalIsToldWholeWhateverBytesItIsAbout) {
    const Lines lines = wrongIn("[switch]\nstate = \"a\\u0000\"\n[[blade]]\nslot = 0\npresent = true\n"
                                "type = \"b\\u0000\"\n[[port]]\nnumber = 0\ntransceiver = { vendor = \"c\\u0000\" }\n"
                                "[[peer]]\nwwn = \"d\\u0000\"\n[settings]\n\"e\\u0000\" = 1\n");
    ASSERT_EQ(lines.size(), 6U);
    for (const auto &[line, shown] : std::map<size_t, std::string>{{0, "a"}, {1, "b"}, {3, "c"}, {4, "d"}, {5, "e"}})
        EXPECT_NE(lines[line].find("'" + shown + "\\x00'"), std::string::npos) << lines[line];
    for (const size_t line : {0U, 1U, 3U, 4U})
        EXPECT_NE(lines[line].find("'; allowed: "), std::string::npos) << lines[line];
}

TEST(Fields, TextsThatAreNoMembersAreRefusedEachWhereItStands) {
    const std::string allowed =
        "; allowed: 16 hexadecimal digits, with colons or not, of a port's name, DOMAIN:PORT with "
        "1:0 to 239:255, 6 hexadecimal digits of an address, or the name of an alias";
    EXPECT_EQ(wrongIn("[[zoning.zone]]\nname = \"oak\"\nmembers = [\n\"1:6\",\n\"240:1\",\n\"\",\n\"1:x\"]\n"),
              (Lines{"a.toml:5:1: no member can be '240:1'" + allowed, "a.toml:6:1: no member can be ''" + allowed,
                     "a.toml:7:1: no member can be '1:x'" + allowed}));
}

TEST(Fields, ThingsThatHaveATableAlreadyAreRefused) {
    EXPECT_EQ(wrongIn("[[port]]\nnumber = 3\n[[port]]\nnumber = 3\n[[fan]]\nnumber = 1\n[[fan]]\nnumber = 1\n[[peer]]\n"
                      "wwn = \"100000C0DD00B201\"\ndomain = 2\n[[peer]]\nwwn = \"10:00:00:c0:dd:00:b2:01\"\n"),
              (Lines{"a.toml:4:10: 'number' of a port is 3, and so is that of an earlier table",
                     "a.toml:8:10: 'number' of a fan is 1, and so is that of an earlier table",
                     "a.toml:13:7: 'wwn' of a peer is that of an earlier table"}));
    EXPECT_EQ(wrongIn("[[supply]]\nnumber = 1\n[[fan]]\nnumber = 1\n[[port]]\nnumber = 1\n"), Lines{});
}

TEST(Fields, ABladeThatIsNotThereHasNoType) {
    EXPECT_EQ(wrongIn("profile = \"director-8\"\n[[blade]]\nslot = 1\npresent = false\ntype = \"IO\"\n"),
              Lines{"a.toml:5:8: 'type' of a blade needs 'present = true': there is no blade"});
}

TEST(Fields, CommandsThatAreNoneOrMoreThanALineAreRefusedInSteps) {
    EXPECT_EQ(wrongIn("[[step]]\nat = 1\ndo = \"\"\n[[step]]\nat = 1\nname = \"x\"\ndo = []\n[[step]]\nat = 1\n"
                      "do = \"port 3 offline\\nport 3 online\"\n"),
              (Lines{"a.toml:3:6: 'do' of a step must be a command in quotes, or a list of them",
                     "a.toml:7:6: 'do' of a step must be a command in quotes, or a list of them",
                     "a.toml:10:6: a command of a step is one line; allowed: a list of commands"}));
}

TEST(Fields, ARuleThatWaitsForAStepThatWillNotComeIsRefused) {
    const std::string rules = "[[rule]]\nstep = \"mrege\"\nstale = true\n[[rule]]\nstep = \"merge\"\nstale = true\n"
                              "[[rule]]\nstep = \"said\"\nstale = true\n";
    const std::string named = "[[step]]\nat = 1\nname = \"merge\"\n";
    const std::string says = "[[step]]\nat = 2\ndo = \"step said\"\n";
    EXPECT_EQ(wrongIn(rules + says), Lines{}) << "steps without names: whoever plays it says when";
    EXPECT_EQ(wrongIn(rules + named + says), Lines{"a.toml:2:8: no step is called 'mrege'; did you mean 'merge'?"});
    EXPECT_EQ(wrongIn(rules + named).size(), 2U);
    EXPECT_EQ(wrongIn("[[rule]]\nstep = \"said\"\nstale = true\n" + named + "do = 'rule add stale do=\"step said\"'\n"),
              Lines{});
}

TEST(Fields, CommandsMayHoldAnyBytes) {
    EXPECT_EQ(wrongIn("[[rule]]\ndo = { bytes = \"6661756C74202241FF22\" }\n[[step]]\nat = 1\n"
                      "do = [\"fault B\", { bytes = \"6661756C74202241FF22\" }]\n"),
              Lines{});
    EXPECT_EQ(wrongIn("[[step]]\nat = 1\ndo = { bytes = \"7761697478\" }\n"),
              Lines{"a.toml:3:6: there is no verb 'waitx'; did you mean 'wait'?"});
}
