// Getting and setting one key.
#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/support/Memory.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using Lines = std::vector<std::string>;

constexpr zov_handle_t kHandle = 0x80000007; // not the one of the cache
constexpr size_t kLongestKey = 255;

Lines mainLines() {
    return support::numberless(support::messagesIn(support::kMainLog));
}

Lines criticalLines() {
    return support::numberless(support::messagesIn(support::kCriticalLog));
}

class SingleKey : public testing::Test {
protected:
    SingleKey() { hSwitch = 1; }
    ~SingleKey() override { hSwitch = 0; }

    /// Scripts a get that fails and touches nothing.
    void failGets(int32_t result) {
        scripted::get = [this, result](zov_handle_t, const char *key, char **, uint32_t *) {
            _keys.emplace_back(key);
            return result;
        };
    }
    /// Scripts a set that notes key and value, and then writes all over the value.
    void answerSets(int32_t result) {
        scripted::set = [this, result](zov_handle_t handle, const char *key, char *value) {
            _handle = handle;
            _keys.emplace_back(key);
            _values.emplace_back(value);
            std::memset(value, 'W', std::strlen(value));
            return result;
        };
    }

    zov_handle_t _handle = 0;
    std::vector<std::string> _keys;
    std::vector<std::string> _values;
};

class SmlGetV : public SingleKey {};
class SmlSetV : public SingleKey {};

TEST_F(SmlGetV, PassesTheCallersArgumentsThroughAndLogsTheKeyFirst) {
    char *value = nullptr;
    uint32_t size = 0;
    scripted::get = [&](zov_handle_t handle, const char *key, char **valueOut, uint32_t *sizeOut) {
        EXPECT_EQ(handle, kHandle);
        EXPECT_STREQ(key, "Oper.UserPort.0.7.OperState");
        EXPECT_EQ(valueOut, &value);
        EXPECT_EQ(sizeOut, &size);
        EXPECT_EQ(mainLines(), Lines{"DCACHE: zov_smlGet 'Oper.UserPort.0.7.OperState'"});
        *valueOut = strdup("Online");
        *sizeOut = 7;
        return 0;
    };
    EXPECT_EQ(zov_smlGetV(kHandle, &value, &size, "Oper.UserPort.%d.%u.%s", 0, 7U, "OperState"), 0);
    EXPECT_STREQ(value, "Online");
    EXPECT_EQ(size, 7U);
    EXPECT_EQ(mainLines().size(), 1U);
    EXPECT_EQ(criticalLines(), Lines{});
    zov_libFreeMemory(value);
}

TEST_F(SmlGetV, FailuresAreLoggedInHexadecimalBut103IsNone) {
    struct Row {
        int32_t result;
        const char *text; // null: not logged
    };
    constexpr Row rows[] = {
        {103, nullptr},
        {102, "0x66"},
        {104, "0x68"},
        {1, "0x1"},
        {24, "0x18"},
        {-1, "0xffffffff"},
        {-103, "0xffffff99"},
        {0x1067, "0x1067"},
        {INT32_MAX, "0x7fffffff"},
        {INT32_MIN, "0x80000000"},
    };
    Lines main;
    Lines critical;
    for (const Row &row : rows) {
        failGets(row.result);
        char *value = nullptr;
        uint32_t size = 0;
        EXPECT_EQ(zov_smlGetV(kHandle, &value, &size, "Config.%s", "Key"), row.result);
        main.emplace_back("DCACHE: zov_smlGet 'Config.Key'");
        if (row.text != nullptr) {
            critical.push_back("CRIT:MERO_Zov_Lib:zov_smlGetV[#] zov_smlGet 'Config.Key' failed, sw_ret = " +
                               std::string(row.text));
            main.push_back(critical.back());
        }
        EXPECT_EQ(mainLines(), main) << row.result;
        EXPECT_EQ(criticalLines(), critical) << row.result;
    }
}

TEST_F(SmlGetV, AFailureThatTouchesNothingLeavesTheCallersPreset) {
    failGets(5);
    std::array<char, 4> preset{};
    char *value = preset.data();
    uint32_t size = 99;
    EXPECT_EQ(zov_smlGetV(kHandle, &value, &size, "Key"), 5);
    EXPECT_EQ(value, preset.data());
    EXPECT_EQ(size, 99U);
}

TEST_F(SmlGetV, LongKeysAreCutTo255Characters) {
    failGets(5);
    for (const size_t length : {kLongestKey - 1, kLongestKey, kLongestKey + 1, size_t{600}}) {
        const std::string key(length, 'k');
        const std::string cut = key.substr(0, kLongestKey);
        char *value = nullptr;
        uint32_t size = 0;
        const size_t mark = support::logMark();
        EXPECT_EQ(zov_smlGetV(kHandle, &value, &size, "%s", key.c_str()), 5);
        EXPECT_EQ(_keys.back(), cut);
        const Lines expected = {"DCACHE: zov_smlGet '" + cut + "'",
                                "CRIT:MERO_Zov_Lib:zov_smlGetV[#] zov_smlGet '" + cut + "' failed, sw_ret = 0x5"};
        EXPECT_EQ(support::numberless(support::messagesSince(mark)), expected);
    }
}

TEST_F(SmlGetV, AKeyIsFormattedOnce) {
    failGets(5);
    char *value = nullptr;
    uint32_t size = 0;
    zov_smlGetV(kHandle, &value, &size, "Zone.%s", "100%s%n");
    EXPECT_EQ(_keys, Lines{"Zone.100%s%n"});
    EXPECT_EQ(mainLines().front(), "DCACHE: zov_smlGet 'Zone.100%s%n'");
}

TEST_F(SmlGetV, WithoutPointerOrFormatNothingIsSent) {
    failGets(0);
    const char *none = nullptr;
    char *value = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(zov_smlGetV(kHandle, nullptr, &size, "Key"), 1);
    EXPECT_EQ(zov_smlGetV(kHandle, &value, nullptr, "Key"), 1);
    EXPECT_EQ(zov_smlGetV(kHandle, &value, &size, none, 0), 1);
    EXPECT_EQ(_keys, Lines{});
}

TEST_F(SmlSetV, SendsKeyAndValueAndLogsTheKeyFirst) {
    scripted::set = [this](zov_handle_t handle, const char *key, char *value) {
        EXPECT_EQ(mainLines(), Lines{"DCACHE: zov_smlSet 'Config.Switch.7.Name'"});
        _handle = handle;
        _keys.emplace_back(key);
        _values.emplace_back(value);
        return 0;
    };
    EXPECT_EQ(zov_smlSetV(kHandle, "my value", "Config.Switch.%d.%s", 7, "Name"), 0);
    EXPECT_EQ(_handle, kHandle);
    EXPECT_EQ(_keys, Lines{"Config.Switch.7.Name"});
    EXPECT_EQ(_values, Lines{"my value"});
    EXPECT_EQ(mainLines().size(), 1U);
    EXPECT_EQ(criticalLines(), Lines{});
}

TEST_F(SmlSetV, FailuresAreLoggedInDecimal) {
    struct Row {
        int32_t result;
        const char *text;
    };
    constexpr Row rows[] = {
        {103, "103"},
        {24, "24"},
        {1, "1"},
        {255, "255"},
        {-1, "-1"},
        {INT32_MAX, "2147483647"},
        {INT32_MIN, "-2147483648"},
    };
    Lines main;
    Lines critical;
    for (const Row &row : rows) {
        answerSets(row.result);
        EXPECT_EQ(zov_smlSetV(kHandle, "", "Cmd.%s", "Key"), row.result);
        critical.push_back("CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet 'Cmd.Key' failed, sw_ret = " +
                           std::string(row.text));
        main.emplace_back("DCACHE: zov_smlSet 'Cmd.Key'");
        main.push_back(critical.back());
        EXPECT_EQ(mainLines(), main) << row.result;
        EXPECT_EQ(criticalLines(), critical) << row.result;
    }
}

TEST_F(SmlSetV, TheCallersValueIsNotTouchedWhateverTheSwitchLibraryDoes) {
    answerSets(0);
    const std::string value = "my value";
    EXPECT_EQ(zov_smlSetV(kHandle, value.c_str(), "Key"), 0);
    EXPECT_EQ(value, "my value");
    EXPECT_EQ(zov_smlSetV(kHandle, "a text in read-only memory", "Key"), 0);
}

TEST_F(SmlSetV, TheSwitchLibraryMayFillAWholeValue) {
    scripted::set = [](zov_handle_t, const char *, char *value) {
        std::memset(value, 'W', sizeof(SmlMessage::value));
        return 0;
    };
    EXPECT_EQ(zov_smlSetV(kHandle, "", "Key"), 0);
    EXPECT_EQ(zov_smlSetV(kHandle, "short", "Key"), 0);
}

TEST_F(SmlSetV, LongValuesArriveWhole) {
    answerSets(0);
    for (const size_t length : {0U, 1U, 255U, 256U, 257U, 5000U}) {
        const std::string value(length, 'v');
        EXPECT_EQ(zov_smlSetV(kHandle, value.c_str(), "Key"), 0);
        EXPECT_EQ(_values.back(), value);
    }
}

TEST_F(SmlSetV, NoValueIsAnEmptyOne) {
    answerSets(0);
    EXPECT_EQ(zov_smlSetV(kHandle, nullptr, "Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(_keys, Lines{"Cmd.Switch.RelAdmin"});
    EXPECT_EQ(_values, Lines{""});
}

TEST_F(SmlSetV, LongKeysAreCutTo255Characters) {
    answerSets(5);
    for (const size_t length : {kLongestKey - 1, kLongestKey, kLongestKey + 1, size_t{600}}) {
        const std::string key(length, 'k');
        const std::string cut = key.substr(0, kLongestKey);
        const size_t mark = support::logMark();
        EXPECT_EQ(zov_smlSetV(kHandle, "", "%s", key.c_str()), 5);
        EXPECT_EQ(_keys.back(), cut);
        const Lines expected = {"DCACHE: zov_smlSet '" + cut + "'",
                                "CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet '" + cut + "' failed, sw_ret = 5"};
        EXPECT_EQ(support::numberless(support::messagesSince(mark)), expected);
    }
}

TEST_F(SmlSetV, WithoutMemoryItFailsAndSaysSo) {
    answerSets(0);
    cim_log(CIM_LOG_INFO, "the first line reads the time zone\n");
    const size_t mark = support::logMark();
    int32_t result = 0;
    {
        const support::MemoryFailure failure(1);
        result = zov_smlSetV(kHandle, "value", "Key");
        EXPECT_TRUE(support::MemoryFailure::happened());
    }
    EXPECT_EQ(result, ENOMEM);
    EXPECT_EQ(_keys, Lines{}) << "nothing was sent";
    const Lines expected = {"DCACHE: zov_smlSet 'Key'",
                            "CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet 'Key' failed, sw_ret = " +
                                std::to_string(ENOMEM)};
    EXPECT_EQ(support::numberless(support::messagesSince(mark)), expected);
}

TEST_F(SmlSetV, WithoutFormatNothingIsSent) {
    answerSets(0);
    const char *none = nullptr;
    EXPECT_EQ(zov_smlSetV(kHandle, "value", none, 0), 1);
    EXPECT_EQ(_keys, Lines{});
}

} // namespace
