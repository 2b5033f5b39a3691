/*
 * Scenarios: a simulated switch, its fabric and its troubles as a file of data, and what happens to them as time passes.
 *
 * A scenario is a text in TOML. It starts from a profile of the switch; everything else is a difference from it, but for
 * the steps, which are commands that are carried out at their times (sim/scenario/Player.h). WWNs are quoted texts.
 *
 * Everything here works through the control interface alone. Thread-safe: functions of what they are given.
 *
 * Errors: reading throws a ScenarioError that says everything that is wrong with a file, one line for each mistake:
 * "file:line:column: what is wrong, and what is allowed". A scenario that was read is one that a switch can take.
 */
#ifndef SIM_SCENARIO_SCENARIO_H
#define SIM_SCENARIO_SCENARIO_H

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "sim/Simulator.h"
#include "sim/verbs/perform.h"

namespace sim {

/// Where something stands in a file; both count from 1.
struct FilePosition {
    unsigned line = 1;
    unsigned column = 1;
};

/// "file:line:column"
__attribute__((visibility("default"))) std::string shownPosition(const std::string &fileName, FilePosition at);

class __attribute__((visibility("default"))) ScenarioError : public std::runtime_error {
public:
    explicit ScenarioError(const std::vector<std::string> &lines);

    /// One for each mistake, in the order of the file. what() has them all.
    const std::vector<std::string> &lines() const { return *_lines; }

private:
    std::shared_ptr<const std::vector<std::string>> _lines; ///< shared, since errors are copied and may not fail then
};

/// A command of a step, and where it stands.
struct ScenarioCommand {
    FilePosition at;
    std::string text;
};

struct ScenarioStep {
    FilePosition place;
    std::string name;                   ///< the rules of misbehaviour that wait for this step begin with it
    std::chrono::milliseconds at{0};    ///< after the beginning, for the first time
    std::chrono::milliseconds every{0}; ///< from one time to the next; 0: it comes once
    unsigned long long repeat = 0;      ///< how often it comes in all; 0: for ever
    std::vector<ScenarioCommand> commands;
};

/// One thing to do to the switch of the profile. It may be done again to another switch of that profile.
struct ScenarioDeed {
    FilePosition at;
    std::function<void(Simulator &)> act; ///< throws std::invalid_argument when the switch refuses it
};

struct Scenario {
    std::string fileName;
    std::string profile;
    std::vector<ScenarioDeed> deeds; ///< what makes the scenario's switch of the profile's, in this order
    std::vector<ScenarioStep> steps; ///< in the order of the file
};

/// Throws, saying why, when a text is no command. Nothing is carried out.
using CommandCheck = std::function<void(const std::string &command)>;

/// Reads a scenario. With an empty check, commands of steps and rules are taken as they are.
__attribute__((visibility("default"))) Scenario readScenario(const std::string &text, const std::string &fileName,
                                                             const CommandCheck &check = checkCommands);

/// Makes the scenario's switch. Connections reach it when it is ready. Its steps are for a Player.
__attribute__((visibility("default"))) std::unique_ptr<Simulator> makeSwitch(const Scenario &scenario);

/// The present state of a switch as the text of a scenario that makes one like it. What belongs to its connections is
/// not in it: who of them holds admin mode or the lock, their edits, what they saved and backed up. A rule of
/// misbehaviour with an action that is not given as commands cannot be written down; a comment says so.
__attribute__((visibility("default"))) std::string dumpScenario(const Simulator &device);

} // namespace sim

#endif // SIM_SCENARIO_SCENARIO_H
