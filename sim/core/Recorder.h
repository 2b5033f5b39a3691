/*
 * What happened on the switch: one record per call and per notification, in order.
 *
 * Sinks are told of every record as it is added, one record after another, in that order. They must not come back to
 * the recorder; what a sink throws is lost.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_RECORDER_H
#define SIM_CORE_RECORDER_H

#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include "sim/Simulator.h"

namespace sim {

class Recorder {
public:
    using Sink = std::function<void(const Record &)>;

    /// A recorder that is not on keeps nothing.
    explicit Recorder(bool on) : _on(on) {}

    bool isOn() const { return _on; }
    void add(Record record);
    std::vector<Record> records() const;
    void clear();
    /// Whether what is added from now on is kept, or told to the sinks only.
    void keep(bool keep);

    /// The number that is returned takes the sink away; it is not told of anything any more then.
    int addSink(Sink sink);
    void removeSink(int number);

private:
    const bool _on;
    mutable std::mutex _mutex;
    bool _keeps = true;
    std::vector<Record> _records;
    std::map<int, Sink> _sinks;
    int _lastSink = 0;
};

} // namespace sim

#endif // SIM_CORE_RECORDER_H
