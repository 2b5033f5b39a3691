/*
 * Reading scenarios in tests.
 *
 * Thread-safety: functions of what they are given.
 */
#ifndef TESTS_SIM_SCENARIO_READING_H
#define TESTS_SIM_SCENARIO_READING_H

#include <memory>
#include <string>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace simtest {

constexpr const char *kFile = "a.toml";

/// The switch of a scenario.
inline std::unique_ptr<sim::Simulator> made(const std::string &text) {
    return sim::makeSwitch(sim::readScenario(text, kFile));
}

using Lines = std::vector<std::string>;

/// What is wrong with a scenario.
inline Lines wrongIn(const std::string &text) {
    try {
        sim::readScenario(text, kFile);
    } catch (const sim::ScenarioError &error) {
        return error.lines();
    }
    return {};
}

} // namespace simtest

#endif // TESTS_SIM_SCENARIO_READING_H
