// Batch writes in an edit session of their own: every combination of failing steps.
#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using Traffic = std::vector<std::string>;

constexpr zov_handle_t kHandle = 0x80000007; // not the one of the cache
constexpr int32_t kCount = 3;

/// A way through a session: it is taken when the steps of `failing` fail and those of `passing` do not; then these keys
/// are sent, and the first failed step of `ranking` gives the result.
struct Way {
    std::vector<std::string> passing;
    std::vector<std::string> failing;
    Traffic traffic;
    std::vector<std::string> ranking;
};

const std::string kReq = "Cmd.Switch.ReqAdmin";
const std::string kRel = "Cmd.Switch.RelAdmin";
const std::string kBatch = "the batch";

const std::string kEdit = "Cmd.Switch.EditConfig";
const std::string kSave = "Cmd.Switch.SaveConfig";
const std::string kAct = "Cmd.Switch.ActConfig";
const std::string kCancel = "Cmd.Switch.CancelConfig";

const std::vector<Way> kSwitchWays = {
    {{}, {kReq}, {kReq}, {kReq}},
    {{kReq}, {kEdit}, {kReq, kEdit, kRel}, {kRel, kEdit}},
    {{kReq, kEdit}, {kBatch}, {kReq, kEdit, kBatch, kCancel, kRel}, {kRel, kCancel, kBatch}},
    {{kReq, kEdit, kBatch}, {kSave}, {kReq, kEdit, kBatch, kSave, kCancel, kRel}, {kRel, kCancel, kSave}},
    {{kReq, kEdit, kBatch, kSave}, {}, {kReq, kEdit, kBatch, kSave, kAct, kRel}, {kRel, kAct}},
};

const std::string kCimEdit = "Cmd.Cim.EditConfig";
const std::string kCimSave = "Cmd.Cim.SaveConfig";
const std::string kCimCancel = "Cmd.Cim.CancelConfig";

const std::vector<Way> kCimWays = {
    {{}, {kReq}, {kReq}, {kReq}},
    {{kReq}, {kCimEdit}, {kReq, kCimEdit, kRel}, {kRel, kCimEdit}},
    {{kReq, kCimEdit}, {kBatch}, {kReq, kCimEdit, kBatch, kCimCancel, kRel}, {kRel, kCimCancel, kBatch}},
    {{kReq, kCimEdit, kBatch},
     {kCimSave},
     {kReq, kCimEdit, kBatch, kCimSave, kCimCancel, kRel},
     {kRel, kCimCancel, kCimSave}},
    {{kReq, kCimEdit, kBatch, kCimSave}, {}, {kReq, kCimEdit, kBatch, kCimSave, kRel}, {kRel}},
};

/// One of the two writes.
struct Write {
    const char *name;
    int32_t (*send)(zov_handle_t, SmlMessage *, int32_t);
    const std::vector<std::string> &steps; // all that may fail
    const std::vector<Way> &ways;
};

const std::vector<std::string> kSwitchSteps = {kReq, kEdit, kBatch, kSave, kAct, kCancel, kRel};
const std::vector<std::string> kCimSteps = {kReq, kCimEdit, kBatch, kCimSave, kCimCancel, kRel};

void PrintTo(const Write &write, std::ostream *out) {
    *out << write.name;
}

class BatchSet : public testing::TestWithParam<Write> {
protected:
    BatchSet() {
        std::memset(_messages, 0x5A, sizeof(_messages));
        scripted::set = [this](zov_handle_t handle, const char *key, char *value) {
            EXPECT_EQ(handle, kHandle);
            EXPECT_STREQ(value, "") << key;
            std::memset(value, 'W', sizeof(SmlMessage::value)); // as a switch library may
            _traffic.emplace_back(key);
            return resultOf(key);
        };
        scripted::setBatch = [this](zov_handle_t handle, SmlMessage *messages, int32_t count) {
            EXPECT_EQ(handle, kHandle);
            EXPECT_EQ(messages, _messages);
            EXPECT_EQ(count, _count);
            _traffic.push_back(kBatch);
            for (int32_t i = 0; i < kCount; ++i)
                messages[i].status = _statuses;
            return resultOf(kBatch);
        };
    }

    int32_t resultOf(const std::string &step) const {
        const auto found = _failures.find(step);
        return found != _failures.end() ? found->second : 0;
    }
    bool allFail(const std::vector<std::string> &steps) const {
        return std::all_of(steps.begin(), steps.end(), [this](const auto &step) { return resultOf(step) != 0; });
    }
    bool allPass(const std::vector<std::string> &steps) const {
        return std::all_of(steps.begin(), steps.end(), [this](const auto &step) { return resultOf(step) == 0; });
    }

    /// The way that a session with these failures takes.
    const Way &way() const {
        const Way *taken = nullptr;
        for (const Way &one : GetParam().ways) {
            if (allPass(one.passing) && allFail(one.failing)) {
                EXPECT_EQ(taken, nullptr) << "the table is ambiguous";
                taken = &one;
            }
        }
        return *taken;
    }
    int32_t resultOf(const Way &taken) const {
        for (const std::string &step : taken.ranking) {
            if (resultOf(step) != 0)
                return resultOf(step);
        }
        return 0;
    }

    int32_t send() { return GetParam().send(kHandle, _messages, _count); }

    std::map<std::string, int32_t> _failures;
    Traffic _traffic;
    SmlMessage _messages[kCount];
    int32_t _count = kCount;
    int32_t _statuses = 0;
};

TEST_P(BatchSet, EveryCombinationOfFailuresTakesItsWay) {
    const std::vector<std::string> &steps = GetParam().steps;
    for (const int32_t sign : {1, -1}) {
        for (size_t combination = 0; combination < (size_t{1} << steps.size()); ++combination) {
            std::string failing;
            _failures.clear();
            for (size_t step = 0; step < steps.size(); ++step) {
                if ((combination >> step & 1U) != 0) {
                    _failures[steps[step]] = sign * static_cast<int32_t>(101 + step);
                    failing += " " + steps[step];
                }
            }
            _traffic.clear();
            const int32_t result = send();
            EXPECT_EQ(_traffic, way().traffic) << "failing:" << failing;
            EXPECT_EQ(result, resultOf(way())) << "failing:" << failing;
        }
    }
    EXPECT_EQ(support::readFile(support::kMainLog), "") << "nothing is logged";
}

TEST_P(BatchSet, TheMessagesGoOutAsTheyCome) {
    SmlMessage before[kCount];
    std::memcpy(before, _messages, sizeof(before));
    _statuses = before[0].status;
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(std::memcmp(_messages, before, sizeof(before)), 0);
}

TEST_P(BatchSet, OnlyTheExchangesResultCounts) {
    _statuses = 5;
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(_messages[0].status, 5) << "the statuses are the caller's to look at";
    EXPECT_EQ(_traffic, GetParam().ways.back().traffic);
    EXPECT_EQ(support::readFile(support::kMainLog), "");
}

TEST_P(BatchSet, AnEmptyBatchIsSentAsAny) {
    _count = 0;
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(_traffic, GetParam().ways.back().traffic);
}

TEST_P(BatchSet, Results24And103AreFailuresAsAny) {
    for (const int32_t result : {24, 103}) {
        _failures = {{kBatch, result}};
        _traffic.clear();
        EXPECT_EQ(send(), result);
        EXPECT_EQ(_traffic, way().traffic);
    }
}

TEST_P(BatchSet, AnArrayThatIsNotThereIsSentOnlyAsAnEmptyBatch) {
    EXPECT_EQ(GetParam().send(kHandle, nullptr, 1), 1);
    EXPECT_EQ(_traffic, Traffic{});

    scripted::setBatch = [this](zov_handle_t, SmlMessage *messages, int32_t count) {
        EXPECT_EQ(messages, nullptr);
        EXPECT_EQ(count, 0);
        _traffic.push_back(kBatch);
        return 0;
    };
    EXPECT_EQ(GetParam().send(kHandle, nullptr, 0), 0);
    EXPECT_EQ(_traffic, GetParam().ways.back().traffic);
}

INSTANTIATE_TEST_SUITE_P(Both, BatchSet,
                         testing::Values(Write{"Switch", zov_smlBatchSet, kSwitchSteps, kSwitchWays},
                                         Write{"Cim", zov_smlBatchCimSet, kCimSteps, kCimWays}),
                         [](const auto &write) { return write.param.name; });

} // namespace
