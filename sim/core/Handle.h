/*
 * Numbers as opaque pointers. What clients hold as a pointer to something of the switch library is a
 * number in disguise: it is never followed, and none is given out twice, so that a client which uses one
 * after its end is always found out.
 */
#ifndef SIM_CORE_HANDLE_H
#define SIM_CORE_HANDLE_H

#include <cstdint>

namespace sim {

inline void *pointerOf(uint32_t number) {
    return reinterpret_cast<void *>(static_cast<uintptr_t>(number)); // NOLINT(performance-no-int-to-ptr)
}

/// 0, which is nothing's number, for a pointer that cannot be one of ours.
inline uint32_t numberOf(const void *pointer) {
    const auto number = reinterpret_cast<uintptr_t>(pointer);
    return number <= UINT32_MAX ? static_cast<uint32_t>(number) : 0;
}

} // namespace sim

#endif // SIM_CORE_HANDLE_H
