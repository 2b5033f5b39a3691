/*
 * The scenarios that come with the simulated switch, by their names: the files in scenarios/, which are part of the
 * library, so that they are there wherever it is.
 *
 * Thread-safe: constants.
 */
#ifndef SIM_SCENARIO_SHIPPED_H
#define SIM_SCENARIO_SHIPPED_H

#include <optional>
#include <string>
#include <vector>

namespace sim {

/// Their names, sorted.
__attribute__((visibility("default"))) std::vector<std::string> shippedScenarios();

/// The text of the scenario of this name; none if there is no such scenario.
__attribute__((visibility("default"))) std::optional<std::string> shippedScenario(const std::string &name);

} // namespace sim

#endif // SIM_SCENARIO_SHIPPED_H
