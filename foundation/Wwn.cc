#include "foundation/Wwn.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr uint32_t kNaaMask = 0xF0000000;
constexpr uint32_t kPortMask = 0xFFF; // one number
constexpr uint32_t kHalfMask = 0x3F;  // each of two numbers
constexpr unsigned kHalfBits = 6;

/// Where the formats that have a port field keep it, in the high word.
struct PortField {
    uint32_t naa;
    unsigned shift;
    uint32_t keep; // what setting the port leaves
};

// An NAA 3 name loses bits 16 to 27 whenever its port is set: a switch port has no other vendor bits there.
constexpr std::array<PortField, 2> kPortFields{{
    {2, 16, 0xF000FFFF},
    {3, 4, 0xF000000F},
}};

/// The bits of the high word in which names of one device agree.
struct DeviceBase {
    uint32_t naa;
    uint32_t mask;
};

constexpr std::array<DeviceBase, 4> kDeviceBases{{
    {1, 0xF000FFFF},
    {2, 0xF000FFFF},
    {3, 0xF000000F},
    {5, 0xF000000F},
}};

uint32_t naaOf(uint32_t high) {
    return high >> 28U;
}

uint32_t withNaa(uint32_t high, uint32_t naa) {
    return (high & ~kNaaMask) | (naa << 28U);
}

template <class Table> auto findFormat(const Table &table, uint32_t high) -> decltype(table.data()) {
    for (const auto &row : table) {
        if (row.naa == naaOf(high))
            return &row;
    }
    return nullptr;
}

/// The 16 digits of a name's text, or nothing acceptable.
std::string digitsOf(const std::string &text) {
    if (text.size() == 16)
        return text;
    if (text.size() != 23)
        return {};
    // The eighth pair has never been part of what counts; its place reads as zeros.
    std::string digits(16, '0');
    for (size_t pair = 0; pair < 7; ++pair) {
        if (text[3 * pair + 2] != ':')
            return {};
        digits[2 * pair] = text[3 * pair];
        digits[2 * pair + 1] = text[3 * pair + 1];
    }
    return digits;
}

} // namespace

Wwn::Wwn(const std::string &text) {
    const std::string digits = digitsOf(text);
    if (digits.empty())
        return;
    for (const char digit : digits) {
        if (std::isxdigit(static_cast<unsigned char>(digit)) == 0)
            return;
    }
    _high = static_cast<uint32_t>(std::strtoul(digits.substr(0, 8).c_str(), nullptr, 16));
    _low = static_cast<uint32_t>(std::strtoul(digits.substr(8).c_str(), nullptr, 16));
}

std::string Wwn::tostring() const {
    const auto byte = [](uint32_t word, unsigned shift) { return (word >> shift) & 0xFFU; };
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%2.2X%2.2X%2.2X%2.2X%2.2X%2.2X%2.2X%2.2X", byte(_high, 24),
                  byte(_high, 16), byte(_high, 8), byte(_high, 0), byte(_low, 24), byte(_low, 16), byte(_low, 8),
                  byte(_low, 0));
    return text.data();
}

bool Wwn::Same_Base(const Wwn &other) const {
    const DeviceBase *base = findFormat(kDeviceBases, _high);
    return base != nullptr && ((_high ^ other._high) & base->mask) == 0 && _low == other._low;
}

void Wwn::Set_Port(uint32_t port) {
    if (const PortField *field = findFormat(kPortFields, _high))
        _high = (_high & field->keep) | ((port & kPortMask) << field->shift);
}

void Wwn::Set_Port(uint32_t first, uint32_t second) {
    Set_Port(((first & kHalfMask) << kHalfBits) | (second & kHalfMask));
}

void Wwn::Get_Port(uint32_t &port) const {
    if (const PortField *field = findFormat(kPortFields, _high))
        port = (_high >> field->shift) & kPortMask;
}

void Wwn::Get_Port(uint32_t &first, uint32_t &second) const {
    if (const PortField *field = findFormat(kPortFields, _high)) {
        const uint32_t port = (_high >> field->shift) & kPortMask;
        first = port >> kHalfBits;
        second = port & kHalfMask;
    }
}

bool Wwn::Make_Fabric_Port_Wwn(uint32_t first, uint32_t second) {
    if (naaOf(_high) != 1 && naaOf(_high) != 2)
        return false;
    _high = withNaa(_high, 2);
    Set_Port(first, second);
    return true;
}

bool Wwn::Make_Fabric_Port_Wwn_Null_Mac(uint32_t first, uint32_t second) {
    _high = 0x2000FFFF;
    _low = 0xFFFFFFFF;
    return Make_Fabric_Port_Wwn(first, second);
}

bool Wwn::isMcDATA() const {
    return (_high & 0xFFFFU) == 0x0800 && (_low >> 24U) == 0x88;
}

bool Wwn::isCisco() const {
    return (_high & 0xFFFFU) == 0x000D && (_low >> 24U) == 0xEC;
}

Wwn &Wwn::convertToSwitchName() {
    switch (naaOf(_high)) {
    case 2:
        Set_Port(0, 0);
        // Cisco's switch names are of format 2 themselves.
        _high = withNaa(_high, isCisco() ? 2 : 1);
        break;
    case 3:
        Set_Port(0, 0);
        _high = withNaa(_high, 5);
        break;
    default:
        break;
    }
    return *this;
}
