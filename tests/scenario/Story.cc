#include "tests/scenario/Story.h"

#include <sstream>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tests/scenario/Process.h"
#include "tests/support/Uptime.h"

namespace scenario {

namespace {

void dropEvent(DataCacheEvent * /*event*/) {}

DataCache &startedCache() {
    DataCache::init();
    DataCache *cache = DataCache::getInstance();
    DataCache::releaseInstance();
    cache->startEventMonitor(dropEvent);
    return *cache;
}

/// A switch and its host, for as long as a process tells a story.
class Stage {
public:
    explicit Stage(const std::string &profile) : _switch(sim::create(profile.c_str())) {
        support::setUptimeSource([this] { return _switch->uptime(); });
    }
    ~Stage() {
        support::setUptime(_switch->uptime());
        _switch.reset();
    }
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

    sim::Simulator &theSwitch() { return *_switch; }

    void pass(DataCache &cache) {
        if (!_switch->waitUntilQuiet())
            throw std::runtime_error("the cache does not take its notifications");
        cache.evaluateCaches();
        _switch->clearRecords();
    }

private:
    std::unique_ptr<sim::Simulator> _switch;
};

Lines stateOf(const sim::Simulator &theSwitch) {
    Lines lines;
    for (const std::string &key : theSwitch.keys())
        lines[key] = theSwitch.get(key);
    return lines;
}

/// The status that a switch refresh gives to the switch, which takes the faults from the chassis refresh before.
std::string statusNow(const sim::Simulator &theSwitch, const DataCache &cache) {
    const std::string state = theSwitch.get("Oper.Switch.OperState");
    return fmt::format(
        "{}", fmt::join(cache.smlSwitchStateToCIMOperationalStatus(state.c_str(), cache.getSwitchFaults()), " "));
}

void noteRefusals(Ending &ending, const std::vector<sim::Peer> &peers) {
    for (const sim::Peer &peer : peers)
        if (!peer.topology.answers)
            ending.notes["refusedLate." + peer.wwn] = "once";
}

/// A pass of which is noted what a cache may remember for ever: the name that the local switch had, and the switches that
/// may have refused to tell their ports after a long time.
void notedPass(Stage &stage, DataCache &cache, Ending &ending) {
    constexpr long patience = 10;
    const std::vector<sim::Peer> peers = stage.theSwitch().peers();
    const long before = stage.theSwitch().uptime();
    stage.pass(cache);
    if (stage.theSwitch().uptime() - before > patience) {
        noteRefusals(ending, peers);
        noteRefusals(ending, stage.theSwitch().peers()); // there may have been changes in the middle of the pass
    }
    ending.notes["localName." + cache.getRootSwitchWwn()] = "once";
}

Ending tell(const std::string &profile, const Story &story, bool following) {
    Ending ending;
    Stage stage(profile);
    sim::Simulator &theSwitch = stage.theSwitch();
    DataCache *cache = nullptr;
    Scene scene = {theSwitch, [] {}, [&ending](const std::string &line) { ending.told.push_back(line); }};
    if (following) {
        cache = &startedCache();
        scene.pass = [&] { notedPass(stage, *cache, ending); };
        scene.pass();
    }
    story(scene);
    theSwitch.clearFaults();
    ending.state = stateOf(theSwitch);
    if (!following)
        cache = &startedCache();
    cache->updateAll();
    cache->localPortRefreshSet();
    ending.notes["status"] = statusNow(theSwitch, *cache);
    notedPass(stage, *cache, ending);
    ending.picture = pictureOf(*cache);
    cache->updateSwitch();
    stage.pass(*cache);
    ending.picture["switch.statusAfterwards"] = fmt::format("{}", fmt::join(cache->getRootSwitchStatus(), " "));
    return ending;
}

// ---- from one process to another ----------------------------------------------------------------------

constexpr const char *kTold = "told";

/// One line each, in three columns. None of the texts holds a tab or a newline.
std::string packed(const Ending &ending) {
    std::string text;
    const auto add = [&text](const char *kind, const Lines &lines) {
        for (const auto &[name, value] : lines)
            text += fmt::format("{}\t{}\t{}\n", kind, name, value);
    };
    add("state", ending.state);
    add("picture", ending.picture);
    add("notes", ending.notes);
    for (const std::string &line : ending.told)
        text += fmt::format("{}\t\t{}\n", kTold, line);
    return text;
}

Ending unpacked(const std::string &text) {
    Ending ending;
    std::istringstream lines(text);
    std::string kind;
    std::string name;
    std::string value;
    while (std::getline(lines, kind, '\t') && std::getline(lines, name, '\t') && std::getline(lines, value)) {
        if (kind == kTold)
            ending.told.push_back(value);
        else
            (kind == "state" ? ending.state : kind == "picture" ? ending.picture : ending.notes)[name] = value;
    }
    return ending;
}

} // namespace

Endings tellTwice(const std::string &profile, const Story &story) {
    const auto toldTo = [&](bool following) {
        return unpacked(inProcess([&] { return packed(tell(profile, story, following)); }));
    };
    return {toldTo(true), toldTo(false)};
}

} // namespace scenario
