#include "sim/levers/Faults.h"

#include <algorithm>
#include <stdexcept>

namespace sim {

namespace {

bool isAboutKeys(const Fault &fault) {
    return !fault.result && !fault.nullHandle && (fault.status.has_value() || fault.value.has_value());
}

bool matchesKey(const Fault &fault, const std::string &key) {
    return fault.key.empty() || matchesPattern(fault.key, key);
}

bool matchesCall(const Fault &fault, const FaultTarget &target) {
    if (!fault.call.empty() && fault.call != target.call)
        return false;
    if (isAboutKeys(fault) && !fault.status && !target.reads)
        return false; // nothing but a value, and nobody reads
    if (fault.key.empty())
        return !isAboutKeys(fault) || !target.keys.empty();
    return std::any_of(target.keys.begin(), target.keys.end(),
                       [&](const std::string &key) { return matchesKey(fault, key); });
}

/// Gives the rule the keys that no earlier rule has; false when there are none.
bool winKeys(const Fault &fault, const FaultTarget &target, Verdict &verdict) {
    verdict.keys.resize(target.keys.size());
    bool won = false;
    for (size_t i = 0; i < target.keys.size(); ++i) {
        KeyFault &key = verdict.keys[i];
        if (key.applies || !matchesKey(fault, target.keys[i]))
            continue;
        key = {true, fault.status.value_or(0), fault.value};
        won = true;
    }
    return won;
}

} // namespace

int Faults::add(const Fault &fault) {
    if (fault.value && fault.value->size() > sizeof SmlMessage::value)
        throw std::invalid_argument("a value has at most 256 bytes");
    const std::lock_guard<std::mutex> lock(_mutex);
    _rules.push_back({++_lastNumber, fault, fault.skip, fault.times});
    return _lastNumber;
}

void Faults::remove(int number) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _rules.erase(std::remove_if(_rules.begin(), _rules.end(), [&](const Rule &rule) { return rule.number == number; }),
                 _rules.end());
}

void Faults::clear() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _rules.clear();
}

Verdict Faults::judge(const FaultTarget &target) {
    const std::lock_guard<std::mutex> lock(_mutex);
    Verdict verdict;
    bool callWon = false; // a rule took the whole call
    bool keysWon = false;
    for (Rule &rule : _rules) {
        if (!matchesCall(rule.fault, target))
            continue;
        if (rule.skip > 0) {
            --rule.skip;
            continue;
        }
        if (rule.times == 0 || callWon)
            continue;
        const bool aboutKeys = isAboutKeys(rule.fault);
        if (aboutKeys ? !winKeys(rule.fault, target, verdict) : keysWon)
            continue;
        (aboutKeys ? keysWon : callWon) = true;
        if (rule.times > 0)
            --rule.times;
        verdict.delay += rule.fault.delay;
        if (rule.fault.action)
            verdict.actions.push_back(rule.fault.action);
        if (!aboutKeys) {
            verdict.result = rule.fault.result;
            verdict.nullHandle = rule.fault.nullHandle && !rule.fault.result;
        }
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
