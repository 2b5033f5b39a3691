#include "sim/levers/RuleText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/zovlib.h"
#include "sim/Record.h"
#include "sim/levers/CallNames.h"
#include "sim/levers/Duration.h"
#include "sim/levers/Faults.h"
#include "sim/levers/Nearest.h"
#include "sim/levers/RuleLimits.h"

namespace sim {

namespace {

using std::chrono::milliseconds;

[[noreturn]] void refuse(const std::string &what) {
    throw std::invalid_argument(what);
}

/// For a value that a word cannot have; what it can is told by the word.
struct Unfit {};

template <class Number> std::string wholeNumber(Number lowest, Number highest) {
    return "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

template <class Number> std::string anyNumber() {
    return wholeNumber(std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

std::string someTimes() {
    return wholeNumber(0, std::numeric_limits<int>::max()) + ", or 'always'";
}

std::string aChance() {
    return wholeNumber(1U, kCertain);
}

std::string someCopies() {
    return wholeNumber(0U, kMostCopies);
}

std::string aTime() {
    return "a time, at most a year: a whole number with ms, s, min, h or d, or of seconds without";
}

std::string aText() {
    return "a text, in quotes";
}

std::string aShortText() {
    return "a text of at most " + std::to_string(sizeof SmlMessage::value) + " bytes, in quotes";
}

// ---- values of words, both ways -----------------------------------------------------------------------

template <class Number> bool readNumber(std::string_view text, Number &number) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

template <class Number> void take(const std::string &value, Number &field) {
    if (!readNumber(value, field))
        throw Unfit();
}
void take(const std::string &value, std::string &field) {
    field = value;
}
void take(const std::string & /*value*/, bool &field) {
    field = true;
}
void take(const std::string &value, milliseconds &field) {
    const std::optional<milliseconds> time = parseDuration(value);
    if (!time || *time > kLongestTime)
        throw Unfit();
    field = *time;
}
template <class Value> void take(const std::string &value, std::optional<Value> &field) {
    take(value, field.emplace());
}

template <class Number> std::string shown(const Number &field) {
    return std::to_string(field);
}
std::string shown(const std::string &field) {
    return field;
}
std::string shown(bool /*field*/) {
    return "";
}
std::string shown(milliseconds field) {
    return shownDuration(field);
}
template <class Value> std::string shown(const std::optional<Value> &field) {
    return shown(*field);
}

// ---- reading and writing a word -----------------------------------------------------------------------

/// What is to be written of a rule; nothing when it is as it is without saying.
using Text = std::optional<std::string>;

template <auto member> void read(Fault &fault, const std::string &value) {
    take(value, fault.*member);
}

template <auto member> Text write(const Fault &fault) {
    static const Fault usual;
    return fault.*member == usual.*member ? std::nullopt : Text(shown(fault.*member));
}

void readCall(Fault &fault, const std::string &value) {
    if (!isCallName(value))
        refuse("must be a function of the switch library, such as 'zov_smlGet', or 'notification', not '" +
               escaped(value) + "'" + didYouMean(value, callNames()));
    fault.call = value;
}

void readTimes(Fault &fault, const std::string &value) {
    constexpr int always = -1;
    if (isSameWord(value, "always"))
        fault.times = always;
    else if (!readNumber(value, fault.times) || fault.times < always)
        throw Unfit();
}

Text writeTimes(const Fault &fault) {
    return fault.times < 0 ? "always" : write<&Fault::times>(fault);
}

void readChance(Fault &fault, const std::string &value) {
    take(value, fault.chance);
    if (fault.chance < 1 || fault.chance > kCertain)
        throw Unfit();
}

void readValue(Fault &fault, const std::string &value) {
    if (value.size() > sizeof SmlMessage::value)
        throw Unfit();
    fault.value = value;
}

void readDelay(Fault &fault, const std::string &value) {
    if (fault.delay.count() != 0)
        refuse("contradicts what was said: 'delay' and 'late' are the same");
    take(value, fault.delay);
}

template <bool ofNotifications> Text writeDelay(const Fault &fault) {
    return (fault.call == kNotificationCall) == ofNotifications ? write<&Fault::delay>(fault) : std::nullopt;
}

/// Two numbers of copies have words of their own.
constexpr unsigned kLost = 0;
constexpr unsigned kDuplicated = 2;

void setCopies(Fault &fault, unsigned copies) {
    if (fault.copies)
        refuse("contradicts what was said: a notification is lost, duplicated or comes as a storm, one of these");
    fault.copies = copies;
}

template <unsigned copies> void readCopies(Fault &fault, const std::string & /*value*/) {
    setCopies(fault, copies);
}

template <unsigned copies> Text writeCopies(const Fault &fault) {
    return fault.copies == copies ? Text("") : std::nullopt;
}

void readStorm(Fault &fault, const std::string &value) {
    unsigned copies = 0;
    take(value, copies);
    if (copies > kMostCopies)
        throw Unfit();
    setCopies(fault, copies);
}

Text writeStorm(const Fault &fault) {
    const bool hasOwnWord = writeCopies<kLost>(fault) || writeCopies<kDuplicated>(fault);
    return hasOwnWord ? std::nullopt : write<&Fault::copies>(fault);
}

// ---- the words ----------------------------------------------------------------------------------------

struct Row {
    RuleWord word;
    std::string (*allowed)(); ///< what its value must be; null for a word without one
    void (*read)(Fault &fault, const std::string &value);
    Text (*write)(const Fault &fault);
};

using V = RuleValue;

// clang-format off
constexpr Row kRows[] = {
    {{"call", V::text, "CALL", false, "only this call, or notifications; every call without it"},
     aText, readCall, write<&Fault::call>},
    {{"key", V::text, "PATTERN", false, "only of keys like this; of notifications, of codes"},
     aText, read<&Fault::key>, write<&Fault::key>},
    {{"step", V::text, "NAME", false, "begins at this step"},
     aText, read<&Fault::step>, write<&Fault::step>},
    {{"after", V::time, "TIME", false, "begins so much later"},
     aTime, read<&Fault::after>, write<&Fault::after>},
    {{"skip", V::number, "NUMBER", false, "leaves the first matches alone"},
     anyNumber<unsigned>, read<&Fault::skip>, write<&Fault::skip>},
    {{"times", V::number, "TIMES", false, "to how many matches it applies; one without it"},
     someTimes, readTimes, writeTimes},
    {{"chance", V::number, "PERCENT", false, "per cent of the matches that it applies to"},
     aChance, readChance, write<&Fault::chance>},
    {{"seed", V::number, "SEED", false, "what chance and garbling draw from"},
     anyNumber<uint64_t>, read<&Fault::seed>, write<&Fault::seed>},
    {{"result", V::number, "INTEGER", true, "the call fails with this"},
     anyNumber<int32_t>, read<&Fault::result>, write<&Fault::result>},
    {{"status", V::number, "INTEGER", true, "keys answer this status"},
     anyNumber<int32_t>, read<&Fault::status>, write<&Fault::status>},
    {{"value", V::text, "TEXT", true, "keys answer these bytes"},
     aShortText, readValue, write<&Fault::value>},
    {{"stale", V::none, "", true, "keys answer the value before the last change"},
     nullptr, read<&Fault::stale>, write<&Fault::stale>},
    {{"garbled", V::none, "", true, "keys answer their value with bytes changed, lost or added"},
     nullptr, read<&Fault::garbled>, write<&Fault::garbled>},
    {{"nullhandle", V::none, "", true, "success, and no handle"},
     nullptr, read<&Fault::nullHandle>, write<&Fault::nullHandle>},
    {{"delay", V::time, "TIME", true, "takes longer, by the switch's clock"},
     aTime, readDelay, writeDelay<false>},
    {{"late", V::time, "TIME", true, "the notification comes later"},
     aTime, readDelay, writeDelay<true>},
    {{"hang", V::time, "TIME", true, "takes longer, in real time"},
     aTime, read<&Fault::hang>, write<&Fault::hang>},
    {{"lost", V::none, "", true, "the notification does not come"},
     nullptr, readCopies<kLost>, writeCopies<kLost>},
    {{"duplicated", V::none, "", true, "it comes twice"},
     nullptr, readCopies<kDuplicated>, writeCopies<kDuplicated>},
    {{"storm", V::number, "NUMBER", true, "it comes so many times"},
     someCopies, readStorm, writeStorm},
    {{"reordered", V::none, "", true, "it is overtaken by the next one"},
     nullptr, read<&Fault::reordered>, write<&Fault::reordered>},
    {{"do", V::commands, "COMMAND", true, "is carried out just before the call is served"},
     aText, read<&Fault::actionText>, write<&Fault::actionText>},
};
// clang-format on

std::vector<std::string> namesOfWords(bool actingOnly) {
    std::vector<std::string> names;
    for (const Row &row : kRows)
        if (row.word.acts || !actingOnly)
            names.emplace_back(row.word.name);
    return names;
}

std::string listed(const std::vector<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

const Row &rowNamed(const std::string &name) {
    for (const Row &row : kRows)
        if (name == row.word.name)
            return row;
    const std::vector<std::string> names = namesOfWords(false);
    refuse("is no word of it; allowed: " + listed(names) + didYouMean(name, names));
}

bool doesSomething(const Fault &fault) {
    return fault.result || fault.status || fault.value || fault.stale || fault.garbled || fault.nullHandle ||
           fault.delay.count() > 0 || fault.hang.count() > 0 || fault.copies || fault.reordered || fault.action ||
           !fault.actionText.empty();
}

bool needsQuotes(const std::string &text) {
    return text.empty() || text.find(' ') != std::string::npos || escaped(text) != text;
}

} // namespace

std::string RuleWord::allowed() const {
    const Row &row = rowNamed(name);
    return row.allowed ? row.allowed() : "true or false";
}

const std::vector<RuleWord> &ruleWords() {
    static const std::vector<RuleWord> words = [] {
        std::vector<RuleWord> all;
        for (const Row &row : kRows)
            all.push_back(row.word);
        return all;
    }();
    return words;
}

void applyRuleWord(Fault &fault, const std::string &name, const std::optional<std::string> &value) {
    const Row &row = rowNamed(name);
    if (value.has_value() != row.word.hasValue())
        refuse(row.word.hasValue() ? "needs a value" : "has no value");
    try {
        row.read(fault, value.value_or(""));
    } catch (const Unfit &) {
        refuse("must be " + row.allowed() + ", not '" + escaped(*value) + "'");
    }
}

void checkRule(const Fault &fault) {
    checkFault(fault);
    if (!doesSomething(fault))
        refuse("a rule says what happens; allowed: " + listed(namesOfWords(true)));
}

std::vector<SaidWord> ruleWordsOf(const Fault &fault) {
    std::vector<SaidWord> said;
    for (const Row &row : kRows)
        if (const Text value = row.write(fault))
            said.push_back({&row.word, *value});
    return said;
}

std::string toText(const Fault &fault) {
    std::string text;
    for (const SaidWord &said : ruleWordsOf(fault)) {
        text += (text.empty() ? "" : " ") + std::string(said.word->name);
        if (said.word->hasValue())
            text += "=" + (needsQuotes(said.value) ? quoted(said.value) : said.value);
    }
    if (fault.action && fault.actionText.empty())
        text += text.empty() ? "action" : " action";
    return text;
}

} // namespace sim
