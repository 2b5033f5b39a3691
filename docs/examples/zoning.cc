// A session that edits the zoning, a walk over it, and a lock that got too old.
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

namespace {

// [edit]
constexpr const char *kHolder = "provider session 7"; // one name per session of the provider

enum class Outcome { done, busy, notLoaded, refused, tooLate, notSent, rejected };

Outcome addZone(const char *zone, const char *member) {
    const CacheHold cache; // no refresh comes between the edits; keep the session short, everybody waits
    bool expired = false;
    if (!cache->ZoningLock(kHolder))
        return Outcome::busy; // another client has admin mode or the zoning lock
    const auto giveUp = [&cache](Outcome why) {
        cache->ZoningUnlock();
        cache->reloadZoning(); // forget what was edited: the cache holds it until the next load
        return why;
    };

    // A commit replaces the switch's whole database, so there must be one to begin with.
    if (cache->getUberZoneset() == nullptr || !cache->isAreaGood(DataCacheArea::zoning))
        return giveUp(Outcome::notLoaded);

    if (!cache->LockIdOK(kHolder, expired)) // before every edit; 90 seconds are over when `expired`
        return giveUp(Outcome::tooLate);
    if (cache->createZone(zone, ZOV_ZT_SOFT) != 0 || cache->memberLimitAtMax() ||
        cache->addMemberToZone(zone, ZOV_ZMT_PORTWWN, member) != 0)
        return giveUp(Outcome::refused);

    if (!cache->LockIdOK(kHolder, expired))
        return giveUp(Outcome::tooLate);
    if (!cache->replaceZoningDB())
        return giveUp(Outcome::notSent);
    // It was sent, and gave the lock back on the switch. A rejection shows in one thing only: the cache forgets the lock.
    if (cache->getZoningLockHolder() != kHolder)
        return giveUp(Outcome::rejected);
    return Outcome::done;
}
// [/edit]

// [walk]
void showZones() {
    const CacheHold cache; // handles are good while it is held, and until the next edit
    void *everything = cache->getUberZoneset();
    for (int32_t i = 0; everything != nullptr && i < zov_ZonesetGetZoneCount(everything); ++i) {
        void *zone = zov_ZonesetListZones(everything, i);
        std::array<char, 65> name{};
        if (zone == nullptr || zov_ZoneGetName(zone, name.data()) != 0)
            continue;
        std::printf("zone %s, %d members\n", name.data(), static_cast<int>(zov_ZoneGetMemberCount(zone)));
    }
}
// [/walk]

std::atomic<int> changes{0};

void onEvent(DataCacheEvent *event) {
    if (dynamic_cast<DCEventZoningDBChange *>(event) != nullptr)
        ++changes;
}

/// What came of an edit, once the cache has followed it.
void say(const char *what, Outcome outcome) {
    constexpr std::array<const char *, 7> words = {"done",     "busy",     "not loaded", "refused",
                                                   "too late", "not sent", "rejected"};
    example::waitUntilSettled();
    std::printf("%s: %s, DCEventZoningDBChange: %d\n", what, words[static_cast<std::size_t>(outcome)],
                changes.exchange(0));
}

void editZoning() {
    DataCache::init();
    CacheHold()->start(onEvent);
    example::waitUntilSettled();

    changes = 0;

    sim::Simulator &theSwitch = example::theSwitch();
    say("a zone", addZone("mail", "10000000C92B4402"));
    showZones();
    say("the same zone", addZone("mail", "10000000C92B4402"));
    say("a member that is none", addZone("db", "10000000C92B44"));

    theSwitch.holdZoningLockElsewhere(true);
    say("somebody else has the lock", addZone("db", "10000000C92B4401"));
    theSwitch.holdZoningLockElsewhere(false);

    sim::Fault slow; // the switch takes its time with the lock
    slow.call = "zov_smlSetBatch";
    slow.action = [&theSwitch] { theSwitch.passTime(std::chrono::seconds(91)); };
    theSwitch.addFault(slow);
    say("the switch is slow", addZone("db", "10000000C92B4401"));

    sim::Fault rejection;
    rejection.key = "Cmd.Zoning.SaveConfig";
    rejection.status = 29;
    theSwitch.addFault(rejection);
    say("the switch rejects it", addZone("db", "10000000C92B4401"));
    showZones();
    std::printf("the lock is %s, admin mode is %s\n", theSwitch.zoningLockHolder() == 0 ? "free" : "taken",
                theSwitch.adminModeHolder() == 0 ? "free" : "taken");
}

constexpr const char *kOutput = R"(
a zone: done, DCEventZoningDBChange: 1
zone mail, 1 members
the same zone: refused, DCEventZoningDBChange: 1
a member that is none: refused, DCEventZoningDBChange: 1
somebody else has the lock: busy, DCEventZoningDBChange: 0
the switch is slow: too late, DCEventZoningDBChange: 1
the switch rejects it: rejected, DCEventZoningDBChange: 1
zone mail, 1 members
the lock is free, admin mode is free
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, editZoning);
}
