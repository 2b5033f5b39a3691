// What the client hears of the fabric: every change of its name and its members, with all events and log lines.
#include "tests/datacache/refresh/FabricTest.h"

#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Domains = std::vector<unsigned>;
using Lines = std::vector<std::string>;

constexpr const char *kFormer = "10000000C0DE0001";
constexpr const char *kOther = "10000000C0DE0002";

/// A change of the members and what is told of it. In the texts O and N stand for the names of the fabric before and
/// after, and numbers for the names of the switches with these domain IDs.
struct Change {
    const char *what;
    Domains before;
    Domains after;
    Lines events;
    Lines log;
};

class FabricEvents : public FabricTest {
protected:
    /// A fabric of this name and these members.
    void become(const std::string &name, const Domains &members) {
        for (const unsigned domain : std::set<unsigned>(_members)) {
            if (std::count(members.begin(), members.end(), domain) == 0)
                leave(domain);
        }
        for (const unsigned domain : members) {
            if (_members.count(domain) == 0)
                join(domain);
        }
        _members = {members.begin(), members.end()};
        principal(name);
    }

    static std::string added(const std::string &fabric, unsigned domain) {
        return fmt::format("4: SwitchAdd fabric={} switch={}", fabric, nameOf(domain));
    }
    static std::string removed(const std::string &fabric, unsigned domain) {
        return fmt::format("5: SwitchRemove fabric={} switch={}", fabric, nameOf(domain));
    }

    /// "add N 3", "fabric changed N added" and so on, written out.
    static std::string event(const std::string &words, const std::string &name) {
        char what[32] = "";
        char whose[2] = "";
        char rest[32] = "";
        std::sscanf(words.c_str(), "%31s %1s %31s", what, whose, rest);
        const std::string fabric = whose[0] == 'O' ? kFormer : name;
        const std::string kind = what;
        if (kind == "switch-add")
            return added(fabric, static_cast<unsigned>(std::stoi(rest)));
        if (kind == "switch-remove")
            return removed(fabric, static_cast<unsigned>(std::stoi(rest)));
        if (kind == "fabric-add")
            return "1: FabricAdd fabric=" + fabric;
        if (kind == "fabric-remove")
            return "2: FabricRemove fabric=" + fabric;
        return fmt::format("3: FabricChange fabric={} added={}", fabric, std::string(rest) == "added");
    }

    /// "check 3", "seek 3 at 5" or a line but for "DCACHE: ", written out.
    static Lines line(const std::string &words) {
        unsigned first = 0;
        unsigned second = 0;
        if (std::sscanf(words.c_str(), "check %u", &first) == 1)
            return {"DCACHE: Checking " + nameOf(first)};
        if (std::sscanf(words.c_str(), "seek %u at %u", &first, &second) == 2)
            return {fmt::format("DCACHE: Evaluating switch {} for deletion", nameOf(second)),
                    "DCACHE: _origFabric[i] = " + nameOf(first)};
        return {"DCACHE: " + words};
    }

    /// The second refresh of a fabric, after this change. Only the log's lines about the comparison count: those after
    /// the first that it writes.
    void expect(const Change &change, const std::string &name) {
        SCOPED_TRACE(std::string(change.what) + (name == kFormer ? ", same name" : ", other name"));
        become(kFormer, change.before);
        ASSERT_TRUE(refresh());
        EXPECT_THAT(events(), IsEmpty());
        become(name, change.after);
        ASSERT_TRUE(refresh());

        Lines expectedEvents;
        for (const std::string &words : change.events)
            expectedEvents.push_back(event(words, name));
        EXPECT_EQ(events(), expectedEvents);

        Lines expectedLog = {"DCACHE: _fabricInitialized = true"};
        for (const std::string &words : change.log) {
            for (const std::string &text : line(words))
                expectedLog.push_back(text);
        }
        expectedLog.push_back("DCACHE: _load_mserver_ports()");
        const Lines all = log();
        const auto begin = std::find(all.begin(), all.end(), expectedLog.front());
        EXPECT_EQ(Lines(begin, all.end()), expectedLog);
        EXPECT_EQ(support::readFile(support::kCriticalLog), "");
    }

private:
    std::set<unsigned> _members;
};

constexpr const char *kSame = "_fabric._fabric_name == _origFabricName";
constexpr const char *kNew = "Checking for new switches in the fabric";
constexpr const char *kDiffers = "_fabric._fabric_name != _origFabricName";

const std::vector<Change> &underTheSameName() {
    static const std::vector<Change> all = {
        {"nothing",
         {3, 5},
         {3, 5},
         {},
         {kSame, kNew, "check 3", "check 5", "seek 3 at 3", "seek 5 at 3", "seek 5 at 5"}},
        {"one joins",
         {3, 5},
         {3, 5, 7},
         {"switch-add N 7", "fabric-change N added"},
         {kSame, kNew, "check 3", "check 5", "check 7", "seek 3 at 3", "seek 5 at 3", "seek 5 at 5"}},
        {"two join",
         {5},
         {5, 3, 7},
         {"switch-add N 3", "switch-add N 7", "fabric-change N added"},
         {kSame, kNew, "check 5", "check 3", "check 7", "seek 5 at 5"}},
        {"one leaves",
         {3, 5},
         {5},
         {"switch-remove N 3", "fabric-change N removed"},
         {kSame, kNew, "check 5", "seek 3 at 5", "seek 5 at 5"}},
        {"two leave",
         {3, 5, 7},
         {5},
         {"switch-remove N 3", "switch-remove N 7", "fabric-change N removed"},
         {kSame, kNew, "check 5", "seek 3 at 5", "seek 5 at 5", "seek 7 at 5"}},
        {"one joins and one leaves",
         {3, 5},
         {5, 7},
         {"switch-add N 7", "switch-remove N 3", "fabric-change N removed", "fabric-change N added"},
         {kSame, kNew, "check 5", "check 7", "seek 3 at 5", "seek 3 at 7", "seek 5 at 5"}},
        {"all are others",
         {3, 5},
         {7, 9},
         {"switch-add N 7", "switch-add N 9", "switch-remove N 3", "switch-remove N 5", "fabric-change N removed",
          "fabric-change N added"},
         {kSame, kNew, "check 7", "check 9", "seek 3 at 7", "seek 3 at 9", "seek 5 at 7", "seek 5 at 9"}},
        {"there were none, and are some",
         {},
         {3, 5},
         {"switch-add N 3", "switch-add N 5", "fabric-change N added"},
         {kSame, kNew, "check 3", "check 5"}},
        {"there were none, and are none", {}, {}, {}, {kSame, kNew}},
        {"all are gone",
         {3, 5},
         {},
         {"switch-remove N 3", "switch-remove N 5", "fabric-change N removed"},
         {kSame, kNew}},
    };
    return all;
}

const std::vector<Change> &underAnotherName() {
    static const Lines segmentationLog = {kDiffers, "Segmentation in original fabric", "Creation of new fabric"};
    static const Lines replacementLog = {kDiffers, "Delete original fabric", "Create new fabric"};
    static const Lines mergeLog = {kDiffers, "Merge fabric", "Delete old fabric"};
    static const std::vector<Change> all = {
        {"nothing",
         {3, 5},
         {3, 5},
         {"fabric-remove O", "fabric-add N", "switch-add N 3", "switch-add N 5"},
         replacementLog},
        {"one joins",
         {3, 5},
         {3, 5, 7},
         {"fabric-change N added", "fabric-remove O", "switch-add N 3", "switch-add N 5"},
         mergeLog},
        {"one leaves",
         {3, 5, 7},
         {3, 7},
         {"fabric-change O removed", "fabric-add N", "switch-add N 3", "switch-add N 7"},
         segmentationLog},
        {"one joins and one leaves",
         {3, 5},
         {5, 7},
         {"fabric-change O removed", "fabric-add N", "switch-add N 5"},
         segmentationLog},
        {"all are others", {3, 5}, {7, 9}, {"fabric-change O removed", "fabric-add N"}, segmentationLog},
        {"there were none, and are some", {}, {3, 5}, {"fabric-change N added", "fabric-remove O"}, mergeLog},
        {"there were none, and are none", {}, {}, {"fabric-remove O", "fabric-add N"}, replacementLog},
        {"all are gone", {3, 5}, {}, {"fabric-change O removed", "fabric-add N"}, segmentationLog},
    };
    return all;
}

class SameName : public FabricEvents, public testing::WithParamInterface<std::size_t> {};
class OtherName : public FabricEvents, public testing::WithParamInterface<std::size_t> {};

TEST_P(SameName, TellsWhoJoinedAndWhoLeft) {
    expect(underTheSameName()[GetParam()], kFormer);
}

TEST_P(OtherName, TellsOfASegmentationAMergeOrAReplacement) {
    expect(underAnotherName()[GetParam()], kOther);
}

INSTANTIATE_TEST_SUITE_P(Changes, SameName, testing::Range<std::size_t>(0, underTheSameName().size()));
INSTANTIATE_TEST_SUITE_P(Changes, OtherName, testing::Range<std::size_t>(0, underAnotherName().size()));

TEST_F(FabricEvents, TheFirstRefreshTellsNothing) {
    become(kFormer, {3, 5});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(switches(), (Lines{nameOf(3), nameOf(5)}));
}

TEST_F(FabricEvents, NothingIsToldUntilOneRefreshHasFinishedItsWalk) {
    become(kFormer, {3, 5});
    fail("Oper.Eport.LsdbRecord.5.*");
    EXPECT_FALSE(refresh());
    become(kFormer, {3, 5, 7});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    become(kFormer, {3, 5});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(),
                ElementsAre(removed(kFormer, 7), fmt::format("3: FabricChange fabric={} added=false", kFormer)));
}

TEST_F(FabricEvents, EventsComeBetweenTheLinesThatAnnounceThem) {
    become(kFormer, {3, 5});
    refresh();
    become(kOther, {3});
    std::vector<std::string> seen;
    support::onEvent([&](DataCacheEvent &event) { seen.push_back(log().back() + " | " + support::describe(event)); });
    refresh();
    support::onEvent(nullptr);
    EXPECT_THAT(
        seen, ElementsAre(fmt::format("DCACHE: Segmentation in original fabric | 3: FabricChange fabric={} added=false",
                                      kFormer),
                          fmt::format("DCACHE: Creation of new fabric | 1: FabricAdd fabric={}", kOther),
                          "DCACHE: Creation of new fabric | " + added(kOther, 3)));
}

TEST_F(FabricEvents, WhatAFailedWalkAddedCountsAsKnownInTheNextComparison) {
    become(kFormer, {3});
    refresh();
    become(kFormer, {3, 5, 7});
    fail("Oper.Eport.LsdbRecord.7.*");
    EXPECT_FALSE(refresh()); // 5 has been entered, 7 has not
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(added(kFormer, 7), fmt::format("3: FabricChange fabric={} added=true", kFormer)));
}

TEST_F(FabricEvents, AFailedWalkTellsNothingAndKeepsTheFormerName) {
    become(kFormer, {3, 5});
    refresh();
    become(kOther, {3, 5});
    fail("Oper.Eport.LsdbRecord.3.*");
    EXPECT_FALSE(refresh());
    EXPECT_EQ(fabric().getFabricWwn(), kFormer);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(),
                ElementsAre(fmt::format("2: FabricRemove fabric={}", kFormer),
                            fmt::format("1: FabricAdd fabric={}", kOther), added(kOther, 3), added(kOther, 5)));
}

TEST_F(FabricEvents, TheLocalSwitchTakesPartLikeTheOthers) {
    become(kFormer, {3});
    cache()._getPortInfo();
    refresh(); // the local switch, then 3
    become(kOther, {});
    refresh();
    EXPECT_THAT(events(), ElementsAre(fmt::format("3: FabricChange fabric={} added=false", kFormer),
                                      fmt::format("1: FabricAdd fabric={}", kOther),
                                      fmt::format("4: SwitchAdd fabric={} switch={}", kOther, support::kSwitchWwn)));
}

TEST_F(FabricEvents, MembershipLooksAtCopiesFromTheFirstEntryOn) {
    const std::vector<Wwn> names = {Wwn(nameOf(3)), Wwn(nameOf(5))};
    EXPECT_TRUE(cache()._fabricContainsWWN(names, Wwn(nameOf(3))));
    EXPECT_TRUE(cache()._fabricContainsWWN(names, Wwn(nameOf(5))));
    EXPECT_FALSE(cache()._fabricContainsWWN(names, Wwn(nameOf(7))));
    EXPECT_FALSE(cache()._fabricContainsWWN({}, Wwn()));
    using ByValue = bool (DataCache::*)(std::vector<Wwn>, Wwn) const;
    static_assert(std::is_same_v<decltype(&DataCache::_fabricContainsWWN), ByValue>);
}

TEST_F(FabricEvents, ACallbackThatRefreshesTheFabricDoesNotDisturbTheEvents) {
    const Domains all = {3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    become(kFormer, all);
    refresh();
    become(kFormer, {});
    std::vector<std::vector<Wwn>> reused; // takes the memory that the cache gives back
    support::onEvent([&](DataCacheEvent &event) {
        if (event.type == 5 && reused.empty()) {
            cache()._getFabricInfo();
            reused.assign(50, std::vector<Wwn>(all.size(), Wwn("1111111111111111")));
        }
    });
    refresh();
    support::onEvent(nullptr);
    Lines expected;
    for (const unsigned domain : all)
        expected.push_back(removed(kFormer, domain));
    expected.push_back(fmt::format("3: FabricChange fabric={} added=false", kFormer));
    EXPECT_EQ(events(), expected);
}

TEST_F(FabricEvents, ASwitchThatWasKnownTwiceIsToldOfTwiceUnderTheNewName) {
    become(kFormer, {3});
    refresh();
    fabric().addSwitch(Wwn(nameOf(3)));
    become(kOther, {3});
    refresh();
    EXPECT_THAT(events(),
                ElementsAre(fmt::format("2: FabricRemove fabric={}", kFormer),
                            fmt::format("1: FabricAdd fabric={}", kOther), added(kOther, 3), added(kOther, 3)));
    EXPECT_EQ(switches(), Lines{nameOf(3)});
}

TEST_F(FabricEvents, ACallbackThatRefreshesTheFabricUnderAnotherNameDoesNotDisturbTheEvents) {
    struct Row {
        const char *name;
        Domains before;
        Domains after;
        Domains meanwhile; ///< what the callback's own refreshes find
        Lines events;      ///< but for those of the callback's refreshes
    };
    const std::vector<Row> rows = {
        {kOther,
         {3, 5},
         {3, 5, 7},
         {3, 5, 7},
         {"fabric-change N added", "fabric-remove O", "switch-add N 3", "switch-add N 5"}},
        {kOther, {13, 15}, {13, 15}, {15}, {"fabric-remove O", "fabric-add N", "switch-add N 13", "switch-add N 15"}},
        {kOther,
         {23, 25, 27},
         {23, 25},
         {25},
         {"fabric-change O removed", "fabric-add N", "switch-add N 23", "switch-add N 25"}},
        {kFormer,
         {33, 35},
         {35, 37},
         {33},
         {"switch-add N 37", "switch-remove N 33", "fabric-change N removed", "fabric-change N added"}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.events.front());
        support::onEvent(nullptr);
        become(kFormer, row.before);
        refresh();
        refresh();
        become(row.name, row.after);
        Lines heard;
        bool nested = false;
        bool once = false;
        support::onEvent([&](DataCacheEvent &event) {
            if (!nested)
                heard.push_back(support::describe(event));
            if (once)
                return;
            once = nested = true;
            become("10000000C0DE0003", row.meanwhile);
            EXPECT_TRUE(cache()._getFabricInfo());
            EXPECT_TRUE(cache()._getFabricInfo()); // whose snapshot has nothing of the former fabric
            nested = false;
        });
        refresh();
        Lines expected;
        for (const std::string &words : row.events)
            expected.push_back(event(words, row.name));
        EXPECT_EQ(heard, expected);
    }
    support::onEvent(nullptr);
}

} // namespace
