/*
 * Scenarios as a person names them: files, and those that come with the program.
 *
 * Errors: dcache::Failure for what cannot be read, sim::ScenarioError for a scenario with mistakes.
 */
#ifndef TOOLS_ZOVSIM_SCENARIOS_H
#define TOOLS_ZOVSIM_SCENARIOS_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "sim/scenario/Scenario.h"
#include "tools/dcache/output.h"

namespace zovsim {

constexpr size_t kLargestScenario = size_t{16} << 20;

/// All of a file; of standard input for "-".
std::string readText(const std::string &file, size_t largest = kLargestScenario);

/// The scenario of a file, or one of the shipped by its name. What has a slash, or ends in ".toml", and "-" for standard
/// input, is a file; any other name is one only if no shipped scenario has it.
sim::Scenario scenarioNamed(const std::string &name);

/// A switch of this profile to which nothing happens.
sim::Scenario scenarioOfProfile(const std::string &profile);

/// The scenario's switch; connections reach it. Rules without a seed of their own draw from this one.
std::unique_ptr<sim::Simulator> makeDevice(const sim::Scenario &scenario, uint64_t seed);

/// Tells of every one of these, named as above, whether it is good, on the output, and of every mistake, on stderr.
/// False when there is one.
bool validate(const std::vector<std::string> &files, dcache::Output &output);

/// The shipped scenarios, a line for each with what it is about.
std::string scenarioList();
/// The text of a shipped one.
std::string scenarioText(const std::string &name);

} // namespace zovsim

#endif // TOOLS_ZOVSIM_SCENARIOS_H
