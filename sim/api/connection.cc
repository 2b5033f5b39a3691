// A connection inside the process: how it is made, and registration for notifications.

#include <cstring>

#include "sim/api/Call.h"
#include "sim/api/LocalConnection.h"

namespace sim {

namespace {

bool isEventCode(int32_t code) {
    return code >= 0 && code < kEventCodes;
}

/// The codes to register for; each entry of the list gets its result.
EventCodes takeCodes(zov_eventreg_s *list, int32_t count, const Verdict &verdict) {
    EventCodes codes;
    for (int32_t i = 0; i < count; ++i) {
        const auto index = static_cast<size_t>(i);
        zov_eventreg_s &entry = list[index];
        const bool faulty = index < verdict.keys.size() && verdict.keys[index].applies;
        entry.result = faulty                    ? verdict.keys[index].status.value_or(kOk)
                       : isEventCode(entry.code) ? kOk
                                                 : kBadEventCode;
        if (entry.result == kOk && !faulty)
            codes.set(static_cast<size_t>(entry.code));
    }
    return codes;
}

/// "32, 57 status 22, 28"; statuses only of a list that was handled.
std::string shownCodes(const zov_eventreg_s *list, int32_t count, bool handled) {
    std::string text;
    for (int32_t i = 0; list && i < count; ++i) {
        text += (i == 0 ? "" : ", ") + std::to_string(list[i].code);
        if (handled && list[i].result != 0)
            text += " status " + std::to_string(list[i].result);
    }
    return text;
}

} // namespace

int32_t connectTo(const std::shared_ptr<Endpoint> &endpoint, const char *host, const char *client, const char *text,
                  zov_handle_t *handle, zov_handle_t caller) {
    return guarded<int32_t>([&] {
        Call call{"zov_IPConnect"};
        call.caller = caller;
        call.arguments = shownAll(host, client, text);
        zov_handle_t connection = 0;
        const auto connect = [&](const Verdict &) -> int32_t {
            if (!host || !client || !text || !handle)
                return kBadArgument;
            if (std::strcmp(host, "localhost") != 0)
                return kNoSuchHost;
            connection = Registry::instance().connect(endpoint);
            if (connection == 0)
                return kNoSuchHost;
            *handle = connection;
            if (endpoint->script)
                endpoint->script->connected(connection);
            return kOk;
        };
        const auto handOutNothing = [&] {
            if (handle)
                *handle = 0;
        };
        return pass<int32_t>(*endpoint, call, connect, handOutNothing, [&](Record &record) {
            record.client = connection;
            record.arguments = call.arguments;
        });
    });
}

int32_t LocalConnection::registerFor(zov_eventcallback_t callback, void *context, zov_eventreg_s *list, int32_t count) {
    return guarded<int32_t>([&] {
        Call call{"zov_enRegisterForEventList", _handle};
        for (int32_t i = 0; list && i < count; ++i)
            call.keys.push_back(std::to_string(list[i].code));
        bool handled = false;
        const auto serve = [&](Endpoint &endpoint, const Verdict &verdict) -> int32_t {
            if (!callback || !list || count < 1)
                return kBadArgument;
            endpoint.notifier.registerClient(_handle, callback, context, takeCodes(list, count, verdict));
            handled = true;
            return kOk;
        };
        return passOnConnection(std::move(call), serve, nothing,
                                [&](Record &record) { record.arguments = shownCodes(list, count, handled); });
    });
}

} // namespace sim
