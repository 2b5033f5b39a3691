// The timed steps of a scenario file, and the commands that steps and rules are made of.

#include <algorithm>
#include <limits>

#include "sim/levers/Nearest.h"
#include "sim/scenario/Plan.h"
#include "sim/verbs/Words.h"

namespace sim {

namespace {

constexpr const char *kCommands = "do";

/// One command, or a list of them.
std::vector<ScenarioCommand> commandsIn(Fields &fields) {
    const toml::node *node = fields.find(kCommands);
    if (!node)
        return {};
    const std::optional<std::string> text = textIn(*node);
    const bool isList = node->is_array() && !node->as_array()->empty();
    if (isList)
        return fields.texts(kCommands);
    if (text && !text->empty())
        return {{positionOf(node->source()), *text}};
    fields.complainOf(kCommands, "must be a command in quotes, or a list of them");
    return {};
}

/// The names in the commands "step NAME", and in those that rules are to carry out.
void findStepNames(const std::string &commands, std::vector<std::string> &names) {
    for (const verbs::CommandLine &line : verbs::linesOf(commands)) {
        if (line.words.size() > 1 && isSameWord(line.words[0].text, "step"))
            names.push_back(line.words[1].text);
        if (!isSameWord(line.words[0].text, "rule"))
            continue;
        for (const verbs::Word &word : line.words)
            if (word.equals != std::string::npos && isSameWord(word.text.substr(0, word.equals), kCommands))
                findStepNames(word.text.substr(word.equals + 1), names);
    }
}

void readTimes(Fields &fields, ScenarioStep &step) {
    constexpr int64_t most = std::numeric_limits<int32_t>::max();
    const std::chrono::milliseconds none(0);
    const bool isRepeated = fields.has("every");
    if (isRepeated) {
        step.every = fields.duration("every").value_or(std::chrono::seconds(1));
        if (step.every == none)
            fields.complainOf("every", "must be more than no time");
    }
    step.at = fields.duration("at").value_or(step.every);
    if (!isRepeated)
        fields.require("at");
    if (const std::optional<int64_t> repeat = fields.number("repeat", 1, most)) {
        step.repeat = static_cast<unsigned long long>(*repeat);
        if (!isRepeated)
            fields.complainOf("repeat", "needs 'every', the time from one to the next");
    }
}

ScenarioStep readStep(Fields &fields, Reading &reading) {
    ScenarioStep step;
    step.place = fields.at();
    readTimes(fields, step);
    step.name = fields.text("name").value_or("");
    if (fields.has("name") && step.name.empty())
        fields.complainOf("name", "must not be empty");
    if (!fields.has("name")) // a step with a name does something without commands
        fields.require(kCommands);
    step.commands = readCommands(fields, reading);
    for (const ScenarioCommand &command : step.commands)
        if (command.text.find('\n') != std::string::npos)
            reading.complaints.add(command.at, "a command of a step is one line; allowed: a list of commands");
    fields.refuseOthers();
    return step;
}

} // namespace

std::vector<ScenarioCommand> readCommands(Fields &fields, Reading &reading) {
    std::vector<ScenarioCommand> commands = commandsIn(fields);
    for (const ScenarioCommand &command : commands) {
        try {
            if (reading.check)
                reading.check(command.text);
            findStepNames(command.text, reading.stepNames);
        } catch (const std::exception &error) {
            if (reading.check)
                reading.complaints.add(command.at, error.what());
        }
    }
    return commands;
}

void checkStepNames(Reading &reading) {
    const std::vector<std::string> &names = reading.stepNames;
    if (std::all_of(reading.steps.begin(), reading.steps.end(),
                    [](const ScenarioStep &step) { return step.name.empty(); }))
        return; // whoever plays it says when
    for (const ScenarioCommand &wanted : reading.stepsOfRules)
        if (std::find(names.begin(), names.end(), wanted.text) == names.end())
            reading.complaints.add(wanted.at,
                                   "no step is called '" + escaped(wanted.text) + "'" + didYouMean(wanted.text, names));
}

void readSteps(Fields &file, Reading &reading) {
    for (const toml::table *table : file.tables("step")) {
        Fields fields(*table, "a step", reading.complaints);
        reading.steps.push_back(readStep(fields, reading));
        if (!reading.steps.back().name.empty())
            reading.stepNames.push_back(reading.steps.back().name);
    }
}

} // namespace sim
