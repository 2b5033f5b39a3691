// Which operations take the cache's lock: each is called while this thread holds it, and must wait for it.
#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include <dlfcn.h>
#include <pthread.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/Wait.h"

namespace {

using testing::IsEmpty;

// ---- the cache's lock, watched ---------------------------------------------------------------------------

/// What the watched thread has done with the lock so far.
std::atomic<bool> isAboutToWait{false};
std::atomic<int> timesTaken{0}; // without those of a thread that holds it already

std::atomic<pthread_mutex_t *> lastTaken{nullptr}; // by a thread that looks for the lock
std::atomic<pthread_mutex_t *> cacheLock{nullptr}; // the cache's
thread_local bool isLooking = false;
thread_local bool isWatched = false;
thread_local int depth = 0;

template <class Function> __attribute__((no_sanitize_thread)) Function *next(Function *&found, const char *name) {
    if (found == nullptr)
        found = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
    return found;
}

using MutexCall = int(pthread_mutex_t *);
MutexCall *nextLock = nullptr;
MutexCall *nextUnlock = nullptr;

/// Questions to the switch that the watched thread asked without holding the lock.
std::atomic<int> questionsWithoutLock{0};
using LimitsCall = int32_t(zov_handle_t, zov_fzs_zoninglimits_s *);
LimitsCall *nextLimits = nullptr;
using BatchCall = int32_t(zov_handle_t, SmlMessage *, int32_t);
BatchCall *nextBatch = nullptr;

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's header names the parameters so
extern "C" __attribute__((no_sanitize_thread)) int pthread_mutex_lock(pthread_mutex_t *__mutex) noexcept {
    MutexCall *const lock = next(nextLock, "pthread_mutex_lock");
    if (isLooking)
        lastTaken = __mutex;
    if (!isWatched || __mutex != cacheLock)
        return lock(__mutex);
    if (depth++ == 0)
        ++timesTaken;
    if (pthread_mutex_trylock(__mutex) == 0)
        return 0;
    isAboutToWait = true;
    return lock(__mutex);
}

extern "C" __attribute__((no_sanitize_thread)) int pthread_mutex_unlock(pthread_mutex_t *__mutex) noexcept {
    if (isWatched && __mutex == cacheLock)
        --depth;
    return next(nextUnlock, "pthread_mutex_unlock")(__mutex);
}
// NOLINTEND(bugprone-reserved-identifier)

extern "C" int32_t zov_fzsGetZoningLimitations(zov_handle_t handle, zov_fzs_zoninglimits_s *limits) {
    if (isWatched && depth == 0)
        ++questionsWithoutLock;
    return next(nextLimits, "zov_fzsGetZoningLimitations")(handle, limits);
}

extern "C" int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    if (isWatched && depth == 0)
        ++questionsWithoutLock;
    return next(nextBatch, "zov_smlGetBatch")(handle, messages, count);
}

namespace {

// ---- the operations --------------------------------------------------------------------------------------

struct Operation {
    const char *name;
    void (*call)(DataCache &);
    int times = 1; ///< that it takes the lock
};

void PrintTo(const Operation &operation, std::ostream *out) {
    *out << operation.name;
}

/// A row for an operation without arguments.
#define OPERATION(name)                                                                                                \
    Operation {                                                                                                        \
#name, [](DataCache & cache) { static_cast<void>(cache.name()); }, 1                                           \
    }

_ZoneSetTypes kind = ZONESET_INACTIVE; // that a row is handed back

Wwn localName() {
    return Wwn(std::string(support::kSwitchWwn));
}

/// Runs `action`, which throws for a number outside its table.
template <class Action> void refused(Action action) {
    EXPECT_THROW(action(), std::out_of_range);
}

/// Every public operation that needs the cache to itself.
const Operation kLocking[] = {
    OPERATION(startZovlib),
    {"startEventMonitor", [](DataCache &cache) { cache.startEventMonitor(support::recordEvent); }},
    OPERATION(startEvalThread),
    // The part that holds the zone sets takes it anew, when nobody finds the cache any more.
    {"destructor", [](DataCache &cache) { delete &cache; }, 2},
    OPERATION(evaluateCaches),
    OPERATION(isCacheReady),
    {"isAreaGood", [](DataCache &cache) { cache.isAreaGood(DataCacheArea::zoning); }},
    OPERATION(workToDo),
    OPERATION(getQueuedNotificationCount),
    OPERATION(getPassCount),
    OPERATION(updateAll),
    OPERATION(updateSwitch),
    OPERATION(updateChassis),
    OPERATION(updateBlades),
    OPERATION(updatePorts),
    OPERATION(updateFabric),
    OPERATION(updateAccounts),
    OPERATION(updateZoning),
    OPERATION(localPortRefreshSet),
    {"localPortRefreshSetOfOnePort", [](DataCache &cache) { cache.localPortRefreshSet(255); }},
    {"localPortRefreshSetOfNone", [](DataCache &cache) { refused([&] { cache.localPortRefreshSet(256); }); }},
    OPERATION(getRootSwitchWorldWideName),
    OPERATION(getRootSwitchWwn),
    OPERATION(getRootSwitchStatus),
    OPERATION(isTransparentSwitch),
    OPERATION(isFCOESwitch),
    OPERATION(isEthernetPassthroughSwitch),
    OPERATION(getSwitchFaults),
    OPERATION(getRootMaxSlots),
    OPERATION(getRootPowerSupplyCount),
    OPERATION(getRootFanCount),
    {"getRootPowerSupplyStatus", [](DataCache &cache) { cache.getRootPowerSupplyStatus(0); }},
    {"getRootPowerSupplyStatusOfNone", [](DataCache &cache) { cache.getRootPowerSupplyStatus(65535); }},
    {"getRootFanStatus", [](DataCache &cache) { cache.getRootFanStatus(0); }},
    {"getRootFanStatusOfNone", [](DataCache &cache) { cache.getRootFanStatus(65535); }},
    OPERATION(getRootSlotCount),
    OPERATION(getFirstRootIOBladeIndex),
    {"getNextRootIOBladeIndex", [](DataCache &cache) { cache.getNextRootIOBladeIndex(0); }},
    {"getNextRootIOBladeIndexOfNone", [](DataCache &cache) { cache.getNextRootIOBladeIndex(65535); }},
    {"getRootBladeKind", [](DataCache &cache) { cache.getRootBladeKind(0); }},
    {"getRootBladeKindOfNone", [](DataCache &cache) { cache.getRootBladeKind(65535); }},
    {"getRootBladeStatus", [](DataCache &cache) { cache.getRootBladeStatus(0); }},
    {"getRootTemperatureSensorCount", [](DataCache &cache) { cache.getRootTemperatureSensorCount(0); }},
    {"getRootVoltageSensorCount", [](DataCache &cache) { cache.getRootVoltageSensorCount(0); }},
    OPERATION(getUserAccounts),
    OPERATION(getMaxRootPorts),
    OPERATION(getFirstRootPortIndex),
    {"getNextRootPortIndex", [](DataCache &cache) { cache.getNextRootPortIndex("0"); }},
    {"getNextRootPortIndexOfNone", [](DataCache &cache) { cache.getNextRootPortIndex(""); }},
    {"getPortType", [](DataCache &cache) { cache.getPortType("0"); }},
    {"getPortTypeOfNone", [](DataCache &cache) { cache.getPortType(""); }},
    {"getPortHWType", [](DataCache &cache) { cache.getPortHWType("0"); }},
    {"getPortStatus", [](DataCache &cache) { cache.getPortStatus("0"); }},
    {"isPortPresent", [](DataCache &cache) { cache.isPortPresent("0"); }},
    OPERATION(getRootSwitchDomainID),
    {"calcPortWorldWideName", [](DataCache &cache) { cache.calcPortWorldWideName(localName(), 0); }},
    {"calcPortWorldWideNameOfNone", [](DataCache &cache) { cache.calcPortWorldWideName(Wwn(), 0); }},
    {"calcPortWorldWideNameOutsideTheTable",
     [](DataCache &cache) { refused([&] { cache.calcPortWorldWideName(localName(), 256); }); }},
    {"calcPortWwn", [](DataCache &cache) { cache.calcPortWwn(support::kSwitchWwn, "0"); }},
    {"calcPortWwnOfNone", [](DataCache &cache) { cache.calcPortWwn("", "-1"); }},
    {"calcPortIndex", [](DataCache &cache) { cache.calcPortIndex(localName(), Wwn()); }},
    {"calcPortIndexOfText", [](DataCache &cache) { cache.calcPortIndex(support::kSwitchWwn, ""); }},
    {"calcPortIndexOfARemoteSwitch", [](DataCache &cache) { cache.calcPortIndex(Wwn(), Wwn()); }},
    {"getTransceiverDDMSupported", [](DataCache &cache) { cache.getTransceiverDDMSupported("0"); }},
    {"getTransceiverDDMSupportedOutsideTheTable",
     [](DataCache &cache) { refused([&] { cache.getTransceiverDDMSupported("256"); }); }},
    {"getTransceiverFormat", [](DataCache &cache) { cache.getTransceiverFormat("0"); }},
    {"getTransceiverVendorOUI", [](DataCache &cache) { cache.getTransceiverVendorOUI("0"); }},
    {"getTransceiverVendorSN", [](DataCache &cache) { cache.getTransceiverVendorSN("0"); }},
    {"getTransceiverVendorSNOfNone", [](DataCache &cache) { cache.getTransceiverVendorSN(""); }},
    {"getRootPortIndexForTransceiver", [](DataCache &cache) { cache.getRootPortIndexForTransceiver("", ""); }},
    {"sanitizedMediaVendorSN", [](DataCache &cache) { cache._sanitizedMediaVendorSN("AB"); }},
    {"getFabric", [](DataCache &cache) { cache.getFabric(1); }},
    {"getFabricOfNone", [](DataCache &cache) { cache.getFabric(0); }},
    {"zovlibNotificationCB",
     [](DataCache &) {
         zov_event_s event = {};
         event.code = ZOV_EVENT_SWITCH_STATE_CHANGE;
         DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
     }},
    {"zovlibNotificationCBOfAnUnhandledCode",
     [](DataCache &) {
         zov_event_s event = {};
         DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
     }},
    {"queueZovlibEvent", [](DataCache &cache) { cache.queueZovlibEvent(new zov_event_s{}); }},
    {"zovlibEventKick",
     [](DataCache &cache) { cache.zovlibEventKick(ZOV_EVENT_SWITCH_STATE_CHANGE, nullptr, "text"); }},
    OPERATION(updateZoningCounts),
    OPERATION(initZoningLimits),
    OPERATION(reloadZoning),
    OPERATION(_getZoningInfo),
    {"getFirstZoneset", [](DataCache &cache) { cache.getFirstZoneset(kind); }},
    {"getNextZoneset", [](DataCache &cache) { cache.getNextZoneset(nullptr, kind); }},
    {"getZoneset", [](DataCache &cache) { cache.getZoneset("[UberZoneSetKey]", kind); }},
    {"getZonesetOfNone", [](DataCache &cache) { cache.getZoneset(nullptr, kind); }},
    {"isActiveZoneset", [](DataCache &cache) { cache.isActiveZoneset(nullptr); }},
    {"isUberZoneset", [](DataCache &cache) { cache.isUberZoneset(nullptr); }},
    OPERATION(getActiveZoneset),
    OPERATION(getUberZoneset),
    {"addZoneset", [](DataCache &cache) { cache.addZoneset(nullptr, ZONESET_INACTIVE); }},
    {"addZonesetOfTheActiveKind", [](DataCache &cache) { cache.addZoneset(nullptr, ZONESET_ACTIVE); }},
    {"delZoneset", [](DataCache &cache) { cache.delZoneset(nullptr, ZONESET_INACTIVE); }},
    {"delZonesetOfTheUberKind", [](DataCache &cache) { cache.delZoneset(nullptr, ZONESET_UBER); }},
    OPERATION(clearActive),
    OPERATION(clearInactive),
    OPERATION(clearUber),
    OPERATION(clearZoningCache),
    OPERATION(zonesetLimitAtMax),
    OPERATION(zoneLimitAtMax),
    OPERATION(aliasLimitAtMax),
    OPERATION(memberLimitAtMax),
    {"zonesPerZonesetAtMax", [](DataCache &cache) { cache.zonesPerZonesetAtMax(nullptr); }},
    {"membersPerZoneAtMax", [](DataCache &cache) { cache.membersPerZoneAtMax(nullptr); }},
    {"membersPerAliasAtMax", [](DataCache &cache) { cache.membersPerAliasAtMax(nullptr); }},
    OPERATION(getZoningCounts),
    OPERATION(getZoningLimits),
    OPERATION(dump),
    {"createZoneset", [](DataCache &cache) { cache.createZoneset("set"); }},
    {"createZonesetOfNoName", [](DataCache &cache) { cache.createZoneset(nullptr); }},
    {"removeZoneset", [](DataCache &cache) { cache.removeZoneset("set"); }},
    {"createZone", [](DataCache &cache) { cache.createZone("oak", ZOV_ZT_SOFT); }},
    {"createZoneOfNoName", [](DataCache &cache) { cache.createZone(nullptr, ZOV_ZT_SOFT); }},
    {"removeZone", [](DataCache &cache) { cache.removeZone("oak"); }},
    {"createZoneAlias", [](DataCache &cache) { cache.createZoneAlias("web"); }},
    {"removeZoneAlias", [](DataCache &cache) { cache.removeZoneAlias("web"); }},
    {"addMemberToZone", [](DataCache &cache) { cache.addMemberToZone("oak", ZOV_ZMT_ALIAS, "web"); }},
    {"removeMemberFromZone", [](DataCache &cache) { cache.removeMemberFromZone("oak", ZOV_ZMT_ALIAS, "web"); }},
    {"addMemberToZoneAlias", [](DataCache &cache) { cache.addMemberToZoneAlias("web", ZOV_ZMT_FCADDRESS, "010300"); }},
    {"removeMemberFromZoneAlias",
     [](DataCache &cache) { cache.removeMemberFromZoneAlias("web", ZOV_ZMT_FCADDRESS, "010300"); }},
    {"removeMember", [](DataCache &cache) { cache.removeMember(ZOV_ZMT_FCADDRESS, "010300"); }},
    {"removeMemberOfNoName", [](DataCache &cache) { cache.removeMember(ZOV_ZMT_FCADDRESS, nullptr); }},
    {"addZoneToZoneset", [](DataCache &cache) { cache.addZoneToZoneset("set", "oak"); }},
    {"removeZoneFromZoneset", [](DataCache &cache) { cache.removeZoneFromZoneset("set", "oak"); }},
    {"ZoningLock", [](DataCache &cache) { cache.ZoningLock("provider"); }},
    {"ZoningLockOfNobody", [](DataCache &cache) { cache.ZoningLock(nullptr); }},
    OPERATION(ZoningUnlock),
    {"LockIdOK",
     [](DataCache &cache) {
         bool expired = false;
         cache.LockIdOK("provider", expired);
     }},
    OPERATION(getZoningLockHolder),
    OPERATION(replaceZoningDB),
};

/// What touches no member, and may be called while a long pass runs.
const Operation kFree[] = {
    {"tagToString", [](DataCache &) { DataCache::_tagToString(32); }},
    {"fabricContainsWWN", [](DataCache &cache) { cache._fabricContainsWWN({}, Wwn()); }},
    {"CIMMemberTypeToZovlib", [](DataCache &) { ZoningCache::CIMMemberTypeToZovlib(2); }},
    {"cnvCIMZoneTypeToZOV", [](DataCache &) { ZoningCache::cnvCIMZoneTypeToZOV(2); }},
    {"smlConvToHardwareStatus", [](DataCache &cache) { cache._smlConvToHardwareStatus("Good"); }},
    {"smlHWTypeToCIMHWType", [](DataCache &cache) { cache.smlHWTypeToCIMHWType("text"); }},
    {"smlTypeToCIMType", [](DataCache &cache) { cache.smlTypeToCIMType("text"); }},
    {"smlPortStateToCIMOperationalStatus",
     [](DataCache &cache) { cache.smlPortStateToCIMOperationalStatus("Online", ""); }},
    {"smlIOBladeStateToCIMOperationalStatus",
     [](DataCache &cache) { cache.smlIOBladeStateToCIMOperationalStatus("Online", "", ""); }},
    {"smlSwitchStateToCIMOperationalStatus",
     [](DataCache &cache) { cache.smlSwitchStateToCIMOperationalStatus("Online", {}); }},
};

std::string nameOf(const testing::TestParamInfo<Operation> &row) {
    return row.param.name;
}

// ---- the tests -------------------------------------------------------------------------------------------

class Locking : public support::CacheTest, public testing::WithParamInterface<Operation> {
protected:
    void SetUp() override {
        load();
        isLooking = true;
        DataCache::getInstance();
        isLooking = false;
        cacheLock = lastTaken.load();
        DataCache::releaseInstance();
        _cache = &cache();
    }

    /// Calls the operation on a thread of its own, with the lock watched. Join it after the lock has been given back.
    std::thread call() {
        return std::thread([this] {
            isWatched = true;
            GetParam().call(*_cache);
            isWatched = false;
            _balance = depth;
            _finished = true;
        });
    }

    DataCache *_cache = nullptr;
    std::atomic<bool> _finished{false};
    std::atomic<int> _balance{0};
};

class LockingOperation : public Locking {};

TEST_P(LockingOperation, WaitsForTheLockBeforeItDoesAnythingAndGivesItBackOnce) {
    DataCache::getInstance();
    std::thread other = call();
    EXPECT_TRUE(support::waitUntil([this] { return isAboutToWait || _finished; }));
    EXPECT_TRUE(isAboutToWait);
    EXPECT_FALSE(_finished);
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(traffic(), IsEmpty());
    DataCache::releaseInstance();
    other.join();
    EXPECT_EQ(timesTaken, GetParam().times) << "for its whole run";
    EXPECT_EQ(questionsWithoutLock, 0);
    EXPECT_EQ(_balance, 0);
    EXPECT_TRUE(support::isLockFree());
}

INSTANTIATE_TEST_SUITE_P(Every, LockingOperation, testing::ValuesIn(kLocking), nameOf);

class LockFreeOperation : public Locking {};

TEST_P(LockFreeOperation, DoesNotWaitForTheLock) {
    DataCache::getInstance();
    std::thread other = call();
    EXPECT_TRUE(support::waitUntil([this] { return isAboutToWait || _finished; }));
    EXPECT_TRUE(_finished);
    DataCache::releaseInstance();
    other.join();
    EXPECT_EQ(timesTaken, 0);
}

INSTANTIATE_TEST_SUITE_P(Every, LockFreeOperation, testing::ValuesIn(kFree), nameOf);

} // namespace
