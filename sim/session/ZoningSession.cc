#include "sim/session/ZoningSession.h"

#include <utility>

namespace sim {

Status ZoningSession::lock(zov_handle_t client) {
    if (_holder != 0 && _holder != client)
        return kLockBusy;
    _holder = client;
    return kOk;
}

Status ZoningSession::unlock(zov_handle_t client) {
    if (!heldBy(client))
        return kLockNotHeld;
    force(0);
    return kOk;
}

void ZoningSession::force(zov_handle_t client) {
    _holder = client;
    _edit.reset();
    _isSpoilt = false;
}

Status ZoningSession::open(const ZoneDatabase &defined) {
    if (isOpen())
        return kEditOpen;
    _edit = defined;
    _isSpoilt = false;
    return kOk;
}

Status ZoningSession::close(ZoneDatabase &result) {
    if (!isOpen())
        return kEditRequired;
    const Status status = _isSpoilt ? kEditSpoilt : kOk;
    if (status == kOk)
        result = std::move(*_edit);
    _edit.reset();
    _isSpoilt = false;
    return status;
}

} // namespace sim
