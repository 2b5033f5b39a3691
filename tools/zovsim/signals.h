/*
 * The signals by which a person or the system ends a program that goes on by itself: SIGINT, SIGTERM and SIGHUP, but for
 * those that the program was started to ignore.
 *
 * To be made before there are threads, which then leave the signals alone too. One at a time.
 */
#ifndef TOOLS_ZOVSIM_SIGNALS_H
#define TOOLS_ZOVSIM_SIGNALS_H

#include <chrono>
#include <functional>
#include <signal.h>

namespace zovsim {

class EndingSignals {
public:
    EndingSignals();
    EndingSignals(const EndingSignals &) = delete;
    EndingSignals &operator=(const EndingSignals &) = delete;
    ~EndingSignals();

    /// Waits for one of them. The next one ends the process as usual.
    void wait();

private:
    sigset_t _signals = {};
    sigset_t _before = {};
};

/// Calls `end` on a thread of its own. When that takes too long, because something waits that nothing wakes up, `leave` is
/// called, which must end the process.
void endInTime(const std::function<void()> &end, const std::function<void()> &leave,
               std::chrono::milliseconds patience = std::chrono::milliseconds(700));

} // namespace zovsim

#endif // TOOLS_ZOVSIM_SIGNALS_H
