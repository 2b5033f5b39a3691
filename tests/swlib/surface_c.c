/* A client in C: it must compile against the headers as C, and link and run against the library. */
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"

int32_t use_the_access_layer_from_c(void);

/* Uses every operation once; the number of the first step that went wrong, 0 when all went well. */
int32_t use_the_access_layer_from_c(void) {
    SmlMsgGroup *group = zov_smlAllocMsgGroup(1u);
    char *text = 0;
    uint32_t size = 0;
    if (group == 0 || group->count != 0 || group->capacity != 1)
        return 1;
    if (zov_smlAddMsgGroupV(group, "Oper.%s.%d", "First", 1) != 0 || zov_smlAddMsgGroupV(group, "Second") != 0)
        return 2;
    if (zov_smlGetMsgGroup(group) != 0 || zov_smlSetMsgGroup(group) != 0)
        return 3;
    if (zov_smlGetResult(group, 1, &text) != 0 || text != group->messages[1].value)
        return 4;
    if (isErrors(group->messages, group->count) != 0)
        return 5;
    if (zov_smlBatchSet(hSwitch, group->messages, group->count) != 0 ||
        zov_smlBatchCimSet(hSwitch, group->messages, group->count) != 0)
        return 6;
    zov_smlResetMsgGroup(group);
    if (group->count != 0)
        return 7;
    zov_smlFreeMsgGroup(group);
    text = 0;
    if (zov_smlGetV(hSwitch, &text, &size, "Oper.%s", "Key") != 0 || zov_libFreeMemory(text) != 0)
        return 8;
    if (zov_smlSetV(hSwitch, "value", "Config.%s", "Key") != 0)
        return 9;
    cim_log(CIM_LOG_INFO, "%s %d\n", "from C", 1);
    cim_log(CIM_LOG_CRIT, "from C 2\n");
    DataCacheLogger("from C %d\n", 3);
    return 0;
}
