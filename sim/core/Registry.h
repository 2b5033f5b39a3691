/*
 * All switches of the process and all connections to them.
 *
 * There is one registry, and it is never destroyed: threads may call into the switch library while the
 * process ends.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_REGISTRY_H
#define SIM_CORE_REGISTRY_H

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "sim/core/Endpoint.h"

namespace sim {

class Registry {
public:
    static Registry &instance();

    /// A switch that is from now on the one that "localhost" means.
    void add(const std::shared_ptr<Endpoint> &endpoint);
    /// The switch is no longer reached, and its connections are dead.
    void remove(const std::shared_ptr<Endpoint> &endpoint);

    /// The switch added last and not removed yet; null if there is none.
    std::shared_ptr<Endpoint> newest() const;
    /// The same; if there is none, a switch of the default profile that lives as long as the process.
    std::shared_ptr<Endpoint> newestOrBuiltIn();

    /// A number for a new connection to this switch; no number is given twice. 0 when the switch is gone.
    zov_handle_t connect(const std::shared_ptr<Endpoint> &endpoint);
    /// The connection is none any more.
    void disconnect(zov_handle_t handle);
    /// A number for a connection to a switch elsewhere.
    zov_handle_t newNumber();
    /// A number that was given elsewhere is not given here any more.
    void skip(zov_handle_t number);
    /// Null for a number that is no connection, or one to a switch that is gone.
    std::shared_ptr<Endpoint> find(zov_handle_t handle) const;

private:
    Registry() = default;

    mutable std::mutex _mutex;
    std::vector<std::shared_ptr<Endpoint>> _endpoints; ///< oldest first
    std::shared_ptr<Endpoint> _builtIn;
    std::map<zov_handle_t, std::shared_ptr<Endpoint>> _connections;
    zov_handle_t _lastHandle = 0;
};

} // namespace sim

#endif // SIM_CORE_REGISTRY_H
