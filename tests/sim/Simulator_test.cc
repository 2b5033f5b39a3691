#include "sim/Simulator.h"

#include <gtest/gtest.h>

TEST(Record, LineShowsConnectionArgumentsResultAndKeys) {
    sim::Record record;
    record.client = 3;
    record.call = "zov_smlGetBatch";
    record.result = 9;
    record.exchanges = {{"Oper.Switch.WWN", "100000C0DD00A1B2", 0}, {"Oper.X", "", 5}};
    EXPECT_EQ(record.line(), "zov_smlGetBatch(3) = 9: Oper.Switch.WWN=\"100000C0DD00A1B2\", Oper.X=\"\" status 5");
}

TEST(Record, LineOfACallWithoutAConnectionBeginsWithItsArguments) {
    sim::Record record;
    record.call = "zov_ZoneCreate";
    record.arguments = "\"oak\"";
    record.result = 7;
    EXPECT_EQ(record.line(), "zov_ZoneCreate(\"oak\") = 7");
}

TEST(Record, LineOfACallWithoutAnythingIsItsNameAndItsResult) {
    sim::Record record;
    record.call = "zov_libFreeMemory";
    record.result = -1;
    EXPECT_EQ(record.line(), "zov_libFreeMemory() = -1");
}

TEST(Record, LineOfANotificationHasNoResult) {
    sim::Record record;
    record.client = 1;
    record.call = "notification";
    record.arguments = "33 [0:0:0] \"text\"";
    EXPECT_EQ(record.line(), "notification(1, 33 [0:0:0] \"text\")");
}

TEST(Record, LineStaysOneLineWhateverKeysAndValuesHold) {
    sim::Record record;
    record.client = 1;
    record.call = "zov_smlGet";
    record.exchanges = {{"a\nb", std::string("\x01\"\\\xFFz", 5) + std::string(1, '\0'), 0}};
    EXPECT_EQ(record.line(), "zov_smlGet(1) = 0: a\\x0ab=\"\\x01\\\"\\\\\\xffz\\x00\"");
}

TEST(Quoted, PrintingCharactersStandAsTheyAreUpToBothEndsOfTheirRange) {
    EXPECT_EQ(sim::quoted(" ~"), "\" ~\"");
    EXPECT_EQ(sim::quoted("\x1F\x7F"), "\"\\x1f\\x7f\"");
    EXPECT_EQ(sim::quoted(""), "\"\"");
}
