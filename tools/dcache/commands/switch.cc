#include <fmt/format.h>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr unsigned short kOk = 2;

/// "OK (2)", "OK (2), Predictive Failure (5)": the states of the list with their CIM numbers, without the faults.
Cell stateCell(const StatusList &status) {
    Cell cell{statusWords(status).state, "", Tone::bad};
    for (size_t i = 0; i < status.size(); ++i) {
        const bool isState = i == 0 || (status[i] != 0 && status[i] < 32768);
        if (isState)
            cell.text += fmt::format("{}{} ({})", i == 0 ? "" : ", ", statusWord(status[i]), status[i]);
    }
    if (!status.empty() && status.front() == kOk)
        cell.tone = Tone::good;
    return cell;
}

Cell presenceCell(bool present) {
    return {present, present ? "present" : "not present"};
}

} // namespace

Report showSwitch() {
    loadOnce(DataCacheArea::switchInfo);
    const CacheLock cache;
    const std::string name = colonForm(cache->getRootSwitchWorldWideName());
    const StatusList status = cache->getRootSwitchStatus();
    const Cell state = stateCell(status);
    const bool transparent = cache->isTransparentSwitch();
    Report report;
    report.facts = {
        {"wwn", "WWN", {name, name, Tone::accent}},
        {"operationalStatus", "operational status", {status, state.text, state.tone}},
        {"state", nullptr, state},
        {"faults", "faults", faultsCell(cache->getSwitchFaults())},
        {"transparent", "transparent mode", {transparent, transparent ? "on" : "off"}},
        {"fcoe", "FCoE", presenceCell(cache->isFCOESwitch())},
        {"ethernetPassthrough", "Ethernet pass-through", presenceCell(cache->isEthernetPassthroughSwitch())},
    };
    return report;
}

} // namespace dcache
