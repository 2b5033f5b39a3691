#include "sim/record/Answers.h"

#include <algorithm>
#include <stdexcept>

#include "sim/Status.h"
#include "sim/record/Scanner.h"
#include "sim/zoning/HandedOut.h"

namespace sim {

namespace {

enum class Kind { connect, registration, get, getBatch, set, setBatch, limits, name, names, zoneset };

struct KindOfCall {
    const char *call;
    Kind kind;
};

/// The calls that a recording answers.
constexpr KindOfCall kCalls[] = {
    {"zov_IPConnect", Kind::connect},
    {"zov_enRegisterForEventList", Kind::registration},
    {"zov_smlGet", Kind::get},
    {"zov_smlGetBatch", Kind::getBatch},
    {"zov_smlSet", Kind::set},
    {"zov_smlSetBatch", Kind::setBatch},
    {"zov_fzsGetZoningLimitations", Kind::limits},
    {"zov_fzsGetActiveZonesetName", Kind::name},
    {"zov_fzsGetZonesetList", Kind::names},
    {"zov_fzsGetActiveZoneset", Kind::zoneset},
    {"zov_fzsGetZoneset", Kind::zoneset},
    {"zov_fzsGetAllZonesAndAliases", Kind::zoneset},
};

Kind kindOf(const std::string &call) {
    for (const KindOfCall &row : kCalls)
        if (call == row.call)
            return row.kind;
    throw std::invalid_argument("'" + call + "' is not made on a connection");
}

bool isRead(Kind kind) {
    return kind == Kind::get || kind == Kind::getBatch;
}

bool isSet(Kind kind) {
    return kind == Kind::set || kind == Kind::setBatch;
}

bool isSingle(Kind kind) {
    return kind == Kind::get || kind == Kind::set;
}

bool handsOutText(Kind kind) {
    return kind == Kind::limits || kind == Kind::name || kind == Kind::names || kind == Kind::zoneset;
}

/// "32, 57 status 22" as keys and their statuses.
std::vector<Exchange> codesIn(const std::string &text) {
    std::vector<Exchange> codes;
    Scanner scanner(text);
    while (!scanner.atEnd()) {
        if (!codes.empty() && !scanner.take(", "))
            throw std::invalid_argument("the codes of a registration are not understood");
        const std::optional<int32_t> code = scanner.number<int32_t>();
        const std::optional<int32_t> status = scanner.take(" status ") ? scanner.number<int32_t>() : 0;
        if (!code || !status)
            throw std::invalid_argument("the codes of a registration are not understood");
        codes.push_back({std::to_string(*code), "", *status});
    }
    return codes;
}

/// The arguments without the number of the zone set that was handed out, which comes last.
std::string withoutHandle(const std::string &arguments) {
    const size_t sign = arguments.rfind('#');
    const bool isHandle = sign != std::string::npos && sign + 1 < arguments.size() &&
                          arguments.find_first_not_of("0123456789", sign + 1) == std::string::npos;
    if (!isHandle)
        return arguments;
    return arguments.substr(0, sign < 2 ? 0 : sign - 2);
}

void checkHandedOut(Kind kind, const std::string &text) {
    const bool isUnderstood = kind == Kind::limits    ? readLimits(text).has_value()
                              : kind == Kind::zoneset ? readZoneSet(text).has_value()
                                                      : readNames(text).has_value();
    const bool isOneName = kind != Kind::name || (isUnderstood && readNames(text)->size() == 1);
    if (!isUnderstood || !isOneName)
        throw std::invalid_argument("what was handed out is not understood");
}

/// What the answers to a key, or to a call without keys, are found by: the ways of reading a key give the same.
std::string subjectOf(Kind kind, const std::string &call, const std::string &about) {
    return (isRead(kind) ? "read" : isSet(kind) ? "set" : call) + " " + about;
}

KeyFault answerWith(int32_t status) {
    KeyFault answer;
    answer.applies = true;
    answer.status = status;
    return answer;
}

KeyFault answerOf(const Exchange &exchange, Kind kind) {
    KeyFault answer = answerWith(exchange.status);
    if (isRead(kind) && exchange.status == kOk)
        answer.value = exchange.value;
    return answer;
}

} // namespace

ExpectedCall expectedCall(const Record &record) {
    const Kind kind = kindOf(record.call);
    ExpectedCall expected{record.call, record.arguments, record.exchanges, isSet(kind)};
    if (kind == Kind::registration) {
        expected.answers = codesIn(record.arguments);
        expected.arguments.clear();
    }
    if (kind == Kind::zoneset)
        expected.arguments = withoutHandle(record.arguments);
    if (kind == Kind::setBatch && record.result != kOk)
        expected.hasValues = false; // of a batch that was not handled only the keys were recorded
    if (isSingle(kind) && expected.answers.size() > 1)
        throw std::invalid_argument("'" + record.call + "' has one key");
    if (isSingle(kind) && !expected.answers.empty())
        expected.answers[0].status = record.result;
    if (handsOutText(kind) && !record.handedOut.empty())
        checkHandedOut(kind, record.handedOut);
    for (const Exchange &exchange : expected.answers)
        if (exchange.value.size() > sizeof SmlMessage::value && !isSingle(kind))
            throw std::invalid_argument("the value of '" + exchange.key + "' has more than 256 bytes");
    return expected;
}

bool isSame(const ExpectedCall &expected, const Call &call) {
    if (expected.name != call.name || expected.arguments != call.arguments ||
        expected.answers.size() != call.keys.size())
        return false;
    for (size_t i = 0; i < call.keys.size(); ++i) {
        if (expected.answers[i].key != call.keys[i])
            return false;
        if (expected.hasValues && i < call.values.size() && expected.answers[i].value != call.values[i])
            return false;
    }
    return true;
}

Verdict answerOf(const Record &record, const ExpectedCall &expected) {
    const Kind kind = kindOf(record.call);
    Verdict verdict;
    if (record.result != kOk && (!isSingle(kind) || expected.answers.empty())) {
        verdict.result = record.result;
        return verdict;
    }
    for (const Exchange &exchange : expected.answers)
        verdict.keys.push_back(answerOf(exchange, kind));
    if (handsOutText(kind) && record.handedOut.empty())
        verdict.nullHandle = true; // the call reported success, and handed nothing out
    else if (handsOutText(kind))
        verdict.handedOut = record.handedOut;
    return verdict;
}

void Answers::add(size_t place, const Record &record, const ExpectedCall &expected) {
    const Kind kind = kindOf(record.call);
    const Verdict verdict = answerOf(record, expected);
    if (handsOutText(kind))
        _series[subjectOf(kind, record.call, expected.arguments)].answers.push_back({place, verdict});
    if (verdict.result || !(isRead(kind) || isSet(kind)))
        return;
    for (size_t i = 0; i < expected.answers.size(); ++i) {
        Verdict one;
        one.keys = {verdict.keys[i]};
        _series[subjectOf(kind, record.call, expected.answers[i].key)].answers.push_back({place, one});
    }
}

void Answers::passed(size_t place, const ExpectedCall &expected) {
    const Kind kind = kindOf(expected.name);
    const auto pass = [&](const std::string &about) {
        const auto found = _series.find(subjectOf(kind, expected.name, about));
        if (found == _series.end())
            return;
        Series &series = found->second;
        while (series.next < series.answers.size() && series.answers[series.next].place <= place)
            ++series.next;
    };
    if (handsOutText(kind))
        pass(expected.arguments);
    for (const Exchange &exchange : expected.answers)
        pass(exchange.key);
}

const Verdict *Answers::take(const std::string &subject) {
    const auto found = _series.find(subject);
    if (found == _series.end())
        return nullptr;
    Series &series = found->second;
    if (series.next < series.answers.size())
        ++series.next;
    return &series.answers[series.next - 1].verdict;
}

Verdict Answers::bestFor(const Call &call) {
    const Kind kind = kindOf(call.name);
    Verdict verdict;
    if (kind == Kind::registration)
        return verdict; // without notifications a client could not go on at all
    if (handsOutText(kind)) {
        const Verdict *recorded = take(subjectOf(kind, call.name, call.arguments));
        if (recorded)
            return *recorded;
        verdict.result = kNotRecorded;
        return verdict;
    }
    if (call.keys.empty())
        verdict.result = kNotRecorded;
    for (const std::string &key : call.keys) {
        const Verdict *recorded = take(subjectOf(kind, call.name, key));
        verdict.keys.push_back(recorded ? recorded->keys[0] : answerWith(kNotRecorded));
    }
    return verdict;
}

} // namespace sim
