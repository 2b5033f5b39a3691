#include "sim/model/Routing.h"

#include <algorithm>
#include <deque>
#include <tuple>

namespace sim {

namespace {

/// A link shows in the records of the switches at its ends. Either both can be reached or none.
void addLinks(const std::vector<Link> &links, Database &database) {
    std::map<std::string, LinkStateRecord *> reached;
    for (LinkStateRecord &record : database)
        if (record.hops != kOutOfReach)
            reached[keyOf(record)] = &record;
    for (const Link &link : links) {
        const auto one = reached.find(link.wwn);
        const auto other = reached.find(link.otherWwn);
        if (one == reached.end() || other == reached.end())
            continue;
        one->second->links.push_back({link.port, other->second->domain, link.otherPort});
        other->second->links.push_back({link.otherPort, one->second->domain, link.port});
    }
    for (LinkStateRecord &record : database)
        std::sort(record.links.begin(), record.links.end(),
                  [](const LinkEnd &one, const LinkEnd &other) { return one.port < other.port; });
}

} // namespace

std::map<std::string, unsigned> hopsFrom(const std::string &name, const std::vector<Link> &links) {
    std::multimap<std::string, std::string> neighbours;
    for (const Link &link : links) {
        neighbours.emplace(link.wwn, link.otherWwn);
        neighbours.emplace(link.otherWwn, link.wwn);
    }
    std::map<std::string, unsigned> hops = {{name, 0}};
    std::deque<std::string> next = {name};
    for (; !next.empty(); next.pop_front()) {
        const auto [begin, end] = neighbours.equal_range(next.front());
        for (auto neighbour = begin; neighbour != end; ++neighbour)
            if (hops.emplace(neighbour->second, hops[next.front()] + 1).second)
                next.push_back(neighbour->second);
    }
    return hops;
}

Database databaseOf(const Identity &local, const Fabric &fabric) {
    const std::map<std::string, unsigned> hops = hopsFrom(kLocalName, fabric.links);
    Database database = {{local.domainId, local.wwn, 0, {}}};
    for (const Peer &peer : fabric.peers) {
        const auto distance = hops.find(peer.wwn);
        if (distance != hops.end())
            database.push_back({peer.domain, peer.wwn, distance->second, {}});
        else if (fabric.recorded.count(peer.wwn) != 0)
            database.push_back({peer.domain, peer.wwn, kOutOfReach, {}});
    }
    std::sort(database.begin(), database.end(),
              [](const LinkStateRecord &one, const LinkStateRecord &other) { return one.domain < other.domain; });
    addLinks(fabric.links, database);
    return database;
}

std::string keyOf(const LinkStateRecord &record) {
    return record.hops == 0 ? kLocalName : record.wwn;
}

const LinkStateRecord *recordAt(const Database &database, unsigned domain) {
    const auto record =
        std::lower_bound(database.begin(), database.end(), domain,
                         [](const LinkStateRecord &candidate, unsigned wanted) { return candidate.domain < wanted; });
    return record != database.end() && record->domain == domain ? &*record : nullptr;
}

const LinkStateRecord *memberAt(const Database &database, unsigned domain) {
    const LinkStateRecord *record = recordAt(database, domain);
    return record && record->hops != kOutOfReach ? record : nullptr;
}

std::set<std::string> membersOf(const Database &database) {
    std::set<std::string> members;
    for (const LinkStateRecord &record : database)
        if (record.hops != kOutOfReach)
            members.insert(keyOf(record));
    return members;
}

bool operator==(const LinkEnd &one, const LinkEnd &other) {
    return std::tie(one.port, one.neighbour, one.neighbourPort) ==
           std::tie(other.port, other.neighbour, other.neighbourPort);
}

bool operator==(const LinkStateRecord &one, const LinkStateRecord &other) {
    return std::tie(one.domain, one.wwn, one.hops, one.links) ==
           std::tie(other.domain, other.wwn, other.hops, other.links);
}

Electorate electorateOf(const Identity &local, const Fabric &fabric) {
    Electorate electorate;
    const auto add = [&](unsigned priority, const std::string &wwn) {
        const uint64_t name = std::stoull(wwn, nullptr, 16);
        electorate[{priority, name}] = wwn;
    };
    add(fabric.priority, local.wwn);
    for (const Peer &peer : fabric.peers)
        if (memberAt(fabric.database, peer.domain))
            add(peer.priority, peer.wwn);
    return electorate;
}

} // namespace sim
