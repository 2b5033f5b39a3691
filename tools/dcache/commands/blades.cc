#include <fmt/format.h>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr unsigned short kSingleSlot = 1;
constexpr unsigned short kOk = 2;
constexpr unsigned short kNoKind = 0;

Cell count(unsigned short number) {
    return {number, std::to_string(number)};
}

std::vector<Cell> unknownSlot(unsigned short slot) {
    const Cell notKnown = emptyCell("?");
    return {count(slot), notKnown, notKnown, notKnown, notKnown, notKnown};
}

std::vector<Cell> knownSlot(const CacheLock &cache, unsigned short slot) {
    const unsigned short kind = cache->getRootBladeKind(slot);
    const std::string word = bladeKindWord(kind);
    if (kind == kNoKind)
        return {count(slot), {word, word, Tone::faint}, emptyCell("-"), emptyCell("-"), emptyCell("-"), emptyCell("-")};
    const unsigned short status = cache->getRootBladeStatus(slot);
    const std::string state = statusWord(status);
    return {
        count(slot),
        {word, word},
        {StatusList{status}, ""},
        {state, fmt::format("{} ({})", state, status), status == kOk ? Tone::good : Tone::bad},
        count(cache->getRootTemperatureSensorCount(slot)),
        count(cache->getRootVoltageSensorCount(slot)),
    };
}

/// A fact of a switch that is one box; there is none to show of one with slots.
Fact boxFact(bool isBox, const char *key, const char *label, unsigned short number) {
    return isBox ? Fact{key, label, count(number)} : Fact{key, nullptr, emptyCell("-")};
}

} // namespace

Report showBlades() {
    loadOnce(DataCacheArea::blades);
    const CacheLock cache;
    const unsigned short slots = cache->getRootSlotCount();
    const bool isBox = slots == kSingleSlot;
    // What a pass reads of a slot replaces what it has read of the one before.
    const bool hasKnownSlot = !isBox && slots != 0 && slots <= kBladeSlots;
    const int lastSlot = slots - 1;

    Listing blades{"blades",
                   {{"slot", "SLOT"},
                    {"kind", "BLADE"},
                    {"operationalStatus", nullptr},
                    {"state", "STATUS"},
                    {"temperatureSensors", "TEMPERATURE SENSORS"},
                    {"voltageSensors", "VOLTAGE SENSORS"}},
                   {},
                   isBox ? "No blades: the switch is one box." : "No blades: the chassis has no slots."};
    for (unsigned short slot = 0; !isBox && slot < slots; ++slot)
        blades.rows.push_back(hasKnownSlot && slot == lastSlot ? knownSlot(cache, slot) : unknownSlot(slot));

    Report report;
    report.facts = {
        {"slots", "slots", count(slots)},
        {"knownSlot", nullptr, hasKnownSlot ? Cell{lastSlot, ""} : emptyCell("-")},
        boxFact(isBox, "temperatureSensors", "temperature sensors", cache->getRootTemperatureSensorCount(0)),
        boxFact(isBox, "voltageSensors", "voltage sensors", cache->getRootVoltageSensorCount(0)),
    };
    report.listings = {blades};
    if (hasKnownSlot)
        report.notes = {fmt::format("Only slot {} is known: the cache keeps the slot that it read last.", lastSlot)};
    else if (!isBox && slots != 0)
        report.notes = {fmt::format("No slot is known: the last one is kept, and it is above {}.", kBladeSlots - 1)};
    return report;
}

} // namespace dcache
