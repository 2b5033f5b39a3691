#include "sim/verbs/perform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sim/verbs/Commands.h"

using simtest::refusalOf;
using testing::HasSubstr;

namespace {

class Values : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create("fabric-2");

    void expectRefused(const std::string &before, const std::vector<std::string> &values, const std::string &after) {
        for (const std::string &value : values)
            EXPECT_THAT(refusalOf(*device, before + value + after), HasSubstr("cannot be word")) << before << value;
    }
};

} // namespace

TEST_F(Values, NumbersAreDecimalAndFit) {
    sim::perform(*device, "port 0 offline\nport 007 offline");
    EXPECT_EQ(device->get("Oper.UserPort.0.0.OperState"), "Offline");
    EXPECT_EQ(device->get("Oper.UserPort.0.7.OperState"), "Offline");
    expectRefused("port ", {"\"\"", "-1", "+1", "1.0", "0x1", "1a", "4294967296", "99999999999999999999"}, " offline");
    EXPECT_EQ(refusalOf(*device, "port 4294967295 offline"),
              "there is no port 4294967295; the switch has 24, counted from 0");
}

TEST_F(Values, SourceNumbersAndCodesMayBeNegative) {
    sim::perform(*device, "deliver -1 -2147483648 2147483647 0");
    expectRefused("deliver ", {"2147483648", "-2147483649", "--1", "\"\""}, " 0 0 0");
}

TEST_F(Values, BytesAreDecimalOrHexadecimal) {
    const std::string data = "Oper.UserPort.0.20.SFPData0_31";
    for (const auto &[byte, digits] : std::vector<std::pair<std::string, std::string>>{
             {"13", "0D"}, {"0x11", "11"}, {"0Xff", "FF"}, {"0", "00"}, {"255", "FF"}}) {
        sim::perform(*device, "media 20 plug identifier=" + byte);
        EXPECT_EQ(device->get(data).substr(0, 2), digits);
        sim::perform(*device, "media 20 pull");
    }
    expectRefused("media 20 plug identifier=", {"256", "0x100", "0x", "-1", "ff", "\"\""}, "");
}

TEST_F(Values, TimesHaveUnits) {
    const auto passed = [&](const std::string &time) {
        const long before = device->uptime();
        sim::perform(*device, "clock pass " + time);
        return device->uptime() - before;
    };
    EXPECT_EQ(passed("90"), 90);
    EXPECT_EQ(passed("90s"), 90);
    EXPECT_EQ(passed("90 s"), 90);
    EXPECT_EQ(passed("\"90 s\""), 90);
    EXPECT_EQ(passed("2000ms"), 2);
    EXPECT_EQ(passed("5min"), 300);
    EXPECT_EQ(passed("2 H"), 7200);
    EXPECT_EQ(passed("1 d"), 86400);
    EXPECT_EQ(passed("0"), 0);
    expectRefused("clock pass ", {"-1", "s", "\"\"", "5 weeks", "5weeks", "4294967296", "1e3"}, "");
    for (const char *time : {"5s s", "5min h"})
        EXPECT_THAT(refusalOf(*device, std::string("clock pass ") + time), HasSubstr("is no time; allowed: ")) << time;
}

TEST_F(Values, SpeedsAreWholeOrFractions) {
    for (const char *speed : {"10", "0.5", "1000000", "1.25"}) {
        sim::perform(*device, std::string("clock run speed=") + speed);
        EXPECT_EQ(device->speed(), std::stod(speed));
    }
    expectRefused("clock run speed=", {"0", "0.0", "-1", "inf", "nan", "1e3", "fast", "\"\"", "0x10", "1,5"}, "");
    EXPECT_EQ(refusalOf(*device, "clock run speed=1000001"), "a speed is above 0, and 1000000 at most");
}

TEST_F(Values, NamesOfPortsAndSwitchesMayHaveColons) {
    sim::perform(*device, "peer add 10:00:00:c0:dd:00:00:0a domain=10\npeer add 100000C0DD00000B domain=11");
    EXPECT_EQ(sim::perform(*device, "peer list"), "100000C0DD02A002 domain=2 priority=128 ports=24\n"
                                                  "100000C0DD00000A domain=10 priority=128 ports=24\n"
                                                  "100000C0DD00000B domain=11 priority=128 ports=24");
    expectRefused("peer add ",
                  {"100000C0DD00000", "100000C0DD00000BB", "10-00-00-C0-DD-00-00-0A", "10:00:00:C0:DD:00:00:0", "\"\"",
                   "1000:00C0:DD00:00:0A:00", "10:00:00:C0:DD:00:00:0A:", "100000C0DD00000G", "::::::::::::::::"},
                  " domain=12");
}

TEST_F(Values, SwitchesAreKnownByNameDomainOrAsTheLocalOne) {
    for (const char *local : {"local", "Local", "1", "100000C0DD02A001", "10:00:00:C0:DD:02:A0:01"})
        for (const char *other : {"2", "100000c0dd02a002", "10:00:00:C0:DD:02:A0:02"}) {
            sim::perform(*device, std::string("link ") + local + ":17 " + other + ":18");
            EXPECT_EQ(device->links().size(), 2U);
            sim::perform(*device, std::string("unlink ") + other + ":18 " + local + ":17");
            EXPECT_EQ(device->links().size(), 1U);
        }
    expectRefused("link ", {"local", "local:", ":3", "2:x", "2:-1", "nowhere:3", "100000C0DD02A002"}, " 2:17");
    EXPECT_EQ(refusalOf(*device, "link local:17 77:17"), "no switch has domain 77; there are 1, 2");
    EXPECT_EQ(refusalOf(*device, "link local:17 10000000000000FF:17"), "there is no switch 10000000000000FF");
}
