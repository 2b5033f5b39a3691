// The refresh of the chassis.
#include <dlfcn.h>

#include "tests/datacache/refresh/ChassisTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Keys that the switch library answers with success, leaving the value as it finds it.
std::vector<std::string> unansweredKeys;

bool isUnanswered(const char *key) {
    for (const std::string &unanswered : unansweredKeys) {
        if (unanswered == key)
            return true;
    }
    return false;
}

} // namespace

extern "C" int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    using Call = int32_t (*)(zov_handle_t, SmlMessage *, int32_t);
    static const auto original = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "zov_smlGetBatch"));
    const std::vector<SmlMessage> before(messages, messages + count);
    const int32_t result = original(handle, messages, count);
    for (int32_t i = 0; i < count; ++i) {
        if (isUnanswered(messages[i].key))
            std::copy(std::begin(before[static_cast<std::size_t>(i)].value),
                      std::end(before[static_cast<std::size_t>(i)].value), std::begin(messages[i].value));
    }
    return result;
}

namespace {

using ChassisRefresh = ChassisTest;

constexpr const char *kCounts = "get Oper.Chassis.0.PowerSupplies Oper.Chassis.0.Fans Oper.Chassis.0.MaxSlots "
                                "Oper.Switch.EnhFaultMonFeature";

// ---- what is read ---------------------------------------------------------------------------------------

TEST_F(ChassisRefresh, ReadsTheCountsAndThenTheUnits) {
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(traffic(), ElementsAre(kCounts, "get Oper.Chassis.0.PowerSupply.0 Oper.Chassis.0.PowerSupply.1 "
                                                "Oper.Chassis.0.Fan.0 Oper.Chassis.0.Fan.1 Oper.Chassis.0.Fan.2 "
                                                "Oper.Switch.FaultList"));
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getChassisInfo()"));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(supplies(), ElementsAre(1, 1));
    EXPECT_THAT(fans(), ElementsAre(1, 1, 1));
    EXPECT_EQ(cache().getRootMaxSlots(), 0) << "a single slot is the switch itself";
    EXPECT_EQ(cache().getSwitchFaults(), (StatusList{0, 0}));
}

TEST_F(ChassisRefresh, EachSlotOfALargerChassisHasItsFaultList) {
    set("Oper.Chassis.0.PowerSupplies", "0");
    set("Oper.Chassis.0.Fans", "0");
    for (const int slots : {0, 1, 2, 5}) {
        set("Oper.Chassis.0.MaxSlots", std::to_string(slots));
        EXPECT_EQ(refresh(), 1);
        std::vector<std::string> keys = {"Oper.Switch.FaultList"};
        for (int slot = 0; slots > 1 && slot < slots; ++slot)
            keys.push_back("Oper.Blade." + std::to_string(slot) + ".FaultList");
        EXPECT_EQ(unitKeys(), keys);
        EXPECT_EQ(cache().getRootMaxSlots(), slots > 1 ? slots : 0);
    }
}

TEST_F(ChassisRefresh, WithoutFaultMonitoringTheNoOperationKeyTakesThePlacesOfTheLists) {
    set("Oper.Chassis.0.MaxSlots", "2");
    const std::vector<std::string> units = {"Oper.Chassis.0.PowerSupply.0", "Oper.Chassis.0.PowerSupply.1",
                                            "Oper.Chassis.0.Fan.0", "Oper.Chassis.0.Fan.1", "Oper.Chassis.0.Fan.2"};
    std::vector<std::string> without = units;
    without.insert(without.end(), 3, "Oper.Switch.Nop");
    std::vector<std::string> with = units;
    with.insert(with.end(), {"Oper.Switch.FaultList", "Oper.Blade.0.FaultList", "Oper.Blade.1.FaultList"});

    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(unitKeys(), with);
    set("Oper.Switch.EnhFaultMonFeature", "False");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(unitKeys(), without);

    set("Oper.Switch.EnhFaultMonFeature", "True");
    for (const std::string &notOn : {std::string("true"), std::string("TRUE"), std::string("True "), std::string("1"),
                                     std::string(), std::string(256, 'T')}) {
        theSwitch->clearFaults();
        answer("Oper.Switch.EnhFaultMonFeature", notOn);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(unitKeys(), without) << notOn;
    }
}

TEST_F(ChassisRefresh, CountsAreReadAsDecimalNumbersOf16Bits) {
    set("Oper.Chassis.0.PowerSupplies", "16");
    set("Oper.Chassis.0.Fans", "16");
    const std::vector<std::pair<std::string, unsigned short>> rows = {
        {"0", 0},
        {"1", 1},
        {"15", 15},
        {"16", 16},
        {"17", 16},
        {"255", 16},
        {"65535", 16},
        {"65536", 0},
        {"65538", 2},
        {"2147483648", 16},
        {"99999999999", 16},
        {"-1", 16},
        {"-65534", 2},
        {"-65536", 0},
        {"", 0},
        {"none", 0},
        {" 3", 3},
        {"3 of 4", 3},
        {"0x3", 0},
        {"010", 10},
        {"-99999999999", 0},
    };
    for (const auto &[text, count] : rows) {
        theSwitch->clearFaults();
        answer("Oper.Chassis.0.PowerSupplies", text);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(cache().getRootPowerSupplyCount(), count) << text;
        EXPECT_THAT(unitKeys(), SizeIs(count + 16U + 1U)) << text;

        theSwitch->clearFaults();
        answer("Oper.Chassis.0.Fans", text);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(cache().getRootFanCount(), count) << text;
        EXPECT_THAT(unitKeys(), SizeIs(16U + count + 1U)) << text;
    }
}

TEST_F(ChassisRefresh, SlotsAreKeptAsReadAndTheBatchTakesWhatFits) {
    set("Oper.Chassis.0.MaxSlots", "255");
    set("Oper.Chassis.0.PowerSupplies", "16");
    set("Oper.Chassis.0.Fans", "16");
    const std::vector<std::pair<std::string, unsigned short>> rows = {
        {"30", 30},
        {"31", 31},
        {"32", 32},
        {"255", 255},
        {"65535", 65535},
        {"-1", 65535},
        {"4294967296", 65535},
        {"65536", 0},
        {"65537", 0},
        {"-99999999999", 0},
        {"", 0},
        {"many", 0},
        {"2 slots", 2},
    };
    for (const auto &[text, slots] : rows) {
        theSwitch->clearFaults();
        answer("Oper.Chassis.0.MaxSlots", text);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(cache().getRootMaxSlots(), slots) << text;
        EXPECT_THAT(unitKeys(), SizeIs(33U + std::min<unsigned>(slots, 31))) << text;
    }
    theSwitch->clearFaults();
    EXPECT_EQ(refresh(), 1);
    ASSERT_THAT(unitKeys(), SizeIs(64));
    EXPECT_EQ(unitKeys()[15], "Oper.Chassis.0.PowerSupply.15");
    EXPECT_EQ(unitKeys()[16], "Oper.Chassis.0.Fan.0");
    EXPECT_EQ(unitKeys()[32], "Oper.Switch.FaultList");
    EXPECT_EQ(unitKeys()[63], "Oper.Blade.30.FaultList");

    set("Oper.Chassis.0.PowerSupplies", "0");
    set("Oper.Chassis.0.Fans", "0");
    EXPECT_EQ(refresh(), 1);
    ASSERT_THAT(unitKeys(), SizeIs(64));
    EXPECT_EQ(unitKeys()[0], "Oper.Switch.FaultList");
    EXPECT_EQ(unitKeys()[63], "Oper.Blade.62.FaultList");
}

TEST_F(ChassisRefresh, EveryUnitHasItsOwnState) {
    set("Oper.Chassis.0.PowerSupplies", "16");
    set("Oper.Chassis.0.Fans", "16");
    set("Oper.Chassis.0.PowerSupply.0", "Bad");
    set("Oper.Chassis.0.PowerSupply.15", "NotInstalled");
    set("Oper.Chassis.0.Fan.0", "NotInstalled");
    set("Oper.Chassis.0.Fan.15", "Bad");
    answer("Oper.Chassis.0.Fan.7", "good");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(supplies(), ElementsAre(2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3));
    EXPECT_THAT(fans(), ElementsAre(3, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 2));
}

// ---- faults ---------------------------------------------------------------------------------------------

struct FaultRow {
    std::string list;
    StatusList inSwitchList;
    StatusList inSlotList;
};

const StatusList kHealthy = {0, 0};
const StatusList kSelfTest = {32768, 0};
const StatusList kProcessor = {0, 32769};
const StatusList kBoth = {32768, 32769};

TEST_F(ChassisRefresh, FaultNamesAreFoundAnywhereInAList) {
    const std::vector<FaultRow> rows = {
        {"", kHealthy, kHealthy},
        {"FW_POST_FAIL", kSelfTest, kSelfTest},
        {"FW_POST_FAIL_CPU1", kSelfTest, kSelfTest},
        {"a, FW_POST_FAIL, b", kSelfTest, kSelfTest},
        {"xFW_POST_FAILx", kSelfTest, kSelfTest},
        {"FW_POST_FAI", kHealthy, kHealthy},
        {"fw_post_fail", kHealthy, kHealthy},
        {"FW POST FAIL", kHealthy, kHealthy},
        {"HW_MP_ACCESS_CPU0", kProcessor, kProcessor},
        {"HW_MP_ACCESS_CPU1", kProcessor, kProcessor},
        {"xHW_MP_ACCESS_CPU1x", kProcessor, kProcessor},
        {"HW_MP_ACCESS_CPU2", kHealthy, kProcessor},
        {"HW_MP_ACCESS_CPU", kHealthy, kProcessor},
        {"HW_MP_ACCESS", kHealthy, kProcessor},
        {"HW_MP_ACCESS_OTHER", kHealthy, kProcessor},
        {"HW_MP_ACCES", kHealthy, kHealthy},
        {"hw_mp_access_cpu0", kHealthy, kHealthy},
        {"HW_MP_DATA_MISMATCH", kProcessor, kHealthy},
        {"HW_MP_DATA_MISMATC", kHealthy, kHealthy},
        {"hw_mp_data_mismatch", kHealthy, kHealthy},
        {"HW_FAN_FAIL", kHealthy, kHealthy},
        {"HW_MP_ACCESS_CPU0 FW_POST_FAIL", kBoth, kBoth},
        {"FW_POST_FAIL HW_MP_DATA_MISMATCH", kBoth, kSelfTest},
    };
    set("Oper.Chassis.0.MaxSlots", "3");
    for (const FaultRow &row : rows) {
        set("Oper.Switch.FaultList", row.list);
        EXPECT_EQ(refresh(), 1);
        EXPECT_EQ(cache().getSwitchFaults(), row.inSwitchList) << "the switch: " << row.list;
        set("Oper.Switch.FaultList", "");
        for (const std::string slot : {"0", "1", "2"}) {
            set("Oper.Blade." + slot + ".FaultList", row.list);
            EXPECT_EQ(refresh(), 1);
            EXPECT_EQ(cache().getSwitchFaults(), row.inSlotList) << "slot " << slot << ": " << row.list;
            set("Oper.Blade." + slot + ".FaultList", "");
        }
    }
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kHealthy) << "no list names a fault any more";
}

TEST_F(ChassisRefresh, FaultsOfDifferentListsAddUp) {
    set("Oper.Chassis.0.MaxSlots", "3");
    set("Oper.Blade.0.FaultList", "FW_POST_FAIL");
    set("Oper.Blade.2.FaultList", "HW_MP_ACCESS_X");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kBoth);
}

TEST_F(ChassisRefresh, TheFaultListOfASingleSlotIsNotRead) {
    set("Oper.Blade.0.FaultList", "FW_POST_FAIL");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kHealthy);
}

TEST_F(ChassisRefresh, TheListOfASlotThatIsNoMoreIsNotSearched) {
    set("Oper.Chassis.0.MaxSlots", "3");
    set("Oper.Blade.2.FaultList", "FW_POST_FAIL");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kSelfTest);
    set("Oper.Chassis.0.MaxSlots", "2");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kHealthy);
}

TEST_F(ChassisRefresh, AFaultListWithoutItsEndLosesItsLastCharacter) {
    const std::string name = "FW_POST_FAIL";
    answer("Oper.Switch.FaultList", std::string(256 - name.size(), '.') + name);
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kHealthy);
    theSwitch->clearFaults();
    answer("Oper.Switch.FaultList", std::string(255 - name.size(), '.') + name + ".");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kSelfTest);
}

TEST_F(ChassisRefresh, WhatTheNoOperationKeyAnswersIsSearchedAllTheSame) {
    set("Oper.Switch.EnhFaultMonFeature", "False");
    answer("Oper.Switch.Nop", "FW_POST_FAIL HW_MP_ACCESS_X");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kSelfTest) << "as the list of the switch";
    set("Oper.Chassis.0.MaxSlots", "2");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kBoth) << "as the list of a slot, too";
}

TEST_F(ChassisRefresh, AValueThatIsNotAnsweredIsTheOneBeforeIt) {
    set("Oper.Switch.FaultList", "FW_POST_FAIL");
    EXPECT_EQ(refresh(), 1);
    set("Oper.Switch.EnhFaultMonFeature", "False");
    unansweredKeys = {"Oper.Switch.Nop"};
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kSelfTest);
    unansweredKeys.clear();
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getSwitchFaults(), kHealthy);
}

// ---- failures -------------------------------------------------------------------------------------------

class ChassisFailure : public ChassisTest {
protected:
    /// A chassis that was read, and has changed since.
    void changeAfterRefresh() {
        set("Oper.Chassis.0.MaxSlots", "2");
        refresh();
        set("Oper.Chassis.0.MaxSlots", "3");
        set("Oper.Chassis.0.PowerSupplies", "3");
        set("Oper.Chassis.0.PowerSupply.0", "Bad");
        set("Oper.Chassis.0.Fans", "4");
        set("Oper.Chassis.0.Fan.0", "Bad");
        set("Oper.Switch.FaultList", "FW_POST_FAIL");
    }

    static void expectOldStates() {
        EXPECT_EQ(cache().getRootPowerSupplyStatus(0), 1);
        EXPECT_EQ(cache().getRootPowerSupplyStatus(1), 1);
        EXPECT_EQ(cache().getRootFanStatus(0), 1);
        EXPECT_EQ(cache().getSwitchFaults(), kHealthy);
    }
};

TEST_F(ChassisFailure, InTheCountsLeavesEverythingAsItWas) {
    changeAfterRefresh();
    for (const std::string key : {"Oper.Chassis.0.PowerSupplies", "Oper.Chassis.0.Fans", "Oper.Chassis.0.MaxSlots",
                                  "Oper.Switch.EnhFaultMonFeature"}) {
        failKey(key);
        EXPECT_EQ(refresh(), 0) << key;
        EXPECT_THAT(log(),
                    ElementsAre("DCACHE: _getChassisInfo()", "DCACHE: sml command='" + key + "', smlerror='0x5'"));
        EXPECT_THAT(traffic(), ElementsAre(kCounts));
        EXPECT_THAT(events(), IsEmpty());
        EXPECT_EQ(cache().getRootPowerSupplyCount(), 2);
        EXPECT_EQ(cache().getRootFanCount(), 3);
        EXPECT_EQ(cache().getRootMaxSlots(), 2);
        expectOldStates();
    }
}

TEST_F(ChassisFailure, OfTheFirstExchangeLeavesEverythingAsItWasAndNoLine) {
    changeAfterRefresh();
    failExchange(0);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getChassisInfo()"));
    EXPECT_EQ(cache().getRootPowerSupplyCount(), 2);
    EXPECT_EQ(cache().getRootFanCount(), 3);
    EXPECT_EQ(cache().getRootMaxSlots(), 2);
    expectOldStates();
}

TEST_F(ChassisFailure, InTheUnitsTakesTheCountsAndKeepsTheStates) {
    changeAfterRefresh();
    for (const std::string key :
         {"Oper.Chassis.0.PowerSupply.0", "Oper.Chassis.0.PowerSupply.2", "Oper.Chassis.0.Fan.3",
          "Oper.Switch.FaultList", "Oper.Blade.0.FaultList", "Oper.Blade.2.FaultList"}) {
        failKey(key);
        EXPECT_EQ(refresh(), 0) << key;
        EXPECT_THAT(log(),
                    ElementsAre("DCACHE: _getChassisInfo()", "DCACHE: sml command='" + key + "', smlerror='0x5'"));
        EXPECT_THAT(traffic(), SizeIs(2));
        EXPECT_THAT(events(), IsEmpty());
        EXPECT_EQ(cache().getRootPowerSupplyCount(), 3);
        EXPECT_EQ(cache().getRootPowerSupplyStatus(2), 0) << "counted, but not read yet";
        EXPECT_EQ(cache().getRootFanCount(), 4);
        EXPECT_EQ(cache().getRootMaxSlots(), 3);
        expectOldStates();
    }
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre("21: PowerSupplyFail switch=0000000000000000 number=1 count=2"))
        << "compared with the states of the last good refresh";
    EXPECT_EQ(cache().getSwitchFaults(), kSelfTest);
    EXPECT_THAT(fans(), ElementsAre(2, 1, 1, 1));
}

TEST_F(ChassisFailure, OfTheSecondExchangeTakesTheCountsAndNoLine) {
    changeAfterRefresh();
    failExchange(1);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getChassisInfo()"));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootPowerSupplyCount(), 3);
    EXPECT_EQ(cache().getRootFanCount(), 4);
    EXPECT_EQ(cache().getRootMaxSlots(), 3);
    expectOldStates();
}

TEST_F(ChassisFailure, AtTheEndOfAListIsSilent) {
    failKey("Oper.Chassis.0.Fan.1", 24);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getChassisInfo()"));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(ChassisFailure, OfTheFirstRefreshDoesNotCount) {
    failKey("Oper.Chassis.0.Fan.1");
    EXPECT_EQ(refresh(), 0);
    EXPECT_EQ(cache().getRootPowerSupplyCount(), 2);
    EXPECT_THAT(cache().getSwitchFaults(), IsEmpty());
    set("Oper.Chassis.0.PowerSupply.0", "NotInstalled");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
}

} // namespace
