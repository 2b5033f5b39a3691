/*
 * The rules of misbehaviour, and what they make of a call. Without rules every call is left alone.
 *
 * Every rule that matches a call counts it: the first `skip` matches are let pass. Of the rules that are
 * past that and not used up, the first one wins. A rule about keys (one with a status or a value) wins key by
 * key, so several such rules may share the keys of one batch; any other rule wins the whole call, and stands
 * back when an earlier rule has won anything. Only a rule that won uses up one of its `times`.
 *
 * A rule with a result fails the whole call, whatever else it says. A value without a status is about reading
 * only. The keys of zov_enRegisterForEventList are its codes in decimal.
 *
 * Thread-safe.
 */
#ifndef SIM_LEVERS_FAULTS_H
#define SIM_LEVERS_FAULTS_H

#include <functional>
#include <mutex>
#include <string_view>
#include <vector>

#include "sim/Simulator.h"

namespace sim {

/// What one key answers in place of being served.
struct KeyFault {
    bool applies = false;
    int32_t status = 0;
    std::optional<std::string> value;
};

/// What is to happen to one call.
struct Verdict {
    std::chrono::milliseconds delay{0};
    std::vector<std::function<void()>> actions; ///< to be done then, in this order
    std::optional<int32_t> result;              ///< the call fails with this
    bool nullHandle = false;
    std::vector<KeyFault> keys; ///< one per key of the call, or none at all when no key is concerned
};

/// A call as the rules see it.
struct FaultTarget {
    std::string_view call;
    const std::vector<std::string> &keys;
    bool reads = false; ///< its keys are read
};

class Faults {
public:
    /// Throws std::invalid_argument for a value of more than 256 bytes.
    int add(const Fault &fault);
    void remove(int number);
    void clear();

    /// Counts the call and decides it.
    Verdict judge(const FaultTarget &target);

private:
    struct Rule {
        int number = 0;
        Fault fault;
        unsigned skip = 0; ///< what is left of the fault's own
        int times = 0;     ///< likewise
    };

    std::mutex _mutex;
    std::vector<Rule> _rules;
    int _lastNumber = 0;
};

/// Whether a text is of a pattern in which '*' stands for any text, an empty one included.
bool matchesPattern(std::string_view pattern, std::string_view text);

} // namespace sim

#endif // SIM_LEVERS_FAULTS_H
