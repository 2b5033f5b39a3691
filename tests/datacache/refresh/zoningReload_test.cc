// The refresh of zoning that a client asks for, whatever the switch's checksums say.
#include <algorithm>

#include <fmt/format.h>

#include "tests/datacache/refresh/ZoningRefreshTest.h"
#include "tests/support/WakeUps.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ZoningReload : public ZoningRefreshTest {};

TEST_F(ZoningReload, RebuildsTheDatabaseWithoutAnyChange) {
    for (const char *sum : {"B2", "FFFFFFFF"}) {
        tree[kInactiveSum] = sum;
        load();
        support::takeWakeUps();
        cache().reloadZoning();
        EXPECT_EQ(support::takeWakeUps(), 1U);
        EXPECT_TRUE(cache().workToDo());
        EXPECT_THAT(questions(), IsEmpty());
        EXPECT_THAT(log(), IsEmpty());
        EXPECT_TRUE(support::isLockFree());
        EXPECT_TRUE(refresh());
        EXPECT_EQ(fetches(), _everything);
        EXPECT_THAT(events(), ElementsAre(databaseChange()));
        EXPECT_TRUE(refresh());
        EXPECT_THAT(events(), IsEmpty());
    }
}

TEST_F(ZoningReload, IsServedByTheNextPass) {
    const auto passRefreshesZoning = [this] {
        forget();
        cache().evaluateCaches();
        const Lines lines = log();
        return std::find(lines.begin(), lines.end(), "DCACHE: Updating zoning cache") != lines.end();
    };
    EXPECT_TRUE(passRefreshesZoning());
    EXPECT_FALSE(passRefreshesZoning()) << "nobody asked";
    cache().reloadZoning();
    EXPECT_TRUE(passRefreshesZoning());
    EXPECT_THAT(events(), testing::Contains(databaseChange()));
    EXPECT_FALSE(passRefreshesZoning());
}

TEST_F(ZoningReload, IsNotLostAfterAFailure) {
    load();
    tree[kInactiveSum] = "B3";
    fail("fzsGetZonesetList");
    EXPECT_FALSE(refresh());
    cache().reloadZoning();
    EXPECT_TRUE(refresh());
    EXPECT_EQ(fetches(), _everything);
    EXPECT_THAT(events(), ElementsAre(databaseChange()));
}

TEST_F(ZoningReload, IsHiddenByAChecksumThatRisesByOne) {
    load();
    cache().reloadZoning();
    cache().reloadZoning();
    tree[kInactiveSum] = "B3";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ZoningReload, OutOfTheCallbackIsDoneWithWhenTheRefreshOfTheDatabaseEnds) {
    for (const int32_t type : {27, 28}) {
        tree[kActiveSum] = fmt::format("A{}", type);
        tree[kInactiveSum] = type == 27 ? "B2" : "D4";
        support::onEvent([type](DataCacheEvent &event) {
            if (event.type == type)
                cache().reloadZoning();
        });
        EXPECT_TRUE(refresh());
        EXPECT_THAT(events(), ElementsAre(activeChange(type == 27 ? "" : "live", "live"), databaseChange()));
        support::onEvent(nullptr);
        EXPECT_TRUE(refresh());
        EXPECT_THAT(events(), IsEmpty());
    }
}

} // namespace
