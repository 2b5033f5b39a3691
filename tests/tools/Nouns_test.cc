// The nouns from outside: what each prints in its three forms, through a pipe and on a terminal.
#include <gmock/gmock.h>

#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"

using support::runDcache;
using support::Stdout;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kPortsTable =
    R"(PORT  WWN                      STATE         TYPE  HW  FORMAT  OUI     SERIAL            DIAG
0     20:00:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000001  yes
1     20:01:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000002  yes
2     20:02:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000003  yes
3     20:03:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000004  yes
4     20:04:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000005  yes
5     20:05:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000006  yes
6     20:06:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000007  yes
7     20:07:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000008  yes
8     20:08:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000009  yes
9     20:09:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000010  yes
10    20:0A:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000011  yes
11    20:0B:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000012  yes
12    20:0C:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000013  yes
13    20:0D:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000014  yes
14    20:0E:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000015  yes
15    20:0F:00:C0:DD:00:A1:B2  online (2)    F     GL  SFP     009065  FNS0331A00000016  yes
16    20:10:00:C0:DD:00:A1:B2  offline (10)  E     GL  SFP     009065  FNS0331A00000017  yes
17    20:11:00:C0:DD:00:A1:B2  offline (10)  GL    GL  SFP     009065  FNS0331A00000018  yes
18    20:12:00:C0:DD:00:A1:B2  offline (10)  GL    GL  SFP     009065  FNS0331A00000019  yes
19    20:13:00:C0:DD:00:A1:B2  offline (10)  GL    GL  SFP     009065  FNS0331A00000020  yes
20    20:14:00:C0:DD:00:A1:B2  offline (10)  GL    GL  -       -       -                 no
21    20:15:00:C0:DD:00:A1:B2  offline (10)  GL    GL  -       -       -                 no
22    20:16:00:C0:DD:00:A1:B2  offline (10)  GL    GL  -       -       -                 no
23    20:17:00:C0:DD:00:A1:B2  offline (10)  GL    GL  -       -       -                 no

24 ports: 16 online, 8 offline.
)";

const std::string kPort0Json = R"({
    "index": 0, "wwn": "20:00:00:C0:DD:00:A1:B2", "operationalStatus": [2], "state": "online", "type": "F",
    "cimType": 5, "hardwareType": "GL", "cimHardwareType": 1, "transceiverFormat": "SFP", "vendorOui": "009065",
    "vendorSerial": "FNS0331A00000001", "diagnostics": true})";

const std::string kPort23Json = R"({
    "index": 23, "wwn": "20:17:00:C0:DD:00:A1:B2", "operationalStatus": [10], "state": "offline", "type": "GL",
    "cimType": 3, "hardwareType": "GL", "cimHardwareType": 1, "transceiverFormat": null, "vendorOui": null,
    "vendorSerial": null, "diagnostics": false})";

/// Port 23 in terse form, each line after a prefix.
std::string port23Terse(const std::string &prefix) {
    std::string text;
    for (const char *line : {"index=23", "wwn=20:17:00:C0:DD:00:A1:B2", "operationalStatus=10", "state=offline",
                             "type=GL", "cimType=3", "hardwareType=GL", "cimHardwareType=1",
                             "transceiverFormat=", "vendorOui=", "vendorSerial=", "diagnostics=false"})
        text += prefix + line + "\n";
    return text;
}

support::Arguments with(support::Arguments arguments, const support::Arguments &more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

nlohmann::json jsonFrom(const support::Arguments &arguments) {
    return support::parseJson(runDcache(with(arguments, {"-o", "json"})).out);
}

std::string terseFrom(const support::Arguments &arguments) {
    return runDcache(with(arguments, {"-o", "terse"})).out;
}

const support::Arguments kDirectorsBlades = {"--profile", "director-8", "blades"};

} // namespace

TEST(Nouns, PortsAreATable) {
    for (const support::Arguments &arguments : std::vector<support::Arguments>{
             {"ports"}, {"ports", "show"}, {"ports", "--all"}, {"ports", "show", "--all"}}) {
        const auto run = runDcache(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.out, kPortsTable);
        EXPECT_THAT(run.err, IsEmpty());
    }
}

TEST(Nouns, PortsForProgramsAndScripts) {
    const auto ports = jsonFrom({"ports"}).at("ports");
    ASSERT_EQ(ports.size(), 24u);
    EXPECT_EQ(ports.front(), support::parseJson(kPort0Json));
    EXPECT_EQ(ports.back(), support::parseJson(kPort23Json));
    const std::string terse = terseFrom({"ports"});
    EXPECT_THAT(terse, testing::StartsWith("ports.1.index=0\nports.1.wwn=20:00:00:C0:DD:00:A1:B2\n"));
    EXPECT_THAT(terse, testing::EndsWith("\n" + port23Terse("ports.24.")));
    EXPECT_EQ(support::lines(terse).size(), 24u * 12u);
}

TEST(Nouns, PortsAreFilteredByTheirState) {
    for (const support::Arguments &arguments :
         std::vector<support::Arguments>{{"ports", "--state", "offline"}, {"ports", "show", "--state=offline"}}) {
        const auto ports = jsonFrom(arguments).at("ports");
        ASSERT_EQ(ports.size(), 8u);
        EXPECT_EQ(ports.front().at("index"), 16);
    }
    EXPECT_EQ(runDcache({"ports", "--state", "absent"}).out,
              "No port is in state \"absent\".\n\n24 ports: 16 online, 8 offline.\n");
}

TEST(Nouns, OnePortInAllThreeForms) {
    EXPECT_EQ(runDcache({"ports", "show", "0"}).out, "port                0\n"
                                                     "WWN                 20:00:00:C0:DD:00:A1:B2\n"
                                                     "state               online (2)\n"
                                                     "type                F\n"
                                                     "hardware type       GL\n"
                                                     "transceiver format  SFP\n"
                                                     "vendor OUI          009065\n"
                                                     "vendor serial       FNS0331A00000001\n"
                                                     "diagnostics         yes\n");
    EXPECT_EQ(jsonFrom({"ports", "show", "0"}), support::parseJson(kPort0Json));
    EXPECT_EQ(terseFrom({"ports", "show", "23"}), port23Terse(""));
}

TEST(Nouns, APortThatDoesNotExistIsAFailure) {
    const auto run = runDcache({"ports", "show", "24"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err, "dcache: there is no port 24; the switch has ports 0 to 23\n");
}

TEST(Nouns, AnUnknownStateIsAnsweredWithThoseThereAre) {
    const auto run = runDcache({"ports", "--state", "up"});
    EXPECT_EQ(run.exitCode, 2);
    for (const char *state : {"online", "offline", "diagnostics", "error", "unknown", "absent"}) {
        EXPECT_THAT(run.err, HasSubstr(state));
        EXPECT_THAT(runDcache({"ports", "--help"}).out, HasSubstr(state));
    }
}

TEST(Nouns, BladesOfADirectorInAllThreeForms) {
    EXPECT_EQ(runDcache(kDirectorsBlades).out, "slots  8\n"
                                               "\n"
                                               "SLOT  BLADE  STATUS  TEMPERATURE SENSORS  VOLTAGE SENSORS\n"
                                               "0     ?      ?       ?                    ?\n"
                                               "1     ?      ?       ?                    ?\n"
                                               "2     ?      ?       ?                    ?\n"
                                               "3     ?      ?       ?                    ?\n"
                                               "4     ?      ?       ?                    ?\n"
                                               "5     ?      ?       ?                    ?\n"
                                               "6     ?      ?       ?                    ?\n"
                                               "7     I/O    OK (2)  2                    4\n"
                                               "\n"
                                               "Only slot 7 is known: the cache keeps the slot that it read last.\n");
    const auto object = jsonFrom(kDirectorsBlades);
    EXPECT_EQ(object.at("knownSlot"), 7);
    EXPECT_EQ(object.at("blades").size(), 8u);
    const std::string terse = terseFrom(kDirectorsBlades);
    EXPECT_THAT(terse, testing::StartsWith("slots=8\nknownSlot=7\ntemperatureSensors=\nvoltageSensors=\n"
                                           "blades.1.slot=0\nblades.1.kind=\nblades.1.operationalStatus=\n"));
    EXPECT_THAT(terse, testing::EndsWith("blades.8.slot=7\nblades.8.kind=I/O\nblades.8.operationalStatus=2\n"
                                         "blades.8.state=OK\nblades.8.temperatureSensors=2\n"
                                         "blades.8.voltageSensors=4\n"));
}

TEST(Nouns, ABoxHasNoBlades) {
    EXPECT_EQ(runDcache({"blades"}).out, "slots                1\n"
                                         "temperature sensors  3\n"
                                         "voltage sensors      5\n"
                                         "\n"
                                         "No blades: the switch is one box.\n");
}

TEST(Nouns, AccountsInAllThreeForms) {
    EXPECT_EQ(runDcache({"accounts"}).out, "ACCOUNT\nadmin\noperator\nmonitor\n");
    EXPECT_EQ(jsonFrom({"accounts"}), support::parseJson(R"({
        "accounts": [{"name": "admin"}, {"name": "operator"}, {"name": "monitor"}]})"));
    EXPECT_EQ(terseFrom({"accounts"}), "accounts.1.name=admin\naccounts.2.name=operator\naccounts.3.name=monitor\n");
}

TEST(Nouns, AProfileMayStandBeforeOrAfterTheNoun) {
    EXPECT_THAT(runDcache({"--profile", "fixed-128", "ports"}).out, HasSubstr("\n128 ports: "));
    EXPECT_THAT(runDcache({"ports", "--profile", "fixed-128"}).out, HasSubstr("\n128 ports: "));
    EXPECT_THAT(runDcache({"ports", "show", "--profile=fixed-128"}).out, HasSubstr("\n128 ports: "));
}

TEST(Nouns, AnUnknownProfileIsAnsweredWithThoseThereAre) {
    const auto run = runDcache({"--profile", "toaster", "ports"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, AllOf(HasSubstr("'toaster'"), HasSubstr("director-8"), HasSubstr("fixed-24")));
}

/// What a terminal showed, without colours and carriage returns.
std::string withoutColour(const std::string &shown) {
    std::string plain;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (shown[i] == '\x1b')
            i = shown.find('m', i);
        else if (shown[i] != '\r')
            plain += shown[i];
    }
    return plain;
}

TEST(Nouns, OnATerminalTheyAreTheSameInColour) {
    const support::Environment terminal = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
    for (const support::Arguments &arguments :
         std::vector<support::Arguments>{{"ports"}, {"ports", "show", "0"}, kDirectorsBlades, {"accounts"}}) {
        const std::string plain = runDcache(arguments, Stdout::pipe, terminal).out;
        EXPECT_EQ(plain.find('\x1b'), std::string::npos);
        const std::string coloured = runDcache(arguments, Stdout::terminal, terminal).out;
        EXPECT_NE(coloured.find('\x1b'), std::string::npos);
        EXPECT_EQ(withoutColour(coloured), plain);
    }
}
