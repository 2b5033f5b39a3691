#include "sim/verbs/Values.h"

#include <algorithm>
#include <charconv>

#include "sim/levers/CallNames.h"
#include "sim/levers/Duration.h"
#include "sim/levers/Nearest.h"

namespace sim::verbs {

namespace {

template <class Number> std::optional<Number> wholeNumber(std::string_view text, int base = 10) {
    Number number{};
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && stop == end && !text.empty() ? std::optional<Number>(number) : std::nullopt;
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isSwitch(std::string_view text) {
    return isSameWord(text, "local") || numberIn(text) || wwnIn(text);
}

constexpr const char *kAlways = "always";
constexpr size_t kWwnDigits = 16;
constexpr size_t kWwnWithColons = 23;

bool anyText(const std::string &) {
    return true;
}

bool isHexadecimal(const std::string &text, size_t digits) {
    return text.size() == digits && std::all_of(text.begin(), text.end(), isHexDigit);
}

/// Whether it is of the form of one; which domains and ports there are is known to the switch.
bool isMember(const std::string &text) {
    const size_t colon = text.find(':');
    if (colon == std::string::npos)
        return isHexadecimal(text, 6) || wwnIn(text);
    return text.compare(0, colon, "alias") == 0 || wwnIn(text) ||
           (numberIn(text.substr(0, colon)) && numberIn(text.substr(colon + 1)));
}

template <auto parse> bool has(const std::string &text) {
    return parse(text).has_value();
}

constexpr Kind kKinds[] = {
    {"PORT", "the number of a port, counted from 0", has<numberIn>},
    {"SLOT", "the number of a slot, counted from 0", has<numberIn>},
    {"UNIT", "the number of a power supply or fan, counted from 0", has<numberIn>},
    {"NUMBER", "a whole number", has<numberIn>},
    {"INTEGER", "a whole number, which may be negative", has<integerIn>},
    {"CODE", "the code of a notification", has<integerIn>},
    {"A", "the first source number of a notification", has<integerIn>},
    {"B", "the second one, often a slot", has<integerIn>},
    {"C", "the third one, often a port", has<integerIn>},
    {"CALL", "the name of a function of the switch library, such as zov_smlGet, or 'notification'", isCallName,
     [] { return callNames(); }},
    {"TIMES", "a whole number or 'always'",
     [](const std::string &text) { return integerIn(text) || isSameWord(text, kAlways); },
     [] { return std::vector<std::string>{kAlways}; }},
    {"PERCENT", "1 to 100", has<numberIn>},
    {"SEED", "a whole number of up to 64 bits",
     [](const std::string &text) { return wholeNumber<uint64_t>(text).has_value(); }},
    {"SPEED", "a number, such as 10 or 0.5, up to 1000000", has<speedIn>},
    {"BYTE", "0 to 255, or 0x00 to 0xFF", has<byteIn>},
    {"OUI", "6 hexadecimal digits", [](const std::string &text) { return isHexadecimal(text, 6); }},
    {"TIME", "a whole number of s, ms, min, h or d, such as 250ms; seconds without a unit", has<parseDuration>},
    {"WWN", "16 hexadecimal digits, with colons or not", has<wwnIn>},
    {"SWITCH", "a switch by its WWN or its domain ID, or 'local'",
     [](const std::string &text) { return isSwitch(text); }, [] { return std::vector<std::string>{"local"}; }},
    {"END", "a port of a switch, SWITCH:PORT, such as local:16 or 2:0", has<placeIn>},
    {"OTHER-END", "the same of another switch", has<placeIn>},
    {"KEY", "the key of an attribute; 'keys' lists them", anyText},
    {"PATTERN", "a text in which * stands for any text", anyText},
    {"NAME", "a name", anyText},
    {"ZONE", "the name of a zone", anyText},
    {"MEMBER", "a port WWN, DOMAIN:PORT, an address of 6 hexadecimal digits, or alias:NAME", isMember},
    {"VALUE", "a text, in double quotes when it holds blanks", anyText},
    {"TEXT", "likewise", anyText},
    {"COMMAND", "a command in double quotes", anyText},
    {"VERB", "a verb, or the first words of a command", anyText},
};

} // namespace

std::optional<uint32_t> numberIn(std::string_view text) {
    return wholeNumber<uint32_t>(text);
}

std::optional<int32_t> integerIn(std::string_view text) {
    return wholeNumber<int32_t>(text);
}

std::optional<uint8_t> byteIn(std::string_view text) {
    const bool isHexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    return isHexadecimal ? wholeNumber<uint8_t>(text.substr(2), 16) : wholeNumber<uint8_t>(text);
}

std::optional<double> speedIn(std::string_view text) {
    if (text.empty() || text.front() < '0' || text.front() > '9')
        return std::nullopt;
    double speed = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, speed, std::chars_format::fixed);
    return error == std::errc() && stop == end && speed > 0 ? std::optional<double>(speed) : std::nullopt;
}

std::optional<std::string> wwnIn(std::string_view text) {
    std::string digits;
    for (size_t i = 0; i < text.size() && i < kWwnWithColons; ++i) {
        const bool isColonsPlace = text.size() == kWwnWithColons && i % 3 == 2;
        if (isColonsPlace ? text[i] != ':' : !isHexDigit(text[i]))
            return std::nullopt;
        if (!isColonsPlace)
            digits += text[i];
    }
    return digits.size() == kWwnDigits && (text.size() == kWwnDigits || text.size() == kWwnWithColons)
               ? std::optional<std::string>(digits)
               : std::nullopt;
}

std::optional<PlaceText> placeIn(std::string_view text) {
    const size_t colon = text.rfind(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const std::optional<uint32_t> port = numberIn(text.substr(colon + 1));
    if (!port || !isSwitch(text.substr(0, colon)))
        return std::nullopt;
    return PlaceText{std::string(text.substr(0, colon)), *port};
}

const Kind *findKind(std::string_view name) {
    const auto found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind &kind) { return name == kind.name; });
    return found == std::end(kKinds) ? nullptr : &*found;
}

std::string kindsHelp() {
    std::string text;
    for (const Kind &kind : kKinds) {
        std::string name = kind.name;
        name.resize(10, ' ');
        text += "    " + name + kind.meaning + "\n";
    }
    return text;
}

} // namespace sim::verbs
