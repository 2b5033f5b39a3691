#include "sim/levers/Faults.h"

#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class Faults : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    static sim::Fault onCall(const char *call) {
        sim::Fault fault;
        fault.call = call;
        return fault;
    }
    static sim::Fault onKey(const char *key, int32_t status) {
        sim::Fault fault;
        fault.key = key;
        fault.status = status;
        return fault;
    }
    int32_t domainStatus() const { return client.get("Oper.Switch.DomainID").status; }
    /// The statuses of a batch of three keys.
    std::vector<int32_t> statuses() const {
        std::vector<int32_t> found;
        for (const SmlMessage &message :
             client.getBatch({"Oper.Switch.WWN", "Oper.Switch.DomainID", "Oper.Chassis.0.Fan.0"}))
            found.push_back(message.status);
        return found;
    }
};

} // namespace

TEST_F(Faults, ResultFailsTheWholeCallOnceAndTouchesNothing) {
    sim::Fault fault = onCall("zov_smlGetBatch");
    fault.result = 77;
    device->addFault(fault);
    SmlMessage message = simtest::messageOf("Oper.Switch.WWN", "before");
    message.status = -5;
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 1), 77);
    EXPECT_STREQ(message.value, "before");
    EXPECT_EQ(message.status, -5);
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 1), 0);
    EXPECT_STREQ(message.value, "100000C0DD00A1B2");
}

TEST_F(Faults, ResultOfASetLeavesTheSwitchAlone) {
    sim::Fault fault = onCall("zov_smlSet");
    fault.result = 77;
    device->addFault(fault);
    char value[] = "text";
    EXPECT_EQ(zov_smlSet(client.handle, "Cmd.Switch.ReqAdmin", value), 77);
    EXPECT_STREQ(value, "text");
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_F(Faults, SkipAndTimesCountTheMatchingCallsOnly) {
    sim::Fault fault = onCall("zov_smlGet");
    fault.skip = 2;
    fault.times = 2;
    fault.result = 9;
    device->addFault(fault);
    std::vector<int32_t> results;
    for (int i = 0; i < 6; ++i) {
        statuses(); // another call: does not count
        results.push_back(domainStatus());
    }
    EXPECT_EQ(results, (std::vector<int32_t>{0, 0, 9, 9, 0, 0}));
}

TEST_F(Faults, MinusOneMeansForEverAndZeroNever) {
    sim::Fault never = onCall("zov_smlGet");
    never.times = 0;
    never.result = 8;
    device->addFault(never);
    sim::Fault always = onCall("zov_smlGet");
    always.times = -1;
    always.skip = 1;
    always.result = 9;
    device->addFault(always);
    EXPECT_EQ(domainStatus(), 0);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(domainStatus(), 9);
}

TEST_F(Faults, EmptyCallMatchesEveryCall) {
    sim::Fault fault;
    fault.times = -1;
    fault.result = 9;
    const int number = device->addFault(fault);
    zov_handle_t handle = 0;
    EXPECT_EQ(domainStatus(), 9);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 9);
    EXPECT_EQ(zov_IPConnect("localhost", "test", "", &handle), 9);
    EXPECT_EQ(client.registerFor({32}), 9);
    EXPECT_EQ(zov_ZonesetTestName("oak"), 9);
    EXPECT_EQ(zov_ZoneCreate("oak"), nullptr);
    EXPECT_EQ(handle, 0U);
    device->removeFault(number);
    EXPECT_EQ(domainStatus(), 0);
}

TEST_F(Faults, StatusFailsMatchingKeysAndServesTheOthers) {
    device->addFault(onKey("Oper.Switch.DomainID", 24));
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 24, 0}));
    EXPECT_EQ(client.batchResult, 0);
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 0, 0}));
}

TEST_F(Faults, StatusWithoutAPatternFailsAllKeys) {
    sim::Fault fault = onCall("zov_smlGetBatch");
    fault.status = 6;
    device->addFault(fault);
    EXPECT_EQ(statuses(), (std::vector<int32_t>{6, 6, 6}));
}

TEST_F(Faults, StatusOfASingleReadIsItsResult) {
    device->addFault(onKey("Oper.Switch.DomainID", 103));
    char *value = nullptr;
    uint32_t size = 1;
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.DomainID", &value, &size), 103);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(size, 1U);
    EXPECT_EQ(domainStatus(), 0);
}

TEST_F(Faults, StatusKeepsACommandFromRunning) {
    device->addFault(onKey("Cmd.Switch.ReqAdmin", 11));
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 11);
    EXPECT_EQ(device->adminModeHolder(), 0U);
    device->addFault(onKey("Cmd.Switch.ReqAdmin", 12));
    SmlMessage message = simtest::messageOf("Cmd.Switch.ReqAdmin");
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 1), 0);
    EXPECT_EQ(message.status, 12);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_F(Faults, StatusZeroPretendsSuccess) {
    device->addFault(onKey("Cmd.Switch.ReqAdmin", 0));
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_F(Faults, KeyPatternsMatchAnyTextAtTheStar) {
    sim::Fault fault = onKey("Oper.*.DomainID", 5);
    fault.times = -1;
    const int number = device->addFault(fault);
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 5, 0}));
    device->removeFault(number);
    const std::vector<std::pair<const char *, bool>> patterns = {
        {"*", true},
        {"Oper.Switch.DomainID", true},
        {"Oper.Switch.*", true},
        {"*DomainID", true},
        {"*Switch*", true},
        {"O*r.S*h.D*D", true},
        {"**Domain**", true},
        {"Oper.Switch.DomainID*", true},
        {"*ID*ID", false},
        {"Oper.Switch.Domain", false},
        {"per.Switch.DomainID", false},
        {"Oper.Switch.DomainID?", false},
        {"*X*", false},
        {"Oper.Switch.DomainI.", false},
    };
    for (const auto &[pattern, matches] : patterns) {
        const int rule = device->addFault(onKey(pattern, 5));
        EXPECT_EQ(domainStatus(), matches ? 5 : 0) << pattern;
        device->removeFault(rule);
    }
}

TEST_F(Faults, PatternWithAResultFailsTheCallThatHoldsTheKey) {
    sim::Fault fault;
    fault.key = "Oper.Chassis.*";
    fault.result = 9;
    fault.times = -1;
    device->addFault(fault);
    EXPECT_EQ(domainStatus(), 0);
    statuses();
    EXPECT_EQ(client.batchResult, 9);
    EXPECT_EQ(zov_ZonesetTestName("oak"), 0); // no keys, no match
}

TEST_F(Faults, ValueReplacesWhatTheSwitchAnswers) {
    sim::Fault fault;
    fault.key = "Oper.Switch.WWN";
    fault.value = "not a name";
    fault.times = 2;
    device->addFault(fault);
    EXPECT_STREQ(client.getBatch({"Oper.Switch.WWN"})[0].value, "not a name");
    EXPECT_EQ(client.get("Oper.Switch.WWN").value, "not a name");
    EXPECT_EQ(client.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
    EXPECT_EQ(device->get("Oper.Switch.WWN"), "100000C0DD00A1B2");
}

TEST_F(Faults, ValueOf256BytesComesWithoutATerminator) {
    sim::Fault fault;
    fault.key = "Oper.Switch.WWN";
    fault.value = std::string(256, '7');
    fault.times = 2;
    device->addFault(fault);
    const SmlMessage message = client.getBatch({"Oper.Switch.WWN"})[0];
    EXPECT_EQ(std::string(message.value, sizeof message.value), *fault.value);
    EXPECT_EQ(message.status, 0);
    EXPECT_EQ(client.get("Oper.Switch.WWN").value, *fault.value); // on its own, it is terminated
}

TEST_F(Faults, ValueMayHoldAnyBytes) {
    sim::Fault fault;
    fault.key = "Oper.Switch.WWN";
    fault.value = std::string("a\0b\xFF", 4);
    device->addFault(fault);
    const SmlMessage message = client.getBatch({"Oper.Switch.WWN"})[0];
    EXPECT_EQ(std::memcmp(message.value, "a\0b\xFF\0x", 6), 0); // and the rest of the field is left alone
}

TEST_F(Faults, ValueOfMoreThan256BytesIsRefused) {
    sim::Fault fault;
    fault.value = std::string(257, 'v');
    EXPECT_THROW(device->addFault(fault), std::invalid_argument);
}

TEST_F(Faults, ValueAndStatusComeTogether) {
    sim::Fault fault = onKey("Oper.Switch.WWN", 5);
    fault.value = "stale";
    device->addFault(fault);
    const SmlMessage message = client.getBatch({"Oper.Switch.WWN"})[0];
    EXPECT_EQ(message.status, 5);
    EXPECT_STREQ(message.value, "stale");
}

TEST_F(Faults, ValueAloneIsNoMatterForSets) {
    sim::Fault fault;
    fault.key = "Cmd.*";
    fault.value = "x";
    device->addFault(fault);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
}

TEST_F(Faults, EarlierRulesWinTheWholeCall) {
    sim::Fault first = onCall("zov_smlGet");
    first.result = 8;
    sim::Fault second = onCall("zov_smlGet");
    second.result = 9;
    device->addFault(first);
    device->addFault(second);
    EXPECT_EQ(domainStatus(), 8);
    EXPECT_EQ(domainStatus(), 9); // it did not win before, so it is not used up
    EXPECT_EQ(domainStatus(), 0);
}

TEST_F(Faults, RulesAboutKeysShareABatch) {
    device->addFault(onKey("Oper.Switch.DomainID", 5));
    device->addFault(onKey("Oper.Switch.*", 6));
    device->addFault(onKey("Oper.Chassis.*", 7));
    EXPECT_EQ(statuses(), (std::vector<int32_t>{6, 5, 7}));
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 0, 0}));
}

TEST_F(Faults, ARuleAboutTheCallStandsBackBehindAnEarlierOneAboutKeys) {
    device->addFault(onKey("Oper.Switch.DomainID", 5));
    sim::Fault fault;
    fault.result = 9;
    device->addFault(fault);
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 5, 0}));
    EXPECT_EQ(client.batchResult, 0);
    EXPECT_EQ(domainStatus(), 9);
}

TEST_F(Faults, EveryRuleCountsItsOwnSkips) {
    sim::Fault first = onCall("zov_smlGet");
    first.result = 8;
    sim::Fault second = onCall("zov_smlGet");
    second.result = 9;
    second.skip = 1;
    device->addFault(first);
    device->addFault(second);
    EXPECT_EQ(domainStatus(), 8);
    EXPECT_EQ(domainStatus(), 9);
}

TEST_F(Faults, RemovedAndClearedRulesAreGone) {
    sim::Fault fault = onCall("zov_smlGet");
    fault.times = -1;
    fault.result = 8;
    const int first = device->addFault(fault);
    fault.result = 9;
    const int second = device->addFault(fault);
    EXPECT_NE(first, second);
    device->removeFault(first);
    EXPECT_EQ(domainStatus(), 9);
    device->removeFault(first); // no longer there: nothing to do
    EXPECT_EQ(domainStatus(), 9);
    device->clearFaults();
    EXPECT_EQ(domainStatus(), 0);
}

TEST_F(Faults, DelayTakesTimeAndThenServes) {
    sim::Fault fault = onCall("zov_smlGet");
    fault.delay = std::chrono::milliseconds(30);
    device->addFault(fault);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(domainStatus(), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, fault.delay);
}

TEST_F(Faults, DelayOfOneRuleAndStatusComeTogether) {
    sim::Fault fault = onKey("Oper.Switch.DomainID", 5);
    fault.delay = std::chrono::milliseconds(30);
    device->addFault(fault);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(domainStatus(), 5);
    EXPECT_GE(std::chrono::steady_clock::now() - start, fault.delay);
}

TEST_F(Faults, ADelayedCallHoldsUpNobodyElse) {
    sim::Fault fault = onCall("zov_smlGet");
    fault.delay = std::chrono::hours(1);
    device->addFault(fault);
    std::thread delayed([this] { domainStatus(); });
    Client other;
    EXPECT_EQ(other.set("Cmd.Switch.ReqAdmin"), 0);
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(statuses(), (std::vector<int32_t>{0, 0, 0}));
    device.reset(); // ends the delay
    delayed.join();
}

TEST_F(Faults, NullHandleMakesAConnectionThatIsNone) {
    sim::Fault fault = onCall("zov_IPConnect");
    fault.nullHandle = true;
    fault.times = 2;
    device->addFault(fault);
    for (int i = 0; i < 2; ++i) {
        zov_handle_t handle = 99;
        EXPECT_EQ(zov_IPConnect("localhost", "test", "", &handle), 0);
        EXPECT_EQ(handle, 0U);
    }
    EXPECT_EQ(device->connectionCount(), 1U);
    zov_handle_t handle = 0;
    EXPECT_EQ(zov_IPConnect("localhost", "test", "", &handle), 0);
    EXPECT_NE(handle, 0U);
}

TEST_F(Faults, NullHandleOfZoningCalls) {
    sim::Fault fault;
    fault.nullHandle = true;
    fault.times = -1;
    device->addFault(fault);
    char somewhere = 0;
    void *zoneset = &somewhere;
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset), 0);
    EXPECT_EQ(zoneset, nullptr);
    zoneset = &somewhere;
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, "none", &zoneset), 0);
    EXPECT_EQ(zoneset, nullptr);
    zoneset = &somewhere;
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), 0);
    EXPECT_EQ(zoneset, nullptr);
    EXPECT_EQ(zov_ZonesetCreate("oak"), nullptr);
    EXPECT_EQ(zov_ZoneAliasCreate("oak"), nullptr);
}

TEST_F(Faults, ResultOfACountIsTheCount) {
    sim::Fault fault = onCall("zov_ZonesetGetZoneCount");
    fault.result = -3;
    device->addFault(fault);
    void *zoneset = zov_ZonesetCreate("oak");
    EXPECT_EQ(zov_ZonesetGetZoneCount(zoneset), -3);
    EXPECT_EQ(zov_ZonesetGetZoneCount(zoneset), 0);
    EXPECT_EQ(zov_ZonesetDestroy(zoneset), 0);
}

TEST_F(Faults, RegistrationFailsCodeByCode) {
    sim::Fault fault = onKey("33", 14);
    fault.call = "zov_enRegisterForEventList";
    device->addFault(fault);
    EXPECT_EQ(client.registerFor({32, 33}), 0);
    EXPECT_EQ(client.registration[0].result, 0);
    EXPECT_EQ(client.registration[1].result, 14);
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{32});
}

TEST_F(Faults, RegistrationOfACodeMayOnlySeemToSucceed) {
    device->addFault(onKey("33", 0));
    EXPECT_EQ(client.registerFor({32, 33}), 0);
    EXPECT_EQ(client.registration[1].result, 0);
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{32});
}

TEST_F(Faults, RefusedConnectionsAreNotCounted) {
    sim::Fault fault = onCall("zov_IPConnect");
    fault.result = 111;
    fault.times = 3;
    device->addFault(fault);
    zov_handle_t handle = 0;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(zov_IPConnect("localhost", "test", "", &handle), 111);
    EXPECT_EQ(device->connectionCount(), 1U);
    EXPECT_EQ(zov_IPConnect("localhost", "test", "", &handle), 0);
    EXPECT_EQ(device->connectionCount(), 2U);
}

TEST_F(Faults, RulesAreToldWithWhatIsLeftOfThem) {
    sim::Fault fault = onKey("Oper.Switch.WWN", 9);
    fault.skip = 1;
    fault.times = 2;
    const int usedUp = device->addFault(fault);
    fault.skip = 5;
    const int other = device->addFault(fault);
    client.get("Oper.Switch.WWN");
    client.get("Oper.Switch.WWN");
    ASSERT_EQ(device->faults().size(), 2U);
    EXPECT_EQ(device->faults().at(usedUp).skip, 0U);
    EXPECT_EQ(device->faults().at(usedUp).times, 1);
    EXPECT_EQ(device->faults().at(other).skip, 3U);
    client.get("Oper.Switch.WWN");
    EXPECT_EQ(device->faults().at(usedUp).times, 0);
    EXPECT_EQ(device->faults().at(other).skip, 2U);
}
