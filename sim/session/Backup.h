/*
 * The backup of the configuration: what every attribute that clients may configure was when it was taken. There is one;
 * the next replaces it.
 *
 * Guarded by its owner.
 */
#ifndef SIM_SESSION_BACKUP_H
#define SIM_SESSION_BACKUP_H

#include <optional>

#include "sim/session/ConfigEdit.h"

namespace sim {

struct Switch;

/// What every attribute that clients may configure is now.
Edits configurationOf(const Switch &device);

class Backup {
public:
    /// Keeps what is running, all ports included; not what is being edited, and not what waits to be activated.
    void take(const Switch &device);
    /// `running` gets what is to become effective. The backup stays.
    Status restore(Edits &running) const;

    const std::optional<Edits> &kept() const { return _kept; }
    void setKept(const std::optional<Edits> &kept) { _kept = kept; }

private:
    std::optional<Edits> _kept;
};

} // namespace sim

#endif // SIM_SESSION_BACKUP_H
