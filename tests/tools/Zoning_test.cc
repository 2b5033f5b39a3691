// `dcache zoning`: commands/zoning.cc, and the command line around it.
#include <chrono>
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"
#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using support::runDcache;
using support::TextFile;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char *kEdits = "create zone web acl\n"
                               "add member web alias tape\n"
                               "add zone day web\n"
                               "remove everywhere 1:7\n"
                               "commit\n";

const std::string kChanges = "CHANGE   OBJECT    NAME  PART\n"
                             "removed  zone      db    member 1:7\n"
                             "added    zone      web   -\n"
                             "added    zone      web   type acl\n"
                             "added    zone      web   member alias tape\n"
                             "added    zone set  day   zone web\n";

const std::string kZones = "ZONE  TYPE  MEMBERS\n"
                           "db    acl   10:00:00:00:C9:2B:44:01\n"
                           "            1:7\n"
                           "            010A00\n"
                           "            alias tape\n"
                           "mail  soft  10:00:00:00:C9:2B:44:02\n";

class Zoning : public testing::Test {
protected:
    /// A switch with this zoning, which the cache has not seen yet.
    void have(const std::string &zoning) { giveZoning(*_switch, zoning); }

    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

std::string tableOf(const Report &report) {
    return render(report, Format::table, false);
}

} // namespace

TEST_F(Zoning, IsTablesOfZoneSetsZonesAliasesAndLimits) {
    have(support::kActiveZoning);
    EXPECT_EQ(tableOf(showZoning(false)), "active zone set  day\n"
                                          "\n"
                                          "ZONE SET  ACTIVE  ZONES\n"
                                          "day       yes     db\n"
                                          "                  mail\n"
                                          "night     -       db\n"
                                          "\n" +
                                              kZones +
                                              "old   vpf   -\n"
                                              "\n"
                                              "ALIAS  MEMBERS\n"
                                              "tape   50:06:01:60:3B:A0:11:22\n"
                                              "\n"
                                              "LIMIT OF             USED  AT MOST\n"
                                              "zone sets            2     300\n"
                                              "zones                3     3000\n"
                                              "aliases              1     3000\n"
                                              "members              7     12000\n"
                                              "zones in a zone set  2     1000\n"
                                              "members in a zone    4     500\n"
                                              "members in an alias  1     500\n");
}

TEST_F(Zoning, ForProgramsAndScripts) {
    have(support::kActiveZoning);
    const Report report = showZoning(false);
    const nlohmann::json json = jsonOf(report);
    EXPECT_EQ(json.at("activeZoneset"), "day");
    EXPECT_EQ(json.at("zonesets"), support::parseJson(R"([
        {"name": "day", "active": true, "zones": ["db", "mail"]}, {"name": "night", "active": false, "zones": ["db"]}])"));
    EXPECT_EQ(json.at("zones").at(0), support::parseJson(R"({"name": "db", "type": "acl",
        "members": ["10:00:00:00:C9:2B:44:01", "1:7", "010A00", "alias tape"]})"));
    EXPECT_EQ(json.at("aliases"), support::parseJson(R"([{"name": "tape", "members": ["50:06:01:60:3B:A0:11:22"]}])"));
    EXPECT_EQ(json.at("limits").at(3), support::parseJson(R"({"what": "members", "used": 7, "limit": 12000})"));
    EXPECT_THAT(
        render(report, Format::terse, false),
        StartsWith("activeZoneset=day\nzonesets.1.name=day\nzonesets.1.active=true\nzonesets.1.zones=db,mail\n"));
}

TEST_F(Zoning, OfAnEmptySwitchThereIsNothing) {
    EXPECT_THAT(tableOf(showZoning(false)),
                StartsWith("active zone set  none\n\nNo zone sets.\n\nNo zones.\n\nNo aliases.\n\nLIMIT OF "));
    EXPECT_TRUE(jsonOf(showZoning(false)).at("activeZoneset").is_null());
}

TEST_F(Zoning, TheActiveZoneSetAlone) {
    have(support::kActiveZoning);
    EXPECT_EQ(tableOf(showZoning(true)), "active zone set  day\n"
                                         "\n" +
                                             kZones +
                                             "\n"
                                             "ALIAS  MEMBERS\n"
                                             "tape   50:06:01:60:3B:A0:11:22\n");
}

TEST_F(Zoning, LimitsThatTheSwitchHasNotToldAreAskedForAgain) {
    sim::Fault fault;
    fault.call = "zov_fzsGetZoningLimitations";
    fault.result = 9;
    fault.times = 2;
    _switch->addFault(fault);
    EXPECT_THAT(tableOf(showZoning(false)), HasSubstr("\nzone sets            0     ?\n"));
    EXPECT_TRUE(jsonOf(showZoning(false)).at("limits").at(0).at("limit") == 300);
}

TEST_F(Zoning, ActiveAndDefinedAreCompared) {
    have(support::kActiveZoning);
    EXPECT_EQ(tableOf(diffZoning(std::nullopt)), "What is active is what is defined as \"day\".\n");
}

TEST_F(Zoning, WithoutAnActiveZoneSetThereIsNothingToCompare) {
    have(support::kZoning);
    EXPECT_EQ(tableOf(diffZoning(std::nullopt)), "No zone set is active.\n");
}

TEST_F(Zoning, AnActiveZoneSetThatIsNotDefinedAnyMoreIsRemarkedOn) {
    have(support::kActiveZoning);
    _switch->setZoning({}, sim::Notify::no);
    EXPECT_THAT(tableOf(diffZoning(std::nullopt)),
                AllOf(HasSubstr("removed  zone set  day   -\n"),
                      EndsWith("From what is active to what is defined as \"day\".\n")));
    EXPECT_THAT(tableOf(showZoning(false)), EndsWith("What is active is not what is defined under its name: \"dcache "
                                                     "zoning diff\" tells more.\n"));
}

TEST_F(Zoning, AScriptIsComparedWithoutTheSwitchHearingOfIt) {
    have(support::kActiveZoning);
    EXPECT_EQ(tableOf(diffZoning(kEdits)), kChanges);
    for (const sim::Record &record : _switch->records())
        EXPECT_EQ(record.call.find("smlSet"), std::string::npos) << record.line();
    EXPECT_EQ(jsonOf(diffZoning("delete alias tape")).at("changes").at(0), support::parseJson(R"({
        "change": "removed", "object": "alias", "name": "tape", "part": "", "value": ""})"));
}

TEST_F(Zoning, ADumpSaysWhatIsActiveInAComment) {
    have(support::kActiveZoning);
    EXPECT_EQ(dumpZoning(), "# zone set \"day\" is active\n" + support::kZoning);
}

TEST_F(Zoning, ARunReportsWhatTheSwitchHasThen) {
    have(support::kActiveZoning);
    const Report report = runZoning({kEdits});
    EXPECT_THAT(tableOf(report), StartsWith("edits            4\n"
                                            "committed        yes\n"
                                            "active zone set  day\n"
                                            "\n"
                                            "The switch now has what the script made of its zoning.\n"
                                            "\n"
                                            "LIMIT OF "));
    const nlohmann::json json = jsonOf(report);
    EXPECT_EQ(json.at("committed"), true);
    EXPECT_THAT(json.at("deviations"), IsEmpty());
    EXPECT_EQ(_switch->zoning().zones.size(), 4u);
    EXPECT_EQ(jsonOf(showZoning(false)).at("zones").size(), 4u);
}

TEST_F(Zoning, AScriptWithErrorsIsNotBegun) {
    _switch->clearRecords();
    EXPECT_THAT([] { runZoning({"create zone\ncommit"}); },
                testing::ThrowsMessage<Misuse>(HasSubstr("line 1: expected")));
    EXPECT_THAT([] { diffZoning("x"); }, testing::Throws<Misuse>());
    EXPECT_THAT(_switch->records(), IsEmpty());
}

TEST_F(Zoning, CtrlCGivesTheLockBack) {
    sim::Fault slow; // the edit takes so long that the interruption comes before the next one
    slow.call = "zov_ZoneCreate";
    slow.action = [] { raise(SIGINT); };
    _switch->addFault(slow);
    sim::Fault slower;
    slower.call = "zov_ZonesetAddZone";
    slower.delay = std::chrono::milliseconds(500);
    _switch->addFault(slower);
    EXPECT_THAT([] { runZoning({kEdits}); },
                testing::ThrowsMessage<Failure>("interrupted before line 2; nothing was committed"));
    EXPECT_EQ(_switch->zoningLockHolder(), 0u);
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
    EXPECT_THAT(_switch->zoning().zones, IsEmpty());
}

TEST_F(Zoning, CtrlCEndsItAlthoughTheSwitchDoesNotAnswer) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EXIT(
        {
            sim::Fault fault;
            fault.key = "Cmd.Zoning.FabricLock.77";
            fault.action = [] {
                raise(SIGINT);
                for (;;)
                    pause();
            };
            _switch->addFault(fault);
            runZoning({kEdits});
        },
        testing::ExitedWithCode(1), "interrupted; the switch does not answer");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << "two seconds and the load";
}

TEST_F(Zoning, CtrlCDuringACommitThatHangsSaysSo) {
    EXPECT_EXIT(
        {
            sim::Fault fault;
            fault.key = "Cmd.Zoning.SaveConfig";
            fault.action = [] {
                raise(SIGTERM);
                for (;;)
                    pause();
            };
            _switch->addFault(fault);
            runZoning({"commit"});
        },
        testing::ExitedWithCode(1), "interrupted while the switch works on the commit");
}

TEST(ZoningCommandLine, AloneItIsShown) {
    const TextFile zoning(support::kActiveZoning);
    const auto shown = runDcache({"zoning", "--zoning", zoning.name()});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_THAT(shown.err, IsEmpty());
    EXPECT_EQ(runDcache({"zoning", "show", "--zoning", zoning.name()}).out, shown.out);
    const auto active = runDcache({"zoning", "--active", "--zoning", zoning.name()}).out;
    EXPECT_EQ(runDcache({"zoning", "show", "--active", "--zoning", zoning.name()}).out, active);
    EXPECT_THAT(shown.out, HasSubstr(kZones));
    EXPECT_EQ(active.find("LIMIT"), std::string::npos);
}

TEST(ZoningCommandLine, ARunTellsItsProgressBesideItsData) {
    const TextFile zoning(support::kActiveZoning);
    const TextFile edits(kEdits);
    const auto run = runDcache({"zoning", "run", edits.name(), "--zoning", zoning.name(), "--id", "ann", "-o", "json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "zoning lock taken for \"ann\"\n"
                       "line 1: create zone web acl\n"
                       "line 2: add member web alias tape\n"
                       "line 3: add zone day web\n"
                       "line 4: remove everywhere 1:7\n"
                       "line 5: commit\n");
    EXPECT_EQ(support::parseJson(run.out).at("committed"), true);
}

TEST(ZoningCommandLine, ADryRunAndADiffShowTheDifference) {
    const TextFile zoning(support::kActiveZoning);
    const TextFile edits(kEdits);
    const auto dry = runDcache({"zoning", "run", "--dry-run", edits.name(), "--zoning", zoning.name()});
    EXPECT_EQ(dry.exitCode, 0);
    EXPECT_EQ(dry.out, "edits      4\ncommitted  no (dry run)\n\n" + kChanges);
    EXPECT_EQ(dry.err.find("lock"), std::string::npos);
    const auto diff = runDcache({"zoning", "diff", edits.name(), "--zoning", zoning.name()});
    EXPECT_EQ(diff.exitCode, 0);
    EXPECT_EQ(diff.out, kChanges);
    EXPECT_THAT(diff.err, IsEmpty());
}

TEST(ZoningCommandLine, ADumpRunOnAnotherSwitchBuildsTheSame) {
    const TextFile zoning(support::kZoning);
    const auto dump = runDcache({"zoning", "dump", "--zoning", zoning.name()});
    EXPECT_EQ(dump.out, "# no zone set is active\n" + support::kZoning);
    const TextFile script(dump.out);
    const auto run = runDcache({"zoning", "run", script.name()});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, HasSubstr("The switch now has what the script made of its zoning."));
}

TEST(ZoningCommandLine, EveryWayToEndHasItsExitCode) {
    std::string tooMany = "create zone big soft\n";
    for (int i = 0; i <= 500; ++i)
        tooMany += "add member big " + std::to_string(i / 200 + 1) + ":" + std::to_string(i % 200) + "\n";
    struct Row {
        std::string zoning;
        std::string script;
        int exitCode;
        const char *words;
    };
    const std::vector<Row> rows = {
        {support::kActiveZoning, kEdits, 0, ""},
        {support::kActiveZoning, "delete zone web\ncommit\n", 1, "dcache: line 1: delete zone web: there is no zone"},
        {support::kActiveZoning, "delete\ncommit\n", 2, "dcache: the script has 1 error"},
        {support::kActiveZoning + "lock\n", kEdits, 3, "dcache: the switch refused the zoning lock"},
        {support::kActiveZoning, tooMany, 4,
         "dcache: line 502: add member big 3:100: the switch takes no more than 500"},
        {support::kActiveZoning, "delete zone db\ncommit\n", 5, "dcache: the switch rejected the commit: the active"},
    };
    for (const Row &row : rows) {
        const TextFile zoning(row.zoning);
        const TextFile script(row.script);
        const auto run = runDcache({"zoning", "run", script.name(), "--zoning", zoning.name()});
        EXPECT_EQ(run.exitCode, row.exitCode) << row.words;
        EXPECT_THAT(run.err, HasSubstr(row.words));
        EXPECT_EQ(run.out.empty(), row.exitCode != 0) << row.words;
    }
}

TEST(ZoningCommandLine, WhatCannotBeReadIsAFailure) {
    EXPECT_EQ(runDcache({"zoning", "run", "/nonexistent"}).err,
              "dcache: cannot read /nonexistent: No such file or directory\n");
    const TextFile wrong("activate\n");
    const auto run = runDcache({"zoning", "--zoning", wrong.name()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, HasSubstr("line 1: expected \"activate SET\""));
}
