// Rules that answer with old or damaged values.

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;

namespace {

constexpr const char *kDomain = "Oper.Switch.DomainID";
constexpr const char *kWwn = "Oper.Switch.WWN";

class FaultValues : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    static sim::Fault staleOn(const char *key) {
        sim::Fault fault;
        fault.key = key;
        fault.stale = true;
        fault.times = -1;
        return fault;
    }
    static sim::Fault garbledOn(const char *key, std::optional<uint64_t> seed = std::nullopt) {
        sim::Fault fault;
        fault.key = key;
        fault.garbled = true;
        fault.times = -1;
        fault.seed = seed;
        return fault;
    }
    std::string domain() const { return client.get(kDomain).value; }
    std::vector<std::string> reads(int count) const {
        std::vector<std::string> values;
        for (int i = 0; i < count; ++i)
            values.push_back(client.get(kWwn).value);
        return values;
    }
};

} // namespace

TEST_F(FaultValues, AStaleOneIsThatBeforeTheLastChange) {
    device->set(kDomain, "7");
    device->set(kDomain, "8");
    const int rule = device->addFault(staleOn("Oper.Switch.*"));
    EXPECT_EQ(domain(), "7");
    EXPECT_EQ(domain(), "7");
    device->set(kDomain, "9");
    EXPECT_EQ(domain(), "8");
    EXPECT_STREQ(client.getBatch({kWwn, kDomain})[1].value, "8");
    EXPECT_EQ(device->get(kDomain), "9");
    device->removeFault(rule);
    EXPECT_EQ(domain(), "9");
}

TEST_F(FaultValues, WhatNeverChangedIsStaleAsItIs) {
    device->addFault(staleOn("*"));
    EXPECT_EQ(domain(), "1");
    device->set(kDomain, "1");
    EXPECT_EQ(domain(), "1");
}

TEST_F(FaultValues, AChangeByHandsOnTheSwitchCountsFromWhenItWasLookedAt) {
    const std::string serial = "Oper.UserPort.0.0.SFPSerialNumber";
    const simtest::Answer before = client.get(serial);
    ASSERT_EQ(before.status, 0);
    device->pullTransceiver(0);
    ASSERT_NE(client.get(serial).value, before.value);
    device->addFault(staleOn(serial.c_str()));
    EXPECT_EQ(client.get(serial).value, before.value);
}

TEST_F(FaultValues, AStaleOneNeedsAKeyThatIsThere) {
    device->addFault(staleOn("*"));
    EXPECT_EQ(client.get("Oper.Nothing").status, simtest::kNoSuchKey);
    EXPECT_EQ(client.getBatch({"Oper.Nothing"})[0].status, simtest::kNoSuchKey);
}

TEST_F(FaultValues, AStaleOneMayComeWithAStatus) {
    device->set(kDomain, "7");
    sim::Fault fault = staleOn(kDomain);
    fault.status = 23;
    device->addFault(fault);
    const SmlMessage message = client.getBatch({kDomain})[0];
    EXPECT_EQ(message.status, 23);
    EXPECT_STREQ(message.value, "1");
    EXPECT_EQ(client.get(kDomain).status, 23);
}

TEST_F(FaultValues, NeitherKindIsAMatterForSets) {
    device->addFault(staleOn("*"));
    device->addFault(garbledOn("*"));
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
    EXPECT_EQ(client.registerFor({33}), 0);
    EXPECT_EQ(client.registration[0].result, 0);
}

TEST_F(FaultValues, AGarbledOneIsAnotherEveryTimeAndTheSwitchKeepsItsOwn) {
    device->addFault(garbledOn(kWwn));
    const std::vector<std::string> values = reads(20);
    EXPECT_GT(std::set<std::string>(values.begin(), values.end()).size(), 10U);
    for (const std::string &value : values)
        EXPECT_NE(value, simtest::kLocal);
    EXPECT_EQ(client.get(kDomain).value, "1");
    EXPECT_EQ(device->get(kWwn), simtest::kLocal);
}

TEST_F(FaultValues, TheSameSeedGarblesTheSameAndAnotherOneDoesNot) {
    int rule = device->addFault(garbledOn(kWwn, 42));
    const std::vector<std::string> first = reads(10);
    device->removeFault(rule);
    rule = device->addFault(garbledOn(kWwn, 42));
    EXPECT_EQ(reads(10), first);
    device->removeFault(rule);
    device->addFault(garbledOn(kWwn, 43));
    EXPECT_NE(reads(10), first);
}

TEST_F(FaultValues, AGarbledBatchIsGarbledKeyByKey) {
    device->addFault(garbledOn(kWwn, 1));
    const std::vector<SmlMessage> messages = client.getBatch({kWwn, kDomain, kWwn});
    EXPECT_STRNE(messages[0].value, simtest::kLocal);
    EXPECT_STREQ(messages[1].value, "1");
    EXPECT_STRNE(messages[2].value, messages[0].value);
    EXPECT_EQ(messages[0].status, 0);
}

TEST_F(FaultValues, OneRuleHasOneKindOfValue) {
    sim::Fault fault = staleOn("*");
    fault.garbled = true;
    EXPECT_THROW(device->addFault(fault), std::invalid_argument);
    fault.garbled = false;
    fault.value = "x";
    EXPECT_THROW(device->addFault(fault), std::invalid_argument);
}
