#include "sim/levers/RuleText.h"

#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <gmock/gmock.h>

#include "sim/levers/Duration.h"

using namespace std::chrono_literals;
using sim::Fault;
using sim::parseDuration;
using sim::shownDuration;
using sim::toText;
using testing::AllOf;
using testing::HasSubstr;

namespace {

/// The rule of words with blanks between them, none in their values.
Fault ruleOf(const std::string &words) {
    Fault rule;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const size_t equals = word.find('=');
        const bool hasValue = equals != std::string::npos;
        sim::applyRuleWord(rule, word.substr(0, equals),
                           hasValue ? std::optional<std::string>(word.substr(equals + 1)) : std::nullopt);
    }
    sim::checkRule(rule);
    return rule;
}

/// Why words are no rule; empty when they are one.
std::string refusalOf(const std::string &words) {
    try {
        ruleOf(words);
        return "";
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
}

/// The rule of the words that are said of another one.
Fault again(const Fault &rule) {
    Fault copy;
    for (const sim::SaidWord &said : sim::ruleWordsOf(rule))
        sim::applyRuleWord(copy, said.word->name,
                           said.word->hasValue() ? std::optional<std::string>(said.value) : std::nullopt);
    return copy;
}

} // namespace

TEST(RuleText, EveryWordSaysWhatItIsAbout) {
    const Fault fault = ruleOf("call=zov_smlGet key=Oper.*.WWN step=merge after=90s skip=2 times=3 chance=25 seed=7 "
                               "status=24 stale delay=1500ms hang=2min do=clock");
    EXPECT_EQ(fault.call, "zov_smlGet");
    EXPECT_EQ(fault.key, "Oper.*.WWN");
    EXPECT_EQ(fault.step, "merge");
    EXPECT_EQ(fault.after, 90s);
    EXPECT_EQ(fault.skip, 2U);
    EXPECT_EQ(fault.times, 3);
    EXPECT_EQ(fault.chance, 25U);
    EXPECT_EQ(fault.seed, 7U);
    EXPECT_EQ(fault.status, 24);
    EXPECT_TRUE(fault.stale);
    EXPECT_EQ(fault.delay, 1500ms);
    EXPECT_EQ(fault.hang, 2min);
    EXPECT_EQ(fault.actionText, "clock");
    EXPECT_EQ(ruleOf("result=-3").result, -3);
    EXPECT_EQ(ruleOf("value=abc").value, "abc");
    EXPECT_TRUE(ruleOf("garbled").garbled);
    EXPECT_TRUE(ruleOf("nullhandle").nullHandle);
    EXPECT_EQ(ruleOf("times=always nullhandle").times, -1);
    EXPECT_EQ(ruleOf("times=-1 nullhandle").times, -1);
    EXPECT_EQ(ruleOf("hang=1h").hang, 1h);
    EXPECT_EQ(ruleOf("hang=5").hang, 5s);
    EXPECT_EQ(ruleOf("seed=18446744073709551615 garbled").seed, UINT64_MAX);
}

TEST(RuleText, NotificationsHaveWordsOfTheirOwn) {
    EXPECT_EQ(ruleOf("call=notification lost").copies, 0U);
    EXPECT_EQ(ruleOf("call=notification duplicated").copies, 2U);
    EXPECT_EQ(ruleOf("call=notification storm=500").copies, 500U);
    EXPECT_TRUE(ruleOf("reordered call=notification").reordered);
    EXPECT_EQ(ruleOf("call=notification key=33 late=5s").delay, 5s);
    EXPECT_EQ(ruleOf("call=notification delay=5s").delay, 5s);
}

TEST(RuleText, WhatIsNotSaidIsAsInANewRule) {
    const Fault fault = ruleOf("result=1");
    EXPECT_EQ(fault.call, "");
    EXPECT_EQ(fault.times, 1);
    EXPECT_EQ(fault.chance, 100U);
    EXPECT_EQ(fault.seed, std::nullopt);
    EXPECT_EQ(fault.status, std::nullopt);
    EXPECT_EQ(fault.value, std::nullopt);
    EXPECT_EQ(fault.copies, std::nullopt);
    EXPECT_EQ(toText(fault), "result=1");
}

TEST(RuleText, OneFormIsWrittenOfEveryRule) {
    const std::vector<std::pair<const char *, const char *>> forms = {
        {"times=always   key=* call=zov_smlSet status=0", "call=zov_smlSet key=* times=always status=0"},
        {"delay=120s", "delay=2min"},
        {"delay=86400000ms", "delay=1d"},
        {"hang=1500ms", "hang=1500ms"},
        {"call=notification delay=61s", "call=notification late=61s"},
        {"call=notification storm=2", "call=notification duplicated"},
        {"call=notification storm=0", "call=notification lost"},
        {"call=notification storm=1", "call=notification storm=1"},
        {"value=", "value=\"\""},
        {"nullhandle step=merge", "step=merge nullhandle"},
        {"chance=5 seed=9 garbled", "chance=5 seed=9 garbled"},
        {"do=who skip=1", "skip=1 do=who"},
    };
    for (const auto &[given, written] : forms)
        EXPECT_EQ(toText(ruleOf(given)), written) << given;
}

TEST(RuleText, ValuesStandInQuotationMarksWhenTheyMust) {
    Fault fault;
    fault.key = "a b";
    fault.value = "\"\\\n\xFF";
    EXPECT_EQ(toText(fault), R"(key="a b" value="\"\\\x0a\xff")");
}

TEST(RuleText, TheWordsSaidOfARuleMakeTheSameRuleAgain) {
    Fault fault = ruleOf("call=notification key=3* step=x after=250ms skip=4 times=always chance=50 seed=1 late=5s "
                         "storm=3 reordered");
    fault.value.emplace();
    for (int byte = 0; byte < 256; ++byte)
        *fault.value += static_cast<char>(static_cast<unsigned char>(byte));
    fault.key = "a b*\"\\";
    const Fault copy = again(fault);
    EXPECT_EQ(toText(copy), toText(fault));
    EXPECT_EQ(copy.value, fault.value);
    EXPECT_EQ(copy.key, fault.key);
    EXPECT_EQ(copy.after, 250ms);
    const Fault other = ruleOf("status=5 stale nullhandle delay=1s hang=1d do=who");
    EXPECT_EQ(toText(again(other)), toText(other));
}

TEST(RuleText, AWrongWordIsToldWithWhatIsAllowed) {
    EXPECT_THAT(refusalOf("delya=5s"), AllOf(HasSubstr("allowed: call, key, "), HasSubstr("did you mean 'delay'?")));
    EXPECT_THAT(refusalOf("call=zov_smlGte result=1"),
                AllOf(HasSubstr("not 'zov_smlGte'"), HasSubstr("did you mean 'zov_smlGet'?")));
    EXPECT_EQ(refusalOf("skip=two result=1"), "must be a whole number from 0 to 4294967295, not 'two'");
    EXPECT_THAT(refusalOf("skip=-1 result=1"), HasSubstr("not '-1'"));
    EXPECT_THAT(refusalOf("result=99999999999"), HasSubstr("from -2147483648 to 2147483647"));
    EXPECT_THAT(refusalOf("times=often result=1"), HasSubstr("or 'always', not 'often'"));
    EXPECT_THAT(refusalOf("delay=s"), HasSubstr("with ms, s, min, h or d"));
    EXPECT_THAT(refusalOf("delay=99999999999h"), HasSubstr("must be a time"));
    EXPECT_EQ(refusalOf("result"), "needs a value");
    EXPECT_EQ(refusalOf("stale=yes"), "has no value");
    EXPECT_THAT(refusalOf("=5"), HasSubstr("is no word of it"));
    EXPECT_THAT(refusalOf("call=notification lost storm=5"), HasSubstr("one of these"));
    EXPECT_THAT(refusalOf("call=notification late=5s delay=6s"), HasSubstr("the same"));
}

TEST(RuleText, ARuleThatCannotBeIsRefused) {
    EXPECT_THAT(refusalOf("chance=0 result=1"), HasSubstr("from 1 to 100, not '0'"));
    EXPECT_THAT(refusalOf("lost"), HasSubstr("only notifications"));
    EXPECT_THAT(refusalOf("call=notification result=1"), HasSubstr("a notification has no result"));
    EXPECT_THAT(refusalOf("call=notification do=who"), HasSubstr("neither hangs nor acts"));
    EXPECT_THAT(refusalOf("stale garbled"), HasSubstr("a stale one or a garbled one"));
    EXPECT_THAT(refusalOf("after=367d result=1"), HasSubstr("at most a year"));
    EXPECT_THAT(refusalOf(""), HasSubstr("says what happens; allowed: result, status, "));
    EXPECT_THAT(refusalOf("call=zov_smlGet times=5"), HasSubstr("says what happens"));
}

TEST(RuleText, AnActionOfAProgramIsSeenButNotGiven) {
    Fault fault;
    fault.call = "zov_smlGet";
    fault.action = [] {};
    EXPECT_EQ(toText(fault), "call=zov_smlGet action");
    EXPECT_THAT(refusalOf("call=zov_smlGet action"), HasSubstr("is no word of it"));
    fault.actionText = "port 3 offline";
    EXPECT_EQ(toText(fault), "call=zov_smlGet do=\"port 3 offline\"");
}

TEST(RuleText, KnowsEveryCallOfTheSwitchLibrary) {
    std::ifstream header(ZOVLIB_HEADER);
    const std::string text{std::istreambuf_iterator<char>(header), std::istreambuf_iterator<char>()};
    unsigned found = 0;
    for (size_t at = text.find("zov_"); at != std::string::npos; at = text.find("zov_", at + 1)) {
        const size_t end =
            text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789", at);
        const std::string name = text.substr(at, end - at);
        if (text[end] != '(' || dlsym(RTLD_DEFAULT, name.c_str()) == nullptr)
            continue;
        EXPECT_EQ(refusalOf("call=" + name + " result=1"), "");
        ++found;
    }
    EXPECT_GT(found, 45U);
}

// ---- the times of rules ---------------------------------------------------------------------------------

TEST(Duration, IsAWholeNumberAndItsUnit) {
    EXPECT_EQ(parseDuration("90"), 90s);
    EXPECT_EQ(parseDuration("0"), 0ms);
    EXPECT_EQ(parseDuration("250ms"), 250ms);
    EXPECT_EQ(parseDuration("90 s"), 90s);
    EXPECT_EQ(parseDuration("2  MIN"), 2min);
    EXPECT_EQ(parseDuration("1h"), 1h);
    EXPECT_EQ(parseDuration("2d"), 48h);
    EXPECT_EQ(parseDuration("87840 h"), sim::kLongestDuration);
}

TEST(Duration, IsNothingElse) {
    for (const char *text : {"", "s", "-1", "+1", "1.5 s", "1 week", "5 s s", "90 ", " 90", "87841 h",
                             "1000000000000ms", "99999999999999999999"})
        EXPECT_EQ(parseDuration(text), std::nullopt) << text;
}

TEST(Duration, IsShownInTheLongestUnitThatItIsAWholeNumberOf) {
    EXPECT_EQ(shownDuration(0ms), "0s");
    EXPECT_EQ(shownDuration(1001ms), "1001ms");
    EXPECT_EQ(shownDuration(61s), "61s");
    EXPECT_EQ(shownDuration(90min), "90min");
    EXPECT_EQ(shownDuration(25h), "25h");
    EXPECT_EQ(shownDuration(48h), "2d");
    for (const auto time : {1ms, 999ms, 60000ms, 86399999ms})
        EXPECT_EQ(parseDuration(shownDuration(time)), time);
}
