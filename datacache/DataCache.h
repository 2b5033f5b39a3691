/*
 * DataCache: the in-memory picture of the switch and its fabric.
 *
 * One object per process. A client starts it once:
 *
 *     DataCache::init();                                    // connects; waits until the switch answers
 *     DataCache *cache = DataCache::getInstance();
 *     cache->start(callback);                               // registers for notifications, starts the EVAL thread
 *     DataCache::releaseInstance();
 *
 * From then on the evaluation (EVAL) thread keeps the picture current, driven by the switch's notifications, and
 * hands every change to the callback as a DataCacheEvent. Each evaluation pass first dispatches the queued
 * notifications, then refreshes the areas that something asked for, in the order of DataCacheArea.
 *
 * Thread-safety: every public operation may be called by any thread. It takes the cache's recursive lock
 * for its whole run; getInstance() and releaseInstance() take and give back the same lock, so that a client can hold
 * it over several calls. The EVAL thread holds it for a whole pass, the callback included: queries wait for the
 * pass to end, and the callback may itself call public operations. Exceptions are init() and start(), which one
 * thread calls once, and the state conversions, which touch no member.
 *
 * Operations whose names begin with an underscore are the routines of the evaluation pass. They are the EVAL
 * thread's; another caller must hold the lock, but for those that only look at their arguments, and _getZoningInfo(), which
 * takes it for itself.
 *
 * Errors: operations answer with false, 0 or an empty value, and a line in the log (foundation/cim_log.h). A
 * failure of the switch never throws.
 */
#ifndef DATACACHE_DATACACHE_H
#define DATACACHE_DATACACHE_H

#include <array>
#include <bitset>
#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "datacache/DataCacheEvent.h"
#include "datacache/FabricCache.h"
#include "datacache/pictures.h"
#include "foundation/Export.h"
#include "foundation/Wwn.h"
#include "platform/zovlib.h"
#include "zoning/ZoningCache.h"

/// The areas of the cache, in the order in which a pass refreshes them.
enum class DataCacheArea : unsigned char { switchInfo, chassis, blades, ports, accounts, fabric, zoning };

class DATACACHE_EXPORT DataCache : public ZoningCache {
public:
    using EventCallback = void (*)(DataCacheEvent *);

    // ---- the one object and its lock (DataCache.cc) --------------------------------------------------

    /// Locks the cache, waiting for a running pass to end, and returns it; null before init(). Pair every call,
    /// also one that returned null, with releaseInstance() on the same thread.
    static DataCache *getInstance();
    static void releaseInstance();

    /// Creates the cache if there is none, connects it and loads the zoning limits. A switch that does not answer is
    /// tried again every 10 seconds, for ever; the call returns when it is connected. Always true.
    static bool init();

    /// startEventMonitor(callback), then startEvalThread(), on the object that init() made. Always true.
    bool start(EventCallback callback);

    /// Logs its passing and releases what the cache holds. It neither stops the EVAL thread nor disconnects, so a cache
    /// that was started must not be destroyed.
    ~DataCache() override;

    // ---- connection, registration and the EVAL thread (DataCache.cc) ---------------------------------

    /// Connects if there is no connection, trying again every 10 seconds for ever. Always true.
    bool startZovlib();
    /// Keeps the callback (null: events are dropped) and registers for notifications. A code that cannot be
    /// registered is logged and otherwise ignored. Always true.
    bool startEventMonitor(EventCallback callback);
    /// How that went: the notification codes in the order of their registration, each with 0 or the switch library's
    /// result, which is that of the whole call where a code has none of its own. Empty before.
    std::vector<zov_eventreg_s> getRegistrations() const;
    /// Starts the EVAL thread, which runs a first pass at once; false if it could not be started.
    bool startEvalThread();
    /// Body of the EVAL thread; never returns. An exception other than a `char const*` out of a pass ends the process.
    static void *evalThread(void *unused);

    // ---- the evaluation pass (EvaluationPass.cc) -----------------------------------------------------

    /// One pass: dispatches the queued notifications and refreshes what was asked for; true when all areas are good. A
    /// call from inside the callback does nothing but return isCacheReady(). A `char const*` thrown by a dispatch or a
    /// refresh is logged and ends both; any other exception, and whatever the callback throws at the completion event,
    /// is let out. (The EVAL thread logs a `char const*` of that last kind and goes on.)
    bool evaluateCaches();

    /// All areas were good at the end of the last pass.
    bool isCacheReady() const;
    /// The last refresh of this area succeeded.
    bool isAreaGood(DataCacheArea area) const;
    /// A refresh of some area has been asked for and not yet succeeded.
    bool workToDo() const;
    /// Notifications that wait for the next pass.
    unsigned long getQueuedNotificationCount() const;
    /// Passes that have ended, by an exception or not.
    unsigned long getPassCount() const;
    /// Whole seconds since the end of the last pass after which all areas were good; -1 while there was none.
    long getSecondsSinceReadyPass() const;

    /// Ask for a refresh of one area, or of all. The next pass serves it; none of these starts a pass.
    void updateAll();
    void updateSwitch();
    void updateChassis();
    void updateBlades();
    void updatePorts();
    void updateFabric();
    void updateAccounts();
    void updateZoning();
    /// updateZoning(), whatever the switch's checksum of the zone sets, zones and aliases says; and wakes the EVAL thread.
    /// A checksum that rises by just one in the meantime hides the request, and so does the end of a refresh in whose
    /// callback it is made.
    void reloadZoning();

    /// Names all 256 local ports, or one of them (0 to 255), for the next port refresh. Another number throws
    /// std::out_of_range with the text "bitset::set".
    void localPortRefreshSet();
    void localPortRefreshSet(int port);

    // ---- the local switch and its chassis (SwitchQueries.cc) -----------------------------------------

    /// The local switch's name; zero until it has been read.
    Wwn getRootSwitchWorldWideName() const;
    /// The same as text of 16 hexadecimal digits.
    std::string getRootSwitchWwn() const;
    /// Operational statuses of the local switch, the primary one first; empty until they have been read.
    StatusList getRootSwitchStatus() const;
    bool isTransparentSwitch() const;
    bool isFCOESwitch() const;
    bool isEthernetPassthroughSwitch() const;

    /// The chassis' faults: empty until they have been read, then two values, the self-test fault (32768) and the
    /// management-processor fault (32769), each 0 when absent.
    StatusList getSwitchFaults() const;
    /// Slots of the chassis; 0 for a chassis with a single slot.
    unsigned short getRootMaxSlots() const;
    unsigned short getRootPowerSupplyCount() const;
    unsigned short getRootFanCount() const;
    /// Hardware state of a power supply or fan, counted from 0: 1 good, 2 bad, 3 not installed, 0 unknown; also 0 for
    /// one that the chassis does not have.
    unsigned short getRootPowerSupplyStatus(unsigned short index) const;
    unsigned short getRootFanStatus(unsigned short index) const;

    // ---- blades and accounts (BladeQueries.cc) -------------------------------------------------------

    /// Slots of the chassis; 1 for a chassis with a single slot, 0 until it has been read.
    unsigned short getRootSlotCount() const;
    /// Walks the slots, 0 to 31, that hold an I/O blade; 65535 after the last one. The walk's end is
    /// getRootMaxSlots(): going past slot 31 before it throws std::out_of_range with the text "bitset::test". After a
    /// pass only the blade of the last slot is known.
    unsigned short getFirstRootIOBladeIndex() const;
    unsigned short getNextRootIOBladeIndex(const unsigned short &index) const;
    /// What a slot holds: 0 nothing known, 1 a fan blade, 2 a power-supply blade, 3 a CPU blade, 4 an I/O blade; 0 for
    /// slots from 32 up. The other three likewise.
    unsigned short getRootBladeKind(unsigned short slot) const;
    unsigned short getRootBladeStatus(unsigned short slot) const;
    unsigned short getRootTemperatureSensorCount(const unsigned short &slot) const;
    unsigned short getRootVoltageSensorCount(const unsigned short &slot) const;

    /// The names of the switch's user accounts, in the switch's order.
    std::vector<std::string> getUserAccounts() const;

    // ---- ports of the local switch (portindex.cc) ----------------------------------------------------

    // A port's index is decimal text. "0" is the only text that names port 0: the empty text and letters name no port.
    // Numbers are cut to 16 bits. A port of the local switch is usable when it is present and no pass-through port.

    unsigned short getMaxRootPorts() const;
    /// Walks the usable ports in rising order; the empty text after the last one, and until the ports have been read.
    std::string getFirstRootPortIndex() const;
    std::string getNextRootPortIndex(const std::string &index) const;
    /// A port's CIM port type, CIM hardware type and primary CIM operational status; 0 outside 0 to 255. An absent
    /// port keeps the types it had.
    unsigned short getPortType(const std::string &index) const;
    unsigned short getPortHWType(const std::string &index) const;
    unsigned short getPortStatus(const std::string &index) const;
    /// The port is there: neither not installed nor powered off.
    bool isPortPresent(const std::string &index) const;
    /// The local switch's domain ID; 0 while it is not in the fabric picture.
    unsigned char getRootSwitchDomainID() const;

    /// The name of a switch's port; zero when there is no such port. On the local switch an index above 255 throws
    /// std::out_of_range with the text "bitset::test".
    Wwn calcPortWorldWideName(const Wwn &switchWwn, unsigned short index) const;
    /// The same from text to text, empty when there is no such port. Here any text that holds no number names port 0;
    /// "-1" names none.
    std::string calcPortWwn(const std::string &switchWwn, const std::string &index) const;
    /// The index of a switch's port; 65535, or the empty text, when there is no such port.
    unsigned short calcPortIndex(const Wwn &switchWwn, const Wwn &portWwn);
    std::string calcPortIndex(const std::string &switchWwn, const std::string &portWwn);

    /// What is in a port's transceiver cage, of a port that is present and has a transceiver with digital diagnostics.
    /// For others, and for text that names no port: false, 2 and empty texts. An index above 255 throws
    /// std::out_of_range with the text "bitset::test".
    bool getTransceiverDDMSupported(const std::string &index);
    /// 0: SFP, 2: unknown, 1: any other format.
    unsigned char getTransceiverFormat(const std::string &index);
    /// Six hexadecimal digits.
    std::string getTransceiverVendorOUI(const std::string &index);
    /// At most 16 characters; runs of blanks are filled with "_".
    std::string getTransceiverVendorSN(const std::string &index);
    /// Always the empty text.
    std::string getRootPortIndexForTransceiver(const std::string &vendorOUI, const std::string &vendorSN);
    /// The form in which the cache keeps a vendor's serial number; null counts as empty.
    std::string _sanitizedMediaVendorSN(const char *raw) const;

    // ---- the fabric (FabricQueries.cc) ---------------------------------------------------------------

    /// The fabric, for number 1; null for any other. The lock is not held when it returns: hold it to use the pointer.
    FabricCache *getFabric(unsigned short number) const;
    /// Whether a list of names holds this one. Looks at nothing but its arguments, and so takes no lock.
    bool _fabricContainsWWN(std::vector<Wwn> names, Wwn wwn) const;

    // ---- refresh, one routine per area (refresh/) ----------------------------------------------------

    /// Each reloads its area, delivers the events for what changed, and tells whether it succeeded. An I/O or CPU blade
    /// above slot 31 makes _getBladeInfo() throw std::out_of_range with the text "bitset::set".
    int _getSwitchInfo();
    int _getChassisInfo();
    int _getBladeInfo();
    int _getPortInfo();
    bool _getAcctInfo();
    bool _getFabricInfo();
    bool _getZoningInfo();
    /// The fabric's refresh in its three parts: its name, its switches, the other switches' ports. The switch lists the
    /// fabric's domains in one value of at most 255 characters: domains 1 to 88 fill it, and whatever a switch leaves
    /// out is not in the picture.
    bool _load_fabric_info();
    bool _load_switch_domain_list();
    bool _load_mserver_ports();
    /// Splits a list of the switch at its commas. Empty pieces are left out, but for what stands after the last comma;
    /// the empty text has no pieces.
    std::vector<std::string> _parseSMLList(std::string list);

    // ---- state texts of the switch to CIM values (translate.cc) --------------------------------------

    /// Exact, case-sensitive translations without side effects; text that has no translation gives 0.
    unsigned short _smlConvToHardwareStatus(const char *text) const;
    unsigned short smlHWTypeToCIMHWType(const std::string &type) const;
    unsigned short smlTypeToCIMType(const std::string &type) const;
    StatusList smlPortStateToCIMOperationalStatus(const std::string &state, const std::string &otherState) const;
    StatusList smlIOBladeStateToCIMOperationalStatus(const std::string &state, const std::string &otherState,
                                                     const std::string &health) const;
    StatusList smlSwitchStateToCIMOperationalStatus(const char *state, const StatusList &faults) const;

    // ---- notifications of the switch (notify/) -------------------------------------------------------

    /// What the switch library calls, on a thread of its own: queues a copy of the event and wakes the EVAL thread, or
    /// logs an event that nothing here handles. Waits for a running pass to end.
    static void zovlibNotificationCB(void *handle, zov_event_s *event, void *context);
    /// Appends a record made with `new` to the queue, which owns it from then on. Does not wake the EVAL thread.
    void queueZovlibEvent(zov_event_s *record);
    /// Queues a made-up notification; a null source counts as zeros, a null text as empty; text is cut to 1395
    /// characters. Does not wake the EVAL thread: the record waits for the next pass, or, when the callback calls this
    /// while notifications are dispatched, for its turn in the same pass.
    void zovlibEventKick(zov_eventcode_e code, zov_eventsource_s *source, const char *text);
    /// Name of a notification code, "ZOV_EVENT_OTHER" for one that has none.
    static const char *_tagToString(int code);
    /// Turns one queued notification into refresh requests and events. Does not free the record.
    void _zovlibNotificationCB(zov_event_s *record);

private:
    DataCache();

    struct DATACACHE_INTERNAL Area;
    struct DATACACHE_INTERNAL Dispatch;
    class DATACACHE_INTERNAL RunningPass;

    void _drainQueue();
    void _refreshAreas();
    bool _areAllAreasGood() const;
    void _deliver(DataCacheEvent &&event);
    void _tellPowerSupplyChanges();

    struct BladeCounts {
        unsigned short fans = 0;
        unsigned short powerSupplies = 0;
    };
    int _readSingleSlot();
    bool _readSlot(unsigned slot, BladeCounts &counts);
    void _tellBladeChanges(const BladeCounts &counts);
    void _tellBladeAdded(unsigned short kind, unsigned short slot);
    void _tellBladeRemoved(unsigned short kind, unsigned short slot, const BladeCounts &counts);

    bool _readPort(unsigned port);
    bool _processPort0Wwn();
    void _enterLocalSwitch(unsigned char domain);
    void _tellPortChanges(const Wwn &fabric);

    bool _walkAccounts(int32_t &end);
    void _tellAccountChanges();

    bool _validateDomain(const std::string &domain);
    void _enterRemoteSwitch(const Wwn &wwn, unsigned char domain, const std::string &text);
    void _sweepStaleSwitches();
    void _tellMembershipChanges();
    void _tellJoinsAndDepartures(const std::vector<Wwn> &switches);
    void _tellFabricReplaced(const std::vector<Wwn> &switches);
    bool _isStillThere(const Wwn &name, const std::vector<Wwn> &switches) const;
    bool _loadSwitchPorts(SwitchCache &remote) const;
    bool _loadSwitchPort(SwitchCache &remote, unsigned number) const;

    bool _loadActiveZoneset(const Wwn &principal);
    bool _loadInactiveZonesets();
    bool _loadInactiveZoneset(const std::string &name);

    int _nextUsablePort(unsigned from, unsigned end) const;
    Wwn _remotePortName(const Wwn &switchWwn, unsigned short index) const;
    unsigned short _localPortIndex(const Wwn &portWwn) const;
    unsigned short _remotePortIndex(const Wwn &switchWwn, const Wwn &portWwn) const;
    const Transceiver *_transceiverOf(const std::string &index) const;

    static void _wakeEvalThread();

    static DataCache *instance;

    // connection and client
    zov_handle_t _hSwitch = 0;
    EventCallback _eventCallback = nullptr;
    std::vector<zov_eventreg_s> _registrations;

    // notifications that wait for dispatch; the queue owns the records
    std::deque<zov_event_s *> _eventQueue;

    // areas to refresh; everything at first
    bool _refreshSwitch = true;
    bool _refreshChassis = true;
    bool _refreshBlades = true;
    bool _refreshPorts = true;
    bool _refreshFabric = true;
    bool _refreshAccounts = true;
    bool _refreshZoning = true;

    // how each area's last refresh ended
    bool _switchOK = false;
    bool _chassisOK = false;
    bool _bladesOK = false;
    bool _portsOK = false;
    bool _fabricOK = false;
    bool _accountsOK = false;
    bool _zoningOK = false;
    bool _cacheReady = false;

    // local ports that the next port refresh reads
    std::bitset<256> _localPortRefresh;

    // pictures
    SwitchPicture _switch;
    SwitchPicture _prevSwitch;
    ChassisPicture _chassis;
    ChassisPicture _prevChassis;
    BladesPicture _blades;
    BladesPicture _prevBlades;
    PortsPicture _ports;
    PortsPicture _prevPorts;
    std::vector<std::string> _users;
    std::vector<std::string> _oldUsers;
    mutable FabricCache _fabric;     // queries hand out what clients may change under the lock
    bool _fabricInitialized = false; // the fabric has been read once, so that the next refresh has something to compare
    std::vector<Wwn> _origFabric;    // its switches and its name as this refresh found them
    Wwn _origFabricName;
    std::array<Transceiver, kPortSlots> _transceivers;

    // the pass itself
    bool _passRunning = false; // also while its callbacks run
    unsigned long _passCount = 0;
    std::optional<std::chrono::steady_clock::time_point> _readyPassEnd;
};

#endif // DATACACHE_DATACACHE_H
