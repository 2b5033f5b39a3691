/*
 * In what a cache that followed the switch may differ from one that was started afterwards, asked for everything: what it
 * is meant to remember. Nothing else may differ.
 */
#ifndef TESTS_SCENARIO_EXCEPTIONS_H
#define TESTS_SCENARIO_EXCEPTIONS_H

#include <string>
#include <vector>

#include "tests/scenario/Story.h"

namespace scenario {

/// A line that the two caches tell differently.
struct Difference {
    std::string line;
    std::string followed;
    std::string fresh;
};

std::vector<Difference> differencesOf(const Endings &endings);

struct Exception {
    const char *name;
    const char *reason;
    /// Whether a difference is one of these.
    bool (*covers)(const Difference &difference, const Endings &endings);
    /// A switch, and a story of it, that needs the exception and no other.
    const char *profile;
    void (*example)(Scene &scene);
};

const std::vector<Exception> &exceptions();

/// The exception that a difference falls under; null for none.
const Exception *exceptionFor(const Difference &difference, const Endings &endings);

} // namespace scenario

#endif // TESTS_SCENARIO_EXCEPTIONS_H
