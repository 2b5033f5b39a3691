// The scan that tells whether a batch failed.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"

namespace {

using Lines = std::vector<std::string>;

std::vector<SmlMessage> messagesWith(const std::vector<int32_t> &statuses) {
    std::vector<SmlMessage> messages(statuses.size());
    for (size_t i = 0; i < statuses.size(); ++i) {
        std::strcpy(messages[i].key, ("Key." + std::to_string(i)).c_str());
        std::strcpy(messages[i].value, "value");
        messages[i].status = statuses[i];
    }
    return messages;
}

int scan(std::vector<SmlMessage> &messages) {
    return isErrors(messages.data(), static_cast<int32_t>(messages.size()));
}

TEST(IsErrors, ReportsTheFirstFailedMessageUnlessItIs24) {
    struct Row {
        std::vector<int32_t> statuses;
        int result;
        const char *line;
    };
    const Row rows[] = {
        {{0}, 0, nullptr},
        {{0, 0, 0, 0}, 0, nullptr},
        {{1}, 1, "DCACHE: sml command='Key.0', smlerror='0x1'"},
        {{0, 0, 0, 2}, 1, "DCACHE: sml command='Key.3', smlerror='0x2'"},
        {{0, 3, 4, 0}, 1, "DCACHE: sml command='Key.1', smlerror='0x3'"},
        {{23}, 1, "DCACHE: sml command='Key.0', smlerror='0x17'"},
        {{24}, 1, nullptr},
        {{25}, 1, "DCACHE: sml command='Key.0', smlerror='0x19'"},
        {{0, 24, 0}, 1, nullptr},
        {{24, 24}, 1, nullptr},
        {{24, 5}, 1, nullptr},
        {{5, 24}, 1, "DCACHE: sml command='Key.0', smlerror='0x5'"},
        {{-24}, 1, "DCACHE: sml command='Key.0', smlerror='0xffffffe8'"},
        {{0x1018}, 1, "DCACHE: sml command='Key.0', smlerror='0x1018'"},
        {{103}, 1, "DCACHE: sml command='Key.0', smlerror='0x67'"},
        {{INT32_MAX}, 1, "DCACHE: sml command='Key.0', smlerror='0x7fffffff'"},
        {{INT32_MIN}, 1, "DCACHE: sml command='Key.0', smlerror='0x80000000'"},
        {{-1}, 1, "DCACHE: sml command='Key.0', smlerror='0xffffffff'"},
    };
    for (const Row &row : rows) {
        std::vector<SmlMessage> messages = messagesWith(row.statuses);
        const std::vector<SmlMessage> before = messages;
        const size_t mark = support::logMark();
        EXPECT_EQ(scan(messages), row.result);
        EXPECT_EQ(support::messagesSince(mark), row.line != nullptr ? Lines{row.line} : Lines{});
        EXPECT_EQ(std::memcmp(messages.data(), before.data(), before.size() * sizeof(SmlMessage)), 0);
    }
    EXPECT_EQ(support::readFile(support::kCriticalLog), "") << "level 2";
}

TEST(IsErrors, LooksAtNothingWhenThereIsNothing) {
    std::vector<SmlMessage> failed = messagesWith({5, 5});
    // NOLINTNEXTLINE(performance-no-int-to-ptr): touching what is there ends the process
    auto *nowhere = reinterpret_cast<SmlMessage *>(sizeof(SmlMessage));
    for (const int32_t count : {0, -1, INT32_MIN}) {
        EXPECT_EQ(isErrors(failed.data(), count), 0) << count;
        EXPECT_EQ(isErrors(nowhere, count), 0) << count;
        EXPECT_EQ(isErrors(nullptr, count), 0) << count;
    }
    EXPECT_EQ(isErrors(nullptr, 2), 0);
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST(IsErrors, LooksNoFurtherThanTheCount) {
    std::vector<SmlMessage> messages = messagesWith({0, 0, 5});
    EXPECT_EQ(isErrors(messages.data(), 2), 0);
    EXPECT_EQ(isErrors(messages.data(), 3), 1);
}

TEST(IsErrors, AKeyWithoutItsEndIsLoggedToItsEnd) {
    std::vector<SmlMessage> messages = messagesWith({5});
    std::memset(messages[0].key, 'k', sizeof(messages[0].key));
    EXPECT_EQ(scan(messages), 1);
    EXPECT_EQ(support::messagesIn(support::kMainLog),
              Lines{"DCACHE: sml command='" + std::string(256, 'k') + "', smlerror='0x5'"});
}

TEST(IsErrors, AKeyIsNoFormat) {
    std::vector<SmlMessage> messages = messagesWith({5});
    std::strcpy(messages[0].key, "%s%n%d");
    EXPECT_EQ(scan(messages), 1);
    EXPECT_EQ(support::messagesIn(support::kMainLog), Lines{"DCACHE: sml command='%s%n%d', smlerror='0x5'"});
}

} // namespace
