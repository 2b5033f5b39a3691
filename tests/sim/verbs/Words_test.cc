#include "sim/verbs/perform.h"

#include <gtest/gtest.h>

#include "sim/Record.h"
#include "tests/sim/verbs/Commands.h"

using simtest::refusalOf;

namespace {

constexpr const char *kText = "Config.Snmp.SysDescr";

class Words : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();

    /// What a word of a command stands for.
    std::string meaningOf(const std::string &word) {
        sim::perform(*device, std::string("set ") + kText + " " + word + " silently");
        return device->get(kText);
    }
};

} // namespace

TEST_F(Words, AreTextsBetweenBlanks) {
    EXPECT_EQ(meaningOf("rack-4"), "rack-4");
    EXPECT_EQ(meaningOf("\t a=b;c'd\\e#f \t"), "a=b;c'd\\e#f");
}

TEST_F(Words, InQuotesMayHoldAnything) {
    EXPECT_EQ(meaningOf("\"edge switch,\track 4 # left\""), "edge switch,\track 4 # left");
    EXPECT_EQ(meaningOf("\"\""), "");
    EXPECT_EQ(meaningOf("a\"b c\"d"), "ab cd");
    EXPECT_EQ(meaningOf(R"("say \"hi\" \\ \x41\xff\x7F")"), "say \"hi\" \\ A\xFF\x7F");
}

TEST_F(Words, EveryTextIsWrittenAsRecordsShowIt) {
    std::string text;
    for (int byte = 1; byte < 256; ++byte)
        text += static_cast<char>(static_cast<unsigned char>(byte));
    EXPECT_EQ(meaningOf(sim::quoted(text)), text);
}

TEST_F(Words, WithAQuoteLeftOpenOrAnUnknownEscapeAreRefused) {
    for (const char *word : {"\"", "\"open", "a\"", "\"ends in \\\""})
        EXPECT_EQ(refusalOf(*device, std::string("set ") + kText + " " + word), "a double quote is not closed") << word;
    for (const char *word : {R"("\n")", R"("\x4")", R"("\x4g")", R"("\xg4")", R"("\X41")", "\"\\"})
        EXPECT_EQ(refusalOf(*device, std::string("fault ") + word),
                  "'\\' in quotes stands before '\"', '\\', or 'x' and two hexadecimal digits")
            << word;
    EXPECT_EQ(refusalOf(*device, "who\nfault \"open"), "line 2: a double quote is not closed");
}

TEST_F(Words, AfterAHashAreAComment) {
    sim::perform(*device, "port 3 offline # port 4 offline");
    sim::perform(*device, "# port 4 offline");
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_EQ(device->get("Oper.UserPort.0.4.OperState"), "Online");
}

TEST_F(Words, NearAreThoseWithLettersChangedAddedLeftOutOrSwapped) {
    for (const char *typed : {"suply", "supplyy", "suppyl", "supqly", "sup", "SUPPLU"})
        EXPECT_EQ(refusalOf(*device, std::string(typed) + " 1 bad"),
                  std::string("there is no verb '") + typed + "'; did you mean 'supply'?");
    for (const char *typed : {"s", "pp", "sxpxyx", "supplysupply", "\xFF\xFE"})
        EXPECT_EQ(refusalOf(*device, typed).find("did you mean"), std::string::npos) << typed;
}
