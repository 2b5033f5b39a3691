// The access layer and the log as clients link against them.
#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/swlib/ScriptedSwitch.h"

extern "C" int32_t use_the_access_layer_from_c();

namespace {

// Signatures that clients were compiled with.
static_assert(std::is_same_v<decltype(zov_smlAllocMsgGroup), SmlMsgGroup *(uint32_t)>);
static_assert(std::is_same_v<decltype(zov_smlResetMsgGroup), void(SmlMsgGroup *)>);
static_assert(std::is_same_v<decltype(zov_smlGetMsgGroup), int32_t(SmlMsgGroup *)>);
static_assert(std::is_same_v<decltype(zov_smlSetMsgGroup), int32_t(SmlMsgGroup *)>);
static_assert(std::is_same_v<decltype(zov_smlGetResult), int32_t(SmlMsgGroup *, int32_t, char **)>);
static_assert(std::is_same_v<decltype(zov_smlFreeMsgGroup), void(SmlMsgGroup *)>);
static_assert(std::is_invocable_r_v<int, decltype(isErrors), SmlMessage *, int32_t>);
static_assert(std::is_same_v<decltype(zov_smlBatchSet), int32_t(zov_handle_t, SmlMessage *, int32_t)>);
static_assert(std::is_same_v<decltype(zov_smlBatchCimSet), int32_t(zov_handle_t, SmlMessage *, int32_t)>);
static_assert(std::is_same_v<decltype(hSwitch), zov_handle_t>);
static_assert(std::is_same_v<decltype(SmlMsgGroup::count), int32_t>);
static_assert(std::is_same_v<decltype(SmlMsgGroup::capacity), int32_t>);
static_assert(std::is_same_v<decltype(SmlMsgGroup::messages), SmlMessage *>);
static_assert(std::is_same_v<decltype(get_Switch_SSH_Enabled), char *()>);
static_assert(std::is_same_v<decltype(get_Product_Info), int32_t(char **, char **, char **, char **)>);
static_assert(std::is_same_v<decltype(reqAdminMode), int()>);
static_assert(std::is_same_v<decltype(restoreConfig), int()>);
static_assert(std::is_same_v<decltype(get_next_lsdb_record), char *(const char *, char *)>);
static_assert(std::is_same_v<decltype(get_lsdb_record_link_count), int(const char *)>);
static_assert(std::is_same_v<decltype(ZOV_WWNToStr), char *(char *, const unsigned char *)>);
static_assert(std::is_same_v<decltype(byteToStr), char *(char *, const unsigned char *, int)>);
static_assert(std::is_same_v<decltype(formatMemberId),
                             void(const zov_fzs_zonemember_type_e *, const zov_fzs_memberid_s *, char *, int)>);
static_assert(std::is_same_v<decltype(ZoneMemberToString), int(char *, void *)>);
static_assert(std::is_same_v<decltype(get_Active_ZoneSet), void(char *)>);
static_assert(std::is_same_v<decltype(toUpper), char *(char *)>);
static_assert(std::is_same_v<decltype(zov_smlCnvFromZOVZoneType), const char *(zov_fzs_zone_type_e)>);
// (Comparing types would lose the attribute that lets the compiler check formats.)
[[maybe_unused]] int (*const add)(SmlMsgGroup *, const char *, ...) = zov_smlAddMsgGroupV;
[[maybe_unused]] int32_t (*const get)(zov_handle_t, char **, uint32_t *, const char *, ...) = zov_smlGetV;
[[maybe_unused]] int32_t (*const set)(zov_handle_t, const char *, const char *, ...) = zov_smlSetV;
[[maybe_unused]] void (*const log)(unsigned int, const char *, ...) = cim_log;
[[maybe_unused]] void (*const client_log)(const char *, ...) = DataCacheLogger;

/// The file that a symbol stands in, empty for none.
std::string fileOf(void *symbol) {
    Dl_info info = {};
    return symbol != nullptr && dladdr(symbol, &info) != 0 ? info.dli_fname : "";
}

/// The library, found by what only it has.
void *openLibrary() {
    return dlopen(fileOf(dlsym(RTLD_DEFAULT, "zov_smlBatchSet")).c_str(), RTLD_LAZY | RTLD_NOLOAD);
}

TEST(Surface, EveryOperationIsExportedUnderItsPlainName) {
    void *library = openLibrary();
    ASSERT_NE(library, nullptr);
    for (const char *name : {"zov_smlAllocMsgGroup",
                             "zov_smlAddMsgGroupV",
                             "zov_smlResetMsgGroup",
                             "zov_smlGetMsgGroup",
                             "zov_smlSetMsgGroup",
                             "zov_smlGetResult",
                             "zov_smlFreeMsgGroup",
                             "isErrors",
                             "zov_smlGetV",
                             "zov_smlSetV",
                             "zov_smlBatchSet",
                             "zov_smlBatchCimSet",
                             "get_Switch_Telnet_Enabled",
                             "get_Switch_SSH_Enabled",
                             "get_Switch_EmbeddedGUI_Enabled",
                             "get_Switch_SNMPReadCommunity",
                             "is_Switch_SSLEnabled",
                             "is_Switch_SNMP_Enabled",
                             "get_Switch_IPv6Address",
                             "get_Switch_IPv6Feature",
                             "get_Switch_IPv6Enable",
                             "get_Switch_IPv4Address",
                             "get_Switch_IPv4Feature",
                             "get_Switch_IPv4Enable",
                             "get_Switch_PlanarPartNum",
                             "get_Switch_ChassisSerialNum",
                             "get_Switch_ChassisPartNum",
                             "get_Switch_ActiveVer",
                             "get_Switch_OemActiveVer",
                             "get_Switch_Brand_Name",
                             "get_Switch_Type",
                             "get_Switch_Domain_ID",
                             "get_Principal_Switch_World_Wide_Name",
                             "get_Local_Switch_World_Wide_Name",
                             "get_Product_Info",
                             "reqAdminMode",
                             "releaseAdminMode",
                             "getConfigEditMode",
                             "saveConfigEdit",
                             "cancelConfigEdit",
                             "backupConfig",
                             "restoreConfig",
                             "get_first_lsdb_record",
                             "get_next_lsdb_record",
                             "get_lsdb_record_link_count",
                             "get_lsdb_record_link_local_information",
                             "get_lsdb_record_link_remote_information",
                             "get_first_attached_port",
                             "get_next_attached_port",
                             "ZOV_WWNToStr",
                             "byteToStr",
                             "formatMemberId",
                             "ZoneMemberToString",
                             "get_Active_ZoneSet",
                             "toUpper",
                             "zov_smlCnvFromZOVZoneType",
                             "hSwitch",
                             "cim_log",
                             "DataCacheLogger"})
        EXPECT_NE(fileOf(dlsym(library, name)).find("libdatacache.so"), std::string::npos) << name;
    dlclose(library);
}

/// The names that the dynamic linker knows of the library, mangled or not, one after the other.
std::string dynamicNames() {
    void *library = openLibrary();
    link_map *map = nullptr;
    if (library == nullptr || dlinfo(library, RTLD_DI_LINKMAP, static_cast<void *>(&map)) != 0)
        return "";
    const char *names = nullptr;
    size_t size = 0;
    for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_STRTAB)
            names = reinterpret_cast<const char *>(entry->d_un.d_ptr); // NOLINT(performance-no-int-to-ptr): an address
        if (entry->d_tag == DT_STRSZ)
            size = entry->d_un.d_val;
    }
    std::string result(names, size);
    dlclose(library);
    return result;
}

TEST(Surface, WhatIsInternalIsNotExported) {
    const std::string names = dynamicNames();
    EXPECT_NE(names.find("zov_smlBatchCimSet"), std::string::npos);
    for (const char *name : {"logWrite", "openLogFiles", "adminModeHeld", "AccessLock"})
        EXPECT_EQ(names.find(name), std::string::npos) << name;
}

TEST(Surface, TheConnectionIsNoneAtFirst) {
    EXPECT_EQ(hSwitch, 0U);
}

TEST(Surface, AClientInCUsesIt) {
    hSwitch = 5;
    scripted::getBatch = scripted::setBatch = [](zov_handle_t handle, SmlMessage *messages, int32_t count) {
        for (int32_t i = 0; i < count; ++i)
            messages[i].status = 0;
        return handle == 5 && count == 2 ? 0 : 1;
    };
    scripted::get = [](zov_handle_t, const char *key, char **value, uint32_t *size) {
        *value = strdup(key);
        *size = static_cast<uint32_t>(std::strlen(key) + 1);
        return 0;
    };
    scripted::set = [](zov_handle_t handle, const char *, char *) { return handle == 5 ? 0 : 1; };
    EXPECT_EQ(use_the_access_layer_from_c(), 0) << "the step that went wrong";
    const auto linesOf = [](const char *file) { // the client's own, and those of its own keys
        std::vector<std::string> lines = support::messagesIn(file);
        const auto isOther = [](const std::string &line) {
            return line.find("Key'") == std::string::npos && line.find("from C") == std::string::npos;
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isOther), lines.end());
        return lines;
    };
    const std::vector<std::string> lines = {"DCACHE: zov_smlGet 'Oper.Key'", "DCACHE: zov_smlSet 'Config.Key'",
                                            "from C 1", "from C 2", "from C 3"};
    EXPECT_EQ(linesOf(support::kMainLog), lines);
    EXPECT_EQ(linesOf(support::kCriticalLog), std::vector<std::string>{"from C 2"});
}

} // namespace
