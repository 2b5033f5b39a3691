#include <array>
#include <cstddef>

#include "swlib/MERO_Zov_Lib.h"

namespace {

constexpr const char *kTakeAdmin = "Cmd.Switch.ReqAdmin";
constexpr const char *kGiveAdmin = "Cmd.Switch.RelAdmin";

/// The commands of one kind of edit session.
struct EditCommands {
    const char *open;
    const char *save;
    const char *activate; // null when saving is enough
    const char *cancel;
};

constexpr EditCommands kSwitchEdit = {"Cmd.Switch.EditConfig", "Cmd.Switch.SaveConfig", "Cmd.Switch.ActConfig",
                                      "Cmd.Switch.CancelConfig"};
constexpr EditCommands kCimEdit = {"Cmd.Cim.EditConfig", "Cmd.Cim.SaveConfig", nullptr, "Cmd.Cim.CancelConfig"};

int32_t command(zov_handle_t handle, const char *key) {
    std::array<char, sizeof(SmlMessage::value)> scratch{}; // commands have no value, but the call may write into one
    return zov_smlSet(handle, key, scratch.data());
}

/// The result that counts: later ones outrank earlier ones, success outranks nothing.
int32_t outranking(int32_t earlier, int32_t later) {
    return later != 0 ? later : earlier;
}

/// The edit between taking and giving back admin mode.
int32_t edit(zov_handle_t handle, SmlMessage *messages, int32_t count, const EditCommands &commands) {
    int32_t result = command(handle, commands.open);
    if (result != 0)
        return result; // nothing is open that could be cancelled
    result = zov_smlSetBatch(handle, messages, count);
    if (result == 0)
        result = command(handle, commands.save);
    if (result != 0)
        return outranking(result, command(handle, commands.cancel));
    return commands.activate != nullptr ? command(handle, commands.activate) : 0;
}

int32_t batchSet(zov_handle_t handle, SmlMessage *messages, int32_t count, const EditCommands &commands) {
    if (messages == nullptr && count > 0)
        return 1;
    const int32_t admin = command(handle, kTakeAdmin);
    if (admin != 0)
        return admin;
    const int32_t result = edit(handle, messages, count, commands);
    return outranking(result, command(handle, kGiveAdmin));
}

} // namespace

extern "C" {

int32_t zov_smlBatchSet(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return batchSet(handle, messages, count, kSwitchEdit);
}

int32_t zov_smlBatchCimSet(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return batchSet(handle, messages, count, kCimEdit);
}

} // extern "C"
