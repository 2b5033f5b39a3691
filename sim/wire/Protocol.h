/*
 * What a served switch and its clients have agreed on. Messages are maps (sim/wire/Frame.h):
 *
 *     client   {call, number, ...}      "hello" first, then any call; "do" and "dump" at any time
 *     switch   {number, result, ...}    the answer to the call of this number
 *     switch   {sequence, code, ...}    a notification; the sequence counts from 1
 *     client   {taken}                  its callback has returned
 *
 * Constants.
 */
#ifndef SIM_WIRE_PROTOCOL_H
#define SIM_WIRE_PROTOCOL_H

#include <cstddef>
#include <cstdint>

namespace sim {

/// Raised with every change that the other side would not understand.
constexpr int32_t kProtocolVersion = 1;

/// A client's list of notification codes has at most so many; there are 256.
constexpr size_t kMaxCodes = 4096;

/// A batch takes a thousand bytes for every key, however few they have. The largest of a real client, a commit of a full
/// zoning database, has half as many keys.
constexpr size_t kMaxKeys = 100000;

} // namespace sim

#endif // SIM_WIRE_PROTOCOL_H
