#include "sim/serve/MemoryText.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace sim {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;

// ---- texts: a switch's are bytes, JSON's are characters. Each byte is the character of its number. ----------------

Json shown(const std::string &bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80)
            text.append(1, c);
        else
            text.append(1, static_cast<char>(0xC0 | byte >> 6)).append(1, static_cast<char>(0x80 | (byte & 0x3F)));
    }
    return text;
}

std::string bytesFrom(const Json &json) {
    const auto &text = json.get_ref<const std::string &>();
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80)
            bytes.append(1, text[i]);
        else if (byte <= 0xC3 && i + 1 < text.size())
            bytes.append(1, static_cast<char>((byte & 3) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3F)));
        else
            throw std::runtime_error("a character that no switch has");
    }
    return bytes;
}

// ---- the configuration -------------------------------------------------------------------------------

Json shown(const Edits &edits) {
    Json json = Json::object();
    for (const auto &[key, value] : edits)
        json[key] = shown(value);
    return json;
}

Json shown(const std::optional<Edits> &edits) {
    return edits ? shown(*edits) : Json();
}

Edits editsFrom(const Json &json) {
    Edits edits;
    for (const auto &[key, value] : json.items())
        edits.emplace_back(key, bytesFrom(value));
    return edits;
}

std::optional<Edits> maybeEditsFrom(const Json &json) {
    return json.is_null() ? std::nullopt : std::optional<Edits>(editsFrom(json));
}

// ---- zoning ------------------------------------------------------------------------------------------

Json shown(const std::vector<ZoneMember> &members) {
    Json json = Json::array();
    for (const ZoneMember &member : members)
        json.push_back({{"type", static_cast<int32_t>(member.type)}, {"text", shown(member.text)}});
    return json;
}

std::vector<ZoneMember> membersFrom(const Json &json) {
    std::vector<ZoneMember> members;
    for (const Json &member : json)
        members.push_back(
            {static_cast<zov_fzs_zonemember_type_e>(member.at("type").get<int32_t>()), bytesFrom(member.at("text"))});
    return members;
}

Json shown(const ZoningDatabase &database) {
    Json json = {{"zonesets", Json::array()}, {"zones", Json::array()}, {"aliases", Json::array()}};
    for (const ZoneSet &zoneset : database.zonesets) {
        Json zones = Json::array();
        for (const std::string &zone : zoneset.zones)
            zones.push_back(shown(zone));
        json["zonesets"].push_back({{"name", shown(zoneset.name)}, {"zones", zones}});
    }
    for (const Zone &zone : database.zones)
        json["zones"].push_back(
            {{"name", shown(zone.name)}, {"type", static_cast<int32_t>(zone.type)}, {"members", shown(zone.members)}});
    for (const ZoneAlias &alias : database.aliases)
        json["aliases"].push_back({{"name", shown(alias.name)}, {"members", shown(alias.members)}});
    return json;
}

ZoningDatabase zoningFrom(const Json &json) {
    ZoningDatabase database;
    for (const Json &zoneset : json.at("zonesets")) {
        database.zonesets.push_back({bytesFrom(zoneset.at("name")), {}});
        for (const Json &zone : zoneset.at("zones"))
            database.zonesets.back().zones.push_back(bytesFrom(zone));
    }
    for (const Json &zone : json.at("zones"))
        database.zones.push_back({bytesFrom(zone.at("name")),
                                  static_cast<zov_fzs_zone_type_e>(zone.at("type").get<int32_t>()),
                                  membersFrom(zone.at("members"))});
    for (const Json &alias : json.at("aliases"))
        database.aliases.push_back({bytesFrom(alias.at("name")), membersFrom(alias.at("members"))});
    return database;
}

} // namespace

std::string textOf(const Memory &memory) {
    const Json json = {
        {"format", kFormat},
        {"configuration", shown(memory.running)},
        {"waiting", shown(memory.saved)}, // to be activated
        {"backup", shown(memory.backup)},
        {"zoning", shown(memory.defined)},
        {"active", shown(memory.active)},
    };
    return json.dump(1) + "\n";
}

Memory memoryFrom(const std::string &text) {
    try {
        const Json json = Json::parse(text);
        if (json.at("format") != kFormat)
            throw std::runtime_error("kept by another version of the simulated switch");
        return {editsFrom(json.at("configuration")), maybeEditsFrom(json.at("waiting")),
                maybeEditsFrom(json.at("backup")), zoningFrom(json.at("zoning")), zoningFrom(json.at("active"))};
    } catch (const Json::exception &error) {
        throw std::runtime_error(std::string("not the state of a switch: ") + error.what());
    }
}

} // namespace sim
