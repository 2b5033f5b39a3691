#include "tools/dcache/topology/dot.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <vector>

#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr size_t kLargest = 24;    // more switches than this side by side make a drawing too wide to read
constexpr size_t kMostBends = 120; // bending lines around the boxes of more takes Graphviz too long
constexpr size_t kFewest = 4;      // up to here there is nothing to lay out

constexpr const char *kPlainBox = "fillcolor=\"#f5f7fa\" color=\"#9aa5b1\"";
constexpr const char *kCoreBox = "fillcolor=\"#e4e7eb\" color=\"#52606d\"";
constexpr const char *kLocalBox = "fillcolor=\"#d0ebff\" color=\"#1c7ed6\" penwidth=2";
constexpr const char *kPrincipalBox = "fillcolor=\"#ffec99\" color=\"#e67700\" penwidth=2";
constexpr const char *kPrincipalLocalBox = "fillcolor=\"#ffec99\" color=\"#1c7ed6\" penwidth=2";
constexpr const char *kFaintBox = "style=\"rounded,dashed\" color=\"#cbd2d9\" fontcolor=\"#7b8794\"";

constexpr const char *kPlainLine = "#9aa5b1";
/// The links of each core have their own colour, so that the eye can follow them.
constexpr std::array<const char *, 6> kCoreLines = {"#e8890c", "#3b82c4", "#2f9e61", "#a34fb5", "#c9485b", "#5b6b7b"};

/// Text within a pair of quotes.
std::string quotedText(const std::string &text) {
    std::string out = "\"";
    for (const char c : printable(text)) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

/// Switches that many others depend on: linked with at least three, and with twice as many as switches are on average.
std::vector<unsigned> coresOf(const Topology &topology) {
    std::vector<unsigned> cores;
    for (const TopologySwitch &device : topology.switches) {
        const size_t neighbours = topology.connectionsOf(device.domain).size();
        if (neighbours >= 3 && neighbours * topology.switches.size() >= 4 * topology.connections.size())
            cores.push_back(device.domain);
    }
    return cores;
}

/// How Graphviz is to lay it out: side by side when there are few, in a tier below the cores, in circles where there are
/// none, and by forces where that would be too wide.
std::string layoutFor(const Topology &topology, const std::vector<unsigned> &cores) {
    const size_t size = topology.switches.size() + topology.outOfReach.size();
    if (size <= kFewest)
        return "layout=dot; rankdir=LR; ranksep=1.2; nodesep=0.4;";
    if (size > kLargest)
        return fmt::format("layout=neato; start=1; overlap=prism; sep=\"+10\"; esep=\"+4\"; splines={};",
                           size > kMostBends ? "line" : "true");
    if (cores.empty())
        return "layout=circo; mindist=0.4;";
    return "layout=dot; ordering=out; ranksep=1.4; nodesep=0.15; splines=line;";
}

/// "10:00:00:C0:" over "DD:00:A1:B2": a name takes two lines, so that boxes are small.
std::string nameInTwoLines(const std::string &wwn) {
    constexpr size_t half = 12;
    return wwn.size() <= half ? wwn : wwn.substr(0, half) + "<br/>" + wwn.substr(half);
}

std::string box(const TopologySwitch &device, bool isCore) {
    std::string roles = device.isPrincipal ? "principal" : "";
    if (device.isLocal)
        roles += roles.empty() ? "local" : ", local";
    const char *look = device.isPrincipal && device.isLocal ? kPrincipalLocalBox
                       : device.isPrincipal                 ? kPrincipalBox
                       : device.isLocal                     ? kLocalBox
                       : isCore                             ? kCoreBox
                                                            : kPlainBox;
    return fmt::format("  d{} [label=<<font point-size=\"15\"><b>{}</b></font><br/>{}{}<br/>{}> tooltip=\"{}\" {}];\n",
                       device.domain, device.domain, roles.empty() ? "" : fmt::format("<b>{}</b><br/>", roles),
                       nameInTwoLines(device.wwn), counted(device.ports, "port"), device.wwn, look);
}

std::string portsOf(const Connection &connection) {
    std::string text;
    for (const Cable &cable : connection.cables) {
        const auto port = [](const std::string &name) { return name.empty() ? "?" : name; };
        text += fmt::format("{}{}:{} - {}:{}", text.empty() ? "" : ", ", connection.domains[0], port(cable.ports[0]),
                            connection.domains[1], port(cable.ports[1]));
    }
    return text;
}

/// `from` is the end that is drawn above the other in tiers.
std::string line(const Connection &connection, unsigned from, std::string look) {
    if (connection.cables.size() > 1)
        look += fmt::format(" penwidth=2.5 label=\" {} \"", counted(connection.cables.size(), "link"));
    if (connection.onlyTeller() != 0)
        look += " style=dashed";
    return fmt::format("  d{} -- d{} [tooltip={} {}];\n", from, connection.otherThan(from),
                       quotedText(portsOf(connection)), look);
}

/// A link between a core and another switch has the colour of the core. Of two cores neither is more its owner.
std::string lineBetween(const Connection &connection, const std::vector<unsigned> &cores) {
    const auto rank = [&cores](unsigned domain) {
        return static_cast<size_t>(std::find(cores.begin(), cores.end(), domain) - cores.begin());
    };
    const size_t one = rank(connection.domains[0]);
    const size_t other = rank(connection.domains[1]);
    const bool belongsToACore = cores.size() > 1 && (one < cores.size()) != (other < cores.size());
    std::string look =
        fmt::format("color=\"{}\"", belongsToACore ? kCoreLines[std::min(one, other) % kCoreLines.size()] : kPlainLine);
    if (one < cores.size() && other < cores.size())
        look += " minlen=6"; // room between them, where they stand side by side
    return line(connection, connection.domains[one <= other ? 0 : 1], look);
}

/// What the drawing's lines mean, of those it has.
std::string legend(const Topology &topology) {
    const bool hasDashed = std::any_of(topology.connections.begin(), topology.connections.end(),
                                       [](const Connection &each) { return each.onlyTeller() != 0; });
    std::string text;
    if (hasDashed)
        text += "dashed line: only one of the two switches tells of the link";
    if (!topology.outOfReach.empty() || !topology.strays.empty())
        text += std::string(text.empty() ? "" : "; ") + "dashed box: not a switch of the fabric";
    return text.empty() ? text : "\\n" + text;
}

/// What links lead to outside the fabric. A switch out of reach without a link would only stand about.
std::string faintParts(const Topology &topology) {
    std::string out;
    for (const unsigned domain : topology.outOfReach)
        if (!topology.connectionsOf(domain).empty())
            out += fmt::format("  d{} [label=\"{}\\nout of reach\" {}];\n", domain, domain, kFaintBox);
    for (size_t i = 0; i < topology.strays.size(); ++i) {
        const StrayLink &stray = topology.strays[i];
        out += fmt::format("  s{} [label={} {}];\n  d{} -- s{} [style=dashed tooltip={}];\n", i,
                           quotedText(stray.neighbour), kFaintBox, stray.domain, i, quotedText("port " + stray.port));
    }
    return out;
}

} // namespace

std::string topologyDot(const Topology &topology) {
    const std::vector<unsigned> cores = coresOf(topology);
    const std::string name = topology.fabric.empty() ? "No fabric" : "Fabric " + topology.fabric;
    std::string out = "graph fabric {\n";
    out += fmt::format("  {}\n  outputorder=edgesfirst; labelloc=t; fontname=\"Helvetica\"; fontsize=14;\n",
                       layoutFor(topology, cores));
    out += fmt::format("  label=\"{}: {}{}\\n \";\n", name, sizeOf(topology), legend(topology));
    out += "  node [shape=box style=\"rounded,filled\" fontname=\"Helvetica\" fontsize=9 margin=\"0.09,0.05\"];\n";
    out += fmt::format("  edge [color=\"{}\" fontname=\"Helvetica\" fontsize=9];\n", kPlainLine);
    for (const TopologySwitch &device : topology.switches)
        out += box(device, std::find(cores.begin(), cores.end(), device.domain) != cores.end());
    if (cores.size() > 1) {
        out += "  { rank=same;";
        for (const unsigned core : cores)
            out += fmt::format(" d{};", core);
        out += " }\n";
    }
    for (const Connection &connection : topology.connections)
        out += lineBetween(connection, cores);
    return out + faintParts(topology) + "}\n";
}

} // namespace dcache
