#include "tools/dcache/zoning/edit.h"

#include <gmock/gmock.h>

#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/zoning/picture.h"

using namespace dcache;
using testing::IsEmpty;

namespace {

class Edit : public testing::Test {
protected:
    /// "" when it was made, else "CODE: REASON", with "limit" for a limit.
    static std::string made(const std::string &line) {
        const Script script = parseScript(line, ScriptPurpose::edits);
        EXPECT_THAT(script.errors, IsEmpty());
        const CacheLock cache;
        const auto refusal = perform(cache, script.statements.at(0));
        if (!refusal)
            return "";
        return std::to_string(refusal->code) + (refusal->isLimit ? " limit: " : ": ") + refusal->reason;
    }

    static std::string zoning() {
        const CacheLock cache;
        return scriptOf(definedZoning(cache));
    }

    /// Limits of which one is different; the cache knows them.
    void limit(int32_t zov_fzs_zoninglimits_s::*which, int32_t number) {
        zov_fzs_zoninglimits_s limits = {300, 3000, 12000, 1000, 500, 3000, 500};
        limits.*which = number;
        _zoned->setZoningLimits(limits);
        const CacheLock cache;
        ASSERT_TRUE(cache->initZoningLimits());
    }

    void fail(const char *call) {
        sim::Fault fault;
        fault.call = call;
        fault.result = 7;
        fault.times = -1;
        _zoned->addFault(fault);
    }

    support::ZonedSwitch _zoned;
};

} // namespace

TEST_F(Edit, EveryEditChangesTheCachedDatabase) {
    for (const char *line : {"remove everywhere 010A00", "remove alias-member tape 50:06:01:60:3B:A0:11:22",
                             "add alias-member tape 1:9", "remove member db alias tape", "add member db 1:8",
                             "remove zone day mail", "add zone night mail", "delete zone old", "delete set day",
                             "create set dusk", "create zone web soft", "create alias disk", "delete alias tape"})
        EXPECT_EQ(made(line), "") << line;
    EXPECT_EQ(zoning(), "create alias disk\n"
                        "create zone db acl\n"
                        "add member db 10:00:00:00:C9:2B:44:01\n"
                        "add member db 1:7\n"
                        "add member db 1:8\n"
                        "create zone mail soft\n"
                        "add member mail 10:00:00:00:C9:2B:44:02\n"
                        "create zone web soft\n"
                        "create set dusk\n"
                        "create set night\n"
                        "add zone night db\n"
                        "add zone night mail\n"
                        "commit\n");
}

TEST_F(Edit, ACommitIsNoEdit) {
    EXPECT_EQ(made("commit"), "");
    EXPECT_EQ(zoning(), support::kZoning);
}

TEST_F(Edit, WhatIsNotThereIsNamed) {
    EXPECT_EQ(made("delete set dusk"), "2: there is no zone set \"dusk\"");
    EXPECT_EQ(made("delete zone web"), "2: there is no zone \"web\"");
    EXPECT_EQ(made("delete alias disk"), "2: there is no alias \"disk\"");
    EXPECT_EQ(made("add zone dusk db"), "2: there is no zone set \"dusk\"");
    EXPECT_EQ(made("add zone day web"), "2: there is no zone \"web\"");
    EXPECT_EQ(made("remove zone dusk db"), "2: there is no zone set \"dusk\"");
    EXPECT_EQ(made("remove zone night mail"), "2: zone set \"night\" does not hold zone \"mail\"");
    EXPECT_EQ(made("add member web 1:1"), "2: there is no zone \"web\"");
    EXPECT_EQ(made("remove member db 1:1"), "2: zone \"db\", or a copy of it in a zone set, does not have member 1:1");
    EXPECT_EQ(made("add alias-member disk 1:1"), "2: there is no alias \"disk\"");
    EXPECT_EQ(made("remove alias-member tape alias x"),
              "2: alias \"tape\", or a copy of it in a zone set, does not have member alias x");
    EXPECT_EQ(zoning(), support::kZoning);
}

TEST_F(Edit, WhatIsThereAlreadyIsNamed) {
    EXPECT_EQ(made("create set day"), "3: there is zone set \"day\" already");
    EXPECT_EQ(made("create zone db acl"), "3: there is zone \"db\" already");
    EXPECT_EQ(made("create alias tape"), "3: there is alias \"tape\" already");
    EXPECT_EQ(made("add zone day db"), "3: zone set \"day\" holds zone \"db\" already");
    EXPECT_EQ(made("add member db 010a00"), "3: zone \"db\" has member 010A00 already");
    EXPECT_EQ(made("add alias-member tape 500601603BA01122"),
              "3: alias \"tape\" has member 50:06:01:60:3B:A0:11:22 already");
}

TEST_F(Edit, ANameOrMemberThatTheSwitchDoesNotTakeIsSaidToBeSo) {
    EXPECT_EQ(made("create set 1st"), "1: the switch does not take \"1st\" as a name");
    EXPECT_EQ(made("create zone 1st acl"), "1: the switch does not take \"1st\" as a name");
    EXPECT_EQ(made("create alias 1st"), "4: the switch does not take \"1st\" as a name");
    fail("zov_strToMemberIdentifier");
    EXPECT_EQ(made("add member db 1:9"), "1: the switch does not take 1:9 as a member of zone \"db\"");
    EXPECT_EQ(made("remove everywhere 1:9"), "1: the switch does not take 1:9 as a member");
}

TEST_F(Edit, EveryLimitIsSaidWithItsNumber) {
    using Limits = zov_fzs_zoninglimits_s;
    limit(&Limits::zonesets, 2);
    EXPECT_EQ(made("create set dusk"), "4 limit: the switch takes no more than 2 zone sets");
    limit(&Limits::zones, 3);
    EXPECT_EQ(made("create zone web acl"), "4 limit: the switch takes no more than 3 zones");
    limit(&Limits::aliases, 1);
    EXPECT_EQ(made("create alias disk"), "4 limit: the switch takes no more than 1 aliases");
    limit(&Limits::zonesPerZoneset, 2);
    EXPECT_EQ(made("add zone day old"), "4 limit: the switch takes no more than 2 zones in a zone set");
    limit(&Limits::membersPerZone, 4);
    EXPECT_EQ(made("add member db 1:9"), "4 limit: the switch takes no more than 4 members in a zone");
    limit(&Limits::membersPerAlias, 1);
    EXPECT_EQ(made("add alias-member tape 1:9"), "4 limit: the switch takes no more than 1 members in an alias");
    EXPECT_EQ(zoning(), support::kZoning);
}

TEST_F(Edit, TheLimitOfAllMembersIsTestedHere) {
    limit(&zov_fzs_zoninglimits_s::members, 9); // of 7: five, one of the alias, and that again for the zone
    EXPECT_EQ(made("add member old 1:9"), "");
    EXPECT_EQ(made("add member old 1:10"), "");
    EXPECT_EQ(made("add member old 1:11"), "4 limit: the switch takes no more than 9 members in all");
    EXPECT_EQ(made("add alias-member tape 1:11"), "4 limit: the switch takes no more than 9 members in all");
    EXPECT_EQ(made("remove everywhere 1:9"), "");
    EXPECT_EQ(made("add member old 1:11"), "") << "what has been removed does not count any more";
}

TEST_F(Edit, MembersOfAliasesCountForTheLimitAtOnce) {
    limit(&zov_fzs_zoninglimits_s::members, 9);
    EXPECT_EQ(made("add alias-member tape 1:11"), "") << "it counts twice, a zone having the alias";
    EXPECT_EQ(made("add member old 1:12"), "4 limit: the switch takes no more than 9 members in all");
    EXPECT_EQ(made("remove alias-member tape 1:11"), "2: alias \"tape\", or a copy of it in a zone set, does not have "
                                                     "member 1:11")
        << "the active zone set has the alias without it; the database has removed it all the same";
    EXPECT_EQ(made("add member old 1:12"), "");
}

TEST_F(Edit, AFailureOfTheSwitchLibraryIsNoLimit) {
    fail("zov_ZonesetAddZone");
    EXPECT_EQ(made("create zone web acl"), "4: the switch library failed to do it");
}
