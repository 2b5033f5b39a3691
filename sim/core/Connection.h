/*
 * A client's connection to a switch, whichever road leads there: a switch inside the process, or one that another
 * process serves. Arguments and results are those of the calls of platform/zovlib.h that name a connection.
 *
 * Thread-safe. What fails is a result; an exception is a failure of the switch library itself.
 */
#ifndef SIM_CORE_CONNECTION_H
#define SIM_CORE_CONNECTION_H

#include "platform/zovlib.h"

namespace sim {

class Connection {
public:
    Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    virtual ~Connection() = default;

    virtual int32_t registerFor(zov_eventcallback_t callback, void *context, zov_eventreg_s *list, int32_t count) = 0;

    virtual int32_t get(const char *key, char **value, uint32_t *size) = 0;
    virtual int32_t getBatch(SmlMessage *messages, int32_t count) = 0;
    virtual int32_t set(const char *key, char *value) = 0;
    virtual int32_t setBatch(SmlMessage *messages, int32_t count) = 0;

    virtual int32_t zoningLimits(zov_fzs_zoninglimits_s *limits) = 0;
    virtual int32_t activeZonesetName(char *name) = 0;
    virtual int32_t activeZoneset(void **zoneset) = 0;
    virtual int32_t zonesetList(int32_t *count, char **names) = 0;
    virtual int32_t zoneset(const char *name, void **zoneset) = 0;
    virtual int32_t allZonesAndAliases(const char *newName, void **zoneset) = 0;
};

} // namespace sim

#endif // SIM_CORE_CONNECTION_H
