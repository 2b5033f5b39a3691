// World-wide names and zone members as text.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/zoning/ScriptedZoning.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned char kName[] = {0x10, 0x00, 0x00, 0xC0, 0xDD, 0x0A, 0xB1, 0xFF};
constexpr const char *kUntouched = "as it was";
constexpr zov_handle_t kHandle = 0x80000007;

using Buffer = std::array<char, 256>;

Buffer untouched() {
    Buffer buffer{};
    buffer.fill('#');
    std::strcpy(buffer.data(), kUntouched);
    return buffer;
}

class MemberText : public testing::Test {
protected:
    MemberText() {
        scripted::zoning = {};
        scripted::zoning.connection = hSwitch = kHandle;
    }
    ~MemberText() override { hSwitch = 0; }

    std::vector<std::string> log() const { return support::messagesSince(_mark); }

    /// formatMemberId() of the second of three members.
    static std::string format(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s &id) {
        const std::array<zov_fzs_zonemember_type_e, 3> types = {ZOV_ZMT_ALIAS, type, ZOV_ZMT_ALIAS};
        std::array<zov_fzs_memberid_s, 3> records = {};
        for (zov_fzs_memberid_s &record : records)
            std::strcpy(reinterpret_cast<char *>(record.u.byte), "another");
        records[1] = id;
        Buffer buffer = untouched();
        formatMemberId(types.data(), records.data(), buffer.data(), 1);
        return buffer.data();
    }

    /// ZoneMemberToString() of such a member; its result behind the text.
    static std::string convert(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s &id) {
        scripted::Object *member = scripted::member(nullptr, type, "member");
        member->id = id;
        Buffer buffer = untouched();
        const int result = ZoneMemberToString(buffer.data(), member);
        return std::string(buffer.data()) + " " + std::to_string(result);
    }

    static zov_fzs_memberid_s bytes(const std::vector<unsigned char> &values) {
        zov_fzs_memberid_s id{};
        std::copy(values.begin(), values.end(), id.u.byte);
        return id;
    }
    /// Domain and port, in the order of bytes of this machine.
    static zov_fzs_memberid_s words(uint32_t domain, uint32_t port) {
        zov_fzs_memberid_s id{};
        id.u.word[0] = domain;
        id.u.word[1] = port;
        return id;
    }
    static zov_fzs_memberid_s text(const std::string &characters) {
        zov_fzs_memberid_s id{};
        characters.copy(reinterpret_cast<char *>(id.u.byte), sizeof id.u.byte);
        return id;
    }

private:
    std::size_t _mark = support::logMark();
};

// ---- bytes -------------------------------------------------------------------------------------------

TEST_F(MemberText, BytesAreUpperCaseDigitsWithAnEnd) {
    Buffer buffer = untouched();
    EXPECT_EQ(byteToStr(buffer.data(), kName, 8), buffer.data());
    EXPECT_STREQ(buffer.data(), "100000C0DD0AB1FF");
    EXPECT_EQ(buffer[17], '#');
    buffer = untouched();
    byteToStr(buffer.data(), kName + 5, 1);
    EXPECT_STREQ(buffer.data(), "0A");
    EXPECT_EQ(buffer[3], 'i') << "of the text before";
}

TEST_F(MemberText, NoBytesLeaveTheBufferAsItWas) {
    for (const int count : {0, -1, INT32_MIN}) {
        Buffer buffer = untouched();
        EXPECT_EQ(byteToStr(buffer.data(), kName, count), buffer.data());
        EXPECT_STREQ(buffer.data(), kUntouched);
    }
    Buffer buffer = untouched();
    EXPECT_EQ(byteToStr(nullptr, kName, 8), nullptr);
    EXPECT_EQ(byteToStr(buffer.data(), nullptr, 8), buffer.data());
    EXPECT_STREQ(buffer.data(), kUntouched);
}

TEST_F(MemberText, ANameIsSixteenDigits) {
    Buffer buffer = untouched();
    EXPECT_EQ(ZOV_WWNToStr(buffer.data(), kName), buffer.data());
    EXPECT_STREQ(buffer.data(), "100000C0DD0AB1FF");
    EXPECT_EQ(buffer[17], '#');
    EXPECT_EQ(ZOV_WWNToStr(nullptr, kName), nullptr);
    buffer = untouched();
    EXPECT_EQ(ZOV_WWNToStr(buffer.data(), nullptr), buffer.data());
    EXPECT_STREQ(buffer.data(), kUntouched);
}

// ---- a member as people read it ----------------------------------------------------------------------

TEST_F(MemberText, PeopleReadEveryTypeOfMember) {
    EXPECT_EQ(format(ZOV_ZMT_PORTWWN, bytes({0x10, 0, 0, 0xC0, 0xDD, 0x0A, 0xB1, 0xFF})), "100000C0DD0AB1FF");
    EXPECT_EQ(format(ZOV_ZMT_FCADDRESS, bytes({0x01, 0xAB, 0xFF, 0x77})), "01abff");
    EXPECT_EQ(format(ZOV_ZMT_ALIAS, text("web")), "web");
    EXPECT_EQ(format(ZOV_ZMT_ALIAS, text("")), "");
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MemberText, OfADomainItsFirstByteIsReadAndOfAPortItsWord) {
    zov_fzs_memberid_s id = words(0, 10);
    id.u.byte[0] = 1;
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, id), "01:10");
    id.u.byte[0] = 239;
    id.u.byte[3] = 5;
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, id), "239:10") << "the other bytes do not matter";
    id.u.word[1] = 70000;
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, id), "239:70000");
    id.u.word[1] = 0xFFFFFFFF;
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, id), "239:-01");
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, words(0, 3)), "00:03");
}

TEST_F(MemberText, AnAliasWithoutAnEndIsReadToTheEndOfItsRecord) {
    EXPECT_EQ(format(ZOV_ZMT_ALIAS, text(std::string(68, 'a'))), std::string(68, 'a'));
    EXPECT_EQ(format(ZOV_ZMT_ALIAS, text(std::string(67, 'a'))), std::string(67, 'a'));
}

TEST_F(MemberText, UnknownMembersAndNodesAreLoggedAndOthersAreNot) {
    const zov_fzs_memberid_s id = text("text");
    EXPECT_EQ(format(ZOV_ZMT_UNKNOWN, id), kUntouched);
    EXPECT_EQ(format(ZOV_ZMT_NODENAME, id), kUntouched);
    EXPECT_EQ(format(static_cast<zov_fzs_zonemember_type_e>(6), id), kUntouched);
    EXPECT_EQ(format(static_cast<zov_fzs_zonemember_type_e>(-1), id), kUntouched);
    EXPECT_THAT(log(), ElementsAre("DCACHE: Type is ZOV_ZMT_UNKNOWN", "DCACHE: Type is ZOV_ZMT_NODENAME"));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
}

TEST_F(MemberText, WhatIsNotThereIsLeftAlone) {
    const zov_fzs_zonemember_type_e type = ZOV_ZMT_ALIAS;
    const zov_fzs_memberid_s id = text("text");
    Buffer buffer = untouched();
    formatMemberId(nullptr, &id, buffer.data(), 0);
    formatMemberId(&type, nullptr, buffer.data(), 0);
    formatMemberId(&type, &id, nullptr, 0);
    formatMemberId(&type, &id, buffer.data(), -1);
    EXPECT_STREQ(buffer.data(), kUntouched);
    EXPECT_THAT(log(), IsEmpty());
}

// ---- a member as commands take it --------------------------------------------------------------------

TEST_F(MemberText, CommandsTakeFourTypesOfMember) {
    EXPECT_EQ(convert(ZOV_ZMT_PORTWWN, bytes({0x10, 0, 0, 0xC0, 0xDD, 0x0A, 0xB1, 0xFF})), "100000C0DD0AB1FF 1");
    EXPECT_EQ(convert(ZOV_ZMT_DOMAINPORT, words(1, 10)), "010a 1");
    EXPECT_EQ(convert(ZOV_ZMT_DOMAINPORT, words(239, 255)), "efff 1");
    EXPECT_EQ(convert(ZOV_ZMT_DOMAINPORT, words(0x12345, 0xFFFFFFFF)), "12345ffffffff 1") << "whole words";
    EXPECT_EQ(convert(ZOV_ZMT_FCADDRESS, bytes({0x01, 0xAB, 0xFF, 0x77})), "01ABFF 1");
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text("web")), "web 1");
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text("")), " 1");
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MemberText, TheSameMemberReadsOtherwiseInCommands) {
    zov_fzs_memberid_s id = words(0, 10);
    id.u.byte[0] = 1;
    EXPECT_EQ(format(ZOV_ZMT_DOMAINPORT, id), "01:10");
    EXPECT_EQ(convert(ZOV_ZMT_DOMAINPORT, words(1, 10)), "010a 1");
    EXPECT_EQ(format(ZOV_ZMT_FCADDRESS, bytes({0x01, 0xAB, 0x00})), "01ab00");
    EXPECT_EQ(convert(ZOV_ZMT_FCADDRESS, bytes({0x01, 0xAB, 0x00})), "01AB00 1");
}

TEST_F(MemberText, AnAliasIsCutTo64Characters) {
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text(std::string(63, 'a'))), std::string(63, 'a') + " 1");
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text(std::string(64, 'a'))), std::string(64, 'a') + " 1");
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text(std::string(68, 'a'))), std::string(64, 'a') + " 1");

    // A name of 70 characters does not fit into an identifier: a library that hands out one writes beyond what it says.
    scripted::Object *member = scripted::member(nullptr, ZOV_ZMT_ALIAS, "long");
    member->attribute = std::string(70, 'b');
    Buffer buffer = untouched();
    EXPECT_EQ(ZoneMemberToString(buffer.data(), member), 1);
    EXPECT_EQ(std::string(buffer.data()), std::string(64, 'b'));
    EXPECT_EQ(buffer[65], '#');
}

TEST_F(MemberText, AnyOtherMemberIsInvalid) {
    const zov_fzs_memberid_s id = text("text");
    for (const int type : {0, 4, 6, -1, 255})
        EXPECT_EQ(convert(static_cast<zov_fzs_zonemember_type_e>(type), id), "Invalid 0") << type;
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MemberText, TheSwitchLibraryFindsTheTextEmpty) {
    Buffer buffer = untouched();
    std::vector<std::string> found;
    scripted::zoning.enter = [&] {
        found.emplace_back(buffer.data());
        buffer = untouched();
    };
    ZoneMemberToString(buffer.data(), scripted::member(nullptr, ZOV_ZMT_ALIAS, "web"));
    buffer = untouched();
    get_Active_ZoneSet(buffer.data());
    EXPECT_THAT(found, ElementsAre("", ""));
}

TEST_F(MemberText, AMemberThatCannotBeReadIsInvalid) {
    scripted::zoning.faults = {{"MemberGetAttr"}};
    EXPECT_EQ(convert(ZOV_ZMT_ALIAS, text("web")), "Invalid 0");
    scripted::zoning.calls.clear();
    Buffer buffer = untouched();
    EXPECT_EQ(ZoneMemberToString(buffer.data(), nullptr), 0);
    EXPECT_STREQ(buffer.data(), "Invalid");
    EXPECT_EQ(ZoneMemberToString(nullptr, scripted::member(nullptr, ZOV_ZMT_ALIAS, "web")), 0);
    EXPECT_THAT(scripted::zoning.calls, IsEmpty());
}

// ---- the active zone set -----------------------------------------------------------------------------

TEST_F(MemberText, TheActiveZoneSetIsAskedFor) {
    scripted::zoning.activeName = "live";
    Buffer buffer = untouched();
    get_Active_ZoneSet(buffer.data());
    EXPECT_STREQ(buffer.data(), "live");
    scripted::zoning.activeName = "";
    get_Active_ZoneSet(buffer.data());
    EXPECT_STREQ(buffer.data(), "");
    EXPECT_THAT(scripted::zoning.calls, ElementsAre("fzsGetActiveZonesetName()", "fzsGetActiveZonesetName()"));
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MemberText, AnActiveZoneSetsNameThatIsTooLongIsCut) {
    for (const std::size_t length : {64U, 65U, 100U}) {
        scripted::zoning.activeName = std::string(length, 'z');
        Buffer buffer = untouched();
        get_Active_ZoneSet(buffer.data());
        EXPECT_EQ(std::string(buffer.data()), std::string(64, 'z')) << length;
    }
}

TEST_F(MemberText, AFailureToTellItIsCritical) {
    scripted::zoning.activeName = "rubbish";
    scripted::zoning.faults = {{"fzsGetActiveZonesetName"}};
    Buffer buffer = untouched();
    get_Active_ZoneSet(buffer.data());
    EXPECT_STREQ(buffer.data(), "");
    ASSERT_EQ(log().size(), 1U);
    EXPECT_THAT(log()[0], testing::MatchesRegex("CRIT:MERO_Zov_Lib:get_Active_ZoneSet\\[[0-9]+\\] "
                                                "zov_fzsGetActiveZonesetName Failed"));
    EXPECT_EQ(support::messagesIn(support::kCriticalLog).back(), log()[0]);
    scripted::zoning.calls.clear();
    get_Active_ZoneSet(nullptr);
    EXPECT_THAT(scripted::zoning.calls, IsEmpty());
}

// ---- single words ------------------------------------------------------------------------------------

TEST_F(MemberText, ToUpperChangesATextInPlace) {
    char words[] = "aZ 09:_[{\xe4z";
    EXPECT_EQ(toUpper(words), words);
    EXPECT_STREQ(words, "AZ 09:_[{\xe4Z");
    char empty[] = "";
    EXPECT_EQ(toUpper(empty), empty);
    EXPECT_EQ(toUpper(nullptr), nullptr);
}

TEST_F(MemberText, ZoneTypesHaveWords) {
    EXPECT_STREQ(zov_smlCnvFromZOVZoneType(ZOV_ZT_SOFT), "Soft");
    EXPECT_STREQ(zov_smlCnvFromZOVZoneType(ZOV_ZT_HARDVPF), "HardVPF");
    EXPECT_STREQ(zov_smlCnvFromZOVZoneType(ZOV_ZT_HARDACL), "HardACL");
    for (const int type : {0, 4, -1, 255})
        EXPECT_STREQ(zov_smlCnvFromZOVZoneType(static_cast<zov_fzs_zone_type_e>(type)), "Invalid") << type;
}

} // namespace
