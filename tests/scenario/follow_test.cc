// A cache that followed a switch tells the same as one that is started afterwards. Random changes; where the two may differ
// stands in Exceptions.cc.
//
//     scenario_follow_test --seed=17      one seed, with all that happens
//     DATACACHE_SEEDS=1000                so many seeds in all, in place of 200
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "tests/scenario/Changes.h"
#include "tests/scenario/Exceptions.h"
#include "tests/scenario/Seeds.h"
#include "tests/scenario/Story.h"

using namespace scenario;

namespace {

constexpr unsigned kChanges = 500;

/// The switches that the seeds take their turns with, the small ones more often.
constexpr std::array<const char *, 20> kProfiles = {
    "fixed-24",      "fabric-2",   "fixed-24",  "fabric-12",     "fixed-24", "director-8", "fabric-2",
    "second-naming", "fixed-24",   "fabric-12", "fixed-24",      "fabric-2", "fixed-24",   "fixed-128",
    "fixed-24",      "director-8", "fabric-2",  "second-naming", "fixed-24", "claims-200",
};

void changeAtRandom(Scene &scene, unsigned seed) {
    Changes changes(scene.theSwitch, seed, scene.tell);
    for (unsigned made = 0; made < kChanges;) {
        made += changes.make() ? 1 : 0;
        if (!changes.isPassDue())
            continue;
        changes.beginPass();
        scene.tell("-- pass --");
        scene.pass();
        changes.endPass();
    }
}

/// What is wrong with these endings: nothing, if all is well.
std::string complaintsAbout(const Endings &endings) {
    std::string complaints;
    for (const Difference &difference : differencesOf(endings))
        if (exceptionFor(difference, endings) == nullptr)
            complaints += fmt::format("  {}: the cache that followed tells \"{}\", the fresh one \"{}\"\n",
                                      difference.line, difference.followed, difference.fresh);
    return complaints;
}

bool endsWith(const std::string &text, const std::string &end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// The first attribute in which the two switches differ, if any.
std::string unlikeStates(const Endings &endings) {
    const Lines &one = endings.followed.state;
    const Lines &other = endings.fresh.state;
    if (one == other)
        return {};
    for (const auto &[key, value] : one)
        if (lineOf(other, key) != value)
            return fmt::format("{}: \"{}\" and \"{}\"", key, value, lineOf(other, key));
    return "the second has more attributes";
}

/// The areas that the fresh cache could not read, though the switch is in order. A switch that claims to have no ports is
/// not. (Two caches that read nothing would tell the same.)
std::string areasNotRead(const Endings &endings) {
    std::string areas;
    for (const char *area : {"switch", "chassis", "blades", "ports", "accounts", "fabric"}) {
        const bool may = std::strcmp(area, "ports") == 0 && lineOf(endings.fresh.state, "Oper.Switch.MaxPorts") == "0";
        if (!may && lineOf(endings.fresh.picture, fmt::format("good.{}", area)) != "true")
            areas += fmt::format("{} ", area);
    }
    return areas;
}

// ---- random changes -----------------------------------------------------------------------------------

class Follow : public testing::TestWithParam<unsigned> {
protected:
    /// Seeds are counted from 1.
    void follow(unsigned seed) {
        const char *profile = kProfiles[seed % kProfiles.size()];
        const std::string where =
            fmt::format("seed {} ({}); for this one alone: scenario_follow_test --seed={}", seed, profile, seed);
        try {
            const Endings endings = tellTwice(profile, [seed](Scene &scene) { changeAtRandom(scene, seed); });
            if (seedAsked() != 0)
                for (const std::string &line : endings.followed.told)
                    std::cout << line << '\n';
            EXPECT_EQ(endings.followed.told, endings.fresh.told) << where;
            EXPECT_EQ(unlikeStates(endings), "") << where;
            EXPECT_EQ(areasNotRead(endings), "") << where;
            EXPECT_EQ(complaintsAbout(endings), "") << where;
            EXPECT_GE(endings.followed.told.size(), kChanges);
            note(endings);
        } catch (const std::runtime_error &error) {
            ADD_FAILURE() << error.what() << '\n' << where;
        }
    }

    /// What the seeds came to stands in the test's report: how many needed which exceptions, and the other switches that
    /// were in the fabric at their ends.
    void TearDown() override {
        RecordProperty("OtherSwitches", static_cast<int>(_otherSwitches));
        for (const auto &[name, seeds] : _needed)
            RecordProperty(name, static_cast<int>(seeds));
    }

private:
    void note(const Endings &endings) {
        std::set<std::string> needed;
        for (const Difference &difference : differencesOf(endings))
            if (const Exception *exception = exceptionFor(difference, endings))
                needed.insert(exception->name);
        for (const std::string &name : needed)
            ++_needed[name];
        for (const auto &[line, value] : endings.fresh.picture)
            _otherSwitches += line.rfind("member.", 0) == 0 && endsWith(line, ".local") && value == "false" ? 1 : 0;
    }

    std::map<std::string, unsigned> _needed;
    unsigned _otherSwitches = 0;
};

TEST_P(Follow, TellsTheSameAsACacheStartedAfterwards) {
    for (const unsigned seed : seedsOf(GetParam()))
        follow(seed);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Follow, testing::ValuesIn(seedGroups()),
                         [](const auto &group) { return fmt::format("From{}", group.param); });

// ---- the comparison -----------------------------------------------------------------------------------

TEST(Comparison, LetsNothingDifferButWhatBelongsToAbsentPorts) {
    Endings endings = tellTwice("fabric-2", [](Scene & /*scene*/) {});
    std::vector<std::string> may;
    for (const auto &[line, value] : endings.fresh.picture)
        if (exceptionFor({line, "0 " + value, value}, endings) != nullptr)
            may.push_back(line);
    std::vector<std::string> ofAbsentPorts;
    for (unsigned port = 24; port < 256; ++port)
        for (const char *what : {"type", "hardware", "status"})
            ofAbsentPorts.push_back(fmt::format("port.{}.{}", port, what));
    EXPECT_THAT(may, testing::UnorderedElementsAreArray(ofAbsentPorts));
    EXPECT_GT(endings.fresh.picture.size(), 2000U);
}

TEST(Comparison, SeesALineThatOneOfTheCachesLacks) {
    Endings endings = tellTwice("fabric-2", [](Scene & /*scene*/) {});
    endings.followed.picture.erase("accounts");
    EXPECT_EQ(complaintsAbout(endings),
              "  accounts: the cache that followed tells \"(nothing)\", the fresh one \"admin operator monitor\"\n");
}

TEST(Comparison, SeesSwitchesThatAreNotAlike) {
    Endings endings = tellTwice("fixed-24", [](Scene & /*scene*/) {});
    EXPECT_EQ(unlikeStates(endings), "");
    endings.followed.state["Oper.Switch.DomainID"] = "9";
    EXPECT_EQ(unlikeStates(endings), "Oper.Switch.DomainID: \"9\" and \"1\"");
}

// ---- exceptions ---------------------------------------------------------------------------------------

class Remembered : public testing::TestWithParam<Exception> {};

TEST_P(Remembered, IsNeededForItsExample) {
    const Exception &exception = GetParam();
    const Endings endings = tellTwice(exception.profile, exception.example);
    EXPECT_EQ(unlikeStates(endings), "");
    EXPECT_EQ(complaintsAbout(endings), "");
    std::vector<std::string> covered;
    for (const Difference &difference : differencesOf(endings)) {
        const auto covers = [&](const Exception &other) { return other.covers(difference, endings); };
        if (covers(exception) && std::count_if(exceptions().begin(), exceptions().end(), covers) == 1)
            covered.push_back(difference.line);
    }
    EXPECT_THAT(covered, testing::Not(testing::IsEmpty())) << exception.reason;
}

INSTANTIATE_TEST_SUITE_P(Exceptions, Remembered, testing::ValuesIn(exceptions()),
                         [](const auto &exception) { return std::string(exception.param.name); });

} // namespace
