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
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "sim/core/FormerValues.h"
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

/// What a switch still knows after it was switched off.
struct Memory {
    Edits running;              ///< the configuration
    std::optional<Edits> saved; ///< the one that waits to be activated
    std::optional<Edits> backup;
    ZoningDatabase defined;
    ZoningDatabase active; ///< one zone set with its contents, or nothing
};

class Device {
public:
    Device(Switch state, Notifier &notifier) : _notifier(notifier), _switch(std::move(state)) {}

    // ---- as clients reach it ---------------------------------------------------------------------

    // What a read adds to `time` is how long the switch takes over it: the caller lets that pass. The answer is one of
    // the moment it was asked for, and holds up nobody else.

    /// Reads one key; `value` is untouched unless the result is kOk.
    int32_t get(const std::string &key, std::string &value, std::chrono::seconds &time);
    /// Sets one key or runs one command.
    int32_t set(zov_handle_t client, const std::string &key, const std::string &value);
    /// The same for the messages of a batch, all in one step; every message is handled.
    void getAll(const std::vector<Request> &requests, std::chrono::seconds &time);
    void setAll(zov_handle_t client, const std::vector<Request> &requests);
    /// Takes note of what a client was answered about a key it set: a zoning edit does not survive a refusal.
    void takeNote(zov_handle_t client, const std::string &key, int32_t status);
    /// What a key that has this value now was before.
    std::string valueBefore(const std::string &key, const std::string &value);

    /// The client is gone: what it held is free, and those of its calls that are still in progress get it nothing.
    void hangUp(zov_handle_t client);
    /// The last of these is over.
    void disconnect(zov_handle_t client);

    Zoning zoning() const;

    // ---- as the switch's own hardware and software reach it; errors as in Simulator.h -----------------

    void change(const std::string &key, const std::string &value, Notify notify);
    /// Lets somebody put hands on the switch. An operation that throws must have changed nothing.
    void operate(const std::function<Announcements(Switch &)> &operation, Notify notify);
    std::string read(const std::string &key) const;
    std::string readStored(const std::string &key) const;
    /// What somebody finds who looks at the switch.
    template <class Look> auto inspect(const Look &look) const {
        const std::lock_guard<std::mutex> lock(_mutex);
        return look(_switch);
    }
    std::vector<std::string> keys() const;

    zov_handle_t adminModeHolder() const;
    void holdAdminModeElsewhere(bool hold);
    zov_handle_t zoningLockHolder() const;
    void holdZoningLockElsewhere(bool hold);
    void restart();

    Memory memory() const;
    /// What the switch does not have is passed over. Throws std::invalid_argument for what it cannot be.
    void remember(const Memory &memory);

private:
    int32_t getLocked(const std::string &key, std::string &value, std::chrono::seconds &time);
    int32_t setLocked(zov_handle_t client, const std::string &key, const std::string &value);
    void freeAllOf(zov_handle_t client);
    void takeNoteLocked(zov_handle_t client, const std::string &key, int32_t status);
    int32_t run(zov_handle_t client, const GivenCommand &command);
    void send(const Announcements &announcements);
    bool apply(const Attribute &attribute, const std::string &key, const std::string &value, Notify notify);

    Notifier &_notifier;
    mutable std::mutex _mutex;
    Switch _switch;
    FormerValues _former;
    AdminMode _admin;
    ConfigEdit _edit;
    Backup _backup;
    ZoningSession _zoningSession;
    std::set<zov_handle_t> _gone; ///< clients that have hung up, with calls in progress
};

} // namespace sim

#endif // SIM_CORE_DEVICE_H
