/*
 * The C interface of the switch's management library, zovlib.
 *
 * This header only declares what a switch library supplies; the cache calls it and the simulated
 * switch implements it. It serves C and C++.
 *
 * Results are int32_t with 0 for success, unless a handle or a count is returned. A call that returns
 * a handle returns null for "none" and for "failed"; a call that returns a count returns the count.
 * Names have at most 64 characters and a terminating NUL. All calls are synchronous, may be made from
 * any thread, and none of them waits for a running notification callback.
 *
 * What a caller may NOT rely on: a switch library may crash on a null handle, may write into any
 * argument that is not const, may leave an out argument untouched when it fails, may fail at any call,
 * and may leave values and statuses as they were.
 */
#ifndef PLATFORM_ZOVLIB_H
#define PLATFORM_ZOVLIB_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* The enumerations can hold every int32_t: a switch may send numbers that have no name here. */
#ifdef __cplusplus
#define ZOV_ENUM_TYPE : int32_t
#define ZOV_ENUM_RANGE(prefix)
#else
#define ZOV_ENUM_TYPE
#define ZOV_ENUM_RANGE(prefix) prefix##_INT32_MIN = -2147483647 - 1, prefix##_INT32_MAX = 2147483647
#endif

/* ---- connection and notifications ---------------------------------------------------------------- */

typedef uint32_t zov_handle_t; /* a connection; 0 = none */

typedef enum zov_eventcode_e ZOV_ENUM_TYPE {
    ZOV_EVENT_FABRIC_CHANGE = 1,
    ZOV_EVENT_SWITCHTOPO_CHANGE = 2,
    ZOV_EVENT_ZONE_CHANGE = 3,
    ZOV_EVENT_ZONE_MODE_CHANGE = 4,
    ZOV_EVENT_ZONEDB_MERGE = 5,
    ZOV_EVENT_NS_CHANGE = 6,
    ZOV_EVENT_LSDB_CHANGE = 7,
    ZOV_EVENT_SWITCH_ATTR_CHANGE = 8,
    ZOV_EVENT_SWITCH_CFG_CHANGE = 9,
    ZOV_EVENT_SWITCH_RESET = 10,
    ZOV_EVENT_CHASSIS_ATTR_CHANGE = 11,
    ZOV_EVENT_BLADE_ATTR_CHANGE = 12,
    ZOV_EVENT_PORT_STATE_CHANGE = 13,
    ZOV_EVENT_PORT_ATTR_CHANGE = 14,
    ZOV_EVENT_PORT_CFG_CHANGE = 15,
    ZOV_EVENT_NETWORK_CFG_CHANGE = 16,
    ZOV_EVENT_SNMP_CFG_CHANGE = 17,
    ZOV_EVENT_PORT_TEST_COMPLETE = 19,
    ZOV_EVENT_PORT_TOPO_CHANGE = 20,
    ZOV_EVENT_ZONEDB_MERGE_FAILED = 21,
    ZOV_EVENT_EPORT_CONVERGE_ALARM = 22,
    ZOV_EVENT_SWITCH_ACCESS_ALARM = 23,
    ZOV_EVENT_FABRIC_NS_CHANGE = 24,
    ZOV_EVENT_GENERIC_ALARM = 25,
    ZOV_EVENT_GENERIC_USER_EVENT = 26,
    ZOV_EVENT_BLADE_CFG_CHANGE = 27,
    ZOV_EVENT_BLADE_INSERTED = 28,
    ZOV_EVENT_BLADE_REMOVED = 29,
    ZOV_EVENT_PORT_COUNTERS_ZERO = 30,
    ZOV_EVENT_SWITCH_OPERCHANGE = 31,
    ZOV_EVENT_SWITCH_STATE_CHANGE = 32,
    ZOV_EVENT_CHASSIS_OPERCHANGE = 33,
    ZOV_EVENT_PWR_SPLY_BAD_ALARM = 34,
    ZOV_EVENT_PWR_SPLY_OK_ALARM = 35,
    ZOV_EVENT_FAN_BAD_ALARM = 36,
    ZOV_EVENT_FAN_OK_ALARM = 37,
    ZOV_EVENT_BLADE_OPERCHANGE = 38,
    ZOV_EVENT_BLADE_STATE_CHANGE = 39,
    ZOV_EVENT_OVERHEAT_ALARM = 40,
    ZOV_EVENT_OVERWARM_ALARM = 41,
    ZOV_EVENT_TEMP_OK_ALARM = 42,
    ZOV_EVENT_SECURITY_CHANGE = 43,
    ZOV_EVENT_SECURITY_CFG_CHANGE = 44,
    ZOV_EVENT_FDMI_CLEARED = 45,
    ZOV_EVENT_FDMI_HBA_ADD = 46,
    ZOV_EVENT_FDMI_HBA_MODIFY = 47,
    ZOV_EVENT_FDMI_HBA_DELETE = 48,
    ZOV_EVENT_DOMAINID_CHANGE = 49,
    ZOV_EVENT_USER_ACL_CHANGE = 50,
    ZOV_EVENT_TIMEZONE_CHANGE = 51,
    ZOV_EVENT_FEATURE_CHANGE = 52,
    ZOV_EVENT_CLI_COMMAND_DONE = 53,
    ZOV_EVENT_CREATE_SUPPORT_DONE = 54,
    ZOV_EVENT_MEDIA_SPEED_ALARM = 55,
    ZOV_EVENT_RADIUS_CFG_CHANGE = 56,
    ZOV_EVENT_SERVICES_CFG_CHANGE = 57,
    ZOV_EVENT_PORT_TEST_COMPLETE_2 = 60,
    ZOV_EVENT_BLADE_TEST_COMPLETE = 61,
    ZOV_EVENT_SWITCH_TEST_COMPLETE = 62,
    ZOV_EVENT_CPU_SWITCHOVER = 66,
    ZOV_EVENT_SWITCH_FAULT = 67,
    ZOV_EVENT_IP_ADDRESS_CHANGE = 68,
    ZOV_EVENT_IPV6_ADDRESS_CHANGE = 69,
    ZOV_EVENT_USERLOG_UPDATE = 70,
    ZOV_EVENT_USER_PASSWORD_CHANGED = 72,
    ZOV_EVENT_USER_LOGIN_FAILURE = 73,
    ZOV_EVENT_CIM_CFG_CHANGE = 78,
    ZOV_EVENT_NS_ENTRYADDED = 79,
    ZOV_EVENT_NS_ENTRYDELETED = 80,
    ZOV_EVENT_BLADE_STATUS_CHANGE = 81,
    ZOV_EVENT_SWITCH_FAULT_CHANGE = 82,
    ZOV_EVENT_CONNECTION_LOST = 253,
    ZOV_EVENT_CONNECTION_RESTORED = 254,
    ZOV_ENUM_RANGE(ZOV_EVENT)
} zov_eventcode_e;

typedef struct zov_eventsource_s {
    int32_t number[3];
} zov_eventsource_s; /* 12 bytes */

typedef struct zov_event_s {
    int32_t code;
    zov_eventsource_s source;
    char text[1396];
    int32_t rest; /* the switch library's own */
} zov_event_s;    /* 1416 bytes */

typedef struct zov_eventreg_s {
    int32_t code;
    int32_t result; /* out: 0 when this code was registered */
} zov_eventreg_s;

/* Called on a thread of the switch library. The event belongs to the library and is gone afterwards. */
typedef void (*zov_eventcallback_t)(void *handle, zov_event_s *event, void *context);

int32_t zov_IPConnect(const char *host, const char *client, const char *text, zov_handle_t *handle);
int32_t zov_enRegisterForEventList(zov_handle_t handle, zov_eventcallback_t callback, void *context,
                                   zov_eventreg_s *list, int32_t count);
int32_t zov_libFreeMemory(void *memory); /* takes whatever malloc() or the library allocated */

/* ---- SML: the switch as a tree of keys ----------------------------------------------------------- */

typedef struct SmlMessage {
    char key[256];
    char value[256];
    int32_t status; /* 0 when the library handled this key */
} SmlMessage;       /* 516 bytes */

int32_t zov_smlGet(zov_handle_t handle, const char *key, char **value,
                   uint32_t *size); /* caller frees value with zov_libFreeMemory */
int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count);
int32_t zov_smlSet(zov_handle_t handle, const char *key, char *value); /* may write into value */
int32_t zov_smlSetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count);

/* ---- zoning -------------------------------------------------------------------------------------- */

typedef struct zov_fzs_zoninglimits_s {
    int32_t zonesets;
    int32_t zones;
    int32_t members;
    int32_t zonesPerZoneset;
    int32_t membersPerZone;
    int32_t aliases;
    int32_t membersPerAlias;
} zov_fzs_zoninglimits_s;

typedef struct zov_fzs_memberid_s {
    union {
        uint32_t word[17];
        uint8_t byte[68];
    } u;
} zov_fzs_memberid_s; /* 68 bytes */

typedef enum zov_fzs_zonemember_type_e ZOV_ENUM_TYPE {
    ZOV_ZMT_UNKNOWN = 0,
    ZOV_ZMT_PORTWWN = 1,    /* attribute: the 8 name bytes at 0 */
    ZOV_ZMT_DOMAINPORT = 2, /* attribute: domain and port as 32-bit host-order words at 0 and 4 */
    ZOV_ZMT_FCADDRESS = 3,  /* attribute: three bytes at 0 */
    ZOV_ZMT_NODENAME = 4,
    ZOV_ZMT_ALIAS = 5, /* attribute: NUL-terminated alias name at 0 */
    ZOV_ENUM_RANGE(ZOV_ZMT)
} zov_fzs_zonemember_type_e;

typedef enum zov_fzs_zone_type_e ZOV_ENUM_TYPE {
    ZOV_ZT_INVALID = 0,
    ZOV_ZT_SOFT = 1,
    ZOV_ZT_HARDVPF = 2,
    ZOV_ZT_HARDACL = 3,
    ZOV_ENUM_RANGE(ZOV_ZT)
} zov_fzs_zone_type_e;

/* The zoning database of the switch. Fetched zone sets belong to the caller. */
int32_t zov_fzsGetZoningLimitations(zov_handle_t handle, zov_fzs_zoninglimits_s *limits);
int32_t zov_fzsGetActiveZonesetName(zov_handle_t handle, char *name); /* 65 bytes */
int32_t zov_fzsGetActiveZoneset(zov_handle_t handle, void **zoneset);
int32_t
zov_fzsGetZonesetList(zov_handle_t handle, int32_t *count,
                      char **names); /* count fields of 65 bytes, owned by the library, valid until the next call */
int32_t zov_fzsGetZoneset(zov_handle_t handle, const char *name, void **zoneset);
int32_t zov_fzsGetAllZonesAndAliases(zov_handle_t handle, const char *newName, void **zoneset);

/* Zone sets. */
int32_t zov_ZonesetTestName(const char *name); /* 0 = a valid name */
void *zov_ZonesetCreate(const char *name);
int32_t zov_ZonesetDestroy(void *zoneset); /* with its zones, aliases and members */
int32_t zov_ZonesetGetName(void *zoneset, char *name);
int32_t zov_ZonesetGetZoneCount(void *zoneset);
int32_t zov_ZonesetGetAliasCount(void *zoneset);
void *zov_ZonesetListZones(void *zoneset, int32_t index);    /* borrowed */
void *zov_ZonesetListAliases(void *zoneset, int32_t index);  /* borrowed */
void *zov_ZonesetFindZone(void *zoneset, const char *name);  /* borrowed */
void *zov_ZonesetFindAlias(void *zoneset, const char *name); /* borrowed */
int32_t zov_ZonesetAddZone(void *zoneset, void *zone);    /* success: the set owns it; failure: the caller still does */
int32_t zov_ZonesetAddAlias(void *zoneset, void *alias);  /* likewise */
int32_t zov_ZonesetRemoveZone(void *zoneset, void *zone); /* unlinks and destroys */
int32_t zov_ZonesetRemoveAlias(void *zoneset, void *alias); /* unlinks and destroys */

/* Zones. */
void *zov_ZoneCreate(const char *name);
void *zov_ZoneCreateCopy(void *zone, const char *newName); /* deep, unlinked, owned by the caller */
int32_t zov_ZoneDestroy(void *zone);
int32_t zov_ZoneSetName(void *zone, const char *name);
int32_t zov_ZoneGetName(void *zone, char *name);
int32_t zov_ZoneSetType(void *zone, zov_fzs_zone_type_e type);
int32_t zov_ZoneGetType(void *zone, zov_fzs_zone_type_e *type);
int32_t zov_ZoneGetMemberCount(void *zone);
void *zov_ZoneListMembers(void *zone, int32_t index); /* borrowed */
void *zov_ZoneFindMember(void *zone, zov_fzs_zonemember_type_e type,
                         zov_fzs_memberid_s *id);    /* may write into the identifier */
int32_t zov_ZoneAddMember(void *zone, void *member); /* success: the zone owns it */
int32_t zov_ZoneDeleteMember(void *zone,
                             void **member); /* unlinks, destroys, sets *member null; on failure leaves it */

/* Zone aliases. */
void *zov_ZoneAliasCreate(const char *name);
int32_t zov_ZoneAliasDestroy(void *alias);
int32_t zov_ZoneAliasGetName(void *alias, char *name);
int32_t zov_ZoneAliasGetMemberCount(void *alias);
void *zov_ZoneAliasListMembers(void *alias, int32_t index); /* borrowed */
void *zov_ZoneAliasFindMember(void *alias, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id);
int32_t zov_ZoneAliasAddMember(void *alias, void *member);
int32_t zov_ZoneAliasDeleteMember(void *alias, void **member);

/* Members of zones and aliases. */
void *zov_MemberCreate(zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id);
int32_t zov_MemberDestroy(void *member);
int32_t zov_MemberGetAttr(void *member, zov_fzs_zonemember_type_e *type,
                          void *attribute); /* attribute: at least 68 bytes */
int32_t zov_strToMemberIdentifier(const char *text, zov_fzs_zonemember_type_e type, zov_fzs_memberid_s *id);

#pragma GCC visibility pop

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* PLATFORM_ZOVLIB_H */
