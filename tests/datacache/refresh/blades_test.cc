// The blade refresh. Each slot's read clears all tables, so a picture holds the last slot's blade only.
#include <stdexcept>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string bladeKey(unsigned slot, const std::string &attribute) {
    return fmt::format("Oper.Blade.{}.{}", slot, attribute);
}

class Blades : public support::CacheTest {
protected:
    void SetUp() override {
        connect();
        cache()._getSwitchInfo();
    }

    /// A chassis whose slots hold these: the name of a kind, or nothing.
    void equip(const std::vector<std::string> &kinds) {
        theSwitch->clearFaults();
        answer("Oper.Chassis.0.MaxSlots", std::to_string(kinds.size()));
        for (unsigned slot = 0; slot < kinds.size(); ++slot)
            fillSlot(slot, kinds[slot]);
    }
    void fillSlot(unsigned slot, const std::string &kind) {
        const bool present = !kind.empty();
        answer(bladeKey(slot, "OperState"), present ? "Online" : "NotInstalled");
        answer(bladeKey(slot, "PlanarPartNum"), present ? "31-1" : "");
        answer(bladeKey(slot, "BoardSerialNum"), present ? "SN1" : "");
        answer(bladeKey(slot, "Type"), kind);
        answer(bladeKey(slot, "AdminState"), "Online");
        answer(bladeKey(slot, "DiagStatus"), "Good");
        answer(bladeKey(slot, "TempSensors"), "4");
        answer(bladeKey(slot, "VoltageSensors"), "6");
    }

    /// From now on a key answers this; later answers for the same key come first.
    void answer(const std::string &key, const std::string &value) { add(key, value, std::nullopt); }
    void fail(const std::string &key) { add(key, std::nullopt, 5); }
    void failWith(const std::string &key, const std::string &value) { add(key, value, 5); }

    bool refresh() {
        forget();
        for (auto rule = _rules.rbegin(); rule != _rules.rend(); ++rule)
            theSwitch->addFault(*rule);
        const bool result = cache()._getBladeInfo() == 1;
        theSwitch->clearFaults();
        return result;
    }
    bool refresh(const std::vector<std::string> &kinds) {
        _rules.clear();
        equip(kinds);
        return refresh();
    }

    static std::vector<int> kinds(unsigned slots) {
        std::vector<int> all;
        for (unsigned slot = 0; slot < slots; ++slot)
            all.push_back(cache().getRootBladeKind(static_cast<unsigned short>(slot)));
        return all;
    }

    static std::string event(int type, const std::string &name, unsigned slot) {
        return fmt::format("{}: {} switch={} {}={}", type, name, support::kSwitchWwn,
                           name.rfind("PowerSupply", 0) == 0 ? "number" : "slot", slot);
    }

    static std::string failed(int line) {
        return fmt::format("DCACHE: Cache update failed: DataCache.cc:_getBladeInfo:{}", line);
    }

private:
    void add(const std::string &key, const std::optional<std::string> &value, std::optional<int32_t> status) {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.status = status;
        fault.times = -1;
        _rules.push_back(fault);
    }

    std::vector<sim::Fault> _rules;
};

// ---- what is read and kept ------------------------------------------------------------------------------

TEST_F(Blades, EachSlotIsOneExchange) {
    EXPECT_TRUE(refresh({"IO", "CPU"}));
    EXPECT_THAT(traffic(), ElementsAre("get Oper.Chassis.0.MaxSlots",
                                       "get Oper.Blade.0.OperState Oper.Blade.0.PlanarPartNum "
                                       "Oper.Blade.0.BoardSerialNum Oper.Blade.0.Type Oper.Blade.0.AdminState "
                                       "Oper.Blade.0.DiagStatus Oper.Blade.0.TempSensors Oper.Blade.0.VoltageSensors",
                                       "get Oper.Blade.1.OperState Oper.Blade.1.PlanarPartNum "
                                       "Oper.Blade.1.BoardSerialNum Oper.Blade.1.Type Oper.Blade.1.AdminState "
                                       "Oper.Blade.1.DiagStatus Oper.Blade.1.TempSensors Oper.Blade.1.VoltageSensors"));
    EXPECT_EQ(cache().getRootSlotCount(), 2U);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getBladeInfo()"));
}

TEST_F(Blades, OnlyTheLastSlotStays) {
    EXPECT_TRUE(refresh({"IO", "CPU", "PS", "IO"}));
    EXPECT_THAT(kinds(4), ElementsAre(0, 0, 0, 4));
    EXPECT_EQ(cache().getFirstRootIOBladeIndex(), 3U);
    EXPECT_EQ(cache().getRootTemperatureSensorCount(2), 0U);
    EXPECT_EQ(cache().getRootVoltageSensorCount(2), 0U);
    EXPECT_EQ(cache().getRootTemperatureSensorCount(3), 4U);
    EXPECT_EQ(cache().getRootVoltageSensorCount(3), 6U);
    EXPECT_EQ(cache().getRootBladeStatus(0), 0U);
    EXPECT_EQ(cache().getRootBladeStatus(3), 2U);
}

TEST_F(Blades, EachKindHasItsNumber) {
    const std::vector<std::pair<std::string, int>> kinds = {{"FAN", 1}, {"PS", 2},  {"CPU", 3}, {"IO", 4},
                                                            {"io", 0},  {"IO ", 0}, {"SW", 0}};
    for (const auto &[text, kind] : kinds) {
        EXPECT_TRUE(refresh({"", text}));
        EXPECT_EQ(cache().getRootBladeKind(1), kind) << text;
        EXPECT_EQ(cache().getFirstRootIOBladeIndex(), kind == 4 ? 1U : 65535U) << text;
    }
}

TEST_F(Blades, ASlotIsEmptyByItsStateOrByAMissingNumber) {
    const std::vector<std::pair<std::string, std::string>> empties = {{"OperState", "NotInstalled"},
                                                                      {"OperState", "PoweredOff"},
                                                                      {"OperState", ""},
                                                                      {"PlanarPartNum", ""},
                                                                      {"BoardSerialNum", ""}};
    for (const auto &[attribute, value] : empties) {
        EXPECT_TRUE(refresh({"", "IO"}));
        ASSERT_EQ(cache().getRootBladeKind(1), 4U);
        answer(bladeKey(1, attribute), value);
        EXPECT_TRUE(refresh());
        EXPECT_EQ(cache().getRootBladeKind(1), 0U) << attribute << value;
        EXPECT_EQ(cache().getRootTemperatureSensorCount(1), 0U) << attribute << value;
    }
}

TEST_F(Blades, AnEmptySlotHasAStatusAllTheSame) {
    refresh({"", "IO"});
    answer(bladeKey(1, "OperState"), "PoweredOff");
    answer(bladeKey(1, "DiagStatus"), "Failed");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(cache().getRootBladeStatus(1), 6U);
    answer(bladeKey(1, "DiagStatus"), "Compromised");
    answer(bladeKey(1, "OperState"), "Down");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(cache().getRootBladeStatus(1), 3U) << "the primary status alone";
    answer(bladeKey(1, "AdminState"), "Down");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(cache().getRootBladeStatus(1), 6U) << "down because it is meant to be";
}

TEST_F(Blades, ASwitchWithOneSlotHasOnlySensors) {
    EXPECT_TRUE(refresh({"", "IO"}));
    EXPECT_TRUE(refresh({"IO"}));
    EXPECT_THAT(traffic(), ElementsAre("get Oper.Chassis.0.MaxSlots",
                                       "get Oper.Switch.Nop Oper.Blade.0.TempSensors Oper.Blade.0.VoltageSensors"));
    EXPECT_EQ(cache().getRootSlotCount(), 1U);
    EXPECT_THAT(kinds(2), ElementsAre(0, 0));
    EXPECT_EQ(cache().getRootTemperatureSensorCount(0), 4U);
    EXPECT_EQ(cache().getRootVoltageSensorCount(0), 6U);
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Blades, TheSingleSlotReadsEachSensorForItself) {
    refresh({"IO"});
    fail("Oper.Blade.0.TempSensors");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(cache().getRootTemperatureSensorCount(0), 0U);
    EXPECT_EQ(cache().getRootVoltageSensorCount(0), 6U);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getBladeInfo()")) << "no line of the access layer";
}

TEST_F(Blades, ASensorCountThatIsRefusedIsNoneWhateverItsValue) {
    for (const char *attribute : {"TempSensors", "VoltageSensors"}) {
        refresh({"IO"});
        failWith(bladeKey(0, attribute), "9");
        EXPECT_TRUE(refresh());
        const bool temp = std::string(attribute) == "TempSensors";
        EXPECT_EQ(cache().getRootTemperatureSensorCount(0), temp ? 0U : 4U);
        EXPECT_EQ(cache().getRootVoltageSensorCount(0), temp ? 6U : 0U);
    }
}

TEST_F(Blades, TheSlotCountIsADecimalNumberOf16Bits) {
    const std::vector<std::tuple<std::string, unsigned, unsigned>> rows = {
        // text, count, exchanges
        {"65538", 2, 3}, {" 2 slots", 2, 3}, {"02", 2, 3},   {"65537", 1, 2},
        {"0x2", 0, 1},   {"", 0, 1},         {"none", 0, 1}, {"300", 300, 301},
    };
    for (const auto &[text, count, exchanges] : rows) {
        refresh({"", "PS"});
        for (unsigned slot = 2; slot < count; ++slot)
            fillSlot(slot, "");
        answer("Oper.Chassis.0.MaxSlots", text);
        EXPECT_TRUE(refresh());
        EXPECT_EQ(cache().getRootSlotCount(), count) << text;
        EXPECT_THAT(traffic(), SizeIs(exchanges)) << text;
    }
}

TEST_F(Blades, ASwitchWithoutSlotsIsRefreshedToo) {
    EXPECT_TRUE(refresh(std::vector<std::string>{}));
    EXPECT_THAT(traffic(), ElementsAre("get Oper.Chassis.0.MaxSlots"));
    EXPECT_EQ(cache().getRootSlotCount(), 0U);
}

// ---- failures -------------------------------------------------------------------------------------------

TEST_F(Blades, WithoutTheSlotCountThePictureStays) {
    refresh({"", "IO"});
    fail("Oper.Chassis.0.MaxSlots");
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed(1444));
    EXPECT_THAT(kinds(2), ElementsAre(0, 4));
    EXPECT_EQ(cache().getRootSlotCount(), 2U);
}

TEST_F(Blades, AFailedSlotLeavesWhatWasRead) {
    refresh({"", "", "IO"});
    equip({"", "CPU", "IO"});
    answer(bladeKey(1, "Type"), "CPU");
    answer(bladeKey(1, "OperState"), "Online");
    answer(bladeKey(1, "PlanarPartNum"), "1");
    answer(bladeKey(1, "BoardSerialNum"), "1");
    fail(bladeKey(2, "Type"));
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed(1494));
    EXPECT_THAT(kinds(3), ElementsAre(0, 3, 0));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(Blades, AFailureAtAnySlotLeavesTheSlotReadBefore) {
    const std::vector<std::string> now = {"FAN", "CPU", "PS", "IO"};
    const std::vector<std::vector<int>> left = {{0, 0, 0, 4}, {1, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 2, 0}};
    for (unsigned failing = 0; failing < 4; ++failing) {
        refresh({"", "", "", "IO"});
        equip(now);
        fail(bladeKey(failing, "Type"));
        EXPECT_FALSE(refresh());
        EXPECT_EQ(log().back(), failed(1494)) << failing;
        EXPECT_THAT(traffic(), SizeIs(1 + failing + 1));
        EXPECT_EQ(kinds(4), left[failing]) << failing;
        EXPECT_THAT(events(), IsEmpty()) << failing;
    }
}

TEST_F(Blades, AFailedSensorReadFailsTheSlot) {
    refresh({"", "IO"});
    fail(bladeKey(0, "VoltageSensors"));
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getBladeInfo()",
                                   "DCACHE: sml command='Oper.Blade.0.VoltageSensors', smlerror='0x5'", failed(1494)));
}

TEST_F(Blades, AFailedSingleSlotLeavesTheTablesCleared) {
    refresh({"", "IO"});
    refresh({"IO"});
    sim::Fault broken;
    broken.call = "zov_smlGetBatch";
    broken.result = 9;
    broken.skip = 1;
    theSwitch->addFault(broken);
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed(1464));
    EXPECT_EQ(cache().getRootTemperatureSensorCount(0), 0U);
    EXPECT_EQ(cache().getRootSlotCount(), 1U);
}

// ---- events ---------------------------------------------------------------------------------------------

TEST_F(Blades, TheFirstRefreshRaisesNoEvents) {
    EXPECT_TRUE(refresh({"", "IO"}));
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Blades, EachKindHasItsEvents) {
    const std::vector<std::vector<std::string>> table = {
        // kind, event when it comes, event when it goes
        {"FAN", event(16, "FanAdd", 1), event(17, "FanRemove", 1) + " count=0"},
        {"PS", event(19, "PowerSupplyAdd", 1), event(20, "PowerSupplyRemove", 1) + " count=0"},
        {"CPU", event(22, "CPUAdd", 1), event(23, "CPURemove", 1)},
        {"IO", event(7, "BladeAdd", 1), event(8, "BladeRemove", 1)},
    };
    refresh({"", ""});
    for (const auto &row : table) {
        EXPECT_TRUE(refresh({"", row[0]}));
        EXPECT_THAT(events(), ElementsAre(row[1]));
        EXPECT_TRUE(refresh({"", row[0]}));
        EXPECT_THAT(events(), IsEmpty()) << "told once";
        EXPECT_TRUE(refresh({"", ""}));
        EXPECT_THAT(events(), ElementsAre(row[2]));
    }
}

TEST_F(Blades, AnExchangeTellsOfTheNewBladeFirst) {
    refresh({"", "PS"});
    EXPECT_TRUE(refresh({"", "FAN"}));
    EXPECT_THAT(events(), ElementsAre(event(16, "FanAdd", 1), event(20, "PowerSupplyRemove", 1) + " count=0"));
}

TEST_F(Blades, RemovalsTellHowManySuchBladesThePassFound) {
    refresh({"PS", "FAN", "PS"});
    EXPECT_TRUE(refresh({"PS", "PS", ""}));
    EXPECT_THAT(events(), ElementsAre(event(20, "PowerSupplyRemove", 2) + " count=2"));
    refresh({"FAN", "FAN", "FAN"});
    EXPECT_TRUE(refresh({"FAN", "FAN", "IO"}));
    EXPECT_THAT(events(), ElementsAre(event(7, "BladeAdd", 2), event(17, "FanRemove", 2) + " count=2"));
}

TEST_F(Blades, BladesBelowTheLastSlotRaiseNothing) {
    refresh({"IO", "CPU", "IO"});
    EXPECT_TRUE(refresh({"", "PS", "IO"}));
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Blades, AFailedRefreshIsNoPictureToCompareWith) {
    equip({"", "IO"});
    fail(bladeKey(1, "Type"));
    EXPECT_FALSE(refresh());
    EXPECT_TRUE(refresh({"", "FAN"}));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh({"", "PS"}));
    EXPECT_THAT(events(), ElementsAre(event(19, "PowerSupplyAdd", 1), event(17, "FanRemove", 1) + " count=0"));
}

TEST_F(Blades, WhatAFailedRefreshLeftIsComparedWith) {
    refresh({"", "IO"});
    equip({"FAN", "IO"});
    fail(bladeKey(1, "Type"));
    EXPECT_FALSE(refresh());
    ASSERT_THAT(kinds(2), ElementsAre(1, 0));
    EXPECT_TRUE(refresh({"FAN", "IO"}));
    EXPECT_THAT(events(), ElementsAre(event(17, "FanRemove", 0) + " count=1", event(7, "BladeAdd", 1)));
}

TEST_F(Blades, ASingleSlotInBetweenLeavesAnEmptyPictureToCompareWith) {
    refresh({"", "IO"});
    EXPECT_TRUE(refresh({"IO"}));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh({"", "PS"}));
    EXPECT_THAT(events(), ElementsAre(event(19, "PowerSupplyAdd", 1)));
}

TEST_F(Blades, SlotsThatAreNoMoreRaiseNothing) {
    refresh({"", "", "", "IO"});
    EXPECT_TRUE(refresh({"", "CPU"}));
    EXPECT_THAT(events(), ElementsAre(event(22, "CPUAdd", 1)));
    EXPECT_THAT(kinds(4), ElementsAre(0, 3, 0, 0));
}

TEST_F(Blades, ASwitchThatTurnsMultiSlotStartsSilently) {
    refresh({"IO"});
    EXPECT_TRUE(refresh({"", "IO"}));
    EXPECT_THAT(events(), IsEmpty());
}

// ---- slots beyond the tables ----------------------------------------------------------------------------

TEST_F(Blades, SlotsBeyondTheTablesAreReadButKeptNowhere) {
    std::vector<std::string> kinds(34, "PS");
    EXPECT_TRUE(refresh(kinds));
    EXPECT_THAT(traffic(), SizeIs(35));
    for (unsigned short slot = 0; slot < 40; ++slot)
        EXPECT_EQ(cache().getRootBladeKind(slot), 0U);
    EXPECT_EQ(cache().getRootSlotCount(), 34U);
}

TEST_F(Blades, TheLastSlotOfTheTablesIsComparedAndNoneBeyond) {
    std::vector<std::string> kinds(32);
    refresh(kinds);
    kinds.back() = "IO";
    EXPECT_TRUE(refresh(kinds));
    EXPECT_THAT(events(), ElementsAre(event(7, "BladeAdd", 31)));
    EXPECT_TRUE(refresh(std::vector<std::string>(34)));
    EXPECT_THAT(events(), ElementsAre(event(8, "BladeRemove", 31)));
    refresh({"IO"}); // leaves sensor counts, which look like kinds of blades
    EXPECT_TRUE(refresh(std::vector<std::string>(34)));
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Blades, BladesBeyondTheTablesAreCounted) {
    std::vector<std::string> before(32);
    std::vector<std::string> now(35);
    for (const auto &[kind, removed] :
         {std::pair("PS", event(20, "PowerSupplyRemove", 31)), std::pair("FAN", event(17, "FanRemove", 31))}) {
        before.back() = kind;
        now[32] = now[33] = kind;
        refresh(before);
        EXPECT_TRUE(refresh(now));
        EXPECT_THAT(events(), ElementsAre(removed + " count=2"));
    }
}

TEST_F(Blades, AnIoOrCpuBladeBeyondTheTablesThrows) {
    for (const char *kind : {"IO", "CPU"}) {
        std::vector<std::string> kinds(33);
        kinds.back() = kind;
        try {
            refresh(kinds);
            FAIL() << kind;
        } catch (const std::out_of_range &error) {
            EXPECT_STREQ(error.what(), "bitset::set");
        }
        theSwitch->clearFaults();
    }
}

TEST_F(Blades, TheLastSlotOfTheTablesTakesAnIoBlade) {
    std::vector<std::string> kinds(32);
    kinds.back() = "IO";
    EXPECT_TRUE(refresh(kinds));
    EXPECT_EQ(cache().getFirstRootIOBladeIndex(), 31U);
    EXPECT_EQ(cache().getRootBladeKind(31), 4U);
    EXPECT_EQ(cache().getRootBladeKind(32), 0U);
    EXPECT_EQ(cache().getRootTemperatureSensorCount(65535), 0U);
    EXPECT_EQ(cache().getRootVoltageSensorCount(32), 0U);
}

// ---- the walk over I/O blades ---------------------------------------------------------------------------

class BladeWalk : public Blades {
protected:
    /// The walk ends where the chassis refresh saw the last slot.
    void slotsOfChassis(const std::string &count) {
        sim::Fault fault;
        fault.key = "Oper.Chassis.0.MaxSlots";
        fault.value = count;
        theSwitch->addFault(fault);
        theSwitch->set("Oper.Switch.EnhFaultMonFeature", "False", sim::Notify::no);
        ASSERT_TRUE(cache()._getChassisInfo());
        forget();
    }
};

TEST_F(BladeWalk, EndsAtTheSlotsOfTheChassis) {
    refresh({"", "", "", "IO"});
    slotsOfChassis("4");
    EXPECT_EQ(cache().getNextRootIOBladeIndex(0), 3U);
    EXPECT_THAT(log(), ElementsAre("DCACHE: getNextRootIOBladeIndex( 0 ) returns 3"));
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
    EXPECT_EQ(cache().getNextRootIOBladeIndex(3), 65535U);
    EXPECT_EQ(cache().getNextRootIOBladeIndex(65535), 65535U);
    slotsOfChassis("3");
    EXPECT_EQ(cache().getNextRootIOBladeIndex(0), 65535U);
    EXPECT_EQ(cache().getFirstRootIOBladeIndex(), 3U) << "the first one does not ask the chassis";
}

TEST_F(BladeWalk, BeginsAtABladeBeyondTheSlotsThatTheSwitchClaims) {
    refresh({"", "", "", "IO"});
    equip({"", ""});
    fail(bladeKey(0, "Type"));
    EXPECT_FALSE(refresh());
    EXPECT_EQ(cache().getRootSlotCount(), 2U);
    EXPECT_EQ(cache().getFirstRootIOBladeIndex(), 3U);
    slotsOfChassis("4");
    EXPECT_EQ(cache().getNextRootIOBladeIndex(2), 3U) << "nor does the walk ask for them";
}

TEST_F(BladeWalk, WithASingleSlotThereIsNoNextBlade) {
    slotsOfChassis("1");
    for (const int index : {0, 1, 31, 65535})
        EXPECT_EQ(cache().getNextRootIOBladeIndex(static_cast<unsigned short>(index)), 65535U);
}

TEST_F(BladeWalk, PastTheLastSlotOfTheTablesItThrows) {
    slotsOfChassis("40");
    try {
        cache().getNextRootIOBladeIndex(0);
        FAIL();
    } catch (const std::out_of_range &error) {
        EXPECT_STREQ(error.what(), "bitset::test");
    }
    EXPECT_TRUE(support::isLockFree());
    slotsOfChassis("32");
    EXPECT_EQ(cache().getNextRootIOBladeIndex(0), 65535U);
}

} // namespace
