#include "tools/dcache/live.h"

#include <algorithm>
#include <fmt/format.h>
#include <sstream>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/interruption.h"
#include "tools/dcache/journal.h"
#include "tools/dcache/quiet.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kGlance{2};       // between two looks at the cache
constexpr std::chrono::milliseconds kCalm{30};        // without another pass: the cache is at rest
constexpr std::chrono::milliseconds kPatience{10000}; // for the cache to come to rest
constexpr std::chrono::milliseconds kNod{100};        // between two looks at the switch's clock, which may be stopped

// The cache's callback takes no context. Never destroyed: the EVAL thread may still run while the process ends.
Journal *theJournal = nullptr;
bool allEvents = false;

void tellEvent(DataCacheEvent *event) {
    const CacheLock cache;
    const Wwn own = cache->getRootSwitchWorldWideName();
    const Surroundings around = {own, cache->getRootPowerSupplyCount(),
                                 [&](const Wwn &port) { return cache->calcPortIndex(own, port); },
                                 cache->getFabric(1)->getFabricWorldWideName()};
    EventDescription description = describe(*event, around);
    // The first pass finds everything new: what it tells is no change.
    description.tellsChange = description.tellsChange && cache->getPassCount() != 0;
    if (description.tellsChange || allEvents)
        theJournal->tellEvent(description);
}

/// Stops the journal when the watch ends, however it ends.
struct JournalCloser {
    ~JournalCloser() { theJournal->close(); }
};

/// The time a watch has, and what may cut it short.
class TimeFrame {
public:
    TimeFrame(Interruption &interruption, std::optional<std::chrono::duration<double>> duration)
        : _interruption(interruption) {
        if (duration)
            _end = Clock::now() + std::chrono::duration_cast<Clock::duration>(*duration);
    }

    /// Waits until `time`; false when the watch is over before that.
    bool waitUntil(Clock::time_point time) {
        const Clock::time_point until = _end ? std::min(time, *_end) : time;
        return !_interruption.wait(until) && !(_end && Clock::now() >= *_end);
    }

    void waitForEnd() { _interruption.wait(_end); }

private:
    Interruption &_interruption;
    std::optional<Clock::time_point> _end;
};

struct Progress {
    unsigned long queued;
    unsigned long passes;
};

Progress progress() {
    const CacheLock cache;
    return {cache->getQueuedNotificationCount(), cache->getPassCount()};
}

enum class Rest { reached, notReached, cutShort };

/// Waits until the cache has worked through everything the switch has notified: nothing on its way, nothing queued, at
/// least one pass made, and no further pass for a while (a pass may ask for one more).
Rest waitForRest(TimeFrame &time, sim::Simulator *simulator) {
    const Clock::time_point latest = Clock::now() + kPatience;
    Clock::time_point calmSince = Clock::now();
    unsigned long passes = 0;
    while (Clock::now() < latest) {
        const bool quiet = simulator == nullptr || simulator->waitUntilQuiet(kGlance);
        const Progress now = progress();
        if (!quiet || now.queued != 0 || now.passes != passes || passes == 0) {
            passes = now.passes;
            calmSince = Clock::now();
        } else if (Clock::now() - calmSince >= kCalm) {
            return Rest::reached;
        }
        if (!time.waitUntil(Clock::now() + kGlance))
            return Rest::cutShort;
    }
    return Rest::notReached;
}

void say(const std::string &line) {
    fmt::print(stderr, "{}\n", line);
}

std::string counted(unsigned long count, const char *thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string areas(bool good) {
    const CacheLock cache;
    std::string list;
    for (int i = 0; i <= static_cast<int>(DataCacheArea::zoning); ++i) {
        const auto area = static_cast<DataCacheArea>(i);
        if (cache->isAreaGood(area) == good)
            list += fmt::format("{}{}", list.empty() ? "" : ", ", areaWord(area));
    }
    return list;
}

/// What the watch begins with. Not data: it goes to stderr.
void greet(const sim::Play *play) {
    const CacheLock cache;
    if (cache->isAreaGood(DataCacheArea::switchInfo))
        say(fmt::format("Connected to switch {}, status {}.", colonForm(cache->getRootSwitchWorldWideName()),
                        statusWords(cache->getRootSwitchStatus()).state));
    else
        say("Connected to a switch that has not told its name yet.");
    const std::string good = areas(true);
    const std::string missing = areas(false);
    say(fmt::format("Loaded into the cache: {}.", good.empty() ? "nothing yet" : good));
    if (!missing.empty())
        say(fmt::format("Not loaded, so not ready as a whole: {}.", missing));
    if (play != nullptr)
        say(fmt::format("Scenario \"{}\": what happens on the simulated switch, and the events it raises.\n",
                        printable(play->name())));
}

/// Waits until the switch's clock shows this time; false when the watch is over before.
bool waitForUptime(std::chrono::milliseconds uptime, TimeFrame &time, const sim::Simulator &device) {
    for (auto left = uptime - device.clock(); left.count() > 0; left = uptime - device.clock()) {
        const std::chrono::duration<double, std::milli> real(static_cast<double>(left.count()) / device.speed());
        const auto glance = std::clamp(std::chrono::ceil<std::chrono::milliseconds>(real), kGlance, kNod);
        if (!time.waitUntil(Clock::now() + glance))
            return false;
    }
    return true;
}

/// Plays a scenario, telling what happens and whether the cache has something to say about it.
class Performance {
public:
    Performance(sim::Play &play, TimeFrame &time) : _play(play), _time(time) {}

    /// The whole scenario; false when the watch was over before it was.
    bool run() {
        while (const auto due = _play.next())
            if (!waitForUptime(*due, _time, _play.device()) || !playStep())
                return false;
        say(fmt::format("\nThe scenario is over: {} on the switch raised {}.", counted(_changes, "change"),
                        counted(theJournal->eventCount(), "event")));
        return true;
    }

private:
    /// One step, told, made to happen, and waited for; false when the watch is over.
    bool playStep() {
        const unsigned long before = theJournal->eventCount();
        const std::string name = _play.nextName();
        theJournal->beginSwitchChange();
        if (!name.empty())
            theJournal->tellSwitchChange(printable(name));
        const std::string why = tell(_play.play(), name.empty());
        theJournal->endSwitchChange();
        const Rest rest = waitForRest(_time, &_play.device());
        if (rest == Rest::notReached)
            say("dcache: the cache is still at work on this after 10 seconds");
        else if (rest == Rest::reached && theJournal->eventCount() == before)
            theJournal->tellNoEvent(why);
        return rest != Rest::cutShort;
    }

    /// Tells what was carried out; why it may have raised no event.
    std::string tell(const std::vector<sim::Played> &step, bool withCommands) {
        std::string why;
        for (const sim::Played &played : step) {
            if (played.isRefused()) {
                say(fmt::format("dcache: {}: {}: {}", played.where, printable(played.command), played.error));
                continue;
            }
            if (withCommands)
                theJournal->tellSwitchChange(printable(played.command));
            std::istringstream told(played.told);
            for (std::string line; std::getline(told, line);)
                theJournal->tellSwitchChange(printable(line));
            if (why.empty())
                why = whyNoEvent(played.command);
        }
        _changes += 1;
        return why;
    }

    sim::Play &_play;
    TimeFrame &_time;
    unsigned long _changes = 0;
};

} // namespace

void watch(const WatchOptions &options, Output &output) {
    if (options.play != nullptr)
        options.play->device().setPace(sim::Pace::running, options.speed);
    connect();

    Interruption interruption(output.descriptor());
    theJournal = new Journal(output, options.format, [&interruption](int error) { interruption.raise(error); });
    const JournalCloser closer;
    allEvents = options.allEvents;
    CacheLock()->start(tellEvent);

    TimeFrame time(interruption, options.duration);
    if (waitForRest(time, options.play != nullptr ? &options.play->device() : nullptr) != Rest::cutShort) {
        greet(options.play);
        const bool wholePlay = options.play != nullptr && Performance(*options.play, time).run();
        if (!wholePlay || options.duration)
            time.waitForEnd();
    }
    if (interruption.error() != 0)
        throw OutputFailed(interruption.error());
}

} // namespace dcache
