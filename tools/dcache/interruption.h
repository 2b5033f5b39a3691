/*
 * What ends a watch, or other work, before its time: Ctrl-C (SIGINT), SIGTERM, a reader that went away, or this program
 * itself.
 *
 * One per process: while it lives, the two signals end the waiting instead of the process. A second signal of a kind
 * ends the process at once.
 *
 * Thread-safety: raise() may be called from any thread, the rest from the thread that waits.
 */
#ifndef TOOLS_DCACHE_INTERRUPTION_H
#define TOOLS_DCACHE_INTERRUPTION_H

#include <atomic>
#include <chrono>
#include <optional>
#include <signal.h>

namespace dcache {

class Interruption {
public:
    /// Watches also `output`, unless it is negative: no reader there any more is an interruption, with EPIPE as its error.
    /// Throws Failure when the system has no descriptors left.
    explicit Interruption(int output);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// Interrupts: because of an error of standard output, or with 0 because there is nothing to wait for any more.
    void raise(int error);

    /// Waits until then, or without end; true when interrupted, be it now or earlier.
    bool wait(std::optional<std::chrono::steady_clock::time_point> until);

    /// The error number, 0 for an interruption by a signal.
    int error() const { return _error; }

private:
    int _output;
    int _wakeUp[2] = {-1, -1}; // a pipe; the signal handlers write into it
    std::atomic<int> _error{0};
    bool _interrupted = false;
    struct sigaction _oldInterrupt = {};
    struct sigaction _oldTerminate = {};
};

} // namespace dcache

#endif // TOOLS_DCACHE_INTERRUPTION_H
