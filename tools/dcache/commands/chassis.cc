#include <functional>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr unsigned short kGood = 1;
constexpr unsigned short kBad = 2;

Tone toneOf(unsigned short state) {
    return state == kGood ? Tone::good : state == kBad ? Tone::bad : Tone::faint;
}

/// Power supplies or fans: numbered from 1, as the events number them.
Listing units(const char *key, const char *title, unsigned short count,
              const std::function<unsigned short(unsigned short)> &stateOf) {
    Listing listing{key, {{"number", title}, {"state", "STATE"}}, {}};
    for (unsigned short i = 0; i < count; ++i) {
        const unsigned short state = stateOf(i);
        const std::string word = hardwareStateWord(state);
        listing.rows.push_back({{i + 1, std::to_string(i + 1)}, {word, word, toneOf(state)}});
    }
    return listing;
}

} // namespace

Report showChassis() {
    loadOnce(DataCacheArea::chassis);
    const CacheLock cache;
    const unsigned short slots = cache->getRootMaxSlots();
    Report report;
    report.facts = {
        {"slots", "slots", {slots, slots == 0 ? "none (single-slot chassis)" : std::to_string(slots)}},
        {"faults", "faults", faultsCell(cache->getSwitchFaults())},
    };
    report.listings = {
        units("powerSupplies", "POWER SUPPLY", cache->getRootPowerSupplyCount(),
              [&cache](unsigned short i) { return cache->getRootPowerSupplyStatus(i); }),
        units("fans", "FAN", cache->getRootFanCount(),
              [&cache](unsigned short i) { return cache->getRootFanStatus(i); }),
    };
    return report;
}

} // namespace dcache
