#include "sim/remote/RemoteConnection.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "sim/Status.h"
#include "sim/api/Connections.h"
#include "sim/core/Handle.h"
#include "sim/core/Message.h"
#include "sim/remote/connect.h"
#include "sim/wire/Contents.h"
#include "sim/wire/Protocol.h"
#include "sim/zoning/NameLists.h"
#include "sim/zoning/Names.h"

namespace sim {

namespace {

/// No key and no name is longer; a longer one stays one that is too long.
constexpr size_t kLongestText = sizeof SmlMessage::key;

/// More than any client needs is an odd argument here: the server would take the message for an attack.
bool isUpTo(size_t most, int32_t count) {
    return count >= 1 && static_cast<size_t>(count) <= most;
}

std::string shortened(const char *text) {
    return {text, strnlen(text, kLongestText)};
}

/// A copy that the client owns, always terminated.
char *allocated(const std::string &value) {
    auto *copy = static_cast<char *>(std::malloc(value.size() + 1));
    if (!copy)
        throw std::bad_alloc();
    std::memcpy(copy, value.c_str(), value.size() + 1);
    return copy;
}

const std::string &text(const Json &answer, const char *name) {
    return answer.at(name).get_ref<const std::string &>();
}

zov_fzs_zoninglimits_s limitsFrom(const Json &limits) {
    const auto at = [&](size_t index) { return limits.at(index).get<int32_t>(); };
    return {at(0), at(1), at(2), at(3), at(4), at(5), at(6)};
}

} // namespace

/// The result of a call; `take` takes from the answer to one that was served what it hands out.
template <class Take> int32_t RemoteConnection::ask(const Json &message, const Take &take) {
    const std::optional<Json> answer = _switchboard.ask(message);
    if (!answer)
        return kNoConnection;
    const auto result = answer->at("result").get<int32_t>();
    take(*answer, result);
    return result;
}

/// The registration is in force before the answer comes: the first notifications may come before it, too.
int32_t RemoteConnection::registerFor(zov_eventcallback_t callback, void *context, zov_eventreg_s *list,
                                      int32_t count) {
    if (!callback || !list || !isUpTo(kMaxCodes, count))
        return kBadArgument;
    Registration registration{callback, context, {}};
    for (int32_t i = 0; i < count; ++i)
        registration.codes.push_back(list[i].code);
    const Json message = {{"call", "register"}, {"codes", registration.codes}};
    Registration former = _switchboard.replaceRegistration(std::move(registration));
    int32_t result = kNoConnection;
    try {
        result = ask(message, [&](const Json &answer, int32_t status) {
            for (int32_t i = 0; status == kOk && i < count; ++i)
                if (const auto entry = answer.at("results").at(static_cast<size_t>(i)).get<int32_t>();
                    entry != kUntouched)
                    list[i].result = entry;
        });
    } catch (...) {
        _switchboard.replaceRegistration(std::move(former));
        throw;
    }
    if (result != kOk)
        _switchboard.replaceRegistration(std::move(former));
    return result;
}

int32_t RemoteConnection::get(const char *key, char **value, uint32_t *size) {
    if (!key || !value || !size)
        return kBadArgument;
    return ask({{"call", "get"}, {"key", shortened(key)}}, [&](const Json &answer, int32_t) {
        if (!answer.contains("value"))
            return;
        *value = allocated(text(answer, "value"));
        *size = static_cast<uint32_t>(text(answer, "value").size() + 1);
    });
}

int32_t RemoteConnection::getBatch(SmlMessage *messages, int32_t count) {
    if (!messages || !isUpTo(kMaxKeys, count))
        return kBadArgument;
    return ask({{"call", "getBatch"}, {"keys", keysToWire(messages, count)}}, [&](const Json &answer, int32_t) {
        if (answer.contains("answers"))
            takeAnswers(answer.at("answers"), messages, count);
    });
}

int32_t RemoteConnection::set(const char *key, char *value) {
    if (!key || !value)
        return kBadArgument;
    const std::string name = shortened(key);
    const std::string given = isCommandKey(name) ? "" : value;
    return ask({{"call", "set"}, {"key", name}, {"value", given}}, [&](const Json &answer, int32_t) {
        if (answer.at("isSpent").get<bool>())
            value[0] = '\0';
    });
}

int32_t RemoteConnection::setBatch(SmlMessage *messages, int32_t count) {
    if (!messages || !isUpTo(kMaxKeys, count))
        return kBadArgument;
    const Json message = {
        {"call", "setBatch"}, {"keys", keysToWire(messages, count)}, {"values", valuesToWire(messages, count)}};
    return ask(message, [&](const Json &answer, int32_t) {
        if (answer.contains("answers"))
            takeAnswers(answer.at("answers"), messages, count);
    });
}

int32_t RemoteConnection::zoningLimits(zov_fzs_zoninglimits_s *limits) {
    if (!limits)
        return kBadArgument;
    return ask({{"call", "zoningLimits"}}, [&](const Json &answer, int32_t) {
        if (answer.contains("limits"))
            *limits = limitsFrom(answer.at("limits"));
    });
}

int32_t RemoteConnection::activeZonesetName(char *name) {
    if (!name)
        return kBadArgument;
    return ask({{"call", "activeZonesetName"}}, [&](const Json &answer, int32_t) {
        if (answer.contains("name"))
            putName(name, text(answer, "name").substr(0, kLongestName));
    });
}

int32_t RemoteConnection::zonesetList(int32_t *count, char **names) {
    if (!count || !names)
        return kBadArgument;
    return ask({{"call", "zonesetList"}}, [&](const Json &answer, int32_t) {
        if (!answer.contains("names"))
            return;
        const auto list = answer.at("names").get<std::vector<std::string>>();
        *names = NameLists::instance().handOut(list);
        *count = static_cast<int32_t>(list.size());
    });
}

/// A call that was served without a zone set has handed out none.
int32_t RemoteConnection::fetch(const Json &message, void **zoneset) {
    return ask(message, [&](const Json &answer, int32_t result) {
        if (result == kOk)
            *zoneset = answer.contains("zoneset") ? pointerOf(zonesetFromWire(answer.at("zoneset"))) : nullptr;
    });
}

int32_t RemoteConnection::activeZoneset(void **zoneset) {
    return zoneset ? fetch({{"call", "activeZoneset"}}, zoneset) : int32_t{kBadArgument};
}

int32_t RemoteConnection::zoneset(const char *name, void **zoneset) {
    if (!name || !zoneset)
        return kBadArgument;
    return fetch({{"call", "zoneset"}, {"name", shortened(name)}}, zoneset);
}

int32_t RemoteConnection::allZonesAndAliases(const char *newName, void **zoneset) {
    if (!newName || !zoneset)
        return kBadArgument;
    return fetch({{"call", "allZonesAndAliases"}, {"name", shortened(newName)}}, zoneset);
}

/// A connection lives as long as the process: nothing ends it. One that was not made is forgotten.
int32_t connectRemotely(const char *socketPath, const char *host, const char *client, const char *text,
                        zov_handle_t *handle) {
    if (!host || !client || !text || !handle)
        return kBadArgument;
    auto switchboard = std::make_unique<Switchboard>(socketPath, Greeting{shortened(host), shortened(client), text});
    const std::optional<Json> answer = switchboard->connect();
    if (!answer)
        return kNoSuchHost;
    const auto result = answer->at("result").get<int32_t>();
    const zov_handle_t number = answer->value("handle", zov_handle_t{0});
    if (result != kOk || number == 0) {
        if (result == kOk) // it hands out nothing
            *handle = 0;
        return result;
    }
    Switchboard &kept = *switchboard.release();
    const zov_handle_t own = Connections::instance().adopt(number, std::make_shared<RemoteConnection>(kept));
    kept.start(own);
    *handle = own;
    return kOk;
}

} // namespace sim
