// What one line looks like. The clock and the conversion of its time are the test's own.
#include "foundation/cim_log.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Log.h"

namespace {

constexpr time_t kSecond = 1700000008; // 14 November 2023, 22:13:28 UTC
constexpr size_t kLongestLine = 2055;

timeval now = {kSecond, 42999};
bool localtime_fails = false;
int conversions = 0;

} // namespace

extern "C" int gettimeofday(timeval *__restrict tv, void *__restrict) noexcept {
    *tv = now;
    errno = EPERM;
    return 0;
}

extern "C" tm *localtime(const time_t *timer) noexcept {
    using Function = tm *(*)(const time_t *);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "localtime"));
    ++conversions;
    tm *local = localtime_fails ? nullptr : real(timer);
    errno = EOVERFLOW; // who looks for a zone's file may leave an error behind
    return local;
}

namespace {

std::string ids() {
    return std::to_string(getpid()) + "/" + std::to_string(syscall(SYS_gettid)) + " ";
}

class CimLog : public testing::Test {
protected:
    CimLog() { setZone("UTC0"); }

    static void setZone(const char *zone) { setenv("TZ", zone, 1); } // NOLINT(concurrency-mt-unsafe): one thread
    static void setClock(time_t second, int microseconds) {
        now.tv_sec = second;
        now.tv_usec = microseconds;
    }

    /// What has been added to a file since the last call.
    std::string added() { return newIn(support::kMainLog, _mainSize); }
    std::string addedCritical() { return newIn(support::kCriticalLog, _criticalSize); }

private:
    static std::string newIn(const char *name, size_t &size) {
        const std::string all = support::readFile(name);
        std::string text = all.substr(std::min(size, all.size()));
        size = all.size();
        return text;
    }

    size_t _mainSize = support::readFile(support::kMainLog).size();
    size_t _criticalSize = support::readFile(support::kCriticalLog).size();
};

TEST_F(CimLog, ALineIsTimeIdsAndMessage) {
    cim_log(CIM_LOG_INFO, "DCACHE: text\n");
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids() + "DCACHE: text\n");
}

TEST_F(CimLog, MonthDayAndTimeHaveTwoDigitsEach) {
    setClock(1704164645, 0);
    cim_log(CIM_LOG_INFO, "x\n");
    EXPECT_EQ(added(), "01/02 03:04:05.000 " + ids() + "x\n");
}

TEST_F(CimLog, MillisecondsAreCutAndHaveThreeDigits) {
    struct Row {
        int microseconds;
        const char *text;
    };
    for (const Row &row :
         {Row{0, ".000 "}, Row{999, ".000 "}, Row{1000, ".001 "}, Row{9999, ".009 "}, Row{10000, ".010 "},
          Row{99999, ".099 "}, Row{100000, ".100 "}, Row{999000, ".999 "}, Row{999999, ".999 "}}) {
        setClock(kSecond, row.microseconds);
        cim_log(CIM_LOG_INFO, "x\n");
        EXPECT_EQ(added(), std::string("11/14 22:13:28") + row.text + ids() + "x\n");
    }
}

TEST_F(CimLog, LevelsDecideTheFiles) {
    struct Row {
        unsigned int level;
        bool main;
        bool critical;
    };
    constexpr Row rows[] = {
        {0, false, false},
        {1, true, false},
        {CIM_LOG_INFO, true, false},
        {3, true, false},
        {CIM_LOG_CRIT, true, true},
        {5, true, true},
        {6, true, true},
        {7, true, true},
        {CIM_LOG_CLIENT, true, false},
        {9, true, false},
        {10, true, false},
        {11, true, false},
        {12, true, true},
        {13, true, true},
        {14, true, true},
        {15, true, true},
        {16, false, false},
        {17, true, false},
        {0x12, true, false},
        {0x14, true, true},
        {0x20, false, false},
        {0x40, false, false},
        {0xF0, false, false},
        {0x48, true, false},
        {0x80000000, false, false},
        {0xFFFFFFF0, false, false},
        {0xFFFFFFF4, true, true},
        {0xFFFFFFFF, true, true},
    };
    for (const Row &row : rows) {
        cim_log(row.level, "level %u\n", row.level);
        const std::string line = "11/14 22:13:28.042 " + ids() + "level " + std::to_string(row.level) + "\n";
        EXPECT_EQ(added(), row.main ? line : "") << row.level;
        EXPECT_EQ(addedCritical(), row.critical ? line : "") << row.level;
    }
    EXPECT_EQ(CIM_LOG_INFO, 2U);
    EXPECT_EQ(CIM_LOG_CRIT, 4U);
    EXPECT_EQ(CIM_LOG_CLIENT, 8U);
}

TEST_F(CimLog, ClientsLinesGoToTheMainFileOnly) {
    DataCacheLogger("client %s %d\n", "line", 7);
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids() + "client line 7\n");
    EXPECT_EQ(addedCritical(), "");
}

TEST_F(CimLog, MessagesAreFormattedAsPrintfDoes) {
    cim_log(CIM_LOG_INFO, "%d|%5u|%-5x|%05.1f|%s|%.2s|%c|%lld|%%|%*d\n", -7, 42U, 0xABU, 2.25, "text", "cut", 'c',
            -5000000000LL, 4, 9);
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids() + "-7|   42|ab   |002.2|text|cu|c|-5000000000|%|   9\n");
}

TEST_F(CimLog, NothingIsAddedToAMessage) {
    cim_log(CIM_LOG_INFO, "one");
    cim_log(CIM_LOG_INFO, "%s", "");
    cim_log(CIM_LOG_INFO, "two\n");
    const std::string prefix = "11/14 22:13:28.042 " + ids();
    EXPECT_EQ(added(), prefix + "one" + prefix + prefix + "two\n");
}

TEST_F(CimLog, ANullFormatIsAnEmptyMessage) {
    const char *none = nullptr;
    cim_log(CIM_LOG_INFO, none, 0);
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids());
}

TEST_F(CimLog, AMessageThatCannotBeFormattedIsLeftOut) {
    constexpr wchar_t kNotAscii[] = {0x263A, 0};
    for (const char *before : {"", "before "}) {
        cim_log(CIM_LOG_CRIT, "%s%ls\n", before, static_cast<const wchar_t *>(kNotAscii));
        EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids());
        EXPECT_EQ(addedCritical(), "11/14 22:13:28.042 " + ids());
    }
}

TEST_F(CimLog, ALineIsCutAt2055BytesAndThenHasNoNewline) {
    for (const bool withTime : {true, false}) {
        localtime_fails = !withTime;
        const std::string prefix = (withTime ? "11/14 22:13:28.042 " : "") + ids();
        for (const size_t wanted : {kLongestLine - 2, kLongestLine - 1, kLongestLine, kLongestLine + 1,
                                    kLongestLine + 2, kLongestLine + 100, size_t{5000}}) {
            const std::string message = std::string(wanted - prefix.size() - 1, 'x') + "\n";
            cim_log(CIM_LOG_CRIT, "%s", message.c_str());
            const std::string expected = (prefix + message).substr(0, kLongestLine);
            EXPECT_EQ(added(), expected) << "a line of " << wanted;
            EXPECT_EQ(addedCritical(), expected) << "a line of " << wanted;
            EXPECT_EQ(expected.back() == '\n', wanted <= kLongestLine);
        }
    }
}

TEST_F(CimLog, AMessageOf3000CharactersMakesALineOf2055Bytes) {
    const std::string message(3000, 'm');
    DataCacheLogger("%s\n", message.c_str());
    const std::string line = added();
    EXPECT_EQ(line.size(), kLongestLine);
    EXPECT_EQ(line.back(), 'm');
    cim_log(CIM_LOG_INFO, "next\n");
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids() + "next\n");
}

TEST_F(CimLog, ATimeThatCannotBeConvertedIsLeftOut) {
    localtime_fails = true;
    cim_log(CIM_LOG_CRIT, "no time\n");
    EXPECT_EQ(added(), ids() + "no time\n");
    EXPECT_EQ(addedCritical(), ids() + "no time\n");
}

TEST_F(CimLog, EveryLineHasItsTimeConverted) {
    conversions = 0;
    for (const int microseconds : {0, 1000, 999999})
        setClock(kSecond, microseconds), cim_log(CIM_LOG_INFO, "x\n");
    EXPECT_EQ(conversions, 3);
    cim_log(0, "no line\n");
    EXPECT_EQ(conversions, 3);
    setClock(kSecond - 1, 0); // somebody put the clock back
    added();
    cim_log(CIM_LOG_INFO, "x\n");
    EXPECT_EQ(added(), "11/14 22:13:27.000 " + ids() + "x\n");
}

TEST_F(CimLog, AFailingConversionIsSeenInTheSameSecond) {
    const std::string time = "11/14 22:13:28.042 ";
    cim_log(CIM_LOG_INFO, "good\n");
    localtime_fails = true;
    cim_log(CIM_LOG_INFO, "failed\n");
    localtime_fails = false;
    cim_log(CIM_LOG_INFO, "good again\n");
    EXPECT_EQ(added(), time + ids() + "good\n" + ids() + "failed\n" + time + ids() + "good again\n");
}

TEST_F(CimLog, ANewTimeZoneIsSeenInTheSameSecond) {
    cim_log(CIM_LOG_INFO, "x\n");
    setZone("EST5");
    cim_log(CIM_LOG_INFO, "x\n");
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + ids() + "x\n" + "11/14 17:13:28.042 " + ids() + "x\n");
}

TEST_F(CimLog, TheIdsAreTheProcessAndTheCallingThread) {
    std::string threadsIds;
    std::thread thread([&threadsIds] {
        threadsIds = ids();
        cim_log(CIM_LOG_INFO, "thread\n");
    });
    thread.join();
    cim_log(CIM_LOG_INFO, "main\n");
    EXPECT_NE(threadsIds, ids());
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + threadsIds + "thread\n" + "11/14 22:13:28.042 " + ids() + "main\n");
}

TEST_F(CimLog, AChildProcessLogsUnderItsOwnIds) {
    cim_log(CIM_LOG_INFO, "parent\n");
    added();
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        cim_log(CIM_LOG_INFO, "child\n");
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    const std::string id = std::to_string(child);
    EXPECT_EQ(added(), "11/14 22:13:28.042 " + id + "/" + id + " child\n");
}

TEST_F(CimLog, ErrnoStaysAsItWas) {
    ASSERT_EQ(mkdir(support::kCriticalLog, 0700), 0) << "so that an open fails";
    localtime_fails = true;
    for (const int before : {0, EBADF, ENOENT}) {
        errno = before;
        cim_log(CIM_LOG_CRIT, "line\n");
        EXPECT_EQ(errno, before);
        errno = before;
        DataCacheLogger("line\n");
        EXPECT_EQ(errno, before);
        errno = before;
        cim_log(0, "line\n");
        EXPECT_EQ(errno, before);
    }
}

TEST_F(CimLog, MessagesMayNameTheCallersError) {
    ASSERT_EQ(mkdir(support::kCriticalLog, 0700), 0) << "so that an open fails";
    const char *format = "failed: %m %d\n"; // the compiler does not know %m
    localtime_fails = true;
    for (int line = 1; line <= 2; ++line) { // the clock and its conversion change errno for each
        errno = ENOSPC;
        cim_log(CIM_LOG_INFO, format, line);
        EXPECT_EQ(added(), ids() + "failed: No space left on device " + std::to_string(line) + "\n");
    }
}

} // namespace
