#include "sim/wire/Frame.h"

namespace sim {

namespace {

constexpr size_t kMaxDepth = 8;
constexpr size_t kMaxItems = 500000;

/// The first byte of an item, and the argument that follows it.
struct Head {
    unsigned major = 0;
    unsigned information = 0;
    uint64_t argument = 0;
};

/// Reads bytes from the first to the last, and never beyond.
class Reader {
public:
    Reader(const uint8_t *bytes, size_t size) : _next(bytes), _left(size) {}

    size_t left() const { return _left; }
    bool skip(uint64_t count) {
        if (count > _left)
            return false;
        _next += count;
        _left -= static_cast<size_t>(count);
        return true;
    }
    bool take(uint8_t &byte) {
        if (_left == 0)
            return false;
        byte = *_next;
        return skip(1);
    }
    bool take(Head &head) {
        uint8_t first = 0;
        if (!take(first))
            return false;
        const unsigned code = first;
        head = {code >> 5U, code & 31U, code & 31U};
        if (head.information < 24)
            return true;
        if (head.information > 27) // reserved, or of indefinite length
            return false;
        head.argument = 0;
        for (unsigned bytes = 1U << (head.information - 24); bytes > 0; --bytes) {
            uint8_t byte = 0;
            if (!take(byte))
                return false;
            head.argument = head.argument << 8U | byte;
        }
        return true;
    }

private:
    const uint8_t *_next;
    size_t _left;
};

enum Major : unsigned { positive, negative, bytes, text, array, map, tag, simple };

/// False for an item that messages have no need of. `children` are the items that belong to it.
bool enter(const Head &head, Reader &reader, uint64_t &children) {
    constexpr unsigned kFalse = 20;
    constexpr unsigned kNull = 22;
    children = 0;
    switch (head.major) {
    case positive:
    case negative:
        return true;
    case bytes:
    case text:
        return reader.skip(head.argument);
    case array:
    case map: // every item takes a byte at least
        if (head.argument > reader.left())
            return false;
        children = head.major == map ? 2 * head.argument : head.argument;
        return children <= reader.left();
    case simple:
        return head.information >= kFalse && head.information <= kNull;
    default:
        return false;
    }
}

} // namespace

size_t sizeFrom(const Length &length) {
    size_t size = 0;
    for (const uint8_t byte : length)
        size = size << 8U | byte;
    return size;
}

bool isBearable(const uint8_t *bytes, size_t size) {
    Reader reader(bytes, size);
    std::array<uint64_t, kMaxDepth> open = {}; // items that are still to come at every level
    size_t depth = 0;
    size_t items = 0;
    do {
        Head head;
        uint64_t children = 0;
        if (++items > kMaxItems || !reader.take(head) || !enter(head, reader, children))
            return false;
        if (children > 0) {
            if (depth == open.size())
                return false;
            open[depth++] = children;
            continue;
        }
        while (depth > 0 && --open[depth - 1] == 0)
            --depth;
    } while (depth > 0);
    return reader.left() == 0;
}

std::optional<Bytes> frameOf(const Json &message) {
    Bytes frame(kLengthBytes);
    Json::to_cbor(message, frame);
    const size_t size = frame.size() - kLengthBytes;
    if (size > kMaxMessage)
        return std::nullopt;
    for (size_t i = 0; i < kLengthBytes; ++i)
        frame[i] = static_cast<uint8_t>(size >> 8 * (kLengthBytes - 1 - i));
    return frame;
}

std::optional<Json> messageFrom(const Bytes &bytes) {
    if (!isBearable(bytes.data(), bytes.size()))
        return std::nullopt;
    Json message = Json::from_cbor(bytes, true, false);
    if (!message.is_object())
        return std::nullopt;
    return message;
}

} // namespace sim
