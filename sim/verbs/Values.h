/*
 * Values as people write them, and the kinds of them that commands hold. Pure functions.
 */
#ifndef SIM_VERBS_VALUES_H
#define SIM_VERBS_VALUES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim::verbs {

/// A decimal number that fits, and nothing else.
std::optional<uint32_t> numberIn(std::string_view text);
std::optional<int32_t> integerIn(std::string_view text);

/// 0 to 255, in decimal or, after "0x", in hexadecimal.
std::optional<uint8_t> byteIn(std::string_view text);

/// A decimal number above 0, whole or a fraction: "10", "0.5".
std::optional<double> speedIn(std::string_view text);

/// 16 hexadecimal digits, in pairs with colons between them or not: the digits. None for any other text.
std::optional<std::string> wwnIn(std::string_view text);

/// A port of a switch, "SWITCH:PORT".
struct PlaceText {
    std::string theSwitch; ///< a name, a domain ID or "local"
    uint32_t port = 0;
};
std::optional<PlaceText> placeIn(std::string_view text);

/// A kind of value: a word in capitals in the patterns of the commands.
struct Kind {
    const char *name = nullptr;
    const char *meaning = nullptr;
    bool (*accepts)(const std::string &text) = nullptr;
    /// The words of the language that it can be, if it can be some.
    std::vector<std::string> (*words)() = nullptr;
};

/// The kind of this name; null when there is none.
const Kind *findKind(std::string_view name);

/// All of them, a line each, for the help.
std::string kindsHelp();

} // namespace sim::verbs

#endif // SIM_VERBS_VALUES_H
