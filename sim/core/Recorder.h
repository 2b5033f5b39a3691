/*
 * What happened on the switch: one record per call and per notification, in order. Thread-safe.
 */
#ifndef SIM_CORE_RECORDER_H
#define SIM_CORE_RECORDER_H

#include <mutex>
#include <vector>

#include "sim/Simulator.h"

namespace sim {

class Recorder {
public:
    /// A recorder that is not on keeps nothing.
    explicit Recorder(bool on) : _on(on) {}

    bool isOn() const { return _on; }
    void add(Record record);
    std::vector<Record> records() const;
    void clear();

private:
    const bool _on;
    mutable std::mutex _mutex;
    std::vector<Record> _records;
};

} // namespace sim

#endif // SIM_CORE_RECORDER_H
