#include "sim/zoning/MemberId.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

namespace {

/// What a text becomes; none when it is refused, the identifier then being as it was.
std::optional<zov_fzs_memberid_s> parsed(zov_fzs_zonemember_type_e type, const std::string &text) {
    zov_fzs_memberid_s id;
    std::memset(&id, 0x5A, sizeof id);
    const zov_fzs_memberid_s before = id;
    const int32_t result = zov_strToMemberIdentifier(text.c_str(), type, &id);
    if (result == 0)
        return id;
    EXPECT_EQ(result, simtest::kBadMember) << text;
    EXPECT_EQ(std::memcmp(&id, &before, sizeof id), 0) << text;
    return std::nullopt;
}

zov_fzs_memberid_s bytes(std::initializer_list<unsigned> values) {
    zov_fzs_memberid_s id = {};
    size_t at = 0;
    for (const unsigned value : values)
        id.u.byte[at++] = static_cast<uint8_t>(value);
    return id;
}

zov_fzs_memberid_s words(uint32_t domain, uint32_t port) {
    zov_fzs_memberid_s id = {};
    id.u.word[0] = domain;
    id.u.word[1] = port;
    return id;
}

void expectParsed(zov_fzs_zonemember_type_e type, const std::string &text, const zov_fzs_memberid_s &expected) {
    const std::optional<zov_fzs_memberid_s> id = parsed(type, text);
    ASSERT_TRUE(id) << text;
    EXPECT_EQ(std::memcmp(&*id, &expected, sizeof expected), 0) << text;
}

/// The identifier that a member made from `id` has.
std::optional<zov_fzs_memberid_s> madeFrom(zov_fzs_zonemember_type_e type, zov_fzs_memberid_s id) {
    void *member = zov_MemberCreate(type, &id);
    if (!member)
        return std::nullopt;
    zov_fzs_zonemember_type_e kind = ZOV_ZMT_UNKNOWN;
    zov_fzs_memberid_s attribute;
    std::memset(&attribute, 0x5A, sizeof attribute);
    EXPECT_EQ(zov_MemberGetAttr(member, &kind, &attribute), 0);
    EXPECT_EQ(kind, type);
    EXPECT_EQ(zov_MemberDestroy(member), 0);
    return attribute;
}

} // namespace

TEST(MemberId, PortNamesAre16DigitsOr8PairsWithColons) {
    const zov_fzs_memberid_s expected = bytes({0x21, 0x00, 0x00, 0xE0, 0x8B, 0x0f, 0xa9, 0xFF});
    expectParsed(ZOV_ZMT_PORTWWN, "210000E08B0Fa9fF", expected);
    expectParsed(ZOV_ZMT_PORTWWN, "21:00:00:E0:8b:0f:A9:ff", expected);
    for (const char *text : {"", "210000E08B0FA9F", "210000E08B0FA9FF0", "210000E08B0FA9FG", "21:00:00:E0:8B:0F:A9:F",
                             "21-00-00-E0-8B-0F-A9-FF", "2:100:00:E0:8B:0F:A9:FF",
                             "21:00:00:E0:8B:0F:A9:FF:", "21:00:00:E0:8B:0F:A9:FG", " 210000E08B0FA9FF"})
        EXPECT_FALSE(parsed(ZOV_ZMT_PORTWWN, text)) << text;
}

TEST(MemberId, DomainAndPortAreDecimalWithAColonOrFourHexadecimalDigits) {
    expectParsed(ZOV_ZMT_DOMAINPORT, "1:10", words(1, 10));
    expectParsed(ZOV_ZMT_DOMAINPORT, "239:255", words(239, 255));
    expectParsed(ZOV_ZMT_DOMAINPORT, "1:0", words(1, 0));
    expectParsed(ZOV_ZMT_DOMAINPORT, "010a", words(1, 10));
    expectParsed(ZOV_ZMT_DOMAINPORT, "EFFF", words(239, 255));
    for (const char *text : {"", ":", "1:", ":1", "0:1", "240:1", "1:256", "1:2:3", "-1:1", "1:-1", "1: 2", "a:1",
                             "010", "010a0", "000a", "F000", "01:0g", "4294967297:1"})
        EXPECT_FALSE(parsed(ZOV_ZMT_DOMAINPORT, text)) << text;
}

TEST(MemberId, AddressesAreSixDigits) {
    expectParsed(ZOV_ZMT_FCADDRESS, "0A0b1C", bytes({0x0A, 0x0B, 0x1C}));
    for (const char *text : {"", "0A0b1", "0A0b1C0", "0A0b1X", "0x0A0b"})
        EXPECT_FALSE(parsed(ZOV_ZMT_FCADDRESS, text)) << text;
}

TEST(MemberId, AliasesAreNamesOfUpTo64Characters) {
    expectParsed(ZOV_ZMT_ALIAS, "oak", bytes({'o', 'a', 'k'}));
    const std::optional<zov_fzs_memberid_s> longest = parsed(ZOV_ZMT_ALIAS, std::string(64, 'n'));
    ASSERT_TRUE(longest);
    EXPECT_EQ(longest->u.byte[63], 'n');
    EXPECT_EQ(longest->u.byte[64], 0);
    EXPECT_FALSE(parsed(ZOV_ZMT_ALIAS, ""));
    EXPECT_FALSE(parsed(ZOV_ZMT_ALIAS, std::string(65, 'n')));
}

TEST(MemberId, OtherTypesHaveNoText) {
    for (const int32_t type : {0, 4, 6, -1, INT32_MAX})
        EXPECT_FALSE(parsed(static_cast<zov_fzs_zonemember_type_e>(type), "210000E08B0FA9FF")) << type;
}

TEST(MemberId, NullArgumentsAreRefused) {
    zov_fzs_memberid_s id = {};
    EXPECT_EQ(zov_strToMemberIdentifier(nullptr, ZOV_ZMT_ALIAS, &id), simtest::kBadArgument);
    EXPECT_EQ(zov_strToMemberIdentifier("oak", ZOV_ZMT_ALIAS, nullptr), simtest::kBadArgument);
}

TEST(MemberId, BytesThatSayNothingAreCleared) {
    zov_fzs_memberid_s garbage;
    std::memset(&garbage, 0x41, sizeof garbage);
    garbage.u.byte[3 * sizeof(uint32_t)] = 0;
    const std::vector<std::pair<zov_fzs_zonemember_type_e, size_t>> lengths = {{ZOV_ZMT_PORTWWN, 8},
                                                                               {ZOV_ZMT_DOMAINPORT, 8},
                                                                               {ZOV_ZMT_FCADDRESS, 3},
                                                                               {ZOV_ZMT_NODENAME, 8},
                                                                               {ZOV_ZMT_ALIAS, 12}};
    for (const auto &[type, length] : lengths) {
        const std::optional<zov_fzs_memberid_s> made = madeFrom(type, garbage);
        ASSERT_TRUE(made) << type;
        for (size_t at = 0; at < sizeof made->u.byte; ++at)
            EXPECT_EQ(made->u.byte[at], at < length ? 0x41 : 0) << type << " byte " << at;
    }
}

TEST(MemberId, WhatCannotBeAMemberIsRefused) {
    zov_fzs_memberid_s endless;
    std::memset(&endless, 'n', sizeof endless);
    EXPECT_FALSE(madeFrom(ZOV_ZMT_ALIAS, endless));
    EXPECT_FALSE(madeFrom(ZOV_ZMT_ALIAS, zov_fzs_memberid_s{}));
    endless.u.byte[65] = 0; // 65 characters
    EXPECT_FALSE(madeFrom(ZOV_ZMT_ALIAS, endless));
    endless.u.byte[64] = 0;
    EXPECT_TRUE(madeFrom(ZOV_ZMT_ALIAS, endless));
    for (const int32_t type : {0, 6, -1, INT32_MIN})
        EXPECT_FALSE(madeFrom(static_cast<zov_fzs_zonemember_type_e>(type), endless)) << type;
    EXPECT_EQ(zov_MemberCreate(ZOV_ZMT_PORTWWN, nullptr), nullptr);
}

TEST(MemberId, RecordsShowMembersInWords) {
    const auto device = sim::create();
    const std::vector<std::pair<zov_fzs_zonemember_type_e, zov_fzs_memberid_s>> members = {
        {ZOV_ZMT_PORTWWN, bytes({0x21, 0, 0, 0xE0, 0x8B, 0, 0, 1})},
        {ZOV_ZMT_DOMAINPORT, words(1, 10)},
        {ZOV_ZMT_FCADDRESS, bytes({0x0A, 0x0B, 0x1C})},
        {ZOV_ZMT_NODENAME, bytes({0x20, 0, 0, 0xE0, 0x8B, 0, 0, 1})},
        {ZOV_ZMT_ALIAS, bytes({'o', 'a', 'k'})},
        {ZOV_ZMT_UNKNOWN, bytes({1})},
    };
    std::vector<std::string> shown;
    for (auto [type, id] : members)
        if (void *member = zov_MemberCreate(type, &id))
            zov_MemberDestroy(member);
    for (const sim::Record &record : device->records())
        if (record.call == "zov_MemberCreate")
            shown.push_back(record.arguments);
    const std::vector<std::string> expected = {
        "\"port 210000e08b000001\"", "\"domain:port 1:10\"", "\"address 0a0b1c\"",
        "\"node 200000e08b000001\"", "\"alias oak\"",        "type 0"};
    EXPECT_EQ(shown, expected);
}
