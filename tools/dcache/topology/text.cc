#include "tools/dcache/topology/text.h"

#include <algorithm>
#include <deque>
#include <fmt/format.h>
#include <map>
#include <sstream>

#include "tools/dcache/render.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr size_t kColumns = 80;
constexpr int kLargestPort = 65535;
constexpr size_t kGap = 2;       // blanks between columns
constexpr size_t kStepWidth = 3; // what one level of the tree takes
constexpr size_t kMostSteps = 7; // levels that are drawn; deeper ones lose their trunk

struct Strokes {
    const char *child;
    const char *lastChild;
    const char *passing;
    const char *blank;
    const char *cut; ///< stands for the levels that are not drawn
};

constexpr Strokes kAscii = {"|- ", "`- ", "|  ", "   ", ".. "};
constexpr Strokes kUnicode = {"├─ ", "└─ ", "│  ", "   ", "…  "};

/// The tree: who hangs below whom, and the order in which the switches are drawn.
struct Tree {
    std::vector<unsigned> roots;
    std::map<unsigned, std::vector<unsigned>> children;
    std::map<unsigned, unsigned> parent;
    std::map<unsigned, size_t> position;
};

/// Reaches for everything that is linked to `root`, nearest first.
void grow(Tree &tree, const Topology &topology, unsigned root) {
    tree.roots.push_back(root);
    tree.parent[root] = root;
    std::deque<unsigned> open = {root};
    while (!open.empty()) {
        const unsigned at = open.front();
        open.pop_front();
        for (const Connection *connection : topology.connectionsOf(at)) {
            const unsigned next = connection->otherThan(at);
            if (topology.find(next) == nullptr || !tree.parent.emplace(next, at).second)
                continue;
            tree.children[at].push_back(next);
            open.push_back(next);
        }
    }
}

void number(Tree &tree, unsigned domain) {
    tree.position.emplace(domain, tree.position.size());
    for (const unsigned child : tree.children[domain])
        number(tree, child);
}

Tree treeOf(const Topology &topology) {
    Tree tree;
    std::vector<unsigned> candidates;
    for (const TopologySwitch *first : {topology.principal(), topology.local()})
        if (first != nullptr)
            candidates.push_back(first->domain);
    for (const TopologySwitch &each : topology.switches)
        candidates.push_back(each.domain);
    for (const unsigned candidate : candidates)
        if (tree.parent.count(candidate) == 0)
            grow(tree, topology, candidate);
    for (const unsigned root : tree.roots)
        number(tree, root);
    return tree;
}

/// What is special about the links to a neighbour; empty when nothing is.
std::string peculiarities(const Connection &connection) {
    std::string text;
    if (connection.cables.size() > 1)
        text = counted(connection.cables.size(), "link");
    if (connection.onlyTeller() != 0)
        text += fmt::format("{}told by {} only", text.empty() ? "" : " ", connection.onlyTeller());
    return text;
}

/// Of the two switches of a connection that is not in the tree the one beside which it is told: the one with fewer
/// connections, so that the lists stay short, else the one that is drawn later.
bool isToldBeside(unsigned domain, unsigned far, const Topology &topology, const Tree &tree) {
    const size_t own = topology.connectionsOf(domain).size();
    const size_t others = topology.connectionsOf(far).size();
    return own != others ? own < others : tree.position.at(domain) > tree.position.at(far);
}

/// "also to 2-4", "also to 7 (2 links)": links beside those of the tree.
std::vector<std::string> furtherLinks(const Topology &topology, const Tree &tree, unsigned domain) {
    std::vector<unsigned> plain;
    std::vector<std::string> others;
    for (const Connection *connection : topology.connectionsOf(domain)) {
        const unsigned far = connection->otherThan(domain);
        const std::string special = peculiarities(*connection);
        if (topology.find(far) == nullptr)
            others.push_back(fmt::format("to {}, out of reach", far));
        else if (far == tree.parent.at(domain) || tree.parent.at(far) == domain ||
                 !isToldBeside(domain, far, topology, tree))
            continue;
        else if (special.empty())
            plain.push_back(far);
        else
            others.push_back(fmt::format("also to {} ({})", far, special));
    }
    if (!plain.empty())
        others.insert(others.begin(), "also to " + ranges(plain));
    return others;
}

struct Remark {
    std::string text;
    Tone tone = Tone::plain;
};

std::vector<Remark> remarksOn(const TopologySwitch &device, const Topology &topology, const Tree &tree) {
    std::vector<Remark> remarks;
    if (device.isPrincipal)
        remarks.push_back({"principal", Tone::accent});
    if (device.isLocal)
        remarks.push_back({"local", Tone::good});
    const unsigned parent = tree.parent.at(device.domain);
    for (const Connection *connection : topology.connectionsOf(device.domain))
        if (parent != device.domain && connection->otherThan(device.domain) == parent)
            if (const std::string special = peculiarities(*connection); !special.empty())
                remarks.push_back({special});
    for (const std::string &text : furtherLinks(topology, tree, device.domain))
        remarks.push_back({text});
    return remarks;
}

/// Remarks set in lines of at most so many columns, broken at blanks.
std::vector<std::string> wrapped(const std::vector<Remark> &remarks, size_t width, bool colour) {
    std::vector<std::string> lines(1);
    size_t used = 0;
    for (const Remark &remark : remarks) {
        std::istringstream words(remark.text + (&remark != &remarks.back() ? ";" : ""));
        for (std::string word; words >> word;) {
            if (used != 0 && used + 1 + word.size() > width) {
                lines.emplace_back();
                used = 0;
            }
            lines.back() += (used != 0 ? " " : "") + painted(word, remark.tone, colour);
            used += word.size() + (used != 0 ? 1 : 0);
        }
    }
    return lines;
}

/// One line of the tree, and the strokes that stand to the left of what follows beneath it.
struct Line {
    const TopologySwitch *device;
    std::vector<const char *> steps;   ///< to the left of the domain ID
    std::vector<const char *> beneath; ///< to the left of a second line
};

void collect(std::vector<Line> &out, const Topology &topology, Tree &tree, unsigned domain,
             const std::vector<const char *> &trunk, const char *branch, const char *below, const Strokes &strokes) {
    std::vector<const char *> steps = trunk;
    std::vector<const char *> inner = trunk;
    if (branch != nullptr) {
        steps.push_back(branch);
        inner.push_back(below);
    }
    const std::vector<unsigned> &children = tree.children[domain];
    std::vector<const char *> beneath = inner;
    beneath.push_back(children.empty() ? strokes.blank : strokes.passing);
    out.push_back({topology.find(domain), steps, beneath});
    for (const unsigned child : children) {
        const bool isLast = child == children.back();
        collect(out, topology, tree, child, inner, isLast ? strokes.lastChild : strokes.child,
                isLast ? strokes.blank : strokes.passing, strokes);
    }
}

std::string joined(const std::vector<const char *> &steps, const Strokes &strokes) {
    std::string text;
    const size_t skipped = steps.size() > kMostSteps ? steps.size() - kMostSteps : 0;
    for (size_t i = skipped; i < steps.size(); ++i)
        text += skipped != 0 && i == skipped ? strokes.cut : steps[i];
    return text;
}

size_t widthOf(const std::vector<const char *> &steps) {
    return std::min(steps.size(), kMostSteps) * kStepWidth;
}

std::string blanks(size_t width, size_t used) {
    return std::string(width > used ? width - used : 0, ' ');
}

std::string drawnTree(const Topology &topology, const Strokes &strokes, bool colour) {
    constexpr size_t wwnWidth = 23;
    constexpr size_t portsWidth = 5;
    Tree tree = treeOf(topology);
    std::vector<Line> lines;
    for (const unsigned root : tree.roots)
        collect(lines, topology, tree, root, {}, nullptr, nullptr, strokes);
    const auto labelWidth = [](const Line &line) {
        return widthOf(line.steps) + std::to_string(line.device->domain).size();
    };
    size_t width = std::string("DOMAIN").size();
    for (const Line &line : lines)
        width = std::max(width, labelWidth(line));
    const size_t remarksAt = width + kGap + wwnWidth + kGap + portsWidth + kGap;

    std::string out = painted("DOMAIN", Tone::accent, colour) + blanks(width + kGap, 6) +
                      painted("WWN", Tone::accent, colour) + blanks(wwnWidth + kGap, 3) +
                      painted("PORTS", Tone::accent, colour) + '\n';
    for (const Line &line : lines) {
        const TopologySwitch &device = *line.device;
        const Tone tone = device.isPrincipal ? Tone::accent : device.isLocal ? Tone::good : Tone::plain;
        out += painted(joined(line.steps, strokes), Tone::faint, colour) +
               painted(std::to_string(device.domain), tone, colour) + blanks(width + kGap, labelWidth(line)) +
               painted(fmt::format("{:<{}}", device.wwn, wwnWidth), tone, colour) +
               fmt::format("{:>{}}", device.ports, portsWidth + kGap);
        const auto remarks = wrapped(remarksOn(device, topology, tree), kColumns - remarksAt, colour);
        out += (remarks.front().empty() ? "" : std::string(kGap, ' ') + remarks.front()) + '\n';
        for (size_t i = 1; i < remarks.size(); ++i)
            out += painted(joined(line.beneath, strokes), Tone::faint, colour) +
                   blanks(remarksAt, widthOf(line.beneath)) + remarks[i] + '\n';
    }
    return out;
}

std::string knownOr(const std::string &port, const char *sign) {
    return port.empty() ? sign : printable(port);
}

Listing localLinks(const Topology &topology) {
    Listing listing{"links", {{"port", "LOCAL PORT"}, {"domain", "TO DOMAIN"}, {"neighbourPort", "ITS PORT"}}, {}};
    const TopologySwitch *local = topology.local();
    if (local == nullptr)
        return listing;
    for (const Connection *connection : topology.connectionsOf(local->domain)) {
        const size_t near = connection->domains[0] == local->domain ? 0 : 1;
        const std::string far = std::to_string(connection->otherThan(local->domain));
        for (const Cable &cable : connection->cables)
            listing.rows.push_back({{nullptr, knownOr(cable.ports[near], "?")},
                                    {nullptr, far},
                                    {nullptr, knownOr(cable.ports[1 - near], "?")}});
    }
    std::stable_sort(listing.rows.begin(), listing.rows.end(), [](const auto &one, const auto &other) {
        return numberIn(one.front().text, kLargestPort) < numberIn(other.front().text, kLargestPort);
    });
    return listing;
}

std::vector<std::string> notesOn(const Topology &topology) {
    std::vector<std::string> notes;
    if (!topology.outOfReach.empty())
        notes.push_back("Out of reach, though the link-state database names it: " +
                        ranges({topology.outOfReach.begin(), topology.outOfReach.end()}) + ".");
    for (const StrayLink &stray : topology.strays)
        notes.push_back(fmt::format("Port {} of switch {} is linked to {}.", knownOr(stray.port, "?"), stray.domain,
                                    inQuotes(stray.neighbour)));
    return notes;
}

} // namespace

std::string topologyText(const Topology &topology, Lines lines, bool colour) {
    const std::string name = topology.fabric.empty() ? "No fabric" : "Fabric " + topology.fabric;
    std::string out = fmt::format("{}: {}\n", name, sizeOf(topology));
    if (!topology.switches.empty())
        out += '\n' + drawnTree(topology, lines == Lines::ascii ? kAscii : kUnicode, colour);
    Report beneath;
    if (Listing links = localLinks(topology); !links.rows.empty())
        beneath.listings.push_back(std::move(links));
    beneath.notes = notesOn(topology);
    if (!beneath.listings.empty() || !beneath.notes.empty())
        out += '\n' + render(beneath, Format::table, colour);
    return out;
}

std::string ranges(const std::vector<unsigned> &numbers) {
    std::string text;
    for (size_t i = 0; i < numbers.size();) {
        size_t end = i;
        while (end + 1 < numbers.size() && numbers[end + 1] == numbers[end] + 1)
            ++end;
        if (end - i < 2)
            end = i;
        text += fmt::format("{}{}", text.empty() ? "" : ", ", numbers[i]);
        if (end != i)
            text += fmt::format("-{}", numbers[end]);
        i = end + 1;
    }
    return text;
}

} // namespace dcache
