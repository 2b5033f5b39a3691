// Scenarios as programs get them that look the simulated switch up at run time, and the texts that are shipped with it.
#include "sim/Play.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "sim/scenario/Shipped.h"

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::unique_ptr<sim::Play> playOf(const std::string &text) {
    return std::unique_ptr<sim::Play>(zovsim_play(text.c_str(), "own.toml", sim::kInterfaceVersion));
}

/// The commands of a step, but for the one that says its name.
std::vector<sim::Played> withoutName(std::vector<sim::Played> step) {
    if (!step.empty() && step[0].command.rfind("step ", 0) == 0)
        step.erase(step.begin());
    return step;
}

std::vector<std::string> commandsOf(const std::vector<sim::Played> &step) {
    std::vector<std::string> commands;
    for (const sim::Played &played : step)
        commands.push_back(played.command);
    return commands;
}

constexpr const char *kThreeSteps = "[[step]]\n"
                                    "name = 'the port goes'\n"
                                    "at = 10\n"
                                    "do = ['port 3 offline', 'port 99 offline']\n"
                                    "[[step]]\n"
                                    "at = 10\n"
                                    "every = 5\n"
                                    "repeat = 2\n"
                                    "do = 'fan 0 bad'\n";

} // namespace

TEST(ShippedScenarios, AreTheFilesOfTheirFolder) {
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(SHIPPED_SCENARIOS)) {
        names.push_back(entry.path().stem());
        std::ifstream file(entry.path());
        EXPECT_EQ(sim::shippedScenario(names.back()), std::string(std::istreambuf_iterator<char>(file), {}));
    }
    std::sort(names.begin(), names.end());
    ASSERT_GE(names.size(), 10U);
    EXPECT_EQ(sim::shippedScenarios(), names);
}

TEST(ShippedScenarios, BeginWithACommentThatSaysWhatTheyAre) {
    for (const std::string &name : sim::shippedScenarios())
        EXPECT_THAT(*sim::shippedScenario(name), testing::StartsWith("# ")) << name;
}

TEST(ShippedScenarios, UnknownNamesHaveNoText) {
    for (const char *name : {"", "Demo", "demo.toml", "nosuch"})
        EXPECT_EQ(sim::shippedScenario(name), std::nullopt) << name;
}

TEST(Play, OfAShippedScenarioIsFoundByItsName) {
    const auto play = sim::playShipped("director");
    ASSERT_NE(play, nullptr);
    EXPECT_EQ(play->name(), "director");
    EXPECT_EQ(play->device().profile(), "director-8");
    EXPECT_EQ(play->nextName(), "port 44 comes up");
}

TEST(Play, OfAnUnknownNameTellsTheNamesThereAre) {
    EXPECT_THAT([] { sim::playShipped("nosuch"); },
                testing::ThrowsMessage<std::invalid_argument>(
                    testing::AllOf(HasSubstr("'nosuch'"), HasSubstr("demo, "), HasSubstr("two-switch"))));
}

TEST(Play, OfAFaultyTextTellsEveryMistake) {
    EXPECT_THAT([] { playOf("colour = 1\n[[step]]\nat = 1\ndo = 'prot 3 offline'\n"); },
                testing::ThrowsMessage<std::invalid_argument>(
                    testing::AllOf(HasSubstr("own.toml:1:1: "), HasSubstr("own.toml:4:"), HasSubstr("port"))));
}

TEST(Play, OfAnotherVersionIsNone) {
    EXPECT_EQ(zovsim_play("demo", nullptr, sim::kInterfaceVersion - 1), nullptr);
}

TEST(Play, ReachesTheSwitchByNewConnections) {
    const auto play = playOf("profile = 'fabric-2'\n");
    zov_handle_t handle = 0;
    ASSERT_EQ(zov_IPConnect("localhost", "cim", "", &handle), 0);
    EXPECT_EQ(play->device().connectionCount(), 1U);
}

TEST(Play, CarriesOutAStepAtATimeWhenItIsDue) {
    const auto play = playOf(kThreeSteps);
    sim::Simulator &device = play->device();
    const milliseconds beginning = device.clock();
    EXPECT_EQ(play->next(), beginning + seconds(10));
    EXPECT_THAT(play->play(), IsEmpty()) << "not yet";

    device.passTime(seconds(60)); // all of it is overdue
    EXPECT_EQ(play->nextName(), "the port goes");
    const auto first = withoutName(play->play());
    EXPECT_THAT(commandsOf(first), testing::ElementsAre("port 3 offline", "port 99 offline"));
    EXPECT_FALSE(first[0].isRefused());
    EXPECT_THAT(first[1].error, HasSubstr("there is no port 99"));
    EXPECT_EQ(device.get("Oper.UserPort.0.3.OperState"), "Offline");

    EXPECT_EQ(play->nextName(), "");
    EXPECT_THAT(commandsOf(play->play()), testing::ElementsAre("fan 0 bad"));
    EXPECT_EQ(play->next(), beginning + seconds(15));
    EXPECT_THAT(commandsOf(play->play()), testing::ElementsAre("fan 0 bad"));
    EXPECT_EQ(play->next(), std::nullopt);
    EXPECT_EQ(play->nextName(), "");
    EXPECT_THAT(play->play(), IsEmpty());
}
