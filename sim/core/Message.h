/*
 * Reading and writing the messages of a batch without trusting their contents. Pure functions.
 */
#ifndef SIM_CORE_MESSAGE_H
#define SIM_CORE_MESSAGE_H

#include <string>
#include <string_view>

#include "platform/zovlib.h"

namespace sim {

/// A key without a terminator is no key.
bool hasTerminatedKey(const SmlMessage &message);
/// The key as far as it goes, at most 256 characters.
std::string keyOf(const SmlMessage &message);
/// The value as far as it goes, at most 256 characters.
std::string valueOf(const SmlMessage &message);
/// The value that a message sets. A command has none: its value field holds what happens to be there, and is
/// not looked at.
std::string valueToSet(const SmlMessage &message);
/// Writes the first 256 bytes of a value; a terminator follows where there is room for it.
void putValue(SmlMessage &message, std::string_view value);

/// Whether a key is a command's, by its form alone.
bool isCommandKey(std::string_view key);

} // namespace sim

#endif // SIM_CORE_MESSAGE_H
