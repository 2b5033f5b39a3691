// Random databases, edited by random scripts, committed, and loaded again: cache and switch are at all times what a model of
// them says.
//
//     scenario_zoningRoundTrip_test --seed=17      one seed, with every edit of it
//     DATACACHE_SEEDS=1000                         so many seeds in all, in place of 200
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include "datacache/DataCache.h"
#include "tests/scenario/Process.h"
#include "tests/scenario/Seeds.h"
#include "tests/scenario/zoningReading.h"
#include "tests/scenario/zoningScript.h"
#include "tests/support/Events.h"
#include "tests/support/Uptime.h"

using namespace scenario;

namespace {

constexpr unsigned kFullEvery = 100; // a seed in so many begins with a full database
constexpr const char *kHolder = "provider";
constexpr const char *kSwitch = "100000C0DD00A1B2";

/// What a seed came to. From process to process it goes as lines of text.
struct Outcome {
    std::map<std::string, int> happened; ///< "createZone = 3", "commit accepted", ...
    std::string complaints;
    std::vector<std::string> told;
};

// ---- one round trip after another ---------------------------------------------------------------------

class RoundTrips {
public:
    explicit RoundTrips(unsigned seed) : _random(seed), _isFull(seed % kFullEvery == 0) {
        support::setUptimeSource([this] { return _switch->uptime(); });
    }
    ~RoundTrips() {
        support::setUptime(_switch->uptime());
        _switch.reset();
    }
    RoundTrips(const RoundTrips &) = delete;
    RoundTrips &operator=(const RoundTrips &) = delete;

    Outcome run() {
        prepareSwitch();
        start();
        const unsigned rounds = _isFull ? 2 : 2 + _random.below(3);
        for (unsigned round = 0; round < rounds && _outcome.complaints.empty(); ++round) {
            otherClient();
            editRound();
        }
        _cache->clearZoningCache();
        check("objects that are left", _switch->zoningObjects() == sim::ZoningObjectCounts());
        for (const std::string &misuse : _switch->misuses())
            complain(misuse);
        return _outcome;
    }

private:
    void complain(const std::string &complaint) { _outcome.complaints += complaint + '\n'; }
    void check(const std::string &what, bool good) {
        if (!good)
            complain(what + ": wrong");
    }
    void checkAll(const std::string &when) {
        const std::string differences = differencesOf(*_cache, _model) + differencesOf(*_switch, _onSwitch);
        if (!differences.empty())
            complain(when + ": " + differences);
        check(when + ": objects alive", _switch->zoningObjects() == _model.objects());
    }
    void tell(const std::string &line) { _outcome.told.push_back(line); }
    void happened(const std::string &what) {
        ++_outcome.happened[what];
        tell("-- " + what);
    }

    void define(const sim::ZoningDatabase &database) {
        _switch->setZoning(database);
        _onSwitch.commit(database);
    }
    void activate(const std::string &name) {
        _switch->activateZoneset(name);
        _onSwitch.activate(name);
    }
    void limit(const ZoningLimits &limits) {
        _switch->setZoningLimits(limits);
        _onSwitch.limits = limits;
    }

    void prepareSwitch() {
        if (_isFull)
            return define(fullDatabase());
        if (!_random.oneIn(4))
            limit(smallLimits(_random));
        define(randomDatabase(_random, _onSwitch.limits));
        if (!_onSwitch.defined().zonesets.empty() && !_random.oneIn(4))
            activate(_random.of(_onSwitch.defined().zonesets).name);
        if (_random.oneIn(4)) // what is active need not be defined any more
            define(randomDatabase(_random, _onSwitch.limits));
    }

    void start() {
        DataCache::init();
        _cache = DataCache::getInstance();
        DataCache::releaseInstance();
        _cache->startEventMonitor(support::recordEvent);
        _model.limits = _onSwitch.limits;
        pass("the first pass");
    }

    /// A pass tells what it finds changed, and ends with cache and switch as the models are.
    void pass(const std::string &when) {
        check("notifications", _switch->waitUntilQuiet());
        support::takeEvents();
        check("pass", _cache->evaluateCaches());
        _switch->clearRecords();
        std::string expected;
        for (const std::string &event : _model.refresh(_onSwitch))
            expected += event == "database" ? fmt::format("28: ZoningDBChange switch={}\n", kSwitch)
                                            : fmt::format("27: ActiveZonesetChange switch={} {}\n", kSwitch, event);
        expected += "33: DataCacheUpdateComplete";
        const std::string difference =
            firstDifference("events", fmt::format("{}", fmt::join(support::takeEvents(), "\n")), expected);
        if (!difference.empty())
            complain(when + ": " + difference);
        checkAll(when);
    }

    /// What other clients do between the edits of this one.
    void otherClient() {
        if (_isFull || !_random.oneIn(3))
            return;
        const unsigned what = _random.below(4);
        tell("-- another client");
        if (what == 0)
            activate("");
        if (what == 1 && !_onSwitch.defined().zonesets.empty())
            activate(_random.of(_onSwitch.defined().zonesets).name);
        if (what == 2)
            define(randomDatabase(_random, _onSwitch.limits));
        if (what == 3) // which the cache does not notice
            limit(smallLimits(_random));
        pass("after another client");
    }

    void editRound() {
        check("lock", _cache->ZoningLock(kHolder));
        const unsigned edits = _isFull ? 8 : 5 + _random.below(100);
        for (unsigned i = 0; i < edits && _outcome.complaints.empty(); ++i) {
            check("the lock before the edit", isLockOk());
            edit();
            if (!_isFull && i % 16 == 0)
                checkAll("between edits");
        }
        checkAll("before the commit");
        if (_random.oneIn(8))
            giveUp();
        else
            commit();
        check("lock and admin mode on the switch", _switch->zoningLockHolder() == 0 && _switch->adminModeHolder() == 0);
    }

    void edit() {
        const ZoningEdit made = editAtRandom(_random, *_cache, _model);
        _switch->clearRecords();
        tell(fmt::format("{} = {}", made.text, made.onModel));
        ++_outcome.happened[fmt::format("{} = {}", made.name, made.onModel)];
        if (made.onCache != made.onModel)
            complain(fmt::format("{}: the cache answers {}, the model {}", made.text, made.onCache, made.onModel));
        const std::string differences = differencesOfCounts(*_cache, _model);
        if (!differences.empty())
            complain(made.text + ": " + differences);
    }

    bool isLockOk() const {
        bool expired = true;
        return _cache->LockIdOK(kHolder, expired) && !expired;
    }

    void commit() {
        const std::optional<sim::ZoningDatabase> expected = _model.committed(_onSwitch.limits);
        check("the commit is sent", _cache->replaceZoningDB());
        check(expected ? "the lock after a commit" : "the lock after a rejected commit", isLockOk() == !!expected);
        happened(expected ? "commit accepted" : "commit rejected");
        if (!expected)
            return loadAnew("after a rejected commit");
        _onSwitch.commit(*expected);
        checkAll("after the commit");
        pass("after the commit's pass");
    }

    void giveUp() {
        check("unlock", _cache->ZoningUnlock());
        check("the lock after giving up", !isLockOk());
        happened("given up");
        loadAnew("after giving up");
    }

    /// The switch is as it was. The cache gets rid of the edits, but for those of the active zone set, which has not changed.
    void loadAnew(const std::string &when) {
        checkAll(when);
        _cache->reloadZoning();
        _model.forgetDefined();
        pass(when);
    }

    Random _random;
    bool _isFull;
    std::unique_ptr<sim::Simulator> _switch = sim::create();
    DataCache *_cache = nullptr;
    ZoningOnSwitch _onSwitch;
    ZoningModel _model;
    Outcome _outcome;
};

// ---- from one process to another ----------------------------------------------------------------------

std::string packed(const Outcome &outcome) {
    std::string text;
    for (const auto &[what, times] : outcome.happened)
        text += fmt::format("+{}\t{}\n", what, times);
    std::istringstream complaints(outcome.complaints);
    for (std::string line; std::getline(complaints, line);)
        text += fmt::format("!{}\n", line);
    for (const std::string &line : outcome.told)
        text += fmt::format(">{}\n", line);
    return text;
}

Outcome unpacked(const std::string &text) {
    Outcome outcome;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::string rest = line.substr(1);
        const std::size_t tab = rest.find('\t');
        if (line[0] == '+')
            outcome.happened[rest.substr(0, tab)] += static_cast<int>(std::stol(rest.substr(tab + 1)));
        else if (line[0] == '!')
            outcome.complaints += rest + '\n';
        else
            outcome.told.push_back(rest);
    }
    return outcome;
}

Outcome outcomeOf(unsigned seed) {
    return unpacked(inProcess([seed] { return packed(RoundTrips(seed).run()); }));
}

// ---- the tests ----------------------------------------------------------------------------------------

class ZoningRoundTrip : public testing::TestWithParam<unsigned> {
protected:
    void follow(unsigned seed) {
        const std::string where =
            fmt::format("seed {}; for this one alone: scenario_zoningRoundTrip_test --seed={}", seed, seed);
        try {
            const Outcome outcome = outcomeOf(seed);
            if (seedAsked() != 0)
                for (const std::string &line : outcome.told)
                    std::cout << line << '\n';
            EXPECT_EQ(outcome.complaints, "") << where;
            EXPECT_FALSE(outcome.told.empty()) << where;
            for (const auto &[what, times] : outcome.happened)
                _happened[what] += times;
        } catch (const std::runtime_error &error) {
            ADD_FAILURE() << error.what() << '\n' << where;
        }
    }

    void TearDown() override {
        RecordProperty("CommitsAccepted", _happened["commit accepted"]);
        RecordProperty("CommitsRejected", _happened["commit rejected"]);
        RecordProperty("GivenUp", _happened["given up"]);
    }

    std::map<std::string, int> _happened;
};

TEST_P(ZoningRoundTrip, EndsAsTheModelSays) {
    for (const unsigned seed : seedsOf(GetParam()))
        follow(seed);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ZoningRoundTrip, testing::ValuesIn(seedGroups()),
                         [](const auto &group) { return fmt::format("From{}", group.param); });

/// The results that an edit can have while the switch library does its part.
const std::map<std::string, std::vector<int>> kResults = {
    {"createZoneset", {0, 1, 3, 4}},
    {"removeZoneset", {0, 2}},
    {"createZone", {0, 1, 3, 4}},
    {"removeZone", {0, 2}},
    {"createZoneAlias", {0, 3, 4}},
    {"removeZoneAlias", {0, 2}},
    {"addMemberToZone", {0, 1, 2, 3, 4}},
    {"removeMemberFromZone", {0, 1, 2}},
    {"addMemberToZoneAlias", {0, 1, 2, 3, 4}},
    {"removeMemberFromZoneAlias", {0, 1, 2}},
    {"removeMember", {0, 1}},
    {"addZoneToZoneset", {0, 2, 3, 4}},
    {"removeZoneFromZoneset", {0, 2}},
};

TEST(ZoningRoundTripSeeds, MeetEveryResultOfEveryEditAndEveryEndOfAScript) {
    constexpr unsigned enough = 10;
    std::set<std::string> met;
    for (unsigned seed = 1; seed <= enough; ++seed)
        for (const auto &[what, times] : outcomeOf(seed).happened)
            met.insert(what);
    std::set<std::string> expected = {"commit accepted", "commit rejected", "given up"};
    for (const auto &[edit, results] : kResults)
        for (const int result : results)
            expected.insert(fmt::format("{} = {}", edit, result));
    EXPECT_EQ(met, expected);
}

} // namespace
