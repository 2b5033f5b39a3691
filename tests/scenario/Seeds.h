/*
 * Which seeds of random changes a scenario tries.
 */
#ifndef TESTS_SCENARIO_SEEDS_H
#define TESTS_SCENARIO_SEEDS_H

namespace scenario {

/// The seed that the program was asked for by --seed=N; 0 when it was not.
unsigned seedAsked();

/// How many seeds to try: what the environment variable DATACACHE_SEEDS says, 200 without it.
unsigned seedCount();

} // namespace scenario

#endif // TESTS_SCENARIO_SEEDS_H
