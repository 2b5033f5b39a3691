// The records of the fabric's switches: which are entered, found, skipped and swept.
#include "tests/datacache/refresh/FabricTest.h"

#include <map>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using Lines = std::vector<std::string>;

class FabricRecords : public FabricTest {};

TEST_F(FabricRecords, AListThatEndsInACommaFailsTheRefreshAfterItsDomains) {
    join(3);
    join(7);
    lie(kList, "3,7,");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead, kListRead, recordRead("3"), recordRead("7"), recordRead("")));
    EXPECT_EQ(log().back(), failed("_load_switch_domain_list", 2117));
    EXPECT_EQ(switches(), (Lines{nameOf(3), nameOf(7)}));
}

TEST_F(FabricRecords, OnlyUsableRecordsOfOtherSwitchesAreEntered) {
    for (const unsigned domain : {3U, 5U, 7U, 9U, 11U})
        join(domain);
    lie("Oper.Eport.LsdbRecord.3.Hops", "255");
    lie("Oper.Eport.LsdbRecord.5.Hops", "0");
    lie("Oper.Eport.LsdbRecord.7.WWN", "no name");
    lie("Oper.Eport.LsdbRecord.9.Hops", "");
    lie("Oper.Eport.LsdbRecord.11.Hops", "00");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), (Lines{nameOf(9), nameOf(11)}));
    const Lines lines = log();
    for (const std::string &line :
         {"skip stale switch, " + nameOf(3), "skip local switch " + nameOf(5), std::string("skip bad wwn no name")})
        EXPECT_THAT(lines, Contains("DCACHE: _load_switch_domain_list() - " + line));
}

TEST_F(FabricRecords, HopsAreLookedAtBeforeTheName) {
    join(3);
    join(5);
    lie("Oper.Eport.LsdbRecord.3.Hops", "255");
    lie("Oper.Eport.LsdbRecord.3.WWN", "");
    lie("Oper.Eport.LsdbRecord.5.Hops", "0");
    lie("Oper.Eport.LsdbRecord.5.WWN", "");
    refresh();
    EXPECT_THAT(log(), Contains("DCACHE: _load_switch_domain_list() - skip stale switch, "));
    EXPECT_THAT(log(), Contains("DCACHE: _load_switch_domain_list() - skip local switch "));
    EXPECT_THAT(log(), Not(Contains("DCACHE: _load_switch_domain_list() - skip bad wwn ")));
}

TEST_F(FabricRecords, LinesShowTheNameAsItWasRead) {
    join(3);
    lie("Oper.Eport.LsdbRecord.3.WWN", "100000c0dd00b003");
    refresh();
    EXPECT_THAT(log(), Contains("DCACHE: _load_switch_domain_list() - add 100000c0dd00b003"));
    refresh();
    EXPECT_THAT(log(), Contains("DCACHE: _load_switch_domain_list() - found 100000c0dd00b003"));
    EXPECT_EQ(switches(), Lines{nameOf(3)});
}

TEST_F(FabricRecords, ANewSwitchStartsWithNothingButItsNameAndDomain) {
    join(3);
    refresh();
    const SwitchCache &item = *switchOf(3);
    EXPECT_EQ(item.getDomainID(), 3);
    EXPECT_FALSE(item.isLocal());
    EXPECT_EQ(item._stale, 0);
    EXPECT_EQ(item._mserver_timeout, 0);
    EXPECT_EQ(item._mserver_errors, 0);
    EXPECT_EQ(item._num_ports, 0);
    EXPECT_EQ(item._port_wwn, Wwn());
    EXPECT_EQ(item.getStatus(), 2);
}

TEST_F(FabricRecords, AFoundSwitchGetsItsDomainAndLosesItsPortsAndItsMark) {
    join(3);
    refresh();
    SwitchCache &item = *switchOf(3);
    item._num_ports = 9;
    item._port_wwn = Wwn("200500C0DD00B003");
    item._mserver_errors = 4;
    item._mserver_timeout = 1;
    item._status = 5;
    lie(kList, "300");
    lie("Oper.Eport.LsdbRecord.300.WWN", nameOf(3));
    lie("Oper.Eport.LsdbRecord.300.Hops", "1");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3), &item);
    EXPECT_EQ(item.getDomainID(), 300 - 256);
    EXPECT_EQ(item._num_ports, 0);
    EXPECT_EQ(item._stale, 0);
    EXPECT_EQ(item._port_wwn.tostring(), "200500C0DD00B003");
    EXPECT_EQ(item._mserver_errors, 4);
    EXPECT_EQ(item._mserver_timeout, 1);
    EXPECT_EQ(item._status, 5);
}

TEST_F(FabricRecords, SwitchesThatTheWalkDidNotMeetAreDeleted) {
    for (const unsigned domain : {3U, 5U, 7U})
        join(domain);
    cache()._getPortInfo();
    refresh();
    leave(3);
    leave(7);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), (Lines{support::kSwitchWwn, nameOf(5)})) << "the local switch is never swept";
    const Lines lines = log();
    const auto first =
        std::find(lines.begin(), lines.end(), "DCACHE: _load_switch_domain_list() - delete " + nameOf(3));
    ASSERT_NE(first, lines.end());
    EXPECT_EQ(*(first + 1), "DCACHE: _load_switch_domain_list() - delete " + nameOf(7));
    EXPECT_EQ(*(first + 2), "DCACHE: _fabricInitialized = true");
}

TEST_F(FabricRecords, AFailedRecordLeavesTheListHalfDoneAndItsMarksStanding) {
    for (const unsigned domain : {3U, 5U, 7U})
        join(domain);
    refresh();
    leave(3);
    join(4);
    principal(nameOf(9));
    fail("Oper.Eport.LsdbRecord.7.Hops", 5);
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed("_load_switch_domain_list", 2117));
    EXPECT_EQ(switches(), (Lines{nameOf(3), nameOf(5), nameOf(7), nameOf(4)}));
    std::map<unsigned, int> marks;
    for (const unsigned domain : {3U, 4U, 5U, 7U})
        marks[domain] = switchOf(domain)->_stale;
    EXPECT_EQ(marks, (std::map<unsigned, int>{{3, 1}, {4, 0}, {5, 0}, {7, 1}}));
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn);

    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), (Lines{nameOf(5), nameOf(7), nameOf(4)}));
}

TEST_F(FabricRecords, ARecordWhoseExchangeFailsStopsTheWalkToo) {
    join(3);
    cut("Oper.Eport.LsdbRecord.3.WWN");
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed("_load_switch_domain_list", 2117));
    EXPECT_THAT(traffic(), ElementsAre(kInfoRead, kListRead, recordRead("1"), recordRead("3")));
}

TEST_F(FabricRecords, APeerThatLeavesInTheMiddleOfTheWalkFailsItAndTheNextRefreshTellsOfIt) {
    join(3);
    join(5);
    refresh();
    sim::Fault leaving;
    leaving.key = "Oper.Eport.LsdbRecord.3.*";
    leaving.action = [this] { leave(5); };
    theSwitch->addFault(leaving);
    EXPECT_FALSE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(),
                ElementsAre(fmt::format("5: SwitchRemove fabric={} switch={}", support::kSwitchWwn, nameOf(5)),
                            fmt::format("3: FabricChange fabric={} added=false", support::kSwitchWwn)));
}

TEST_F(FabricRecords, ASwitchThatIsListedTwiceIsEnteredOnce) {
    join(3);
    lie(kList, "3,3");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), Lines{nameOf(3)});
}

TEST_F(FabricRecords, OnlyFailuresAreCritical) {
    cache()._getPortInfo();
    for (const unsigned domain : {3U, 5U, 7U, 9U})
        join(domain);
    lie("Oper.Eport.LsdbRecord.5.Hops", "255");
    lie("Oper.Eport.LsdbRecord.7.WWN", "no name");
    refresh();
    leave(9);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
}

TEST_F(FabricRecords, AStatusIsLoggedWithItsSign) {
    join(3);
    sim::Fault fault;
    fault.key = kList;
    fault.status = -7;
    fault.value = "3";
    theSwitch->addFault(fault);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(log(), Contains("DCACHE: smlerror = -7"));
}

TEST_F(FabricRecords, ADomainIsADecimalNumberWhateverItBeginsWith) {
    lie(kList, "010");
    lie("Oper.Eport.LsdbRecord.010.WWN", nameOf(3));
    lie("Oper.Eport.LsdbRecord.010.Hops", "1");
    EXPECT_TRUE(refresh());
    ASSERT_NE(switchOf(3), nullptr);
    EXPECT_EQ(switchOf(3)->getDomainID(), 10);
}

TEST_F(FabricRecords, TheLocalSwitchStaysLocalWhenItsRecordClaimsHops) {
    cache()._getPortInfo();
    lie("Oper.Eport.LsdbRecord.1.Hops", "2");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), Lines{support::kSwitchWwn});
    EXPECT_TRUE(fabric().getFirstSwitch()->isLocal());
}

TEST_F(FabricRecords, ALocalSwitchWithAMarkIsSweptLikeAnyOther) {
    cache()._getPortInfo();
    fabric().getFirstSwitch()->_stale = 1;
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switches(), Lines());
}

TEST_F(FabricRecords, AFabricWithoutANameIsAnotherFabric) {
    join(3);
    refresh();
    const int nameless = lie("Oper.Switch.WhoIsPrincipal", "none");
    refresh();
    EXPECT_THAT(events(), ElementsAre(std::string("2: FabricRemove fabric=") + support::kSwitchWwn,
                                      "1: FabricAdd fabric=0000000000000000",
                                      "4: SwitchAdd fabric=0000000000000000 switch=" + nameOf(3)));
    theSwitch->removeFault(nameless);
    refresh();
    EXPECT_THAT(events(), ElementsAre("2: FabricRemove fabric=0000000000000000",
                                      std::string("1: FabricAdd fabric=") + support::kSwitchWwn,
                                      fmt::format("4: SwitchAdd fabric={} switch={}", support::kSwitchWwn, nameOf(3))));
}

TEST_F(FabricRecords, HopsAreComparedWhole) {
    join(3);
    for (const char *hops : {"2550", "0255", "255 ", " 0", "0 "}) {
        const int rule = lie("Oper.Eport.LsdbRecord.3.Hops", hops);
        EXPECT_TRUE(refresh());
        EXPECT_EQ(switches(), Lines{nameOf(3)}) << hops;
        theSwitch->removeFault(rule);
    }
}

TEST_F(FabricRecords, AnElementThatLostItsSwitchIsPassedOver) {
    join(3);
    refresh();
    fabric().findSwitchCacheElement(Wwn(nameOf(3)))->item(nullptr);
    EXPECT_TRUE(refresh()); // it is entered anew
    ASSERT_NE(switchOf(3), nullptr);
    EXPECT_EQ(switchOf(3)->getDomainID(), 3);
}

} // namespace
