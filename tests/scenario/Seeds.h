/*
 * Which seeds of random changes a scenario tries.
 */
#ifndef TESTS_SCENARIO_SEEDS_H
#define TESTS_SCENARIO_SEEDS_H

#include <vector>

namespace scenario {

/// The seed that the program was asked for by --seed=N; 0 when it was not.
unsigned seedAsked();

/// Seeds are tried in groups, which are tests that can run at the same time. A group goes by its first seed. One group
/// is enough for a seed that was asked for.
std::vector<unsigned> seedGroups();

/// The seeds of a group; of all groups together as many as the environment variable DATACACHE_SEEDS says, 200 without it.
/// Fails the test when the group has none: it would test nothing.
std::vector<unsigned> seedsOf(unsigned group);

} // namespace scenario

#endif // TESTS_SCENARIO_SEEDS_H
