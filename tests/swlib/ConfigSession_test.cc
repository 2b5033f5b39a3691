// Admin mode, edits of the CIM configuration, backup and restore: what is sent, what is logged, and who holds admin mode.
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/swlib/ScriptedSwitch.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

constexpr const char *kTake = "Cmd.Switch.ReqAdmin";
constexpr const char *kGive = "Cmd.Switch.CancelAdmin";
constexpr const char *kOpen = "Cmd.Cim.EditConfig";
constexpr const char *kSave = "Cmd.Cim.SaveConfig";
constexpr const char *kCancel = "Cmd.Cim.CancelConfig";
constexpr const char *kBackup = "Cmd.Switch.BackupConfig";
constexpr const char *kRestore = "Cmd.Switch.RestoreConfig";

constexpr zov_handle_t kConnection = 0x80000007;

class ConfigSession : public testing::Test {
protected:
    ConfigSession() {
        hSwitch = kConnection;
        scripted::set = [this](zov_handle_t handle, const char *key, const char *value) {
            EXPECT_EQ(handle, kConnection);
            EXPECT_STREQ(value, "");
            _keys.emplace_back(key);
            return _refused.count(key) != 0 ? _refused.at(key) : 0;
        };
    }
    ~ConfigSession() override { hSwitch = 0; }

    /// What was sent, and logged, since the last time it was asked.
    Lines sent() {
        Lines keys;
        keys.swap(_keys);
        return keys;
    }
    Lines logged() {
        Lines lines = support::numberless(support::messagesSince(_mark));
        _mark += lines.size();
        return lines;
    }
    /// The lines of a refused command.
    static Lines refusal(const std::string &key, int32_t result, const std::string &line) {
        return {"DCACHE: zov_smlSet '" + key + "'",
                "CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet '" + key + "' failed, sw_ret = " + std::to_string(result),
                line};
    }

    /// Whether this process counts as the holder of admin mode, which is the same after the question.
    bool isAdmin() {
        const auto refused = _refused;
        _refused = {{kGive, 1}};
        const bool held = releaseAdminMode() != 0;
        _refused = refused;
        sent();
        logged();
        return held;
    }

    std::map<std::string, int32_t> _refused;

private:
    Lines _keys;
    size_t _mark = support::logMark();
};

TEST_F(ConfigSession, AdminModeIsTakenAndGivenBack) {
    EXPECT_EQ(reqAdminMode(), 0);
    EXPECT_THAT(sent(), ElementsAre(kTake));
    EXPECT_THAT(logged(), ElementsAre("DCACHE: zov_smlSet 'Cmd.Switch.ReqAdmin'"));
    EXPECT_TRUE(isAdmin());
    EXPECT_EQ(releaseAdminMode(), 0);
    EXPECT_THAT(sent(), ElementsAre(kGive));
    EXPECT_THAT(logged(), ElementsAre("DCACHE: zov_smlSet 'Cmd.Switch.CancelAdmin'"));
    EXPECT_FALSE(isAdmin());
}

TEST_F(ConfigSession, AdminModeThatIsNotHeldIsNotGivenBack) {
    EXPECT_EQ(releaseAdminMode(), 0);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(ConfigSession, AdminModeMayBeAskedForAgainAndIsGivenBackOnce) {
    EXPECT_EQ(reqAdminMode(), 0);
    EXPECT_EQ(reqAdminMode(), 0);
    EXPECT_EQ(releaseAdminMode(), 0);
    EXPECT_EQ(releaseAdminMode(), 0);
    EXPECT_THAT(sent(), ElementsAre(kTake, kTake, kGive));
}

TEST_F(ConfigSession, ARefusedRequestLeavesTheProcessWithoutAdminMode) {
    _refused = {{kTake, 11}};
    EXPECT_EQ(reqAdminMode(), -1);
    EXPECT_THAT(sent(), ElementsAre(kTake));
    EXPECT_EQ(logged(), refusal(kTake, 11, "DCACHE: zov_smlSet failed to get Admin mode"));
    EXPECT_FALSE(isAdmin());
}

TEST_F(ConfigSession, ARefusedRequestOfAHolderLeavesItTheHolder) {
    reqAdminMode();
    _refused = {{kTake, 11}};
    EXPECT_EQ(reqAdminMode(), -1);
    EXPECT_TRUE(isAdmin());
}

TEST_F(ConfigSession, ARefusedReleaseLeavesTheProcessTheHolder) {
    reqAdminMode();
    sent();
    logged();
    _refused = {{kGive, -3}};
    EXPECT_EQ(releaseAdminMode(), -1);
    EXPECT_THAT(sent(), ElementsAre(kGive));
    EXPECT_EQ(logged(), refusal(kGive, -3, "DCACHE: zov_smlSet failed to release Admin mode"));
    EXPECT_TRUE(isAdmin());
}

TEST_F(ConfigSession, BatchWritesDoNotChangeWhoCountsAsTheHolder) {
    scripted::setBatch = [](zov_handle_t, SmlMessage *, int32_t) { return 0; };
    for (const auto write : {zov_smlBatchSet, zov_smlBatchCimSet}) {
        EXPECT_EQ(write(kConnection, nullptr, 0), 0);
        EXPECT_FALSE(isAdmin());
    }
    reqAdminMode();
    for (const auto write : {zov_smlBatchSet, zov_smlBatchCimSet}) {
        EXPECT_EQ(write(kConnection, nullptr, 0), 0);
        EXPECT_TRUE(isAdmin());
    }
}

// ---- edits --------------------------------------------------------------------------------------------

/// How an edit ends.
struct End {
    int (*run)();
    const char *key;
    const char *failure;
};

class EditEnd : public ConfigSession, public testing::WithParamInterface<End> {};

INSTANTIATE_TEST_SUITE_P(BothWays, EditEnd,
                         testing::Values(End{saveConfigEdit, kSave, "DCACHE: zov_smlSet failed for Config Save"},
                                         End{cancelConfigEdit, kCancel, "DCACHE: zov_smlSet failed for Config Cancel"}),
                         [](const auto &end) { return std::string(end.index == 0 ? "Saved" : "Cancelled"); });

TEST_P(EditEnd, GivesAdminModeBack) {
    EXPECT_EQ(getConfigEditMode(), 0);
    EXPECT_THAT(sent(), ElementsAre(kTake, kOpen));
    EXPECT_TRUE(isAdmin());
    EXPECT_EQ(GetParam().run(), 0);
    EXPECT_THAT(sent(), ElementsAre(GetParam().key, kGive));
    EXPECT_THAT(logged(), ElementsAre("DCACHE: zov_smlSet '" + std::string(GetParam().key) + "'",
                                      "DCACHE: zov_smlSet 'Cmd.Switch.CancelAdmin'"));
    EXPECT_FALSE(isAdmin());
}

TEST_P(EditEnd, WithoutAdminModeIsSentAllTheSameAndGivesNothingBack) {
    EXPECT_EQ(GetParam().run(), 0);
    EXPECT_THAT(sent(), ElementsAre(GetParam().key));
}

TEST_P(EditEnd, ThatIsRefusedKeepsAdminMode) {
    getConfigEditMode();
    sent();
    logged();
    _refused = {{GetParam().key, 13}};
    EXPECT_EQ(GetParam().run(), -1);
    EXPECT_THAT(sent(), ElementsAre(GetParam().key));
    EXPECT_EQ(logged(), refusal(GetParam().key, 13, GetParam().failure));
    EXPECT_TRUE(isAdmin());
    EXPECT_EQ(releaseAdminMode(), 0) << "the caller may give it back";
    EXPECT_THAT(sent(), ElementsAre(kGive));
}

TEST_P(EditEnd, HasTheResultOfTheRelease) {
    getConfigEditMode();
    sent();
    _refused = {{kGive, 12}};
    EXPECT_EQ(GetParam().run(), -1);
    EXPECT_THAT(sent(), ElementsAre(GetParam().key, kGive));
    EXPECT_TRUE(isAdmin());
}

TEST_F(ConfigSession, WithoutAdminModeNoEditIsOpened) {
    _refused = {{kTake, 11}};
    EXPECT_EQ(getConfigEditMode(), -1);
    EXPECT_THAT(sent(), ElementsAre(kTake));
    EXPECT_EQ(logged(), refusal(kTake, 11, "DCACHE: zov_smlSet failed to get Admin mode"));
}

TEST_F(ConfigSession, AnEditThatCannotBeOpenedLeavesAdminModeHeld) {
    _refused = {{kOpen, 14}};
    EXPECT_EQ(getConfigEditMode(), -1);
    EXPECT_THAT(sent(), ElementsAre(kTake, kOpen));
    Lines expected = {"DCACHE: zov_smlSet 'Cmd.Switch.ReqAdmin'"};
    for (const std::string &line : refusal(kOpen, 14, "DCACHE: zov_smlSet failed for Config Edit"))
        expected.push_back(line);
    EXPECT_EQ(logged(), expected);
    EXPECT_TRUE(isAdmin());
}

TEST_F(ConfigSession, AnEditAsksForAdminModeAlsoWhenItIsHeld) {
    reqAdminMode();
    sent();
    EXPECT_EQ(getConfigEditMode(), 0);
    EXPECT_THAT(sent(), ElementsAre(kTake, kOpen));
    _refused = {{kTake, 11}};
    EXPECT_EQ(getConfigEditMode(), -1) << "holding it does not help";
    EXPECT_THAT(sent(), ElementsAre(kTake));
    EXPECT_TRUE(isAdmin());
}

// ---- backup and restore -------------------------------------------------------------------------------

TEST_F(ConfigSession, BackupAndRestoreAreOneCommandEach) {
    EXPECT_EQ(backupConfig(), 0);
    EXPECT_EQ(restoreConfig(), 0);
    EXPECT_THAT(sent(), ElementsAre(kBackup, kRestore));
    EXPECT_THAT(logged(), ElementsAre("DCACHE: zov_smlSet 'Cmd.Switch.BackupConfig'",
                                      "DCACHE: zov_smlSet 'Cmd.Switch.RestoreConfig'"));
}

TEST_F(ConfigSession, BackupAndRestoreReturnTheSwitchLibrarysResult) {
    for (const int32_t result : {10, 103, -1, INT32_MIN}) {
        _refused = {{kBackup, result}, {kRestore, result}};
        EXPECT_EQ(backupConfig(), result);
        EXPECT_EQ(logged(), refusal(kBackup, result, "DCACHE: zov_smlSet failed to backup config"));
        EXPECT_EQ(restoreConfig(), result);
        EXPECT_EQ(logged(), refusal(kRestore, result, "DCACHE: zov_smlSet failed to restore config"));
    }
}

TEST_F(ConfigSession, FailuresOfCommandsStandInTheCriticalLogOnceEach) {
    _refused = {{kTake, 1}, {kBackup, 1}};
    getConfigEditMode();
    backupConfig();
    EXPECT_EQ(support::numberless(support::messagesIn(support::kCriticalLog)),
              (Lines{"CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet 'Cmd.Switch.ReqAdmin' failed, sw_ret = 1",
                     "CRIT:MERO_Zov_Lib:zov_smlSetV[#] zov_smlSet 'Cmd.Switch.BackupConfig' failed, sw_ret = 1"}));
}

} // namespace
