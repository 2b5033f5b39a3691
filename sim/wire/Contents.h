/*
 * What calls are about, as messages carry it. What comes in was written by another process: a reader throws a
 * Json::exception or std::invalid_argument for what it cannot use.
 *
 * Pure functions, but for the zone sets, which are made and read as objects of this process. Thread-safe.
 */
#ifndef SIM_WIRE_CONTENTS_H
#define SIM_WIRE_CONTENTS_H

#include <string>
#include <vector>

#include "platform/zovlib.h"
#include "sim/wire/Frame.h"
#include "sim/zoning/Objects.h"

namespace sim {

/// Stands where a call has left a number as it was.
constexpr int32_t kUntouched = INT32_MIN + 4711;

// ---- batches -----------------------------------------------------------------------------------------

/// The keys of messages, and in a batch that sets, their values; a command has none.
Json keysToWire(const SmlMessage *messages, int32_t count);
Json valuesToWire(const SmlMessage *messages, int32_t count);

/// The batch at the switch's end: messages as the client's, and how they were before the call.
struct Batch {
    /// `values` may be null: then values are what no switch writes.
    Batch(const Json &keys, const Json &values);

    std::vector<SmlMessage> messages;
    std::vector<SmlMessage> before;
};

/// What a call changed in the messages.
Json answersToWire(const Batch &batch);
/// Makes the same changes in the client's own. Throws unless there is an answer for each.
void takeAnswers(const Json &answers, SmlMessage *messages, int32_t count);

// ---- notifications -----------------------------------------------------------------------------------

Json eventToWire(const zov_event_s &event, uint64_t sequence);
zov_event_s eventFromWire(const Json &message);

// ---- zone sets ---------------------------------------------------------------------------------------

/// Everything in a zone set.
Json zonesetToWire(ObjectNumber zoneset);
/// A zone set of this process with the same in it.
ObjectNumber zonesetFromWire(const Json &zoneset);

} // namespace sim

#endif // SIM_WIRE_CONTENTS_H
