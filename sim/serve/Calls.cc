#include "sim/serve/Calls.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "sim/Status.h"
#include "sim/core/Handle.h"
#include "sim/core/Message.h"
#include "sim/wire/Contents.h"
#include "sim/wire/Protocol.h"
#include "sim/zoning/Names.h"

namespace sim {

namespace {

const std::string &text(const Json &message, const char *name) {
    return message.at(name).get_ref<const std::string &>();
}

Json answerOf(int32_t result) {
    return {{"result", result}};
}

Json registerFor(Connection &connection, const Outlet &outlet, const Json &message) {
    std::vector<zov_eventreg_s> list;
    for (const Json &code : message.at("codes"))
        list.push_back({code.get<int32_t>(), kUntouched});
    if (list.size() > kMaxCodes)
        throw std::invalid_argument("too many codes");
    Json answer = answerOf(
        connection.registerFor(outlet.callback, outlet.context, list.data(), static_cast<int32_t>(list.size())));
    Json &results = answer["results"] = Json::array();
    for (const zov_eventreg_s &entry : list)
        results.push_back(entry.result);
    return answer;
}

Json get(Connection &connection, const Outlet &, const Json &message) {
    char *value = nullptr;
    uint32_t size = 0;
    Json answer = answerOf(connection.get(text(message, "key").c_str(), &value, &size));
    const std::unique_ptr<char, decltype(&std::free)> owner(value, std::free);
    if (value)
        answer["value"] = std::string(value, size - 1);
    return answer;
}

Json withAnswers(int32_t result, const Batch &batch) {
    Json answer = answerOf(result);
    if (result == kOk)
        answer["answers"] = answersToWire(batch);
    return answer;
}

const Json &keysOf(const Json &message) {
    const Json &keys = message.at("keys");
    if (keys.size() > kMaxKeys)
        throw std::invalid_argument("too many keys");
    return keys;
}

Json getBatch(Connection &connection, const Outlet &, const Json &message) {
    Batch batch(keysOf(message), nullptr);
    const int32_t result = connection.getBatch(batch.messages.data(), static_cast<int32_t>(batch.messages.size()));
    return withAnswers(result, batch);
}

Json setBatch(Connection &connection, const Outlet &, const Json &message) {
    Batch batch(keysOf(message), message.at("values"));
    const int32_t result = connection.setBatch(batch.messages.data(), static_cast<int32_t>(batch.messages.size()));
    return withAnswers(result, batch);
}

/// A command has no value; one is given all the same, to see whether the call used its memory.
Json set(Connection &connection, const Outlet &, const Json &message) {
    const std::string &key = text(message, "key");
    std::string value = isCommandKey(key) ? "x" : text(message, "value");
    Json answer = answerOf(connection.set(key.c_str(), value.data()));
    answer["isSpent"] = value.c_str()[0] == '\0';
    return answer;
}

Json zoningLimits(Connection &connection, const Outlet &, const Json &) {
    zov_fzs_zoninglimits_s limits = {};
    limits.zonesets = kUntouched;
    Json answer = answerOf(connection.zoningLimits(&limits));
    if (limits.zonesets != kUntouched)
        answer["limits"] = {limits.zonesets,       limits.zones,   limits.members,        limits.zonesPerZoneset,
                            limits.membersPerZone, limits.aliases, limits.membersPerAlias};
    return answer;
}

Json activeZonesetName(Connection &connection, const Outlet &, const Json &) {
    constexpr char kNobodysName = '\x9C';
    char name[kNameField] = {kNobodysName};
    Json answer = answerOf(connection.activeZonesetName(name));
    if (name[0] != kNobodysName)
        answer["name"] = std::string(name, strnlen(name, sizeof name));
    return answer;
}

Json zonesetList(Connection &connection, const Outlet &, const Json &) {
    int32_t count = 0;
    char *fields = nullptr;
    Json answer = answerOf(connection.zonesetList(&count, &fields));
    if (!fields)
        return answer;
    Json &names = answer["names"] = Json::array();
    for (int32_t i = 0; i < count; ++i)
        names.push_back(std::string(fields + kNameField * static_cast<size_t>(i)));
    return answer;
}

/// The zone set that a call hands out goes to the client and does not stay here.
template <class Fetch> Json fetch(const Fetch &fetchInto) {
    void *zoneset = nullptr;
    Json answer = answerOf(fetchInto(&zoneset));
    if (!zoneset)
        return answer;
    answer["zoneset"] = zonesetToWire(numberOf(zoneset));
    Objects::instance().destroyZoneSet(numberOf(zoneset));
    return answer;
}

Json activeZoneset(Connection &connection, const Outlet &, const Json &) {
    return fetch([&](void **zoneset) { return connection.activeZoneset(zoneset); });
}

Json zoneset(Connection &connection, const Outlet &, const Json &message) {
    return fetch([&](void **set) { return connection.zoneset(text(message, "name").c_str(), set); });
}

Json allZonesAndAliases(Connection &connection, const Outlet &, const Json &message) {
    return fetch([&](void **set) { return connection.allZonesAndAliases(text(message, "name").c_str(), set); });
}

struct Row {
    const char *call;
    Json (*answer)(Connection &connection, const Outlet &outlet, const Json &message);
};

constexpr Row kRows[] = {
    {"register", registerFor},
    {"get", get},
    {"getBatch", getBatch},
    {"set", set},
    {"setBatch", setBatch},
    {"zoningLimits", zoningLimits},
    {"activeZonesetName", activeZonesetName},
    {"activeZoneset", activeZoneset},
    {"zonesetList", zonesetList},
    {"zoneset", zoneset},
    {"allZonesAndAliases", allZonesAndAliases},
};

} // namespace

Json answerCall(Connection &connection, const Outlet &outlet, const Json &message) {
    const std::string &call = text(message, "call");
    const auto *row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row &r) { return call == r.call; });
    if (row == std::end(kRows))
        throw std::invalid_argument("no call '" + call + "'");
    return row->answer(connection, outlet, message);
}

bool mayHaveSaved(const Json &message) {
    const auto isAboutAConfiguration = [](const Json &key) {
        constexpr std::string_view kEnd = "Config";
        const auto &name = key.get_ref<const std::string &>();
        return isCommandKey(name) && name.size() > kEnd.size() && name.substr(name.size() - kEnd.size()) == kEnd;
    };
    const std::string &call = text(message, "call");
    if (call == "set")
        return isAboutAConfiguration(message.at("key"));
    const Json none = Json::array();
    const Json &keys = call == "setBatch" ? message.at("keys") : none;
    return std::any_of(keys.begin(), keys.end(), isAboutAConfiguration);
}

} // namespace sim
