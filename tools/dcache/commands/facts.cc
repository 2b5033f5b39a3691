#include "tools/dcache/commands/facts.h"

#include <fmt/format.h>

#include "tools/dcache/words.h"

namespace dcache {

Cell emptyCell(const char *sign) {
    return {nullptr, sign, Tone::faint};
}

Cell faultsCell(const StatusList &faults) {
    Cell cell{nullptr, "", Tone::bad};
    Value::List words;
    for (const unsigned short fault : faults) {
        if (fault != 0) {
            words.emplace_back(statusWord(fault));
            cell.text += fmt::format("{}{} ({})", cell.text.empty() ? "" : ", ", statusWord(fault), fault);
        }
    }
    cell.value = words;
    if (cell.text.empty()) {
        cell.text = faults.empty() ? "not read" : "none";
        cell.tone = faults.empty() ? Tone::faint : Tone::good;
    }
    return cell;
}

} // namespace dcache
