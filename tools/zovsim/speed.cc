#include "tools/zovsim/speed.h"

#include <cstdlib>
#include <fmt/format.h>

namespace zovsim {

std::optional<Speed> parseSpeed(const std::string &text) {
    if (text == "max")
        return Speed{sim::Pace::driven, 1};
    constexpr double kFastest = 1e6;
    if (text.empty() || text.find_first_not_of("0123456789.") != std::string::npos)
        return std::nullopt;
    char *end = nullptr;
    const double factor = std::strtod(text.c_str(), &end);
    if (*end != '\0' || !(factor > 0) || factor > kFastest)
        return std::nullopt;
    return Speed{sim::Pace::running, factor};
}

std::string speedWords(const Speed &speed) {
    switch (speed.pace) {
    case sim::Pace::driven:
        return "as fast as possible";
    case sim::Pace::paused:
    case sim::Pace::byHand:
        return "paused";
    case sim::Pace::running:
        break;
    }
    return speed.factor == 1 ? "in real time" : fmt::format("{:g} times as fast as real time", speed.factor);
}

} // namespace zovsim
