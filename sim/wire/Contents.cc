#include "sim/wire/Contents.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "sim/core/Event.h"
#include "sim/core/Message.h"
#include "sim/zoning/Fetch.h"

namespace sim {

namespace {

/// A value that no switch writes: a call that leaves it has not touched it.
constexpr char kUntouchedByte = '\x9C';

/// As long as a field has room for it; the rest is zero.
template <size_t size> void put(char (&field)[size], const std::string &text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(text.size(), size));
}

/// The bytes of a value up to the last one that is another than before.
std::string changed(const SmlMessage &message, const SmlMessage &before) {
    size_t size = sizeof message.value;
    while (size > 0 && message.value[size - 1] == before.value[size - 1])
        --size;
    return {message.value, size};
}

// ---- zone sets ---------------------------------------------------------------------------------------

/// Byte by byte: domains and ports are words in the order of the host, which need not be the other side's.
Json memberToWire(ObjectNumber number) {
    MemberId member;
    Objects::instance().memberId(number, member);
    const bool isWords = member.type == ZOV_ZMT_DOMAINPORT;
    Json id = Json::array();
    if (isWords)
        id = {member.id.u.word[0], member.id.u.word[1]};
    else
        id = std::string(std::begin(member.id.u.byte), std::end(member.id.u.byte));
    return {static_cast<int32_t>(member.type), id};
}

MemberId memberFromWire(const Json &wire) {
    MemberId member;
    member.type = static_cast<zov_fzs_zonemember_type_e>(wire.at(0).get<int32_t>());
    const Json &id = wire.at(1);
    if (id.is_array()) {
        member.id.u.word[0] = id.at(0).get<uint32_t>();
        member.id.u.word[1] = id.at(1).get<uint32_t>();
    } else {
        const auto &bytes = id.get_ref<const std::string &>();
        std::memcpy(member.id.u.byte, bytes.data(), std::min(bytes.size(), sizeof member.id.u.byte));
    }
    const std::optional<MemberId> usable = normalized(member.type, member.id);
    if (!usable)
        throw std::invalid_argument("not a member");
    return *usable;
}

using Count = size_t (Objects::*)(ObjectNumber) const;
using At = ObjectNumber (Objects::*)(ObjectNumber, int32_t) const;

Json membersToWire(ObjectNumber group, Count count, At at) {
    const Objects &objects = Objects::instance();
    Json members = Json::array();
    for (size_t i = 0; i < (objects.*count)(group); ++i)
        members.push_back(memberToWire((objects.*at)(group, static_cast<int32_t>(i))));
    return members;
}

Catalog<MemberId> membersFromWire(const Json &wire) {
    Catalog<MemberId> members;
    for (const Json &member : wire)
        if (!members.add(memberFromWire(member)))
            throw std::invalid_argument("a member twice");
    return members;
}

Json zoneToWire(ObjectNumber zone) {
    const Objects &objects = Objects::instance();
    std::string name;
    zov_fzs_zone_type_e type = ZOV_ZT_SOFT;
    objects.zoneName(zone, name);
    objects.zoneType(zone, type);
    return {name, static_cast<int32_t>(type), membersToWire(zone, &Objects::zoneMemberCount, &Objects::zoneMemberAt)};
}

Json aliasToWire(ObjectNumber alias) {
    std::string name;
    Objects::instance().aliasName(alias, name);
    return {name, membersToWire(alias, &Objects::aliasMemberCount, &Objects::aliasMemberAt)};
}

} // namespace

Json keysToWire(const SmlMessage *messages, int32_t count) {
    Json keys = Json::array();
    for (int32_t i = 0; i < count; ++i)
        keys.push_back(keyOf(messages[i]));
    return keys;
}

Json valuesToWire(const SmlMessage *messages, int32_t count) {
    Json values = Json::array();
    for (int32_t i = 0; i < count; ++i)
        values.push_back(valueToSet(messages[i]));
    return values;
}

Batch::Batch(const Json &keys, const Json &values) {
    messages.resize(keys.size());
    if (!values.is_null() && values.size() != keys.size())
        throw std::invalid_argument("as many values as keys");
    for (size_t i = 0; i < messages.size(); ++i) {
        SmlMessage &message = messages[i];
        put(message.key, keys.at(i).get_ref<const std::string &>());
        if (values.is_null() || isCommandKey(keyOf(message)))
            std::memset(message.value, kUntouchedByte, sizeof message.value);
        else
            put(message.value, values.at(i).get_ref<const std::string &>());
        message.status = kUntouched;
    }
    before = messages;
}

/// An answer is a status, and the first bytes of a value; null for what was left as it was.
Json answersToWire(const Batch &batch) {
    Json answers = Json::array();
    for (size_t i = 0; i < batch.messages.size(); ++i) {
        const SmlMessage &message = batch.messages[i];
        Json status;
        Json value;
        if (message.status != kUntouched)
            status = message.status;
        if (std::string bytes = changed(message, batch.before[i]); !bytes.empty())
            value = std::move(bytes);
        answers.push_back({status, value});
    }
    return answers;
}

void takeAnswers(const Json &answers, SmlMessage *messages, int32_t count) {
    if (answers.size() != static_cast<size_t>(count))
        throw std::invalid_argument("as many answers as messages");
    for (int32_t i = 0; i < count; ++i) {
        const Json &answer = answers.at(static_cast<size_t>(i));
        if (!answer.at(0).is_null())
            messages[i].status = answer.at(0).get<int32_t>();
        if (answer.at(1).is_null())
            continue;
        const auto &bytes = answer.at(1).get_ref<const std::string &>();
        std::memcpy(messages[i].value, bytes.data(), std::min(bytes.size(), sizeof messages[i].value));
    }
}

Json eventToWire(const zov_event_s &event, uint64_t sequence) {
    return {{"sequence", sequence},
            {"code", event.code},
            {"source", {event.source.number[0], event.source.number[1], event.source.number[2]}},
            {"text", textOf(event)},
            {"rest", event.rest}};
}

zov_event_s eventFromWire(const Json &message) {
    zov_event_s event = {};
    event.code = message.at("code").get<int32_t>();
    for (size_t i = 0; i < std::size(event.source.number); ++i)
        event.source.number[i] = message.at("source").at(i).get<int32_t>();
    put(event.text, message.at("text").get_ref<const std::string &>());
    event.rest = message.at("rest").get<int32_t>();
    return event;
}

Json zonesetToWire(ObjectNumber zoneset) {
    const Objects &objects = Objects::instance();
    std::string name;
    objects.zoneSetName(zoneset, name);
    Json zones = Json::array();
    for (size_t i = 0; i < objects.zoneCount(zoneset); ++i)
        zones.push_back(zoneToWire(objects.zoneAt(zoneset, static_cast<int32_t>(i))));
    Json aliases = Json::array();
    for (size_t i = 0; i < objects.aliasCount(zoneset); ++i)
        aliases.push_back(aliasToWire(objects.aliasAt(zoneset, static_cast<int32_t>(i))));
    return {{"name", name}, {"zones", zones}, {"aliases", aliases}};
}

ObjectNumber zonesetFromWire(const Json &zoneset) {
    std::vector<StoredZone> zones;
    for (const Json &wire : zoneset.at("zones")) {
        StoredZone zone;
        zone.name = wire.at(0).get<std::string>();
        zone.type = static_cast<zov_fzs_zone_type_e>(wire.at(1).get<int32_t>());
        zone.members = membersFromWire(wire.at(2));
        zones.push_back(std::move(zone));
    }
    std::vector<StoredAlias> aliases;
    for (const Json &wire : zoneset.at("aliases")) {
        StoredAlias alias;
        alias.name = wire.at(0).get<std::string>();
        alias.members = membersFromWire(wire.at(1));
        aliases.push_back(std::move(alias));
    }
    Contents contents;
    for (const StoredZone &zone : zones)
        contents.zones.push_back(&zone);
    for (const StoredAlias &alias : aliases)
        contents.aliases.push_back(&alias);
    return makeZoneSet(zoneset.at("name").get<std::string>(), contents);
}

} // namespace sim
