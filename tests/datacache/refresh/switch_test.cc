// The refresh of the local switch.
#include "tests/support/CacheTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> &switchKeys() {
    static const std::vector<std::string> keys = {
        "Oper.Switch.WhoIsPrincipal",    "Oper.Switch.WWN",
        "Oper.Switch.OperState",         "Oper.Switch.TransparentModeFeature",
        "Config.Switch.TransparentMode", "Config.Mfg.ProductFeatureType",
        "Oper.Switch.FCOEFeature",       "Oper.Switch.EthernetPassthroughFeature",
    };
    return keys;
}

class SwitchRefresh : public support::CacheTest {
protected:
    void SetUp() override { connect(); }

    int refresh() {
        forget();
        DataCache *theCache = DataCache::getInstance();
        const int result = theCache->_getSwitchInfo();
        DataCache::releaseInstance();
        return result;
    }

    void set(const std::string &key, const std::string &value) { theSwitch->set(key, value, sim::Notify::no); }

    /// A value that the simulated switch would not take, from now on.
    void answer(const std::string &key, const std::string &value) {
        theSwitch->clearFaults();
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.times = -1;
        theSwitch->addFault(fault);
    }

    void failKey(const std::string &key, int32_t status) {
        sim::Fault fault;
        fault.key = key;
        fault.status = status;
        theSwitch->addFault(fault);
    }

    /// Everything about the switch is another than in the default profile.
    void changeEverything() {
        set("Oper.Switch.WhoIsPrincipal", "100000C0DD999999");
        set("Oper.Switch.WWN", "100000C0DD888888");
        set("Oper.Switch.OperState", "Offline");
        set("Oper.Switch.TransparentModeFeature", "True");
        set("Config.Switch.TransparentMode", "True");
        set("Oper.Switch.FCOEFeature", "True");
        set("Oper.Switch.EthernetPassthroughFeature", "True");
    }

    static void expectTheDefaultPicture() {
        EXPECT_EQ(cache().getRootSwitchWwn(), support::kSwitchWwn);
        EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{2});
        EXPECT_FALSE(cache().isTransparentSwitch());
        EXPECT_FALSE(cache().isFCOESwitch());
        EXPECT_FALSE(cache().isEthernetPassthroughSwitch());
    }

    static std::string statusChange(const std::string &lists, const std::string &theSwitch = support::kSwitchWwn,
                                    const std::string &principal = support::kSwitchWwn) {
        return "6: SwitchStatusChange switch=" + theSwitch + " principal=" + principal + " " + lists;
    }
};

TEST_F(SwitchRefresh, ReadsEightKeysInOneExchange) {
    EXPECT_EQ(refresh(), 1);
    std::string exchange = "get";
    for (const std::string &key : switchKeys())
        exchange += " " + key;
    EXPECT_THAT(traffic(), ElementsAre(exchange));
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getSwitchInfo()"));
    expectTheDefaultPicture();
}

// ---- the event ------------------------------------------------------------------------------------------

class FirstSwitchRefresh : public SwitchRefresh, public testing::WithParamInterface<std::pair<std::string, int>> {};

TEST_P(FirstSwitchRefresh, IsSilentWhateverTheState) {
    const auto [state, status] = GetParam();
    answer("Oper.Switch.OperState", state);
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(cache().getRootSwitchStatus(), ElementsAre(status));

    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty()) << "the same state again";
}

INSTANTIATE_TEST_SUITE_P(States, FirstSwitchRefresh,
                         testing::Values(std::pair("Online", 2), std::pair("Offline", 10), std::pair("Downed", 10),
                                         std::pair("Diagnostics", 11), std::pair("online", 0), std::pair("", 0)));

TEST_F(SwitchRefresh, AnotherStateRaisesOneEventWithTheOldAndTheNewList) {
    set("Oper.Switch.WhoIsPrincipal", "100000C0DD777777");
    refresh();
    set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(statusChange("[2]->[10]", support::kSwitchWwn, "100000C0DD777777")));
    refresh();
    EXPECT_THAT(events(), IsEmpty());
    set("Oper.Switch.OperState", "Diagnostics");
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[10]->[11]", support::kSwitchWwn, "100000C0DD777777")));
}

TEST_F(SwitchRefresh, AnotherStateWithTheSameListRaisesNothing) {
    set("Oper.Switch.OperState", "Offline");
    refresh();
    set("Oper.Switch.OperState", "Downed");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(SwitchRefresh, AnotherNamePrincipalOrModeAloneRaisesNothing) {
    refresh();
    const std::vector<std::pair<std::string, std::string>> changes = {
        {"Oper.Switch.WWN", "100000C0DD888888"},
        {"Oper.Switch.WhoIsPrincipal", "100000C0DD999999"},
        {"Oper.Switch.FCOEFeature", "True"},
        {"Oper.Switch.EthernetPassthroughFeature", "True"},
        {"Oper.Switch.TransparentModeFeature", "True"},
        {"Config.Switch.TransparentMode", "True"},
    };
    for (const auto &[key, value] : changes) {
        set(key, value);
        EXPECT_EQ(refresh(), 1);
        EXPECT_THAT(events(), IsEmpty()) << key;
    }
    EXPECT_EQ(cache().getRootSwitchWwn(), "100000C0DD888888");
    EXPECT_TRUE(cache().isFCOESwitch());
    EXPECT_TRUE(cache().isEthernetPassthroughSwitch());
    EXPECT_TRUE(cache().isTransparentSwitch());
}

TEST_F(SwitchRefresh, TheEventHoldsTheNewNameOfTheSwitch) {
    refresh();
    changeEverything();
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[2]->[10]", "100000C0DD888888", "100000C0DD999999")));
}

TEST_F(SwitchRefresh, APrincipalThatIsNoNameIsTheZeroName) {
    refresh();
    set("Oper.Switch.OperState", "Offline");
    answer("Oper.Switch.WhoIsPrincipal", "nobody");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(statusChange("[2]->[10]", support::kSwitchWwn, "0000000000000000")));
}

TEST_F(SwitchRefresh, TheClientSeesTheNewPictureInItsCallback) {
    refresh();
    std::string name;
    StatusList status;
    bool fcoe = false;
    support::onEvent([&](DataCacheEvent &) {
        name = cache().getRootSwitchWwn();
        status = cache().getRootSwitchStatus();
        fcoe = cache().isFCOESwitch();
    });
    changeEverything();
    refresh();
    EXPECT_EQ(name, "100000C0DD888888");
    EXPECT_EQ(status, StatusList{10});
    EXPECT_TRUE(fcoe);
}

TEST_F(SwitchRefresh, WithoutACallbackThePictureIsKeptCurrent) {
    cache().startEventMonitor(nullptr);
    refresh();
    set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{10});
}

// ---- failures -------------------------------------------------------------------------------------------

TEST_F(SwitchRefresh, AKeyThatFailsLeavesThePictureAsItWas) {
    refresh();
    changeEverything();
    for (const std::string &key : switchKeys()) {
        failKey(key, 5);
        EXPECT_EQ(refresh(), 0) << key;
        EXPECT_THAT(log(), ElementsAre("DCACHE: _getSwitchInfo()", "DCACHE: sml command='" + key + "', smlerror='0x5'",
                                       "DCACHE: Cache update failed: DataCache.cc:_getSwitchInfo:1376"));
        EXPECT_THAT(events(), IsEmpty());
        expectTheDefaultPicture();
    }
}

TEST_F(SwitchRefresh, AFailedExchangeLeavesThePictureAsItWas) {
    refresh();
    changeEverything();
    sim::Fault fault;
    fault.call = "zov_smlGetBatch";
    fault.result = 2;
    theSwitch->addFault(fault);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getSwitchInfo()",
                                   "DCACHE: Cache update failed: DataCache.cc:_getSwitchInfo:1376"));
    EXPECT_THAT(events(), IsEmpty());
    expectTheDefaultPicture();
}

TEST_F(SwitchRefresh, TheEndOfAListIsAFailureToo) {
    failKey("Oper.Switch.OperState", 24);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _getSwitchInfo()",
                                   "DCACHE: Cache update failed: DataCache.cc:_getSwitchInfo:1376"));
}

TEST_F(SwitchRefresh, ASwitchWithoutANameLeavesThePictureAsItWas) {
    refresh();
    changeEverything();
    for (const std::string &name : {std::string("0000000000000000"), std::string("00:00:00:00:00:00:00:00"),
                                    std::string(), std::string("100000C0DD88888"), std::string("100000C0DD8888888"),
                                    std::string("100000C0DD88888X"), std::string(256, 'A')}) {
        answer("Oper.Switch.WWN", name);
        EXPECT_EQ(refresh(), 0) << name;
        EXPECT_THAT(log(), ElementsAre("DCACHE: _getSwitchInfo()",
                                       "DCACHE: Cache update failed: DataCache.cc:_getSwitchInfo:1393"));
        EXPECT_THAT(events(), IsEmpty());
        expectTheDefaultPicture();
    }
}

TEST_F(SwitchRefresh, FailuresAreNotCopiedToTheCriticalLog) {
    failKey("Oper.Switch.WWN", 5);
    EXPECT_EQ(refresh(), 0);
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_F(SwitchRefresh, AfterAFailureTheNextComparesWithTheLastGoodPicture) {
    refresh();
    set("Oper.Switch.OperState", "Offline");
    failKey("Oper.Switch.FCOEFeature", 5);
    EXPECT_EQ(refresh(), 0);
    set("Oper.Switch.OperState", "Diagnostics");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), ElementsAre(statusChange("[2]->[11]")));
}

TEST_F(SwitchRefresh, AFailedFirstRefreshDoesNotCount) {
    failKey("Oper.Switch.WWN", 5);
    EXPECT_EQ(refresh(), 0);
    EXPECT_THAT(cache().getRootSwitchStatus(), IsEmpty());
    set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(refresh(), 1);
    EXPECT_THAT(events(), IsEmpty());
}

// ---- values ---------------------------------------------------------------------------------------------

TEST_F(SwitchRefresh, ANameWithColonsLosesItsLastByte) {
    answer("Oper.Switch.WWN", "10:00:00:C0:DD:00:A1:B2");
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getRootSwitchWwn(), "100000C0DD00A100");
}

TEST_F(SwitchRefresh, AStateWithoutItsEndIsUnknown) {
    answer("Oper.Switch.OperState", std::string(256, 'O'));
    EXPECT_EQ(refresh(), 1);
    EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{0});
}

TEST_F(SwitchRefresh, ModesAreOnWithTheExactTextOnly) {
    using Query = bool (DataCache::*)() const;
    const std::vector<std::pair<std::string, Query>> flags = {
        {"Oper.Switch.TransparentModeFeature", &DataCache::isTransparentSwitch},
        {"Config.Switch.TransparentMode", &DataCache::isTransparentSwitch},
        {"Oper.Switch.FCOEFeature", &DataCache::isFCOESwitch},
        {"Oper.Switch.EthernetPassthroughFeature", &DataCache::isEthernetPassthroughSwitch},
    };
    changeEverything();
    for (const auto &[key, isOn] : flags) {
        for (const std::string &value :
             {std::string("True"), std::string("False"), std::string("true"), std::string("TRUE"), std::string("True "),
              std::string(" True"), std::string("Tru"), std::string("1"), std::string(), std::string(256, 'T')}) {
            answer(key, value);
            EXPECT_EQ(refresh(), 1);
            EXPECT_EQ((cache().*isOn)(), value == "True") << key << " is '" << value << "'";
        }
    }
}

TEST_F(SwitchRefresh, TransparentModeNeedsTheFeatureAndTheConfiguration) {
    for (const std::string feature : {"True", "False"}) {
        for (const std::string configured : {"True", "False"}) {
            set("Oper.Switch.TransparentModeFeature", feature);
            set("Config.Switch.TransparentMode", configured);
            EXPECT_EQ(refresh(), 1);
            EXPECT_EQ(cache().isTransparentSwitch(), feature == "True" && configured == "True")
                << feature << " " << configured;
        }
    }
}

TEST_F(SwitchRefresh, TheProductFeatureTypeMakesNoDifference) {
    refresh();
    for (const std::string &value : {std::string(), std::string("True"), std::string(256, 'P')}) {
        answer("Config.Mfg.ProductFeatureType", value);
        EXPECT_EQ(refresh(), 1);
        EXPECT_THAT(events(), IsEmpty());
        expectTheDefaultPicture();
    }
}

// ---- the faults of the chassis --------------------------------------------------------------------------

class SwitchRefreshWithFaults : public SwitchRefresh {
protected:
    static int refreshChassis() {
        DataCache *theCache = DataCache::getInstance();
        const int result = theCache->_getChassisInfo();
        DataCache::releaseInstance();
        return result;
    }
};

TEST_F(SwitchRefreshWithFaults, AHealthySwitchReportsTwoZerosOnceItsChassisIsKnown) {
    refresh();
    EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{2});
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[2]->[2, 0, 0]")));
    EXPECT_EQ(cache().getRootSwitchStatus(), (StatusList{2, 0, 0}));

    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), IsEmpty()) << "once only";
}

TEST_F(SwitchRefreshWithFaults, AFailedChassisRefreshAddsNoFaults) {
    refresh();
    failKey("Oper.Chassis.0.Fan.0", 5);
    ASSERT_EQ(refreshChassis(), 0);
    refresh();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootSwitchStatus(), StatusList{2});
}

TEST_F(SwitchRefreshWithFaults, AFaultIsSeenAtTheSwitchRefreshAfterTheChassisRefresh) {
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    set("Oper.Switch.FaultList", "FW_POST_FAIL");
    refresh();
    EXPECT_THAT(events(), IsEmpty()) << "the chassis has not been read since";
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[2, 0, 0]->[6, 32768, 0]")));

    set("Oper.Switch.FaultList", "HW_MP_ACCESS_CPU0");
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[6, 32768, 0]->[2, 5, 0, 32769]")));

    set("Oper.Switch.FaultList", "FW_POST_FAIL HW_MP_ACCESS_CPU0");
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[2, 5, 0, 32769]->[6, 32768, 32769]")));

    set("Oper.Switch.FaultList", "");
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), ElementsAre(statusChange("[6, 32768, 32769]->[2, 0, 0]")));
}

TEST_F(SwitchRefreshWithFaults, TheFirstRefreshMayComeAfterTheChassis) {
    set("Oper.Switch.FaultList", "FW_POST_FAIL");
    ASSERT_EQ(refreshChassis(), 1);
    refresh();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootSwitchStatus(), (StatusList{6, 32768, 0}));
}

} // namespace
