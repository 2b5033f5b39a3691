#include "sim/session/AdminMode.h"

namespace sim {

Status AdminMode::request(zov_handle_t client) {
    if (_holder != 0 && _holder != client)
        return kAdminBusy;
    _holder = client;
    return kOk;
}

Status AdminMode::release(zov_handle_t client) {
    if (!heldBy(client))
        return kAdminNotHeld;
    _holder = 0;
    return kOk;
}

} // namespace sim
