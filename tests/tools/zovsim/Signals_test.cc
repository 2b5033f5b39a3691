#include "tools/zovsim/signals.h"

#include <csignal>
#include <cstdlib>
#include <future>
#include <stdexcept>

#include <gmock/gmock.h>

using zovsim::EndingSignals;
using zovsim::endInTime;

TEST(EndingSignals, AreWaitedForAndTheNextOneEndsTheProcess) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        EXPECT_EXIT(
            {
                EndingSignals signals;
                raise(signal); // nothing happens yet
                signals.wait();
                raise(signal);
            },
            testing::KilledBySignal(signal), "");
}

TEST(EndInTime, WhatEndsIsWaitedFor) {
    bool hasEnded = false;
    endInTime([&] { hasEnded = true; }, [] { FAIL() << "it ended"; }, std::chrono::seconds(20));
    EXPECT_TRUE(hasEnded);
    EXPECT_THROW(
        endInTime([] { throw std::runtime_error("no"); }, [] { FAIL() << "it ended"; }, std::chrono::seconds(20)),
        std::runtime_error);
}

TEST(EndInTime, WhatDoesNotEndIsLeft) {
    EXPECT_EXIT(
        {
            std::promise<void> never;
            endInTime([&] { never.get_future().wait(); }, [] { std::_Exit(3); }, std::chrono::milliseconds(10));
        },
        testing::ExitedWithCode(3), "");
}
