#include "tools/dcache/words.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace dcache {
namespace {

struct WordRow {
    unsigned short value;
    const char *word;
};

constexpr unsigned short kFirstFault = 32768; // the vendor range: fault markers

// CIM's OperationalStatus, and the cache's fault markers.
constexpr std::array<WordRow, 21> kStatusWords = {{
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

// The switch's "Isolated" and "Down" are an error, unless the port was taken down on purpose.
constexpr std::array<WordRow, 5> kPortStates = {{
    {2, "online"},
    {10, "offline"},
    {11, "diagnostics"},
    {6, "error"},
    {0, "unknown"},
}};

constexpr std::array<WordRow, 11> kPortTypes = {{
    {0, "unknown"},
    {2, "G"},
    {3, "GL"},
    {4, "E"},
    {5, "F"},
    {6, "FL"},
    {16000, "Donor"},
    {16001, "TH"},
    {16002, "TF"},
    {16003, "TR"},
    {16004, "PT"},
}};

constexpr std::array<WordRow, 3> kHardwareTypes = {{{0, "unknown"}, {1, "GL"}, {2, "EXG"}}};

constexpr std::array<WordRow, 3> kTransceiverFormats = {{{0, "SFP"}, {1, "other"}, {2, "unknown"}}};

constexpr std::array<WordRow, 5> kBladeKinds = {{{0, "none"}, {1, "fan"}, {2, "power supply"}, {3, "CPU"}, {4, "I/O"}}};

/// The word of a number; "status 19" for one that has none.
template <size_t rows>
std::string wordOf(const std::array<WordRow, rows> &table, unsigned short value, const char *what) {
    const auto row = std::find_if(table.begin(), table.end(),
                                  [value](const WordRow &candidate) { return candidate.value == value; });
    return row != table.end() ? row->word : fmt::format("{} {}", what, value);
}

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
    return wordOf(kStatusWords, status, "status");
}

std::string portStateWord(unsigned short status) {
    return wordOf(kPortStates, status, "status");
}

std::vector<std::string> portStateWords() {
    std::vector<std::string> words(kPortStates.size());
    std::transform(kPortStates.begin(), kPortStates.end(), words.begin(), [](const WordRow &row) { return row.word; });
    words.emplace_back(kAbsent);
    return words;
}

std::string portTypeWord(unsigned short type) {
    return wordOf(kPortTypes, type, "type");
}

std::string hardwareTypeWord(unsigned short type) {
    return wordOf(kHardwareTypes, type, "type");
}

std::string transceiverFormatWord(unsigned short format) {
    return wordOf(kTransceiverFormats, format, "format");
}

std::string bladeKindWord(unsigned short kind) {
    return wordOf(kBladeKinds, kind, "kind");
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
