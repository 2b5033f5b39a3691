// The account refresh: the chain of names, what changes in it raise, and what failures leave behind.
#include <stdexcept>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr const char *kFirst = "Oper.Switch.FirstPotentialUser";
constexpr const char *kNext = "Oper.Switch.NextPotentialUser.";

class Accounts : public support::CacheTest {
protected:
    void SetUp() override {
        connect();
        cache()._getSwitchInfo(); // events carry the switch's name
    }

    /// Makes the switch list these names, in this order, whatever it really has.
    void list(const std::vector<std::string> &names, int32_t end = 24) {
        theSwitch->clearFaults();
        listOn(names, end);
    }
    void listOn(const std::vector<std::string> &names, int32_t end = 24) {
        std::string key = kFirst;
        std::vector<std::string> told;
        for (const std::string &name : names) {
            answer(key, name, static_cast<unsigned>(std::count(told.begin(), told.end(), key)));
            told.push_back(key);
            key = kNext + name;
        }
        sim::Fault last;
        last.key = key;
        last.status = end;
        last.times = -1;
        theSwitch->addFault(last);
    }

    /// The same key may have to answer differently when a name stands in the list twice.
    void answer(const std::string &key, const std::string &value, unsigned skip) {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.skip = skip;
        theSwitch->addFault(fault);
    }

    bool refresh() {
        forget();
        return cache()._getAcctInfo();
    }

    static std::string added(const std::string &name) {
        return fmt::format("25: UserAcctAdd switch={} name={}", support::kSwitchWwn, name);
    }
    static std::string removed(const std::string &name) {
        return fmt::format("26: UserAcctRemove switch={} name={}", support::kSwitchWwn, name);
    }
};

TEST_F(Accounts, TheFirstListFillsSilently) {
    list({"admin", "operator", "guest"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("admin", "operator", "guest"));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getAcctInfo()"));
    EXPECT_THAT(traffic(),
                ElementsAre("get Oper.Switch.FirstPotentialUser", "get Oper.Switch.NextPotentialUser.admin",
                            "get Oper.Switch.NextPotentialUser.operator", "get Oper.Switch.NextPotentialUser.guest"));
}

TEST_F(Accounts, AddsComeBeforeRemovesEachInListOrder) {
    list({"a", "b", "c"});
    refresh();
    list({"b", "d"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(added("d"), removed("a"), removed("c")));
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("b", "d"));
}

TEST_F(Accounts, RemovesKeepTheOrderOfTheOldList) {
    list({"a", "d", "b", "c"});
    refresh();
    list({"a"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(removed("d"), removed("b"), removed("c")));
}

TEST_F(Accounts, AnotherOrderAloneRaisesNothing) {
    list({"a", "b", "c"});
    refresh();
    list({"c", "a", "b"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("c", "a", "b"));
}

TEST_F(Accounts, ChangesAreToldOnce) {
    list({"a"});
    refresh();
    list({"a", "b"});
    refresh();
    EXPECT_THAT(events(), ElementsAre(added("b")));
    list({"a", "b"});
    refresh();
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Accounts, ANameListedTwiceMatchesOneEarlierNameEach) {
    list({"a", "b"});
    refresh();
    list({"a", "b", "a"});
    refresh();
    EXPECT_THAT(events(), ElementsAre(added("a")));
    list({"b", "a"});
    refresh();
    EXPECT_THAT(events(), ElementsAre(removed("a")));
}

TEST_F(Accounts, CaseMakesADifference) {
    list({"admin"});
    refresh();
    list({"Admin"});
    refresh();
    EXPECT_THAT(events(), ElementsAre(added("Admin"), removed("admin")));
}

TEST_F(Accounts, AnEmptyListRemovesAllNames) {
    list({"a", "b"});
    refresh();
    list({});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(cache().getUserAccounts(), IsEmpty());
    EXPECT_THAT(events(), ElementsAre(removed("a"), removed("b")));
}

TEST_F(Accounts, AListThatWasEmptyFillsSilentlyAgain) {
    list({"a"});
    refresh();
    list({});
    refresh();
    list({"a", "b"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("a", "b"));
}

TEST_F(Accounts, AFailedExchangeAtAnyNameKeepsTheOldList) {
    list({"a", "b", "c"});
    refresh();
    for (unsigned failing = 0; failing < 4; ++failing) {
        theSwitch->clearFaults();
        sim::Fault fault;
        fault.call = "zov_smlGetBatch";
        fault.result = 5;
        fault.skip = failing;
        theSwitch->addFault(fault); // the first rule wins
        listOn({"x", "y", "z"});
        EXPECT_FALSE(refresh()) << failing;
        EXPECT_THAT(cache().getUserAccounts(), ElementsAre("a", "b", "c")) << failing;
        EXPECT_THAT(events(), IsEmpty()) << failing;
        EXPECT_THAT(log(), ElementsAre("DCACHE: _getAcctInfo()",
                                       "DCACHE: Cache update failed: DataCache.cc:_getAcctInfo:1923"));
        EXPECT_EQ(traffic().size(), failing + 1);
    }
    list({"a", "b", "c", "d"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(added("d")));
}

TEST_F(Accounts, FailuresAreNotCopiedToTheCriticalLog) {
    list({"a"}, 5);
    EXPECT_FALSE(refresh());
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(Accounts, AnUnexpectedEndKeepsTheOldList) {
    list({"a"});
    refresh();
    for (const int32_t status : {1, 5, 23, 25, 103, -1}) {
        list({"x", "y"}, status);
        EXPECT_FALSE(refresh()) << status;
        EXPECT_THAT(traffic(), testing::SizeIs(3)) << status;
        EXPECT_THAT(cache().getUserAccounts(), ElementsAre("a")) << status;
        EXPECT_THAT(events(), IsEmpty()) << status;
        EXPECT_THAT(
            log(), ElementsAre("DCACHE: _getAcctInfo()", "DCACHE: Cache update failed: DataCache.cc:_getAcctInfo:1940"))
            << "no line of the access layer";
    }
}

TEST_F(Accounts, AChainThatNeverEndsIsCutOff) {
    list({"a"});
    refresh();
    theSwitch->clearFaults();
    sim::Fault endless;
    endless.key = "Oper.Switch.*PotentialUser*";
    endless.value = "again";
    endless.times = -1;
    theSwitch->addFault(endless);
    EXPECT_FALSE(refresh());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("a"));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: _getAcctInfo()", "DCACHE: Cache update failed: DataCache.cc:_getAcctInfo:1940"));
    EXPECT_EQ(traffic().size(), 65537U);
}

TEST_F(Accounts, AnEmptyNameIsANameToo) {
    list({"a"});
    refresh();
    list({"a", "", "b"});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), ElementsAre("get Oper.Switch.FirstPotentialUser", "get Oper.Switch.NextPotentialUser.a",
                                       "get Oper.Switch.NextPotentialUser.", "get Oper.Switch.NextPotentialUser.b"));
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre("a", "", "b"));
    EXPECT_THAT(events(), ElementsAre(added(""), added("b")));
}

TEST_F(Accounts, ALongNameIsCutInTheNextKey) {
    const std::string name(255, 'n');
    theSwitch->clearFaults();
    answer(kFirst, name, 0);
    sim::Fault end;
    end.key = "Oper.Switch.NextPotentialUser.*";
    end.status = 24;
    theSwitch->addFault(end);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre(name));
    EXPECT_EQ(traffic().at(1), "get " + (kNext + name).substr(0, 255));
}

TEST_F(Accounts, ANameWithoutItsTerminatorIsCutAt255Characters) {
    theSwitch->clearFaults();
    answer(kFirst, std::string(256, 'n'), 0);
    sim::Fault end;
    end.key = "Oper.Switch.NextPotentialUser.*";
    end.status = 24;
    theSwitch->addFault(end);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(cache().getUserAccounts(), ElementsAre(std::string(255, 'n')));
}

TEST_F(Accounts, AnExceptionOfTheCallbackPassesOut) {
    list({"a"});
    refresh();
    list({"a", "b"});
    support::onEvent([](DataCacheEvent &) { throw std::runtime_error("mine"); });
    EXPECT_THROW(refresh(), std::runtime_error);
    support::onEvent(nullptr);
}

TEST_F(Accounts, ACallbackThatRefreshesTheAccountsDoesNotDisturbTheEvents) {
    list({"a", "b", "c"});
    refresh();
    const std::vector<std::string> others = {"d", "e", "f", "g"};
    list(others);
    bool once = false;
    support::onEvent([&](DataCacheEvent &) {
        if (once)
            return;
        once = true;
        list(others);
        EXPECT_TRUE(cache()._getAcctInfo()); // finds what is in the cache already
    });
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(),
                ElementsAre(added("d"), added("e"), added("f"), added("g"), removed("a"), removed("b"), removed("c")));
    EXPECT_EQ(cache().getUserAccounts(), others);
}

TEST_F(Accounts, ACallbackThatRefreshesTheAccountsDoesNotDisturbTheRemovals) {
    const std::string suffix(40, '-'); // names too long to be kept without memory of their own
    list({"a" + suffix, "b" + suffix, "c" + suffix, "d"});
    refresh();
    list({"d"});
    std::vector<std::string> reused; // takes the memory that the cache gives back
    support::onEvent([&](DataCacheEvent &) {
        if (!reused.empty())
            return;
        list({"d"});
        EXPECT_TRUE(cache()._getAcctInfo());
        reused.assign(50, std::string(41, '#'));
    });
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(removed("a" + suffix), removed("b" + suffix), removed("c" + suffix)));
}

TEST_F(Accounts, ThePassKeepsTheResult) {
    list({"a"}, 7);
    cache().updateAccounts();
    pass();
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::accounts));
    EXPECT_THAT(log(), Contains("DCACHE: _accountsOK = false"));
    list({"a"});
    pass();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::accounts));
}

} // namespace
