#include "common/numbers.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace numbers {
namespace {

/// Keeps errno as the caller had it: the C library reports a number out of range through it.
class ErrnoGuard {
public:
    ErrnoGuard() : _saved(errno) { errno = 0; }
    ~ErrnoGuard() { errno = _saved; }
    ErrnoGuard(const ErrnoGuard &) = delete;
    ErrnoGuard &operator=(const ErrnoGuard &) = delete;

private:
    int _saved;
};

bool isNegative(const char *text) {
    while (std::isspace(static_cast<unsigned char>(*text)) != 0)
        ++text;
    return *text == '-';
}

} // namespace

int32_t decimal(const char *text) {
    using Range = std::numeric_limits<int32_t>;
    const ErrnoGuard guard;
    const long long wide = std::strtoll(text, nullptr, 10);
    if (wide > Range::max())
        return Range::max();
    if (wide < Range::min())
        return Range::min();
    return static_cast<int32_t>(wide);
}

uint32_t unsignedNumber(const char *text, int base) {
    constexpr uint32_t allOnes = std::numeric_limits<uint32_t>::max();
    const ErrnoGuard guard;
    const unsigned long long wide = std::strtoull(text, nullptr, base);
    if (errno == ERANGE)
        return allOnes;
    const bool negative = isNegative(text);
    const unsigned long long magnitude = negative ? 0 - wide : wide;
    if (magnitude > allOnes)
        return allOnes;
    const auto number = static_cast<uint32_t>(magnitude);
    return negative ? 0 - number : number;
}

} // namespace numbers
