#include "tools/dcache/doctor/examination.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/tools/LastingSwitch.h"
#include "tools/dcache/cache.h"

using namespace dcache;
using testing::Each;
using testing::Field;

namespace {

constexpr auto kShort = std::chrono::milliseconds(300);
constexpr auto kLong = std::chrono::minutes(1);

bool isGood(const Findings &findings, DataCacheArea area) {
    return findings.isAreaGood[static_cast<size_t>(area)];
}

class ExaminationTest : public testing::Test {
protected:
    /// The switch answers no call of this kind any more, or none about the key.
    void hangAt(const char *call, const char *key = "") {
        sim::Fault fault;
        fault.call = call;
        fault.key = key;
        fault.action = [] {
            for (;;)
                pause();
        };
        _switch->addFault(fault);
    }

    void refuse(const char *call, const char *key, int times) {
        sim::Fault fault;
        fault.call = call;
        fault.key = key;
        if (*key == '\0')
            fault.result = 9;
        else
            fault.status = 9;
        fault.times = times;
        _switch->addFault(fault);
    }

    // Not destroyed: the cache goes on working with it until the process ends.
    sim::Simulator *_switch = &support::lastingSwitch();
};

} // namespace

TEST_F(ExaminationTest, OfAHealthySwitchFindsEverythingGood) {
    const Findings findings = examineCache(kLong);
    EXPECT_TRUE(findings.isConnected);
    EXPECT_TRUE(findings.isStarted);
    EXPECT_EQ(findings.registrations.size(), 28u);
    EXPECT_THAT(findings.registrations, Each(Field(&zov_eventreg_s::result, 0)));
    EXPECT_THAT(findings.isAreaGood, Each(true));
    EXPECT_TRUE(findings.isReady);
    EXPECT_GE(findings.secondsSinceReadyPass, 0);
    EXPECT_GE(findings.passes, 1u);
    EXPECT_EQ(findings.queued, 0u);
    EXPECT_EQ(findings.lockHolder, "");
}

TEST_F(ExaminationTest, EndsInTimeWhenTheSwitchRefusesTheConnection) {
    refuse("zov_IPConnect", "", -1);
    const Findings findings = examineCache(kShort);
    EXPECT_FALSE(findings.isConnected);
    EXPECT_FALSE(findings.isStarted);
}

TEST_F(ExaminationTest, EndsInTimeWhenTheSwitchDoesNotAnswerTheConnection) {
    hangAt("zov_IPConnect");
    EXPECT_FALSE(examineCache(kShort).isConnected);
}

TEST_F(ExaminationTest, EndsInTimeWhenTheRegistrationIsNotAnswered) {
    hangAt("zov_enRegisterForEventList");
    const Findings findings = examineCache(kShort);
    EXPECT_TRUE(findings.isConnected);
    EXPECT_FALSE(findings.isStarted);
}

TEST_F(ExaminationTest, EndsInTimeWhenAPassDoesNotEnd) {
    hangAt("", "Oper.Eport.LsdbRecordList.255");
    const Findings findings = examineCache(kShort);
    EXPECT_TRUE(findings.isStarted);
    EXPECT_EQ(findings.registrations.size(), 28u);
    EXPECT_EQ(findings.passes, 0u);
    EXPECT_THAT(findings.isAreaGood, Each(false)) << "what a pass has done shows at its end";
    EXPECT_FALSE(findings.isReady);
}

TEST_F(ExaminationTest, FindsTheNotificationsThatTheSwitchRefuses) {
    refuse("zov_enRegisterForEventList", "79", -1);
    const Findings findings = examineCache(kLong);
    EXPECT_TRUE(findings.isReady);
    for (const zov_eventreg_s &each : findings.registrations)
        EXPECT_EQ(each.result, each.code == ZOV_EVENT_NS_ENTRYADDED ? 9 : 0) << each.code;
}

TEST_F(ExaminationTest, FindsTheAreaThatCannotBeReadAndDoesNotWaitForIt) {
    refuse("", "Oper.Chassis.0.Fan.1", -1);
    const Findings findings = examineCache(kLong);
    EXPECT_FALSE(isGood(findings, DataCacheArea::chassis));
    EXPECT_TRUE(isGood(findings, DataCacheArea::ports));
    EXPECT_FALSE(findings.isReady);
    EXPECT_EQ(findings.secondsSinceReadyPass, -1);
    EXPECT_GE(findings.passes, 2u) << "it was tried again";
}

TEST_F(ExaminationTest, GivesAnAreaASecondTry) {
    refuse("", "Oper.Chassis.0.Fan.1", 1);
    const Findings findings = examineCache(kLong);
    EXPECT_TRUE(findings.isReady);
    EXPECT_GE(findings.passes, 2u);
}

TEST_F(ExaminationTest, FindsALockOfThisProcess) {
    connect();
    ASSERT_TRUE(CacheLock()->ZoningLock("ann"));
    EXPECT_EQ(examineCache(kLong).lockHolder, "ann");
}
