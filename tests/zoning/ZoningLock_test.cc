// The fabric lock: who holds it, and for how long.
#include "tests/zoning/CommitTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ZoningLocking : public CommitTest {
protected:
    const Lines _lock = {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77"};
    const Lines _unlock = {"Cmd.Zoning.FabricUnlock.77", "Cmd.Switch.RelAdmin"};
};

// ---- taking the lock ---------------------------------------------------------------------------------

TEST_F(ZoningLocking, TheLockIsTakenWithAdminMode) {
    EXPECT_EQ(cache->getZoningLockHolder(), "");
    EXPECT_TRUE(cache->ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(_lock));
    EXPECT_EQ(cache->getZoningLockHolder(), "provider");
    EXPECT_TRUE(isHeldBy("provider"));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, NobodyCannotTakeIt) {
    cache->ZoningLock("provider");
    sent();
    EXPECT_FALSE(cache->ZoningLock(nullptr));
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_TRUE(isHeldBy("provider"));
}

TEST_F(ZoningLocking, WithoutMemoryNothingChanges) {
    cache->ZoningLock("provider");
    sent();
    support::setUptime(1050);
    for (const long call : {1, 2}) {
        const support::MemoryFailure failure(call);
        EXPECT_FALSE(cache->ZoningLock("other"));
        EXPECT_TRUE(support::MemoryFailure::happened());
    }
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    support::setUptime(1090);
    EXPECT_TRUE(isHeldBy("provider"));
    support::setUptime(1091);
    bool expired = false;
    EXPECT_FALSE(cache->LockIdOK("provider", expired)) << "the time is that of the request that was granted";
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, ARefusedLockGivesBackWhatWasGranted) {
    cache->ZoningLock("before");
    sent();
    refuse("Cmd.Zoning.FabricLock.77");
    EXPECT_FALSE(cache->ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(_lock, _unlock));
    EXPECT_THAT(log(), ElementsAre("DCACHE: sml command='Cmd.Zoning.FabricLock.77', smlerror='0x5'"));
    EXPECT_EQ(cache->getZoningLockHolder(), "");
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_FALSE(isHeldBy("before"));
    EXPECT_FALSE(isHeldBy(""));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, ALockWhoseExchangeFailsIsRefusedSilently) {
    breakDown(3);
    EXPECT_FALSE(cache->ZoningLock("provider"));
    EXPECT_THAT(sent(), ElementsAre(_lock, _unlock));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_FALSE(isHeldBy("provider"));
}

TEST_F(ZoningLocking, ARefusedLockIsForgottenEvenIfNothingCanBeGivenBack) {
    cache->ZoningLock("before");
    sent();
    breakDown(3);
    whileSending([] { support::calls_until_failure = 1; });
    EXPECT_FALSE(cache->ZoningLock("provider"));
    EXPECT_TRUE(support::MemoryFailure::happened());
    EXPECT_THAT(sent(), ElementsAre(_lock));
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_FALSE(isHeldBy("before"));
    EXPECT_FALSE(isHeldBy(""));
}

TEST_F(ZoningLocking, AHeldLockGoesOverToWhoAsksForItAgain) {
    cache->ZoningLock("first");
    support::setUptime(1080);
    EXPECT_TRUE(cache->ZoningLock("second"));
    EXPECT_THAT(sent(), ElementsAre(_lock, _lock));
    EXPECT_FALSE(isHeldBy("first"));
    EXPECT_EQ(cache->getZoningLockHolder(), "second");
    support::setUptime(1170);
    EXPECT_TRUE(isHeldBy("second")) << "from the new request on";
    EXPECT_TRUE(cache->ZoningLock("second"));
    support::setUptime(1260);
    EXPECT_TRUE(isHeldBy("second"));
}

TEST_F(ZoningLocking, TakingTheLockKeepsNoMemory) {
    EXPECT_EQ(keptBy([this] { cache->ZoningLock("provider"); }), 0);
}

// ---- how long it is good -----------------------------------------------------------------------------

TEST_F(ZoningLocking, ALockIsGoodForNinetySeconds) {
    cache->ZoningLock("provider");
    support::setUptime(1090);
    EXPECT_TRUE(isHeldBy("provider"));
    EXPECT_THAT(log(), IsEmpty());
    support::setUptime(1091);
    bool expired = false;
    EXPECT_FALSE(cache->LockIdOK("provider", expired));
    EXPECT_TRUE(expired);
    EXPECT_THAT(log(), ElementsAre("DCACHE: fabric lock interval expired at 91s"));
    EXPECT_EQ(cache->getZoningLockHolder(), "provider") << "the lock stays as it is";
    support::setUptime(1090);
    EXPECT_TRUE(isHeldBy("provider"));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, ItsAgeCountsFromTheRequest) {
    whileSending([] { support::setUptime(1040); });
    cache->ZoningLock("provider");
    support::setUptime(1090);
    EXPECT_TRUE(isHeldBy("provider"));
    support::setUptime(1091);
    bool expired = false;
    EXPECT_FALSE(cache->LockIdOK("provider", expired));
    EXPECT_TRUE(expired);
}

TEST_F(ZoningLocking, AnUptimeThatGoesBackDoesNotEndIt) {
    cache->ZoningLock("provider");
    support::setUptime(3);
    EXPECT_TRUE(isHeldBy("provider"));
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(ZoningLocking, OnlyItsVeryHolderHoldsIt) {
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_FALSE(isHeldBy(""));
    cache->ZoningLock("provider");
    for (const char *id : {"Provider", "provide", "provider ", ""})
        EXPECT_FALSE(isHeldBy(id)) << id;
    EXPECT_FALSE(isHeldBy(nullptr));
    support::setUptime(5000);
    EXPECT_FALSE(isHeldBy("other")) << "and its age does not matter then";
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(ZoningLocking, AHolderMayHaveNoName) {
    EXPECT_TRUE(cache->ZoningLock(""));
    EXPECT_TRUE(isHeldBy(""));
}

// ---- giving it back ----------------------------------------------------------------------------------

TEST_F(ZoningLocking, UnlockingGivesBackLockAndAdminMode) {
    cache->ZoningLock("provider");
    sent();
    EXPECT_TRUE(cache->ZoningUnlock());
    EXPECT_THAT(sent(), ElementsAre(_unlock));
    EXPECT_EQ(cache->getZoningLockHolder(), "");
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_FALSE(isHeldBy("")) << "nobody holds it, not even a holder without a name";
    EXPECT_TRUE(cache->ZoningUnlock()) << "whether it is held is the switch's business";
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, ARefusedUnlockIsForgottenAllTheSame) {
    cache->ZoningLock("provider");
    refuse("Cmd.Switch.RelAdmin");
    EXPECT_FALSE(cache->ZoningUnlock());
    EXPECT_THAT(log(), ElementsAre("DCACHE: sml command='Cmd.Switch.RelAdmin', smlerror='0x5'"));
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_FALSE(isHeldBy(""));
    cache->ZoningLock("provider");
    refuse("");
    breakDown(-1);
    EXPECT_FALSE(cache->ZoningUnlock());
    EXPECT_FALSE(isHeldBy("provider"));
}

TEST_F(ZoningLocking, WithoutMemoryTheLockStays) {
    cache->ZoningLock("provider");
    sent();
    for (const long call : {1, 2}) {
        const support::MemoryFailure failure(call);
        EXPECT_FALSE(cache->ZoningUnlock());
    }
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_TRUE(isHeldBy("provider"));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLocking, UnlockingLeavesItsBatchBehind) {
    EXPECT_EQ(keptBy([this] { cache->ZoningUnlock(); }), 2) << "the group and its messages, on purpose";
}

} // namespace
