/* A client in C: it must compile against the headers as C, and link and run against the library. */
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"

int32_t use_the_access_layer_from_c(void);

/* Walks end where the switch refuses, and texts are made without it. */
static int use_walks_and_texts(void) {
    char text[256] = "x";
    const unsigned char name[8] = {0x10, 0, 0, 0, 0xC0, 0xDD, 0, 1};
    const zov_fzs_zonemember_type_e type = ZOV_ZMT_FCADDRESS;
    zov_fzs_memberid_s id = {{{0}}};
    if (get_first_lsdb_record(text) || get_next_lsdb_record("1", text) || get_lsdb_record_link_count("1") != -1 ||
        get_lsdb_record_link_local_information("1", "0", text) ||
        get_lsdb_record_link_remote_information("1", "0", text) || get_first_attached_port("1", text) ||
        get_next_attached_port("1", "010000", text))
        return 0;
    formatMemberId(&type, &id, text, 0);
    get_Active_ZoneSet(toUpper(byteToStr(ZOV_WWNToStr(text, name), name, 8)));
    return ZoneMemberToString(text, 0) == 0 && zov_smlCnvFromZOVZoneType(ZOV_ZT_SOFT)[0] == 'S';
}

/* Settings are texts, what the product is four of them, and a session ends as it began. */
static int use_settings_and_sessions(void) {
    char *texts[4] = {0, 0, 0, 0};
    char *type = get_Switch_Type();
    int i;
    if (type == 0 || zov_libFreeMemory(type) != 0)
        return 0;
    if (get_Product_Info(&texts[0], &texts[1], &texts[2], &texts[3]) != 0)
        return 0;
    for (i = 0; i < 4; ++i)
        zov_libFreeMemory(texts[i]);
    return reqAdminMode() == 0 && releaseAdminMode() == 0 && getConfigEditMode() == 0 && cancelConfigEdit() == 0 &&
           getConfigEditMode() == 0 && saveConfigEdit() == 0 && backupConfig() == 0 && restoreConfig() == 0;
}

/* Uses the operations once; the number of the first step that went wrong, 0 when all went well. */
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
    if (!use_walks_and_texts())
        return 10;
    if (!use_settings_and_sessions())
        return 11;
    cim_log(CIM_LOG_INFO, "%s %d\n", "from C", 1);
    cim_log(CIM_LOG_CRIT, "from C 2\n");
    DataCacheLogger("from C %d\n", 3);
    return 0;
}
