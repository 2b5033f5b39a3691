/*
 * What the control interface hands out is null when the library is not the one this program was made with.
 */
#ifndef TOOLS_ZOVSIM_VERSION_H
#define TOOLS_ZOVSIM_VERSION_H

#include <memory>

#include "tools/dcache/failure.h"

namespace zovsim {

/// The same. Throws dcache::Failure for null.
template <class Made> std::unique_ptr<Made> ofThisVersion(std::unique_ptr<Made> made) {
    if (made == nullptr)
        throw dcache::Failure("libzovlib.so is of another version than this program");
    return made;
}

} // namespace zovsim

#endif // TOOLS_ZOVSIM_VERSION_H
