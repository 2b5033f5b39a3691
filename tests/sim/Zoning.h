/*
 * Zoning as tests do it: a small database, the commands that make it, and what a client finds who reads one.
 *
 * Thread-safety: for one thread at a time.
 */
#ifndef TESTS_SIM_ZONING_H
#define TESTS_SIM_ZONING_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tests/sim/Client.h"

namespace simtest {

/// Two zone sets that share a zone, and every kind of member.
inline sim::ZoningDatabase orchard() {
    sim::ZoningDatabase database;
    database.aliases = {{"ash", {{ZOV_ZMT_PORTWWN, "2100000000000001"}, {ZOV_ZMT_DOMAINPORT, "1:10"}}},
                        {"fir", {{ZOV_ZMT_FCADDRESS, "0A0B0C"}}}};
    database.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_PORTWWN, "21000000000000AB"}, {ZOV_ZMT_ALIAS, "ash"}}},
                      {"elm", ZOV_ZT_SOFT, {{ZOV_ZMT_DOMAINPORT, "239:255"}, {ZOV_ZMT_FCADDRESS, "FFFFFE"}}},
                      {"yew", ZOV_ZT_HARDVPF, {}}};
    database.zonesets = {{"north", {"oak", "elm"}}, {"south", {"oak"}}};
    return database;
}

inline const std::vector<std::string> kOpenEdit = {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77",
                                                   "Cmd.Zoning.EditConfig", "Cmd.Zoning.ClearConfig"};

inline const std::vector<std::string> kCloseEdit = {"Cmd.Zoning.SaveConfig", "Cmd.Zoning.FabricUnlock.77",
                                                    "Cmd.Switch.RelAdmin"};

/// The commands that define orchard().
inline const std::vector<std::string> kPlantOrchard = {
    "Cmd.Zoning.Alias.ash.Create",
    "Cmd.Zoning.Alias.ash.AddZoneMember.2100000000000001",
    "Cmd.Zoning.Alias.ash.AddZoneMember.010a",
    "Cmd.Zoning.Alias.fir.Create",
    "Cmd.Zoning.Alias.fir.AddZoneMember.0A0B0C",
    "Cmd.Zoning.Zone.oak.Create",
    "Cmd.Zoning.Zone.oak.ZoneType.HardACL",
    "Cmd.Zoning.Zone.oak.AddZoneMember.21000000000000AB",
    "Cmd.Zoning.Zone.oak.AddZoneMember.ash",
    "Cmd.Zoning.Zone.elm.Create",
    "Cmd.Zoning.Zone.elm.ZoneType.Soft",
    "Cmd.Zoning.Zone.elm.AddZoneMember.efff",
    "Cmd.Zoning.Zone.elm.AddZoneMember.FFFFFE",
    "Cmd.Zoning.Zone.yew.Create",
    "Cmd.Zoning.Zone.yew.ZoneType.HardVPF",
    "Cmd.Zoning.ZoneSet.north.Create",
    "Cmd.Zoning.ZoneSet.north.AddZone.oak",
    "Cmd.Zoning.ZoneSet.north.AddZone.elm",
    "Cmd.Zoning.ZoneSet.south.Create",
    "Cmd.Zoning.ZoneSet.south.AddZone.oak",
};

/// Sends keys in one batch; their statuses, or the result of the call if it failed.
inline std::vector<int32_t> send(const Client &client, const std::vector<std::string> &keys) {
    std::vector<SmlMessage> messages;
    for (const std::string &key : keys)
        messages.push_back(messageOf(key));
    std::vector<int32_t> statuses;
    const int32_t result = zov_smlSetBatch(client.handle, messages.data(), static_cast<int32_t>(messages.size()));
    for (const SmlMessage &message : messages)
        statuses.push_back(result == 0 ? message.status : result);
    return statuses;
}

/// Sends the commands of an edit between those that open and close it.
inline std::vector<int32_t> commit(const Client &client, const std::vector<std::string> &edit) {
    std::vector<std::string> keys = kOpenEdit;
    keys.insert(keys.end(), edit.begin(), edit.end());
    keys.insert(keys.end(), kCloseEdit.begin(), kCloseEdit.end());
    return send(client, keys);
}

/// The statuses of a commit of `count` commands that all succeed.
inline std::vector<int32_t> allDone(size_t count) {
    return std::vector<int32_t>(kOpenEdit.size() + count + kCloseEdit.size(), 0);
}

inline std::string textOf(zov_fzs_zonemember_type_e type, const uint8_t *attribute) {
    char text[65] = "";
    uint32_t word[2];
    std::memcpy(word, attribute, sizeof word);
    if (type == ZOV_ZMT_ALIAS)
        return reinterpret_cast<const char *>(attribute);
    if (type == ZOV_ZMT_DOMAINPORT)
        return std::to_string(word[0]) + ":" + std::to_string(word[1]);
    const int bytes = type == ZOV_ZMT_PORTWWN ? 8 : 3;
    for (int i = 0; i < bytes; ++i)
        std::snprintf(text + 2 * static_cast<std::ptrdiff_t>(i), 3, "%02X", static_cast<unsigned>(attribute[i]));
    return text;
}

inline std::vector<sim::ZoneMember> membersOf(void *group, int32_t (*count)(void *), void *(*list)(void *, int32_t)) {
    std::vector<sim::ZoneMember> members(static_cast<size_t>(count(group)));
    for (size_t i = 0; i < members.size(); ++i) {
        uint8_t attribute[256] = {};
        if (zov_MemberGetAttr(list(group, static_cast<int32_t>(i)), &members[i].type, attribute) == 0)
            members[i].text = textOf(members[i].type, attribute);
    }
    return members;
}

/// What a client finds in a zone set, which is destroyed: one zone set, its zones and its aliases.
inline sim::ZoningDatabase takeApart(void *zoneset) {
    sim::ZoningDatabase database;
    char name[65] = "?";
    zov_ZonesetGetName(zoneset, name);
    sim::ZoneSet set{name, {}};
    for (int32_t i = 0; i < zov_ZonesetGetZoneCount(zoneset); ++i) {
        void *handle = zov_ZonesetListZones(zoneset, i);
        sim::Zone zone;
        zov_ZoneGetName(handle, name);
        zone.name = name;
        zov_ZoneGetType(handle, &zone.type);
        zone.members = membersOf(handle, zov_ZoneGetMemberCount, zov_ZoneListMembers);
        set.zones.push_back(zone.name);
        database.zones.push_back(zone);
    }
    for (int32_t i = 0; i < zov_ZonesetGetAliasCount(zoneset); ++i) {
        void *handle = zov_ZonesetListAliases(zoneset, i);
        zov_ZoneAliasGetName(handle, name);
        database.aliases.push_back({name, membersOf(handle, zov_ZoneAliasGetMemberCount, zov_ZoneAliasListMembers)});
    }
    database.zonesets = {set};
    zov_ZonesetDestroy(zoneset);
    return database;
}

/// The zone sets that a client is told of.
inline std::vector<std::string> listedZonesets(const Client &client) {
    int32_t count = 0;
    char *fields = nullptr;
    if (zov_fzsGetZonesetList(client.handle, &count, &fields) != 0)
        return {"refused"};
    std::vector<std::string> names;
    for (int32_t i = 0; i < count; ++i)
        names.emplace_back(fields + 65 * static_cast<std::ptrdiff_t>(i));
    return names;
}

/// Lets a test misuse zoning objects where that would end the process.
inline void forgiveMisuse() {
    setenv("ZOVSIM_MISUSE", "report", 1);
}

} // namespace simtest

namespace sim {

inline void PrintTo(const std::vector<ZoneMember> &members, std::ostream *out) {
    for (const ZoneMember &member : members)
        *out << " " << static_cast<int32_t>(member.type) << "/" << member.text;
}

/// What a failed test shows of a database.
inline void PrintTo(const ZoningDatabase &database, std::ostream *out) {
    for (const ZoneSet &zoneset : database.zonesets) {
        *out << "\n  zone set " << zoneset.name << ":";
        for (const std::string &zone : zoneset.zones)
            *out << " " << zone;
    }
    for (const Zone &zone : database.zones) {
        *out << "\n  zone " << zone.name << " type " << static_cast<int32_t>(zone.type) << ":";
        PrintTo(zone.members, out);
    }
    for (const ZoneAlias &alias : database.aliases) {
        *out << "\n  alias " << alias.name << ":";
        PrintTo(alias.members, out);
    }
}

} // namespace sim

#endif // TESTS_SIM_ZONING_H
