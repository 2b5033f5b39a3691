// The fabric refresh looks at the answers to its first batch twice. Nothing changes them in between, so this program puts
// its own scan in the place of the access layer's to tell the two looks apart.
#include "swlib/MERO_Zov_Lib.h"
#include "tests/datacache/refresh/FabricTest.h"

namespace {

using testing::ElementsAre;

int scansUntilAnError = 0; ///< 0: none ahead
int scans = 0;

class FabricSecondLook : public FabricTest {
protected:
    bool refreshWithErrorInScan(int number) {
        scans = 0;
        scansUntilAnError = number;
        const bool good = refresh();
        scansUntilAnError = 0;
        return good;
    }
};

TEST_F(FabricSecondLook, ComesAfterTheSnapshotAndHasALineOfItsOwn) {
    join(3);
    ASSERT_TRUE(refresh());
    leave(3);
    principal(nameOf(9));
    EXPECT_FALSE(refreshWithErrorInScan(2));
    EXPECT_EQ(scans, 2);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _load_fabric_info()", "DCACHE: Initializing _origFabric with " + nameOf(3),
                                   "DCACHE: _load_fabric_info() response errors", failed("_load_fabric_info", 2042)));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog),
                testing::Contains("DCACHE: _load_fabric_info() response errors"));
    EXPECT_EQ(fabric().getFabricWwn(), support::kSwitchWwn) << "the new name is not taken over";
    EXPECT_EQ(traffic().size(), 1U);
}

TEST_F(FabricSecondLook, IsNotReachedWhenTheFirstFails) {
    EXPECT_FALSE(refreshWithErrorInScan(1));
    EXPECT_EQ(scans, 1);
    EXPECT_THAT(log(), ElementsAre("DCACHE: _load_fabric_info()", failed("_load_fabric_info", 2024)));
}

} // namespace

// The library finds this before its own.
extern "C" int isErrors(const SmlMessage *messages, int32_t count) {
    int errors = 0;
    for (int32_t i = 0; i < count; ++i)
        errors |= messages[i].status;
    return ++scans == scansUntilAnError || errors != 0 ? 1 : 0;
}
