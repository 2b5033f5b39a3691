#include "sim/levers/Garbling.h"

#include <algorithm>
#include <array>

#include "sim/levers/Chance.h"

namespace sim {

namespace {

char anyByte(Chance &chance) {
    return static_cast<char>(1 + chance.below(255));
}

void cut(std::string &value, Chance &chance, size_t /*limit*/) {
    value.resize(chance.below(static_cast<unsigned>(value.size())));
}

void addBytes(std::string &value, Chance &chance, size_t limit) {
    constexpr unsigned most = 8;
    for (unsigned count = 1 + chance.below(most); count > 0 && value.size() < limit; --count)
        value.insert(chance.below(static_cast<unsigned>(value.size() + 1)), 1, anyByte(chance));
}

void changeByte(std::string &value, Chance &chance, size_t /*limit*/) {
    char &byte = value[chance.below(static_cast<unsigned>(value.size()))];
    const char before = byte;
    while (byte == before)
        byte = anyByte(chance);
}

void changeDigit(std::string &value, Chance &chance, size_t /*limit*/) {
    char &byte = value[chance.below(static_cast<unsigned>(value.size()))];
    const char before = byte;
    while (byte == before)
        byte = static_cast<char>('0' + chance.below(10));
}

void loseByte(std::string &value, Chance &chance, size_t /*limit*/) {
    value.erase(chance.below(static_cast<unsigned>(value.size())), 1);
}

constexpr std::array kWays = {cut, addBytes, changeByte, changeDigit, loseByte};

} // namespace

std::string garbled(const std::string &value, uint64_t seed, size_t limit) {
    Chance chance(seed);
    std::string text = value;
    if (text.empty())
        addBytes(text, chance, limit);
    while (text == value) // bytes may be added to a full value
        kWays.at(chance.below(kWays.size()))(text, chance, limit);
    return text;
}

} // namespace sim
