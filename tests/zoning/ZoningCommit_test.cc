// The commit of the cached database, and the conversions from the numbers of CIM.
#include "foundation/MERO_Except.h"
#include "tests/zoning/CommitTest.h"

#include <stdexcept>

#include <fmt/format.h>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr const char *kSessionFailed = "DCACHE: Zoning session failed";

class ZoningCommit : public CommitTest {
protected:
    void SetUp() override {
        cache->ZoningLock("provider");
        sent();
        forget();
    }
    /// The one batch that has been sent.
    Lines batch() {
        const std::vector<Lines> batches = sent();
        EXPECT_EQ(batches.size(), 1U);
        return batches.empty() ? Lines() : batches.front();
    }
};

TEST_F(ZoningCommit, OfAnEmptyDatabaseEmptiesTheSwitch) {
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(batch(), ElementsAre("Cmd.Zoning.EditConfig", "Cmd.Zoning.ClearConfig", "Cmd.Zoning.SaveConfig",
                                     "Cmd.Zoning.FabricUnlock.77", "Cmd.Switch.RelAdmin"));
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(isHeldBy("provider")) << "the cache's own picture of the lock stays";
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningCommit, IsSentWithoutTheLockToo) {
    cache->ZoningUnlock();
    sent();
    EXPECT_TRUE(cache->replaceZoningDB()) << "whether a client may commit is for the switch to say";
    EXPECT_EQ(batch().size(), 5U);
}

TEST_F(ZoningCommit, AnExceptionOfTheLibraryOnTheWayIsLoggedByItsKind) {
    const std::size_t mark = support::messagesIn(support::kCriticalLog).size();
    whileSending([] { throw MERO_Except("Source.cc", "routine", 7, EXCEPT_INFO, "note %d", 3); });
    EXPECT_FALSE(cache->replaceZoningDB());
    EXPECT_THAT(log(), ElementsAre("Exception[INFO]:Source.cc:routine[7] note 3"));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog).size(), mark);
    forget();
    whileSending([] { throw MERO_Except("Source.cc", "routine", 8, EXCEPT_CRIT, "%s", "worse"); });
    EXPECT_FALSE(cache->replaceZoningDB());
    EXPECT_THAT(log(), ElementsAre("Exception[CRIT]:Source.cc:routine[8] worse"));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog).size(), mark + 1);
    EXPECT_EQ(keptBy([this] { cache->replaceZoningDB(); }), 0) << "the batch is freed";
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningCommit, AnyOtherExceptionPassesWithTheLockGivenBack) {
    whileSending([] { throw std::runtime_error("not the library's"); });
    EXPECT_THROW(cache->replaceZoningDB(), std::runtime_error);
    EXPECT_TRUE(support::isLockFree());
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(ZoningCommit, AStatusThatTheSwitchLibraryDoesNotTouchIsNoRefusal) {
    scripted::setBatch = [](zov_handle_t, SmlMessage *, int32_t) { return 0; };
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(isHeldBy("provider"));
}

TEST_F(ZoningCommit, SendsAliasesZonesAndZoneSetsInTheirOrder) {
    load();
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(batch(), ElementsAreArray({
                             "Cmd.Zoning.EditConfig",
                             "Cmd.Zoning.ClearConfig",
                             "Cmd.Zoning.Alias.web.Create",
                             "Cmd.Zoning.Alias.web.AddZoneMember.010200",
                             "Cmd.Zoning.Alias.web.AddZoneMember.010300",
                             "Cmd.Zoning.Zone.oak.Create",
                             "Cmd.Zoning.Zone.oak.ZoneType.Soft",
                             "Cmd.Zoning.Zone.oak.AddZoneMember.010100",
                             "Cmd.Zoning.Zone.oak.AddZoneMember.web",
                             "Cmd.Zoning.Zone.elm.Create",
                             "Cmd.Zoning.Zone.elm.ZoneType.HardACL",
                             "Cmd.Zoning.Zone.elm.AddZoneMember.010a",
                             "Cmd.Zoning.ZoneSet.Alpha.Create",
                             "Cmd.Zoning.ZoneSet.Alpha.AddZone.oak",
                             "Cmd.Zoning.ZoneSet.live.Create",
                             "Cmd.Zoning.ZoneSet.live.AddZone.oak",
                             "Cmd.Zoning.ZoneSet.beta.Create",
                             "Cmd.Zoning.ZoneSet.beta.AddZone.oak",
                             "Cmd.Zoning.SaveConfig",
                             "Cmd.Zoning.FabricUnlock.77",
                             "Cmd.Switch.RelAdmin",
                         }));
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(ZoningCommit, BeforeTheFirstLoadThereAreOnlyTheZoneSetsOfTheCache) {
    load();
    cache->clearUber();
    cache->clearActive();
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(batch(), ElementsAre("Cmd.Zoning.EditConfig", "Cmd.Zoning.ClearConfig",
                                     "Cmd.Zoning.ZoneSet.Alpha.Create", "Cmd.Zoning.ZoneSet.Alpha.AddZone.oak",
                                     "Cmd.Zoning.ZoneSet.beta.Create", "Cmd.Zoning.ZoneSet.beta.AddZone.oak",
                                     "Cmd.Zoning.SaveConfig", "Cmd.Zoning.FabricUnlock.77", "Cmd.Switch.RelAdmin"));
}

TEST_F(ZoningCommit, NamesOfAnyLengthAndMembersThatCannotBeReadGoIntoTheBatch) {
    const std::string name(64, 'n');
    uber = scripted::zoneset("uber");
    scripted::Object *alias = scripted::alias(uber, name);
    scripted::member(alias, ZOV_ZMT_PORTWWN, "100000C0DD00A1B2");
    scripted::member(alias, ZOV_ZMT_NODENAME, "100000C0DD00A1B2");
    scripted::member(scripted::zone(uber, name, ZOV_ZT_HARDVPF), ZOV_ZMT_ALIAS, name);
    scripted::zone(uber, "odd", static_cast<zov_fzs_zone_type_e>(77));
    enter(uber, ZONESET_UBER);
    EXPECT_TRUE(cache->replaceZoningDB());
    const Lines all = batch();
    EXPECT_THAT(Lines(all.begin() + 2, all.end() - 3),
                ElementsAre(fmt::format("Cmd.Zoning.Alias.{}.Create", name),
                            fmt::format("Cmd.Zoning.Alias.{}.AddZoneMember.100000C0DD00A1B2", name),
                            fmt::format("Cmd.Zoning.Alias.{}.AddZoneMember.Invalid", name),
                            fmt::format("Cmd.Zoning.Zone.{}.Create", name),
                            fmt::format("Cmd.Zoning.Zone.{}.ZoneType.HardVPF", name),
                            fmt::format("Cmd.Zoning.Zone.{0}.AddZoneMember.{0}", name), "Cmd.Zoning.Zone.odd.Create",
                            "Cmd.Zoning.Zone.odd.ZoneType.Invalid"));
    fail("ZoneAliasListMembers");
    fail("MemberGetAttr", 2);
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_EQ(batch()[3], fmt::format("Cmd.Zoning.Alias.{}.AddZoneMember.Invalid", name));
}

TEST_F(ZoningCommit, IsOneExchangeWhateverItsSize) {
    uber = scripted::zoneset("uber");
    for (int i = 0; i < 300; ++i)
        scripted::zone(uber, "zone" + std::to_string(i));
    enter(uber, ZONESET_UBER);
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_EQ(batch().size(), 2U + 2 * 300 + 3);
}

TEST_F(ZoningCommit, KeepsNoMemory) {
    load();
    EXPECT_EQ(keptBy([this] { cache->replaceZoningDB(); }), 0);
    breakDown(2);
    EXPECT_EQ(keptBy([this] { cache->replaceZoningDB(); }), 0);
    EXPECT_EQ(keptBy([this] {
                  fail("ZoneGetType");
                  cache->replaceZoningDB();
                  scripted::zoning.faults = std::vector<scripted::Fault>();
              }),
              0);
}

// ---- a commit that fails -----------------------------------------------------------------------------

TEST_F(ZoningCommit, ARejectedOneIsSentAllTheSameAndLosesTheLock) {
    load();
    refuse("Cmd.Zoning.SaveConfig");
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(log(), ElementsAre("DCACHE: sml command='Cmd.Zoning.SaveConfig', smlerror='0x5'", kSessionFailed));
    EXPECT_FALSE(isHeldBy("provider"));
    EXPECT_EQ(cache->getZoningLockHolder(), "");
    EXPECT_EQ(sent().size(), 1U) << "no lock is given back a second time";
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningCommit, AnExchangeThatFailsLosesTheLockToo) {
    breakDown(2);
    EXPECT_TRUE(cache->replaceZoningDB());
    EXPECT_THAT(log(), ElementsAre(kSessionFailed));
    EXPECT_FALSE(isHeldBy("provider"));
}

TEST_F(ZoningCommit, IsNotSentWhenTheDatabaseCannotBeReadWhole) {
    load();
    const struct {
        int line;
        const char *call;
        int nth;
    } rows[] = {
        {902, "ZonesetListAliases", 1}, {905, "ZoneAliasGetName", 1}, {927, "ZonesetListZones", 1},
        {930, "ZoneGetName", 1},        {933, "ZoneGetType", 1},      {955, "ZonesetGetName", 1},
        {964, "ZonesetListZones", 3},   {967, "ZoneGetName", 3},      {927, "ZonesetListZones", 2},
        {955, "ZonesetGetName", 3},     {967, "ZoneGetName", 5},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.call);
        forget();
        const std::size_t critical = support::messagesIn(support::kCriticalLog).size();
        fail(row.call, row.nth);
        EXPECT_FALSE(cache->replaceZoningDB());
        const std::string line =
            fmt::format("Exception[CRIT]:ZoningCache.cc:replaceZoningDB[{}] Internal consistency error", row.line);
        EXPECT_THAT(log(), ElementsAre(line));
        const Lines lines = support::messagesIn(support::kCriticalLog);
        EXPECT_THAT(Lines(lines.begin() + static_cast<long>(critical), lines.end()), ElementsAre(line));
        EXPECT_TRUE(isHeldBy("provider"));
        EXPECT_TRUE(support::isLockFree());
    }
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(ZoningCommit, WithoutMemoryForABatchNothingIsSent) {
    load();
    for (const long call : {1, 2}) {
        const support::MemoryFailure failure(call);
        EXPECT_FALSE(cache->replaceZoningDB());
        EXPECT_TRUE(support::MemoryFailure::happened());
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_TRUE(isHeldBy("provider"));
}

// Memory is withheld between the calls of the switch library, where only a batch that is full asks for some. More and
// more aliases in front move every command to where the batch is full.
TEST_F(ZoningCommit, WithoutMemoryForAnyOfItsCommandsNothingIsSent) {
    load();
    scripted::zoning.enter = [] { support::calls_until_failure = 0; };
    scripted::zoning.leave = [] { support::calls_until_failure = 1; };
    bool hasFailed = false;
    for (int aliases = 1; aliases <= 30; ++aliases) { // 21 commands, and one for each of them
        scripted::alias(uber, "filler" + std::to_string(aliases));
        SCOPED_TRACE(aliases);
        const bool full = aliases > 30 - 21;
        const bool done = cache->replaceZoningDB();
        hasFailed = hasFailed || !done;
        support::calls_until_failure = 0;
        EXPECT_EQ(done, !full);
        EXPECT_EQ(sent().size(), full ? 0U : 1U);
        EXPECT_TRUE(isHeldBy("provider"));
        EXPECT_TRUE(support::isLockFree());
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_THAT(log(), IsEmpty());
    scripted::zoning.enter = scripted::zoning.leave = nullptr;
    EXPECT_EQ(keptBy([this] {
                  scripted::zoning.enter = [] { support::calls_until_failure = 0; };
                  scripted::zoning.leave = [] { support::calls_until_failure = 1; };
                  cache->replaceZoningDB();
                  support::calls_until_failure = 0;
                  scripted::zoning.enter = scripted::zoning.leave = nullptr;
              }),
              1)
        << "the messages of the batch, on purpose";
}

// ---- conversions -------------------------------------------------------------------------------------

TEST(ZoningConversions, FromTheNumbersOfCim) {
    const std::vector<zov_fzs_zonemember_type_e> members = {ZOV_ZMT_UNKNOWN,   ZOV_ZMT_UNKNOWN,    ZOV_ZMT_PORTWWN,
                                                            ZOV_ZMT_FCADDRESS, ZOV_ZMT_DOMAINPORT, ZOV_ZMT_UNKNOWN};
    for (int type = 0; type < 6; ++type)
        EXPECT_EQ(ZoningCache::CIMMemberTypeToZovlib(type), members[static_cast<std::size_t>(type)]) << type;
    const std::vector<zov_fzs_zone_type_e> zones = {ZOV_ZT_INVALID, ZOV_ZT_HARDACL, ZOV_ZT_SOFT, ZOV_ZT_INVALID};
    for (int type = 0; type < 4; ++type)
        EXPECT_EQ(ZoningCache::cnvCIMZoneTypeToZOV(type), zones[static_cast<std::size_t>(type)]) << type;
    for (const int type : {-1, 256 + 2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(ZoningCache::CIMMemberTypeToZovlib(type), ZOV_ZMT_UNKNOWN);
        EXPECT_EQ(ZoningCache::cnvCIMZoneTypeToZOV(type), ZOV_ZT_INVALID);
    }
}

} // namespace
