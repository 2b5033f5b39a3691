/*
 * What a recording knows of an answer: for the call as it was made, or for one of its keys, one answer after another.
 *
 * Plain data; guarded by its owner.
 */
#ifndef SIM_RECORD_ANSWERS_H
#define SIM_RECORD_ANSWERS_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/core/Script.h"
#include "sim/record/Recording.h"

namespace sim {

/// A record as calls are compared with it.
struct ExpectedCall {
    std::string name;
    std::string arguments;         ///< but for what was handed out
    std::vector<Exchange> answers; ///< key by key; the codes of a registration are keys too
    bool hasValues = false;        ///< what the keys were set to is known
};

/// Throws std::invalid_argument saying what is wrong.
ExpectedCall expectedCall(const Record &record);

bool isSame(const ExpectedCall &expected, const Call &call);

/// What was recorded as the answer to the call.
Verdict answerOf(const Record &record, const ExpectedCall &expected);

/// The answers that one connection got, of all its calls that were served.
class Answers {
public:
    /// `place` is that of the record among all; records are added in order.
    void add(size_t place, const Record &record, const ExpectedCall &expected);
    /// The record here was answered with as a whole: what came before it in its keys is no longer wanted.
    void passed(size_t place, const ExpectedCall &expected);
    /// Key by key the next answer, or the last one again; a key that was never answered is refused.
    Verdict bestFor(const Call &call);

private:
    struct Answer {
        size_t place = 0;
        Verdict verdict; ///< of a call as a whole, or with one key
    };
    struct Series {
        std::vector<Answer> answers;
        size_t next = 0;
    };

    const Verdict *take(const std::string &subject);

    std::map<std::string, Series> _series; ///< by what the answers are about
};

} // namespace sim

#endif // SIM_RECORD_ANSWERS_H
