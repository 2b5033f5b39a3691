/*
 * Chance that can be repeated. The whole state of a generator is one number, which is a seed again: one that is made
 * from another's state goes on where that one is, on every machine.
 *
 * One thread at a time.
 */
#ifndef SIM_LEVERS_CHANCE_H
#define SIM_LEVERS_CHANCE_H

#include <cstdint>

namespace sim {

class Chance {
public:
    explicit Chance(uint64_t seed) : _state(seed) {}

    uint64_t state() const { return _state; }

    /// Any number: the SplitMix64 generator.
    uint64_t next() {
        _state += 0x9E3779B97F4A7C15U;
        uint64_t mixed = _state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }
    /// 0 to `count` - 1; `count` is not 0.
    unsigned below(unsigned count) { return static_cast<unsigned>(next() % count); }
    bool happens(unsigned percent) { return below(100) < percent; }

private:
    uint64_t _state;
};

} // namespace sim

#endif // SIM_LEVERS_CHANCE_H
