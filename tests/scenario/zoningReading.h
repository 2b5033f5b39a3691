/*
 * What a cache tells of zoning, by its public queries and the handles that it hands out.
 *
 * The caller sees to it that no pass runs.
 */
#ifndef TESTS_SCENARIO_ZONINGREADING_H
#define TESTS_SCENARIO_ZONINGREADING_H

#include <string>

#include "tests/scenario/zoningModel.h"

namespace scenario {

/// What cannot be read stands there as "(unreadable)".
CachedZonesets zonesetsOf(const ZoningCache &cache);

/// Where the cache tells something else than the model, its counts included: one line each.
std::string differencesOf(const ZoningCache &cache, const ZoningModel &model);

/// The same of the counts alone.
std::string differencesOfCounts(const ZoningCache &cache, const ZoningModel &model);

/// The same for a switch.
std::string differencesOf(const sim::Simulator &theSwitch, const ZoningOnSwitch &model);

/// Where two descriptions differ first; empty when they do not.
std::string firstDifference(const std::string &what, const std::string &found, const std::string &expected);

} // namespace scenario

#endif // TESTS_SCENARIO_ZONINGREADING_H
