/*
 * What is found in a scenario file while it is read: what to do to the switch, in the order in which it can be done
 * whatever the order of the file, the steps, and what is wrong.
 *
 * For one thread at a time.
 */
#ifndef SIM_SCENARIO_PLAN_H
#define SIM_SCENARIO_PLAN_H

#include <array>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "sim/scenario/Fields.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/// When something is done. Names and domains are free before they are given; a cable is laid while its port is there,
/// because it may stay when the port goes.
enum class Phase {
    partings,
    identity,
    peers,
    growing,
    settings,
    cables,
    accounts,
    blades,
    parts,
    shrinking,
    zoning,
    conditions,
    count
};

class Plan {
public:
    void add(Phase phase, FilePosition at, std::function<void(Simulator &)> act);
    /// All of it, in order.
    std::vector<ScenarioDeed> deeds() const;

private:
    std::array<std::vector<ScenarioDeed>, static_cast<size_t>(Phase::count)> _phases;
};

struct Reading {
    Complaints complaints;
    Plan plan;
    CommandCheck check;
    std::vector<ScenarioStep> steps;
    std::set<std::string> named;               ///< the things that have had their table
    std::vector<std::string> stepNames;        ///< of steps, and of commands that do as steps do
    std::vector<ScenarioCommand> stepsOfRules; ///< the names of the steps that rules wait for
};

/// A refusal with the places it is about.
class PlacedRefusal : public std::invalid_argument {
public:
    using Places = std::vector<std::pair<FilePosition, std::string>>;

    explicit PlacedRefusal(Places places);
    const Places &places() const { return *_places; }

private:
    std::shared_ptr<const Places> _places;
};

/// What "do" says, a command or a list of them, and has it checked.
std::vector<ScenarioCommand> readCommands(Fields &fields, Reading &reading);

// ---- the sections of a file: each reads what is its own in the whole --------------------------------------

void readSwitchSection(Fields &file, Reading &reading);
void readSettings(Fields &file, Reading &reading);
void readParts(Fields &file, Reading &reading);
void readPorts(Fields &file, Reading &reading);
void readAccounts(Fields &file, Reading &reading);
void readFabric(Fields &file, Reading &reading);
void readZoning(Fields &file, Reading &reading);
void readRules(Fields &file, Reading &reading);
void readSteps(Fields &file, Reading &reading);
/// Once all is read: complains of rules that wait for a step that will not come, in a file whose steps have names.
void checkStepNames(Reading &reading);

} // namespace sim

#endif // SIM_SCENARIO_PLAN_H
