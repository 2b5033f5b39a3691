#include "tools/dcache/output.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <signal.h>
#include <string>
#include <thread>
#include <unistd.h>

#include "tests/tools/RunDcache.h"
#include "tools/dcache/failure.h"

using namespace dcache;

namespace {

int errorOf(const std::function<void()> &action) {
    try {
        action();
    } catch (const OutputFailed &failure) {
        return failure.error;
    }
    return 0;
}

} // namespace

TEST(Output, WritesAllOfATextThatIsLargerThanAPipe) {
    std::array<int, 2> ends = {-1, -1};
    ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    fcntl(ends[0], F_SETFL, 0);
    const std::string text(300'000, 'x');
    std::string received;
    std::thread reader([&] {
        std::array<char, 4096> buffer = {};
        for (ssize_t count = 1; count > 0;) {
            count = read(ends[0], buffer.data(), buffer.size());
            received.append(buffer.data(), count > 0 ? static_cast<size_t>(count) : 0);
        }
    });
    Output(ends[1]).print(text);
    close(ends[1]);
    reader.join();
    close(ends[0]);
    EXPECT_EQ(received, text);
}

TEST(Output, TellsWhyAWriteFailed) {
    signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends = {-1, -1};
    ASSERT_EQ(pipe(ends.data()), 0);
    close(ends[0]);
    EXPECT_EQ(errorOf([&] { Output(ends[1]).print("x"); }), EPIPE);
    close(ends[1]);
    const int full = open("/dev/full", O_WRONLY);
    EXPECT_EQ(errorOf([&] { Output(full).print("x"); }), ENOSPC);
    close(full);
    EXPECT_EQ(errorOf([&] { Output(full).print("x"); }), EBADF);
}

TEST(Output, WantsColourOnATerminalOnlyAndOnlyIfTheUserDoes) {
    std::array<int, 2> ends = {-1, -1};
    ASSERT_EQ(openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr), 0);
    const Output terminal(ends[1]);
    const int null = open("/dev/null", O_WRONLY);
    support::setVariable("NO_COLOR", ""); // an empty one does not count
    support::setVariable("TERM", "xterm");
    EXPECT_TRUE(terminal.wantsColour());
    EXPECT_FALSE(Output(null).wantsColour());
    support::setVariable("NO_COLOR", "1");
    EXPECT_FALSE(terminal.wantsColour());
    support::setVariable("NO_COLOR", "");
    support::setVariable("TERM", "dumb");
    EXPECT_FALSE(terminal.wantsColour());
    close(null);
    close(ends[0]);
    close(ends[1]);
}

TEST(Output, AProcessStartedWithoutStandardOutputCannotWriteIntoAFileOpenedLater) {
    const int keeper = dup(STDOUT_FILENO);
    close(STDOUT_FILENO);
    occupyStandardDescriptors();
    const int later = open("/dev/null", O_WRONLY);
    const int error = errorOf([] { Output(STDOUT_FILENO).print("x"); });
    dup2(keeper, STDOUT_FILENO);
    close(keeper);
    close(later);
    EXPECT_NE(later, STDOUT_FILENO);
    EXPECT_EQ(error, EBADF);
}
