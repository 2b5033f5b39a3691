// The C interface: the calls that name a connection, and where they go. A switch that another process serves is reached
// when the environment variable ZOVSIM_SOCKET names its socket; otherwise the switch is one inside this process.

#include <cstdlib>

#include "sim/api/Call.h"
#include "sim/api/Connections.h"
#include "sim/api/LocalConnection.h"
#include "sim/remote/connect.h"
#include "sim/zoning/NameLists.h"

using namespace sim;

namespace {

/// Hands a call to its connection.
template <class Method> int32_t on(zov_handle_t handle, const Method &method) {
    return guarded<int32_t>([&]() -> int32_t {
        NameLists::instance().expire();
        const std::shared_ptr<Connection> connection = Connections::instance().find(handle);
        return connection ? method(*connection) : kBadHandle;
    });
}

int32_t connectLocally(const char *host, const char *client, const char *text, zov_handle_t *handle) {
    zov_handle_t number = 0;
    const int32_t result =
        connectTo(Registry::instance().newestOrBuiltIn(), host, client, text, handle ? &number : nullptr);
    if (result != kOk)
        return result;
    if (number != 0)
        Connections::instance().add(number, std::make_shared<LocalConnection>(number));
    if (handle)
        *handle = number;
    return kOk;
}

} // namespace

extern "C" {

int32_t zov_IPConnect(const char *host, const char *client, const char *text, zov_handle_t *handle) {
    return guarded<int32_t>([&] {
        NameLists::instance().expire();
        const char *socket = std::getenv("ZOVSIM_SOCKET");
        return socket && *socket ? connectRemotely(socket, host, client, text, handle)
                                 : connectLocally(host, client, text, handle);
    });
}

int32_t zov_enRegisterForEventList(zov_handle_t handle, zov_eventcallback_t callback, void *context,
                                   zov_eventreg_s *list, int32_t count) {
    return on(handle, [&](Connection &connection) { return connection.registerFor(callback, context, list, count); });
}

int32_t zov_libFreeMemory(void *memory) {
    return guarded<int32_t>([&]() -> int32_t {
        NameLists::instance().expire();
        const auto release = [&]() -> int32_t {
            std::free(memory);
            return memory ? kOk : kBadArgument;
        };
        const std::shared_ptr<Endpoint> endpoint = Registry::instance().newest();
        if (!endpoint)
            return release();
        Call call{"zov_libFreeMemory"};
        return pass<int32_t>(
            *endpoint, call, [&](const Verdict &) { return release(); }, nothing,
            [&](Record &record) { record.arguments = memory ? "" : "null"; });
    });
}

int32_t zov_smlGet(zov_handle_t handle, const char *key, char **value, uint32_t *size) {
    return on(handle, [&](Connection &connection) { return connection.get(key, value, size); });
}

int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return on(handle, [&](Connection &connection) { return connection.getBatch(messages, count); });
}

int32_t zov_smlSet(zov_handle_t handle, const char *key, char *value) {
    return on(handle, [&](Connection &connection) { return connection.set(key, value); });
}

int32_t zov_smlSetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return on(handle, [&](Connection &connection) { return connection.setBatch(messages, count); });
}

int32_t zov_fzsGetZoningLimitations(zov_handle_t handle, zov_fzs_zoninglimits_s *limits) {
    return on(handle, [&](Connection &connection) { return connection.zoningLimits(limits); });
}

int32_t zov_fzsGetActiveZonesetName(zov_handle_t handle, char *name) {
    return on(handle, [&](Connection &connection) { return connection.activeZonesetName(name); });
}

int32_t zov_fzsGetActiveZoneset(zov_handle_t handle, void **zoneset) {
    return on(handle, [&](Connection &connection) { return connection.activeZoneset(zoneset); });
}

int32_t zov_fzsGetZonesetList(zov_handle_t handle, int32_t *count, char **names) {
    return on(handle, [&](Connection &connection) { return connection.zonesetList(count, names); });
}

int32_t zov_fzsGetZoneset(zov_handle_t handle, const char *name, void **zoneset) {
    return on(handle, [&](Connection &connection) { return connection.zoneset(name, zoneset); });
}

int32_t zov_fzsGetAllZonesAndAliases(zov_handle_t handle, const char *newName, void **zoneset) {
    return on(handle, [&](Connection &connection) { return connection.allZonesAndAliases(newName, zoneset); });
}

} // extern "C"
