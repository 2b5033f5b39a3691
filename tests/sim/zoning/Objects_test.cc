#include "sim/zoning/Objects.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

namespace {

/// Many tests here do what no client should.
[[maybe_unused]] const bool kForgiven = (simtest::forgiveMisuse(), true);

void *portMember(unsigned number) {
    zov_fzs_memberid_s id = {};
    id.u.byte[6] = static_cast<uint8_t>(number >> 8);
    id.u.byte[7] = static_cast<uint8_t>(number);
    return zov_MemberCreate(ZOV_ZMT_PORTWWN, &id);
}

void *aliasMember(const char *name) {
    zov_fzs_memberid_s id = {};
    std::memcpy(id.u.byte, name, std::strlen(name));
    return zov_MemberCreate(ZOV_ZMT_ALIAS, &id);
}

std::string nameOf(int32_t (*read)(void *, char *), void *object) {
    char name[65];
    std::memset(name, '?', sizeof name);
    return read(object, name) == 0 ? name : "refused";
}

/// The calls that zones and aliases have in common, so that one test speaks for both.
struct Group {
    const char *what;
    void *(*create)(const char *);
    int32_t (*destroy)(void *);
    int32_t (*getName)(void *, char *);
    int32_t (*memberCount)(void *);
    void *(*listMembers)(void *, int32_t);
    void *(*findMember)(void *, zov_fzs_zonemember_type_e, zov_fzs_memberid_s *);
    int32_t (*addMember)(void *, void *);
    int32_t (*deleteMember)(void *, void **);
    int32_t (*count)(void *);
    void *(*list)(void *, int32_t);
    void *(*find)(void *, const char *);
    int32_t (*add)(void *, void *);
    int32_t (*remove)(void *, void *);
};

constexpr Group kZones = {"zone",
                          zov_ZoneCreate,
                          zov_ZoneDestroy,
                          zov_ZoneGetName,
                          zov_ZoneGetMemberCount,
                          zov_ZoneListMembers,
                          zov_ZoneFindMember,
                          zov_ZoneAddMember,
                          zov_ZoneDeleteMember,
                          zov_ZonesetGetZoneCount,
                          zov_ZonesetListZones,
                          zov_ZonesetFindZone,
                          zov_ZonesetAddZone,
                          zov_ZonesetRemoveZone};

constexpr Group kAliases = {"alias",
                            zov_ZoneAliasCreate,
                            zov_ZoneAliasDestroy,
                            zov_ZoneAliasGetName,
                            zov_ZoneAliasGetMemberCount,
                            zov_ZoneAliasListMembers,
                            zov_ZoneAliasFindMember,
                            zov_ZoneAliasAddMember,
                            zov_ZoneAliasDeleteMember,
                            zov_ZonesetGetAliasCount,
                            zov_ZonesetListAliases,
                            zov_ZonesetFindAlias,
                            zov_ZonesetAddAlias,
                            zov_ZonesetRemoveAlias};

void PrintTo(const Group &group, std::ostream *out) {
    *out << group.what;
}

class Groups : public testing::TestWithParam<Group> {
protected:
    void *set = zov_ZonesetCreate("set");

    ~Groups() override { zov_ZonesetDestroy(set); }

    /// A group with `members` port members in the set.
    void *linked(const char *name, unsigned members = 0) {
        void *group = GetParam().create(name);
        for (unsigned number = 0; number < members; ++number)
            EXPECT_EQ(GetParam().addMember(group, portMember(number)), 0);
        EXPECT_EQ(GetParam().add(set, group), 0);
        return group;
    }
};

INSTANTIATE_TEST_SUITE_P(ZonesAndAliases, Groups, testing::Values(kZones, kAliases));

} // namespace

TEST_P(Groups, AreMadeUnderValidNamesOnly) {
    void *group = GetParam().create("oak");
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(nameOf(GetParam().getName, group), "oak");
    EXPECT_EQ(GetParam().memberCount(group), 0);
    EXPECT_EQ(GetParam().destroy(group), 0);
    for (const char *name : {"", "1oak", "oak tree", static_cast<const char *>(nullptr)})
        EXPECT_EQ(GetParam().create(name), nullptr);
    EXPECT_EQ(GetParam().create(std::string(65, 'n').c_str()), nullptr);
}

TEST_P(Groups, AreFoundInTheirSetByIndexAndByName) {
    void *oak = linked("oak");
    void *elm = linked("elm");
    EXPECT_EQ(GetParam().count(set), 2);
    EXPECT_EQ(GetParam().list(set, 0), oak);
    EXPECT_EQ(GetParam().list(set, 1), elm);
    for (const int32_t index : {2, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(GetParam().list(set, index), nullptr) << index;
    EXPECT_EQ(GetParam().find(set, "elm"), elm);
    for (const char *name : {"ELM", "el", "elmo", "", static_cast<const char *>(nullptr)})
        EXPECT_EQ(GetParam().find(set, name), nullptr);
}

TEST_P(Groups, BelongToOneSetAtMost) {
    void *oak = linked("oak");
    void *other = zov_ZonesetCreate("other");
    EXPECT_EQ(GetParam().add(set, oak), simtest::kLinked);
    EXPECT_EQ(GetParam().add(other, oak), simtest::kLinked);
    EXPECT_EQ(GetParam().remove(other, oak), simtest::kNotFound);
    EXPECT_EQ(GetParam().count(set), 1);
    EXPECT_EQ(GetParam().count(other), 0);
    EXPECT_EQ(zov_ZonesetDestroy(other), 0);
    EXPECT_EQ(nameOf(GetParam().getName, oak), "oak");
}

TEST_P(Groups, RefusedByASetStayTheCallers) {
    linked("oak");
    void *twin = GetParam().create("oak");
    EXPECT_EQ(GetParam().add(set, twin), simtest::kDuplicate);
    EXPECT_EQ(GetParam().count(set), 1);
    EXPECT_EQ(GetParam().destroy(twin), 0);
}

TEST_P(Groups, OfASetAreDestroyedThroughItOnly) {
    void *oak = linked("oak", 1);
    void *member = GetParam().listMembers(oak, 0);
    EXPECT_EQ(GetParam().destroy(oak), simtest::kLinked);
    EXPECT_EQ(nameOf(GetParam().getName, oak), "oak");
    EXPECT_EQ(GetParam().remove(set, oak), 0);
    EXPECT_EQ(GetParam().count(set), 0);
    EXPECT_EQ(nameOf(GetParam().getName, oak), "refused");
    EXPECT_EQ(zov_MemberDestroy(member), simtest::kBadObject); // went with it
    EXPECT_EQ(GetParam().remove(set, oak), simtest::kBadObject);
}

TEST_P(Groups, GoWithTheirSet) {
    void *oak = linked("oak", 2);
    void *member = GetParam().listMembers(oak, 1);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
    EXPECT_EQ(GetParam().memberCount(oak), 0);
    EXPECT_EQ(nameOf(GetParam().getName, oak), "refused");
    EXPECT_EQ(zov_MemberDestroy(member), simtest::kBadObject);
    EXPECT_EQ(zov_ZonesetDestroy(set), simtest::kBadObject);
}

TEST_P(Groups, HoldMembersInOrderEachOnce) {
    void *group = GetParam().create("oak");
    void *first = portMember(1);
    void *second = portMember(2);
    void *again = portMember(1);
    EXPECT_EQ(GetParam().addMember(group, first), 0);
    EXPECT_EQ(GetParam().addMember(group, second), 0);
    EXPECT_EQ(GetParam().addMember(group, again), simtest::kDuplicate);
    EXPECT_EQ(GetParam().addMember(group, first), simtest::kLinked);
    EXPECT_EQ(GetParam().memberCount(group), 2);
    EXPECT_EQ(GetParam().listMembers(group, 0), first);
    EXPECT_EQ(GetParam().listMembers(group, 1), second);
    for (const int32_t index : {2, -1, INT32_MAX})
        EXPECT_EQ(GetParam().listMembers(group, index), nullptr) << index;
    EXPECT_EQ(zov_MemberDestroy(again), 0); // refused, so still the caller's
    EXPECT_EQ(GetParam().destroy(group), 0);
    EXPECT_EQ(zov_MemberDestroy(first), simtest::kBadObject);
}

TEST_P(Groups, LoseAMemberThatIsDestroyed) {
    void *group = GetParam().create("oak");
    void *first = portMember(1);
    void *second = portMember(2);
    ASSERT_EQ(GetParam().addMember(group, first), 0);
    ASSERT_EQ(GetParam().addMember(group, second), 0);
    EXPECT_EQ(zov_MemberDestroy(first), 0);
    EXPECT_EQ(zov_MemberDestroy(first), simtest::kBadObject);
    EXPECT_EQ(GetParam().memberCount(group), 1);
    EXPECT_EQ(GetParam().listMembers(group, 0), second);
    zov_fzs_memberid_s id = {};
    id.u.byte[7] = 1;
    EXPECT_EQ(GetParam().findMember(group, ZOV_ZMT_PORTWWN, &id), nullptr);
    EXPECT_EQ(GetParam().addMember(group, portMember(1)), 0); // no longer there twice
    EXPECT_EQ(GetParam().memberCount(group), 2);
    EXPECT_EQ(GetParam().destroy(group), 0);
}

TEST_P(Groups, FindEachOfManyMembers) {
    constexpr unsigned kMany = 2000;
    void *group = linked("oak", kMany);
    for (unsigned number = 0; number < kMany; number += 3) {
        zov_fzs_memberid_s id = {};
        id.u.byte[6] = static_cast<uint8_t>(number >> 8);
        id.u.byte[7] = static_cast<uint8_t>(number);
        EXPECT_EQ(GetParam().findMember(group, ZOV_ZMT_PORTWWN, &id),
                  GetParam().listMembers(group, static_cast<int32_t>(number)));
    }
}

TEST_P(Groups, RemovedFromASetLeaveTheirNameFree) {
    EXPECT_EQ(GetParam().remove(set, linked("oak")), 0);
    EXPECT_EQ(GetParam().find(set, "oak"), nullptr);
    void *another = linked("oak");
    EXPECT_EQ(GetParam().find(set, "oak"), another);
}

TEST_P(Groups, FindMembersByTypeAndIdentifierWhichIsSpent) {
    void *group = GetParam().create("oak");
    void *member = portMember(258);
    ASSERT_EQ(GetParam().addMember(group, member), 0);
    zov_fzs_memberid_s id;
    std::memset(&id, 0x77, sizeof id); // beyond the eight bytes nothing counts
    std::memcpy(id.u.byte, "\0\0\0\0\0\0\1\2", 8);
    const zov_fzs_memberid_s saved = id;
    EXPECT_EQ(GetParam().findMember(group, ZOV_ZMT_PORTWWN, &id), member);
    EXPECT_NE(std::memcmp(&id, &saved, sizeof id), 0);
    EXPECT_EQ(GetParam().findMember(group, ZOV_ZMT_PORTWWN, &id), nullptr);
    for (const zov_fzs_zonemember_type_e type : {ZOV_ZMT_NODENAME, ZOV_ZMT_UNKNOWN, ZOV_ZMT_DOMAINPORT}) {
        id = saved;
        EXPECT_EQ(GetParam().findMember(group, type, &id), nullptr) << type;
    }
    EXPECT_EQ(GetParam().findMember(group, ZOV_ZMT_PORTWWN, nullptr), nullptr);
    EXPECT_EQ(GetParam().destroy(group), 0);
}

TEST_P(Groups, DeleteMembersThroughThePointerToThem) {
    void *group = GetParam().create("oak");
    void *first = portMember(1);
    void *second = portMember(2);
    ASSERT_EQ(GetParam().addMember(group, first), 0);
    void *pointer = second;
    EXPECT_EQ(GetParam().deleteMember(group, &pointer), simtest::kNotFound); // not this group's
    EXPECT_EQ(pointer, second);
    pointer = first;
    EXPECT_EQ(GetParam().deleteMember(group, &pointer), 0);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(GetParam().memberCount(group), 0);
    EXPECT_EQ(GetParam().deleteMember(group, &pointer), simtest::kBadObject); // null
    pointer = first;
    EXPECT_EQ(GetParam().deleteMember(group, &pointer), simtest::kBadObject); // dead
    EXPECT_EQ(pointer, first);
    EXPECT_EQ(GetParam().deleteMember(group, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_MemberDestroy(second), 0);
    EXPECT_EQ(GetParam().destroy(group), 0);
}

TEST_P(Groups, EveryCallRefusesWhatIsNotOne) {
    void *dead = GetParam().create("gone");
    ASSERT_EQ(GetParam().destroy(dead), 0);
    void *member = portMember(1);
    char outside = 0;
    char name[65];
    for (void *wrong : {static_cast<void *>(nullptr), dead, set, member, static_cast<void *>(&outside)}) {
        void *pointer = member;
        zov_fzs_memberid_s id = {};
        EXPECT_EQ(GetParam().destroy(wrong), simtest::kBadObject);
        EXPECT_EQ(GetParam().getName(wrong, name), simtest::kBadObject);
        EXPECT_EQ(GetParam().memberCount(wrong), 0);
        EXPECT_EQ(GetParam().listMembers(wrong, 0), nullptr);
        EXPECT_EQ(GetParam().findMember(wrong, ZOV_ZMT_PORTWWN, &id), nullptr);
        EXPECT_EQ(GetParam().addMember(wrong, member), simtest::kBadObject);
        EXPECT_EQ(GetParam().deleteMember(wrong, &pointer), simtest::kBadObject);
        EXPECT_EQ(GetParam().add(set, wrong), simtest::kBadObject);
        EXPECT_EQ(GetParam().remove(set, wrong), simtest::kBadObject);
    }
    void *group = GetParam().create("oak");
    for (void *wrong : {static_cast<void *>(nullptr), dead, set, group}) {
        EXPECT_EQ(GetParam().addMember(group, wrong), simtest::kBadObject);
        EXPECT_EQ(GetParam().getName(group, nullptr), simtest::kBadArgument);
    }
    for (void *wrong : {static_cast<void *>(nullptr), dead, group, member}) {
        EXPECT_EQ(GetParam().count(wrong), 0);
        EXPECT_EQ(GetParam().list(wrong, 0), nullptr);
        EXPECT_EQ(GetParam().find(wrong, "oak"), nullptr);
        EXPECT_EQ(GetParam().add(wrong, group), simtest::kBadObject);
        EXPECT_EQ(GetParam().remove(wrong, group), simtest::kBadObject);
    }
    EXPECT_EQ(zov_MemberDestroy(member), 0);
    EXPECT_EQ(GetParam().destroy(group), 0);
}

TEST(ZoneSets, AreMadeUnderValidNamesAndDestroyedOnce) {
    void *set = zov_ZonesetCreate("oak");
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(nameOf(zov_ZonesetGetName, set), "oak");
    EXPECT_EQ(zov_ZonesetGetName(set, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
    EXPECT_EQ(zov_ZonesetDestroy(set), simtest::kBadObject);
    EXPECT_EQ(nameOf(zov_ZonesetGetName, set), "refused");
    EXPECT_EQ(zov_ZonesetDestroy(nullptr), simtest::kBadObject);
    EXPECT_EQ(zov_ZonesetCreate("1oak"), nullptr);
    EXPECT_EQ(zov_ZonesetCreate(nullptr), nullptr);
}

TEST(ZoneSets, ADeadHandleNeverComesToLifeAgain) {
    void *dead = zov_ZoneCreate("oak");
    ASSERT_EQ(zov_ZoneDestroy(dead), 0);
    for (int i = 0; i < 1000; ++i) {
        void *zone = zov_ZoneCreate("elm");
        EXPECT_NE(zone, dead);
        EXPECT_EQ(zov_ZoneDestroy(zone), 0);
    }
}

TEST(ZoneSets, ZonesAndAliasesHaveNamesOfTheirOwn) {
    void *set = zov_ZonesetCreate("set");
    EXPECT_EQ(zov_ZonesetAddZone(set, zov_ZoneCreate("oak")), 0);
    EXPECT_EQ(zov_ZonesetAddAlias(set, zov_ZoneAliasCreate("oak")), 0);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
}

TEST(Zones, HaveATypeThatIsSoftAtFirst) {
    void *zone = zov_ZoneCreate("oak");
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID;
    ASSERT_EQ(zov_ZoneGetType(zone, &type), 0);
    EXPECT_EQ(type, ZOV_ZT_SOFT);
    for (const zov_fzs_zone_type_e next : {ZOV_ZT_HARDVPF, ZOV_ZT_HARDACL, ZOV_ZT_SOFT}) {
        EXPECT_EQ(zov_ZoneSetType(zone, next), 0);
        ASSERT_EQ(zov_ZoneGetType(zone, &type), 0);
        EXPECT_EQ(type, next);
    }
    for (const int32_t wrong : {0, 4, -1, INT32_MIN})
        EXPECT_EQ(zov_ZoneSetType(zone, static_cast<zov_fzs_zone_type_e>(wrong)), simtest::kBadArgument) << wrong;
    EXPECT_EQ(zov_ZoneGetType(zone, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_ZoneDestroy(zone), 0);
    EXPECT_EQ(zov_ZoneGetType(zone, &type), simtest::kBadObject);
    EXPECT_EQ(zov_ZoneSetType(zone, ZOV_ZT_SOFT), simtest::kBadObject);
    EXPECT_EQ(type, ZOV_ZT_SOFT);
}

TEST(Zones, AreRenamedToValidNamesThatAreFreeInTheirSet) {
    void *set = zov_ZonesetCreate("set");
    void *oak = zov_ZoneCreate("oak");
    void *elm = zov_ZoneCreate("elm");
    ASSERT_EQ(zov_ZonesetAddZone(set, oak), 0);
    ASSERT_EQ(zov_ZonesetAddZone(set, elm), 0);
    EXPECT_EQ(zov_ZoneSetName(elm, "oak"), simtest::kDuplicate);
    EXPECT_EQ(zov_ZoneSetName(elm, "elm"), 0);
    EXPECT_EQ(zov_ZoneSetName(elm, "1elm"), simtest::kBadName);
    EXPECT_EQ(zov_ZoneSetName(elm, std::string(65, 'n').c_str()), simtest::kBadName);
    EXPECT_EQ(zov_ZoneSetName(elm, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_ZoneSetName(elm, "ash"), 0);
    EXPECT_EQ(zov_ZonesetFindZone(set, "ash"), elm);
    EXPECT_EQ(zov_ZonesetFindZone(set, "elm"), nullptr);
    EXPECT_EQ(zov_ZonesetAddZone(set, zov_ZoneCreate("elm")), 0); // the name is free again
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
    EXPECT_EQ(zov_ZoneSetName(elm, "fir"), simtest::kBadObject);
}

TEST(Zones, CopiesAreDeepUnlinkedAndOfAnyNameThatFits) {
    void *set = zov_ZonesetCreate("set");
    void *oak = zov_ZoneCreate("oak");
    ASSERT_EQ(zov_ZonesetAddZone(set, oak), 0);
    ASSERT_EQ(zov_ZoneSetType(oak, ZOV_ZT_HARDACL), 0);
    ASSERT_EQ(zov_ZoneAddMember(oak, portMember(1)), 0);
    ASSERT_EQ(zov_ZoneAddMember(oak, aliasMember("ash")), 0);
    void *copy = zov_ZoneCreateCopy(oak, "^_-_-_-_TMPZONE_-_-_-_^");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0); // the copy has nothing to do with it
    EXPECT_EQ(nameOf(zov_ZoneGetName, copy), "^_-_-_-_TMPZONE_-_-_-_^");
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID;
    EXPECT_EQ(zov_ZoneGetType(copy, &type), 0);
    EXPECT_EQ(type, ZOV_ZT_HARDACL);
    EXPECT_EQ(zov_ZoneGetMemberCount(copy), 2);
    zov_fzs_zonemember_type_e memberType = ZOV_ZMT_UNKNOWN;
    char attribute[68];
    EXPECT_EQ(zov_MemberGetAttr(zov_ZoneListMembers(copy, 1), &memberType, attribute), 0);
    EXPECT_EQ(memberType, ZOV_ZMT_ALIAS);
    EXPECT_STREQ(attribute, "ash");
    zov_fzs_memberid_s id = {};
    id.u.byte[7] = 1;
    EXPECT_EQ(zov_ZoneFindMember(copy, ZOV_ZMT_PORTWWN, &id), zov_ZoneListMembers(copy, 0));
    EXPECT_EQ(zov_ZoneCreateCopy(copy, std::string(65, 'n').c_str()), nullptr);
    EXPECT_EQ(zov_ZoneCreateCopy(copy, nullptr), nullptr);
    EXPECT_EQ(zov_ZoneCreateCopy(oak, "elm"), nullptr);
    EXPECT_EQ(zov_ZoneCreateCopy(nullptr, "elm"), nullptr);
    EXPECT_EQ(zov_ZoneDestroy(copy), 0);
}

TEST(Aliases, DoNotHoldAliases) {
    void *alias = zov_ZoneAliasCreate("oak");
    void *member = aliasMember("ash");
    EXPECT_EQ(zov_ZoneAliasAddMember(alias, member), simtest::kBadMember);
    EXPECT_EQ(zov_MemberDestroy(member), 0);
    EXPECT_EQ(zov_ZoneAliasDestroy(alias), 0);
}

TEST(Members, AreReadThroughTheirAttribute) {
    void *member = portMember(0x1234);
    zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
    uint8_t attribute[68];
    EXPECT_EQ(zov_MemberGetAttr(member, nullptr, attribute), simtest::kBadArgument);
    EXPECT_EQ(zov_MemberGetAttr(member, &type, nullptr), simtest::kBadArgument);
    ASSERT_EQ(zov_MemberGetAttr(member, &type, attribute), 0);
    EXPECT_EQ(type, ZOV_ZMT_PORTWWN);
    EXPECT_EQ(std::memcmp(attribute, "\0\0\0\0\0\0\x12\x34", 8), 0);
    EXPECT_EQ(zov_MemberDestroy(member), 0);
    EXPECT_EQ(zov_MemberDestroy(member), simtest::kBadObject);
    EXPECT_EQ(zov_MemberDestroy(nullptr), simtest::kBadObject);
    EXPECT_EQ(zov_MemberGetAttr(member, &type, attribute), simtest::kBadObject);
}

TEST(Members, IdentifierOfANewMemberIsSpent) {
    zov_fzs_memberid_s id = {};
    id.u.byte[7] = 1;
    const zov_fzs_memberid_s saved = id;
    void *member = zov_MemberCreate(ZOV_ZMT_PORTWWN, &id);
    EXPECT_NE(std::memcmp(&id, &saved, sizeof id), 0);
    EXPECT_EQ(zov_MemberDestroy(member), 0);
}

TEST(Objects, OutliveTheSwitchTheyWereMadeBeside) {
    auto device = sim::create();
    void *zone = zov_ZoneCreate("oak");
    device.reset();
    EXPECT_EQ(nameOf(zov_ZoneGetName, zone), "oak");
    EXPECT_EQ(zov_ZoneDestroy(zone), 0);
}

TEST(Objects, AreCountedByKindWhileTheyLive) {
    const auto device = sim::create();
    const sim::ZoningObjectCounts before = device->zoningObjects();
    void *set = zov_ZonesetCreate("set");
    void *zone = zov_ZoneCreate("oak");
    ASSERT_EQ(zov_ZonesetAddZone(set, zone), 0);
    ASSERT_EQ(zov_ZonesetAddZone(set, zov_ZoneCreateCopy(zone, "elm")), 0);
    ASSERT_EQ(zov_ZonesetAddAlias(set, zov_ZoneAliasCreate("ash")), 0);
    for (unsigned number = 0; number < 3; ++number)
        ASSERT_EQ(zov_ZoneAddMember(zone, portMember(number)), 0);
    const sim::ZoningObjectCounts now = device->zoningObjects();
    EXPECT_EQ(now.zonesets - before.zonesets, 1U);
    EXPECT_EQ(now.zones - before.zones, 2U);
    EXPECT_EQ(now.aliases - before.aliases, 1U);
    EXPECT_EQ(now.members - before.members, 3U);
    EXPECT_EQ(zov_ZonesetDestroy(set), 0);
    EXPECT_EQ(device->zoningObjects(), before);
}

TEST(Objects, AreBuiltByManyThreadsAtOnce) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([] {
            void *set = zov_ZonesetCreate("set");
            for (unsigned i = 0; i < 50; ++i) {
                void *zone = zov_ZoneCreate(("zone" + std::to_string(i)).c_str());
                EXPECT_EQ(zov_ZoneAddMember(zone, portMember(i)), 0);
                EXPECT_EQ(zov_ZonesetAddZone(set, zone), 0);
            }
            EXPECT_EQ(zov_ZonesetGetZoneCount(set), 50);
            EXPECT_EQ(zov_ZonesetDestroy(set), 0);
        });
    for (std::thread &thread : threads)
        thread.join();
}
