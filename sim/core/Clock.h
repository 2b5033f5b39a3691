/*
 * The clock of a switch, and everything that waits by it.
 *
 * It tells two things: the uptime, and a time that delays last by. Both go together at every pace but by hand, where
 * the uptime stands and delays last as long as they say. Neither ever goes back.
 *
 * Thread-safe. end() ends every wait, those begun later too.
 */
#ifndef SIM_CORE_CLOCK_H
#define SIM_CORE_CLOCK_H

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

#include "sim/Simulator.h"

namespace sim {

class Clock {
public:
    /// What delays last by: time since the clock was made.
    using Time = std::chrono::nanoseconds;
    using RealTime = std::chrono::steady_clock::time_point;

    Clock();

    /// Throws std::invalid_argument for a speed that is not above 0, or above a million.
    void setPace(Pace pace, double speed);
    Pace pace() const;
    double speed() const;

    /// Whole seconds of uptime, and the same to the millisecond, which ends earlier.
    std::chrono::seconds wholeSeconds() const;
    std::chrono::milliseconds uptime() const;
    Time time() const;
    /// When it will be that time, if the pace stays; nothing when time does not go by itself.
    std::optional<RealTime> realTimeOf(Time time) const;

    /// Time passes at once. Beyond the last moment that can be told the clock stands.
    void pass(std::chrono::seconds whole, Time part = Time(0));
    /// The same up to a moment, unless that has been.
    void passUntil(Time time);

    /// A switch that is slow to answer: somebody works on it, who is waited for if the clock goes by itself.
    void take(
        std::chrono::seconds time, const std::function<bool()> &isGivenUp = [] { return false; });
    /// Waits, by this clock or by nobody's, unless whoever waits gives it up; asked again after wake().
    void delay(
        Time time, const std::function<bool()> &isGivenUp = [] { return false; });
    void hang(
        std::chrono::milliseconds time, const std::function<bool()> &isGivenUp = [] { return false; });
    void wake();
    /// False when that takes longer than `limit` of real time.
    bool waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit);
    void end();

    /// Is called after every change but the going of time itself, with no lock of the clock held. To be given before
    /// the clock is used.
    void onChange(std::function<void()> action) { _onChange = std::move(action); }

private:
    struct Uptime {
        std::chrono::seconds whole{3600};
        Time part{0}; ///< of a second
    };

    /// Whether time goes by itself.
    bool goes() const { return _pace == Pace::byHand || _pace == Pace::running; }
    Time sinceAnchor(RealTime now) const;
    Time timeAt(RealTime now) const;
    Time timeNow() const { return timeAt(std::chrono::steady_clock::now()); }
    Uptime uptimeAt(RealTime now) const;
    std::chrono::milliseconds millisecondsNow() const;
    RealTime realTimeIn(Time time) const;
    void anchor();
    void move(std::chrono::seconds whole, Time part);
    void changed();

    std::function<void()> _onChange;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    Pace _pace = Pace::byHand;
    double _speed = 1; ///< 1 by hand
    bool _ended = false;

    // As it was at the anchor:
    RealTime _anchor;
    Time _time{0};
    Uptime _uptime;
};

} // namespace sim

#endif // SIM_CORE_CLOCK_H
