// Limits and counts of a zoning database that has not been loaded.
#include <algorithm>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kNothingCounted = "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0";

class ZoningLimits : public support::CacheTest {
protected:
    void refuseLimits(int times) {
        sim::Fault fault;
        fault.call = "zov_fzsGetZoningLimitations";
        fault.result = 7;
        fault.times = times;
        theSwitch->addFault(fault);
    }
};

TEST_F(ZoningLimits, AreAskedForOnceAfterAnEmptyCount) {
    connect();
    EXPECT_TRUE(cache().initZoningLimits());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_THAT(traffic(), ElementsAre("zov_fzsGetZoningLimitations"));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLimits, AreNotLoadedWhenTheSwitchRefuses) {
    connect();
    refuseLimits(1);
    EXPECT_FALSE(cache().initZoningLimits());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_TRUE(support::isLockFree());
    EXPECT_TRUE(cache().initZoningLimits()) << "the next time it answers";
}

TEST_F(ZoningLimits, AreLoadedWhenTheCacheIsMade) {
    EXPECT_TRUE(DataCache::init());
    const std::vector<std::string> lines = support::messagesSince(0);
    const auto counted = std::find(lines.begin(), lines.end(), kNothingCounted);
    ASSERT_NE(counted, lines.end());
    EXPECT_THAT(std::vector<std::string>(counted + 1, lines.end()), ElementsAre("DCACHE: Zoning limits loaded"));
}

TEST_F(ZoningLimits, ARefusalIsNoErrorOfTheCache) {
    refuseLimits(-1);
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(support::messagesSince(0), Contains("DCACHE: Zoning limits failed to load"));
}

TEST_F(ZoningLimits, CountingNeedsNoSwitch) {
    connect();
    EXPECT_TRUE(cache().updateZoningCounts());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_THAT(traffic(), IsEmpty());
    EXPECT_TRUE(support::isLockFree());
}

} // namespace
