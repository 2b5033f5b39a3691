#include "sim/session/Backup.h"

#include "sim/model/Switch.h"
#include "sim/tree/Tree.h"

namespace sim {

void Backup::take(const Switch &device) {
    Edits kept;
    for (const std::string &key : allKeys(device)) {
        const Attribute attribute = findAttribute(device, key);
        if (attribute.row->access == Access::configuration && attribute.status(device) == kOk)
            kept.emplace_back(key, attribute.read(device));
    }
    _kept = std::move(kept);
}

Status Backup::restore(Edits &running) const {
    if (!_kept)
        return kNoBackup;
    running = *_kept;
    return kOk;
}

} // namespace sim
