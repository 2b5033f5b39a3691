#include "sim/model/Accounts.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

constexpr const char *kFirst = "Oper.Switch.FirstPotentialUser";
constexpr const char *kNext = "Oper.Switch.NextPotentialUser.";

class Accounts : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({50}), 0); }

    /// The accounts as clients find them, and last the status that ended the walk.
    std::vector<std::string> walk() {
        std::vector<std::string> found;
        Answer answer = client.get(kFirst);
        for (; answer.status == 0 && found.size() < 100; answer = client.get(kNext + answer.value))
            found.push_back(answer.value);
        found.push_back(std::to_string(answer.status));
        return found;
    }

    using Answer = simtest::Answer;
};

} // namespace

TEST_F(Accounts, FormAChainThatEndsWithTheEndOfAList) {
    EXPECT_EQ(walk(), (std::vector<std::string>{"admin", "operator", "monitor", "24"}));
}

TEST_F(Accounts, AnAddedOneIsLast) {
    device->addAccount("guest");
    EXPECT_EQ(walk(), (std::vector<std::string>{"admin", "operator", "monitor", "guest", "24"}));
}

TEST_F(Accounts, ARemovedOneIsNoLinkOfTheChainAnyMore) {
    device->removeAccount("operator");
    EXPECT_EQ(walk(), (std::vector<std::string>{"admin", "monitor", "24"}));
    EXPECT_EQ(client.get(std::string(kNext) + "operator").status, simtest::kNoSuchKey);
    device->removeAccount("monitor");
    device->removeAccount("admin");
    EXPECT_EQ(walk(), std::vector<std::string>{"24"});
}

TEST_F(Accounts, AWalkIsABatchOfOneKeyAtATimeAsWell) {
    const std::vector<SmlMessage> messages =
        client.getBatch({kFirst, "Oper.Switch.NextPotentialUser.operator", "Oper.Switch.NextPotentialUser.monitor"});
    EXPECT_EQ(messages[0].status, 0);
    EXPECT_STREQ(messages[0].value, "admin");
    EXPECT_EQ(messages[1].status, 0);
    EXPECT_STREQ(messages[1].value, "monitor");
    EXPECT_EQ(messages[2].status, simtest::kEndOfList);
}

TEST_F(Accounts, NobodysNameHasNoSuccessor) {
    for (const char *name : {"", "guest", "Admin", "admi", "adminn", "admin "})
        EXPECT_EQ(client.get(std::string(kNext) + name).status, simtest::kNoSuchKey) << "'" << name << "'";
}

TEST_F(Accounts, EachChangeIsAnnounced) {
    device->addAccount("guest");
    device->removeAccount("admin");
    const std::vector<zov_event_s> events = client.events(2);
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{50, 50}));
    ASSERT_EQ(events.size(), 2U);
    EXPECT_STREQ(events[0].text, "account guest added");
    EXPECT_STREQ(events[1].text, "account admin removed");
    for (const zov_event_s &event : events)
        for (const int32_t number : event.source.number)
            EXPECT_EQ(number, 0);
}

TEST_F(Accounts, ComeAndGoInSilenceWhenAsked) {
    device->addAccount("guest", sim::Notify::no);
    device->removeAccount("admin", sim::Notify::no);
    EXPECT_EQ(walk(), (std::vector<std::string>{"operator", "monitor", "guest", "24"}));
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(Accounts, NamesThatDifferInCaseAreDifferentAccounts) {
    device->addAccount("ADMIN");
    EXPECT_EQ(client.get(std::string(kNext) + "admin").value, "operator");
    device->removeAccount("admin");
    EXPECT_EQ(walk(), (std::vector<std::string>{"operator", "monitor", "ADMIN", "24"}));
}

TEST_F(Accounts, ANameWithDotsAndPercentSignsIsFoundToo) {
    device->addAccount("j.r.%s%u");
    device->addAccount("last");
    EXPECT_EQ(client.get(std::string(kNext) + "j.r.%s%u").value, "last");
}

TEST_F(Accounts, NamesAreUniqueAndOfPrintingCharactersWithoutBlanks) {
    device->addAccount(std::string(64, 'n'), sim::Notify::no);
    EXPECT_EQ(client.get(std::string(kNext) + std::string(64, 'n')).status, simtest::kEndOfList);
    const std::vector<std::string> before = walk();
    for (const std::string &name : {std::string("admin"), std::string(), std::string(65, 'n'), std::string("a b"),
                                    std::string("a\n"), std::string("a\0b", 3), std::string("caf\xE9")})
        EXPECT_THROW(device->addAccount(name), std::invalid_argument) << "'" << name << "'";
    EXPECT_THROW(device->removeAccount("guest"), std::invalid_argument);
    EXPECT_THROW(device->removeAccount("Admin"), std::invalid_argument);
    EXPECT_EQ(walk(), before);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(Accounts, TheKeysOfTheChainAreReadOnlyToEverybody) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(kFirst, "x"), simtest::kReadOnly);
    EXPECT_EQ(client.set(std::string(kNext) + "admin", "x"), simtest::kReadOnly);
    EXPECT_THROW(device->set(kFirst, "x"), std::invalid_argument);
    EXPECT_EQ(device->get(kFirst), "admin");
    EXPECT_EQ(device->get(std::string(kNext) + "monitor"), "");
}
