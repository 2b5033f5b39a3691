// The fabric's name and its switches, as the refresh reads them.
#include "tests/datacache/refresh/FabricTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

using Lines = std::vector<std::string>;

class FabricRefresh : public FabricTest {
protected:
    void transparent() {
        theSwitch->set("Config.Switch.TransparentMode", "True", sim::Notify::no);
        ASSERT_TRUE(cache()._getSwitchInfo());
        ASSERT_TRUE(cache().isTransparentSwitch());
    }
};

// ---- the whole of it ------------------------------------------------------------------------------------

TEST_F(FabricRefresh, ReadsTheNameTheListAndEveryRecordAndLogsItAll) {
    join(3);
    join(5);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead, kListRead, recordRead("1"), recordRead("3"), recordRead("5")));
    EXPECT_THAT(log(), ElementsAreArray({
                           std::string("DCACHE: _load_fabric_info()"),
                           std::string("DCACHE: _load_switch_domain_list()"),
                           std::string("DCACHE: LsdbRecordList: 1,3,5"),
                           std::string("DCACHE: Validating domainID 1"),
                           std::string("DCACHE: _load_switch_domain_list() - skip local switch ") + support::kSwitchWwn,
                           std::string("DCACHE: Validating domainID 3"),
                           "DCACHE: _load_switch_domain_list() - add " + nameOf(3),
                           std::string("DCACHE: Validating domainID 5"),
                           "DCACHE: _load_switch_domain_list() - add " + nameOf(5),
                           std::string("DCACHE: _load_mserver_ports()"),
                       }));
    EXPECT_EQ(switches(), (Lines{nameOf(3), nameOf(5)}));
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn);
}

TEST_F(FabricRefresh, ThePassRecordsHowItEnded) {
    pass();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::fabric));
    cut(kList);
    cache().updateFabric();
    pass();
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::fabric));
    pass(); // the request stood
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::fabric));
}

TEST_F(FabricRefresh, KnownSwitchesAreFoundAndTheLogSaysWhatWasKnown) {
    join(3);
    join(5);
    refresh();
    EXPECT_TRUE(refresh());
    const Lines lines = log();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ((Lines{lines[1], lines[2]}), (Lines{"DCACHE: Initializing _origFabric with " + nameOf(3),
                                                  "DCACHE: Initializing _origFabric with " + nameOf(5)}));
    EXPECT_THAT(lines, Contains("DCACHE: _load_switch_domain_list() - found " + nameOf(3)));
    EXPECT_EQ(switches(), (Lines{nameOf(3), nameOf(5)}));
}

TEST_F(FabricRefresh, TheTwoValuesTheModeAndTheFlagAreCleared) {
    fabric()._operating_mode = 7;
    fabric()._values = {8, 9};
    fabric()._first_flag = 1;
    refresh();
    EXPECT_EQ(fabric().getOperatingMode(), 0U);
    EXPECT_EQ(fabric()._values, (std::array<unsigned short, 2>{0, 0}));
    EXPECT_EQ(fabric()._first_flag, 0);
}

// ---- the name -------------------------------------------------------------------------------------------

TEST_F(FabricRefresh, AFailedReadOfTheNameStopsTheRefresh) {
    refresh();
    principal(nameOf(9));
    cut("Oper.Switch.DomainID");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(), ElementsAre("DCACHE: _load_fabric_info()", failed("_load_fabric_info", 2024)));
    fail("Oper.Switch.DomainID");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: _load_fabric_info()", "DCACHE: sml command='Oper.Switch.DomainID', smlerror='0x5'",
                            failed("_load_fabric_info", 2024)));
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead));
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn);
}

// ---- transparent mode -----------------------------------------------------------------------------------

TEST_F(FabricRefresh, ATransparentSwitchReadsItsOwnNameAndLeavesTheRestAlone) {
    join(3);
    refresh();
    principal(nameOf(9));
    fabric()._operating_mode = 7;
    fabric()._values = {8, 9};
    fabric()._first_flag = 1;
    transparent();
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), ElementsAre("get Oper.Switch.WWN"));
    EXPECT_THAT(log(), ElementsAre("DCACHE: _load_fabric_info()", "DCACHE: Initializing _origFabric with " + nameOf(3),
                                   "DCACHE: _load_switch_domain_list()", "DCACHE: _load_mserver_ports()"));
    EXPECT_EQ(switches(), Lines{nameOf(3)});
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn);
    EXPECT_EQ(fabric().getOperatingMode(), 0U);
    EXPECT_EQ(fabric()._values, (std::array<unsigned short, 2>{0, 0}));
    EXPECT_EQ(fabric()._first_flag, 1);
}

TEST_F(FabricRefresh, ATransparentSwitchFailsWhenItsNameCannotBeRead) {
    transparent();
    fail("Oper.Switch.WWN");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(), Contains(failed("_load_fabric_info", 2024)));
}

TEST_F(FabricRefresh, ComparisonsBeginWithTheSecondRefreshOutOfTransparentMode) {
    transparent();
    refresh();
    refresh();
    theSwitch->set("Config.Switch.TransparentMode", "False", sim::Notify::no);
    cache()._getSwitchInfo();
    join(3);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    join(5);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(events().size(), 2U);
}

// ---- the list -------------------------------------------------------------------------------------------

TEST_F(FabricRefresh, AFailedReadOfTheListStopsTheRefresh) {
    cut(kList);
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(), ElementsAre("DCACHE: _load_fabric_info()", "DCACHE: _load_switch_domain_list()",
                                   failed("_load_switch_domain_list", 2081)));
}

TEST_F(FabricRefresh, ARefusedListIsLoggedAndTheValueThatTheEntryHoldsIsUsed) {
    fail(kList, 24);
    EXPECT_FALSE(refresh()); // the entry holds the principal's name, of the batch before
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: _load_fabric_info()", "DCACHE: _load_switch_domain_list()",
                            "DCACHE: smlerror = 24", std::string("DCACHE: LsdbRecordList: ") + support::kSwitchWwn,
                            std::string("DCACHE: Validating domainID ") + support::kSwitchWwn,
                            fmt::format("DCACHE: sml command='Oper.Eport.LsdbRecord.{}.WWN', smlerror='0x5'",
                                        support::kSwitchWwn),
                            failed("_load_switch_domain_list", 2117)));
}

TEST_F(FabricRefresh, ARefusedListMayStillHoldTheDomains) {
    join(3);
    sim::Fault fault;
    fault.key = kList;
    fault.status = 7;
    fault.value = "3";
    theSwitch->addFault(fault);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(log(), Contains("DCACHE: smlerror = 7"));
    EXPECT_THAT(log(), Contains("DCACHE: LsdbRecordList: 3"));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
    EXPECT_EQ(switches(), Lines{nameOf(3)});
}

TEST_F(FabricRefresh, AnEmptyListKeepsTheFabricAsItWas) {
    join(3);
    refresh();
    principal(nameOf(9));
    const int empty = lie(kList, "");
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead, kListRead));
    EXPECT_THAT(log(), Contains("DCACHE: _load_switch_domain_list - no domains reported"));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog),
                Contains("DCACHE: _load_switch_domain_list - no domains reported"));
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn);
    EXPECT_EQ(switches(), Lines{nameOf(3)});
    EXPECT_EQ(switchOf(3)->_stale, 0);
    EXPECT_THAT(events(), IsEmpty());
    theSwitch->removeFault(empty);
    refresh();
    EXPECT_EQ(events().size(), 3U) << "the new name is told when there are domains again";
}

TEST_F(FabricRefresh, AnEmptyListDoesNotCountAsTheFirstRefresh) {
    const int empty = lie(kList, "");
    refresh();
    theSwitch->removeFault(empty);
    join(3);
    refresh();
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(FabricRefresh, AListOfCommasHasAnEmptyDomainWhoseReadFails) {
    lie(kList, ",,");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead, kListRead, recordRead("")));
}

TEST_F(FabricRefresh, ListsAreSplitAtTheirCommas) {
    const std::vector<std::pair<std::string, Lines>> rows = {
        {"", {}},      {"7", {"7"}}, {"3,7", {"3", "7"}}, {"1,,2", {"1", "2"}},      {"1,2,", {"1", "2", ""}},
        {",1", {"1"}}, {",", {""}},  {",,,", {""}},       {" 1 , x", {" 1 ", " x"}},
    };
    for (const auto &[list, pieces] : rows)
        EXPECT_EQ(cache()._parseSMLList(list), pieces) << list;
}

} // namespace
