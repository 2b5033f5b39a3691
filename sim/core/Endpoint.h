/*
 * A switch with everything around it that clients meet: the rules of misbehaviour, the recorder and the
 * notifications. Calls in progress keep it alive; switched off, it answers no more.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_ENDPOINT_H
#define SIM_CORE_ENDPOINT_H

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <set>

#include "sim/core/Clock.h"
#include "sim/core/Device.h"
#include "sim/core/Misuses.h"
#include "sim/core/Notifier.h"
#include "sim/core/Recorder.h"
#include "sim/core/Script.h"
#include "sim/levers/Faults.h"

namespace sim {

class Endpoint {
public:
    Endpoint(Switch state, bool recording, std::shared_ptr<Script> script = nullptr);

    Clock clock;
    const std::shared_ptr<Script> script; ///< what clients are answered by in place of the switch; usually none
    Recorder recorder;
    Faults faults{clock};
    Notifier notifier;
    Device device;
    Misuses misuses;
    std::atomic<unsigned> connections{0};
    /// Of those without a connection yet; downwards, where no connection's number gets.
    std::atomic<zov_handle_t> lastCaller{kOtherClient};

    /// Moves the clock on. While it is driven, what falls due meanwhile is delivered at its time, unless this is a
    /// callback.
    void passTime(std::chrono::seconds whole, Clock::Time part = Clock::Time(0));
    /// As the clock does, but a driven one is moved on.
    bool waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit);
    /// As the clock does, but not beyond the end of a client.
    void delay(std::chrono::milliseconds time, zov_handle_t client);
    void hang(std::chrono::milliseconds time, zov_handle_t client);
    void take(std::chrono::seconds time, zov_handle_t client);
    /// Ends the notifications, a running callback included, and whatever waits by the clock. Not from a callback.
    void switchOff();
    bool isOff() const { return _off; }

    /// A client is gone: it hears nothing more, and its calls in progress end without being served. Not from a callback.
    void hangUp(zov_handle_t client);
    bool isGone(zov_handle_t client) const;
    /// The last of its calls is over: what it held is free.
    void disconnect(zov_handle_t client);

private:
    void passRest(std::chrono::seconds whole, Clock::Time part, Clock::Time spent);

    std::atomic<bool> _off{false};
    mutable std::mutex _goneMutex;
    std::set<zov_handle_t> _gone; ///< clients that have hung up, with calls in progress
};

} // namespace sim

#endif // SIM_CORE_ENDPOINT_H
