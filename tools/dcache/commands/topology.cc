#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/topology/dot.h"
#include "tools/dcache/topology/graphviz.h"
#include "tools/dcache/topology/linkstate.h"
#include "tools/dcache/topology/text.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr unsigned short kTheFabric = 1;

Topology readTopology() {
    loadOnce(DataCacheArea::fabric);
    const CacheLock cache;
    const FabricCache &fabric = *cache->getFabric(kTheFabric);
    const Wwn name = fabric.getFabricWorldWideName();
    std::vector<TopologySwitch> switches;
    for (const SwitchCache *device = fabric.getFirstSwitch(); device != nullptr; device = fabric.getNextSwitch(device))
        switches.push_back({device->getDomainID(), colonForm(device->getWorldWideName()), device->_num_ports,
                            device->isLocal(), device->getWorldWideName() == name});
    return makeTopology(name == Wwn() ? "" : colonForm(name), std::move(switches), readLinkState());
}

Cell number(unsigned value) {
    return {value, ""};
}

/// A port as the number that it is as a rule, null when it is not told.
Cell port(const std::string &text) {
    constexpr int largest = 65535;
    const int value = numberIn(text, largest);
    return value >= 0 ? Cell{value, ""} : text.empty() ? emptyCell("") : Cell{text, ""};
}

Report reportOn(const Topology &topology) {
    Listing switches;
    switches.key = "switches";
    for (const char *key : {"domain", "wwn", "portCount", "local", "principal"})
        switches.columns.push_back({key, nullptr});
    for (const TopologySwitch &device : topology.switches)
        switches.rows.push_back({number(device.domain),
                                 {device.wwn, ""},
                                 number(device.ports),
                                 {device.isLocal, ""},
                                 {device.isPrincipal, ""}});
    Listing links;
    links.key = "links";
    for (const char *key : {"domain", "port", "neighbourDomain", "neighbourPort", "toldByBoth"})
        links.columns.push_back({key, nullptr});
    for (const Connection &connection : topology.connections)
        for (const Cable &cable : connection.cables)
            links.rows.push_back({number(connection.domains[0]),
                                  port(cable.ports[0]),
                                  number(connection.domains[1]),
                                  port(cable.ports[1]),
                                  {cable.toldBy[0] && cable.toldBy[1], ""}});
    Listing strays;
    strays.key = "strayLinks";
    for (const char *key : {"domain", "port", "neighbour"})
        strays.columns.push_back({key, nullptr});
    for (const StrayLink &stray : topology.strays)
        strays.rows.push_back({number(stray.domain), port(stray.port), {stray.neighbour, ""}});
    Report report;
    report.facts = {{"fabricWwn", nullptr, topology.fabric.empty() ? emptyCell("") : Cell{topology.fabric, ""}},
                    {"outOfReach", nullptr, {topology.outOfReach, ""}}};
    report.listings = {switches, links, strays};
    return report;
}

} // namespace

std::string showTopology(Picture picture, Lines lines, Format format, bool colour) {
    const Topology topology = readTopology();
    if (format != Format::table)
        return render(reportOn(topology), format, colour);
    if (picture == Picture::dot)
        return topologyDot(topology);
    if (picture == Picture::svg)
        return svgFrom(topologyDot(topology));
    return topologyText(topology, lines, colour);
}

Lines linesOfLocale() {
    for (const char *variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char *value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): nobody sets any
        std::string locale = value != nullptr ? value : "";
        if (locale.empty())
            continue; // the next one decides
        std::transform(locale.begin(), locale.end(), locale.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        const bool isUtf8 = locale.find("UTF-8") != std::string::npos || locale.find("UTF8") != std::string::npos;
        return isUtf8 ? Lines::unicode : Lines::ascii;
    }
    return Lines::ascii;
}

} // namespace dcache
