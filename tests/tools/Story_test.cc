#include "tools/dcache/story.h"

#include <gmock/gmock.h>
#include <set>

using namespace dcache;

TEST(Story, TheDemoIsThereAndAnyOtherNameIsNot) {
    ASSERT_NE(findStory("demo"), nullptr);
    EXPECT_STREQ(findStory("demo")->name, "demo");
    EXPECT_EQ(findStory(""), nullptr);
    EXPECT_EQ(findStory("Demo"), nullptr);
    EXPECT_THAT(storyNames(), testing::ElementsAre("demo"));
}

TEST(Story, StepsOfEveryStoryAreInOrderAndLeaveTimeToRead) {
    for (const std::string &name : storyNames()) {
        const Story &story = *findStory(name);
        ASSERT_FALSE(story.steps.empty());
        for (size_t i = 1; i < story.steps.size(); ++i)
            EXPECT_GE(story.steps[i].at - story.steps[i - 1].at, std::chrono::milliseconds(1000)) << name << i;
        EXPECT_LE(story.steps.back().at, std::chrono::milliseconds(14000)) << name;
    }
}

TEST(Story, LinesOfEveryStoryFitATerminal) {
    for (const std::string &name : storyNames()) {
        for (const Step &step : findStory(name)->steps) {
            EXPECT_LE(std::string("12:00:03.120  switch  ").size() + std::string(step.words).size(), 80u) << step.words;
            const std::string why = step.whyNoEvent != nullptr ? step.whyNoEvent : "";
            EXPECT_LE(14 + std::string("(no event: )").size() + why.size(), 80u) << why;
        }
    }
}

TEST(Story, EveryStepOfEveryStoryChangesOrNotifiesSomethingOnTheSwitch) {
    for (const std::string &name : storyNames()) {
        const auto theSwitch = sim::create();
        const auto state = [&theSwitch] {
            std::string text;
            for (const std::string &key : theSwitch->keys())
                text += key + "=" + theSwitch->get(key) + "\n";
            return text;
        };
        std::set<int32_t> codes;
        const auto note = [](void *, zov_event_s *event, void *context) {
            static_cast<std::set<int32_t> *>(context)->insert(event->code);
        };
        zov_handle_t handle = 0;
        ASSERT_EQ(zov_IPConnect("localhost", "cim", "", &handle), 0);
        zov_eventreg_s nothing = {ZOV_EVENT_CIM_CFG_CHANGE, 0};
        ASSERT_EQ(zov_enRegisterForEventList(handle, note, &codes, &nothing, 1), 0);
        for (const Step &step : findStory(name)->steps) {
            const std::string before = state();
            codes.clear();
            step.act(*theSwitch);
            ASSERT_TRUE(theSwitch->waitUntilQuiet());
            EXPECT_TRUE(state() != before || !codes.empty()) << step.words;
        }
    }
}
