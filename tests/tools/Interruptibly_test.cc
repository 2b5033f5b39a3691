#include "tools/dcache/interruptibly.h"

#include <atomic>
#include <gmock/gmock.h>
#include <signal.h>
#include <stdexcept>
#include <unistd.h>

using namespace dcache;

namespace {

void mustNotHappen() {
    ADD_FAILURE() << "there is nothing to leave";
}

} // namespace

TEST(Interruptibly, DoneReturnsWhatTheWorkReturns) {
    EXPECT_EQ(runInterruptibly<int>([] { return 7; }, [] {}, mustNotHappen), 7);
}

TEST(Interruptibly, DoneThrowsWhatTheWorkThrows) {
    const auto work = []() -> int { throw std::runtime_error("refused"); };
    EXPECT_THAT(
        [&] {
            runInterruptibly<int>(
                work, [] {}, mustNotHappen);
        },
        testing::ThrowsMessage<std::runtime_error>("refused"));
}

TEST(Interruptibly, CtrlCStopsTheWorkWhichThenEndsByItself) {
    std::atomic<bool> isStopped{false};
    const auto work = [&isStopped] {
        raise(SIGINT);
        while (!isStopped)
            std::this_thread::yield();
        return 8;
    };
    EXPECT_EQ(runInterruptibly<int>(
                  work, [&isStopped] { isStopped = true; }, mustNotHappen),
              8);
}

TEST(Interruptibly, WorkThatDoesNotEndIsLeftBehind) {
    const auto work = []() -> int {
        raise(SIGTERM);
        for (;;)
            pause();
    };
    EXPECT_EXIT(runInterruptibly<int>(
                    work, [] {}, [] { _exit(3); }),
                testing::ExitedWithCode(3), "");
}
