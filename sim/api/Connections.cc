#include "sim/api/Connections.h"

#include "sim/core/Registry.h"

namespace sim {

Connections &Connections::instance() {
    static Connections &connections = *new Connections;
    return connections;
}

void Connections::add(zov_handle_t number, const std::shared_ptr<Connection> &connection) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _all[number] = connection;
}

zov_handle_t Connections::adopt(zov_handle_t number, const std::shared_ptr<Connection> &connection) {
    const std::lock_guard<std::mutex> lock(_mutex);
    Registry &registry = Registry::instance();
    registry.skip(number);
    const bool isFree = number != 0 && _all.count(number) == 0;
    const zov_handle_t own = isFree ? number : registry.newNumber();
    _all[own] = connection;
    return own;
}

std::shared_ptr<Connection> Connections::find(zov_handle_t number) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _all.find(number);
    return found == _all.end() ? nullptr : found->second;
}

} // namespace sim
