/*
 * Reading the switch library's zoning objects. Internal.
 *
 * A switch library may crash on a null handle and may leave a text without its end; the functions here pass on no null,
 * and end every text. An object that is not there counts as an empty one.
 */
#ifndef ZONING_OBJECTS_H
#define ZONING_OBJECTS_H

#include <array>
#include <string>

#include "platform/zovlib.h"

namespace zoning {

/// Room for a name, and more: libraries have written beyond what they say.
using Buffer = std::array<char, 256>;

/// A name as some call of the switch library gives it; false when there is none.
template <class Call> bool readName(Call call, void *object, Buffer &name) {
    name = {};
    const bool good = object != nullptr && call(object, name.data()) == 0;
    name.back() = '\0';
    return good;
}

/// How many parts an object has, by some call.
template <class Call> int countOf(Call call, void *object) {
    return object != nullptr ? call(object) : 0;
}

/// The part of an object with this name, by some call.
template <class Call> void *find(Call call, void *object, const char *name) {
    return object != nullptr && name != nullptr ? call(object, name) : nullptr;
}

} // namespace zoning

#endif // ZONING_OBJECTS_H
