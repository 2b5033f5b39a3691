/*
 * Random numbers that are the same for the same seed on every machine. (The distributions of the standard library are
 * not.) One thread at a time.
 */
#ifndef TESTS_SCENARIO_RANDOM_H
#define TESTS_SCENARIO_RANDOM_H

#include <cstddef>
#include <random>

namespace scenario {

class Random {
public:
    explicit Random(unsigned seed) : _engine(seed) {}

    /// 0 to `count` - 1; `count` is not 0.
    unsigned below(unsigned count) { return static_cast<unsigned>(_engine() % count); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    /// An element of something that is not empty.
    template <class List> const auto &of(const List &list) { return *(std::begin(list) + below(sizeOf(list))); }

private:
    template <class List> static unsigned sizeOf(const List &list) { return static_cast<unsigned>(std::size(list)); }

    std::mt19937 _engine;
};

} // namespace scenario

#endif // TESTS_SCENARIO_RANDOM_H
