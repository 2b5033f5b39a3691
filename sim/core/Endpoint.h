/*
 * A switch with everything around it that clients meet: the rules of misbehaviour, the recorder and the
 * notifications. Calls in progress keep it alive; switched off, it answers no more.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_ENDPOINT_H
#define SIM_CORE_ENDPOINT_H

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "sim/core/Device.h"
#include "sim/core/Misuses.h"
#include "sim/core/Notifier.h"
#include "sim/core/Recorder.h"
#include "sim/levers/Faults.h"
#include "sim/zoning/NameLists.h"

namespace sim {

class Endpoint {
public:
    Endpoint(Switch state, bool recording);

    Recorder recorder;
    Faults faults;
    Notifier notifier;
    Device device;
    Misuses misuses;
    NameLists nameLists;
    std::atomic<unsigned> connections{0};

    /// Lets time pass, but not beyond the end of the switch.
    void pause(std::chrono::milliseconds time);
    /// Ends the notifications, a running callback included, and every pause. Not from a callback.
    void switchOff();
    bool isOff() const;

private:
    mutable std::mutex _powerMutex;
    std::condition_variable _powerChanged;
    bool _off = false;
};

} // namespace sim

#endif // SIM_CORE_ENDPOINT_H
