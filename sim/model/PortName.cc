#include "sim/model/PortName.h"

#include <cinttypes>
#include <cstdio>

namespace sim {

std::string portName(const std::string &switchName, unsigned port) {
    constexpr uint64_t oneBasedCompany = 0x000DEC;
    const uint64_t name = std::stoull(switchName, nullptr, 16);
    const uint64_t format = name >> 60;
    if (format != 1 && format != 2)
        return switchName;
    const uint64_t company = name >> 24 & 0xFFFFFF;
    const uint64_t number = company == oneBasedCompany ? port + 1 : port;
    char text[17];
    std::snprintf(text, sizeof text, "%016" PRIX64, (name & 0x0000FFFFFFFFFFFF) | number << 48 | uint64_t{2} << 60);
    return text;
}

std::string upperCase(std::string name) {
    for (char &c : name)
        if (c >= 'a' && c <= 'f')
            c = static_cast<char>(c - 'a' + 'A');
    return name;
}

} // namespace sim
