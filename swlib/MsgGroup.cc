#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "swlib/messages.h"

namespace {

constexpr int32_t kGrowth = 25;
constexpr int32_t kEndOfList = 0x18; // a walk along a list ends with this status: nothing to report
constexpr int32_t kMaxMessages =
    static_cast<int32_t>(std::numeric_limits<int32_t>::max() / static_cast<int32_t>(sizeof(SmlMessage)));

/// Makes room for kGrowth more messages; without memory the group is given up.
bool grow(SmlMsgGroup *group) {
    const bool fits = group->capacity <= kMaxMessages - kGrowth;
    const auto capacity = static_cast<std::size_t>(group->capacity) + kGrowth;
    void *messages = fits ? realloc(group->messages, capacity * sizeof(SmlMessage)) : nullptr;
    group->messages = static_cast<SmlMessage *>(messages);
    if (messages == nullptr) {
        // The old array is deliberately left behind: callers may still hold value texts that point into it.
        free(group);
        return false;
    }
    group->capacity += kGrowth;
    return true;
}

using Exchange = int32_t (*)(zov_handle_t, SmlMessage *, int32_t);

int32_t exchangeGroup(Exchange exchange, SmlMsgGroup *group) {
    if (group == nullptr)
        return 1;
    const int32_t result = exchange(hSwitch, group->messages, group->count);
    if (group->count < 1)
        return result;
    swlib::terminate(group->messages, group->count);
    return isErrors(group->messages, group->count) != 0 ? 1 : result;
}

} // namespace

extern "C" {

SmlMsgGroup *zov_smlAllocMsgGroup(uint32_t capacity) {
    if (capacity > static_cast<uint32_t>(kMaxMessages))
        return nullptr;
    auto *group = static_cast<SmlMsgGroup *>(malloc(sizeof(SmlMsgGroup)));
    if (group == nullptr)
        return nullptr;
    group->messages = static_cast<SmlMessage *>(malloc(capacity * sizeof(SmlMessage)));
    if (group->messages == nullptr) {
        free(group);
        return nullptr;
    }
    group->capacity = static_cast<int32_t>(capacity);
    group->count = 0;
    return group;
}

int zov_smlAddMsgGroupV(SmlMsgGroup *group, const char *format, ...) {
    if (group == nullptr || format == nullptr)
        return 1;
    if (group->count == group->capacity && !grow(group))
        return 1;
    SmlMessage &message = group->messages[group->count];
    va_list args;
    va_start(args, format);
    vsnprintf(message.key, sizeof(message.key), format, args);
    va_end(args);
    ++group->count;
    return 0;
}

void zov_smlResetMsgGroup(SmlMsgGroup *group) {
    if (group != nullptr)
        group->count = 0;
}

int32_t zov_smlGetMsgGroup(SmlMsgGroup *group) {
    return exchangeGroup(zov_smlGetBatch, group);
}

int32_t zov_smlSetMsgGroup(SmlMsgGroup *group) {
    return exchangeGroup(zov_smlSetBatch, group);
}

int32_t zov_smlGetResult(SmlMsgGroup *group, int32_t index, char **value) {
    if (group == nullptr || value == nullptr || index < 0 || group->count <= index)
        return 1;
    *value = group->messages[index].value;
    return group->messages[index].status;
}

void zov_smlFreeMsgGroup(SmlMsgGroup *group) {
    if (group == nullptr)
        return;
    free(group->messages);
    free(group);
}

int isErrors(const SmlMessage *messages, int32_t count) {
    if (messages == nullptr)
        return 0;
    for (int32_t i = 0; i < count; ++i) {
        const SmlMessage &message = messages[i];
        if (message.status == 0)
            continue;
        if (message.status != kEndOfList)
            cim_log(CIM_LOG_INFO, "DCACHE: sml command='%.*s', smlerror='0x%x'\n",
                    static_cast<int>(sizeof(message.key)), message.key, static_cast<unsigned int>(message.status));
        return 1;
    }
    return 0;
}

} // extern "C"
