#include "tools/dcache/doctor/diagnosis.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

#include "tests/tools/Json.h"
#include <sys/stat.h>
#include <unistd.h>

using namespace dcache;
using testing::HasSubstr;

namespace {

Findings healthy() {
    Findings findings;
    findings.isConnected = findings.isStarted = findings.isReady = true;
    findings.registrations = {{ZOV_EVENT_NS_ENTRYADDED, 0}, {ZOV_EVENT_ZONE_CHANGE, 0}};
    findings.isAreaGood.fill(true);
    findings.secondsSinceReadyPass = 4;
    findings.passes = 2;
    return findings;
}

const std::vector<LogFile> kLogs = {{"/tmp/cim.out", ""}, {"/tmp/cim.crit.out", ""}};

Diagnosis diagnosisOf(const Findings &findings, const std::vector<LogFile> &logs = kLogs) {
    return diagnose(findings, logs, 10, false);
}

std::string tableOf(const Diagnosis &diagnosis) {
    return render(diagnosis.report, Format::table, false);
}

/// The row of this check, its blanks as one; empty when there is none.
std::string row(const Diagnosis &diagnosis, const std::string &check) {
    for (const auto &cells : diagnosis.report.listings.front().rows)
        if (cells[0].value == check)
            return terseValue(cells[1].value) + ": " + cells[2].text;
    return "";
}

/// Makes a folder of its own, which is gone with this.
class Folder {
public:
    Folder() {
        if (mkdtemp(_name.data()) == nullptr)
            throw std::runtime_error("no folder");
    }
    ~Folder() {
        for (const char *name : {"log", "pipe"})
            unlink(path(name).c_str());
        rmdir(path("folder").c_str());
        rmdir(_name.c_str());
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string path(const std::string &name) const { return _name + "/" + name; }

private:
    std::string _name = "/tmp/doctor-" + std::string(6, 'X');
};

} // namespace

TEST(DoctorsDiagnosis, OfAHealthyCacheIsGoodInEveryRow) {
    const Diagnosis diagnosis = diagnosisOf(healthy());
    EXPECT_TRUE(diagnosis.isHealthy);
    EXPECT_EQ(tableOf(diagnosis), "health  good\n"
                                  "\n"
                                  "CHECK                  STATE  DETAIL\n"
                                  "connection             good   the switch answers\n"
                                  "registration           good   all 2 notifications\n"
                                  "area switch            good   loaded\n"
                                  "area chassis           good   loaded\n"
                                  "area blades            good   loaded\n"
                                  "area ports             good   loaded\n"
                                  "area accounts          good   loaded\n"
                                  "area fabric            good   loaded\n"
                                  "area zoning            good   loaded\n"
                                  "readiness              good   the cache is ready\n"
                                  "complete pass          good   4 s ago\n"
                                  "EVAL thread            good   2 passes\n"
                                  "queue                  good   no notification waits\n"
                                  "zoning lock            -      not held here; other clients' locks do not show\n"
                                  "log /tmp/cim.out       good   can be written\n"
                                  "log /tmp/cim.crit.out  good   can be written\n");
}

TEST(DoctorsDiagnosis, IsToldToPrograms) {
    Findings findings = healthy();
    findings.registrations[0].result = 22;
    const auto values = jsonOf(diagnosisOf(findings).report);
    EXPECT_EQ(values.at("healthy"), false);
    EXPECT_EQ(values.at("checks").at(0), support::parseJson(R"({
        "check": "connection", "state": "good", "detail": "the switch answers"})"));
    EXPECT_EQ(values.at("registrations"), support::parseJson(R"([
        {"code": 79, "name": "ZOV_EVENT_NS_ENTRYADDED", "result": 22},
        {"code": 3, "name": "ZOV_EVENT_ZONE_CHANGE", "result": 0}])"));
}

TEST(DoctorsDiagnosis, TellsTheSimulatedSwitchFromOthers) {
    EXPECT_EQ(row(diagnose(healthy(), {}, 10, true), "connection"),
              "good: the simulated switch of this process answers");
}

TEST(DoctorsDiagnosis, WithoutAConnectionNothingElseCanBeChecked) {
    const Diagnosis diagnosis = diagnose({}, kLogs, 2.5, true);
    EXPECT_FALSE(diagnosis.isHealthy);
    EXPECT_EQ(row(diagnosis, "connection"), "bad: the switch did not answer within 2.5 s");
    for (const char *check :
         {"registration", "area switch", "area zoning", "readiness", "complete pass", "EVAL thread", "queue"})
        EXPECT_EQ(row(diagnosis, check), "unknown: not checked") << check;
    EXPECT_EQ(row(diagnosis, "zoning lock"), "info: not known");
    EXPECT_EQ(row(diagnosis, "log /tmp/cim.out"), "good: can be written");
    EXPECT_THAT(tableOf(diagnosis), testing::StartsWith("health  13 of 16 checks in trouble\n"));
}

TEST(DoctorsDiagnosis, ARefusedNotificationHasARowOfItsOwn) {
    Findings findings = healthy();
    findings.registrations[0].result = 22;
    const Diagnosis diagnosis = diagnosisOf(findings);
    EXPECT_FALSE(diagnosis.isHealthy);
    EXPECT_EQ(row(diagnosis, "registration"), "bad: 1 of 2 notifications refused");
    EXPECT_EQ(row(diagnosis, "notification 79"), "bad: ZOV_EVENT_NS_ENTRYADDED refused, result 22");
    EXPECT_EQ(row(diagnosis, "notification 3"), "");
}

TEST(DoctorsDiagnosis, EachCheckAloneCanSpoilTheHealth) {
    struct Row {
        const char *check;
        const char *shown;
        void (*spoil)(Findings &findings);
    };
    const std::vector<Row> rows = {
        {"area fabric", "bad: could not be read; see /tmp/cim.out",
         [](Findings &findings) { findings.isAreaGood[5] = false; }},
        {"area switch", "bad: could not be read; see /tmp/cim.out",
         [](Findings &findings) { findings.isAreaGood[0] = false; }},
        {"readiness", "bad: the cache is not ready", [](Findings &findings) { findings.isReady = false; }},
        {"complete pass", "bad: none so far", [](Findings &findings) { findings.secondsSinceReadyPass = -1; }},
        {"EVAL thread", "bad: no pass has ended within 10 s; see /tmp/cim.out",
         [](Findings &findings) { findings.passes = 0; }},
        {"queue", "bad: 1 notification still waits", [](Findings &findings) { findings.queued = 1; }},
        {"queue", "bad: 7 notifications still wait", [](Findings &findings) { findings.queued = 7; }},
    };
    for (const Row &each : rows) {
        Findings findings = healthy();
        each.spoil(findings);
        const Diagnosis diagnosis = diagnosisOf(findings);
        EXPECT_FALSE(diagnosis.isHealthy) << each.check;
        EXPECT_EQ(row(diagnosis, each.check), each.shown);
        EXPECT_THAT(tableOf(diagnosis), HasSubstr("1 of 16 checks in trouble"));
    }
}

TEST(DoctorsDiagnosis, BeforeTheFirstPassAnAreaIsNotBadButNotLoaded) {
    Findings findings = healthy();
    findings.passes = 0;
    findings.isAreaGood[6] = false;
    EXPECT_EQ(row(diagnosisOf(findings), "area zoning"), "bad: not loaded yet");
}

TEST(DoctorsDiagnosis, OnePassIsNotManyPasses) {
    Findings findings = healthy();
    findings.passes = 1;
    EXPECT_EQ(row(diagnosisOf(findings), "EVAL thread"), "good: 1 pass");
}

TEST(DoctorsDiagnosis, ALockOfThisProcessIsTold) {
    Findings findings = healthy();
    findings.lockHolder = "ann";
    EXPECT_EQ(row(diagnosisOf(findings), "zoning lock"), "info: held here by \"ann\"");
    EXPECT_TRUE(diagnosisOf(findings).isHealthy);
}

TEST(DoctorsDiagnosis, ALogThatCannotBeWrittenSpoilsTheHealth) {
    const Diagnosis diagnosis = diagnosisOf(healthy(), {{"/tmp/cim.out", "Is a directory"}});
    EXPECT_FALSE(diagnosis.isHealthy);
    EXPECT_EQ(row(diagnosis, "log /tmp/cim.out"), "bad: Is a directory");
}

TEST(DoctorsLogs, AFileThatIsThereKeepsWhatIsInIt) {
    const Folder folder;
    std::ofstream(folder.path("log")) << "a line\n";
    EXPECT_EQ(examineLog(folder.path("log")).problem, "");
    std::string line;
    std::getline(std::ifstream(folder.path("log")), line);
    EXPECT_EQ(line, "a line");
}

TEST(DoctorsLogs, AFileThatIsNotThereIsMade) {
    const Folder folder;
    EXPECT_EQ(examineLog(folder.path("log")).problem, "");
    EXPECT_EQ(access(folder.path("log").c_str(), W_OK), 0);
}

TEST(DoctorsLogs, AFileThatIsMadeIsForEverybodyWhateverTheMask) {
    const Folder folder;
    const mode_t mask = umask(077);
    EXPECT_EQ(examineLog(folder.path("log")).problem, "");
    umask(mask);
    struct stat facts = {};
    ASSERT_EQ(stat(folder.path("log").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0666U);
}

TEST(DoctorsLogs, AFileThatIsThereKeepsItsMode) {
    const Folder folder;
    std::ofstream(folder.path("log")) << "a line\n";
    ASSERT_EQ(chmod(folder.path("log").c_str(), 0600), 0);
    EXPECT_EQ(examineLog(folder.path("log")).problem, "");
    struct stat facts = {};
    ASSERT_EQ(stat(folder.path("log").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
}

TEST(DoctorsLogs, WhatCannotBeAFileIsTold) {
    const Folder folder;
    EXPECT_EQ(examineLog(folder.path("no/log")).problem, "No such file or directory");
    ASSERT_EQ(mkdir(folder.path("folder").c_str(), 0700), 0);
    EXPECT_EQ(examineLog(folder.path("folder")).problem, "Is a directory");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(examineLog(folder.path("pipe")).problem, "not a regular file");
    EXPECT_EQ(examineLog("/dev/null").problem, "not a regular file");
}
