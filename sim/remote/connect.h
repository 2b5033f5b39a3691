/*
 * The way to a switch that another process serves. Thread-safe.
 */
#ifndef SIM_REMOTE_CONNECT_H
#define SIM_REMOTE_CONNECT_H

#include "platform/zovlib.h"

namespace sim {

/// zov_IPConnect to the switch that is served at a socket. There is no switch at this host when there is none.
int32_t connectRemotely(const char *socketPath, const char *host, const char *client, const char *text,
                        zov_handle_t *handle);

} // namespace sim

#endif // SIM_REMOTE_CONNECT_H
