/*
 * Misbehaviour of the simulated switch, as rules. Plain data. Part of the control interface, sim/Simulator.h.
 */
#ifndef SIM_FAULT_H
#define SIM_FAULT_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace sim {

/// The call that a rule about notifications names.
constexpr const char *kNotificationCall = "notification";

/// A rule of misbehaviour. It looks at every call made after it was added, or after it begins; the calls it applies to
/// are those that match `call` and `key`, but for the first `skip` of them and those that `chance` spares, `times` in
/// all.
///
/// Several rules: the first one that applies wins. Rules with a status or a value, a stale and a garbled one included,
/// win key by key, so that several of them may share the keys of one batch; any other rule wins the whole call, unless
/// an earlier rule has won some of it. A rule that did not win is not used up.
///
/// The keys of zov_enRegisterForEventList are its codes in decimal. Calls without a connection are seen by
/// the rules of the switch made last.
///
/// A rule whose call is kNotificationCall is about notifications instead, each of which is a call with its code as the
/// key, once for all the clients that get it. `value` and `garbled` are about its text then, and `delay` makes it
/// late: others pass it. `copies` and `reordered` are for such rules, the rest of what can happen for the others.
struct Fault {
    /// Name of the zov_ function; empty: every call.
    std::string call;
    /// Key pattern, '*' standing for any text; empty: calls match without regard to keys.
    std::string key;
    /// The rule begins when reachStep() tells of this step; empty: at once,
    std::string step;
    /// and so much uptime later. At most a year, as the other times of a rule.
    std::chrono::milliseconds after{0};
    /// So many matches are left alone first,
    unsigned skip = 0;
    /// to so many it then applies; -1: to all.
    int times = 1;
    /// Per cent of the matches that it applies to, 1 to 100, the others being left alone.
    unsigned chance = 100;
    /// What `chance` and `garbled` draw from: the same seed draws the same. Without one the rule gets one by its
    /// number.
    std::optional<uint64_t> seed;
    /// Of a rule that draws, what it drew from at first, as Simulator::faults() tells it; `seed` goes on with it.
    std::optional<uint64_t> firstSeed;
    /// The call as a whole fails with this and does nothing, its out arguments untouched. A call that returns
    /// a handle returns null, one that returns a count returns this as the count.
    std::optional<int32_t> result;
    /// Matching keys (all keys, with an empty pattern) answer this status instead of being served.
    std::optional<int32_t> status;
    /// Matching keys answer these bytes when they are read, at most 256; 256 bytes come without a terminator.
    std::optional<std::string> value;
    /// Matching keys answer the value they had before their last change, as far as somebody had set or read that one.
    bool stale = false;
    /// Matching keys answer their value with some of its bytes changed, lost or added.
    bool garbled = false;
    /// The call reports success and hands out no handle.
    bool nullHandle = false;
    /// The call takes this much longer, by the switch's clock,
    std::chrono::milliseconds delay{0};
    /// and this much longer in real time, however the clock goes.
    std::chrono::milliseconds hang{0};
    /// The notification comes so many times, 10000 at most: 0 loses it, 2 doubles it, many are a storm.
    std::optional<unsigned> copies;
    /// The next notification overtakes it; after a second without one it comes all the same.
    bool reordered = false;
    /// What happens just before the call is served, after the delay, on the caller's thread and with no lock of the
    /// simulator held: it may do anything to the switch, and make calls itself. So a peer can leave in the middle of a
    /// client's walk. It wins the whole call, as a delay does; the call is then served, unless the same rule says
    /// otherwise. When it throws, the call fails with status 99 and is not recorded. It does not happen
    /// on a switch that was switched off during the delay.
    std::function<void()> action;
    /// The action as commands, one to a line, for whoever lists the rules and writes them down. It is not made an action
    /// by itself.
    std::string actionText;
};

} // namespace sim

#endif // SIM_FAULT_H
