// How the log opens its files and writes to them.
#include "foundation/cim_log.h"

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/foundation/LogCalls.h"
#include "tests/support/Log.h"

namespace {

using Calls = std::vector<std::string>;
using Messages = std::vector<std::string>;
using log_calls::faults;
using log_calls::system_log;
using log_calls::taken;
using support::kCriticalLog;
using support::kMainLog;
using support::messagesIn;

const Calls kOpening = {"umask 000",         "open cim.out",       "getfd cim.out",      "setfd cim.out",
                        "open cim.crit.out", "getfd cim.crit.out", "setfd cim.crit.out", "umask 022"};

Calls operator+(Calls one, const Calls &other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

bool exists(const char *name) {
    struct stat status = {};
    return stat(name, &status) == 0;
}

mode_t permissionsOf(const char *name) {
    struct stat status = {};
    return stat(name, &status) == 0 ? status.st_mode & 07777U : 0;
}

/// The mask that the test's process has, whatever it was started with.
class CimLogFiles : public testing::Test {
protected:
    CimLogFiles() {
        umask(022);
        taken();
    }
};

TEST_F(CimLogFiles, NothingIsDoneBeforeTheFirstLine) {
    EXPECT_FALSE(exists(kMainLog));
    EXPECT_FALSE(exists(kCriticalLog));
    for (const unsigned int level : {0U, 16U, 0xF0U, 0xFFFFFFF0U})
        cim_log(level, "no line\n");
    EXPECT_EQ(taken(), Calls{});
    EXPECT_FALSE(exists(kMainLog));
    EXPECT_FALSE(exists(kCriticalLog));
}

TEST_F(CimLogFiles, TheFirstLineOpensBothFiles) {
    cim_log(CIM_LOG_INFO, "first\n");
    EXPECT_EQ(taken(), kOpening + Calls{"write cim.out"});
    EXPECT_EQ(messagesIn(kMainLog), Messages{"first"});
    EXPECT_TRUE(exists(kCriticalLog));
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{});
}

TEST_F(CimLogFiles, ALineCostsOneWritePerFile) {
    cim_log(CIM_LOG_INFO, "first\n");
    taken();
    cim_log(CIM_LOG_INFO, "second %s\n", "line");
    EXPECT_EQ(taken(), Calls{"write cim.out"});
    DataCacheLogger("third\n");
    EXPECT_EQ(taken(), Calls{"write cim.out"});
    cim_log(CIM_LOG_CRIT, "fourth\n");
    EXPECT_EQ(taken(), (Calls{"write cim.crit.out", "write cim.out"}));
    EXPECT_EQ(messagesIn(kMainLog), (Messages{"first", "second line", "third", "fourth"}));
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{"fourth"});
    EXPECT_EQ(support::readFile(kCriticalLog), log_calls::last_written) << "the line is the same in both";
}

TEST_F(CimLogFiles, TheFirstLineEmptiesWhatAnEarlierProcessLeft) {
    for (const char *name : {kMainLog, kCriticalLog, "/tmp/cim.out.1"})
        std::ofstream(name) << "of an earlier process\n";
    cim_log(CIM_LOG_INFO, "first\n");
    EXPECT_EQ(messagesIn(kMainLog), Messages{"first"});
    EXPECT_EQ(support::readFile(kCriticalLog), "");
    EXPECT_EQ(support::readFile("/tmp/cim.out.1"), "of an earlier process\n");
}

TEST_F(CimLogFiles, FilesHaveMode0666WhateverTheUmask) {
    umask(0777);
    cim_log(CIM_LOG_INFO, "first\n");
    EXPECT_EQ(permissionsOf(kMainLog), 0666U);
    EXPECT_EQ(permissionsOf(kCriticalLog), 0666U);
    EXPECT_EQ(umask(022), 0777U) << "the process has its own mask again";
}

TEST_F(CimLogFiles, OtherProgramsThatAreStartedDoNotInheritTheFiles) {
    cim_log(CIM_LOG_INFO, "first\n");
    for (const char *name : {"cim.out", "cim.crit.out"}) {
        const int fd = log_calls::descriptorOf(name);
        ASSERT_NE(fd, -1) << name;
        EXPECT_EQ(fcntl(fd, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC) << name; // NOLINT(hicpp-signed-bitwise)
    }
}

TEST_F(CimLogFiles, ADescriptorThatIsNotInheritedAnywayStaysAsItIs) {
    faults.isClosedOnExec = true;
    cim_log(CIM_LOG_INFO, "first\n");
    EXPECT_EQ(taken(), (Calls{"umask 000", "open cim.out", "getfd cim.out", "open cim.crit.out", "getfd cim.crit.out",
                              "umask 022", "write cim.out"}));
    EXPECT_EQ(system_log, std::vector<std::string>{});
}

TEST_F(CimLogFiles, OtherFlagsOfADescriptorAreKept) {
    faults.otherFlags = 0x40;
    cim_log(CIM_LOG_INFO, "first\n");
    EXPECT_EQ(taken(), kOpening + Calls{"write cim.out"});
    EXPECT_EQ(system_log, std::vector<std::string>{});
}

TEST_F(CimLogFiles, FlagsThatCannotBeReadAreToldToTheSystemLogOnce) {
    faults.failGetFlags = 1;
    cim_log(CIM_LOG_CRIT, "first\n");
    cim_log(CIM_LOG_CRIT, "second\n");
    EXPECT_EQ(system_log, std::vector<std::string>{std::to_string(LOG_INFO) +
                                                   ": fcntl failed, errno = " + std::to_string(EBADF) + "\n"});
    EXPECT_EQ(messagesIn(kMainLog), (Messages{"first", "second"})) << "the descriptor is kept";
    EXPECT_EQ(messagesIn(kCriticalLog), (Messages{"first", "second"}));
}

TEST_F(CimLogFiles, FlagsThatCannotBeSetAreToldToTheSystemLogForEachFile) {
    faults.failSetFlags = 2;
    cim_log(CIM_LOG_CRIT, "first\n");
    cim_log(CIM_LOG_CRIT, "second\n");
    const std::string text = std::to_string(LOG_INFO) + ": fcntl failed, errno = " + std::to_string(EINVAL) + "\n";
    EXPECT_EQ(system_log, (std::vector<std::string>{text, text}));
    EXPECT_EQ(messagesIn(kMainLog), (Messages{"first", "second"})) << "the descriptors are kept";
    EXPECT_EQ(messagesIn(kCriticalLog), (Messages{"first", "second"}));
}

TEST_F(CimLogFiles, AShortWriteIsNotRepeated) {
    cim_log(CIM_LOG_INFO, "first\n");
    const std::string before = support::readFile(kMainLog);
    taken();
    faults.shortWrites = true;
    cim_log(CIM_LOG_CRIT, "second\n");
    EXPECT_EQ(taken(), (Calls{"write cim.crit.out", "write cim.out"}));
    const std::string half = log_calls::last_written.substr(0, log_calls::last_written.size() / 2);
    EXPECT_EQ(support::readFile(kMainLog), before + half);
    EXPECT_EQ(support::readFile(kCriticalLog), half);
}

TEST_F(CimLogFiles, AFailingWriteLosesItsLineOnly) {
    cim_log(CIM_LOG_INFO, "first\n");
    taken();
    faults.failWrites = true;
    cim_log(CIM_LOG_CRIT, "lost\n");
    EXPECT_EQ(taken(), (Calls{"write cim.crit.out", "write cim.out"}));
    faults.failWrites = false;
    cim_log(CIM_LOG_CRIT, "third\n");
    EXPECT_EQ(taken(), (Calls{"write cim.crit.out", "write cim.out"}));
    EXPECT_EQ(messagesIn(kMainLog), (Messages{"first", "third"}));
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{"third"});
    EXPECT_EQ(system_log, std::vector<std::string>{});
}

TEST_F(CimLogFiles, LinesAreAppendedToWhatOthersDoToTheFile) {
    cim_log(CIM_LOG_INFO, "first\n");
    ASSERT_EQ(truncate(kMainLog, 0), 0);
    cim_log(CIM_LOG_INFO, "second\n");
    EXPECT_EQ(messagesIn(kMainLog), Messages{"second"});
}

TEST_F(CimLogFiles, AFileTakenAwayIsNotMadeAgain) {
    cim_log(CIM_LOG_INFO, "first\n");
    ASSERT_EQ(remove(kMainLog), 0);
    taken();
    cim_log(CIM_LOG_INFO, "second\n");
    EXPECT_EQ(taken(), Calls{"write cim.out"});
    EXPECT_FALSE(exists(kMainLog));
}

TEST_F(CimLogFiles, AMainFileThatCannotBeCreatedIsTriedAgainForEveryLine) {
    ASSERT_EQ(mkdir(kMainLog, 0700), 0);
    const Calls opening = {"umask 000",          "open cim.out",       "open cim.crit.out",
                           "getfd cim.crit.out", "setfd cim.crit.out", "umask 022"};
    cim_log(CIM_LOG_CRIT, "first\n");
    EXPECT_EQ(taken(), opening + Calls{"write cim.crit.out"});
    const Calls again = {"umask 000", "open cim.out", "umask 022"};
    cim_log(CIM_LOG_INFO, "second\n");
    EXPECT_EQ(taken(), again);
    cim_log(CIM_LOG_CRIT, "third\n");
    EXPECT_EQ(taken(), again + Calls{"write cim.crit.out"});
    EXPECT_EQ(messagesIn(kCriticalLog), (Messages{"first", "third"}));

    ASSERT_EQ(rmdir(kMainLog), 0);
    cim_log(CIM_LOG_INFO, "fourth\n");
    EXPECT_EQ(taken(),
              (Calls{"umask 000", "open cim.out", "getfd cim.out", "setfd cim.out", "umask 022", "write cim.out"}));
    EXPECT_EQ(messagesIn(kMainLog), Messages{"fourth"});
    EXPECT_EQ(messagesIn(kCriticalLog), (Messages{"first", "third"})) << "it was open already";
    EXPECT_EQ(system_log, std::vector<std::string>{}) << "that is told to nobody";
}

TEST_F(CimLogFiles, ACriticalFileThatCannotBeCreatedIsTriedAgainOnlyWithTheMainFile) {
    ASSERT_EQ(mkdir(kCriticalLog, 0700), 0);
    cim_log(CIM_LOG_CRIT, "first\n");
    EXPECT_EQ(taken(), (Calls{"umask 000", "open cim.out", "getfd cim.out", "setfd cim.out", "open cim.crit.out",
                              "umask 022", "write cim.out"}));
    ASSERT_EQ(rmdir(kCriticalLog), 0);
    cim_log(CIM_LOG_CRIT, "second\n");
    EXPECT_EQ(taken(), Calls{"write cim.out"});
    EXPECT_FALSE(exists(kCriticalLog));
    EXPECT_EQ(messagesIn(kMainLog), (Messages{"first", "second"}));
    EXPECT_EQ(system_log, std::vector<std::string>{}) << "that is told to nobody";
}

TEST_F(CimLogFiles, WithoutTheMainFileACriticalOneIsTriedAgainForEveryLine) {
    ASSERT_EQ(mkdir(kMainLog, 0700), 0);
    ASSERT_EQ(mkdir(kCriticalLog, 0700), 0);
    for (int line = 0; line < 2; ++line) {
        cim_log(CIM_LOG_CRIT, "lost\n");
        EXPECT_EQ(taken(), (Calls{"umask 000", "open cim.out", "open cim.crit.out", "umask 022"}));
    }
    ASSERT_EQ(rmdir(kCriticalLog), 0);
    cim_log(CIM_LOG_CRIT, "kept\n");
    EXPECT_EQ(messagesIn(kCriticalLog), Messages{"kept"});
}

} // namespace
