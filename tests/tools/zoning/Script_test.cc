#include "tools/dcache/zoning/script.h"

#include <gmock/gmock.h>

#include "tools/dcache/failure.h"

using namespace dcache;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

namespace {

Script edits(const std::string &text) {
    return parseScript(text, ScriptPurpose::edits);
}

Script description(const std::string &text) {
    return parseScript(text, ScriptPurpose::description);
}

const std::vector<std::string> kEveryEdit = {
    "create set day",
    "create zone db acl",
    "create zone mail soft",
    "create zone old vpf",
    "create alias tape",
    "delete set day",
    "delete zone db",
    "delete alias tape",
    "add zone day db",
    "remove zone day db",
    "add member db 10:00:00:C0:DD:00:A1:B2",
    "remove member db 1:10",
    "add alias-member tape 010A00",
    "remove alias-member tape 10:00:00:C0:DD:00:A1:B2",
    "remove everywhere alias tape",
    "commit",
};

} // namespace

TEST(Script, EveryEditIsReadAsItIsWritten) {
    std::string text;
    for (const std::string &line : kEveryEdit)
        text += line + "\n";
    const Script script = edits(text);
    EXPECT_THAT(script.errors, IsEmpty());
    std::vector<std::string> lines;
    for (const Statement &statement : script.statements)
        lines.push_back(inScript(statement));
    EXPECT_EQ(lines, kEveryEdit);
}

TEST(Script, AStatementHoldsItsParts) {
    const Script script = edits("add zone day db\ncreate zone db soft\nadd member db alias tape");
    ASSERT_EQ(script.statements.size(), 3u);
    EXPECT_EQ(script.statements[0].kind, StatementKind::addZone);
    EXPECT_EQ(script.statements[0].name, "day");
    EXPECT_EQ(script.statements[0].zone, "db");
    EXPECT_EQ(script.statements[1].type, ZOV_ZT_SOFT);
    EXPECT_EQ(script.statements[2].member.type, ZOV_ZMT_ALIAS);
    EXPECT_EQ(script.statements[2].member.text, "tape");
}

TEST(Script, BlanksEmptyLinesAndCommentsDoNotCountButLinesDo) {
    const Script script = edits("# zones\r\n\r\n \tcreate  zone\tdb  acl # of the database\r\n\n  commit");
    EXPECT_THAT(script.errors, IsEmpty());
    ASSERT_EQ(script.statements.size(), 2u);
    EXPECT_EQ(script.statements[0].line, 3);
    EXPECT_EQ(script.statements[0].name, "db");
    EXPECT_EQ(script.statements[1].line, 5);
}

TEST(Script, EveryErrorIsListedWithItsLine) {
    const Script script = edits("create zone db acl\n"
                                "crate zone db acl\n"
                                "create\n"
                                "create zone db\n"
                                "create zone db hard\n"
                                "create set day night\n"
                                "add member db 10.0\n"
                                "add member db alias\n"
                                "commit now\n"
                                "add\x1b[2J member\n");
    EXPECT_THAT(script.errors,
                ElementsAre("line 2: \"crate zone\" is not a statement", "line 3: \"create\" is not a statement",
                            "line 4: expected \"create zone ZONE acl|soft|vpf\"",
                            "line 5: \"hard\" is not a zone type: acl, soft or vpf",
                            "line 6: expected \"create set SET\"",
                            "line 7: \"10.0\" is not a member: a port name, DOMAIN:PORT, six hexadecimal digits, or "
                            "\"alias NAME\"",
                            "line 8: expected \"add member ZONE MEMBER\"", "line 9: expected \"commit\"",
                            "line 10: \"add\\x1B[2J member\" is not a statement"));
}

TEST(Script, WhatCannotBeANameIsAnError) {
    EXPECT_THAT(edits("create set " + std::string(64, 'a')).errors, IsEmpty());
    EXPECT_THAT(edits("create set " + std::string(65, 'a')).errors, ElementsAre(HasSubstr("cannot be a name")));
    EXPECT_THAT(edits("delete set [ActiveZoneSetKey]").errors,
                ElementsAre("line 1: \"[ActiveZoneSetKey]\" cannot be a name"))
        << "by this name the cache keeps the active zone set";
    EXPECT_THAT(edits("create zone a\x07"
                      "b acl")
                    .errors,
                ElementsAre("line 1: \"a\\x07b\" cannot be a name"));
    EXPECT_THAT(edits("add member db alias [x").errors, ElementsAre(HasSubstr("cannot be a name")));
}

TEST(Script, NothingCanFollowACommit) {
    EXPECT_THAT(edits("commit\n\ncreate set day\ncommit\n").errors,
                ElementsAre("line 3: nothing can follow the commit of line 1",
                            "line 4: nothing can follow the commit of line 1"));
}

TEST(Script, ADescriptionMayActivateAndLockButNotRemove) {
    const Script script = description("create set day\ncommit\nactivate day\nlock\n");
    EXPECT_THAT(script.errors, IsEmpty());
    ASSERT_EQ(script.statements.size(), 4u);
    EXPECT_EQ(script.statements[2].kind, StatementKind::activate);
    EXPECT_EQ(script.statements[2].name, "day");
    EXPECT_EQ(script.statements[3].kind, StatementKind::lock);
    EXPECT_THAT(description("delete set day\nremove everywhere 1:1").errors,
                ElementsAre("line 1: \"delete\" is an edit, it describes nothing",
                            "line 2: \"remove\" is an edit, it describes nothing"));
    EXPECT_THAT(edits("activate day\nlock").errors,
                ElementsAre("line 1: \"activate\" describes a switch, it is no edit",
                            "line 2: \"lock\" describes a switch, it is no edit"));
}

TEST(Script, AllErrorsAreThrownTogether) {
    EXPECT_NO_THROW(throwErrorsOf(edits("commit"), "the script"));
    EXPECT_THAT([] { throwErrorsOf(edits("x\ncommit\ny"), "the script"); },
                ThrowsMessage<Misuse>("the script has 2 errors, so nothing was done:\n"
                                      "  line 1: \"x\" is not a statement\n"
                                      "  line 3: \"y\" is not a statement"));
    EXPECT_THAT([] { throwErrorsOf(edits("x"), "this"); }, ThrowsMessage<Misuse>(HasSubstr("this has 1 error, so")));
}

TEST(Script, AZoneTypeWithoutAWordIsANumber) {
    EXPECT_EQ(zoneTypeWord(ZOV_ZT_HARDVPF), "vpf");
    EXPECT_EQ(zoneTypeWord(static_cast<zov_fzs_zone_type_e>(7)), "(type 7)");
}
