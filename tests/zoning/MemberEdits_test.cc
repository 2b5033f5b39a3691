// Edits of the members of zones and aliases: every result, with the calls of the switch library that come before it.
#include "tests/zoning/EditTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kAddress = ZOV_ZMT_FCADDRESS;

class MemberEdits : public EditTest {
protected:
    static Lines first(long count, const Lines &lines) { return Lines(lines.begin(), lines.begin() + count); }
    static Lines with(Lines lines, const char *line) {
        lines.push_back(line);
        return lines;
    }
};

// ---- members of zones --------------------------------------------------------------------------------

auto addToZone(const char *zone, const char *member, zov_fzs_zonemember_type_e type = kAddress) {
    return [=](ZoningCache &cache) { return cache.addMemberToZone(zone, type, member); };
}

TEST_F(MemberEdits, AddMemberToZone) {
    const Lines added = {
        "ZonesetFindZone(uber, oak)",       "ZoneGetMemberCount(oak@uber)", "strToMemberIdentifier(010300)",
        "ZoneFindMember(oak@uber, 010300)", "MemberCreate(010300)",         "ZoneAddMember(oak@uber, 010300)",
        "ZonesetFindZone(Alpha, oak)",      "MemberCreate(010300)",         "ZoneAddMember(oak@Alpha, 010300)",
        "ZonesetFindZone(beta, oak)",       "MemberCreate(010300)",         "ZoneAddMember(oak@beta, 010300)"};
    const char *destroyed = "MemberDestroy(010300)";
    expect({
        {"done", addToZone("oak", kThird), 0, added, Recount::yes},
        {"in no zone set",
         addToZone("elm", kThird),
         0,
         {"ZonesetFindZone(uber, elm)", "ZoneGetMemberCount(elm@uber)", added[2], "ZoneFindMember(elm@uber, 010300)",
          added[4], "ZoneAddMember(elm@uber, 010300)", "ZonesetFindZone(Alpha, elm)", "ZonesetFindZone(beta, elm)"},
         Recount::yes},
        {"no such zone", addToZone("fir", "nonsense"), 2, {"ZonesetFindZone(uber, fir)"}},
        {"no zone named", addToZone(nullptr, kThird), 2, {}},
        {"not valid", addToZone("oak", "nonsense"), 1, {added[0], added[1], "strToMemberIdentifier(nonsense)"}},
        {"not valid for its type", addToZone("oak", kThird, ZOV_ZMT_PORTWWN), 1, first(3, added)},
        {"no member named", addToZone("oak", nullptr), 1, first(2, added)},
        {"there already",
         addToZone("oak", kFirst),
         3,
         {added[0], added[1], "strToMemberIdentifier(010100)", "ZoneFindMember(oak@uber, 010100)"}},
        {"not made", addToZone("oak", kThird), 4, first(5, added), Recount::no, {{"MemberCreate", 1}}},
        {"not added",
         addToZone("oak", kThird),
         4,
         with(first(6, added), destroyed),
         Recount::no,
         {{"ZoneAddMember", 1}}},
        {"not made for the first zone set",
         addToZone("oak", kThird),
         4,
         first(8, added),
         Recount::no,
         {{"MemberCreate", 2}}},
        {"not added to the first zone set",
         addToZone("oak", kThird),
         4,
         with(first(9, added), destroyed),
         Recount::no,
         {{"ZoneAddMember", 2}}},
        {"not made for the second zone set",
         addToZone("oak", kThird),
         4,
         first(11, added),
         Recount::no,
         {{"MemberCreate", 3}}},
        {"not added to the second zone set",
         addToZone("oak", kThird),
         4,
         with(added, destroyed),
         Recount::no,
         {{"ZoneAddMember", 3}}},
    });
    for (const char *member : {kThird, kFirst, "nonsense"})
        expectLimit({10, 10, 100, 10, 2, 10, 10}, addToZone("oak", member),
                    "DCACHE: Members per zone maximum of 2 reached", first(2, added));
    expectToSurviveEveryFailure(addToZone("oak", kThird), {0, 1, 2, 4});
}

TEST_F(MemberEdits, AnAddedMemberIsInTheDatabaseAndInEveryDefinedZoneSetThatHasTheZone) {
    EXPECT_EQ(cache->addMemberToZone("oak", kAddress, kThird), 0);
    EXPECT_EQ(cache->addMemberToZone("oak", kAddress, kThird), 3);
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("010100", "web", "010300"));
    EXPECT_THAT(membersOf(alpha, "oak"), ElementsAre("010100", "web", "010300"));
    EXPECT_THAT(membersOf(beta, "oak"), ElementsAre("010100", "010300"));
    EXPECT_THAT(membersOf(live, "oak"), ElementsAre("010100"));
    EXPECT_EQ(cache->getZoningCounts().members, 8);
}

TEST_F(MemberEdits, EveryTypeOfMemberIsAdded) {
    const std::vector<std::pair<zov_fzs_zonemember_type_e, const char *>> members = {
        {ZOV_ZMT_PORTWWN, "100000C0DD00A1B2"},
        {ZOV_ZMT_DOMAINPORT, "2:11"},
        {kAddress, kSecond},
        {ZOV_ZMT_ALIAS, "db"}};
    for (const auto &[type, text] : members) {
        EXPECT_EQ(cache->addMemberToZone("elm", type, text), 0) << text;
        EXPECT_EQ(uber->zones[1]->members.back()->memberType, type);
    }
    EXPECT_EQ(cache->addMemberToZone("elm", ZOV_ZMT_NODENAME, "100000C0DD00A1B2"), 1);
    EXPECT_THAT(membersOf(uber, "elm"), ElementsAre("1:10", "100000C0DD00A1B2", "2:11", "010200", "db"));
}

TEST_F(MemberEdits, WhetherACopyHasTheMemberAlreadyIsNotAsked) {
    scripted::member(beta->zones[0], kAddress, kThird);
    EXPECT_EQ(cache->addMemberToZone("oak", kAddress, kThird), 0);
    EXPECT_THAT(membersOf(beta, "oak"), ElementsAre("010100", "010300", "010300"));
}

auto removeFromZone(const char *zone, const char *member, zov_fzs_zonemember_type_e type = kAddress) {
    return [=](ZoningCache &cache) { return cache.removeMemberFromZone(zone, type, member); };
}

TEST_F(MemberEdits, RemoveMemberFromZone) {
    const Lines removed = {"ZonesetFindZone(uber, oak)",         "strToMemberIdentifier(010100)",
                           "ZoneFindMember(oak@uber, 010100)",   "ZoneDeleteMember(010100@oak@uber)",
                           "ZonesetFindZone(Alpha, oak)",        "ZoneFindMember(oak@Alpha, 010100)",
                           "ZoneDeleteMember(010100@oak@Alpha)", "ZonesetFindZone(beta, oak)",
                           "ZoneFindMember(oak@beta, 010100)",   "ZoneDeleteMember(010100@oak@beta)"};
    expect({
        {"done", removeFromZone("oak", kFirst), 0, removed, Recount::yes},
        {"in no zone set",
         removeFromZone("elm", "1:10", ZOV_ZMT_DOMAINPORT),
         0,
         {"ZonesetFindZone(uber, elm)", "strToMemberIdentifier(1:10)", "ZoneFindMember(elm@uber, 1:10)",
          "ZoneDeleteMember(1:10@elm@uber)", "ZonesetFindZone(Alpha, elm)", "ZonesetFindZone(beta, elm)"},
         Recount::yes},
        {"missing in a defined zone set",
         removeFromZone("oak", "web", ZOV_ZMT_ALIAS),
         2,
         {"ZonesetFindZone(uber, oak)", "strToMemberIdentifier(web)", "ZoneFindMember(oak@uber, web)",
          "ZoneDeleteMember(web@oak@uber)", "ZonesetFindZone(Alpha, oak)", "ZoneFindMember(oak@Alpha, web)",
          "ZoneDeleteMember(web@oak@Alpha)", "ZonesetFindZone(beta, oak)", "ZoneFindMember(oak@beta, web)"}},
        {"no such zone", removeFromZone("fir", "nonsense"), 2, {"ZonesetFindZone(uber, fir)"}},
        {"no zone named", removeFromZone(nullptr, kFirst), 2, {}},
        {"not valid", removeFromZone("oak", "nonsense"), 1, {removed[0], "strToMemberIdentifier(nonsense)"}},
        {"no member named", removeFromZone("oak", nullptr), 1, first(1, removed)},
        {"no such member",
         removeFromZone("oak", kThird),
         2,
         {removed[0], "strToMemberIdentifier(010300)", "ZoneFindMember(oak@uber, 010300)"}},
        {"not deleted", removeFromZone("oak", kFirst), 4, first(4, removed), Recount::no, {{"ZoneDeleteMember", 1}}},
        {"not deleted in the first zone set",
         removeFromZone("oak", kFirst),
         4,
         first(7, removed),
         Recount::no,
         {{"ZoneDeleteMember", 2}}},
        {"not deleted in the second zone set",
         removeFromZone("oak", kFirst),
         4,
         removed,
         Recount::no,
         {{"ZoneDeleteMember", 3}}},
    });
    expectToSurviveEveryFailure(removeFromZone("oak", kFirst), {0, 1, 2, 4});
}

TEST_F(MemberEdits, AMemberThatADefinedZoneSetLacksIsGoneFromTheDatabaseAllTheSame) {
    EXPECT_EQ(cache->removeMemberFromZone("oak", ZOV_ZMT_ALIAS, "web"), 2);
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("010100"));
    EXPECT_THAT(membersOf(alpha, "oak"), ElementsAre("010100"));
    EXPECT_EQ(cache->getZoningCounts().members, 7) << "not counted anew";
}

TEST_F(MemberEdits, TheActiveZoneSetKeepsARemovedMember) {
    EXPECT_EQ(cache->removeMemberFromZone("oak", kAddress, kFirst), 0);
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("web"));
    EXPECT_THAT(membersOf(beta, "oak"), IsEmpty());
    EXPECT_THAT(membersOf(live, "oak"), ElementsAre("010100"));
    EXPECT_EQ(cache->getZoningCounts().members, 6);
}

// ---- members of aliases ------------------------------------------------------------------------------

auto addToAlias(const char *alias, const char *member) {
    return [=](ZoningCache &cache) { return cache.addMemberToZoneAlias(alias, kAddress, member); };
}

TEST_F(MemberEdits, AddMemberToZoneAlias) {
    const Lines added = {"ZonesetFindAlias(uber, web)",
                         "ZoneAliasGetMemberCount(web@uber)",
                         "strToMemberIdentifier(010100)",
                         "ZoneAliasFindMember(web@uber, 010100)",
                         "MemberCreate(010100)",
                         "ZoneAliasAddMember(web@uber, 010100)",
                         "ZonesetFindAlias(Alpha, web)",
                         "MemberCreate(010100)",
                         "ZoneAliasAddMember(web@Alpha, 010100)",
                         "ZonesetFindAlias(beta, web)"};
    const char *destroyed = "MemberDestroy(010100)";
    expect({
        {"done, without counting anew", addToAlias("web", kFirst), 0, added},
        {"no such alias", addToAlias("db", "nonsense"), 2, {"ZonesetFindAlias(uber, db)"}},
        {"no alias named", addToAlias(nullptr, kFirst), 2, {}},
        {"not valid", addToAlias("web", "nonsense"), 1, {added[0], added[1], "strToMemberIdentifier(nonsense)"}},
        {"no member named", addToAlias("web", nullptr), 1, first(2, added)},
        {"there already",
         addToAlias("web", kThird),
         3,
         {added[0], added[1], "strToMemberIdentifier(010300)", "ZoneAliasFindMember(web@uber, 010300)"}},
        {"not made", addToAlias("web", kFirst), 4, first(5, added), Recount::no, {{"MemberCreate", 1}}},
        {"not added",
         addToAlias("web", kFirst),
         4,
         with(first(6, added), destroyed),
         Recount::no,
         {{"ZoneAliasAddMember", 1}}},
        {"not made for a zone set", addToAlias("web", kFirst), 4, first(8, added), Recount::no, {{"MemberCreate", 2}}},
        {"not added to a zone set",
         addToAlias("web", kFirst),
         4,
         with(first(9, added), destroyed),
         Recount::no,
         {{"ZoneAliasAddMember", 2}}},
    });
    for (const char *member : {kFirst, kThird, "nonsense"})
        expectLimit({10, 10, 100, 10, 10, 10, 2}, addToAlias("web", member),
                    "DCACHE: Members per alisa maximum of 2 reached", first(2, added));
    expectToSurviveEveryFailure(addToAlias("web", kFirst), {0, 1, 2, 4});
}

TEST_F(MemberEdits, AMemberAddedToAnAliasIsRepeatedInDefinedZoneSetsOnly) {
    EXPECT_EQ(cache->addMemberToZoneAlias("web", kAddress, kFirst), 0);
    EXPECT_THAT(membersOf(uber, "web"), ElementsAre("010200", "010300", "010100"));
    EXPECT_THAT(membersOf(alpha, "web"), ElementsAre("010200", "010100"));
    EXPECT_THAT(membersOf(live, "web"), ElementsAre("010200"));
    EXPECT_EQ(cache->getZoningCounts().members, 7) << "not counted anew";
}

auto removeFromAlias(const char *alias, const char *member) {
    return [=](ZoningCache &cache) { return cache.removeMemberFromZoneAlias(alias, kAddress, member); };
}

TEST_F(MemberEdits, RemoveMemberFromZoneAlias) {
    const Lines removed = {"ZonesetFindAlias(uber, web)",           "strToMemberIdentifier(010200)",
                           "ZoneAliasFindMember(web@uber, 010200)", "ZoneAliasDeleteMember(010200@web@uber)",
                           "ZonesetFindAlias(live, web)",           "ZoneAliasFindMember(web@live, 010200)",
                           "ZoneAliasDeleteMember(010200@web@live)"};
    expect({
        {"done, without counting anew", removeFromAlias("web", kSecond), 0, removed},
        {"missing in the active zone set",
         removeFromAlias("web", kThird),
         2,
         {removed[0], "strToMemberIdentifier(010300)", "ZoneAliasFindMember(web@uber, 010300)",
          "ZoneAliasDeleteMember(010300@web@uber)", removed[4], "ZoneAliasFindMember(web@live, 010300)"}},
        {"no such alias", removeFromAlias("db", "nonsense"), 2, {"ZonesetFindAlias(uber, db)"}},
        {"no alias named", removeFromAlias(nullptr, kSecond), 2, {}},
        {"not valid", removeFromAlias("web", "nonsense"), 1, {removed[0], "strToMemberIdentifier(nonsense)"}},
        {"no member named", removeFromAlias("web", nullptr), 1, first(1, removed)},
        {"no such member",
         removeFromAlias("web", kFirst),
         2,
         {removed[0], "strToMemberIdentifier(010100)", "ZoneAliasFindMember(web@uber, 010100)"}},
        {"not deleted, then destroyed",
         removeFromAlias("web", kSecond),
         4,
         with(first(4, removed), "MemberDestroy(010200@web@uber)"),
         Recount::no,
         {{"ZoneAliasDeleteMember", 1}}},
        {"a failed deletion that has destroyed it",
         removeFromAlias("web", kSecond),
         4,
         first(4, removed),
         Recount::no,
         {{"ZoneAliasDeleteMember", 1, 7, true}}},
        {"not deleted in the active zone set",
         removeFromAlias("web", kSecond),
         4,
         removed,
         Recount::no,
         {{"ZoneAliasDeleteMember", 2}}},
    });
    expectToSurviveEveryFailure(removeFromAlias("web", kSecond), {0, 1, 2, 4});
}

TEST_F(MemberEdits, AMemberRemovedFromAnAliasIsRemovedFromTheActiveZoneSetButNotFromDefinedOnes) {
    EXPECT_EQ(cache->removeMemberFromZoneAlias("web", kAddress, kSecond), 0);
    EXPECT_THAT(membersOf(uber, "web"), ElementsAre("010300"));
    EXPECT_THAT(membersOf(live, "web"), IsEmpty());
    EXPECT_THAT(membersOf(alpha, "web"), ElementsAre("010200"));
    EXPECT_EQ(cache->getZoningCounts().members, 7) << "not counted anew";
}

TEST_F(MemberEdits, TheActiveZoneSetNeedNotHaveTheAlias) {
    scripted::zoning.destroy(live->aliases[0]);
    EXPECT_EQ(cache->removeMemberFromZoneAlias("web", kAddress, kSecond), 0);
    cache->clearActive();
    EXPECT_EQ(cache->removeMemberFromZoneAlias("web", kAddress, kThird), 0);
    EXPECT_THAT(membersOf(uber, "web"), IsEmpty());
}

// ---- a member wherever it is -------------------------------------------------------------------------

auto removeEverywhere(const char *member, zov_fzs_zonemember_type_e type = kAddress) {
    return [=](ZoningCache &cache) { return cache.removeMember(type, member); };
}

TEST_F(MemberEdits, RemoveMember) {
    const Lines removed = {"strToMemberIdentifier(010200)",
                           "ZonesetGetZoneCount(Alpha)",
                           "ZonesetListZones(Alpha, 0)",
                           "ZoneFindMember(oak@Alpha, 010200)",
                           "ZonesetGetAliasCount(Alpha)",
                           "ZonesetListAliases(Alpha, 0)",
                           "ZoneAliasFindMember(web@Alpha, 010200)",
                           "ZoneAliasDeleteMember(010200@web@Alpha)",
                           "ZonesetGetZoneCount(uber)",
                           "ZonesetListZones(uber, 0)",
                           "ZoneFindMember(oak@uber, 010200)",
                           "ZonesetListZones(uber, 1)",
                           "ZoneFindMember(elm@uber, 010200)",
                           "ZonesetGetAliasCount(uber)",
                           "ZonesetListAliases(uber, 0)",
                           "ZoneAliasFindMember(web@uber, 010200)",
                           "ZoneAliasDeleteMember(010200@web@uber)",
                           "ZonesetGetZoneCount(beta)",
                           "ZonesetListZones(beta, 0)",
                           "ZoneFindMember(oak@beta, 010200)",
                           "ZonesetGetAliasCount(beta)"};
    expect({
        {"done, without counting anew", removeEverywhere(kSecond), 0, removed},
        {"not valid", removeEverywhere("nonsense"), 1, {"strToMemberIdentifier(nonsense)"}},
        {"no member named", removeEverywhere(nullptr), 1, {}},
        {"a zone is missing", removeEverywhere(kSecond), 4, first(3, removed), Recount::no, {{"ZonesetListZones", 1}}},
        {"an alias is missing",
         removeEverywhere(kSecond),
         4,
         first(6, removed),
         Recount::no,
         {{"ZonesetListAliases", 1}}},
        {"a zone of the database is missing",
         removeEverywhere(kSecond),
         4,
         first(12, removed),
         Recount::no,
         {{"ZonesetListZones", 3}}},
    });
    expectToSurviveEveryFailure(removeEverywhere(kSecond), {0, 1, 4});
    expectToSurviveEveryFailure(removeEverywhere(kFirst), {0, 1, 4});
}

TEST_F(MemberEdits, AMemberIsRemovedEverywhereButFromTheActiveZoneSet) {
    scripted::member(uber->aliases[0], kAddress, kFirst);
    EXPECT_EQ(cache->removeMember(kAddress, kFirst), 0);
    EXPECT_THAT(membersOf(alpha, "oak"), ElementsAre("web"));
    EXPECT_THAT(membersOf(beta, "oak"), IsEmpty());
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("web"));
    EXPECT_THAT(membersOf(uber, "web"), ElementsAre("010200", "010300"));
    EXPECT_THAT(membersOf(live, "oak"), ElementsAre("010100"));
    EXPECT_EQ(cache->removeMember(kAddress, kFirst), 0) << "also when there is none";
}

TEST_F(MemberEdits, WhatCannotBeRemovedIsLoggedAndTheOthersAreRemoved) {
    scripted::member(alpha->aliases[0], kAddress, kFirst);
    scripted::member(uber->aliases[0], kAddress, kFirst);
    fail("ZoneDeleteMember", 1, 9);
    fail("ZoneAliasDeleteMember", 2, -3);
    EXPECT_EQ(cache->removeMember(kAddress, kFirst), 0);
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: Deletion failed, result = 9", "DCACHE: Alias Deletion failed, result = -3"));
    EXPECT_THAT(membersOf(alpha, "oak"), ElementsAre("010100", "web"));
    EXPECT_THAT(membersOf(alpha, "web"), ElementsAre("010200"));
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("web"));
    EXPECT_THAT(membersOf(uber, "web"), ElementsAre("010200", "010300", "010100"));
    EXPECT_THAT(membersOf(beta, "oak"), IsEmpty());
}

// ---- before the first load ---------------------------------------------------------------------------

TEST_F(MemberEdits, BeforeTheFirstLoadThereIsNoZoneOrAliasToEdit) {
    cache->clearUber();
    forget();
    for (const char *member : {kThird, "nonsense"}) {
        EXPECT_EQ(cache->addMemberToZone("oak", kAddress, member), 2);
        EXPECT_EQ(cache->removeMemberFromZone("oak", kAddress, member), 2);
        EXPECT_EQ(cache->addMemberToZoneAlias("web", kAddress, member), 2);
        EXPECT_EQ(cache->removeMemberFromZoneAlias("web", kAddress, member), 2);
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_EQ(cache->removeMember(kAddress, "nonsense"), 1);
    EXPECT_EQ(cache->removeMember(kAddress, kFirst), 0) << "from the defined zone sets";
    EXPECT_THAT(membersOf(beta, "oak"), IsEmpty());
}

} // namespace
