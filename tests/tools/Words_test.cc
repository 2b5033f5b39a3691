#include "tools/dcache/words.h"

#include <gmock/gmock.h>

using namespace dcache;

TEST(Words, NamesAreWrittenWithColons) {
    EXPECT_EQ(colonForm(Wwn("100000C0DD00A1B2")), "10:00:00:C0:DD:00:A1:B2");
    EXPECT_EQ(colonForm(Wwn()), "00:00:00:00:00:00:00:00");
}

TEST(Words, UnprintableBytesFromTheSwitchCannotReachATerminal) {
    EXPECT_EQ(printable("plain ~text"), "plain ~text");
    EXPECT_EQ(printable("a\x1b[31m\tb\n\x7f\xc3"), "a\\x1B[31m\\x09b\\x0A\\x7F\\xC3");
    EXPECT_EQ(printable(std::string_view("\0x", 2)), "\\x00x");
    EXPECT_EQ(inQuotes("adm\rin"), "\"adm\\x0Din\"");
}

TEST(Words, HardwareStatesHaveWordsAndOthersAreUnknown) {
    EXPECT_STREQ(hardwareStateWord(0), "unknown");
    EXPECT_STREQ(hardwareStateWord(1), "good");
    EXPECT_STREQ(hardwareStateWord(2), "bad");
    EXPECT_STREQ(hardwareStateWord(3), "not installed");
    EXPECT_STREQ(hardwareStateWord(4), "unknown");
    EXPECT_STREQ(hardwareStateWord(65535), "unknown");
}

TEST(Words, EveryStatusOfCimHasItsWord) {
    const std::vector<std::string> words = {"Unknown",    "OK",       "Degraded",         "Predictive Failure",
                                            "Error",      "Starting", "Stopping",         "Stopped",
                                            "In Service", "Dormant",  "self-test failed", "management-processor fault"};
    const std::vector<unsigned short> values = {0, 2, 3, 5, 6, 8, 9, 10, 11, 15, 32768, 32769};
    std::vector<std::string> seen;
    for (const unsigned short value : values)
        seen.push_back(statusWord(value));
    EXPECT_EQ(seen, words);
}

TEST(Words, AStatusWithoutAWordIsShownAsItsNumber) {
    EXPECT_EQ(statusWord(19), "status 19");
    EXPECT_EQ(statusWord(32767), "status 32767");
    EXPECT_EQ(statusWord(32770), "status 32770");
}

TEST(Words, PortStatesAreTheWordsOfTheSwitchAndEachNumberHasOneOfItsOwn) {
    EXPECT_EQ(portStateWord(2), "online");
    EXPECT_EQ(portStateWord(10), "offline");
    EXPECT_EQ(portStateWord(11), "diagnostics");
    EXPECT_EQ(portStateWord(6), "error");
    EXPECT_EQ(portStateWord(0), "unknown");
    EXPECT_EQ(portStateWord(3), "status 3");
    EXPECT_THAT(portStateWords(),
                testing::ElementsAre("online", "offline", "diagnostics", "error", "unknown", "absent"));
}

TEST(Words, EveryPortTypeOfTheCacheHasItsWord) {
    const DataCache &cache = []() -> DataCache & {
        DataCache::init();
        return *DataCache::getInstance();
    }();
    for (const std::string type : {"G", "GL", "E", "F", "FL", "Donor", "TH", "TF", "TR", "PT"})
        EXPECT_EQ(portTypeWord(cache.smlTypeToCIMType(type)), type);
    for (const std::string type : {"GL", "EXG"})
        EXPECT_EQ(hardwareTypeWord(cache.smlHWTypeToCIMHWType(type)), type);
    DataCache::releaseInstance();
    EXPECT_EQ(portTypeWord(0), "unknown");
    EXPECT_EQ(portTypeWord(1), "type 1");
    EXPECT_EQ(portTypeWord(16005), "type 16005");
    EXPECT_EQ(hardwareTypeWord(0), "unknown");
    EXPECT_EQ(hardwareTypeWord(3), "type 3");
}

TEST(Words, TransceiverFormatsAndBladesHaveWords) {
    EXPECT_EQ(transceiverFormatWord(0), "SFP");
    EXPECT_EQ(transceiverFormatWord(1), "other");
    EXPECT_EQ(transceiverFormatWord(2), "unknown");
    EXPECT_EQ(transceiverFormatWord(3), "format 3");
    std::vector<std::string> kinds;
    for (unsigned short kind = 0; kind <= 5; ++kind)
        kinds.push_back(bladeKindWord(kind));
    EXPECT_THAT(kinds, testing::ElementsAre("none", "fan", "power supply", "CPU", "I/O", "kind 5"));
}

TEST(Words, AStatusListIsTakenApartIntoStateAndFaults) {
    struct Row {
        StatusList list;
        std::string state;
        std::string faults;
    };
    const std::vector<Row> rows = {
        {{}, "not read yet", "faults not read"},
        {{2}, "OK", "faults not read"},
        {{2, 0, 0}, "OK", "no faults"},
        {{0, 0, 0}, "Unknown", "no faults"},
        {{6, 32768, 0}, "Error", "self-test failed"},
        {{2, 5, 0, 32769}, "OK, Predictive Failure", "management-processor fault"},
        {{6, 32768, 32769}, "Error", "self-test failed, management-processor fault"},
    };
    for (const Row &row : rows) {
        const StatusWords words = statusWords(row.list);
        EXPECT_EQ(words.state, row.state) << testing::PrintToString(row.list);
        EXPECT_EQ(words.faults, row.faults) << testing::PrintToString(row.list);
    }
}

TEST(Words, AStatusChangeLeavesOutFaultsThatStayedTheSame) {
    EXPECT_EQ(statusChange({2, 0, 0}, {10, 0, 0}), "OK -> Stopped");
    EXPECT_EQ(statusChange({10, 32769}, {2, 32769}), "Stopped -> OK");
}

TEST(Words, AStatusChangeNamesFaultsThatAppearedOrWereReadForTheFirstTime) {
    EXPECT_EQ(statusChange({2, 0, 0}, {6, 32768, 0}), "OK, no faults -> Error, self-test failed");
    EXPECT_EQ(statusChange({2}, {2, 0, 0}), "OK, faults not read -> OK, no faults");
}

TEST(Words, EveryAreaHasItsName) {
    std::vector<std::string> names;
    for (const auto area :
         {DataCacheArea::switchInfo, DataCacheArea::chassis, DataCacheArea::blades, DataCacheArea::ports,
          DataCacheArea::accounts, DataCacheArea::fabric, DataCacheArea::zoning})
        names.emplace_back(areaWord(area));
    EXPECT_THAT(names, testing::ElementsAre("switch", "chassis", "blades", "ports", "accounts", "fabric", "zoning"));
}
