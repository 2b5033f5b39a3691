#include "sim/core/Recorder.h"

#include <exception>
#include <utility>

namespace sim {

void Recorder::add(Record record) {
    if (!_on)
        return;
    const std::lock_guard<std::mutex> lock(_mutex);
    for (const auto &[number, sink] : _sinks) {
        try {
            sink(record);
        } catch (const std::exception &) {
            // A call does not fail because somebody could not take its record.
        }
    }
    if (_keeps)
        _records.push_back(std::move(record));
}

void Recorder::keep(bool keep) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _keeps = keep;
}

int Recorder::addSink(Sink sink) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _sinks.emplace(++_lastSink, std::move(sink));
    return _lastSink;
}

void Recorder::removeSink(int number) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _sinks.erase(number);
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
