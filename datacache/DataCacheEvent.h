/*
 * The events that the cache hands to its client's callback.
 *
 * Every event is an object of a class derived from DataCacheEvent; a client tells them apart by `type`
 * (or by their dynamic class). An event is a local object of the routine that raises it: it lives only
 * until the callback returns. The client must neither delete it nor keep its address; it copies what it
 * needs. The callback runs on the evaluation thread with the cache's recursive lock held, so it may call
 * the cache's public operations, and everybody else waits until it returns: keep it short.
 *
 * A callback should not throw. A `char const *` ends the pass: a notification whose event it came from is dispatched
 * again by the next pass, while the events that a refresh had still to tell may be lost. Anything else ends the process.
 *
 * Status lists hold values of the CIM property OperationalStatus, the primary one first; values from
 * 32768 up are the vendor's fault markers.
 */
#ifndef DATACACHE_DATACACHEEVENT_H
#define DATACACHE_DATACACHEEVENT_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "foundation/Export.h"
#include "foundation/Wwn.h"

/// A list of CIM operational-status values.
using StatusList = std::vector<unsigned short>;

class DATACACHE_EXPORT DataCacheEvent {
public:
    explicit DataCacheEvent(int32_t eventType) : type(eventType) {}
    virtual ~DataCacheEvent();

    int32_t type; ///< number of the event class, given with each class below

protected:
    DataCacheEvent(const DataCacheEvent &) = default;
    DataCacheEvent &operator=(const DataCacheEvent &) = default;
};

// ---- fabric -----------------------------------------------------------------------------------------

// A fabric is known by the name of its principal switch. Changes are told from the second complete reading of the fabric
// on: the first one tells nothing, and is what the second is compared with.

/// Type 1: the switch is now part of this fabric.
class DATACACHE_EXPORT DCEventFabricAdd : public DataCacheEvent {
public:
    explicit DCEventFabricAdd(const Wwn &fabric) : DataCacheEvent(1), fabricWwn(fabric) {}
    ~DCEventFabricAdd() override;

    Wwn fabricWwn;
};

/// Type 2: this fabric is gone.
class DATACACHE_EXPORT DCEventFabricRemove : public DataCacheEvent {
public:
    explicit DCEventFabricRemove(const Wwn &fabric) : DataCacheEvent(2), fabricWwn(fabric) {}
    ~DCEventFabricRemove() override;

    Wwn fabricWwn;
};

/// Type 3: switches joined (added) or left the fabric. A fabric that fell apart is named as it was before; one that
/// merged with another, by the name it has now.
class DATACACHE_EXPORT DCEventFabricChange : public DataCacheEvent {
public:
    DCEventFabricChange(const Wwn &fabric, bool switchesAdded);
    ~DCEventFabricChange() override;

    Wwn fabricWwn;
    bool added;
};

/// Type 4: a switch joined the fabric; or the fabric has another name now, and this switch, known before, is in it. Of a
/// switch that comes along with another name of the fabric nothing is told but type 3.
class DATACACHE_EXPORT DCEventSwitchAdd : public DataCacheEvent {
public:
    DCEventSwitchAdd(const Wwn &fabric, const Wwn &theSwitch);
    ~DCEventSwitchAdd() override;

    Wwn fabricWwn;
    Wwn switchWwn;
};

/// Type 5: a switch left the fabric.
class DATACACHE_EXPORT DCEventSwitchRemove : public DataCacheEvent {
public:
    DCEventSwitchRemove(const Wwn &fabric, const Wwn &theSwitch)
        : DataCacheEvent(5), fabricWwn(fabric), switchWwn(theSwitch) {}
    ~DCEventSwitchRemove() override;

    Wwn fabricWwn;
    Wwn switchWwn;
};

// ---- the local switch -------------------------------------------------------------------------------

/// Type 6: the switch's list of operational statuses changed.
class DATACACHE_EXPORT DCEventSwitchStatusChange : public DataCacheEvent {
public:
    DCEventSwitchStatusChange(const Wwn &theSwitch, const Wwn &principal, StatusList before, StatusList now)
        : DataCacheEvent(6), switchWwn(theSwitch), principalWwn(principal), prevStatus(std::move(before)),
          newStatus(std::move(now)) {}
    ~DCEventSwitchStatusChange() override;

    Wwn switchWwn;
    Wwn principalWwn; ///< the principal switch when the status was read
    StatusList prevStatus;
    StatusList newStatus;
};

/// Type 7: an I/O blade is in this slot now.
class DATACACHE_EXPORT DCEventBladeAdd : public DataCacheEvent {
public:
    DCEventBladeAdd(const Wwn &theSwitch, unsigned short slotNumber)
        : DataCacheEvent(7), switchWwn(theSwitch), slot(slotNumber) {}
    ~DCEventBladeAdd() override;

    Wwn switchWwn;
    unsigned short slot; ///< from 0
};

/// Type 8: the I/O blade of this slot is gone.
class DATACACHE_EXPORT DCEventBladeRemove : public DataCacheEvent {
public:
    DCEventBladeRemove(const Wwn &theSwitch, unsigned short slotNumber)
        : DataCacheEvent(8), switchWwn(theSwitch), slot(slotNumber) {}
    ~DCEventBladeRemove() override;

    Wwn switchWwn;
    unsigned short slot; ///< from 0
};

// ---- ports ------------------------------------------------------------------------------------------

/// Type 10: a port appeared, on the local switch or in the fabric's name server.
class DATACACHE_EXPORT DCEventPortAdd : public DataCacheEvent {
public:
    DCEventPortAdd(const Wwn &owner, const Wwn &port, unsigned char whence)
        : DataCacheEvent(10), ownerWwn(owner), portWwn(port), origin(whence) {}
    ~DCEventPortAdd() override;

    Wwn ownerWwn; ///< origin 0: the local switch; origin 1: the local fabric
    Wwn portWwn;
    unsigned char origin; ///< 0: a port of the switch itself; 1: a name-server entry
};

/// Type 11: a port left the fabric's name server.
class DATACACHE_EXPORT DCEventPortRemove : public DataCacheEvent {
public:
    DCEventPortRemove(const Wwn &owner, const Wwn &port, unsigned char whence)
        : DataCacheEvent(11), ownerWwn(owner), portWwn(port), origin(whence) {}
    ~DCEventPortRemove() override;

    Wwn ownerWwn; ///< the local fabric
    Wwn portWwn;
    unsigned char origin; ///< 1: a name-server entry
};

/// Type 12: a port of the local switch changed its operational status. The lists have one value each.
class DATACACHE_EXPORT DCEventPortStatusChange : public DataCacheEvent {
public:
    DCEventPortStatusChange(const Wwn &theSwitch, const Wwn &port, const Wwn &fabric, StatusList before, StatusList now)
        : DataCacheEvent(12), switchWwn(theSwitch), portWwn(port), fabricWwn(fabric), prevStatus(std::move(before)),
          newStatus(std::move(now)) {}
    ~DCEventPortStatusChange() override;

    Wwn switchWwn;
    Wwn portWwn;
    Wwn fabricWwn;
    StatusList prevStatus;
    StatusList newStatus;
};

// ---- fans, power supplies, processors ---------------------------------------------------------------

/// Type 16: a fan blade is in this slot now.
class DATACACHE_EXPORT DCEventFanAdd : public DataCacheEvent {
public:
    DCEventFanAdd(const Wwn &theSwitch, unsigned short slotNumber)
        : DataCacheEvent(16), switchWwn(theSwitch), slot(slotNumber) {}
    ~DCEventFanAdd() override;

    Wwn switchWwn;
    unsigned short slot; ///< from 0
};

/// Type 17: the fan blade of this slot is gone.
class DATACACHE_EXPORT DCEventFanRemove : public DataCacheEvent {
public:
    DCEventFanRemove(const Wwn &theSwitch, unsigned short slotNumber, unsigned short fans)
        : DataCacheEvent(17), switchWwn(theSwitch), slot(slotNumber), count(fans) {}
    ~DCEventFanRemove() override;

    Wwn switchWwn;
    unsigned short slot;  ///< from 0
    unsigned short count; ///< fan blades that are left
};

/// Type 19: a power supply was installed.
class DATACACHE_EXPORT DCEventPowerSupplyAdd : public DataCacheEvent {
public:
    DCEventPowerSupplyAdd(const Wwn &theSwitch, unsigned short supply)
        : DataCacheEvent(19), switchWwn(theSwitch), number(supply) {}
    ~DCEventPowerSupplyAdd() override;

    Wwn switchWwn;
    unsigned short number; ///< a supply of the chassis: from 1; a power-supply blade: its slot, from 0
};

/// Type 20: a power supply was pulled.
class DATACACHE_EXPORT DCEventPowerSupplyRemove : public DataCacheEvent {
public:
    DCEventPowerSupplyRemove(const Wwn &theSwitch, unsigned short supply, unsigned short left)
        : DataCacheEvent(20), switchWwn(theSwitch), number(supply), count(left) {}
    ~DCEventPowerSupplyRemove() override;

    Wwn switchWwn;
    unsigned short number; ///< a supply of the chassis: from 1; a power-supply blade: its slot, from 0
    unsigned short count;  ///< a supply of the chassis: how many are good; a blade: how many such blades are left
};

/// Type 21: a power supply went bad.
class DATACACHE_EXPORT DCEventPowerSupplyFail : public DataCacheEvent {
public:
    DCEventPowerSupplyFail(const Wwn &theSwitch, unsigned short supply, unsigned short good)
        : DataCacheEvent(21), switchWwn(theSwitch), number(supply), count(good) {}
    ~DCEventPowerSupplyFail() override;

    Wwn switchWwn;
    unsigned short number; ///< from 1
    unsigned short count;  ///< how many supplies are good
};

/// Type 22: a CPU blade is in this slot now.
class DATACACHE_EXPORT DCEventCPUAdd : public DataCacheEvent {
public:
    DCEventCPUAdd(const Wwn &theSwitch, unsigned short slotNumber)
        : DataCacheEvent(22), switchWwn(theSwitch), slot(slotNumber) {}
    ~DCEventCPUAdd() override;

    Wwn switchWwn;
    unsigned short slot; ///< from 0
};

/// Type 23: the CPU blade of this slot is gone.
class DATACACHE_EXPORT DCEventCPURemove : public DataCacheEvent {
public:
    DCEventCPURemove(const Wwn &theSwitch, unsigned short slotNumber)
        : DataCacheEvent(23), switchWwn(theSwitch), slot(slotNumber) {}
    ~DCEventCPURemove() override;

    Wwn switchWwn;
    unsigned short slot; ///< from 0
};

// ---- accounts, zoning, alarms -----------------------------------------------------------------------

/// Type 25: a user account was added.
class DATACACHE_EXPORT DCEventUserAcctAdd : public DataCacheEvent {
public:
    DCEventUserAcctAdd(const Wwn &theSwitch, std::string account)
        : DataCacheEvent(25), switchWwn(theSwitch), name(std::move(account)) {}
    ~DCEventUserAcctAdd() override;

    Wwn switchWwn;
    std::string name;
};

/// Type 26: a user account was removed.
class DATACACHE_EXPORT DCEventUserAcctRemove : public DataCacheEvent {
public:
    DCEventUserAcctRemove(const Wwn &theSwitch, std::string account)
        : DataCacheEvent(26), switchWwn(theSwitch), name(std::move(account)) {}
    ~DCEventUserAcctRemove() override;

    Wwn switchWwn;
    std::string name;
};

/// Type 27: another zone set is active, or the active one changed. A name is empty for "none".
class DATACACHE_EXPORT DCEventActiveZonesetChange : public DataCacheEvent {
public:
    DCEventActiveZonesetChange(const Wwn &theSwitch, std::string now, std::string before)
        : DataCacheEvent(27), switchWwn(theSwitch), zoneset(std::move(now)), prevZoneset(std::move(before)) {}
    ~DCEventActiveZonesetChange() override;

    Wwn switchWwn; ///< the principal switch
    std::string zoneset;
    std::string prevZoneset;
};

/// Type 28: the zoning database changed.
class DATACACHE_EXPORT DCEventZoningDBChange : public DataCacheEvent {
public:
    explicit DCEventZoningDBChange(const Wwn &theSwitch) : DataCacheEvent(28), switchWwn(theSwitch) {}
    ~DCEventZoningDBChange() override;

    Wwn switchWwn; ///< the local switch
};

/// Type 29: a user's password was changed.
class DATACACHE_EXPORT DCEventUserPasswdChg : public DataCacheEvent {
public:
    DCEventUserPasswdChg(const Wwn &theSwitch, std::string who)
        : DataCacheEvent(29), switchWwn(theSwitch), user(std::move(who)) {}
    ~DCEventUserPasswdChg() override;

    Wwn switchWwn;
    std::string user;
};

/// Type 30: a login failed.
class DATACACHE_EXPORT DCEventUserLoginFailure : public DataCacheEvent {
public:
    DCEventUserLoginFailure(const Wwn &theSwitch, std::string who)
        : DataCacheEvent(30), switchWwn(theSwitch), user(std::move(who)) {}
    ~DCEventUserLoginFailure() override;

    Wwn switchWwn;
    std::string user;
};

/// Type 31: an environmental alarm: a temperature or a supply voltage out of range.
class DATACACHE_EXPORT DCEventEnvEvent : public DataCacheEvent {
public:
    DCEventEnvEvent(const Wwn &theSwitch, const std::string &what, const std::string &how, const std::string &where);
    ~DCEventEnvEvent() override;

    Wwn switchWwn;
    std::string category; ///< "temperature" or "power supply"
    std::string kind;     ///< "overtemp", "voltage high" or "voltage low"
    std::string detail;   ///< the sensor, or "unknown"
};

/// Type 32: the CIM configuration of the switch changed.
class DATACACHE_EXPORT DCEventCIMChange : public DataCacheEvent {
public:
    DCEventCIMChange() : DataCacheEvent(32) {}
    ~DCEventCIMChange() override;
};

/// Type 33: an evaluation pass ended and every area of the cache is good.
class DATACACHE_EXPORT DCEventDataCacheUpdateComplete : public DataCacheEvent {
public:
    DCEventDataCacheUpdateComplete() : DataCacheEvent(33) {}
    ~DCEventDataCacheUpdateComplete() override;
};

#endif // DATACACHE_DATACACHEEVENT_H
