#include "sim/verbs/perform.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/verbs/Commands.h"
#include "tests/sim/verbs/Watched.h"

using simtest::Client;
using simtest::helpEntries;
using simtest::HelpEntry;
using simtest::refusalOf;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// A switch on which every example of the help works, with a client that is in the middle of something.
class Examples {
public:
    std::unique_ptr<sim::Simulator> device = sim::create("fabric-2");

    Examples() {
        simtest::forgiveMisuse();
        sim::perform(*device, R"(
            set Oper.Chassis.0.MaxSlots 2 silently
            fault FAN_FAIL silently
            zoning define alias disks 1:1 silently
            zoning define zone backup 1:2 silently
            zoning define set night backup silently
            zoning define set always backup silently
            zoning activate always silently
            rule add key=None status=5
            rule add key=None status=5 step=merge
        )");
        EXPECT_EQ(_client.registerFor(
                      {1, 3, 7, 13, 14, 15, 17, 28, 29, 31, 32, 33, 38, 39, 40, 50, 52, 57, 76, 77, 79, 80, 82}),
                  0);
        EXPECT_EQ(_client.set("Cmd.Switch.ReqAdmin"), 0);
        zov_ZoneDestroy(nullptr);
    }

    /// What anybody can see of the switch and its clients.
    std::vector<std::string> picture() const {
        EXPECT_TRUE(device->waitUntilQuiet());
        std::vector<std::string> picture = simtest::pictureOf(*device);
        for (const char *look : {"who", "clock", "rule list", "records", "zoning show defined", "zoning show active",
                                 "zoning limits", "peer list"})
            picture.push_back(sim::perform(*device, look));
        return picture;
    }

    size_t notifications() const { return _client.codes(*device).size(); }

private:
    Client _client;
};

std::set<std::string> firstWords() {
    std::set<std::string> words;
    for (const HelpEntry &entry : helpEntries())
        words.insert(entry.pattern.substr(0, entry.pattern.find(' ')));
    return words;
}

} // namespace

TEST(Verbs, EveryExampleChangesTheSwitchOrTellsSomething) {
    const std::set<std::string> isSeenLater = {"wait 5s", "records keep no", "rule seed 7"};
    for (const HelpEntry &entry : helpEntries()) {
        const Examples ground;
        const std::vector<std::string> before = ground.picture();
        const std::string told = sim::perform(*ground.device, entry.example);
        EXPECT_TRUE(isSeenLater.count(entry.example) != 0 || !told.empty() || ground.picture() != before)
            << entry.example;
    }
}

TEST(Verbs, ExamplesBeginWithTheirVerbs) {
    const std::vector<HelpEntry> entries = helpEntries();
    ASSERT_GT(entries.size(), 50U);
    for (const HelpEntry &entry : entries) {
        const std::string verb = entry.pattern.substr(0, entry.pattern.find(' '));
        EXPECT_EQ(entry.example.substr(0, entry.example.find(' ')), verb);
    }
}

TEST(Verbs, TogetherReachEveryOperationOfTheSwitch) {
    std::set<std::string> used;
    for (const HelpEntry &entry : helpEntries()) {
        const Examples ground;
        simtest::Watched watched(*ground.device);
        sim::perform(watched, entry.example);
        const std::set<std::string> more = watched.used();
        used.insert(more.begin(), more.end());
    }
    EXPECT_EQ(used, simtest::kOperations);
}

TEST(Verbs, ThatCanBeSilentNotifyClientsUnlessTheyAre) {
    size_t count = 0;
    for (const HelpEntry &entry : helpEntries()) {
        if (!entry.canBeSilent)
            continue;
        ++count;
        const Examples loud;
        sim::perform(*loud.device, entry.example);
        EXPECT_GT(loud.notifications(), 0U) << entry.example;
        const Examples quiet;
        const std::vector<std::string> before = quiet.picture();
        sim::perform(*quiet.device, entry.example + " silently");
        EXPECT_EQ(quiet.notifications(), 0U) << entry.example;
        EXPECT_NE(quiet.picture(), before) << entry.example;
    }
    EXPECT_GT(count, 25U);
}

TEST(Verbs, ThatTellNothingRefuseToBeSilent) {
    for (const HelpEntry &entry : helpEntries()) {
        if (entry.canBeSilent || entry.pattern == "help [VERB...]")
            continue;
        const Examples ground;
        const std::vector<std::string> before = ground.picture();
        EXPECT_THAT(refusalOf(*ground.device, entry.example + " silently"), HasSubstr("'silently' could keep back"));
        EXPECT_EQ(ground.picture(), before) << entry.example;
    }
}

TEST(Verbs, WithALetterTooManyAreSuggested) {
    const auto device = sim::create();
    for (const std::string &verb : firstWords()) {
        if (verb.size() < 3)
            continue;
        std::string typed = verb;
        typed.insert(typed.size() / 2, "q");
        EXPECT_EQ(refusalOf(*device, typed + " 1"), "there is no verb '" + typed + "'; did you mean '" + verb + "'?");
    }
}

TEST(Verbs, LikeNothingThereIsAreAnsweredWithAllThereAre) {
    const auto device = sim::create();
    const std::string refusal = refusalOf(*device, "xyzzyxyzzy");
    EXPECT_THAT(refusal, StartsWith("there is no verb 'xyzzyxyzzy'; there are switch, port, media, "));
    for (const std::string &verb : firstWords())
        EXPECT_THAT(refusal, HasSubstr(" " + verb));
}

TEST(Perform, CarriesOutSeveralLinesInTheirOrderAndTellsWhatEachTells) {
    const auto device = sim::create();
    EXPECT_EQ(sim::perform(*device,
                           "port 3 offline # a cable is pulled\n\n  # nothing\nget Oper.UserPort.0.3.OperState\r\n"
                           "port 3 online\nget Oper.UserPort.0.3.OperState"),
              "Offline\nOnline");
}

TEST(Perform, ATextWithoutCommandsDoesNothing) {
    const auto device = sim::create();
    for (const char *text : {"", " ", "\n\n", "# port 3 offline", "\t#\r\n"})
        EXPECT_EQ(sim::perform(*device, text), "");
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Online");
}

TEST(Perform, UnderstandsAllLinesBeforeItCarriesOutTheFirst) {
    const auto device = sim::create();
    EXPECT_THAT(refusalOf(*device, "port 3 offline\n\nprot 4 offline"),
                AllOf(StartsWith("line 3: "), EndsWith("did you mean 'port'?")));
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Online");
}

TEST(Perform, SaysInWhichLineTheSwitchRefusedAndStopsThere) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "port 3 offline\nport 24 offline\nport 5 offline"),
              "line 2: there is no port 24; the switch has 24, counted from 0");
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_EQ(device->get("Oper.UserPort.0.5.OperState"), "Online");
}

TEST(Perform, SaysWhatTheSwitchSaysWhenItRefuses) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "set Oper.Chassis.0.Fan.0 good"),
              "'Oper.Chassis.0.Fan.0' cannot be 'good'; allowed: Good, Bad, NotInstalled");
    EXPECT_EQ(refusalOf(*device, "account add admin"), "there is an account 'admin' already");
}

TEST(Perform, SaysWhichWordIsWrongAndWhatIsAllowedThere) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "port 3 ofline"),
              "'ofline' cannot be word 3; expected: "
              "online|offline|diagnostics|isolated|down|downed|absent|powered-off, or admin, or type; did you mean "
              "'offline'?");
    EXPECT_EQ(refusalOf(*device, "port three offline"),
              "'three' cannot be word 2; expected: PORT (the number of a port, counted from 0)");
    EXPECT_EQ(refusalOf(*device, "port 3"), "something is missing at the end; expected: "
                                            "online|offline|diagnostics|isolated|down|downed|absent|powered-off, or "
                                            "admin, or type");
    EXPECT_EQ(refusalOf(*device, "reboot now"),
              "'now' cannot be word 2; the command ends before it; texts with blanks stand in double quotes");
}

TEST(Perform, SaysWhichOptionIsWrongOrMissing) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "peer add 1000000000000001"),
              "something is missing at the end; expected: domain=NUMBER");
    EXPECT_EQ(refusalOf(*device, "peer add 1000000000000001 domain=seven"),
              "'domain=seven' cannot be word 4; expected: domain=NUMBER (a whole number)");
    EXPECT_EQ(refusalOf(*device, "peer add 1000000000000001 domain=7 domain=8"),
              "'domain=8' cannot be word 5; expected: domain= once only");
    EXPECT_EQ(refusalOf(*device, "media 20 plug wave=lnog"),
              "'wave=lnog' cannot be word 4; expected: wave=short|long; did you mean 'wave=long'?");
    EXPECT_THAT(refusalOf(*device, "media 20 plug seriel=1"),
                AllOf(StartsWith("'seriel=1' cannot be word 4; expected: serial=TEXT, or vendor=TEXT"),
                      EndsWith("did you mean 'serial='?")));
    EXPECT_THAT(refusalOf(*device, "media 20 plug seriel=FNS0331A00000001"), EndsWith("did you mean 'serial='?"));
    EXPECT_EQ(refusalOf(*device, "rule call=zov_smlGet result=1"),
              "'call=zov_smlGet' cannot be word 2; expected: add, or list, or remove, or clear, or seed");
    EXPECT_TRUE(device->peers().empty());
}

TEST(Perform, SuggestsTheNearestOfTheWordsThatAValueCanBe) {
    const auto device = sim::create();
    for (const auto &[typed, meant] : std::vector<std::pair<std::string, std::string>>{
             {"rule add result=1 times=alwasy", "times=always"},
             {"rule add result=1 call=zov_smlgetBach", "call=zov_smlGetBatch"},
             {"rule add result=1 nulhandle", "nullhandle"},
             {"rule add resutl=1", "result="},
             {"clock pace runing", "running"},
             {"principal locla", "local"},
             {"zoning define zone z type=hard-vfp", "type=hard-vpf"},
             {"records keep on", "no"}})
        EXPECT_THAT(refusalOf(*device, typed), EndsWith("; did you mean '" + meant + "'?")) << typed;
}

TEST(Perform, TakesOptionsAnywhereAfterTheWordsAndWordsInCapitals) {
    const auto device = sim::create();
    sim::perform(*device, "PEER ADD Domain=7 priority=3 1000000000000001 ports=5");
    ASSERT_EQ(device->peers().size(), 1U);
    EXPECT_EQ(device->peers()[0].domain, 7U);
    EXPECT_EQ(device->peers()[0].priority, 3U);
    EXPECT_EQ(device->peers()[0].ports, 5U);
    EXPECT_EQ(sim::perform(*device, "port 3 Offline SILENTLY"), "");
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Offline");
}

TEST(Perform, TakesAQuotedWordForATextAndNotForAWordOfTheLanguage) {
    const auto device = sim::create();
    sim::perform(*device, "set Oper.Switch.FaultList \"silently\"");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "silently");
    sim::perform(*device, "fault \"clear\"");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "clear");
    sim::perform(*device, "fault clear");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_THAT(refusalOf(*device, "\"port\" 3 offline"), StartsWith("there is no verb 'port'"));
}

TEST(CheckCommands, RefusesWhatCannotBeUnderstoodOnly) {
    sim::checkCommands("port 999 offline\npeer remove 77\n# done");
    EXPECT_THROW(sim::checkCommands("port 999 offlin"), sim::CommandError);
    EXPECT_THROW(sim::checkCommands("fault \"open"), sim::CommandError);
    EXPECT_THROW(sim::checkCommands("clock silently"), sim::CommandError);
}

TEST(CheckCommands, EndsWellForEveryBeginningOfEveryExample) {
    constexpr const char *kEnds[] = {"", "\"", "\\", "=", " = \xFF", " \"\\x0"};
    size_t next = 0;
    for (const HelpEntry &entry : helpEntries())
        for (size_t length = 0; length <= entry.example.size(); ++length) {
            try {
                sim::checkCommands(entry.example.substr(0, length) + kEnds[next++ % std::size(kEnds)]);
            } catch (const sim::CommandError &error) {
                EXPECT_STRNE(error.what(), "");
            }
        }
}
