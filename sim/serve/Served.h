/*
 * A switch as its server knows it. It may outlive the Simulator it came from: then the switch is off.
 *
 * Thread-safe.
 */
#ifndef SIM_SERVE_SERVED_H
#define SIM_SERVE_SERVED_H

#include <memory>
#include <string>

#include "sim/core/Connection.h"

namespace sim {

class Served {
public:
    Served() = default;
    Served(const Served &) = delete;
    Served &operator=(const Served &) = delete;
    virtual ~Served() = default;

    /// A number for a client that has no connection yet; it can hang up and is to be disconnected as one that has.
    virtual zov_handle_t newCaller() = 0;
    /// zov_IPConnect to this switch. Notifications count as taken when the client has acknowledged them.
    virtual int32_t connect(zov_handle_t caller, const char *host, const char *client, const char *text,
                            zov_handle_t *handle) = 0;
    virtual std::shared_ptr<Connection> connection(zov_handle_t handle) = 0;
    virtual void acknowledge(zov_handle_t handle) = 0;
    /// A client is gone: no callback of its runs any more when this returns, and its calls in progress end soon.
    virtual void hangUp(zov_handle_t handle) = 0;
    /// The last of these has ended: what the client held is free.
    virtual void disconnect(zov_handle_t handle) = 0;

    /// What the switch would still know after a restart, as a text, and the way back. Throws std::runtime_error for a
    /// text that this is not.
    virtual std::string savedState() const = 0;
    virtual void restoreState(const std::string &text) = 0;
};

/// A Simulator that can be served is one of these too.
class Servable {
public:
    virtual ~Servable() = default;
    virtual std::shared_ptr<Served> served() = 0;
};

} // namespace sim

#endif // SIM_SERVE_SERVED_H
