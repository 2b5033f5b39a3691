/*
 * The words of a rule of misbehaviour, a row each, for all who read or write rules: commands and scenario files have the
 * same.
 *
 *     call=zov_smlGetBatch key=Oper.UserPort.*.OperState skip=2 times=always chance=25 seed=7 stale
 *     call=notification key=14 step=merge after=90s storm=100
 *
 * An action is said as the commands that are to be carried out; they stand in the rule as a text alone
 * (Fault::actionText), and whoever adds the rule makes an action of it.
 *
 * Pure functions.
 */
#ifndef SIM_LEVERS_RULETEXT_H
#define SIM_LEVERS_RULETEXT_H

#include <optional>
#include <string>
#include <vector>

#include "sim/Fault.h"

namespace sim {

/// What kind of value follows a word.
enum class RuleValue { none, number, time, text, commands };

struct RuleWord {
    const char *name;
    RuleValue value;
    const char *kind; ///< what its value is called, "TIME"; empty for a word without one
    bool acts;        ///< it says what happens, the others when
    const char *meaning;
    /// What its value must be.
    std::string allowed() const;

    bool hasValue() const { return value != RuleValue::none; }
};

/// All of them, in the order in which they are written.
const std::vector<RuleWord> &ruleWords();

/// Says one word more of a rule. Throws std::invalid_argument for a word that there is not, one that contradicts an
/// earlier one, and a value that it cannot have: "must be ..., not ...".
void applyRuleWord(Fault &fault, const std::string &name, const std::optional<std::string> &value);

/// Throws std::invalid_argument for a rule that contradicts itself and for one by which nothing happens.
void checkRule(const Fault &fault);

/// A word as it is said of a rule.
struct SaidWord {
    const RuleWord *word = nullptr;
    std::string value;
};

/// The words that make the same rule again; what is as it is without saying is left out. An action that is not given
/// as commands has none.
std::vector<SaidWord> ruleWordsOf(const Fault &fault);

/// The same as one line, a word with blanks, quotation marks or bytes that do not print in quotation marks. A rule with
/// an action that no word can tell ends in "action".
std::string toText(const Fault &fault);

} // namespace sim

#endif // SIM_LEVERS_RULETEXT_H
