#include "tools/dcache/words.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace dcache {
namespace {

struct StatusRow {
    unsigned short value;
    const char *word;
};

constexpr unsigned short kFirstFault = 32768; // the vendor range: fault markers

// CIM's OperationalStatus, and the cache's fault markers.
constexpr std::array<StatusRow, 21> kStatusWords = {{
    {0, "Unknown"},
    {1, "Other"},
    {2, "OK"},
    {3, "Degraded"},
    {4, "Stressed"},
    {5, "Predictive Failure"},
    {6, "Error"},
    {7, "Non-Recoverable Error"},
    {8, "Starting"},
    {9, "Stopping"},
    {10, "Stopped"},
    {11, "In Service"},
    {12, "No Contact"},
    {13, "Lost Communication"},
    {14, "Aborted"},
    {15, "Dormant"},
    {16, "Supporting Entity in Error"},
    {17, "Completed"},
    {18, "Power Mode"},
    {kFirstFault, "self-test failed"},
    {kFirstFault + 1, "management-processor fault"},
}};

constexpr std::array<const char *, 4> kHardwareStates = {"unknown", "good", "bad", "not installed"};

constexpr std::array<const char *, 7> kAreaWords = {"switch",   "chassis", "blades", "ports",
                                                    "accounts", "fabric",  "zoning"};

void append(std::string &list, const std::string &word) {
    list += list.empty() ? word : ", " + word;
}

} // namespace

std::string colonForm(const Wwn &name) {
    const std::string digits = name.tostring();
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i != 0 && i % 2 == 0)
            text += ':';
        text += digits[i];
    }
    return text;
}

std::string printable(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f)
            safe += c;
        else
            safe += fmt::format("\\x{:02X}", byte);
    }
    return safe;
}

std::string inQuotes(std::string_view text) {
    return '"' + printable(text) + '"';
}

const char *hardwareStateWord(unsigned short state) {
    return state < kHardwareStates.size() ? kHardwareStates[state] : kHardwareStates[0];
}

std::string statusWord(unsigned short status) {
    const auto row = std::find_if(kStatusWords.begin(), kStatusWords.end(),
                                  [status](const StatusRow &candidate) { return candidate.value == status; });
    return row != kStatusWords.end() ? row->word : fmt::format("status {}", status);
}

StatusWords statusWords(const StatusList &list) {
    if (list.empty())
        return {"not read yet", "faults not read"};
    StatusWords words{statusWord(list.front()), ""};
    for (size_t i = 1; i < list.size(); ++i)
        if (list[i] >= kFirstFault)
            append(words.faults, statusWord(list[i]));
        else if (list[i] != 0)
            append(words.state, statusWord(list[i]));
    if (words.faults.empty())
        words.faults = list.size() == 1 ? "faults not read" : "no faults";
    return words;
}

std::string statusChange(const StatusList &before, const StatusList &now) {
    const StatusWords then = statusWords(before);
    const StatusWords today = statusWords(now);
    if (then.faults == today.faults && then.state != today.state)
        return fmt::format("{} -> {}", then.state, today.state);
    return fmt::format("{}, {} -> {}, {}", then.state, then.faults, today.state, today.faults);
}

const char *areaWord(DataCacheArea area) {
    return kAreaWords.at(static_cast<size_t>(area));
}

} // namespace dcache
