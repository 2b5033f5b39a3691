#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/verbs/Commands.h"

using simtest::Client;
using simtest::refusalOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char *kDomain = "Oper.Switch.DomainID";

class RuleVerbs : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    std::string tell(const std::string &commands) { return sim::perform(*device, commands); }
    int32_t statusOfGet() const { return client.get(kDomain).status; }
};

} // namespace

TEST_F(RuleVerbs, ARuleAppliesAfterWhatItSkipsAndSoManyTimes) {
    EXPECT_EQ(tell("rule add call=zov_smlGet key=Oper.Switch.* skip=1 times=2 result=103"), "rule 1");
    std::vector<int32_t> statuses(5);
    for (int32_t &status : statuses)
        status = statusOfGet();
    EXPECT_EQ(statuses, (std::vector<int32_t>{0, 103, 103, 0, 0}));
}

TEST_F(RuleVerbs, KeysAnswerAStatusOrAValue) {
    tell("rule add key=Oper.Switch.DomainID value=\"7\\x41 \"\nrule add status=5 times=always");
    EXPECT_EQ(client.get(kDomain).value, "7A ");
    EXPECT_EQ(client.getBatch({kDomain})[0].status, 5);
    EXPECT_EQ(client.getBatch({kDomain})[0].status, 5);
}

TEST_F(RuleVerbs, AConnectionMayComeWithoutAHandle) {
    tell("rule add nullhandle call=zov_IPConnect");
    const Client second;
    EXPECT_EQ(second.connected, 0);
    EXPECT_EQ(second.handle, 0U);
}

TEST_F(RuleVerbs, ACommandIsCarriedOutJustBeforeTheCall) {
    tell(R"(rule add call=zov_smlGet key=*DomainID do="set Oper.Switch.DomainID 77 silently")");
    EXPECT_EQ(client.get(kDomain).value, "77");
    tell("set Oper.Switch.DomainID 1");
    EXPECT_EQ(client.get(kDomain).value, "1");
}

TEST_F(RuleVerbs, SeveralCommandsOfARuleStandOnLinesOfTheirOwn) {
    tell(R"(rule add call=zov_smlGet do="fault A\x0aset Oper.Switch.DomainID 77")");
    EXPECT_EQ(client.get(kDomain).value, "77");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "A");
}

TEST_F(RuleVerbs, ACommandThatCannotBeUnderstoodIsNoRule) {
    EXPECT_EQ(refusalOf(*device, "rule add do=\"prot 3 offline\""), "there is no verb 'prot'; did you mean 'port'?");
    EXPECT_EQ(tell("rule list"), "");
}

TEST_F(RuleVerbs, ARuleTakesItsTime) {
    tell("clock pace driven\nrule add delay=30ms");
    EXPECT_EQ(statusOfGet(), 0);
    EXPECT_EQ(device->clock(), std::chrono::milliseconds(3600030));
}

TEST_F(RuleVerbs, ARuleThatWaitsForAStepBeginsWithIt) {
    tell("rule add step=merge status=5 times=always");
    EXPECT_EQ(statusOfGet(), 0);
    tell("step another");
    EXPECT_EQ(statusOfGet(), 0);
    tell("step merge");
    EXPECT_EQ(statusOfGet(), 5);
}

TEST_F(RuleVerbs, NotificationsCanBeDoubled) {
    ASSERT_EQ(client.registerFor({40}), 0);
    tell("rule add call=notification key=40 duplicated\ndeliver 40 0 0 0 hot\ndeliver 40 0 0 0 cold\nwait");
    EXPECT_EQ(simtest::shown(client.events(3)), (std::vector<std::string>{"40 hot", "40 hot", "40 cold"}));
}

TEST_F(RuleVerbs, TheSeedOfARuleThatDrawsIsTold) {
    EXPECT_EQ(tell("rule add status=5"), "rule 1");
    EXPECT_EQ(tell("rule add status=5 chance=50 times=always"), "rule 2, seed 2");
    EXPECT_EQ(tell("rule add garbled seed=18446744073709551615"), "rule 3, seed 18446744073709551615");
    EXPECT_EQ(simtest::linesIn(tell("rule list"))[1], "2: rule add times=always chance=50 seed=2 status=5");
    statusOfGet();
    EXPECT_NE(device->faults()[2].seed, 2U);
    EXPECT_EQ(device->faults()[2].firstSeed, 2U);
    EXPECT_EQ(device->faults()[1].firstSeed, std::nullopt);
}

TEST_F(RuleVerbs, ARuleThatCannotBeIsRefusedBeforeAnythingIsDone) {
    for (const char *rule : {"rule add", "rule add call=zov_smlGet times=2", "rule add delay=0", "rule add do=\"\""})
        EXPECT_THAT(refusalOf(*device, rule), StartsWith("a rule says what happens; allowed: result, ")) << rule;
    EXPECT_THAT(refusalOf(*device, "rule add delay=367d"), HasSubstr("at most a year"));
    EXPECT_THAT(refusalOf(*device, "rule add result=1 times=2147483648"), HasSubstr("times=TIMES (a whole number"));
    EXPECT_EQ(
        refusalOf(*device, "rule add call=notification lost storm=3"),
        "'storm' of a rule contradicts what was said: a notification is lost, duplicated or comes as a storm, one "
        "of these");
    EXPECT_EQ(refusalOf(*device, "fault A\nrule add lost"),
              "line 2: only notifications are lost, repeated or reordered");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_EQ(refusalOf(*device, "rule add stale stale"), "'stale' cannot be word 4; expected: stale once only");
    EXPECT_THAT(refusalOf(*device, "rule add stale=yes"), HasSubstr("'stale=yes' cannot be word 3"));
    EXPECT_THAT(refusalOf(*device, "rule add \"stale\""), HasSubstr("'stale' cannot be word 3"));
    EXPECT_EQ(tell("rule list"), "");
}

TEST_F(RuleVerbs, TheListShowsWhatIsLeftOfEachRule) {
    tell("rule add call=zov_smlGet skip=2 times=3 result=-1\n"
         "rule add key=\"Oper.*\" times=always status=5 value=\"a\\\"b\" delay=2ms\n"
         "rule add nullhandle call=zov_IPConnect do=\"fault \\\"two words\\\"\"\nrule add after=5s hang=1ms");
    EXPECT_EQ(statusOfGet(), 5);
    tell("clock pass 1500ms");
    EXPECT_EQ(tell("rule list"), "1: rule add call=zov_smlGet skip=1 times=3 result=-1\n"
                                 "2: rule add key=Oper.* times=always status=5 value=\"a\\\"b\" delay=2ms\n"
                                 "3: rule add call=zov_IPConnect nullhandle do=\"fault \\\"two words\\\"\"\n"
                                 "4: rule add after=3500ms hang=1ms");
}

TEST_F(RuleVerbs, TheRulesOfAListCanBeAddedAgain) {
    tell("rule add call=zov_smlGet key=\"a b\" skip=2 times=3 result=-1 delay=5ms hang=1ms\n"
         "rule add value=\"\\x00=#\\xff \" do=\"clock\"\n"
         "rule add status=1 stale chance=7 seed=99 after=1h step=silently\nrule add garbled\nrule add nullhandle\n"
         "rule add call=notification key=3* lost late=2s\nrule add call=notification storm=9 reordered times=0");
    const std::vector<std::string> list = simtest::linesIn(tell("rule list"));
    EXPECT_EQ(list.size(), 7U);
    tell("rule clear");
    EXPECT_EQ(tell("rule list"), "");
    for (const std::string &line : list)
        tell(line.substr(line.find(' ') + 1));
    const std::vector<std::string> again = simtest::linesIn(tell("rule list"));
    ASSERT_EQ(again.size(), list.size());
    for (size_t i = 0; i < list.size(); ++i)
        EXPECT_EQ(again[i].substr(again[i].find(' ')), list[i].substr(list[i].find(' ')));
}

TEST_F(RuleVerbs, TheSeedOfAllSettlesThatOfEach) {
    EXPECT_EQ(tell("rule add garbled"), "rule 1, seed 1");
    EXPECT_EQ(tell("rule seed 7\nrule add chance=5 result=1"), "rule 2, seed 7000002");
    EXPECT_EQ(tell("rule add chance=5 result=1 seed=9"), "rule 3, seed 9");
}

TEST_F(RuleVerbs, ASeedHasSixtyFourBits) {
    tell("rule seed 18446744073709551615");
    EXPECT_EQ(tell("rule add chance=5 result=1"), "rule 1, seed 18446744073708551617")
        << "a million less, and one more";
    EXPECT_THAT(refusalOf(*device, "rule seed 18446744073709551616"), HasSubstr("cannot be word 3"));
}

TEST_F(RuleVerbs, RulesAreRemovedByTheirNumbers) {
    tell("rule add call=zov_smlGet result=1\nrule add call=zov_smlGet result=2\nrule remove 1");
    EXPECT_EQ(statusOfGet(), 2);
    EXPECT_EQ(refusalOf(*device, "rule remove 1"), "there is no rule 1; 'rule list' lists them");
    EXPECT_EQ(refusalOf(*device, "rule remove 99"), "there is no rule 99; 'rule list' lists them");
}
