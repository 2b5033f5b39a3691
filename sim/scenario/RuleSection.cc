// The rules of misbehaviour of a scenario file: the words of a rule are the keys of its table.

#include "sim/levers/RuleText.h"
#include "sim/scenario/Plan.h"
#include "sim/verbs/perform.h"

namespace sim {

namespace {

/// The value of a word as a command would say it; nothing when the word is not said.
std::optional<std::string> wordIn(Fields &fields, const RuleWord &word, Reading &reading) {
    if (word.value != RuleValue::commands) {
        const toml::node *node = fields.find(word.name);
        std::optional<std::string> value = node ? valueIn(*node) : std::nullopt;
        if (node && !value)
            fields.complainOf(word.name, "must be " + word.allowed());
        return value;
    }
    std::string lines;
    for (const ScenarioCommand &command : readCommands(fields, reading))
        lines += (lines.empty() ? "" : "\n") + command.text;
    return fields.has(word.name) ? std::optional<std::string>(lines) : std::nullopt;
}

void readWord(Fields &fields, const RuleWord &word, Reading &reading, Fault &rule) {
    try {
        if (word.hasValue()) {
            if (const std::optional<std::string> value = wordIn(fields, word, reading))
                applyRuleWord(rule, word.name, value);
        } else if (fields.flag(word.name).value_or(false))
            applyRuleWord(rule, word.name, std::nullopt);
    } catch (const std::invalid_argument &error) {
        fields.complainOf(word.name, error.what());
    }
}

/// None when there was something to complain of.
std::optional<Fault> readRule(Fields &fields, Reading &reading) {
    Fault rule;
    const size_t before = reading.complaints.count();
    for (const RuleWord &word : ruleWords())
        readWord(fields, word, reading, rule);
    fields.refuseOthers();
    if (!rule.step.empty())
        reading.stepsOfRules.push_back({fields.at("step"), rule.step});
    if (reading.complaints.count() != before)
        return std::nullopt;
    try {
        checkRule(rule);
    } catch (const std::invalid_argument &error) {
        fields.complain(error.what());
        return std::nullopt;
    }
    return rule;
}

} // namespace

void readRules(Fields &file, Reading &reading) {
    for (const toml::table *table : file.tables("rule")) {
        Fields fields(*table, "a rule", reading.complaints);
        const std::optional<Fault> rule = readRule(fields, reading);
        if (rule)
            reading.plan.add(Phase::conditions, fields.at(),
                             [rule = *rule](Simulator &device) { addRule(device, rule); });
    }
}

} // namespace sim
