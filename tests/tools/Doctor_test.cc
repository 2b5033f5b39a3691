// `dcache doctor`: commands/doctor.cc, and the command line around it.
#include <chrono>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/tools/Json.h"
#include "tests/tools/LastingSwitch.h"
#include "tests/tools/RunDcache.h"
#include "tools/dcache/commands/commands.h"

using namespace dcache;
using support::runDcache;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Doctor, ToldOfARefusedRegistrationAndAnAreaShowsBoth) {
    sim::Simulator &device = support::lastingSwitch(); // the cache goes on working with it until the process ends
    sim::Fault registration;
    registration.call = "zov_enRegisterForEventList";
    registration.key = "1";
    registration.status = 9;
    device.addFault(registration);
    sim::Fault area;
    area.key = "Oper.Switch.OperState";
    area.status = 9;
    area.times = -1;
    device.addFault(area);
    const Diagnosis diagnosis = examine(std::chrono::minutes(1));
    EXPECT_FALSE(diagnosis.isHealthy);
    const std::string table = render(diagnosis.report, Format::table, false);
    EXPECT_THAT(table, HasSubstr("registration           bad    1 of 28 notifications refused\n"
                                 "notification 1         bad    ZOV_EVENT_FABRIC_CHANGE refused, result 9\n"
                                 "area switch            bad    could not be read; see /tmp/cim.out\n"
                                 "area chassis           good   loaded\n"));
    EXPECT_THAT(table, HasSubstr("log /tmp/cim.out       good   can be written\n"));
}

TEST(Doctor, DoesNotWaitLongerThanItWasTold) {
    sim::Simulator &device = support::lastingSwitch();
    sim::Fault fault;
    fault.call = "zov_IPConnect";
    fault.result = 9;
    fault.times = -1;
    device.addFault(fault);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(examine(std::chrono::milliseconds(200)).isHealthy);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8)) << "a new connection takes 10";
}

TEST(DoctorCommandLine, AHealthySwitchIsASuccess) {
    const auto run = runDcache({"doctor"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_THAT(run.out, testing::StartsWith("health  good\n\nCHECK "));
    for (const std::string &line : support::lines(run.out))
        EXPECT_LE(line.size(), 80u) << line;
    const auto values = support::parseJson(runDcache({"doctor", "-o", "json"}).out);
    EXPECT_EQ(values.at("healthy"), true);
    EXPECT_EQ(values.at("registrations").size(), 28u);
    EXPECT_THAT(runDcache({"doctor", "-o", "terse"}).out,
                testing::StartsWith("healthy=true\nchecks.1.check=connection\n"));
}

TEST(DoctorCommandLine, ALogThatCannotBeWrittenIsAFailureThatIsShown) {
    ASSERT_EQ(mkdir("/tmp/cim.out", 0700), 0);
    const auto run = runDcache({"doctor"});
    rmdir("/tmp/cim.out");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_THAT(run.out, HasSubstr("health  1 of 16 checks in trouble\n"));
    EXPECT_THAT(run.out, HasSubstr("log /tmp/cim.out       bad    Is a directory\n"));
}

TEST(DoctorCommandLine, WithoutAnyPatienceThereIsAnAnswerAllTheSame) {
    const auto run = runDcache({"doctor", "--wait", "0"});
    EXPECT_THAT(run.out, HasSubstr("\nconnection "));
    EXPECT_THAT(run.exitCode, testing::AnyOf(0, 1));
}
