#include "sim/levers/Duration.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "sim/levers/Nearest.h"

namespace sim {

namespace {

struct Unit {
    const char *name;
    int64_t milliseconds;
};

constexpr int64_t kSecond = 1000;
constexpr int64_t kMinute = 60 * kSecond;
constexpr int64_t kHour = 60 * kMinute;

/// The longest ones first, as they are written.
constexpr Unit kUnits[] = {{"d", 24 * kHour}, {"h", kHour}, {"min", kMinute}, {"s", kSecond}, {"ms", 1}, {"", kSecond}};

constexpr size_t kMostDigits = 12; // times the longest unit, they fit 64 bits

} // namespace

std::optional<std::chrono::milliseconds> parseDuration(const std::string &text) {
    const size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
    if (count == 0 || count > kMostDigits)
        return std::nullopt;
    int64_t number = 0;
    for (const char digit : text.substr(0, count))
        number = number * 10 + (digit - '0');
    const size_t unitBegin = text.find_first_not_of(' ', count);
    const std::string unit = unitBegin == std::string::npos ? "" : text.substr(unitBegin);
    if (unit.empty() && count != text.size())
        return std::nullopt;
    for (const Unit &known : kUnits)
        if (isSameWord(unit, known.name) &&
            number <= std::chrono::milliseconds(kLongestDuration).count() / known.milliseconds)
            return std::chrono::milliseconds(number * known.milliseconds);
    return std::nullopt;
}

std::string shownDuration(std::chrono::milliseconds time) {
    if (time.count() == 0)
        return "0s";
    const auto unit = std::find_if(std::begin(kUnits), std::end(kUnits),
                                   [&](const Unit &known) { return time.count() % known.milliseconds == 0; });
    return std::to_string(time.count() / unit->milliseconds) + unit->name;
}

} // namespace sim
