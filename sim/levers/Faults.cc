#include "sim/levers/Faults.h"

#include <algorithm>
#include <stdexcept>

#include "sim/levers/Chance.h"
#include "sim/levers/RuleLimits.h"

namespace sim {

namespace {

using std::chrono::milliseconds;

/// So far apart are the seeds of rules for one seed and the next.
constexpr uint64_t kMostRules = 1000000;

bool isAboutNotifications(const Fault &fault) {
    return fault.call == kNotificationCall;
}

bool isAboutKeys(const Fault &fault) {
    return !fault.result && !fault.nullHandle &&
           (fault.status.has_value() || fault.value.has_value() || fault.stale || fault.garbled);
}

bool matchesKey(const Fault &fault, const std::string &key) {
    return fault.key.empty() || matchesPattern(fault.key, key);
}

bool matchesCall(const Fault &fault, const FaultTarget &target) {
    if (fault.call.empty() ? target.call == kNotificationCall : fault.call != target.call)
        return false;
    if (isAboutKeys(fault) && !fault.status && !target.reads)
        return false; // nothing but a value, and nobody reads
    if (fault.key.empty())
        return !isAboutKeys(fault) || !target.keys.empty();
    return std::any_of(target.keys.begin(), target.keys.end(),
                       [&](const std::string &key) { return matchesKey(fault, key); });
}

/// Gives the rule the keys that no earlier rule has; false when there are none.
bool winKeys(Fault &fault, const FaultTarget &target, Verdict &verdict) {
    verdict.keys.resize(target.keys.size());
    bool won = false;
    for (size_t i = 0; i < target.keys.size(); ++i) {
        KeyFault &key = verdict.keys[i];
        if (key.applies || !matchesKey(fault, target.keys[i]))
            continue;
        key = {true, fault.status, fault.value, fault.stale && target.reads, std::nullopt};
        if (fault.garbled && target.reads) {
            Chance chance(*fault.seed);
            key.garbling = chance.next();
            fault.seed = chance.state();
        }
        won = true;
    }
    return won;
}

bool draws(const Fault &fault) {
    return fault.chance < 100 || fault.garbled;
}

/// Whether chance is with the rule.
bool happens(Fault &fault) {
    if (fault.chance == 100)
        return true;
    Chance chance(*fault.seed);
    const bool result = chance.happens(fault.chance);
    fault.seed = chance.state();
    return result;
}

/// What a rule that won does, but for the keys. (One about keys has no result and hands out what there is.)
void addTo(Verdict &verdict, const Fault &fault) {
    verdict.delay += fault.delay;
    verdict.hang += fault.hang;
    verdict.reordered |= fault.reordered;
    if (fault.copies)
        verdict.copies = fault.copies;
    if (fault.action)
        verdict.actions.push_back(fault.action);
    if (fault.result)
        verdict.result = fault.result;
    else if (fault.nullHandle)
        verdict.nullHandle = true;
}

// ---- rules that cannot be -----------------------------------------------------------------------------

void demand(bool holds, const char *otherwise) {
    if (!holds)
        throw std::invalid_argument(otherwise);
}

bool isTime(milliseconds time) {
    return time.count() >= 0 && time <= kLongestTime;
}

} // namespace

void checkFault(const Fault &fault) {
    demand(!fault.value || fault.value->size() <= sizeof SmlMessage::value, "a value has at most 256 bytes");
    demand(isTime(fault.after) && isTime(fault.delay) && isTime(fault.hang), "a time is at least 0 and at most a year");
    demand(fault.times >= -1, "the times are at least 0, or -1 for all");
    demand(fault.chance >= 1 && fault.chance <= 100, "a chance is 1 to 100 per cent");
    demand((fault.value ? 1 : 0) + (fault.stale ? 1 : 0) + (fault.garbled ? 1 : 0) <= 1,
           "a key answers a given value, a stale one or a garbled one");
    demand(!fault.copies || *fault.copies <= kMostCopies, "a notification comes at most 10000 times");
    if (isAboutNotifications(fault))
        demand(!fault.result && !fault.status && !fault.stale && !fault.nullHandle && fault.hang.count() == 0 &&
                   !fault.action && fault.actionText.empty(),
               "a notification has no result, status, stale value or handle, and neither hangs nor acts; allowed: a "
               "number of copies, a delay, another order, a given or garbled text");
    else
        demand(!fault.copies && !fault.reordered, "only notifications are lost, repeated or reordered");
}

// ---- the rules ----------------------------------------------------------------------------------------

/// The clock may be near the end of what it can tell.
milliseconds Faults::uptimeIn(milliseconds time) const {
    const milliseconds now = _clock.uptime();
    return time < milliseconds::max() - now ? now + time : milliseconds::max();
}

int Faults::add(const Fault &fault) {
    checkFault(fault);
    const std::lock_guard<std::mutex> lock(_mutex);
    Rule &rule = _rules[++_lastNumber];
    rule = {fault, uptimeIn(fault.after)};
    if (!fault.seed && draws(fault))
        rule.left.seed = _seed * kMostRules + static_cast<uint64_t>(_lastNumber);
    rule.left.firstSeed = draws(fault) ? rule.left.seed : std::nullopt;
    return _lastNumber;
}

void Faults::remove(int number) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _rules.erase(number);
}

void Faults::clear() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _rules.clear();
}

std::map<int, Fault> Faults::all() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    const milliseconds now = _clock.uptime();
    std::map<int, Fault> faults;
    for (const auto &[number, rule] : _rules) {
        Fault &fault = faults[number] = rule.left;
        if (fault.step.empty())
            fault.after = std::max(rule.begins - now, milliseconds(0));
    }
    return faults;
}

void Faults::reachStep(const std::string &name) {
    if (name.empty())
        return;
    const std::lock_guard<std::mutex> lock(_mutex);
    for (auto &[number, rule] : _rules) {
        if (rule.left.step != name)
            continue;
        rule.left.step.clear();
        rule.begins = uptimeIn(rule.left.after);
    }
}

void Faults::setSeed(uint64_t seed) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _seed = seed;
}

// ---- what they say ------------------------------------------------------------------------------------

/// Counts a match of a rule that has begun; whether it is one that the rule may apply to.
bool Faults::isPast(Rule &rule, const FaultTarget &target, milliseconds now) {
    if (!rule.left.step.empty() || now < rule.begins || !matchesCall(rule.left, target))
        return false;
    if (rule.left.skip > 0) {
        --rule.left.skip;
        return false;
    }
    return rule.left.times != 0;
}

Verdict Faults::judge(const FaultTarget &target) {
    const std::lock_guard<std::mutex> lock(_mutex);
    Verdict verdict;
    if (_rules.empty())
        return verdict;
    const milliseconds now = _clock.uptime();
    bool callWon = false; // a rule took the whole call
    bool keysWon = false;
    for (auto &[number, rule] : _rules) {
        if (!isPast(rule, target, now) || callWon)
            continue;
        Fault &fault = rule.left;
        const bool aboutKeys = isAboutKeys(fault);
        if (!aboutKeys && keysWon)
            continue;
        if (!happens(fault) || (aboutKeys && !winKeys(fault, target, verdict)))
            continue;
        (aboutKeys ? keysWon : callWon) = true;
        if (fault.times > 0)
            --fault.times;
        addTo(verdict, fault);
    }
    return verdict;
}

bool matchesPattern(std::string_view pattern, std::string_view text) {
    size_t at = 0;                        // in the pattern
    size_t star = std::string_view::npos; // the last '*' passed
    size_t starText = 0;                  // where its text ends, as far as is known
    for (size_t i = 0; i < text.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            starText = i;
        } else if (at < pattern.size() && pattern[at] == text[i]) {
            ++at;
            ++i;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            i = ++starText;
        } else
            return false;
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

} // namespace sim
