#include "sim/tree/Rules.h"

#include <arpa/inet.h>

#include <algorithm>
#include <initializer_list>

namespace sim {

namespace {

constexpr size_t kLongestNumber = 9; // digits; any such number fits 32 bits
constexpr size_t kLongestCommunity = 64;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool isHexadecimal(const std::string &value, size_t digits) {
    return value.size() == digits && std::all_of(value.begin(), value.end(), isHexDigit);
}

bool isOneOf(const std::string &value, std::initializer_list<const char *> words) {
    return std::find(words.begin(), words.end(), value) != words.end();
}

bool isNumberBetween(const std::string &value, unsigned lowest, unsigned highest) {
    const std::optional<unsigned> number = toNumber(value);
    return number && *number >= lowest && *number <= highest;
}

bool hasNull(const std::string &value) {
    return value.find('\0') != std::string::npos;
}

bool isAddress(int family, const std::string &value) {
    in6_addr address = {}; // the larger of the two
    return !hasNull(value) && inet_pton(family, value.c_str(), &address) == 1;
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

bool isPrinting(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
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

constexpr Rule kPortStateRule = {[](const std::string &value) {
                                     return isOneOf(value, {"Online", "Offline", "Diagnostics", "Isolated", "Down",
                                                            "Downed", "NotInstalled", "PoweredOff"});
                                 },
                                 "Online, Offline, Diagnostics, Isolated, Down, Downed, NotInstalled, PoweredOff"};

constexpr Rule kPortAdminRule = {[](const std::string &value) {
                                     return isOneOf(value, {"Online", "Offline", "Diagnostics", "Down", "Downed"});
                                 },
                                 "Online, Offline, Diagnostics, Down, Downed"};

constexpr Rule kPortTypeRule = {[](const std::string &value) {
                                    return isOneOf(value, {"G", "GL", "E", "F", "FL", "Donor", "TH", "TF", "TR", "PT"});
                                },
                                "G, GL, E, F, FL, Donor, TH, TF, TR, PT"};

constexpr Rule kBladeStateRule = {[](const std::string &value) {
                                      return isOneOf(value, {"Online", "Offline", "Diagnostics", "Pending", "Down",
                                                             "Downed", "NotInstalled", "PoweredOff"});
                                  },
                                  "Online, Offline, Diagnostics, Pending, Down, Downed, NotInstalled, PoweredOff"};

constexpr Rule kBladeAdminRule = {
    [](const std::string &value) {
        return isOneOf(value, {"Online", "Offline", "Diagnostics", "Down", "Downed", "PoweredOff", ""});
    },
    "Online, Offline, Diagnostics, Down, Downed, PoweredOff, or nothing"};

constexpr Rule kBladeTypeRule = {[](const std::string &value) {
                                     return isOneOf(value, {"IO", "CPU", "PS", "FAN", ""});
                                 },
                                 "IO, CPU, PS, FAN, or nothing"};

constexpr Rule kDiagnosisRule = {[](const std::string &value) {
                                     return isOneOf(value, {"Good", "Compromised", "Failed", ""});
                                 },
                                 "Good, Compromised, Failed, or nothing"};

constexpr Rule kDdmRule = {[](const std::string &value) {
                               return isOneOf(value, {"True", "False", ""});
                           },
                           "True, False, or nothing"};

constexpr Rule kSfpDataRule = {[](const std::string &value) { return value.empty() || isHexadecimal(value, 64); },
                               "64 hexadecimal digits, or nothing"};

constexpr Rule kSfpSerialRule = {
    [](const std::string &value) { return value.empty() || (value.size() == 16 && isPrinting(value)); },
    "16 printing characters, or nothing"};

constexpr Rule kWwnRule = {[](const std::string &value) { return isHexadecimal(value, 16); }, "16 hexadecimal digits"};

// 240 to 255 are kept for the fabric's own services.
constexpr Rule kDomainRule = {[](const std::string &value) { return isNumberBetween(value, 1, 239); }, "1 to 239"};

constexpr Rule kCountRule = {[](const std::string &value) { return isNumberBetween(value, 0, 255); }, "0 to 255"};

constexpr Rule kSensorsRule = {[](const std::string &value) { return value.empty() || isNumberBetween(value, 0, 255); },
                               "0 to 255, or nothing"};

constexpr Rule kChecksumRule = {
    [](const std::string &value) { return !value.empty() && value.size() <= 8 && isHexadecimal(value, value.size()); },
    "1 to 8 hexadecimal digits"};

constexpr Rule kIpv4Rule = {[](const std::string &value) { return value.empty() || isAddress(AF_INET, value); },
                            "an IPv4 address, or nothing"};

constexpr Rule kIpv6Rule = {[](const std::string &value) { return value.empty() || isAddress(AF_INET6, value); },
                            "an IPv6 address, or nothing"};

constexpr Rule kCommunityRule = {[](const std::string &value) {
                                     return !value.empty() && value.size() <= kLongestCommunity && isPrinting(value) &&
                                            value.find(' ') == std::string::npos;
                                 },
                                 "1 to 64 printing characters without blanks"};

constexpr Rule kTextRule = {[](const std::string &value) { return value.size() <= kLongestValue && !hasNull(value); },
                            "a text of at most 255 characters"};

constexpr Rule kDerivedRule = {[](const std::string &) { return false; }, "nothing; it follows from other attributes"};

} // namespace sim
