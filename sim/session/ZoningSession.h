/*
 * The fabric's zoning lock, and the edit of the zoning database under it. One client at a time holds the lock; the edit
 * is a database of its own, which replaces what is defined when it is saved, or is forgotten.
 *
 * Guarded by its owner.
 */
#ifndef SIM_SESSION_ZONINGSESSION_H
#define SIM_SESSION_ZONINGSESSION_H

#include <optional>

#include "platform/zovlib.h"
#include "sim/Status.h"
#include "sim/zoning/Database.h"

namespace sim {

class ZoningSession {
public:
    // ---- the lock ----------------------------------------------------------------------------------

    /// Asking again is accepted.
    Status lock(zov_handle_t client);
    Status unlock(zov_handle_t client);
    /// Whoever held it, `client` holds it now; 0 for nobody. An open edit is forgotten.
    void force(zov_handle_t client);

    bool heldBy(zov_handle_t client) const { return client != 0 && _holder == client; }
    zov_handle_t holder() const { return _holder; }

    // ---- the edit ----------------------------------------------------------------------------------

    /// Begins an edit with what is defined.
    Status open(const ZoneDatabase &defined);
    bool isOpen() const { return _edit.has_value(); }
    /// What is being edited. Only while an edit is open.
    ZoneDatabase &edit() { return *_edit; }
    /// Something was refused: the edit, if there is one, cannot be saved any more.
    void spoil() { _isSpoilt = isOpen(); }
    /// Ends the edit; `result` gets it unless it is spoilt.
    Status close(ZoneDatabase &result);

private:
    zov_handle_t _holder = 0;
    std::optional<ZoneDatabase> _edit;
    bool _isSpoilt = false;
};

} // namespace sim

#endif // SIM_SESSION_ZONINGSESSION_H
