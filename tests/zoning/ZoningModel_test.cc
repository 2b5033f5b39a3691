// The zone sets of the cached database: how they are found, entered and destroyed.
#include "tests/support/Lock.h"
#include "tests/zoning/ZoningTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kNoKind = static_cast<_ZoneSetTypes>(3);

class ZoningModel : public ZoningTest {
protected:
    /// The names and kinds of all zone sets, as a client walks them.
    Lines walk() const {
        Lines all;
        _ZoneSetTypes kind = kNoKind;
        for (void *each = cache->getFirstZoneset(kind); each != nullptr; each = cache->getNextZoneset(each, kind))
            all.push_back(static_cast<scripted::Object *>(each)->name + " " + std::to_string(kind));
        return all;
    }
    int zonesets() const { return cache->getZoningCounts().zonesets; }
};

// ---- lookups -----------------------------------------------------------------------------------------

TEST_F(ZoningModel, AnEmptyCacheFindsNothingAndLeavesTheKindAlone) {
    _ZoneSetTypes kind = kNoKind;
    EXPECT_EQ(cache->getFirstZoneset(kind), nullptr);
    EXPECT_EQ(cache->getNextZoneset(nullptr, kind), nullptr);
    EXPECT_EQ(cache->getZoneset("Alpha", kind), nullptr);
    EXPECT_EQ(cache->getZoneset(kActiveKey, kind), nullptr);
    EXPECT_EQ(cache->getZoneset(nullptr, kind), nullptr);
    EXPECT_EQ(kind, kNoKind);
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningModel, TheWalkGoesByTheBytesOfTheKeys) {
    load();
    enter(scripted::zoneset("9th"), ZONESET_INACTIVE);
    enter(scripted::zoneset("_low"), ZONESET_INACTIVE);
    enter(scripted::zoneset("Zulu"), ZONESET_INACTIVE);
    EXPECT_THAT(walk(), ElementsAre("9th 1", "Alpha 1", "Zulu 1", "live 0", "uber 2", "_low 1", "beta 1"));
}

TEST_F(ZoningModel, AfterTheLastAndAfterAStrangerComesNothing) {
    load();
    _ZoneSetTypes kind = kNoKind;
    EXPECT_EQ(cache->getNextZoneset(beta, kind), nullptr);
    EXPECT_EQ(cache->getNextZoneset(this, kind), nullptr);
    EXPECT_EQ(cache->getNextZoneset(nullptr, kind), nullptr);
    EXPECT_EQ(kind, kNoKind);
    EXPECT_EQ(cache->getNextZoneset(live, kind), uber);
    EXPECT_EQ(kind, ZONESET_UBER);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ZoningModel, AZoneSetIsFoundUnderItsKeyOnly) {
    load();
    _ZoneSetTypes kind = kNoKind;
    for (const char *name : {"alpha", "Alph", "Alpha ", "", "live", "uber", "ActiveZoneSetKey"})
        EXPECT_EQ(cache->getZoneset(name, kind), nullptr) << name;
    EXPECT_EQ(kind, kNoKind);
    EXPECT_EQ(cache->getZoneset("Alpha", kind), alpha);
    EXPECT_EQ(kind, ZONESET_INACTIVE);
    EXPECT_EQ(cache->getZoneset(kActiveKey, kind), live);
    EXPECT_EQ(kind, ZONESET_ACTIVE);
    EXPECT_EQ(cache->getZoneset(kUberKey, kind), uber);
    EXPECT_EQ(kind, ZONESET_UBER);
}

TEST_F(ZoningModel, TheActiveAndTheUberZoneSetAreKnownByTheirHandles) {
    EXPECT_TRUE(cache->isActiveZoneset(nullptr)) << "there is none";
    EXPECT_TRUE(cache->isUberZoneset(nullptr)) << "there is none";
    load();
    EXPECT_EQ(cache->getActiveZoneset(), live);
    EXPECT_EQ(cache->getUberZoneset(), uber);
    EXPECT_TRUE(cache->isActiveZoneset(live));
    EXPECT_FALSE(cache->isActiveZoneset(uber));
    EXPECT_FALSE(cache->isActiveZoneset(nullptr));
    EXPECT_TRUE(cache->isUberZoneset(uber));
    EXPECT_FALSE(cache->isUberZoneset(alpha));
    EXPECT_FALSE(cache->isUberZoneset(nullptr));
}

// ---- entering ----------------------------------------------------------------------------------------

TEST_F(ZoningModel, AnEnteredZoneSetIsCounted) {
    EXPECT_EQ(cache->addZoneset(scripted::zoneset("Alpha"), ZONESET_INACTIVE), 0);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetName(Alpha)"));
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 1, zl = 0, al = 0, zml = 0"));
    EXPECT_EQ(zonesets(), 1);
}

TEST_F(ZoningModel, TheActiveAndTheUberZoneSetAreNotCountedAndNotAskedForTheirNames) {
    enter(scripted::zoneset("a"), ZONESET_ACTIVE);
    EXPECT_THAT(calls(), IsEmpty());
    enter(scripted::zoneset("b"), ZONESET_UBER);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetZoneCount(b)", "ZonesetGetAliasCount(b)"));
    EXPECT_EQ(zonesets(), 0);
}

TEST_F(ZoningModel, ASecondZoneSetOfTheNameIsRefusedAndStaysTheCallers) {
    load();
    scripted::Object *again = scripted::zoneset("Alpha");
    EXPECT_EQ(cache->addZoneset(again, ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->addZoneset(alpha, ZONESET_INACTIVE), -1);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetName(Alpha)", "ZonesetGetName(Alpha)"));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_EQ(zonesets(), 2);
    _ZoneSetTypes kind = kNoKind;
    EXPECT_EQ(cache->getZoneset("Alpha", kind), alpha);
    EXPECT_FALSE(again->destroyed);
}

TEST_F(ZoningModel, ASecondActiveOrUberZoneSetIsRefusedButTakenForSuch) {
    load();
    scripted::Object *otherLive = scripted::zoneset("other");
    scripted::Object *otherUber = scripted::zoneset("other uber");
    EXPECT_EQ(cache->addZoneset(otherLive, ZONESET_ACTIVE), -1);
    EXPECT_EQ(cache->addZoneset(otherUber, ZONESET_UBER), -1);
    EXPECT_EQ(cache->getActiveZoneset(), otherLive);
    EXPECT_EQ(cache->getUberZoneset(), otherUber);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "live 0", "uber 2", "beta 1"));
    EXPECT_THAT(calls(), IsEmpty());
    cache.reset();
    EXPECT_EQ(scripted::zoning.alive(), 0) << "the cache owns what it takes for its own, and what it has entered";
}

TEST_F(ZoningModel, NoZoneSetIsNeverEntered) {
    load();
    void *const activeBefore = cache->getActiveZoneset();
    void *const uberBefore = cache->getUberZoneset();
    EXPECT_EQ(cache->addZoneset(nullptr, ZONESET_ACTIVE), -1);
    EXPECT_EQ(cache->addZoneset(nullptr, ZONESET_UBER), -1);
    EXPECT_EQ(cache->getActiveZoneset(), activeBefore);
    EXPECT_EQ(cache->getUberZoneset(), uberBefore);
}

TEST_F(ZoningModel, WhatHasNoReadableNameIsNotEntered) {
    fail("ZonesetGetName");
    EXPECT_EQ(cache->addZoneset(scripted::zoneset("Alpha"), ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->addZoneset(nullptr, ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->addZoneset(scripted::zoneset("Alpha"), kNoKind), -1);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetName(Alpha)"));
    EXPECT_THAT(walk(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(ZoningModel, ADefinedZoneSetMayBeNamedLikeTheKeyOfTheActiveOne) {
    load();
    EXPECT_EQ(cache->addZoneset(scripted::zoneset(kActiveKey), ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->getActiveZoneset(), live);
}

// ---- deleting ----------------------------------------------------------------------------------------

TEST_F(ZoningModel, ADeletedZoneSetIsDestroyedAndNoLongerCounted) {
    load();
    const long before = scripted::zoning.alive();
    EXPECT_EQ(cache->delZoneset(beta, ZONESET_INACTIVE), 0);
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 1, zl = 2, al = 1, zml = 7"));
    EXPECT_EQ(scripted::zoning.alive(), before - 3) << "with its zone and that zone's member";
    expectCallsAndRecount({"ZonesetGetName(beta)", "ZonesetDestroy(beta)"});
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "live 0", "uber 2"));
}

TEST_F(ZoningModel, DeletingTheActiveOrTheUberZoneSetForgetsItsHandle) {
    load();
    EXPECT_EQ(cache->delZoneset(live, ZONESET_ACTIVE), 0);
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    expectCallsAndRecount({"ZonesetDestroy(live)"});
    EXPECT_EQ(cache->delZoneset(uber, ZONESET_UBER), 0);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
    EXPECT_THAT(calls(), ElementsAre("ZonesetDestroy(uber)"));
    EXPECT_EQ(log().back(), "DCACHE: zsl = 2, zl = 0, al = 0, zml = 0");
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "beta 1"));
}

TEST_F(ZoningModel, WhatHasNoReadableNameIsNotDeleted) {
    load();
    fail("ZonesetGetName");
    EXPECT_EQ(cache->delZoneset(alpha, ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->delZoneset(nullptr, ZONESET_INACTIVE), -1);
    EXPECT_EQ(cache->delZoneset(alpha, kNoKind), -1);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetName(Alpha)"));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_EQ(walk().size(), 4U);
    EXPECT_FALSE(alpha->destroyed);
}

TEST_F(ZoningModel, DeletingAZoneSetThatIsOnlyTakenForTheActiveOneLeavesNothingOfEither) {
    load();
    scripted::Object *other = scripted::zoneset("other");
    cache->addZoneset(other, ZONESET_ACTIVE);
    EXPECT_EQ(cache->delZoneset(other, ZONESET_ACTIVE), 0);
    EXPECT_TRUE(other->destroyed);
    EXPECT_TRUE(live->destroyed) << "its entry is gone, and nothing else would ever destroy it";
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
}

TEST_F(ZoningModel, DeletingTheEntryForgetsTheZoneSetThatIsOnlyTakenForTheActiveOrUberOne) {
    load();
    scripted::Object *otherLive = scripted::zoneset("other");
    scripted::Object *otherUber = scripted::zoneset("other uber");
    cache->addZoneset(otherLive, ZONESET_ACTIVE);
    cache->addZoneset(otherUber, ZONESET_UBER);
    EXPECT_EQ(cache->delZoneset(live, ZONESET_ACTIVE), 0);
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_EQ(cache->removeZoneset(kUberKey), 0);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "beta 1"));
    cache.reset();
    EXPECT_TRUE(live->destroyed && uber->destroyed);
    EXPECT_FALSE(otherLive->destroyed || otherUber->destroyed) << "they are the caller's again";
}

TEST_F(ZoningModel, DeletingAsAnotherKindLeavesNoHandleOfWhatIsDestroyed) {
    load();
    EXPECT_EQ(cache->delZoneset(live, ZONESET_INACTIVE), 0) << "by its name, under which there is no entry";
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "uber 2", "beta 1"));
    EXPECT_EQ(cache->delZoneset(uber, ZONESET_INACTIVE), 0);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "beta 1"));
    EXPECT_EQ(log().back(), "DCACHE: zsl = 2, zl = 0, al = 0, zml = 0");
}

TEST_F(ZoningModel, DeletingNothingAsTheActiveOneDestroysTheEntry) {
    load();
    EXPECT_EQ(cache->delZoneset(nullptr, ZONESET_ACTIVE), 0);
    EXPECT_TRUE(live->destroyed);
    EXPECT_EQ(walk().size(), 3U);
}

// ---- clearing ----------------------------------------------------------------------------------------

TEST_F(ZoningModel, ClearingAnEmptyCacheCountsOnceForTheDefinedZoneSetsOnly) {
    cache->clearActive();
    cache->clearUber();
    EXPECT_THAT(log(), IsEmpty());
    cache->clearInactive();
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 0, zl = 0, al = 0, zml = 0"));
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ZoningModel, ClearActiveTakesTheActiveZoneSetOnly) {
    load();
    cache->clearActive();
    EXPECT_TRUE(live->destroyed);
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_EQ(log().size(), 1U);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "uber 2", "beta 1"));
}

TEST_F(ZoningModel, ClearUberTakesTheUberZoneSetOnly) {
    load();
    cache->clearUber();
    EXPECT_TRUE(uber->destroyed);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 2, zl = 0, al = 0, zml = 0"));
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "live 0", "beta 1"));
}

TEST_F(ZoningModel, ClearInactiveTakesTheDefinedZoneSetsInOrderAndCountsOnce) {
    load();
    cache->clearInactive();
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 0, zl = 2, al = 1, zml = 7"));
    expectCallsAndRecount({"ZonesetDestroy(Alpha)", "ZonesetDestroy(beta)"});
    EXPECT_THAT(walk(), ElementsAre("live 0", "uber 2"));
    EXPECT_EQ(cache->getActiveZoneset(), live);
}

TEST_F(ZoningModel, ClearingEverythingGoesFromTheActiveZoneSetToTheUberOne) {
    load();
    cache->clearZoningCache();
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: zsl = 2, zl = 2, al = 1, zml = 7", "DCACHE: zsl = 0, zl = 2, al = 1, zml = 7",
                            "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0"));
    EXPECT_THAT(walk(), IsEmpty());
    EXPECT_EQ(scripted::zoning.alive(), 0);
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningModel, TheCacheDestroysWhatItHoldsInTheSameOrder) {
    load();
    Lines destroyed;
    cache.reset();
    for (const std::string &call : calls()) {
        if (call.rfind("ZonesetDestroy", 0) == 0)
            destroyed.push_back(call);
    }
    EXPECT_THAT(destroyed, ElementsAre("ZonesetDestroy(live)", "ZonesetDestroy(Alpha)", "ZonesetDestroy(beta)",
                                       "ZonesetDestroy(uber)"));
    EXPECT_EQ(scripted::zoning.alive(), 0);
}

TEST_F(ZoningModel, AZoneSetThatCannotBeDestroyedIsForgottenAllTheSame) {
    load();
    fail("ZonesetDestroy");
    cache->clearActive();
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_THAT(walk(), ElementsAre("Alpha 1", "uber 2", "beta 1"));
}

} // namespace
