/*
 * The rules of misbehaviour, and what they make of a call or a notification. Without rules all is left alone.
 *
 * Every rule that has begun and matches a call counts it: the first `skip` matches are let pass. Of the rules that are
 * past that, not used up and not turned aside by chance, the first one wins. A rule about keys (one with a status or a
 * value of any kind) wins key by key, so several such rules may share the keys of one batch; any other rule wins the
 * whole call, and stands back when an earlier rule has won anything. Only a rule that won uses up one of its `times`.
 *
 * A rule with a result fails the whole call, whatever else it says. A value without a status is about reading
 * only. The keys of zov_enRegisterForEventList are its codes in decimal.
 *
 * Thread-safe.
 */
#ifndef SIM_LEVERS_FAULTS_H
#define SIM_LEVERS_FAULTS_H

#include <functional>
#include <map>
#include <mutex>
#include <string_view>
#include <vector>

#include "sim/Simulator.h"
#include "sim/core/Clock.h"

namespace sim {

/// What one key answers in place of being served, or on top of it.
struct KeyFault {
    bool applies = false;
    std::optional<int32_t> status;
    std::optional<std::string> value;
    bool stale = false;
    std::optional<uint64_t> garbling; ///< the seed of it

    /// The key is served, and its value then another one.
    bool distorts() const { return stale || garbling.has_value(); }
};

/// What is to happen to one call or notification.
struct Verdict {
    std::chrono::milliseconds delay{0};
    std::chrono::milliseconds hang{0};
    std::vector<std::function<void()>> actions; ///< to be done then, in this order
    std::optional<int32_t> result;              ///< the call fails with this
    bool nullHandle = false;
    std::vector<KeyFault> keys; ///< one per key of the call, or none at all when no key is concerned
    std::optional<unsigned> copies;
    bool reordered = false;
    std::optional<std::string> handedOut; ///< what a call about the zoning database hands out, as a record shows it
};

/// A call as the rules see it.
struct FaultTarget {
    std::string_view call;
    const std::vector<std::string> &keys;
    bool reads = false; ///< its keys are read
};

/// Throws std::invalid_argument for a rule that contradicts itself or holds what is out of range.
void checkFault(const Fault &fault);

class Faults {
public:
    explicit Faults(const Clock &clock) : _clock(clock) {}

    /// Throws as checkFault() does.
    int add(const Fault &fault);
    void remove(int number);
    void clear();
    std::map<int, Fault> all() const;
    void reachStep(const std::string &name);
    /// For rules that come without a seed, from now on.
    void setSeed(uint64_t seed);

    /// Counts the call and decides it.
    Verdict judge(const FaultTarget &target);

private:
    struct Rule {
        Fault left; ///< what is left of the rule, with a seed
        std::chrono::milliseconds begins{0};
    };

    bool isPast(Rule &rule, const FaultTarget &target, std::chrono::milliseconds now);
    std::chrono::milliseconds uptimeIn(std::chrono::milliseconds time) const;

    const Clock &_clock;
    mutable std::mutex _mutex;
    std::map<int, Rule> _rules;
    int _lastNumber = 0;
    uint64_t _seed = 0;
};

/// Whether a text is of a pattern in which '*' stands for any text, an empty one included.
bool matchesPattern(std::string_view pattern, std::string_view text);

} // namespace sim

#endif // SIM_LEVERS_FAULTS_H
