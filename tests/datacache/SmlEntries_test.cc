// The batch over the shared entries, compiled into this program together with a switch library that the test
// plays itself: one that answers what a well-behaved switch would not.
#include "common/numbers.cc"       // NOLINT(bugprone-suspicious-include): not exported by the library
#include "datacache/SmlEntries.cc" // NOLINT(bugprone-suspicious-include): not exported by the library

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/Log.h"

namespace {

std::function<int32_t(zov_handle_t, SmlMessage *, int32_t)> answer;

} // namespace

extern "C" int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return answer(handle, messages, count);
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void put(SmlMessage &message, const std::string &value, int32_t status = 0) {
    std::memset(message.value, '#', sizeof(message.value));
    value.copy(message.value, sizeof(message.value));
    if (value.size() < sizeof(message.value))
        message.value[value.size()] = '\0';
    message.status = status;
}

/// Every key answers this.
auto all(const std::string &value) {
    return [value](zov_handle_t, SmlMessage *messages, int32_t count) {
        for (int32_t i = 0; i < count; ++i)
            put(messages[i], value);
        return 0;
    };
}

bool getTwo() {
    SmlEntries entries;
    entries.add("first");
    entries.add("second");
    return entries.get(1);
}

TEST(SmlEntries, KeysGoOutInTheOrderAdded) {
    zov_handle_t usedHandle = 0;
    std::vector<std::string> keys;
    answer = [&](zov_handle_t handle, SmlMessage *messages, int32_t count) {
        usedHandle = handle;
        for (int32_t i = 0; i < count; ++i) {
            keys.emplace_back(messages[i].key);
            put(messages[i], "value " + std::to_string(i));
        }
        return 0;
    };
    SmlEntries entries;
    EXPECT_EQ(entries.room(), 64);
    EXPECT_EQ(entries.add("Oper.Switch.WWN"), 0);
    EXPECT_EQ(entries.add("Oper.Chassis.0.Fan.%d", 7), 1);
    EXPECT_EQ(entries.add("%s", "100%"), 2);
    EXPECT_EQ(entries.room(), 61);
    EXPECT_TRUE(entries.get(42));
    EXPECT_EQ(usedHandle, 42U);
    EXPECT_THAT(keys, ElementsAre("Oper.Switch.WWN", "Oper.Chassis.0.Fan.7", "100%"));
    EXPECT_STREQ(entries[0].text(), "value 0");
    EXPECT_STREQ(entries[2].text(), "value 2");
}

TEST(SmlEntries, ALongKeyIsCut) {
    std::string key;
    answer = [&key](zov_handle_t, SmlMessage *messages, int32_t) {
        key.assign(messages[0].key, strnlen(messages[0].key, sizeof(messages[0].key)));
        put(messages[0], "");
        return 0;
    };
    SmlEntries entries;
    entries.add("%s", std::string(300, 'k').c_str());
    EXPECT_TRUE(entries.get(1));
    EXPECT_EQ(key, std::string(255, 'k'));
}

TEST(SmlEntries, AFullBatchTakesNoMoreKeys) {
    std::vector<std::string> keys;
    answer = [&keys](zov_handle_t, SmlMessage *messages, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            keys.emplace_back(messages[i].key);
            put(messages[i], "");
        }
        return 0;
    };
    SmlEntries entries;
    for (int i = 0; i < SmlEntries::kCapacity; ++i)
        EXPECT_EQ(entries.add("key %d", i), i);
    EXPECT_EQ(entries.room(), 0);
    EXPECT_EQ(entries.add("one too many"), 63);
    EXPECT_EQ(entries.room(), 0);
    EXPECT_TRUE(entries.get(1));
    ASSERT_EQ(keys.size(), 64U);
    EXPECT_EQ(keys.front(), "key 0");
    EXPECT_EQ(keys.back(), "key 63");
}

TEST(SmlEntries, AFailedExchangeFails) {
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "");
        return 7;
    };
    const std::size_t mark = support::logMark();
    SmlEntries entries;
    entries.add("Oper.Switch.WWN");
    EXPECT_FALSE(entries.get(1));
    EXPECT_THAT(support::messagesSince(mark), IsEmpty());
}

TEST(SmlEntries, OfAFailedExchangeNoKeyIsBlamed) {
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "");
        put(messages[1], "", 5);
        return 0;
    };
    EXPECT_FALSE(getTwo());
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        EXPECT_EQ(messages[1].status, 5) << "of the exchange before";
        return 7;
    };
    const std::size_t mark = support::logMark();
    EXPECT_FALSE(getTwo());
    EXPECT_THAT(support::messagesSince(mark), IsEmpty());
}

TEST(SmlEntries, AStatusThatTheSwitchLeavesAsItWasStays) {
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "");
        put(messages[1], "", 5);
        return 0;
    };
    EXPECT_FALSE(getTwo());
    answer = [](zov_handle_t, SmlMessage *, int32_t) { return 0; };
    const std::size_t mark = support::logMark();
    EXPECT_FALSE(getTwo());
    EXPECT_THAT(support::messagesSince(mark), ElementsAre("DCACHE: sml command='second', smlerror='0x5'"));
}

TEST(SmlEntries, AFailedKeyFailsAndTheFirstIsLogged) {
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "");
        put(messages[1], "", 31);
        put(messages[2], "", 5);
        return 0;
    };
    const std::size_t mark = support::logMark();
    SmlEntries entries;
    entries.add("first");
    entries.add("second");
    entries.add("third");
    EXPECT_FALSE(entries.get(1));
    EXPECT_THAT(support::messagesSince(mark), ElementsAre("DCACHE: sml command='second', smlerror='0x1f'"));
}

TEST(SmlEntries, AnswersCanBeScannedAgain) {
    int32_t status = 31;
    answer = [&status](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "", status);
        return 0;
    };
    const std::size_t mark = support::logMark();
    SmlEntries entries;
    entries.add("first");
    EXPECT_TRUE(entries.read(1));
    EXPECT_TRUE(entries.hasErrors());
    EXPECT_TRUE(entries.hasErrors());
    EXPECT_THAT(support::messagesSince(mark), ElementsAre("DCACHE: sml command='first', smlerror='0x1f'",
                                                          "DCACHE: sml command='first', smlerror='0x1f'"));
    status = 0;
    EXPECT_TRUE(entries.read(1));
    EXPECT_FALSE(entries.hasErrors());
}

TEST(SmlEntries, TheEndOfAListFailsSilently) {
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[0], "", 24);
        return 0;
    };
    const std::size_t mark = support::logMark();
    SmlEntries entries;
    entries.add("first");
    EXPECT_FALSE(entries.get(1));
    EXPECT_THAT(support::messagesSince(mark), IsEmpty());
}

TEST(SmlEntries, AValueWithoutItsEndIsCut) {
    answer = all(std::string(256, 'v'));
    SmlEntries entries;
    for (int i = 0; i < 3; ++i)
        entries.add("key %d", i);
    EXPECT_TRUE(entries.get(1));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(entries[i].text(), std::string(255, 'v'));
}

TEST(SmlEntries, ALongestValueIsWhole) {
    answer = all(std::string(254, 'v') + "w");
    SmlEntries entries;
    entries.add("key");
    EXPECT_TRUE(entries.get(1));
    EXPECT_EQ(entries[0].text(), std::string(254, 'v') + "w");
}

TEST(SmlEntries, AnEntryKeepsItsValueUntilItIsReadAnew) {
    answer = all("before");
    {
        SmlEntries entries;
        entries.add("key");
        entries.add("other");
        EXPECT_TRUE(entries.get(1));
    }
    answer = [](zov_handle_t, SmlMessage *messages, int32_t) {
        put(messages[1], "now");
        return 0;
    };
    SmlEntries entries;
    entries.add("a key that the switch does not answer");
    entries.add("other");
    EXPECT_TRUE(entries.get(1));
    EXPECT_STREQ(entries[0].text(), "before");
    EXPECT_STREQ(entries[1].text(), "now");
}

TEST(SmlEntries, ValuesAreComparedAndSearchedExactly) {
    answer = all("True, FW_POST_FAIL");
    SmlEntries entries;
    entries.add("key");
    EXPECT_TRUE(entries.get(1));
    EXPECT_TRUE(entries[0].is("True, FW_POST_FAIL"));
    for (const char *other : {"True", "true, FW_POST_FAIL", "True, FW_POST_FAIL ", ""})
        EXPECT_FALSE(entries[0].is(other)) << other;
    for (const char *part : {"True", "FW_POST_FAIL", "POST", "", "e, F"})
        EXPECT_TRUE(entries[0].contains(part)) << part;
    for (const char *part : {"FW_POST_FAIL ", "fw_post_fail", "False"})
        EXPECT_FALSE(entries[0].contains(part)) << part;
}

TEST(SmlEntries, NumbersAreDecimalAndCutTo16Bits) {
    const std::vector<std::pair<std::string, unsigned short>> rows = {
        {"0", 0},
        {"7", 7},
        {" 7", 7},
        {"7x", 7},
        {"+7", 7},
        {"", 0},
        {"x", 0},
        {"0x10", 0},
        {"010", 10},
        {"65535", 65535},
        {"65536", 0},
        {"65537", 1},
        {"-1", 65535},
        {"-65536", 0},
        {"2147483647", 65535},
        {"2147483648", 65535},
        {"4294967296", 65535},
        {"99999999999999999999", 65535},
        {"-2147483649", 0},
    };
    for (const auto &[text, number] : rows) {
        answer = all(text);
        SmlEntries entries;
        entries.add("key");
        EXPECT_TRUE(entries.get(1));
        EXPECT_EQ(entries[0].decimal(), number) << '"' << text << '"';
    }
}

} // namespace
