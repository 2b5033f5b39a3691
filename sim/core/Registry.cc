#include "sim/core/Registry.h"

#include <algorithm>
#include <iterator>

#include "sim/model/Profile.h"

namespace sim {

Registry &Registry::instance() {
    static Registry &registry = *new Registry;
    return registry;
}

void Registry::add(const std::shared_ptr<Endpoint> &endpoint) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _endpoints.erase(std::remove(_endpoints.begin(), _endpoints.end(), endpoint), _endpoints.end());
    _endpoints.push_back(endpoint);
}

void Registry::remove(const std::shared_ptr<Endpoint> &endpoint) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _endpoints.erase(std::remove(_endpoints.begin(), _endpoints.end(), endpoint), _endpoints.end());
    for (auto connection = _connections.begin(); connection != _connections.end();)
        connection = connection->second == endpoint ? _connections.erase(connection) : std::next(connection);
}

std::shared_ptr<Endpoint> Registry::newest() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _endpoints.empty() ? _builtIn : _endpoints.back();
}

std::shared_ptr<Endpoint> Registry::newestOrBuiltIn() {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!_endpoints.empty())
        return _endpoints.back();
    if (!_builtIn)
        _builtIn = std::make_shared<Endpoint>(makeSwitch(kDefaultProfile), false);
    return _builtIn;
}

zov_handle_t Registry::connect(const std::shared_ptr<Endpoint> &endpoint) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const bool alive =
        endpoint == _builtIn || std::find(_endpoints.begin(), _endpoints.end(), endpoint) != _endpoints.end();
    if (!alive)
        return 0;
    _connections[++_lastHandle] = endpoint;
    ++endpoint->connections;
    return _lastHandle;
}

void Registry::disconnect(zov_handle_t handle) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _connections.erase(handle);
}

zov_handle_t Registry::newNumber() {
    const std::lock_guard<std::mutex> lock(_mutex);
    return ++_lastHandle;
}

void Registry::skip(zov_handle_t number) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _lastHandle = std::max(_lastHandle, number);
}

std::shared_ptr<Endpoint> Registry::find(zov_handle_t handle) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto connection = _connections.find(handle);
    return connection == _connections.end() ? nullptr : connection->second;
}

} // namespace sim
