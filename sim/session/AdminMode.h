/*
 * Admin mode: one client at a time may change the switch. Guarded by its owner.
 */
#ifndef SIM_SESSION_ADMINMODE_H
#define SIM_SESSION_ADMINMODE_H

#include "platform/zovlib.h"
#include "sim/Status.h"

namespace sim {

class AdminMode {
public:
    /// Asking again is accepted.
    Status request(zov_handle_t client);
    Status release(zov_handle_t client);
    /// Whoever held it, `client` holds it now; 0 for nobody.
    void force(zov_handle_t client) { _holder = client; }

    bool heldBy(zov_handle_t client) const { return client != 0 && _holder == client; }
    zov_handle_t holder() const { return _holder; }

private:
    zov_handle_t _holder = 0;
};

} // namespace sim

#endif // SIM_SESSION_ADMINMODE_H
