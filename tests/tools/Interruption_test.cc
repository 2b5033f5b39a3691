#include "tools/dcache/interruption.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <optional>
#include <signal.h>
#include <thread>
#include <unistd.h>

using namespace dcache;
using Clock = std::chrono::steady_clock;

namespace {

class InterruptionTest : public testing::Test {
protected:
    InterruptionTest() {
        if (pipe2(_ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        _interruption.emplace(_ends[1]);
    }
    ~InterruptionTest() override {
        _interruption.reset();
        close(_ends[0]);
        close(_ends[1]);
    }

    int _ends[2] = {-1, -1};
    std::optional<Interruption> _interruption;
};

} // namespace

TEST_F(InterruptionTest, WithoutOneTheTimePasses) {
    const auto until = Clock::now() + std::chrono::milliseconds(20);
    EXPECT_FALSE(_interruption->wait(until));
    EXPECT_GE(Clock::now(), until);
    EXPECT_FALSE(_interruption->wait(Clock::now() - std::chrono::hours(1)));
    EXPECT_EQ(_interruption->error(), 0);
}

TEST_F(InterruptionTest, CtrlCEndsAWaitWithoutEnd) {
    ::raise(SIGINT);
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    EXPECT_TRUE(_interruption->wait(Clock::now())) << "an interruption lasts";
    EXPECT_EQ(_interruption->error(), 0);
}

TEST_F(InterruptionTest, SigtermEndsAWaitThatHasBegun) {
    // To this thread: a signal that the other one takes while it ends may get lost under ThreadSanitizer.
    std::thread other([waiting = pthread_self()] { pthread_kill(waiting, SIGTERM); });
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    other.join();
}

TEST_F(InterruptionTest, AnErrorOfAnotherThreadEndsTheWaitAndIsKept) {
    std::thread other([this] { _interruption->raise(ENOSPC); });
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    other.join();
    EXPECT_EQ(_interruption->error(), ENOSPC);
}

TEST_F(InterruptionTest, AnotherThreadMayEndTheWaitWithoutAnError) {
    std::thread other([this] { _interruption->raise(0); });
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    other.join();
    EXPECT_EQ(_interruption->error(), 0);
}

TEST_F(InterruptionTest, WithoutAnOutputNobodyCanGoAway) {
    _interruption.reset();
    _interruption.emplace(-1);
    EXPECT_FALSE(_interruption->wait(Clock::now()));
    ::raise(SIGINT);
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    EXPECT_EQ(_interruption->error(), 0);
}

TEST_F(InterruptionTest, AReaderThatGoesAwayEndsTheWait) {
    close(_ends[0]);
    _ends[0] = -1;
    EXPECT_TRUE(_interruption->wait(std::nullopt));
    EXPECT_EQ(_interruption->error(), EPIPE);
}

TEST_F(InterruptionTest, ASecondCtrlCEndsTheProcess) {
    EXPECT_EXIT(
        {
            ::raise(SIGINT);
            ::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST_F(InterruptionTest, AfterwardsSignalsAreWhatTheyWereBefore) {
    _interruption.reset();
    struct sigaction now = {};
    sigaction(SIGTERM, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL);
    sigaction(SIGINT, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL);
}
