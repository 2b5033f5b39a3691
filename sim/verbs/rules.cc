// Verbs for rules of misbehaviour. Their words are those of sim/levers/RuleText.h.

#include <iterator>
#include <stdexcept>

#include "sim/levers/RuleText.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"
#include "sim/verbs/perform.h"

namespace sim::verbs {

namespace {

/// The rule that a command says; its action is text alone.
Fault ruleIn(const Given &given) {
    Fault rule;
    for (const RuleWord &word : ruleWords()) {
        if (!given.has(word.name))
            continue;
        try {
            applyRuleWord(rule, word.name,
                          word.hasValue() ? std::optional<std::string>(given.text(word.name)) : std::nullopt);
        } catch (const std::invalid_argument &error) {
            throw std::invalid_argument(std::string("'") + word.name + "' of a rule " + error.what());
        }
    }
    return rule;
}

void checkAddition(const Given &given) {
    const Fault rule = ruleIn(given);
    checkRule(rule);
    checkCommands(rule.actionText);
}

/// Tells the seed, so that the same can be had again.
std::string add(Simulator &device, const Given &given) {
    const int number = addRule(device, ruleIn(given));
    const std::optional<uint64_t> seed = device.faults()[number].firstSeed;
    return "rule " + std::to_string(number) + (seed ? ", seed " + std::to_string(*seed) : "");
}

std::string listRules(Simulator &device, const Given &) {
    Lines lines;
    for (const auto &[number, rule] : device.faults())
        lines.add(std::to_string(number) + ": rule add " + toText(rule));
    return lines.text();
}

std::string removeRule(Simulator &device, const Given &given) {
    for (const auto &[number, rule] : device.faults())
        if (static_cast<unsigned>(number) == given.number("NUMBER")) {
            device.removeFault(number);
            return "";
        }
    throw std::invalid_argument("there is no rule " + given.text("NUMBER") + "; 'rule list' lists them");
}

std::string clearRules(Simulator &device, const Given &) {
    device.clearFaults();
    return "";
}

std::string setSeed(Simulator &device, const Given &given) {
    device.setSeed(std::stoull(given.text("SEED")));
    return "";
}

std::string reachStep(Simulator &device, const Given &given) {
    device.reachStep(given.text("NAME"));
    return "";
}

std::string wordWithKind(const RuleWord &word) {
    return std::string(word.name) + (word.hasValue() ? "=" : "") + word.kind;
}

const std::string &additionPattern() {
    static const std::string pattern = [] {
        std::string text = "rule add";
        for (const RuleWord &word : ruleWords())
            text += " [" + wordWithKind(word) + "]";
        return text;
    }();
    return pattern;
}

/// With a line for each word.
const std::string &additionHelp() {
    static const std::string help = [] {
        std::string text = "Adds a rule of misbehaviour for calls, or for notifications, and tells its number:";
        for (const RuleWord &word : ruleWords()) {
            std::string name = wordWithKind(word);
            name.resize(16, ' ');
            text += "\n            " + name + word.meaning;
        }
        return text;
    }();
    return help;
}

} // namespace

VerbGroup ruleVerbs() {
    static const Verb verbs[] = {
        {additionPattern().c_str(), additionHelp().c_str(),
         "rule add call=zov_smlGet key=Oper.Switch.* skip=2 times=3 status=103", Tells::nothing, add, checkAddition},
        {"rule list", "Lists the rules, each with what is left of it.", "rule list", Tells::nothing, listRules},
        {"rule remove NUMBER", "Removes a rule.", "rule remove 1", Tells::nothing, removeRule},
        {"rule clear", "Removes all rules.", "rule clear", Tells::nothing, clearRules},
        {"rule seed SEED", "What the rules that are added from now on without a seed draw from.", "rule seed 7",
         Tells::nothing, setSeed},
        {"step NAME", "Begins the rules that wait for the step of this name.", "step merge", Tells::nothing, reachStep},
    };
    return {"Misbehaviour", verbs, std::size(verbs)};
}

} // namespace sim::verbs
