#include "sim/core/Clock.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace sim {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr double kFastest = 1e6;
constexpr seconds kLastSecond{std::numeric_limits<long>::max()};
/// A century: no delay gets there, and the sum of two such times can still be told.
constexpr Clock::Time kLastTime = std::chrono::hours(24 * 365 * 100);
constexpr milliseconds kLongestWait = std::chrono::hours(24 * 365);

/// A part of a time or a multiple of it, never beyond the last.
Clock::Time scaled(Clock::Time time, double factor) {
    const double wanted = static_cast<double>(time.count()) * factor;
    const auto last = static_cast<double>(kLastTime.count());
    return wanted < last ? Clock::Time(static_cast<Clock::Time::rep>(wanted)) : kLastTime;
}

} // namespace

Clock::Clock() : _anchor(std::chrono::steady_clock::now()) {}

void Clock::setPace(Pace pace, double speed) {
    if (!(speed > 0) || speed > kFastest)
        throw std::invalid_argument("a speed is above 0, and 1000000 at most");
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        anchor();
        _pace = pace;
        _speed = pace == Pace::running ? speed : 1;
    }
    changed();
}

Pace Clock::pace() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _pace;
}

double Clock::speed() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _speed;
}

// ---- what it tells ------------------------------------------------------------------------------------

seconds Clock::wholeSeconds() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return uptimeAt(std::chrono::steady_clock::now()).whole;
}

milliseconds Clock::uptime() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return millisecondsNow();
}

Clock::Time Clock::time() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return timeNow();
}

std::optional<Clock::RealTime> Clock::realTimeOf(Time time) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!goes())
        return std::nullopt;
    return realTimeIn(time - timeNow());
}

Clock::Time Clock::sinceAnchor(RealTime now) const {
    return goes() ? scaled(now - _anchor, _speed) : Time(0);
}

Clock::Time Clock::timeAt(RealTime now) const {
    return std::min(_time + sinceAnchor(now), kLastTime);
}

Clock::Uptime Clock::uptimeAt(RealTime now) const {
    const Time part = _pace == Pace::running ? _uptime.part + sinceAnchor(now) : _uptime.part;
    const auto more = std::chrono::duration_cast<seconds>(part);
    return {more < kLastSecond - _uptime.whole ? _uptime.whole + more : kLastSecond, part - more};
}

milliseconds Clock::millisecondsNow() const {
    const Uptime present = uptimeAt(std::chrono::steady_clock::now());
    constexpr auto last = std::chrono::duration_cast<seconds>(milliseconds::max()) - seconds(1);
    return milliseconds(std::min(present.whole, last)) + std::chrono::duration_cast<milliseconds>(present.part);
}

/// A little later rather than too early: who wakes up then must find that it is time.
Clock::RealTime Clock::realTimeIn(Time time) const {
    constexpr std::chrono::microseconds grain{1};
    return std::chrono::steady_clock::now() + scaled(std::max(time, Time(0)), 1 / _speed) + grain;
}

// ---- how it goes --------------------------------------------------------------------------------------

/// From here on the clock can go another way.
void Clock::anchor() {
    const RealTime now = std::chrono::steady_clock::now();
    _time = timeAt(now);
    _uptime = uptimeAt(now);
    _anchor = now;
}

void Clock::move(seconds whole, Time part) {
    anchor();
    constexpr auto last = std::chrono::duration_cast<seconds>(kLastTime);
    _time = std::min(_time + std::min(whole, last) + part, kLastTime);
    _uptime.whole = whole < kLastSecond - _uptime.whole ? _uptime.whole + whole : kLastSecond;
    _uptime.part += part;
}

void Clock::changed() {
    _changed.notify_all();
    if (_onChange)
        _onChange();
}

void Clock::pass(seconds whole, Time part) {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        move(whole, part);
    }
    changed();
}

void Clock::passUntil(Time time) {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (const Time left = time - timeNow(); left > Time(0))
            move(seconds(0), left);
    }
    changed();
}

// ---- who waits ----------------------------------------------------------------------------------------

void Clock::take(seconds time, const std::function<bool()> &isGivenUp) {
    if (time.count() == 0)
        return;
    const Pace present = pace();
    if (present == Pace::byHand || present == Pace::driven)
        pass(time);
    else
        delay(time, isGivenUp);
}

void Clock::delay(Time time, const std::function<bool()> &isGivenUp) {
    std::unique_lock<std::mutex> lock(_mutex);
    if (_pace == Pace::driven) {
        move(seconds(0), time);
        lock.unlock();
        changed();
        return;
    }
    const Time end = std::min(timeNow() + time, kLastTime);
    while (!_ended && timeNow() < end && !isGivenUp())
        if (goes())
            _changed.wait_until(lock, realTimeIn(end - timeNow()));
        else
            _changed.wait(lock);
}

void Clock::hang(milliseconds time, const std::function<bool()> &isGivenUp) {
    std::unique_lock<std::mutex> lock(_mutex);
    _changed.wait_for(lock, time, [&] { return _ended || isGivenUp(); });
}

void Clock::wake() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _changed.notify_all();
}

bool Clock::waitForUptime(milliseconds uptime, milliseconds limit) {
    const RealTime end = std::chrono::steady_clock::now() + std::min<milliseconds>(limit, kLongestWait);
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_ended && millisecondsNow() < uptime && std::chrono::steady_clock::now() < end) {
        const bool comesByItself = _pace == Pace::running;
        _changed.wait_until(lock, comesByItself ? std::min(end, realTimeIn(uptime - millisecondsNow())) : end);
    }
    return millisecondsNow() >= uptime;
}

void Clock::end() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _ended = true;
    _changed.notify_all();
}

} // namespace sim
