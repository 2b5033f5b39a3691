#include "sim/api/ServedSwitch.h"

#include "sim/Status.h"
#include "sim/api/LocalConnection.h"
#include "sim/core/Registry.h"
#include "sim/serve/MemoryText.h"

namespace sim {

int32_t ServedSwitch::connect(zov_handle_t caller, const char *host, const char *client, const char *text,
                              zov_handle_t *handle) {
    const int32_t result = connectTo(_endpoint, host, client, text, handle, caller);
    if (result == kOk && *handle != 0)
        _endpoint->notifier.awaitAcknowledgements(*handle);
    return result;
}

std::shared_ptr<Connection> ServedSwitch::connection(zov_handle_t handle) {
    return std::make_shared<LocalConnection>(handle);
}

void ServedSwitch::acknowledge(zov_handle_t handle) {
    _endpoint->notifier.acknowledge(handle);
}

void ServedSwitch::hangUp(zov_handle_t handle) {
    _endpoint->hangUp(handle);
}

void ServedSwitch::disconnect(zov_handle_t handle) {
    Registry::instance().disconnect(handle);
    _endpoint->disconnect(handle);
}

std::string ServedSwitch::savedState() const {
    return textOf(_endpoint->device.memory());
}

void ServedSwitch::restoreState(const std::string &text) {
    _endpoint->device.remember(memoryFrom(text));
}

} // namespace sim
