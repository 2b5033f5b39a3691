#include "sim/tree/Rules.h"

#include <algorithm>
#include <initializer_list>

namespace sim {

namespace {

constexpr size_t kLongestNumber = 9; // digits; any such number fits 32 bits

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool isOneOf(const std::string &value, std::initializer_list<const char *> words) {
    return std::find(words.begin(), words.end(), value) != words.end();
}

bool isNumberBetween(const std::string &value, unsigned lowest, unsigned highest) {
    const std::optional<unsigned> number = toNumber(value);
    return number && *number >= lowest && *number <= highest;
}

} // namespace

std::optional<unsigned> toNumber(std::string_view text) {
    if (text.empty() || text.size() > kLongestNumber || !std::all_of(text.begin(), text.end(), isDigit) ||
        (text.size() > 1 && text.front() == '0'))
        return std::nullopt;
    unsigned number = 0;
    for (const char digit : text)
        number = number * 10 + static_cast<unsigned>(digit - '0');
    return number;
}

constexpr Rule kBooleanRule = {[](const std::string &value) {
                                   return isOneOf(value, {"True", "False"});
                               },
                               "True, False"};

constexpr Rule kSwitchStateRule = {[](const std::string &value) {
                                       return isOneOf(value, {"Online", "Offline", "Diagnostics", "Downed"});
                                   },
                                   "Online, Offline, Diagnostics, Downed"};

constexpr Rule kHardwareRule = {[](const std::string &value) {
                                    return isOneOf(value, {"Good", "Bad", "NotInstalled"});
                                },
                                "Good, Bad, NotInstalled"};

constexpr Rule kWwnRule = {
    [](const std::string &value) { return value.size() == 16 && std::all_of(value.begin(), value.end(), isHexDigit); },
    "16 hexadecimal digits"};

// 240 to 255 are kept for the fabric's own services.
constexpr Rule kDomainRule = {[](const std::string &value) { return isNumberBetween(value, 1, 239); }, "1 to 239"};

constexpr Rule kCountRule = {[](const std::string &value) { return isNumberBetween(value, 0, 255); }, "0 to 255"};

constexpr Rule kTextRule = {
    [](const std::string &value) { return value.size() <= kLongestValue && value.find('\0') == std::string::npos; },
    "a text of at most 255 characters"};

} // namespace sim
