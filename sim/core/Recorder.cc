#include "sim/core/Recorder.h"

#include <utility>

namespace sim {

void Recorder::add(Record record) {
    if (!_on)
        return;
    const std::lock_guard<std::mutex> lock(_mutex);
    _records.push_back(std::move(record));
}

std::vector<Record> Recorder::records() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _records;
}

void Recorder::clear() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _records.clear();
}

} // namespace sim
