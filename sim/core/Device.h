/*
 * The switch itself: its state, who may change it, and what it tells when it changes.
 *
 * Everything is strict: what a client asks is done exactly or refused with a status. A change and its
 * notification are one step, so notifications go out in the order of the changes.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_DEVICE_H
#define SIM_CORE_DEVICE_H

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "sim/core/Notifier.h"
#include "sim/model/Announcement.h"
#include "sim/model/Switch.h"
#include "sim/session/Commands.h"
#include "sim/tree/Tree.h"

namespace sim {

/// A message of a batch. What the levers have answered is not served.
struct Request {
    SmlMessage *message;
    bool isAnswered;
};

class Device {
public:
    Device(Switch state, Notifier &notifier) : _notifier(notifier), _switch(std::move(state)) {}

    // ---- as clients reach it ---------------------------------------------------------------------

    /// Reads one key; `value` is untouched unless the result is kOk. Time passes when the switch is slow to answer.
    int32_t get(const std::string &key, std::string &value);
    /// Sets one key or runs one command.
    int32_t set(zov_handle_t client, const std::string &key, const std::string &value);
    /// The same for the messages of a batch, all in one step; every message is handled.
    void getAll(const std::vector<Request> &requests);
    void setAll(zov_handle_t client, const std::vector<Request> &requests);
    /// Takes note of what a client was answered about a key it set: a zoning edit does not survive a refusal.
    void takeNote(zov_handle_t client, const std::string &key, int32_t status);

    Zoning zoning() const;

    // ---- as the switch's own hardware and software reach it; errors as in Simulator.h -----------------

    void change(const std::string &key, const std::string &value, Notify notify);
    /// Lets somebody put hands on the switch. An operation that throws must have changed nothing.
    void operate(const std::function<Announcements(Switch &)> &operation, Notify notify);
    std::string read(const std::string &key) const;
    /// What somebody finds who looks at the switch.
    template <class Look> auto inspect(const Look &look) const {
        const std::lock_guard<std::mutex> lock(_mutex);
        return look(_switch);
    }
    std::vector<std::string> keys() const;

    std::chrono::seconds uptime() const;
    void passTime(std::chrono::seconds time);

    zov_handle_t adminModeHolder() const;
    void holdAdminModeElsewhere(bool hold);
    zov_handle_t zoningLockHolder() const;
    void holdZoningLockElsewhere(bool hold);
    void restart();

private:
    int32_t getLocked(const std::string &key, std::string &value);
    int32_t setLocked(zov_handle_t client, const std::string &key, const std::string &value);
    void takeNoteLocked(zov_handle_t client, const std::string &key, int32_t status);
    int32_t run(zov_handle_t client, const GivenCommand &command);
    void advance(std::chrono::seconds time);
    void send(const Announcements &announcements);
    bool apply(const Attribute &attribute, const std::string &key, const std::string &value, Notify notify);

    Notifier &_notifier;
    mutable std::mutex _mutex;
    Switch _switch;
    std::chrono::seconds _uptime{3600};
    AdminMode _admin;
    ConfigEdit _edit;
    Backup _backup;
    ZoningSession _zoningSession;
};

} // namespace sim

#endif // SIM_CORE_DEVICE_H
