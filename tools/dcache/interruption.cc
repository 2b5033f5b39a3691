#include "tools/dcache/interruption.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <system_error>
#include <unistd.h>

#include "tools/dcache/failure.h"

namespace dcache {
namespace {

volatile sig_atomic_t signalPipe = -1; // where a handler, which gets no context, can find it

void wakeUp(int descriptor) {
    const int before = errno;
    const char byte = 0;
    if (write(descriptor, &byte, 1) < 0) {
        // The pipe is full: the wake-up is there already.
    }
    errno = before;
}

extern "C" void handleSignal(int) {
    wakeUp(signalPipe);
}

/// Milliseconds for poll(), rounded up so that it does not return early. A second at most: debuggers and sanitizers may
/// hold a signal back until a call returns.
int pollTime(std::optional<std::chrono::steady_clock::time_point> until) {
    constexpr int second = 1000;
    if (!until)
        return second;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, second));
}

} // namespace

Interruption::Interruption(int output) : _output(output) {
    if (pipe2(_wakeUp, O_CLOEXEC | O_NONBLOCK) != 0)
        throw Failure(std::string("cannot wait for signals: ") + std::generic_category().message(errno));
    signalPipe = _wakeUp[1];
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigaction(SIGINT, &action, &_oldInterrupt);
    sigaction(SIGTERM, &action, &_oldTerminate);
}

Interruption::~Interruption() {
    sigaction(SIGINT, &_oldInterrupt, nullptr);
    sigaction(SIGTERM, &_oldTerminate, nullptr);
    signalPipe = -1;
    close(_wakeUp[0]);
    close(_wakeUp[1]);
}

void Interruption::raise(int error) {
    _error = error;
    wakeUp(_wakeUp[1]);
}

bool Interruption::wait(std::optional<std::chrono::steady_clock::time_point> until) {
    while (!_interrupted) {
        // Without events to ask for, poll() still tells of a pipe that has lost its reader.
        std::array<pollfd, 2> watched = {{{_wakeUp[0], POLLIN, 0}, {_output, 0, 0}}};
        if (poll(watched.data(), watched.size(), pollTime(until)) < 0)
            continue; // a signal: the pipe has a byte now
        if (watched[1].revents != 0 && _error == 0)
            _error = EPIPE;
        _interrupted = watched[0].revents != 0 || watched[1].revents != 0;
        if (until && std::chrono::steady_clock::now() >= *until)
            break;
    }
    return _interrupted;
}

} // namespace dcache
