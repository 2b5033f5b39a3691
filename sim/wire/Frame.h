/*
 * Messages between a served switch and its clients: a length of four bytes, the most significant first, and that many
 * bytes of CBOR, which are a map. Neither side trusts what the other sends.
 *
 * Pure functions. Thread-safe.
 */
#ifndef SIM_WIRE_FRAME_H
#define SIM_WIRE_FRAME_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

namespace sim {

using Bytes = std::vector<uint8_t>;
using Json = nlohmann::json;

/// Of one message. The largest of a real client, a commit of a full zoning database, is a fifth of this.
constexpr size_t kMaxMessage = size_t{16} << 20;
/// Of a client that has not said who it is.
constexpr size_t kMaxGreeting = size_t{64} << 10;

constexpr size_t kLengthBytes = 4;
using Length = std::array<uint8_t, kLengthBytes>;

size_t sizeFrom(const Length &length);

/// A message with its length before it. None when it is larger than a message may be.
std::optional<Bytes> frameOf(const Json &message);
/// The map that the bytes of a message are. None for what is no CBOR, or not a map, or more than a receiver can bear.
std::optional<Json> messageFrom(const Bytes &bytes);

/// Whether bytes are one item of CBOR in the subset that messages need: integers, texts, byte strings, arrays and maps of
/// definite lengths, true, false and null; not nested deeply, and of a bounded number of items. A reader needs no more
/// memory and stack than such bytes call for.
bool isBearable(const uint8_t *bytes, size_t size);

} // namespace sim

#endif // SIM_WIRE_FRAME_H
