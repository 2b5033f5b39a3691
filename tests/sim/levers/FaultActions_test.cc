// Rules that do something to the switch in the middle of what a client does.

#include <atomic>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::linkOf;
using simtest::nameOf;

namespace {

class FaultActions : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void add(const char *call, const char *key, const std::function<void()> &action) {
        sim::Fault fault;
        fault.call = call;
        fault.key = key;
        fault.action = action;
        device->addFault(fault);
    }
    std::string domainId() const { return client.get("Oper.Switch.DomainID").value; }
};

} // namespace

TEST_F(FaultActions, HappenOnceJustBeforeTheCallIsServed) {
    int times = 0;
    add("zov_smlGet", "Oper.Switch.DomainID", [&] {
        ++times;
        device->set("Oper.Switch.DomainID", "77");
    });
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
    EXPECT_EQ(times, 0);
    EXPECT_EQ(domainId(), "77");
    EXPECT_EQ(domainId(), "77");
    EXPECT_EQ(times, 1);
}

TEST_F(FaultActions, APeerLeavesInTheMiddleOfAWalkByBatches) {
    simtest::addChain(*device, 4);
    add("zov_smlGetBatch", "Oper.Eport.LsdbRecord.3.WWN", [&] { device->removePeer(nameOf(3)); });
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecordList.255").value, "1,2,3,4");
    std::vector<int32_t> statuses;
    for (const char *domain : {"1", "2", "3", "4"}) {
        const std::string wwn = std::string("Oper.Eport.LsdbRecord.") + domain + ".WWN";
        const std::string hops = std::string("Oper.Eport.LsdbRecord.") + domain + ".Hops";
        for (const SmlMessage &message : client.getBatch({wwn.c_str(), hops.c_str()}))
            statuses.push_back(message.status);
        EXPECT_EQ(client.batchResult, 0);
    }
    EXPECT_EQ(statuses, (std::vector<int32_t>{0, 0, 0, 0, simtest::kNoSuchKey, simtest::kNoSuchKey, 0, 0}));
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecord.4.Hops"), "255");
    EXPECT_EQ(device->peers().size(), 2U);
}

TEST_F(FaultActions, APeerLeavesBetweenTwoStepsOfAWalkOfItsPorts) {
    simtest::addChain(*device, 2);
    sim::Fault fault;
    fault.key = "Oper.TopologyAll.2.Entry.*";
    fault.skip = 5;
    fault.action = [&] { device->disconnect(linkOf(1, 20, 2, 0)); };
    device->addFault(fault);
    unsigned read = 0;
    while (client.get("Oper.TopologyAll.2.Entry." + std::to_string(read) + ".PortWwn").status == 0)
        ++read;
    EXPECT_EQ(read, 5U);
}

TEST_F(FaultActions, NotificationsOfTheActionComeAsEver) {
    simtest::addChain(*device, 2);
    ASSERT_EQ(client.registerFor({1, 7}), 0);
    add("zov_smlGetBatch", "", [&] { device->removePeer(nameOf(2)); });
    client.getBatch({"Oper.Switch.WWN"});
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{7, 1}));
}

TEST_F(FaultActions, MayUseEveryPartOfTheSwitchAndMakeCalls) {
    add("zov_smlGet", "", [&] {
        device->clearFaults();
        device->addFault({});
        device->clearFaults();
        device->clearRecords();
        device->passTime(std::chrono::seconds(5));
        EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
        EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    });
    EXPECT_EQ(domainId(), "1");
    EXPECT_EQ(device->uptime(), 3605);
    EXPECT_EQ(simtest::linesOf(*device).front(),
              "zov_smlGet(" + std::to_string(client.handle) + ") = 0: Oper.Switch.WWN=\"100000C0DD00A1B2\"");
}

TEST_F(FaultActions, WinTheWholeCallAgainstLaterRules) {
    int actions = 0;
    add("", "Oper.Switch.DomainID", [&] { ++actions; });
    sim::Fault status;
    status.key = "Oper.Switch.DomainID";
    status.status = 66;
    device->addFault(status);
    EXPECT_EQ(client.get("Oper.Switch.DomainID").status, 0);
    EXPECT_EQ(client.get("Oper.Switch.DomainID").status, 66); // it was not used up
    EXPECT_EQ(actions, 1);
}

TEST_F(FaultActions, GoWithAResultAStatusOrADelayOfTheSameRule) {
    int actions = 0;
    sim::Fault fault;
    fault.action = [&] { ++actions; };
    fault.result = 77;
    device->addFault(fault);
    EXPECT_EQ(client.get("Oper.Switch.DomainID").status, 77);
    EXPECT_EQ(actions, 1);
    fault.result.reset();
    fault.key = "Oper.Switch.DomainID";
    fault.status = 66;
    device->addFault(fault);
    const std::vector<SmlMessage> messages = client.getBatch({"Oper.Switch.WWN", "Oper.Switch.DomainID"});
    EXPECT_EQ(messages[0].status, 0);
    EXPECT_EQ(messages[1].status, 66);
    EXPECT_EQ(actions, 2);
    fault.status.reset();
    fault.delay = std::chrono::milliseconds(1);
    device->addFault(fault);
    EXPECT_EQ(domainId(), "1");
    EXPECT_EQ(actions, 3);
}

TEST_F(FaultActions, OfSeveralRulesThatShareABatchAllHappenInTheirOrder) {
    std::string order;
    for (const char *key : {"Oper.Switch.WWN", "Oper.Switch.DomainID"}) {
        sim::Fault fault;
        fault.key = key;
        fault.status = 66;
        fault.action = [&order, key] { order += std::string(key) + " "; };
        device->addFault(fault);
    }
    client.getBatch({"Oper.Switch.DomainID", "Oper.Switch.WWN"});
    EXPECT_EQ(order, "Oper.Switch.WWN Oper.Switch.DomainID ");
}

TEST_F(FaultActions, OneThatThrowsFailsTheCallAlone) {
    add("zov_smlGetBatch", "", [] { throw std::runtime_error("no hands"); });
    const std::vector<SmlMessage> messages = client.getBatch({"Oper.Switch.WWN"});
    EXPECT_EQ(client.batchResult, 99);
    EXPECT_EQ(messages.size(), 1U);
    client.getBatch({"Oper.Switch.WWN"});
    EXPECT_EQ(client.batchResult, 0);
}

TEST_F(FaultActions, SwitchingTheSwitchOffFailsTheCallThatCausedIt) {
    add("zov_smlGet", "", [&] { device.reset(); });
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, simtest::kBadHandle);
}

TEST_F(FaultActions, DoNotHappenOnASwitchThatWasSwitchedOffDuringTheDelay) {
    std::atomic<bool> happened{false};
    sim::Fault fault;
    fault.delay = std::chrono::hours(1);
    fault.action = [&] { happened = true; };
    const int rule = device->addFault(fault);
    std::thread caller([this] { domainId(); });
    const auto deadline = std::chrono::steady_clock::now() + simtest::kPatience;
    while (device->faults().at(rule).times != 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    device.reset();
    caller.join();
    EXPECT_FALSE(happened);
}
