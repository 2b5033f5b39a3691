#include "datacache/SmlEntries.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "swlib/MERO_Zov_Lib.h"

namespace {

std::array<SmlMessage, SmlEntries::kCapacity> shared_entries;

} // namespace

int SmlEntries::add(const char *format, ...) {
    if (room() == 0)
        return _count - 1;
    SmlMessage &entry = shared_entries[static_cast<size_t>(_count)];
    va_list args;
    va_start(args, format);
    vsnprintf(entry.key, sizeof(entry.key), format, args);
    va_end(args);
    return _count++;
}

bool SmlEntries::get(zov_handle_t handle) {
    return read(handle) && !hasErrors();
}

bool SmlEntries::read(zov_handle_t handle) {
    const int32_t result = zov_smlGetBatch(handle, shared_entries.data(), _count);
    // The switch library may leave a text without its end.
    for (int row = 0; row < _count; ++row)
        shared_entries[static_cast<size_t>(row)].value[sizeof(SmlMessage::value) - 1] = '\0';
    return result == 0;
}

bool SmlEntries::hasErrors() const {
    return isErrors(shared_entries.data(), _count) != 0;
}

SmlEntry SmlEntries::operator[](int row) const {
    return SmlEntry(shared_entries[static_cast<size_t>(row)]);
}
