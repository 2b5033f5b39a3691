/*
 * The results and statuses of the simulated switch.
 *
 * A call answers one of these as its result, a key of a batch as its status. They are the switch's own:
 * clients may rely on 0 being success, 24 the end of a list and 103 an attribute that this switch does not
 * have, and take every other number for a refusal.
 */
#ifndef SIM_STATUS_H
#define SIM_STATUS_H

#include <cstdint>

namespace sim {

enum Status : int32_t {
    kOk = 0,
    kBadArgument = 1,    ///< a null pointer, or a count below 1
    kBadHandle = 2,      ///< no connection of this number, or its switch is off
    kNoMemory = 3,       ///< the switch library ran out of memory
    kNoSuchHost = 4,     ///< no switch at this host
    kNoSuchKey = 5,      ///< no such key, or an index that does not exist
    kBadValue = 6,       ///< the attribute cannot take this value
    kReadOnly = 7,       ///< clients may not set this attribute
    kNotReadable = 8,    ///< commands cannot be read
    kBadKey = 9,         ///< the key is longer than a key may be
    kAdminRequired = 10, ///< the client must hold admin mode first
    kAdminBusy = 11,     ///< another client holds admin mode
    kAdminNotHeld = 12,  ///< the client gives back what it does not hold
    kEditRequired = 13,  ///< no edit of this configuration is open
    kEditOpen = 14,      ///< an edit is open already
    kNothingSaved = 15,  ///< no saved configuration waits to be activated
    kNotFound = 16,      ///< nothing of this name in the zoning database, the zone set, zone or alias
    kBadObject = 17,     ///< not a live zoning object of the kind the call is for
    kBadName = 18,       ///< not a valid name
    kDuplicate = 19,     ///< there is one of this name, or such a member, already
    kLinked = 20,        ///< the object belongs to another one
    kBadMember = 21,     ///< a member type or identifier that cannot be used here
    kBadEventCode = 22,  ///< no notification has this code
    kNoAnswer = 23,      ///< the fabric's management server did not answer
    kEndOfList = 24,     ///< a walk has come to its end
    kLockRequired = 25,  ///< the client must hold the fabric's zoning lock first
    kLockBusy = 26,      ///< another client holds the fabric's zoning lock
    kLockNotHeld = 27,   ///< the client gives back a lock that it does not hold
    kLimitReached = 28,  ///< the zoning database is full in this respect
    kEditSpoilt = 29,    ///< something in the edit was refused, so it is not saved
    kNoBackup = 30,      ///< the configuration was never backed up
    kNoConnection = 31,  ///< the process that serves the switch is gone, or went in the middle of the call
    kNotRecorded = 40,   ///< the recording that stands in for the switch does not know
    kInternal = 99,      ///< the switch library failed in a way of its own
    kNotSupported = 103, ///< the attribute exists, but not on this switch as it is equipped
};

} // namespace sim

#endif // SIM_STATUS_H
