/*
 * A recording that stands in for the switch it was made on: new connections to "localhost" reach it, as they reach a
 * Simulator that was made last, and are answered as recorded.
 *
 * Behind it is a switch in software, which clients do not see: its clock follows the recording, its recorder shows what
 * they do now, its rules of misbehaviour come before the recording, and deliver() reaches whoever registered.
 *
 * A program that does what was recorded finds what was recorded. Whatever else it does is reported with both lines, the
 * one that was recorded and the one that was called:
 *
 *     merge.rec:17: not as recorded
 *         recorded: zov_smlGet(1) = 0: Oper.Switch.DomainID="1"
 *         called:   zov_smlGet(1) = 0: Oper.Switch.WWN="100000C0DD00A1B2"
 *
 * Thread-safe, but for the end of it, as in sim/Simulator.h.
 */
#ifndef SIM_RECORD_REPLAY_H
#define SIM_RECORD_REPLAY_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sim/Simulator.h"

namespace sim {

class Replay {
public:
    Replay() = default;
    Replay(const Replay &) = delete;
    Replay &operator=(const Replay &) = delete;
    virtual ~Replay() = default;

    virtual Simulator &device() = 0;

    /// What there was to report so far, in order: records that were passed over because their kind is not known,
    /// deviations, and that the recording is at its end; a thousand reports at most.
    virtual std::vector<std::string> reports() const = 0;
    /// How many of them are deviations.
    virtual unsigned deviations() const = 0;
    /// Every call was made that was recorded. What is asked from then on is a deviation, and answered as it was last.
    virtual bool isOver() const = 0;
    /// Is told of every report from now on, on the thread of the call that led to it.
    virtual void onReport(std::function<void(const std::string &)> listener) = 0;
};

} // namespace sim

/// The replay of a recording, whose text is `recording`; `name`, that of its file, is for messages. `version` is
/// sim::kInterfaceVersion as the caller was compiled with; null if it is not this library's. Throws
/// std::invalid_argument, "FILE:LINE: what", for a text that is no recording. The caller owns the result.
extern "C" __attribute__((visibility("default"))) sim::Replay *zovsim_replay(const char *recording, const char *name,
                                                                             int version);

namespace sim {

inline std::unique_ptr<Replay> makeReplay(const std::string &recording, const std::string &name) {
    return std::unique_ptr<Replay>(zovsim_replay(recording.c_str(), name.c_str(), kInterfaceVersion));
}

} // namespace sim

#endif // SIM_RECORD_REPLAY_H
