#include "tools/dcache/zoning/member.h"

#include <gmock/gmock.h>

using namespace dcache;

namespace {

/// A member object made from a text, and read.
Member through(zov_fzs_zonemember_type_e type, const char *text) {
    zov_fzs_memberid_s id = {};
    EXPECT_EQ(zov_strToMemberIdentifier(text, type, &id), 0) << text;
    void *object = zov_MemberCreate(type, &id);
    EXPECT_NE(object, nullptr) << text;
    Member member = memberOf(object);
    zov_MemberDestroy(object);
    return member;
}

} // namespace

TEST(Member, TheFormOfAWordTellsItsType) {
    struct Row {
        const char *word;
        zov_fzs_zonemember_type_e type;
        const char *text;
    };
    const std::vector<Row> rows = {
        {"10:00:00:c0:dd:00:a1:B2", ZOV_ZMT_PORTWWN, "10:00:00:C0:DD:00:A1:B2"},
        {"100000c0dd00a1b2", ZOV_ZMT_PORTWWN, "10:00:00:C0:DD:00:A1:B2"},
        {"1:10", ZOV_ZMT_DOMAINPORT, "1:10"},
        {"01:007", ZOV_ZMT_DOMAINPORT, "1:7"},
        {"239:255", ZOV_ZMT_DOMAINPORT, "239:255"},
        {"010a00", ZOV_ZMT_FCADDRESS, "010A00"},
    };
    for (const Row &row : rows) {
        const auto member = memberFrom(row.word);
        ASSERT_TRUE(member.has_value()) << row.word;
        EXPECT_EQ(member->type, row.type) << row.word;
        EXPECT_EQ(member->text, row.text);
    }
}

TEST(Member, OtherWordsAreNone) {
    for (const char *word : {"",
                             "x",
                             "1",
                             "0:1",
                             "240:1",
                             "1:256",
                             "1:",
                             ":1",
                             "1:1:1",
                             "-1:1",
                             "+1:1",
                             "1: 1",
                             "0x1:1",
                             "010a0",
                             "010a0g",
                             "10-00-00-c0-dd-00-a1-b2",
                             "10:00:00:c0:dd:00:a1",
                             "100000c0dd00a1b",
                             "10:00:00:c0:dd:00:a1b2:",
                             "1000:00:c0:dd:00:a1:b2x",
                             "99999999999:1"})
        EXPECT_FALSE(memberFrom(word).has_value()) << word;
}

TEST(Member, AnObjectOfTheSwitchLibraryReadsAsItsWord) {
    for (const char *word : {"10:00:00:C0:DD:00:A1:B2", "1:10", "239:255", "010A00"}) {
        const Member member = memberFrom(word).value();
        EXPECT_EQ(through(member.type, forLibrary(member).c_str()), member) << word;
    }
    const Member alias = {ZOV_ZMT_ALIAS, "tape"};
    EXPECT_EQ(through(ZOV_ZMT_ALIAS, "tape"), alias);
    const std::string longest(64, 'a');
    EXPECT_EQ(through(ZOV_ZMT_ALIAS, longest.c_str()).text, longest);
}

TEST(Member, WhatHasNoFormIsShownAsWhatItIs) {
    zov_fzs_memberid_s id = {};
    void *node = zov_MemberCreate(ZOV_ZMT_NODENAME, &id);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(memberOf(node).text, "(type 4)");
    EXPECT_FALSE(memberFrom(memberOf(node).text).has_value());
    zov_MemberDestroy(node);
    EXPECT_EQ(memberOf(nullptr).text, "(not readable)");
}

TEST(Member, InAScriptAnAliasIsSaidToBeOne) {
    EXPECT_EQ(inScript({ZOV_ZMT_ALIAS, "tape"}), "alias tape");
    EXPECT_EQ(inScript({ZOV_ZMT_DOMAINPORT, "1:10"}), "1:10");
}

TEST(Member, TypeAndTextTellMembersApart) {
    const Member address = {ZOV_ZMT_FCADDRESS, "ABCDEF"};
    const Member alias = {ZOV_ZMT_ALIAS, "ABCDEF"};
    EXPECT_FALSE(address == alias);
    EXPECT_TRUE(address < alias);
    EXPECT_FALSE(alias < address);
    EXPECT_TRUE((Member{ZOV_ZMT_ALIAS, "a"} < Member{ZOV_ZMT_ALIAS, "b"}));
}
