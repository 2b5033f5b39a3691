// A connection inside the process: SML keys, one by one and in batches.

#include <cstdlib>
#include <cstring>

#include "sim/api/Call.h"
#include "sim/api/LocalConnection.h"
#include "sim/core/Message.h"
#include "sim/levers/Garbling.h"

namespace sim {

namespace {

/// Longer than any key may be, and enough to tell so.
constexpr size_t kKeyLimit = sizeof SmlMessage::key;

std::vector<std::string> keysOf(const char *key) {
    return key ? std::vector<std::string>{std::string(key, strnlen(key, kKeyLimit))} : std::vector<std::string>{};
}

std::vector<std::string> keysOf(const SmlMessage *messages, int32_t count) {
    std::vector<std::string> keys;
    for (int32_t i = 0; messages && i < count; ++i)
        keys.push_back(keyOf(messages[i]));
    return keys;
}

std::vector<std::string> valuesOf(const SmlMessage *messages, int32_t count) {
    std::vector<std::string> values;
    for (int32_t i = 0; messages && i < count; ++i)
        values.push_back(valueToSet(messages[i]));
    return values;
}

/// What the levers say of one key; null when it is to be served.
const KeyFault *faultOf(const Verdict &verdict, size_t index) {
    return index < verdict.keys.size() && verdict.keys[index].applies ? &verdict.keys[index] : nullptr;
}

/// Whether the switch is to serve a key of which the levers say this.
bool isServed(const KeyFault *fault) {
    return !fault || fault->distorts();
}

/// The value that a key was served with, as the levers will have it.
std::string distorted(Endpoint &endpoint, const KeyFault &fault, const std::string &key, const std::string &value) {
    return fault.stale ? endpoint.device.valueBefore(key, value)
                       : garbled(value, *fault.garbling, sizeof SmlMessage::value - 1);
}

int32_t readKey(Endpoint &endpoint, zov_handle_t client, const Verdict &verdict, const std::string &key,
                std::string &value) {
    const KeyFault *fault = faultOf(verdict, 0);
    if (!isServed(fault)) {
        value = fault->value.value_or("");
        return fault->status.value_or(kOk);
    }
    std::chrono::seconds time{0};
    const int32_t status = key.size() < kKeyLimit ? endpoint.device.get(key, value, time) : int32_t{kBadKey};
    endpoint.take(time, client);
    if (!fault)
        return status;
    if (status == kOk)
        value = distorted(endpoint, *fault, key, value);
    return fault->status.value_or(status);
}

/// A copy that the client owns, always terminated.
char *allocated(const std::string &value) {
    auto *copy = static_cast<char *>(std::malloc(value.size() + 1));
    if (!copy)
        throw std::bad_alloc();
    std::memcpy(copy, value.c_str(), value.size() + 1);
    return copy;
}

void answer(const KeyFault &fault, SmlMessage &message) {
    message.status = fault.status.value_or(kOk);
    if (fault.value)
        putValue(message, *fault.value);
}

/// The messages as the switch is to serve them, those of the levers answered.
std::vector<Request> requestsOf(const Verdict &verdict, SmlMessage *messages, int32_t count) {
    std::vector<Request> requests;
    for (int32_t i = 0; i < count; ++i) {
        const KeyFault *fault = faultOf(verdict, static_cast<size_t>(i));
        if (!isServed(fault))
            answer(*fault, messages[i]);
        requests.push_back({&messages[i], !isServed(fault)});
    }
    return requests;
}

/// What the levers do to messages that were served.
void distort(Endpoint &endpoint, const Verdict &verdict, SmlMessage *messages, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        SmlMessage &message = messages[i];
        const KeyFault *fault = faultOf(verdict, static_cast<size_t>(i));
        if (!fault || !fault->distorts())
            continue;
        if (message.status == kOk)
            putValue(message, distorted(endpoint, *fault, keyOf(message), valueOf(message)));
        message.status = fault->status.value_or(message.status);
    }
}

/// A failed read leaves a value that nobody wrote, and a command has none: neither is looked at.
Exchange exchangeOf(const SmlMessage &message, bool isRead) {
    std::string value;
    if (!isRead)
        value = valueToSet(message);
    else if (message.status == kOk)
        value = valueOf(message);
    return {keyOf(message), value, message.status};
}

/// Of a batch that was not handled nothing but the keys is known.
void addExchanges(Record &record, const SmlMessage *messages, int32_t count, bool isRead, bool handled) {
    for (int32_t i = 0; messages && i < count; ++i)
        record.exchanges.push_back(handled ? exchangeOf(messages[i], isRead) : Exchange{keyOf(messages[i]), "", 0});
}

template <class ServeAll> int32_t batch(Call call, SmlMessage *messages, int32_t count, const ServeAll &serveAll) {
    bool handled = false;
    const bool isRead = call.reads;
    const auto serve = [&](Endpoint &endpoint, const Verdict &verdict) -> int32_t {
        if (!messages || count < 1)
            return kBadArgument;
        serveAll(endpoint, requestsOf(verdict, messages, count));
        distort(endpoint, verdict, messages, count);
        handled = true;
        return kOk;
    };
    return passOnConnection(std::move(call), serve, nothing,
                            [&](Record &record) { addExchanges(record, messages, count, isRead, handled); });
}

} // namespace

/// The size handed out is that of the block: the text and its terminator.
int32_t LocalConnection::get(const char *key, char **value, uint32_t *size) {
    return guarded<int32_t>([&] {
        const Call call{"zov_smlGet", _handle, keysOf(key), true};
        std::string text;
        const auto serve = [&](Endpoint &endpoint, const Verdict &verdict) -> int32_t {
            if (!key || !value || !size)
                return kBadArgument;
            const int32_t status = readKey(endpoint, _handle, verdict, call.keys[0], text);
            if (status != kOk)
                return status;
            *value = allocated(text);
            *size = static_cast<uint32_t>(text.size() + 1);
            return kOk;
        };
        return passOnConnection(call, serve, nothing, [&](Record &record) {
            for (const std::string &name : call.keys)
                record.exchanges.push_back({name, record.result == kOk ? text : "", record.result});
        });
    });
}

int32_t LocalConnection::getBatch(SmlMessage *messages, int32_t count) {
    return guarded<int32_t>([&] {
        return batch({"zov_smlGetBatch", _handle, keysOf(messages, count), true}, messages, count,
                     [this](Endpoint &endpoint, const std::vector<Request> &requests) {
                         std::chrono::seconds time{0};
                         endpoint.device.getAll(requests, time);
                         endpoint.take(time, _handle);
                     });
    });
}

/// The value is the client's to give, not to keep: like the hardware's own library, this one uses its
/// memory, and leaves an empty text in it.
int32_t LocalConnection::set(const char *key, char *value) {
    return guarded<int32_t>([&] {
        Call call{"zov_smlSet", _handle, keysOf(key)};
        const std::string text = value && key && !isCommandKey(call.keys[0]) ? value : "";
        if (key)
            call.values = {text};
        const auto serve = [&](Endpoint &endpoint, const Verdict &verdict) -> int32_t {
            if (!key || !value)
                return kBadArgument;
            value[0] = '\0';
            if (const KeyFault *fault = faultOf(verdict, 0)) {
                endpoint.device.takeNote(_handle, call.keys[0], fault->status.value_or(kOk));
                return fault->status.value_or(kOk);
            }
            return call.keys[0].size() < kKeyLimit ? endpoint.device.set(_handle, call.keys[0], text) : kBadKey;
        };
        return passOnConnection(call, serve, nothing, [&](Record &record) {
            for (const std::string &name : call.keys)
                record.exchanges.push_back({name, text, record.result});
        });
    });
}

int32_t LocalConnection::setBatch(SmlMessage *messages, int32_t count) {
    return guarded<int32_t>([&] {
        return batch({"zov_smlSetBatch", _handle, keysOf(messages, count), false, valuesOf(messages, count)}, messages,
                     count, [this](Endpoint &endpoint, const std::vector<Request> &requests) {
                         endpoint.device.setAll(_handle, requests);
                     });
    });
}

} // namespace sim
