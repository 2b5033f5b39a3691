/*
 * A connection to a switch that another process serves. A call is one message there and one back, a batch too. Arguments
 * that are missing are refused here; everything else is the server's to judge. Zone sets come as data and become objects
 * of this process.
 *
 * Thread-safe.
 */
#ifndef SIM_REMOTE_REMOTECONNECTION_H
#define SIM_REMOTE_REMOTECONNECTION_H

#include "sim/core/Connection.h"
#include "sim/remote/Switchboard.h"

namespace sim {

class RemoteConnection final : public Connection {
public:
    explicit RemoteConnection(Switchboard &switchboard) : _switchboard(switchboard) {}

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
    template <class Take> int32_t ask(const Json &message, const Take &take);
    int32_t fetch(const Json &message, void **zoneset);

    Switchboard &_switchboard;
};

} // namespace sim

#endif // SIM_REMOTE_REMOTECONNECTION_H
