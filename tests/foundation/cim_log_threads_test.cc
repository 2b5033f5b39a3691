// Many threads at one log.
#include "foundation/cim_log.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include "tests/support/Log.h"

namespace {

constexpr int kThreads = 8;
constexpr int kLinesPerThread = 700;      // in all 5600: the first file, four of 1001 lines, and a rest
constexpr long kFirstSecond = 1700000000; // 14 November 2023, 22:13:20 UTC

/// The clock goes on by a millisecond whenever somebody looks at it.
std::atomic<long> looks{0};

} // namespace

extern "C" int gettimeofday(timeval *__restrict tv, void *__restrict) noexcept {
    const long look = looks++;
    tv->tv_sec = static_cast<time_t>(kFirstSecond + look / 1000);
    tv->tv_usec = static_cast<suseconds_t>(look % 1000 * 1000);
    sched_yield(); // who has looked at the clock without the log's lock is overtaken here
    return 0;
}

namespace {

/// One line of the log, taken apart.
struct Line {
    std::string time;
    int process = 0;
    long thread = 0;
    std::string message;
};

Line parse(const std::string &text) {
    Line line;
    std::istringstream in(text);
    std::string day;
    std::string time;
    char slash = 0;
    in >> day >> time >> line.process >> slash >> line.thread;
    in.get();
    std::getline(in, line.message);
    line.time = day + " " + time;
    return line;
}

std::vector<std::string> linesOf(const std::string &name) {
    std::istringstream in(support::readFile(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// The lines of all files, oldest first.
std::vector<std::string> allLines() {
    std::vector<std::string> all;
    for (const char *suffix : {".5", ".4", ".3", ".2", ".1", ""}) {
        for (const std::string &line : linesOf(std::string(support::kMainLog) + suffix))
            all.push_back(line);
    }
    return all;
}

/// The time of the n-th look at the clock.
std::string timeOf(long look) {
    std::array<char, 64> text{};
    const long seconds = 20 + look / 1000;
    std::snprintf(text.data(), text.size(), "11/14 22:13:%02ld.%03ld", seconds, look % 1000);
    return text.data();
}

/// Starts the threads together; each logs its lines, every tenth of them critical. Their kernel ids.
std::vector<long> logFromAllThreads() {
    std::vector<long> ids(kThreads);
    std::vector<std::thread> threads;
    std::atomic<int> ready{0};
    for (size_t number = 0; number < kThreads; ++number) {
        threads.emplace_back([number, &ids, &ready] {
            ids[number] = syscall(SYS_gettid);
            ++ready;
            while (ready != kThreads)
                sched_yield();
            const std::string filler(number * 20, '=');
            for (int line = 0; line < kLinesPerThread; ++line)
                cim_log(line % 10 == 0 ? CIM_LOG_CRIT : CIM_LOG_INFO, "thread %ld line %d %s.\n", ids[number], line,
                        filler.c_str());
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    return ids;
}

TEST(CimLogThreads, EightAtOnceAcrossRotationsLoseTearAndMixNothing) {
    setenv("TZ", "UTC0", 1); // NOLINT(concurrency-mt-unsafe): the threads come later
    const std::vector<long> ids = logFromAllThreads();

    EXPECT_EQ(linesOf("/tmp/cim.out.5").size(), 1000U);
    for (const char *name : {"/tmp/cim.out.4", "/tmp/cim.out.3", "/tmp/cim.out.2", "/tmp/cim.out.1"})
        EXPECT_EQ(linesOf(name).size(), 1001U) << name;

    const std::vector<std::string> all = allLines();
    ASSERT_EQ(all.size(), size_t{kThreads} * kLinesPerThread);
    std::map<long, int> next; // by thread: the line it wrote next
    for (size_t place = 0; place < all.size(); ++place) {
        const Line line = parse(all[place]);
        ASSERT_EQ(line.time, timeOf(static_cast<long>(place))) << "lines stand in the order of their time stamps";
        ASSERT_EQ(line.process, getpid());
        const auto number = static_cast<size_t>(std::find(ids.begin(), ids.end(), line.thread) - ids.begin());
        ASSERT_LT(number, ids.size()) << all[place];
        ASSERT_EQ(line.message, "thread " + std::to_string(line.thread) + " line " +
                                    std::to_string(next[line.thread]++) + " " + std::string(number * 20, '=') + ".");
    }
    for (const long id : ids)
        EXPECT_EQ(next[id], kLinesPerThread);
}

TEST(CimLogThreads, TheCriticalFileHoldsTheCriticalLinesSinceTheLastRotation) {
    logFromAllThreads();
    std::vector<std::string> expected;
    const std::vector<std::string> newest = linesOf(support::kMainLog);
    // The line that moved the files, the first of the newest one, went to the old critical file.
    for (size_t place = 1; place < newest.size(); ++place) {
        const std::string message = parse(newest[place]).message;
        const size_t number = message.find("line ") + 5;
        if (std::strtol(message.c_str() + number, nullptr, 10) % 10 == 0)
            expected.push_back(newest[place]);
    }
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(linesOf(support::kCriticalLog), expected);
}

} // namespace
