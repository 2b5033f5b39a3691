#include "tools/dcache/story.h"

#include <gmock/gmock.h>
#include <set>

using namespace dcache;

TEST(Story, TheStoriesAreThereAndAnyOtherNameIsNot) {
    for (const char *name : {"demo", "director", "blades", "zoning"}) {
        ASSERT_NE(findStory(name), nullptr);
        EXPECT_STREQ(findStory(name)->name, name);
    }
    EXPECT_EQ(findStory(""), nullptr);
    EXPECT_EQ(findStory("Demo"), nullptr);
    EXPECT_THAT(storyNames(), testing::ElementsAre("demo", "director", "blades", "zoning"));
}

TEST(Story, StepsOfEveryStoryAreInOrderAndLeaveTimeToRead) {
    for (const std::string &name : storyNames()) {
        const Story &story = *findStory(name);
        ASSERT_FALSE(story.steps.empty());
        for (size_t i = 1; i < story.steps.size(); ++i)
            EXPECT_GE(story.at(i) - story.at(i - 1), std::chrono::milliseconds(600)) << name << i;
        EXPECT_GT(story.at(0), std::chrono::milliseconds(0)) << name;
        EXPECT_LE(story.at(story.steps.size() - 1), std::chrono::milliseconds(15000)) << name;
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
        const auto theSwitch = sim::create(findStory(name)->profile);
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
