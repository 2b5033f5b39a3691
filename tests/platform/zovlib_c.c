/* The platform's headers as a C client sees them: this file must compile as C, and tells the C++ side what it saw. */
#include <stddef.h>
#include <stdint.h>

#include "platform/host.h"
#include "platform/zovlib.h"

_Static_assert(sizeof(SmlMessage) == 516, "arrays of messages have this stride");

/* The same rows, in the same order, as in the C++ test. */
extern const uint32_t zovlib_layout_in_c[];
const uint32_t zovlib_layout_in_c[] = {
    sizeof(zov_handle_t),
    sizeof(SmlMessage),
    offsetof(SmlMessage, key),
    offsetof(SmlMessage, value),
    offsetof(SmlMessage, status),
    sizeof(zov_eventsource_s),
    sizeof(zov_event_s),
    offsetof(zov_event_s, code),
    offsetof(zov_event_s, source),
    offsetof(zov_event_s, text),
    offsetof(zov_event_s, rest),
    sizeof(zov_eventreg_s),
    offsetof(zov_eventreg_s, code),
    offsetof(zov_eventreg_s, result),
    sizeof(zov_fzs_zoninglimits_s),
    offsetof(zov_fzs_zoninglimits_s, zonesets),
    offsetof(zov_fzs_zoninglimits_s, zones),
    offsetof(zov_fzs_zoninglimits_s, members),
    offsetof(zov_fzs_zoninglimits_s, zonesPerZoneset),
    offsetof(zov_fzs_zoninglimits_s, membersPerZone),
    offsetof(zov_fzs_zoninglimits_s, aliases),
    offsetof(zov_fzs_zoninglimits_s, membersPerAlias),
    sizeof(zov_fzs_memberid_s),
    offsetof(zov_fzs_memberid_s, u),
    sizeof(zov_eventcode_e),
    sizeof(zov_fzs_zonemember_type_e),
    sizeof(zov_fzs_zone_type_e),
};

/* A number on its way through an enumeration. */
int32_t through_event_code_in_c(int32_t number);
int32_t through_member_type_in_c(int32_t number);
int32_t through_zone_type_in_c(int32_t number);

int32_t through_event_code_in_c(int32_t number) {
    volatile zov_eventcode_e code = (zov_eventcode_e)number;
    return (int32_t)code;
}

int32_t through_member_type_in_c(int32_t number) {
    volatile zov_fzs_zonemember_type_e type = (zov_fzs_zonemember_type_e)number;
    return (int32_t)type;
}

int32_t through_zone_type_in_c(int32_t number) {
    volatile zov_fzs_zone_type_e type = (zov_fzs_zone_type_e)number;
    return (int32_t)type;
}

/* The host's function can be called from C. */
long uptime_in_c(void);

long uptime_in_c(void) {
    long seconds = -1;
    (void)uptime(&seconds);
    return seconds;
}
