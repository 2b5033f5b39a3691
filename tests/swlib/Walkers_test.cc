// Walks over the link-state database and the name server, a key a call.
#include <array>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int32_t kEndOfList = 24;
constexpr zov_handle_t kHandle = 0x80000007;
constexpr const char *kUntouched = "as it was";

using Buffer = std::array<char, 256>;

/// A walker that hands out text, with its arguments but for the buffer.
struct Walk {
    const char *key;
    std::function<char *(char *)> call;
};

const std::vector<Walk> &walks() {
    static const std::vector<Walk> all = {
        {"Oper.Eport.FirstLsdbRecord", get_first_lsdb_record},
        {"Oper.Eport.NextLsdbRecord.7", [](char *dst) { return get_next_lsdb_record("7", dst); }},
        {"Oper.Eport.LsdbRecord.7.Link.2.LocalPort",
         [](char *dst) { return get_lsdb_record_link_local_information("7", "2", dst); }},
        {"Oper.Eport.LsdbRecord.7.Link.2.Neighbor",
         [](char *dst) { return get_lsdb_record_link_remote_information("7", "2", dst); }},
        {"Oper.NameServerAll.7.FirstNsEntry", [](char *dst) { return get_first_attached_port("7", dst); }},
        {"Oper.NameServerAll.7.NextNsEntry.070300",
         [](char *dst) { return get_next_attached_port("7", "070300", dst); }},
    };
    return all;
}

class Walkers : public testing::Test {
protected:
    Walkers() { hSwitch = kHandle; }
    ~Walkers() override { hSwitch = 0; }

    /// The switch library answers every read so.
    void answer(const std::string &value, int32_t status = 0, int32_t result = 0) {
        scripted::getBatch = [=](zov_handle_t handle, SmlMessage *messages, int32_t count) {
            EXPECT_EQ(handle, kHandle);
            EXPECT_EQ(count, 1);
            _keys.emplace_back(messages[0].key, strnlen(messages[0].key, sizeof messages[0].key));
            std::memset(messages[0].value, 'W', sizeof messages[0].value);
            std::memcpy(messages[0].value, value.c_str(), std::min(value.size() + 1, sizeof messages[0].value));
            messages[0].status = status;
            return result;
        };
    }

    static Buffer untouched() {
        Buffer buffer{};
        std::strcpy(buffer.data(), kUntouched);
        return buffer;
    }

    std::vector<std::string> log() const { return support::messagesSince(_mark); }

    std::vector<std::string> _keys;

private:
    std::size_t _mark = support::logMark();
};

TEST_F(Walkers, EachReadsOneKeyAndHandsOutItsTextSilently) {
    for (const Walk &walk : walks()) {
        answer("the answer");
        _keys.clear();
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), dst.data()) << walk.key;
        EXPECT_STREQ(dst.data(), "the answer") << walk.key;
        EXPECT_THAT(_keys, ElementsAre(walk.key));
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Walkers, ARefusedKeyGivesNullLeavesTheBufferAndIsLoggedByTheScan) {
    for (const Walk &walk : walks()) {
        answer("not to be used", 5);
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), nullptr) << walk.key;
        EXPECT_STREQ(dst.data(), kUntouched) << walk.key;
    }
    std::vector<std::string> expected;
    for (const Walk &walk : walks())
        expected.push_back(std::string("DCACHE: sml command='") + walk.key + "', smlerror='0x5'");
    EXPECT_EQ(log(), expected);
}

TEST_F(Walkers, TheEndOfAWalkIsSilent) {
    for (const Walk &walk : walks()) {
        answer("", kEndOfList);
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), nullptr) << walk.key;
        EXPECT_STREQ(dst.data(), kUntouched) << walk.key;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Walkers, AFailedExchangeGivesNullWhateverTheStatusSays) {
    for (const Walk &walk : walks()) {
        answer("not to be used", 0, 2);
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), nullptr) << walk.key;
        EXPECT_STREQ(dst.data(), kUntouched) << walk.key;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Walkers, ATextWithoutItsEndIsCutTo255Characters) {
    for (const Walk &walk : walks()) {
        answer(std::string(256, 'x'));
        Buffer dst = untouched();
        ASSERT_EQ(walk.call(dst.data()), dst.data()) << walk.key;
        EXPECT_EQ(std::string(dst.data()), std::string(255, 'x')) << walk.key;
    }
}

TEST_F(Walkers, ARecordMayBeReplacedByItsSuccessor) {
    answer("8");
    Buffer record{};
    std::strcpy(record.data(), "7");
    EXPECT_EQ(get_next_lsdb_record(record.data(), record.data()), record.data());
    EXPECT_STREQ(record.data(), "8");
    EXPECT_THAT(_keys, ElementsAre("Oper.Eport.NextLsdbRecord.7"));
}

TEST_F(Walkers, TextsGoIntoTheKeyAsTheyAreAndTheKeyIsCut) {
    answer("x");
    Buffer dst{};
    EXPECT_NE(get_next_attached_port("%s a.b", "", dst.data()), nullptr);
    EXPECT_NE(get_next_lsdb_record(std::string(300, 'r').c_str(), dst.data()), nullptr);
    EXPECT_THAT(_keys, ElementsAre("Oper.NameServerAll.%s a.b.NextNsEntry.",
                                   "Oper.Eport.NextLsdbRecord." + std::string(255 - 26, 'r')));
}

TEST_F(Walkers, NullTextsCountAsEmptyAndANullBufferGetsNothing) {
    answer("x");
    Buffer dst{};
    EXPECT_NE(get_lsdb_record_link_local_information(nullptr, nullptr, dst.data()), nullptr);
    EXPECT_NE(get_first_attached_port(nullptr, dst.data()), nullptr);
    EXPECT_EQ(get_lsdb_record_link_count(nullptr), 0);
    for (const Walk &walk : walks())
        EXPECT_EQ(walk.call(nullptr), nullptr) << walk.key;
    _keys.resize(3);
    EXPECT_THAT(_keys, ElementsAre("Oper.Eport.LsdbRecord..Link..LocalPort", "Oper.NameServerAll..FirstNsEntry",
                                   "Oper.Eport.LsdbRecord..NumberOfLinks"));
}

TEST_F(Walkers, TheLinkCountIsADecimalNumber) {
    const std::vector<std::pair<std::string, int>> rows = {{"0", 0},    {"12", 12}, {" 7x", 7},  {"0x10", 0},
                                                           {"010", 10}, {"-3", -3}, {"none", 0}, {"", 0}};
    for (const auto &[text, count] : rows) {
        answer(text);
        EXPECT_EQ(get_lsdb_record_link_count("7"), count) << text;
    }
    EXPECT_EQ(_keys.front(), "Oper.Eport.LsdbRecord.7.NumberOfLinks");
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Walkers, TheLinkCountIsMinusOneWhenTheReadFails) {
    answer("12", 5);
    EXPECT_EQ(get_lsdb_record_link_count("7"), -1);
    answer("12", kEndOfList);
    EXPECT_EQ(get_lsdb_record_link_count("7"), -1);
    answer("12", 0, 2);
    EXPECT_EQ(get_lsdb_record_link_count("7"), -1);
    EXPECT_THAT(log(), ElementsAre("DCACHE: sml command='Oper.Eport.LsdbRecord.7.NumberOfLinks', smlerror='0x5'"));
}

TEST_F(Walkers, ANegativeResultIsAFailureToo) {
    for (const Walk &walk : walks()) {
        answer("not to be used", 0, -1);
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), nullptr) << walk.key;
        EXPECT_STREQ(dst.data(), kUntouched) << walk.key;
    }
}

TEST_F(Walkers, AFailedExchangeIsNotScanned) {
    for (const Walk &walk : walks()) {
        answer("", 5, 2);
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), nullptr) << walk.key;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Walkers, AnAnswerThatWasNeverWrittenIsEmpty) {
    scripted::getBatch = [](zov_handle_t, SmlMessage *, int32_t) { return 0; };
    for (const Walk &walk : walks()) {
        Buffer dst = untouched();
        EXPECT_EQ(walk.call(dst.data()), dst.data()) << walk.key;
        EXPECT_STREQ(dst.data(), "") << walk.key;
    }
}

TEST_F(Walkers, NothingBehindTheTextIsTouched) {
    for (const Walk &walk : walks()) {
        answer("8");
        Buffer dst = untouched();
        ASSERT_EQ(walk.call(dst.data()), dst.data()) << walk.key;
        EXPECT_STREQ(dst.data() + 2, kUntouched + 2) << walk.key;
    }
}

} // namespace
