// What a switch makes of the commands of a commit.
#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

#include "tests/scenario/zoningFind.h"
#include "tests/scenario/zoningModel.h"

namespace scenario {

namespace {

/// A member as the commands name it.
std::string commandText(const sim::ZoneMember &member) {
    if (member.type != ZOV_ZMT_DOMAINPORT)
        return member.text;
    const std::size_t colon = member.text.find(':');
    return fmt::format("{:02x}{:02x}", std::strtoul(member.text.c_str(), nullptr, 10),
                       std::strtoul(member.text.c_str() + colon + 1, nullptr, 10));
}

/// The database that grows by the commands; what is refused spoils it.
class Growing {
public:
    explicit Growing(const ZoningLimits &limits) : _limits(limits) {}

    void addAlias(const sim::ZoneAlias &alias) {
        sim::ZoneAlias *made = create(_database.aliases, alias.name, _limits.aliases);
        for (const sim::ZoneMember &member : alias.members)
            if (const auto understood = understand(member); made != nullptr && understood)
                understood->type == ZOV_ZMT_ALIAS ? refuse()
                                                  : addMember(*made, *understood, _limits.membersPerAlias, 1);
    }

    void addZone(const sim::Zone &zone) {
        sim::Zone *made = create(_database.zones, zone.name, _limits.zones);
        if (made != nullptr)
            made->type = zone.type;
        for (const sim::ZoneMember &member : zone.members) {
            const auto understood = understand(member);
            if (made == nullptr || !understood)
                continue;
            const sim::ZoneAlias *alias =
                understood->type == ZOV_ZMT_ALIAS ? named(_database.aliases, understood->text) : nullptr;
            addMember(*made, *understood, _limits.membersPerZone, 1 + (alias != nullptr ? alias->members.size() : 0));
        }
    }

    void addZoneset(const CachedZoneset &zoneset) {
        sim::ZoneSet *made = create(_database.zonesets, zoneset.name, _limits.zonesets);
        for (const sim::Zone &zone : zoneset.zones) {
            if (made == nullptr || named(_database.zones, zone.name) == nullptr)
                refuse();
            else if (!contains(made->zones, zone.name) && hasRoom(made->zones, _limits.zonesPerZoneset))
                made->zones.push_back(zone.name);
        }
    }

    std::optional<sim::ZoningDatabase> result() const {
        return _isRefused ? std::nullopt : std::optional<sim::ZoningDatabase>(_database);
    }

private:
    void refuse() { _isRefused = true; }

    template <class List> bool hasRoom(const List &list, int32_t limit) {
        const bool room = list.size() < static_cast<std::size_t>(limit);
        if (!room)
            refuse();
        return room;
    }

    /// The one of this name, new or not; null when there is no room for it.
    template <class Thing> Thing *create(std::vector<Thing> &things, const std::string &name, int32_t limit) {
        if (Thing *there = named(things, name); there != nullptr || !hasRoom(things, limit))
            return there;
        things.emplace_back();
        things.back().name = name;
        return &things.back();
    }

    template <class Group>
    void addMember(Group &group, const sim::ZoneMember &member, int32_t limit, std::size_t weight) {
        if (contains(group.members, member) || !hasRoom(group.members, limit))
            return;
        if (_members + weight > static_cast<std::size_t>(_limits.members))
            return refuse();
        group.members.push_back(member);
        _members += weight;
    }

    /// What the switch takes a member's text for: an alias that there is already, or what its digits say.
    std::optional<sim::ZoneMember> understand(const sim::ZoneMember &member) {
        const std::string text = commandText(member);
        if (named(_database.aliases, text) != nullptr)
            return sim::ZoneMember{ZOV_ZMT_ALIAS, text};
        std::optional<sim::ZoneMember> understood;
        if (text.size() == 16)
            understood = memberFrom(ZOV_ZMT_PORTWWN, text.c_str());
        if (text.size() == 4 && text.find(':') == std::string::npos)
            understood = memberFrom(ZOV_ZMT_DOMAINPORT, text.c_str());
        if (text.size() == 6)
            understood = memberFrom(ZOV_ZMT_FCADDRESS, text.c_str());
        if (!understood)
            refuse();
        return understood;
    }

    const ZoningLimits &_limits;
    sim::ZoningDatabase _database;
    std::size_t _members = 0;
    bool _isRefused = false;
};

} // namespace

std::optional<sim::ZoningDatabase> ZoningModel::committed(const ZoningLimits &switchLimits) const {
    Growing database(switchLimits);
    if (const auto uber = _zonesets.find(kUberZonesetKey); uber != _zonesets.end()) {
        for (const sim::ZoneAlias &alias : uber->second.aliases)
            database.addAlias(alias);
        for (const sim::Zone &zone : uber->second.zones)
            database.addZone(zone);
    }
    for (const auto &[key, zoneset] : _zonesets)
        if (zoneset.kind != ZONESET_UBER)
            database.addZoneset(zoneset);
    return database.result();
}

} // namespace scenario
