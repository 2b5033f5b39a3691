#include "sim/model/LinkState.h"

#include <algorithm>
#include <iterator>

#include "sim/model/Routing.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

constexpr size_t kLongestList = 255; // characters, as the key of the list says

/// The numbers of all domains are below it.
unsigned domainLimit(const Switch &, unsigned) {
    return 240;
}

const LinkStateRecord &recordOf(const Switch &device, Index at) {
    return *recordAt(device.fabric.database, at.first);
}

/// The first record of a domain from this one on; null without one.
const LinkStateRecord *recordFrom(const Switch &device, unsigned domain) {
    const Database &database = device.fabric.database;
    const auto record = std::find_if(database.begin(), database.end(),
                                     [&](const LinkStateRecord &candidate) { return candidate.domain >= domain; });
    return record == database.end() ? nullptr : &*record;
}

/// In transparent mode the switch is in no fabric.
Status status(const Switch &device, Index) {
    return isTransparent(device) ? kNotSupported : kOk;
}

std::string domainFrom(const Switch &device, unsigned domain) {
    const LinkStateRecord *record = recordFrom(device, domain);
    return record ? std::to_string(record->domain) : std::string();
}

std::string readFirst(const Switch &device, Index) {
    return domainFrom(device, 0);
}

std::string readNext(const Switch &device, Index at) {
    return domainFrom(device, at.first + 1);
}

Status nextStatus(const Switch &device, Index at) {
    if (isTransparent(device))
        return kNotSupported;
    return recordFrom(device, at.first + 1) ? kOk : kEndOfList;
}

/// As many whole domains as fit.
std::string readList(const Switch &device, Index) {
    std::string list;
    for (const LinkStateRecord &record : device.fabric.database) {
        const std::string more = (list.empty() ? "" : ",") + std::to_string(record.domain);
        if (list.size() + more.size() > kLongestList)
            break;
        list += more;
    }
    return list;
}

std::string readName(const Switch &device, Index at) {
    return recordOf(device, at).wwn;
}

std::string readHops(const Switch &device, Index at) {
    return std::to_string(recordOf(device, at).hops);
}

unsigned linkCount(const Switch &device, unsigned domain) {
    return static_cast<unsigned>(recordOf(device, {domain}).links.size());
}

std::string readLinkCount(const Switch &device, Index at) {
    return std::to_string(linkCount(device, at.first));
}

std::string readLocalPort(const Switch &device, Index at) {
    return std::to_string(recordOf(device, at).links[at.second].port);
}

std::string readNeighbour(const Switch &device, Index at) {
    const LinkEnd &link = recordOf(device, at).links[at.second];
    return std::to_string(link.neighbour) + ":" + std::to_string(link.neighbourPort);
}

constexpr Axis kRecords = {domainLimit, [](const Switch &device, unsigned, unsigned domain) {
                               return recordAt(device.fabric.database, domain) != nullptr;
                           }};

constexpr Axis kLinks = {linkCount};

using Read = std::string (*)(const Switch &, Index);

/// The database is computed by the switch: nobody sets any of it.
constexpr Row row(const char *pattern, Read read, const Axis *axis = nullptr, const Axis *innerAxis = nullptr,
                  Status (*answer)(const Switch &, Index) = status) {
    return {pattern, Access::readOnly, &kDerivedRule, 0, read, nullptr, axis, Source::none, answer, innerAxis};
}

constexpr Row kRows[] = {
    row("Oper.Eport.LsdbRecordList.255", readList),
    row("Oper.Eport.FirstLsdbRecord", readFirst),
    row("Oper.Eport.NextLsdbRecord.%u", readNext, &kRecords, nullptr, nextStatus),
    row("Oper.Eport.LsdbRecord.%u.WWN", readName, &kRecords),
    row("Oper.Eport.LsdbRecord.%u.Hops", readHops, &kRecords),
    row("Oper.Eport.LsdbRecord.%u.NumberOfLinks", readLinkCount, &kRecords),
    row("Oper.Eport.LsdbRecord.%u.Link.%u.LocalPort", readLocalPort, &kRecords, &kLinks),
    row("Oper.Eport.LsdbRecord.%u.Link.%u.Neighbor", readNeighbour, &kRecords, &kLinks),
};

} // namespace

Rows linkStateRows() {
    return {kRows, std::size(kRows)};
}

constexpr Axis kMembers = {domainLimit, [](const Switch &device, unsigned, unsigned domain) {
                               return memberAt(device.fabric.database, domain) != nullptr;
                           }};

} // namespace sim
