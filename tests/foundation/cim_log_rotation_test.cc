// When the log moves its files, and in which order it does what.
#include "foundation/cim_log.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/foundation/LogCalls.h"
#include "tests/support/Log.h"

namespace {

using Calls = std::vector<std::string>;
using Messages = std::vector<std::string>;
using log_calls::count;
using log_calls::faults;
using log_calls::taken;
using support::kCriticalLog;
using support::kMainLog;
using support::messagesIn;

std::string generation(int number) {
    return std::string(kMainLog) + "." + std::to_string(number);
}

bool exists(const std::string &name) {
    struct stat status = {};
    return stat(name.c_str(), &status) == 0;
}

/// Logs lines first to last, each holding its number.
void logLines(int first, int last, unsigned int level = CIM_LOG_INFO) {
    for (int line = first; line <= last; ++line)
        cim_log(level, "line %d\n", line);
}

/// The messages that logLines() makes.
Messages lines(int first, int last) {
    Messages result;
    for (int line = first; line <= last; ++line)
        result.push_back("line " + std::to_string(line));
    return result;
}

/// What a rotation does before it opens the files anew.
const Calls kMoving = {"unlink cim.out.5",           "rename cim.out.4 cim.out.5", "rename cim.out.3 cim.out.4",
                       "rename cim.out.2 cim.out.3", "rename cim.out.1 cim.out.2", "rename cim.out cim.out.1"};
const Calls kOpening = {"umask 000",         "open cim.out",       "getfd cim.out",      "setfd cim.out",
                        "open cim.crit.out", "getfd cim.crit.out", "setfd cim.crit.out", "umask 022"};

Calls operator+(Calls one, const Calls &other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

class CimLogRotation : public testing::Test {
protected:
    CimLogRotation() {
        umask(022);
        taken();
    }
};

TEST_F(CimLogRotation, TheFirstFileHolds1000LinesAndNoneIsMovedBefore) {
    logLines(1, 1000);
    EXPECT_EQ(messagesIn(kMainLog), lines(1, 1000));
    EXPECT_FALSE(exists(generation(1)));
    EXPECT_EQ(count(taken(), "unlink cim.out.5"), 0);

    logLines(1001, 1001);
    EXPECT_EQ(messagesIn(generation(1)), lines(1, 1000));
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001));
    EXPECT_FALSE(exists(generation(2)));
}

TEST_F(CimLogRotation, LaterFilesHold1001Lines) {
    logLines(1, 2001);
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 2001));
    EXPECT_EQ(messagesIn(generation(1)), lines(1, 1000));
    logLines(2002, 2002);
    EXPECT_EQ(messagesIn(kMainLog), lines(2002, 2002));
    EXPECT_EQ(messagesIn(generation(1)), lines(1001, 2001));
    EXPECT_EQ(messagesIn(generation(2)), lines(1, 1000));
}

TEST_F(CimLogRotation, LinesOfAnyLevelCountAndNoLinesDoNot) {
    for (int line = 1; line <= 1000; ++line) {
        cim_log(0, "nothing\n");
        cim_log(16, "nothing\n");
        switch (line % 4) {
        case 0:
            DataCacheLogger("line %d\n", line);
            break;
        case 1:
            cim_log(1, "line %d\n", line);
            break;
        case 2:
            cim_log(CIM_LOG_INFO, "line %d\n", line);
            break;
        default:
            cim_log(CIM_LOG_CRIT, "line %d\n", line);
            break;
        }
    }
    EXPECT_EQ(messagesIn(kMainLog), lines(1, 1000));
    EXPECT_FALSE(exists(generation(1)));
    DataCacheLogger("line 1001\n");
    EXPECT_EQ(messagesIn(generation(1)), lines(1, 1000));
}

TEST_F(CimLogRotation, FiveGenerationsAreKeptAndTheOldestIsDeleted) {
    // The file of so many rotations ago ends with line 1000, 2001, 3002, ...
    const auto lastOf = [](int file) { return 1000 + 1001 * (file - 1); };
    logLines(1, lastOf(6) + 1);
    for (int number = 1; number <= 5; ++number) {
        const int file = 7 - number;
        EXPECT_EQ(messagesIn(generation(number)), lines(lastOf(file - 1) + 1, lastOf(file))) << generation(number);
    }
    EXPECT_FALSE(exists(generation(6)));
    EXPECT_EQ(messagesIn(kMainLog), lines(lastOf(6) + 1, lastOf(6) + 1));

    logLines(lastOf(6) + 2, lastOf(7) + 1);
    EXPECT_EQ(messagesIn(generation(5)), lines(lastOf(2) + 1, lastOf(3)));
    EXPECT_EQ(messagesIn(generation(1)), lines(lastOf(6) + 1, lastOf(7)));
    EXPECT_FALSE(exists(generation(6)));
}

TEST_F(CimLogRotation, TheFifthRotationStillKeepsTheFirstFile) {
    logLines(1, 5005); // the first line of the sixth file
    EXPECT_EQ(messagesIn(generation(5)), lines(1, 1000));
    EXPECT_EQ(messagesIn(kMainLog), lines(5005, 5005));
}

TEST_F(CimLogRotation, MissingGenerationsAreSkipped) {
    logLines(1, 2002);
    ASSERT_EQ(remove(generation(1).c_str()), 0);
    logLines(2003, 3003);
    EXPECT_EQ(messagesIn(generation(1)), lines(2002, 3002));
    EXPECT_FALSE(exists(generation(2)));
    EXPECT_EQ(messagesIn(generation(3)), lines(1, 1000));
}

TEST_F(CimLogRotation, OneLineIsWrittenCriticalFileFirstThenMovedThenMainFile) {
    logLines(1, 1000);
    taken();
    logLines(1001, 1001, CIM_LOG_CRIT);
    const Calls before = {"write cim.crit.out", "close cim.out", "close cim.crit.out"};
    EXPECT_EQ(taken(), before + kMoving + kOpening + Calls{"write cim.out"});
}

TEST_F(CimLogRotation, AMainFileInThePlaceOfTheStandardInputIsClosedLikeAnyOther) {
    close(STDIN_FILENO);
    logLines(1, 1000);
    ASSERT_EQ(log_calls::descriptorOf("cim.out"), STDIN_FILENO);
    taken();
    logLines(1001, 1001);
    const Calls before = {"close cim.out", "close cim.crit.out"};
    EXPECT_EQ(taken(), before + kMoving + kOpening + Calls{"write cim.out"});
    EXPECT_EQ(messagesIn(generation(1)), lines(1, 1000));
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001));
}

TEST_F(CimLogRotation, OrdinaryLinesMoveTheFilesInTheSameOrder) {
    logLines(1, 1000);
    taken();
    logLines(1001, 1001);
    const Calls before = {"close cim.out", "close cim.crit.out"};
    EXPECT_EQ(taken(), before + kMoving + kOpening + Calls{"write cim.out"});
}

TEST_F(CimLogRotation, TheNewFilesHaveMode0666AndAreClosedOnExec) {
    umask(077);
    logLines(1, 1001);
    for (const std::string name : {"cim.out", "cim.crit.out"}) {
        struct stat status = {};
        ASSERT_EQ(stat(("/tmp/" + name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0666U) << name;
        EXPECT_EQ(fcntl(log_calls::descriptorOf(name), F_GETFD), FD_CLOEXEC) << name;
    }
    EXPECT_EQ(umask(022), 077U);
}

TEST_F(CimLogRotation, ARotationEmptiesTheCriticalFile) {
    logLines(1, 1, CIM_LOG_CRIT);
    logLines(2, 1000);
    EXPECT_EQ(messagesIn(kCriticalLog), lines(1, 1));
    logLines(1001, 1001);
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{});
    logLines(1002, 1003, CIM_LOG_CRIT);
    EXPECT_EQ(messagesIn(kCriticalLog), lines(1002, 1003));
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1003));
    EXPECT_FALSE(exists("/tmp/cim.crit.out.1"));
}

TEST_F(CimLogRotation, ACriticalLineThatMovesTheFilesIsOnlyInTheMainFileThen) {
    logLines(1, 1001, CIM_LOG_CRIT);
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001));
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{});
}

TEST_F(CimLogRotation, FailuresOnTheWayAreIgnored) {
    logLines(1, 1000);
    faults.failCloses = true;
    faults.failUnlinks = true;
    faults.failRenames = true;
    logLines(1001, 1001);
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001)) << "a main file that could not be moved is emptied";
    EXPECT_FALSE(exists(generation(1)));
    faults = {};
    logLines(1002, 2002);
    EXPECT_EQ(messagesIn(generation(1)), lines(1001, 2001));
    EXPECT_EQ(log_calls::system_log, std::vector<std::string>{});
}

TEST_F(CimLogRotation, LinesCountWhileTheMainFileCannotBeOpened) {
    ASSERT_EQ(mkdir(kMainLog, 0700), 0);
    logLines(1, 600);
    EXPECT_EQ(count(taken(), "open cim.out"), 600);
    ASSERT_EQ(rmdir(kMainLog), 0);
    logLines(601, 1000);
    EXPECT_EQ(messagesIn(kMainLog), lines(601, 1000));
    EXPECT_FALSE(exists(generation(1)));
    logLines(1001, 1001);
    EXPECT_EQ(messagesIn(generation(1)), lines(601, 1000));
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001));
}

TEST_F(CimLogRotation, WhatStandsInTheMainFilesPlaceIsMovedTooAndNothingIsClosedThatIsNotOpen) {
    ASSERT_EQ(mkdir(kMainLog, 0700), 0);
    logLines(1, 1000);
    taken();
    logLines(1001, 1001);
    const Calls before = {"umask 000", "open cim.out", "umask 022", "close cim.crit.out"};
    EXPECT_EQ(taken(), before + kMoving + kOpening + Calls{"write cim.out"});
    EXPECT_EQ(messagesIn(kMainLog), lines(1001, 1001));
}

TEST_F(CimLogRotation, ACriticalFileThatCouldNotBeOpenedIsTriedAgain) {
    ASSERT_EQ(mkdir(kCriticalLog, 0700), 0);
    logLines(1, 1000, CIM_LOG_CRIT);
    ASSERT_EQ(rmdir(kCriticalLog), 0);
    taken();
    logLines(1001, 1001, CIM_LOG_CRIT);
    EXPECT_EQ(taken(), Calls{"close cim.out"} + kMoving + kOpening + Calls{"write cim.out"});
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{});
    logLines(1002, 1002, CIM_LOG_CRIT);
    EXPECT_EQ(messagesIn(kCriticalLog), lines(1002, 1002));
}

} // namespace
