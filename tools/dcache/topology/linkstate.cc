#include "tools/dcache/topology/linkstate.h"

#include <array>
#include <functional>
#include <set>

#include "swlib/MERO_Zov_Lib.h"

namespace dcache {
namespace {

using Text = std::array<char, 256>; // what the walkers ask for

/// Follows a chain from its first identifier to its end. A switch that sends the walker in circles is not followed.
std::vector<std::string> walk(const std::function<char *(char *)> &first,
                              const std::function<char *(const char *, char *)> &next) {
    std::vector<std::string> identifiers;
    std::set<std::string> seen;
    Text text{};
    const char *at = first(text.data());
    while (at != nullptr && seen.insert(at).second) {
        identifiers.emplace_back(at);
        Text following{};
        at = next(identifiers.back().c_str(), following.data());
        text = following;
        at = at != nullptr ? text.data() : nullptr;
    }
    return identifiers;
}

std::vector<LinkEnd> readLinks(const std::string &record) {
    constexpr int mostLinks = 256; // as many as a switch can have ports
    std::vector<LinkEnd> links;
    const int count = get_lsdb_record_link_count(record.c_str());
    for (int i = 0; i < count && i < mostLinks; ++i) {
        const std::string link = std::to_string(i);
        Text port{};
        Text neighbour{};
        const bool hasPort =
            get_lsdb_record_link_local_information(record.c_str(), link.c_str(), port.data()) != nullptr;
        if (get_lsdb_record_link_remote_information(record.c_str(), link.c_str(), neighbour.data()) != nullptr)
            links.push_back({hasPort ? port.data() : "", neighbour.data()});
    }
    return links;
}

} // namespace

std::vector<LinkRecord> readLinkState() {
    constexpr int largestDomain = 239;
    std::vector<LinkRecord> records;
    for (const std::string &identifier : walk(get_first_lsdb_record, get_next_lsdb_record)) {
        const int domain = numberIn(identifier, largestDomain);
        if (domain > 0)
            records.push_back({static_cast<unsigned>(domain), readLinks(identifier)});
    }
    return records;
}

std::vector<std::string> readNameServer(unsigned domain) {
    const std::string scope = std::to_string(domain);
    return walk([&scope](char *out) { return get_first_attached_port(scope.c_str(), out); },
                [&scope](const char *entry, char *out) { return get_next_attached_port(scope.c_str(), entry, out); });
}

} // namespace dcache
