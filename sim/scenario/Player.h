/*
 * Plays the steps of a scenario on a switch, in the order of time, on the switch's own clock.
 *
 * The player lets no time pass: whoever drives it does, as fast as it likes. It asks next() when a step is due, lets the
 * switch's clock come there (Simulator::waitForUptime(), which does so at any pace), and says play(). Steps that are due at the same time come in
 * the order of the file. The same scenario on the same clock is played in the same way.
 *
 * For one thread at a time. The switch must live as long as the player.
 */
#ifndef SIM_SCENARIO_PLAYER_H
#define SIM_SCENARIO_PLAYER_H

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace sim {

/// Carries out commands and returns what there is to tell; throws when they are refused.
using Perform = std::function<std::string(Simulator &device, const std::string &commands)>;

/// One command that was carried out, or refused.
struct __attribute__((visibility("default"))) Played {
    std::chrono::milliseconds at{0}; ///< when it was due, after the beginning
    std::string where;               ///< file:line:column
    std::string command;
    std::string told;  ///< what there was to tell
    std::string error; ///< why it was refused; empty when it was not

    bool isRefused() const { return !error.empty(); }
    /// One line of text for a log, without a newline: "12 s: port 3 offline", "0.500 s: step merge"; for what was
    /// refused "file:line:column: 12 s: port 3 offlin: why".
    std::string line() const;
};

class __attribute__((visibility("default"))) Player {
public:
    /// The scenario begins now, by the clock of the switch.
    Player(Simulator &device, const Scenario &scenario, Perform perform = sim::perform);

    /// The uptime at which the next step is due, as Simulator::clock() tells it; none when all has been played.
    std::optional<std::chrono::milliseconds> next() const;
    /// Carries out every step that is due by now: first the rules that wait for its name begin, then its commands are
    /// performed. A command that is refused is reported, and the rest goes on.
    std::vector<Played> play();
    /// Carries out the step that is due first, and only that, if it is due by now.
    std::vector<Played> playStep();
    /// That step; null when all has been played.
    const ScenarioStep *nextStep() const;
    /// As fast as possible: lets time pass until the next step is due and plays what is due then. Nothing when all has
    /// been played.
    std::vector<Played> playNext();

private:
    using Due = std::pair<std::chrono::milliseconds, size_t>; ///< when, and the number of the step

    std::chrono::milliseconds sinceBeginning() const;
    Played playedAt(const Due &due, FilePosition place, const std::string &command) const;
    bool isDueBy(std::chrono::milliseconds time) const;
    void playFirst(std::vector<Played> &played);
    void carryOut(const Due &due, std::vector<Played> &played);

    Simulator &_device;
    const std::string _fileName;
    const std::vector<ScenarioStep> _steps;
    const Perform _perform;
    const std::chrono::milliseconds _beginning;
    std::map<Due, unsigned long long> _ahead; ///< with how often the step has come before
};

} // namespace sim

#endif // SIM_SCENARIO_PLAYER_H
