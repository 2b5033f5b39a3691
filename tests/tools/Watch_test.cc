// `dcache watch` from outside.
#include <fstream>
#include <gmock/gmock.h>

#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"

using support::DcacheRun;
using support::runDcache;
using support::Stdout;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// A step of some seconds, at this speed, is over before the cache has come to rest after it.
const support::Arguments kFastDemo = {"watch", "--scenario", "demo", "--speed", "10000"};

support::Outcome played(const std::string &scenario, const support::Arguments &more = {}) {
    support::Arguments arguments = {"watch", "--scenario", scenario, "--speed", "10000"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runDcache(arguments);
}

const std::string kDemo = R"(TIME  switch  port 16 comes up: a cable to another switch
TIME  event   port 16 went from offline to online
TIME  switch  that switch joins the fabric
TIME  event   switch 10:00:00:C0:DD:00:B2:01 joined the fabric
TIME  event   switches joined the fabric
TIME  switch  three devices log in at its ports
TIME  event   port 21:00:00:E0:8B:00:20:00 entered the name server
TIME  event   port 21:00:00:E0:8B:00:20:01 entered the name server
TIME  event   port 21:00:00:E0:8B:00:20:02 entered the name server
TIME  switch  a core switch is linked to it: two fabrics merge
TIME  event   switches joined the fabric
TIME  event   no longer part of fabric 10:00:00:C0:DD:00:A1:B2
TIME  event   this switch joined the fabric
TIME  event   switch 10:00:00:C0:DD:00:B2:01 joined the fabric
TIME  switch  a second link between those two comes up
              (no event: the fabric has the same switches as before)
TIME  switch  both links fail: the fabric segments
TIME  event   switches left fabric 10:00:00:C0:DD:00:C0:01
TIME  event   now part of fabric 10:00:00:C0:DD:00:A1:B2
TIME  event   this switch joined the fabric
TIME  event   switch 10:00:00:C0:DD:00:B2:01 joined the fabric
TIME  switch  a link comes back: the fabric heals
TIME  event   switches joined the fabric
TIME  event   no longer part of fabric 10:00:00:C0:DD:00:A1:B2
TIME  event   this switch joined the fabric
TIME  event   switch 10:00:00:C0:DD:00:B2:01 joined the fabric
TIME  switch  the new switch becomes the principal
TIME  event   no longer part of fabric 10:00:00:C0:DD:00:C0:01
TIME  event   now part of fabric 10:00:00:C0:DD:00:B2:01
TIME  event   this switch joined the fabric
TIME  event   switch 10:00:00:C0:DD:00:B2:01 joined the fabric
TIME  event   switch 10:00:00:C0:DD:00:C0:01 joined the fabric
TIME  switch  one of its devices logs out
TIME  event   port 21:00:00:E0:8B:00:20:01 left the name server
TIME  switch  and logs in again
TIME  event   port 21:00:00:E0:8B:00:20:01 entered the name server
TIME  switch  the core switch is switched off
TIME  event   switch 10:00:00:C0:DD:00:C0:01 left the fabric
TIME  event   switches left the fabric
TIME  switch  the CPU overheats
TIME  event   temperature alarm: too hot, CPU0 sensor
)";

const std::string kDirector = R"(TIME  switch  port 44 comes up
TIME  event   port 44 went from offline to online
TIME  switch  port 5 goes down
TIME  event   port 5 went from online to offline
TIME  switch  port 5 becomes an E port
              (no event: port types are kept up to date, but raise no events)
TIME  switch  a transceiver is plugged into port 55
              (no event: the cache knows it now, but tells nobody)
TIME  switch  the transceiver is pulled out again
              (no event: the cache has forgotten it, without a word)
TIME  switch  port 6 is powered off
              (no event: a port that goes away raises none, one that comes does)
TIME  switch  port 6 is powered on
TIME  event   port 6 appeared
TIME  switch  the I/O blade is pulled out of slot 7
TIME  event   I/O blade removed from slot 7
TIME  switch  a fan blade is put into slot 7
TIME  event   fan blade inserted in slot 7
TIME  switch  the account ann is added
TIME  event   user account "ann" added
TIME  switch  the account ann is removed
TIME  event   user account "ann" removed
TIME  switch  power supply 2 goes bad
TIME  event   power supply 2 failed, 1 of 2 good
TIME  switch  power supply 2 is pulled out
TIME  event   power supply 2 removed, 1 of 2 good
TIME  switch  a new power supply 2 is put in
TIME  event   power supply 2 installed
TIME  switch  fan 1 fails
              (no event: fans are kept up to date, but raise no events)
TIME  switch  the switch goes offline
TIME  event   switch status OK, faults not read -> Stopped, no faults
TIME  switch  the switch comes back online
TIME  event   switch status Stopped -> OK
TIME  switch  a self-test fails: FW_POST_FAIL in the fault list
              (no event: the fault list is read with the chassis, next time)
TIME  switch  fan 1 runs again
              (no event: fans are kept up to date, but raise no events)
TIME  switch  the FCoE feature is turned on
TIME  event   switch status OK, no faults -> Error, self-test failed
TIME  switch  a login as guest is refused
TIME  event   login of user "guest" failed
TIME  switch  the CPU overheats
TIME  event   temperature alarm: too hot, CPU0 sensor
)";

const std::string kZoning = R"(TIME  switch  another client commits zone set day with a zone
TIME  event   zoning database changed
TIME  switch  it activates day
TIME  event   zone set "day" is active now
TIME  switch  it adds a second zone to day
TIME  event   active zone set "day" changed
TIME  event   zoning database changed
TIME  switch  it commits another zone set, night
TIME  event   zoning database changed
TIME  switch  it activates night
TIME  event   zone set "night" is active now, was "day"
TIME  switch  the switch announces a change of zoning that is none
              (no event: both checksums are what they were, so nothing is read)
TIME  switch  the other client deactivates the zone set
TIME  event   no zone set is active, was "night"
)";

/// "port 48 appeared" and so on, as 16 events.
std::string portsThatAppear(int first) {
    std::string text;
    for (int port = first; port < first + 16; ++port)
        text += "TIME  event   port " + std::to_string(port) + " appeared\n";
    return text;
}

/// What the lines of the demo are, in the words of JSON.
std::vector<std::string> kindsOfTheDemo() {
    std::vector<std::string> kinds;
    for (const std::string &line : support::lines(kDemo))
        kinds.emplace_back(line.rfind("TIME  switch", 0) == 0  ? "switch"
                           : line.rfind("TIME  event", 0) == 0 ? "event"
                                                               : "no-event");
    return kinds;
}

support::Arguments fastDemoAs(const std::string &format) {
    support::Arguments arguments = kFastDemo;
    arguments.insert(arguments.end(), {"-o", format});
    return arguments;
}

} // namespace

TEST(Watch, TheDemoShowsWhatHappensAndWhatTheCacheMakesOfIt) {
    const auto run = runDcache(kFastDemo);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(support::withoutTimes(run.out), kDemo);
    EXPECT_THAT(run.err, HasSubstr("Connected to switch 10:00:00:C0:DD:00:A1:B2, status OK.\n"));
    EXPECT_THAT(run.err, HasSubstr("12 changes on the switch raised 28 events"));
}

TEST(Watch, TheDirectorOnABadDayIsAboutPortsPowerAndFaults) {
    const auto run = played("director");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(support::withoutTimes(run.out), kDirector);
    EXPECT_THAT(run.err, HasSubstr("Connected to switch 10:00:00:C0:DD:00:A8:00, status OK.\n"));
    EXPECT_THAT(run.err, HasSubstr("22 changes on the switch raised 15 events"));
}

TEST(Watch, TheBladesOfADirectorShowWhatComesAndGoesWithThem) {
    const auto run = played("director-8-blades");
    EXPECT_EQ(run.exitCode, 0);
    const std::string out = support::withoutTimes(run.out);
    EXPECT_THAT(out, testing::StartsWith("TIME  switch  the I/O blade of slot 7 fails its diagnosis\n"
                                         "TIME  event   switch status OK, faults not read -> OK, no faults\n"
                                         "TIME  switch  the I/O blade is pulled out of slot 7\n"
                                         "TIME  event   I/O blade removed from slot 7\n"));
    const size_t last = out.find("TIME  switch  the I/O blade is pulled out of slot 1");
    ASSERT_NE(last, std::string::npos);
    EXPECT_EQ(out.substr(last), "TIME  switch  the I/O blade is pulled out of slot 1\n"
                                "              (no event: the cache follows the last slot; ports go silently)\n"
                                "TIME  switch  it is put back, with its 16 ports\n" +
                                    portsThatAppear(0) +
                                    "TIME  switch  the I/O blade is pulled out of slot 7\n"
                                    "TIME  event   I/O blade removed from slot 7\n"
                                    "TIME  switch  a CPU blade is put into slot 7\n"
                                    "TIME  event   CPU blade inserted in slot 7\n"
                                    "TIME  switch  it makes way for an I/O blade with 16 ports\n"
                                    "TIME  event   I/O blade inserted in slot 7\n"
                                    "TIME  event   CPU blade removed from slot 7\n" +
                                    portsThatAppear(48));
}

TEST(Watch, AScenarioOfOnesOwnIsPlayedToo) {
    std::ofstream("/tmp/own.toml") << ("[[step]]\n"
                                       "at = 5\n"
                                       "do = ['port 3 offline', 'port 99 offline', 'keys Oper.Chassis.0.Fan.*']\n"
                                       "[[step]]\n"
                                       "at = 6\n"
                                       "do = 'fan 0 bad'\n");
    const auto run = played("/tmp/own.toml");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(support::withoutTimes(run.out), "TIME  switch  port 3 offline\n"
                                              "TIME  switch  keys Oper.Chassis.0.Fan.*\n"
                                              "TIME  switch  Oper.Chassis.0.Fan.0\n"
                                              "TIME  switch  Oper.Chassis.0.Fan.1\n"
                                              "TIME  switch  Oper.Chassis.0.Fan.2\n"
                                              "TIME  event   port 3 went from online to offline\n"
                                              "TIME  switch  fan 0 bad\n"
                                              "              (no event: fans are kept up to date, but raise no "
                                              "events)\n");
    EXPECT_THAT(run.err, HasSubstr("dcache: /tmp/own.toml:3:25: port 99 offline: there is no port 99"));
}

TEST(Watch, TheClockOfTheSwitchGoesAtTheSpeedOfTheScenario) {
    std::ofstream("/tmp/slow.toml") << "[[step]]\nat = 100\ndo = 'port 3 offline'\n";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(runDcache({"watch", "--scenario", "/tmp/slow.toml", "--speed", "250"}).exitCode, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
}

TEST(Watch, EachLineOfTheDemoAsJsonIsAnObject) {
    const auto run = runDcache(fastDemoAs("json"));
    EXPECT_EQ(run.exitCode, 0);
    std::vector<std::string> kinds;
    std::vector<nlohmann::json> events;
    for (const std::string &line : support::lines(run.out)) {
        const auto object = support::parseJson(line);
        EXPECT_THAT(object.at("time").get<std::string>(),
                    testing::MatchesRegex("....-..-..T..:..:..\\....Z")); // 2026-03-01T09:05:07.004Z
        kinds.push_back(object.at("kind"));
        if (kinds.back() == "event")
            events.push_back(object);
    }
    EXPECT_EQ(kinds, kindsOfTheDemo());
    ASSERT_EQ(events.size(), 28u);
    EXPECT_EQ(events[0].at("type"), 12);
    EXPECT_EQ(events[0].at("name"), "PortStatusChange");
    EXPECT_EQ(events[0].at("fields"), support::parseJson(R"({
        "switchWwn": "10:00:00:C0:DD:00:A1:B2", "portWwn": "20:10:00:C0:DD:00:A1:B2",
        "fabricWwn": "10:00:00:C0:DD:00:A1:B2", "prevStatus": [10], "newStatus": [2]})"));
    EXPECT_EQ(events[1].at("name"), "SwitchAdd");
    EXPECT_EQ(events[1].at("fields"), support::parseJson(R"({
        "fabricWwn": "10:00:00:C0:DD:00:A1:B2", "switchWwn": "10:00:00:C0:DD:00:B2:01"})"));
    EXPECT_EQ(events[2].at("fields"), support::parseJson(R"({"fabricWwn": "10:00:00:C0:DD:00:A1:B2", "added": true})"));
    EXPECT_EQ(events[3].at("fields"), support::parseJson(R"({
        "ownerWwn": "10:00:00:C0:DD:00:A1:B2", "portWwn": "21:00:00:E0:8B:00:20:00", "origin": 1})"));
}

TEST(Watch, TheDemoInTerseFormIsSeparatedByTabs) {
    const auto run = runDcache(fastDemoAs("terse"));
    EXPECT_EQ(run.exitCode, 0);
    const auto lines = support::lines(run.out);
    ASSERT_EQ(lines.size(), 41u);
    EXPECT_THAT(lines[0], testing::EndsWith("Z\tswitch\tport 16 comes up: a cable to another switch"));
    EXPECT_THAT(lines[1], testing::EndsWith("\tprevStatus=10\tnewStatus=2"));
    EXPECT_THAT(lines[6], testing::EndsWith("Z\tevent\tPortAdd\townerWwn=10:00:00:C0:DD:00:A1:B2\t"
                                            "portWwn=21:00:00:E0:8B:00:20:00\torigin=1"));
}

TEST(Watch, ThroughAPipeThereAreNoEscapeCodesAndOnATerminalThereAre) {
    const support::Environment terminal = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
    EXPECT_EQ(runDcache(kFastDemo, Stdout::pipe, terminal).out.find('\x1b'), std::string::npos);
    EXPECT_THAT(runDcache(kFastDemo, Stdout::terminal, terminal).out,
                HasSubstr("\x1b[1mport 16 went from offline to online\x1b[0m"));
    EXPECT_EQ(runDcache(kFastDemo, Stdout::terminal, {{"TERM", "xterm"}, {"NO_COLOR", "1"}}).out.find('\x1b'),
              std::string::npos);
}

TEST(Watch, SaysWhichAreasAreLoadedAndNothingOfTheFirstLoad) {
    const auto run = runDcache({"watch", "--for", "0.3"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err,
                HasSubstr("Loaded into the cache: switch, chassis, blades, ports, accounts, fabric, zoning.\n"));
    EXPECT_EQ(run.err.find("Not loaded"), std::string::npos);
    EXPECT_THAT(run.out, IsEmpty()) << "a switch on which nothing happens raises no events";
}

TEST(Watch, AllEventsAreThoseOfTheFirstLoadAndThatItIsComplete) {
    const auto run = runDcache({"watch", "--for", "0.3", "--all"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(support::withoutTimes(run.out), testing::StartsWith("TIME  event   no zone set is active\n"
                                                                    "TIME  event   zoning database changed\n"
                                                                    "TIME  event   every area of the cache is up to "
                                                                    "date\n"));
}

TEST(Watch, AllEventsOfAScenarioAreNotCountedAllTheSame) {
    const auto run = played("zoning", {"--all"});
    EXPECT_EQ(run.exitCode, 0);
    const std::string out = support::withoutTimes(run.out);
    EXPECT_THAT(out, HasSubstr("TIME  event   zone set \"day\" is active now\n"
                               "TIME  event   every area of the cache is up to date\n"));
    EXPECT_THAT(out, HasSubstr("(no event: both checksums"));
    EXPECT_THAT(run.err, HasSubstr("7 changes on the switch raised 7 events"));
}

TEST(Watch, ZoningIsAboutAnotherClient) {
    const auto run = played("zoning");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(support::withoutTimes(run.out), kZoning);
    EXPECT_THAT(run.err, HasSubstr("7 changes on the switch raised 7 events"));
}

TEST(Watch, EndsAfterTheTimeGivenAlthoughTheScenarioGoesOn) {
    const auto begin = std::chrono::steady_clock::now();
    const auto run = runDcache({"watch", "--scenario", "demo", "--speed", "0.1", "--for", "0.5"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
    EXPECT_THAT(run.out, IsEmpty()) << "the first step comes after a hundred seconds at this speed";
    EXPECT_EQ(run.err.find("scenario is over"), std::string::npos);
}

TEST(Watch, ASignalEndsItWithSuccess) {
    for (const int number : {SIGINT, SIGTERM}) {
        DcacheRun run({"watch"});
        ASSERT_TRUE(run.waitForStderr("Loaded into the cache"));
        run.sendSignal(number);
        EXPECT_EQ(run.wait(), 0);
    }
}

TEST(Watch, EndsQuietlyWhenNobodyReadsIt) {
    for (const support::Arguments &arguments : {kFastDemo, support::Arguments{"watch"}}) {
        const auto run = runDcache(arguments, Stdout::pipeWithoutReader);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.find("dcache: "), std::string::npos) << run.err;
    }
}

TEST(Watch, AnOutputThatIsFullIsAFailureWithAReason) {
    const auto run = runDcache(kFastDemo, Stdout::fullDevice);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("dcache: cannot write to standard output: No space left on device\n"));
}
