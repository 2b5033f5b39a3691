#include "sim/core/Recorder.h"

#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;
using simtest::linesOf;

namespace {

/// The number of a connection as records show it.
std::string numberOf(const Client &client) {
    return std::to_string(client.handle);
}

} // namespace

TEST(Recorder, ShowsAWholeConversationVerbatim) {
    const auto device = sim::create();
    Client client;
    const std::string n = numberOf(client);
    ASSERT_EQ(client.registerFor({33, 300}), 0);
    client.get("Oper.Switch.DomainID");
    client.get("Oper.Switch.Color");
    client.getBatch({"Oper.Switch.WWN", "Oper.X"});
    device->set("Oper.Chassis.0.Fan.1", "Bad");
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    client.set("Config.Switch.TransparentMode", "True");
    client.set("Cmd.Switch.ReqAdmin", "ignored");
    SmlMessage message = simtest::messageOf("Cmd.Switch.RelAdmin", "garbage");
    zov_smlSetBatch(client.handle, &message, 1);
    const std::vector<std::string> expected = {
        "zov_IPConnect(" + n + ", \"localhost\", \"test\", \"\") = 0",
        "zov_enRegisterForEventList(" + n + ", 33, 300 status 22) = 0",
        "zov_smlGet(" + n + ") = 0: Oper.Switch.DomainID=\"1\"",
        "zov_libFreeMemory() = 0",
        "zov_smlGet(" + n + ") = 5: Oper.Switch.Color=\"\" status 5",
        "zov_libFreeMemory(null) = 1",
        "zov_smlGetBatch(" + n + ") = 0: Oper.Switch.WWN=\"100000C0DD00A1B2\", Oper.X=\"\" status 5",
        "notification(" + n + ", 33 [0:0:0] \"Oper.Chassis.0.Fan.1 is now Bad\")",
        "zov_smlSet(" + n + ") = 10: Config.Switch.TransparentMode=\"True\" status 10",
        "zov_smlSet(" + n + ") = 0: Cmd.Switch.ReqAdmin=\"\"",
        "zov_smlSetBatch(" + n + ") = 0: Cmd.Switch.RelAdmin=\"\"",
    };
    EXPECT_EQ(linesOf(*device), expected);
}

TEST(Recorder, BatchThatFailedAsAWholeShowsItsKeysOnly) {
    const auto device = sim::create();
    const Client client;
    sim::Fault fault;
    fault.call = "zov_smlGetBatch";
    fault.result = 7;
    device->addFault(fault);
    device->clearRecords();
    client.getBatch({"Oper.Switch.WWN", "Oper.X"});
    EXPECT_EQ(linesOf(*device), std::vector<std::string>{"zov_smlGetBatch(" + numberOf(client) +
                                                         ") = 7: Oper.Switch.WWN=\"\", Oper.X=\"\""});
}

TEST(Recorder, RefusedCallsAreRecordedToo) {
    const auto device = sim::create();
    const Client client;
    device->clearRecords();
    zov_smlGetBatch(client.handle, nullptr, 3);
    zov_smlSet(client.handle, nullptr, nullptr);
    zov_IPConnect("elsewhere", "test", nullptr, nullptr);
    zov_enRegisterForEventList(client.handle, nullptr, nullptr, nullptr, 0);
    const std::vector<std::string> expected = {
        "zov_smlGetBatch(" + numberOf(client) + ") = 1",
        "zov_smlSet(" + numberOf(client) + ") = 1",
        "zov_IPConnect(\"elsewhere\", \"test\", null) = 1",
        "zov_enRegisterForEventList(" + numberOf(client) + ") = 1",
    };
    EXPECT_EQ(linesOf(*device), expected);
}

TEST(Recorder, ValuesWithoutATerminatorAreShownUpToTheEndOfTheirField) {
    const auto device = sim::create();
    const Client client;
    sim::Fault fault;
    fault.key = "Oper.Switch.WWN";
    fault.value = std::string(256, 'w');
    device->addFault(fault);
    device->clearRecords();
    client.getBatch({"Oper.Switch.WWN"});
    EXPECT_EQ(linesOf(*device), std::vector<std::string>{"zov_smlGetBatch(" + numberOf(client) +
                                                         ") = 0: Oper.Switch.WWN=\"" + std::string(256, 'w') + "\""});
}

TEST(Recorder, ClearingForgetsAndGoesOn) {
    const auto device = sim::create();
    const Client client;
    EXPECT_EQ(device->records().size(), 1U);
    device->clearRecords();
    EXPECT_TRUE(device->records().empty());
    client.set("Cmd.Switch.ReqAdmin");
    ASSERT_EQ(device->records().size(), 1U);
    const sim::Record record = device->records()[0];
    EXPECT_EQ(record.client, client.handle);
    EXPECT_EQ(record.call, "zov_smlSet");
    EXPECT_EQ(record.result, 0);
    ASSERT_EQ(record.exchanges.size(), 1U);
    EXPECT_EQ(record.exchanges[0].key, "Cmd.Switch.ReqAdmin");
    EXPECT_EQ(record.exchanges[0].status, 0);
}

TEST(Recorder, LosesNothingOfManyThreads) {
    const auto device = sim::create();
    const Client client;
    device->clearRecords();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&client] {
            for (int i = 0; i < 100; ++i)
                client.set("Cmd.Switch.RelAdmin");
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(device->records().size(), 400U);
}

TEST(Recorder, TellsItsSinksOfEveryRecordInOrderUntilTheyAreTakenAway) {
    const auto device = sim::create();
    const Client client;
    std::vector<std::string> first;
    std::vector<std::string> second;
    const int number = device->addSink([&](const sim::Record &record) { first.push_back(record.line()); });
    device->clearRecords();
    client.set("Cmd.Switch.ReqAdmin");
    device->addSink([&](const sim::Record &record) { second.push_back(record.line()); });
    client.set("Cmd.Switch.RelAdmin");
    EXPECT_EQ(first, linesOf(*device));
    device->removeSink(number);
    client.get("Oper.Switch.DomainID");
    EXPECT_EQ(first.size(), 2U);
    EXPECT_EQ(second.size(), 3U) << "the release of memory is recorded too";
}

TEST(Recorder, SinkThatThrowsHarmsNoCall) {
    const auto device = sim::create();
    const Client client;
    device->addSink([](const sim::Record &) { throw std::runtime_error("no room"); });
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1");
    EXPECT_EQ(device->records().size(), 3U);
}

TEST(Recorder, NotesWhenACallCameInAndWhenANotificationWentOut) {
    const auto device = sim::create();
    Client client;
    client.registerFor({33});
    device->clearRecords();
    sim::Fault slow;
    slow.call = "zov_smlGet";
    slow.action = [&] { device->passTime(std::chrono::seconds(7)); };
    device->addFault(slow);
    client.get("Oper.Switch.DomainID");
    device->set("Oper.Chassis.0.Fan.1", "Bad");
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    const std::vector<sim::Record> records = device->records();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].time.count(), 3600000);
    EXPECT_EQ(records[2].time.count(), 3607000);
}

TEST(Recorder, ThatKeepsNothingStillTellsItsSinks) {
    const auto device = sim::create();
    const Client client;
    std::vector<std::string> told;
    device->addSink([&](const sim::Record &record) { told.push_back(record.line()); });
    device->clearRecords();
    device->keepRecords(false);
    client.set("Cmd.Switch.ReqAdmin");
    EXPECT_EQ(device->records().size(), 0U);
    EXPECT_EQ(told.size(), 1U);
    device->keepRecords(true);
    client.set("Cmd.Switch.RelAdmin");
    EXPECT_EQ(linesOf(*device), std::vector<std::string>{told.back()});
}
