// Admin mode, edits of the CIM configuration, backup and restore.
#include <cstdint>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"

namespace {

bool adminModeHeld = false; // by this process

/// A command of the switch, and what is logged when the switch refuses it.
struct Command {
    const char *key;
    const char *failure;
};

constexpr Command kTakeAdmin = {"Cmd.Switch.ReqAdmin", "DCACHE: zov_smlSet failed to get Admin mode\n"};
constexpr Command kGiveAdmin = {"Cmd.Switch.CancelAdmin", "DCACHE: zov_smlSet failed to release Admin mode\n"};
constexpr Command kOpenEdit = {"Cmd.Cim.EditConfig", "DCACHE: zov_smlSet failed for Config Edit\n"};
constexpr Command kSaveEdit = {"Cmd.Cim.SaveConfig", "DCACHE: zov_smlSet failed for Config Save\n"};
constexpr Command kCancelEdit = {"Cmd.Cim.CancelConfig", "DCACHE: zov_smlSet failed for Config Cancel\n"};
constexpr Command kBackup = {"Cmd.Switch.BackupConfig", "DCACHE: zov_smlSet failed to backup config\n"};
constexpr Command kRestore = {"Cmd.Switch.RestoreConfig", "DCACHE: zov_smlSet failed to restore config\n"};

/// The switch library's result.
int32_t run(const Command &command) {
    const int32_t result = zov_smlSetV(hSwitch, "", "%s", command.key);
    if (result != 0)
        cim_log(CIM_LOG_INFO, "%s", command.failure);
    return result;
}

/// Ends an edit. Admin mode goes back with it if this process holds it; it stays when the edit could not be ended.
int endEdit(const Command &command) {
    if (run(command) != 0)
        return -1;
    return releaseAdminMode();
}

} // namespace

extern "C" {

int reqAdminMode(void) {
    if (run(kTakeAdmin) != 0)
        return -1;
    adminModeHeld = true;
    return 0;
}

int releaseAdminMode(void) {
    if (!adminModeHeld)
        return 0;
    if (run(kGiveAdmin) != 0)
        return -1;
    adminModeHeld = false;
    return 0;
}

int getConfigEditMode(void) {
    if (reqAdminMode() != 0)
        return -1;
    return run(kOpenEdit) == 0 ? 0 : -1; // refused: admin mode stays, for the caller to give back
}

int saveConfigEdit(void) {
    return endEdit(kSaveEdit);
}

int cancelConfigEdit(void) {
    return endEdit(kCancelEdit);
}

int backupConfig(void) {
    return run(kBackup);
}

int restoreConfig(void) {
    return run(kRestore);
}

} // extern "C"
