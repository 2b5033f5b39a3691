/*
 * A connection to a switch inside the process.
 *
 * Thread-safe.
 */
#ifndef SIM_API_LOCALCONNECTION_H
#define SIM_API_LOCALCONNECTION_H

#include <memory>

#include "sim/core/Connection.h"
#include "sim/core/Endpoint.h"

namespace sim {

class LocalConnection final : public Connection {
public:
    /// `handle` is the number that connectTo() gave. Once its switch is gone, every call fails.
    explicit LocalConnection(zov_handle_t handle) : _handle(handle) {}

    int32_t registerFor(zov_eventcallback_t callback, void *context, zov_eventreg_s *list, int32_t count) override;

    int32_t get(const char *key, char **value, uint32_t *size) override;
    int32_t getBatch(SmlMessage *messages, int32_t count) override;
    int32_t set(const char *key, char *value) override;
    int32_t setBatch(SmlMessage *messages, int32_t count) override;

    int32_t zoningLimits(zov_fzs_zoninglimits_s *limits) override;
    int32_t activeZonesetName(char *name) override;
    int32_t activeZoneset(void **zoneset) override;
    int32_t zonesetList(int32_t *count, char **names) override;
    int32_t zoneset(const char *name, void **zoneset) override;
    int32_t allZonesAndAliases(const char *newName, void **zoneset) override;

private:
    const zov_handle_t _handle;
};

/// zov_IPConnect to this switch. `caller` stands for whoever waits for it, until there is a connection: a number that is
/// none's; 0 for a client inside the process.
int32_t connectTo(const std::shared_ptr<Endpoint> &endpoint, const char *host, const char *client, const char *text,
                  zov_handle_t *handle, zov_handle_t caller = 0);

} // namespace sim

#endif // SIM_API_LOCALCONNECTION_H
