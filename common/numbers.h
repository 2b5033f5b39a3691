/*
 * Reading numbers that the switch sends as text.
 *
 * The switch speaks of 32-bit numbers, so these read with 32-bit arithmetic whatever the host's `long` is: results do
 * not depend on the machine. Each takes leading blanks and a sign, stops at the first other character, and gives 0
 * for text that holds no number. They touch no shared state; errno stays as it was.
 */
#ifndef COMMON_NUMBERS_H
#define COMMON_NUMBERS_H

#include <cstdint>

namespace numbers {

/// Signed decimal; a number beyond the 32-bit range gives the nearer end of it.
int32_t decimal(const char *text);

/// Unsigned number in base 10 or 16 (0: a leading "0x" means 16, a leading "0" means 8, else 10). One beyond the range
/// gives all ones; a negative number counts down from 2^32, so "-1" is all ones too.
uint32_t unsignedNumber(const char *text, int base);

/// The 16-bit fields of the cache hold the low half of what was read.
inline unsigned short decimal16(const char *text) {
    return static_cast<unsigned short>(decimal(text));
}

} // namespace numbers

#endif // COMMON_NUMBERS_H
