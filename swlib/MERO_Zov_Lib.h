/*
 * The access layer: how the cache, and the provider that loads it, talk SML to the switch.
 *
 * The switch is a tree of SML keys, dotted texts such as "Oper.Switch.WWN". A read gets keys; a write or a
 * command sets keys, a command carrying its arguments inside its key. This layer adds to the switch library's
 * own calls: growable batches of messages, the scan that tells whether a batch failed, single gets and
 * sets with printf-style keys, the switch's settings, configuration sessions, and walks over the fabric.
 *
 * Thread-safety: the layer has no locks. Different threads may use it at the same time on different
 * groups and messages; one group or array belongs to one thread at a time.
 *
 * Errors: results are the switch library's, 0 for success. Nothing here throws. What is logged stands
 * with each function. A null group, format or out pointer, and a null array of more than no messages, is refused with
 * result 1; isErrors() finds no errors in one, and functions that hand out a text hand out null.
 *
 * Serves C and C++.
 */
#ifndef SWLIB_MERO_ZOV_LIB_H
#define SWLIB_MERO_ZOV_LIB_H

#include <stdint.h>

#include "foundation/Export.h"
#include "platform/zovlib.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The open connection to the switch; 0 until the cache has connected (DataCache::init()). Functions without
   a handle argument use it. Written once, by the cache. */
extern DATACACHE_EXPORT zov_handle_t hSwitch;

/* ---- message groups: batches that grow ----------------------------------------------------------- */

typedef struct SmlMsgGroup {
    int32_t count;    /* messages added so far */
    int32_t capacity; /* messages that fit */
    SmlMessage *messages;
} SmlMsgGroup;

/* A new empty group with room for `capacity` messages (at least the first add of a group made with 0 grows it);
   null without memory. Free it with zov_smlFreeMsgGroup(). The messages are not cleared. */
DATACACHE_EXPORT SmlMsgGroup *zov_smlAllocMsgGroup(uint32_t capacity);

/* Adds a message with the formatted key, cut to 255 characters; its value and status stay as they happen to
   be in the block. A full group grows by 25. Returns 0, or 1 when the group could not grow: then the group
   is gone, and the caller must neither use nor free it. (A null format is refused with 1 too, and leaves the group.) */
DATACACHE_EXPORT int zov_smlAddMsgGroupV(SmlMsgGroup *group, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

/* Empties the group; its room is kept. */
DATACACHE_EXPORT void zov_smlResetMsgGroup(SmlMsgGroup *group);

/* Reads, or sets, all keys of the group in one exchange. 0 when all were handled; 1 when some key failed (the
   first one is logged as isErrors() says); else the switch library's result of the exchange. */
DATACACHE_EXPORT int32_t zov_smlGetMsgGroup(SmlMsgGroup *group);
DATACACHE_EXPORT int32_t zov_smlSetMsgGroup(SmlMsgGroup *group);

/* Status of message `index` (from 0), and through `value` its value text, which belongs to the group and must
   not be used unless the status is 0. An index outside the group returns 1 and leaves `value` as it was. */
DATACACHE_EXPORT int32_t zov_smlGetResult(SmlMsgGroup *group, int32_t index, char **value);

/* Frees the group; null is allowed. */
DATACACHE_EXPORT void zov_smlFreeMsgGroup(SmlMsgGroup *group);

/* 1 if any of `count` messages has a non-zero status, else 0. The first of those is logged at level 2 with key
   and status, unless its status is 24, the switch's normal end of a list. */
DATACACHE_EXPORT int isErrors(const SmlMessage *messages, int32_t count);

/* ---- single keys --------------------------------------------------------------------------------- */

/* Reads the formatted key (cut to 255 characters). On success `*value` is a text of `*size` bytes allocated by the
   switch library, which the caller frees with zov_libFreeMemory(). Logs the key at level 2, and a failure at
   level 4, unless the result is 103: the switch does not have this attribute. */
DATACACHE_EXPORT int32_t zov_smlGetV(zov_handle_t handle, char **value, uint32_t *size, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

/* Sets the formatted key (cut to 255 characters), or runs a command: commands take an empty value. `value` is
   not changed; null counts as empty. Logs the key at level 2 and a failure at level 4, which ENOMEM is too: nothing was
   sent then. */
DATACACHE_EXPORT int32_t zov_smlSetV(zov_handle_t handle, const char *value, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/* ---- batch writes in an edit session of their own ------------------------------------------------ */

/* Takes admin mode, opens an edit of the configuration, sets the messages in one exchange, saves and activates; a
   failure on the way cancels the edit. Admin mode is given back in any case. 0, or the first failure, which a
   failed cancel and a failed release of admin mode outrank, in this order. Logs nothing.

   Of the exchange its own result counts: a key that the switch refuses may leave it 0, and then the others are saved. Ask
   isErrors(), or look at each status; set the statuses to 0 before. */
DATACACHE_EXPORT int32_t zov_smlBatchSet(zov_handle_t handle, SmlMessage *messages, int32_t count);

/* The same for the CIM configuration, which needs no activation. */
DATACACHE_EXPORT int32_t zov_smlBatchCimSet(zov_handle_t handle, SmlMessage *messages, int32_t count);

/* ---- settings of the switch ---------------------------------------------------------------------- */

/* Each reads one setting and returns its text as the switch has it, which the caller frees with zov_libFreeMemory(); null
   when the read failed, or brought no text. The key is logged at level 2, then the text; a failure as zov_smlGetV() says,
   so that 103, a setting that this switch does not have, is no failure for the log. */

/* Whether a service is on, in the switch's own words. The community is the password of SNMP reads, and stands in the
   log too. */
DATACACHE_EXPORT char *get_Switch_Telnet_Enabled(void);
DATACACHE_EXPORT char *get_Switch_SSH_Enabled(void);
DATACACHE_EXPORT char *get_Switch_EmbeddedGUI_Enabled(void);
DATACACHE_EXPORT char *get_Switch_SNMPReadCommunity(void);
DATACACHE_EXPORT char *is_Switch_SSLEnabled(void);
DATACACHE_EXPORT char *is_Switch_SNMP_Enabled(void);

/* The management port's addresses of both versions of IP, whether the switch has this version, and whether it is on. */
DATACACHE_EXPORT char *get_Switch_IPv6Address(void);
DATACACHE_EXPORT char *get_Switch_IPv6Feature(void);
DATACACHE_EXPORT char *get_Switch_IPv6Enable(void);
DATACACHE_EXPORT char *get_Switch_IPv4Address(void);
DATACACHE_EXPORT char *get_Switch_IPv4Feature(void);
DATACACHE_EXPORT char *get_Switch_IPv4Enable(void);

/* What the factory and the firmware say of the switch. */
DATACACHE_EXPORT char *get_Switch_PlanarPartNum(void);
DATACACHE_EXPORT char *get_Switch_ChassisSerialNum(void);
DATACACHE_EXPORT char *get_Switch_ChassisPartNum(void);
DATACACHE_EXPORT char *get_Switch_ActiveVer(void);
DATACACHE_EXPORT char *get_Switch_OemActiveVer(void);
DATACACHE_EXPORT char *get_Switch_Brand_Name(void);
DATACACHE_EXPORT char *get_Switch_Type(void);

/* The switch in its fabric: its domain ID, and the world-wide names of the principal and of the switch itself, in
   capitals. That its own name cannot be read is logged at level 4, 103 included. */
DATACACHE_EXPORT char *get_Switch_Domain_ID(void);
DATACACHE_EXPORT char *get_Principal_Switch_World_Wide_Name(void);
DATACACHE_EXPORT char *get_Local_Switch_World_Wide_Name(void);

/* The product's description, a copy of it, the chassis' serial number and the brand; each text is the caller's, to be freed
   with zov_libFreeMemory().

   When the description cannot be read the result is the switch library's, and nothing is handed out. When one of the others
   cannot, the result is that of releasing what was read before it, usually 0: the copy and the serial number are null
   then, the description is still the caller's, and the text that failed is as the switch library left it. So set all
   four pointers to null before, and take null in `*descriptionCopy` for a failure. (It is null without memory, too.) */
DATACACHE_EXPORT int32_t get_Product_Info(char **description, char **descriptionCopy, char **serialNumber,
                                          char **brandName);

/* ---- configuration sessions ---------------------------------------------------------------------- */

/* A session is getConfigEditMode(), any number of zov_smlSetV(), then saveConfigEdit() or cancelConfigEdit(). One thread at
   a time may be in these functions. They return 0, or -1 when the switch refuses; the refusal is logged at level 2, and its
   key at level 4.

   Batch writes of the kind above, and locks and commits of zoning, do not belong into a session: they take and give
   back admin mode on the same connection, and these functions do not notice. */

/* Takes the switch's admin mode, which one client at a time can have; asking again is allowed. */
DATACACHE_EXPORT int reqAdminMode(void);
/* Gives it back if reqAdminMode() or getConfigEditMode() of this process took it; 0 at once otherwise. When the switch
   refuses, the process goes on counting as the holder. */
DATACACHE_EXPORT int releaseAdminMode(void);
/* Takes admin mode and opens an edit of the CIM configuration. Admin mode stays held also when the edit cannot be opened:
   call releaseAdminMode() then. */
DATACACHE_EXPORT int getConfigEditMode(void);
/* Ends the edit, its sets kept or forgotten, and gives admin mode back; when the edit cannot be ended admin mode stays
   held. */
DATACACHE_EXPORT int saveConfigEdit(void);
DATACACHE_EXPORT int cancelConfigEdit(void);
/* Keeps the switch's configuration on the switch, and brings back what was kept. Results are the switch library's. Neither
   takes admin mode: a switch may want the caller to hold it. */
DATACACHE_EXPORT int backupConfig(void);
DATACACHE_EXPORT int restoreConfig(void);

/* ---- walks over the fabric ----------------------------------------------------------------------- */

/* Walks read one key a call. A walk begins with a "first" function and goes on with a "next" function, given the
   identifier that the call before returned; it ends when a call fails. Texts are put into the keys as they are; a key
   is cut to 255 characters, a null text counts as empty.

   Each returns `dst`, which must have room for 256 bytes and holds the text then, or null when the read failed or `dst`
   is null: then `dst` is untouched. A record or an entry and `dst` may be the same. Nothing is logged but by isErrors(),
   so the end of a walk, status 24, is silent. */

/* The records of the link-state database, by their identifiers: a switch's domain ID each. */
DATACACHE_EXPORT char *get_first_lsdb_record(char *dst);
DATACACHE_EXPORT char *get_next_lsdb_record(const char *record, char *dst);

/* The number of links in a record, 0 for a value that is no number; -1 when the read failed. */
DATACACHE_EXPORT int get_lsdb_record_link_count(const char *record);

/* The two ends of a link, counted from 0 as decimal text: the port of the record's switch, and the neighbour. */
DATACACHE_EXPORT char *get_lsdb_record_link_local_information(const char *record, const char *link, char *dst);
DATACACHE_EXPORT char *get_lsdb_record_link_remote_information(const char *record, const char *link, char *dst);

/* The name-server entries under a scope (a domain ID), by their identifiers. */
DATACACHE_EXPORT char *get_first_attached_port(const char *scope, char *dst);
DATACACHE_EXPORT char *get_next_attached_port(const char *scope, const char *entry, char *dst);

/* ---- names and zone members as text --------------------------------------------------------------- */

/* Only get_Active_ZoneSet() asks the switch, and ZoneMemberToString() the switch library; nothing is logged but what stands
   with each. A null `dst` is left alone. */

/* A world-wide name, 8 bytes, as 16 upper-case hexadecimal digits; `dst` has room for 17. Returns `dst`. */
DATACACHE_EXPORT char *ZOV_WWNToStr(char *dst, const unsigned char *name);

/* `count` bytes as upper-case hexadecimal digits, two each, and an end; nothing at all for a count below 1. `dst` has
   room for 2 * count + 1. Returns `dst`. */
DATACACHE_EXPORT char *byteToStr(char *dst, const unsigned char *bytes, int count);

/* Member `index` of an array of types and one of identifiers, as people read it: a port's name, "01:10" for domain 1 and
   port 10 (of the domain's word the first byte), a Fibre Channel address in lower case, or an alias' name. Unknown
   members and node names are logged at level 2; they and all others leave `dst` as it was. `dst` has room for 69. */
DATACACHE_EXPORT void formatMemberId(const zov_fzs_zonemember_type_e *types, const zov_fzs_memberid_s *records,
                                     char *dst, int index);

/* A member as the switch's zoning commands take it: a port's name, "010a" for domain 1 and port 10, a Fibre Channel
   address in upper case, or an alias' name, cut to 64 characters. 1; or 0 and "Invalid" for any other member, for one
   that cannot be read, and for none. `dst` has room for 65. */
DATACACHE_EXPORT int ZoneMemberToString(char *dst, void *member);

/* The name of the zone set that is active on the switch, the empty text when none is. It is empty too when the switch
   does not tell, which is logged at level 4. `dst` has room for 65. */
DATACACHE_EXPORT void get_Active_ZoneSet(char *dst);

/* Makes every letter of a text a capital, in place, and returns the text; null stays null. */
DATACACHE_EXPORT char *toUpper(char *text);

/* The switch's word for a zone type: "Soft", "HardVPF", "HardACL"; "Invalid" for any other. */
DATACACHE_EXPORT const char *zov_smlCnvFromZOVZoneType(zov_fzs_zone_type_e type);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* SWLIB_MERO_ZOV_LIB_H */
