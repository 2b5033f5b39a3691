#include "sim/zoning/Names.h"

#include <algorithm>
#include <cstring>

namespace sim {

namespace {

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isNameCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '$' || c == '-' || c == '^' || c == '_';
}

} // namespace

std::optional<std::string> nameFrom(const char *text) {
    if (!text)
        return std::nullopt;
    const size_t length = strnlen(text, kLongestName + 1);
    if (length > kLongestName)
        return std::nullopt;
    return std::string(text, length);
}

bool isValidName(const std::string &name) {
    return !name.empty() && name.size() <= kLongestName && isLetter(name.front()) &&
           std::all_of(name.begin(), name.end(), isNameCharacter);
}

void putName(char *destination, const std::string &name) {
    std::memcpy(destination, name.c_str(), name.size() + 1);
}

} // namespace sim
