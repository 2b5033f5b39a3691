#include "sim/session/Backup.h"

#include "sim/model/Switch.h"
#include "sim/tree/Tree.h"

namespace sim {

Edits configurationOf(const Switch &device) {
    Edits configuration;
    for (const std::string &key : allKeys(device)) {
        const Attribute attribute = findAttribute(device, key);
        if (attribute.row->access == Access::configuration && attribute.status(device) == kOk)
            configuration.emplace_back(key, attribute.read(device));
    }
    return configuration;
}

void Backup::take(const Switch &device) {
    _kept = configurationOf(device);
}

Status Backup::restore(Edits &running) const {
    if (!_kept)
        return kNoBackup;
    running = *_kept;
    return kOk;
}

} // namespace sim
