/*
 * The attributes of the simulated switch that random changes set, and the values they are given. Constants.
 */
#ifndef TESTS_SCENARIO_ATTRIBUTES_H
#define TESTS_SCENARIO_ATTRIBUTES_H

#include <string>
#include <vector>

namespace scenario {

/// Slots that the cache can keep I/O and CPU blades of.
constexpr unsigned kBladeSlots = 32;

struct Attribute {
    unsigned weight;     ///< how often it is set
    const char *pattern; ///< of its key; "{}" is the number of a port, slot or unit
    const char *count;   ///< the key that tells how many of these there are; null without a number in the key
    unsigned most;       ///< of them are taken
    std::vector<const char *> values;
};

/// All attributes, each as often as its weight says, in one row: how long it is, and what stands at a place.
unsigned attributeWeight();
const Attribute &attributeAt(unsigned place);

} // namespace scenario

#endif // TESTS_SCENARIO_ATTRIBUTES_H
