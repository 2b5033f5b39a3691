// Message groups: how they grow, and what sending them tells.
#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/support/Memory.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using Messages = std::vector<std::string>;
using Statuses = std::vector<int32_t>;

constexpr int32_t kMostMessages = std::numeric_limits<int32_t>::max() / static_cast<int32_t>(sizeof(SmlMessage));

/// A group that is freed in the end.
class Group {
public:
    explicit Group(uint32_t capacity) : _group(zov_smlAllocMsgGroup(capacity)) {}
    ~Group() { zov_smlFreeMsgGroup(_group); }
    Group(const Group &) = delete;
    Group &operator=(const Group &) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): the operations take it as it is
    operator SmlMsgGroup *() const { return _group; }
    SmlMsgGroup *operator->() const { return _group; }
    SmlMessage &operator[](int32_t index) const { return _group->messages[index]; }

    void addKeys(int first, int last) const {
        for (int key = first; key <= last; ++key)
            EXPECT_EQ(zov_smlAddMsgGroupV(_group, "Oper.UserPort.%d", key), 0);
    }
    void expectKeys(int count) const {
        ASSERT_EQ(_group->count, count);
        for (int32_t i = 0; i < count; ++i)
            EXPECT_EQ(_group->messages[i].key, "Oper.UserPort." + std::to_string(i));
    }

private:
    SmlMsgGroup *_group;
};

// ---- making and freeing ---------------------------------------------------------------------------

TEST(MsgGroup, ANewGroupIsEmptyAndHasTheRoomAskedFor) {
    for (const uint32_t capacity : {1U, 2U, 30U, 1000U}) {
        const Group group(capacity);
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->count, 0);
        EXPECT_EQ(group->capacity, static_cast<int32_t>(capacity));
        ASSERT_NE(group->messages, nullptr);
        std::memset(group->messages, 0x5A, capacity * sizeof(SmlMessage));
    }
}

TEST(MsgGroup, WithoutMemoryThereIsNoGroupAndNothingIsKept) {
    for (const long call : {1L, 2L}) {
        const long before = support::blocks_held;
        const support::MemoryFailure failure(call);
        EXPECT_EQ(zov_smlAllocMsgGroup(30), nullptr);
        EXPECT_TRUE(support::MemoryFailure::happened()) << call;
        EXPECT_EQ(support::blocks_held, before) << call;
    }
}

TEST(MsgGroup, ACapacityBeyondWhatCanBeCountedIsRefused) {
    // Of the last but one, 32-bit arithmetic makes a block of 500 bytes.
    for (const uint32_t capacity :
         {static_cast<uint32_t>(kMostMessages) + 1, 0x7FFFFFFFU, 0x80000000U, 8323581U, 0xFFFFFFFFU})
        EXPECT_EQ(zov_smlAllocMsgGroup(capacity), nullptr) << capacity;
}

TEST(MsgGroup, FreeingGivesEverythingBack) {
    const long before = support::blocks_held;
    SmlMsgGroup *group = zov_smlAllocMsgGroup(1);
    EXPECT_EQ(zov_smlAddMsgGroupV(group, "a"), 0);
    EXPECT_EQ(zov_smlAddMsgGroupV(group, "b"), 0);
    EXPECT_EQ(support::blocks_held, before + 2);
    zov_smlFreeMsgGroup(group);
    EXPECT_EQ(support::blocks_held, before);

    group = zov_smlAllocMsgGroup(1);
    free(group->messages);
    group->messages = nullptr; // a group may come without its array
    zov_smlFreeMsgGroup(group);
    zov_smlFreeMsgGroup(nullptr);
    EXPECT_EQ(support::blocks_held, before);
}

// ---- adding keys ----------------------------------------------------------------------------------

TEST(MsgGroup, AddedKeysAreFormattedAndNothingElseOfTheMessageIsTouched) {
    const Group group(2);
    std::memset(group->messages, 0x5A, 2 * sizeof(SmlMessage));
    EXPECT_EQ(zov_smlAddMsgGroupV(group, "Cmd.Zoning.Zone.%s.Create", "Z_1"), 0);
    EXPECT_EQ(group->count, 1);
    EXPECT_EQ(zov_smlAddMsgGroupV(group, "Oper.%s.%d.%u.%%", "Port", -1, 7U), 0);
    EXPECT_EQ(group->count, 2);
    EXPECT_EQ(group->capacity, 2);
    EXPECT_STREQ(group[0].key, "Cmd.Zoning.Zone.Z_1.Create");
    EXPECT_STREQ(group[1].key, "Oper.Port.-1.7.%");
    for (int32_t i = 0; i < 2; ++i) {
        EXPECT_EQ(std::string(group[i].value, sizeof(group[i].value)), std::string(256, 0x5A));
        EXPECT_EQ(group[i].status, 0x5A5A5A5A);
    }
}

TEST(MsgGroup, The31stKeyOfAGroupOf30MakesRoomFor55) {
    const Group group(30);
    group.addKeys(0, 29);
    EXPECT_EQ(group->capacity, 30);
    group[29].status = 77;
    std::strcpy(group[29].value, "kept");
    group.addKeys(30, 30);
    EXPECT_EQ(group->capacity, 55);
    EXPECT_EQ(group[29].status, 77);
    EXPECT_STREQ(group[29].value, "kept");
    group.addKeys(31, 54);
    EXPECT_EQ(group->capacity, 55);
    group.addKeys(55, 55);
    EXPECT_EQ(group->capacity, 80);
    group.expectKeys(56);
}

TEST(MsgGroup, AGroupWithoutRoomGrowsWithItsFirstKey) {
    const Group group(0);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->capacity, 0);
    group.addKeys(0, 0);
    EXPECT_EQ(group->capacity, 25);
    group.addKeys(1, 25);
    EXPECT_EQ(group->capacity, 50);
    group.expectKeys(26);
}

TEST(MsgGroup, GrowingAsksForMemoryOnceIn25Keys) {
    const Group group(1);
    group.addKeys(0, 0);
    const long before = support::blocks_asked_for;
    for (int key = 1; key <= 50; ++key)
        zov_smlAddMsgGroupV(group, "Oper.UserPort.%d", key);
    EXPECT_EQ(support::blocks_asked_for - before, 2);
    EXPECT_EQ(group->capacity, 51);
}

TEST(MsgGroup, LongKeysAreCutTo255Characters) {
    for (const size_t length : {254U, 255U, 256U, 257U, 600U}) {
        const Group group(1);
        std::memset(group->messages, 0x5A, sizeof(SmlMessage));
        const std::string key(length, 'k');
        EXPECT_EQ(zov_smlAddMsgGroupV(group, "%s", key.c_str()), 0);
        EXPECT_EQ(group[0].key, key.substr(0, 255));
        EXPECT_EQ(group[0].value[0], 0x5A) << "nothing runs over into the value";
    }
}

TEST(MsgGroup, AResetGroupKeepsItsRoom) {
    const Group group(2);
    group.addKeys(0, 2);
    const SmlMessage *messages = group->messages;
    zov_smlResetMsgGroup(group);
    EXPECT_EQ(group->count, 0);
    EXPECT_EQ(group->capacity, 27);
    EXPECT_EQ(group->messages, messages);
    group.addKeys(0, 26);
    EXPECT_EQ(group->messages, messages) << "as many keys as before need no more room";
    group.expectKeys(27);
    zov_smlResetMsgGroup(nullptr);
}

/// Adds to a full group whose growth will fail; what is left must be the old array, and only that.
void expectGivenUp(SmlMsgGroup *group, long failingCall) {
    SmlMessage *array = group->messages;
    const std::string firstKey = array[0].key;
    const long held = support::blocks_held;
    int result = 0;
    {
        const support::MemoryFailure failure(failingCall);
        result = zov_smlAddMsgGroupV(group, "one too many");
    }
    EXPECT_EQ(support::blocks_held, held - 1) << "the group is gone, its old array is not";
    EXPECT_EQ(result, 1);
    EXPECT_EQ(array[0].key, firstKey) << "texts of the old array can still be read";
    free(array); // left behind on purpose: somebody may hold texts of it
}

TEST(MsgGroup, AGroupThatCannotGrowIsGoneButItsTextsAreNot) {
    SmlMsgGroup *group = zov_smlAllocMsgGroup(1);
    ASSERT_EQ(zov_smlAddMsgGroupV(group, "first"), 0);
    expectGivenUp(group, 1);
}

TEST(MsgGroup, AGroupOfMoreMessagesThanCanBeCountedCannotGrow) {
    for (const int32_t capacity : {kMostMessages - 24, kMostMessages, std::numeric_limits<int32_t>::max()}) {
        SmlMsgGroup *group = zov_smlAllocMsgGroup(1);
        ASSERT_EQ(zov_smlAddMsgGroupV(group, "first"), 0);
        group->count = capacity;
        group->capacity = capacity;
        expectGivenUp(group, 0);
    }
}

TEST(MsgGroup, WithoutGroupOrFormatNothingIsAdded) {
    const char *none = nullptr;
    EXPECT_EQ(zov_smlAddMsgGroupV(nullptr, "key"), 1);
    const Group group(1);
    EXPECT_EQ(zov_smlAddMsgGroupV(group, none, 0), 1);
    EXPECT_EQ(group->count, 0);
}

// ---- sending --------------------------------------------------------------------------------------

/// Getting and setting differ only in the switch library's call.
struct Direction {
    const char *name;
    int32_t (*send)(SmlMsgGroup *);
    std::function<int32_t(zov_handle_t, SmlMessage *, int32_t)> &script;
};

void PrintTo(const Direction &direction, std::ostream *out) {
    *out << direction.name;
}

class MsgGroupSending : public testing::TestWithParam<Direction> {
protected:
    /// Scripts the exchange: the statuses, and the result of the whole.
    void answer(const Statuses &statuses, int32_t result) {
        GetParam().script = [this, statuses, result](zov_handle_t handle, SmlMessage *messages, int32_t count) {
            ++_calls;
            _handle = handle;
            _messages = messages;
            _count = count;
            for (size_t i = 0; i < statuses.size(); ++i)
                messages[i].status = statuses[i];
            return result;
        };
    }
    int32_t send(SmlMsgGroup *group) { return GetParam().send(group); }

    int _calls = 0;
    zov_handle_t _handle = 0;
    SmlMessage *_messages = nullptr;
    int32_t _count = -1;
};

TEST_P(MsgGroupSending, SendsAllKeysInOneExchangeOnTheConnection) {
    for (const zov_handle_t connection : {7U, 0xFFFFFFFEU}) {
        hSwitch = connection;
        const Group group(30);
        group.addKeys(0, 3);
        answer({0, 0, 0, 0}, 0);
        _calls = 0;
        EXPECT_EQ(send(group), 0);
        EXPECT_EQ(_calls, 1);
        EXPECT_EQ(_handle, connection);
        EXPECT_EQ(_messages, group->messages);
        EXPECT_EQ(_count, 4);
        EXPECT_EQ(send(group), 0) << "it may be sent again";
        EXPECT_EQ(_calls, 2);
        group.expectKeys(4);
    }
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST_P(MsgGroupSending, ResultsAndLinesAreThoseOfTheFirstFailedKeyOrElseOfTheExchange) {
    struct Row {
        Statuses statuses;
        int32_t exchange;
        int32_t result;
        const char *line;
    };
    const Row rows[] = {
        {{0}, 0, 0, nullptr},
        {{0, 0, 0}, 0, 0, nullptr},
        {{0, 0, 0}, 77, 77, nullptr},
        {{0, 0, 0}, -5, -5, nullptr},
        {{0, 0, 0}, 24, 24, nullptr},
        {{0, 0, 9}, 0, 1, "DCACHE: sml command='Oper.UserPort.2', smlerror='0x9'"},
        {{0, 10, 11}, 0, 1, "DCACHE: sml command='Oper.UserPort.1', smlerror='0xa'"},
        {{103, 0, 0}, 0, 1, "DCACHE: sml command='Oper.UserPort.0', smlerror='0x67'"},
        {{0, -1, 0}, 0, 1, "DCACHE: sml command='Oper.UserPort.1', smlerror='0xffffffff'"},
        {{0, 24, 0}, 0, 1, nullptr},
        {{0, 24, 5}, 0, 1, nullptr},
        {{0, 5, 24}, 0, 1, "DCACHE: sml command='Oper.UserPort.1', smlerror='0x5'"},
        {{0, 0, 9}, 77, 1, "DCACHE: sml command='Oper.UserPort.2', smlerror='0x9'"},
        {{24, 0, 0}, 77, 1, nullptr},
    };
    for (const Row &row : rows) {
        const Group group(3);
        group.addKeys(0, static_cast<int>(row.statuses.size()) - 1);
        answer(row.statuses, row.exchange);
        const size_t mark = support::logMark();
        EXPECT_EQ(send(group), row.result);
        EXPECT_EQ(support::messagesSince(mark), row.line != nullptr ? Messages{row.line} : Messages{});
    }
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

TEST_P(MsgGroupSending, OfAnEmptyGroupOnlyTheExchangeCounts) {
    const Group group(1);
    group[0].status = 5; // of no message
    for (const int32_t result : {0, 77, -1}) {
        answer({}, result);
        _calls = 0;
        EXPECT_EQ(send(group), result);
        EXPECT_EQ(_calls, 1);
        EXPECT_EQ(_count, 0);
    }
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST_P(MsgGroupSending, MessagesBehindTheLastAddedOneAreNotLookedAt) {
    const Group group(2);
    group.addKeys(0, 0);
    answer({0, 5}, 0);
    EXPECT_EQ(send(group), 0);
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST_P(MsgGroupSending, TextsWithoutTheirEndAreEnded) {
    const Group group(2);
    group.addKeys(0, 1);
    GetParam().script = [](zov_handle_t, SmlMessage *messages, int32_t) {
        for (int32_t i = 0; i < 2; ++i) {
            std::memset(messages[i].key, 'k', sizeof(messages[i].key));
            std::memset(messages[i].value, 'v', sizeof(messages[i].value));
            messages[i].status = i == 0 ? 0 : 0x01010101;
        }
        return 0;
    };
    EXPECT_EQ(send(group), 1);
    char *value = nullptr;
    EXPECT_EQ(zov_smlGetResult(group, 0, &value), 0);
    EXPECT_EQ(value, std::string(255, 'v'));
    const Messages line = {"DCACHE: sml command='" + std::string(255, 'k') + "', smlerror='0x1010101'"};
    EXPECT_EQ(support::messagesIn(support::kMainLog), line);
}

TEST_P(MsgGroupSending, NoGroupIsRefusedWithoutAnExchange) {
    answer({}, 0);
    EXPECT_EQ(send(nullptr), 1);
    EXPECT_EQ(_calls, 0);
}

INSTANTIATE_TEST_SUITE_P(Both, MsgGroupSending,
                         testing::Values(Direction{"Get", zov_smlGetMsgGroup, scripted::getBatch},
                                         Direction{"Set", zov_smlSetMsgGroup, scripted::setBatch}),
                         [](const auto &direction) { return direction.param.name; });

// ---- results --------------------------------------------------------------------------------------

TEST(MsgGroupResult, IsTheStatusAndTheValueText) {
    const Group group(3);
    group.addKeys(0, 2);
    scripted::getBatch = [](zov_handle_t, SmlMessage *messages, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            std::strcpy(messages[i].value, ("value " + std::to_string(i)).c_str());
            messages[i].status = i == 1 ? -9 : 0;
        }
        return 0;
    };
    EXPECT_EQ(zov_smlGetMsgGroup(group), 1);
    const Statuses statuses = {0, -9, 0};
    for (int32_t i = 0; i < 3; ++i) {
        char *value = nullptr;
        EXPECT_EQ(zov_smlGetResult(group, i, &value), statuses[static_cast<size_t>(i)]);
        EXPECT_EQ(value, group[i].value) << "it belongs to the group";
        EXPECT_EQ(value, "value " + std::to_string(i));
    }
}

TEST(MsgGroupResult, AnIndexOutsideTheGroupLeavesThePointer) {
    const Group group(5);
    group.addKeys(0, 1);
    group[2].status = 0;
    std::array<char, 4> preset{};
    for (const int32_t index :
         {2, 3, 5, std::numeric_limits<int32_t>::max(), -1, std::numeric_limits<int32_t>::min()}) {
        char *value = preset.data();
        EXPECT_EQ(zov_smlGetResult(group, index, &value), 1) << index;
        EXPECT_EQ(value, preset.data()) << index;
    }
}

TEST(MsgGroupResult, WithoutGroupOrPointerItIs1) {
    char *value = nullptr;
    EXPECT_EQ(zov_smlGetResult(nullptr, 0, &value), 1);
    const Group group(1);
    group.addKeys(0, 0);
    EXPECT_EQ(zov_smlGetResult(group, 0, nullptr), 1);
}

} // namespace
