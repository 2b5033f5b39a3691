// `dcache blades`: commands/blades.cc.
#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

std::unique_ptr<sim::Simulator> directorWithLastBlade(const char *type) {
    auto director = sim::create("director-8");
    director->removeBlade(7, sim::Notify::no);
    sim::Blade blade;
    blade.type = type;
    director->insertBlade(7, blade, sim::Notify::no);
    return director;
}

/// The word for the last slot's blade.
std::string lastKind() {
    return jsonOf(showBlades()).at("blades").at(7).at("kind");
}

} // namespace

TEST(Blades, OfADirectorOnlyTheLastSlotIsKnownAndTheTableSaysSo) {
    const auto director = sim::create("director-8");
    const std::string table = render(showBlades(), Format::table, false);
    EXPECT_THAT(table, HasSubstr("6     ?      ?       ?                    ?\n"
                                 "7     I/O    OK (2)  2                    4\n"));
    EXPECT_THAT(table, EndsWith("\n\nOnly slot 7 is known: the cache keeps the slot that it read last.\n"));
}

TEST(Blades, WhatIsNotKnownIsNull) {
    const auto director = sim::create("director-8");
    const auto object = jsonOf(showBlades());
    EXPECT_EQ(object.at("slots"), 8);
    EXPECT_EQ(object.at("knownSlot"), 7);
    EXPECT_EQ(object.at("temperatureSensors"), nullptr);
    EXPECT_EQ(object.at("blades").at(0), support::parseJson(R"({
        "slot": 0, "kind": null, "operationalStatus": null, "state": null, "temperatureSensors": null,
        "voltageSensors": null})"));
    EXPECT_EQ(object.at("blades").at(7), support::parseJson(R"({
        "slot": 7, "kind": "I/O", "operationalStatus": [2], "state": "OK", "temperatureSensors": 2,
        "voltageSensors": 4})"));
}

TEST(Blades, ACpuBladeIsCalledOne) {
    const auto director = directorWithLastBlade("CPU");
    EXPECT_EQ(lastKind(), "CPU");
}

TEST(Blades, AFanBladeIsCalledOne) {
    const auto director = directorWithLastBlade("FAN");
    EXPECT_EQ(lastKind(), "fan");
}

TEST(Blades, APowerSupplyBladeIsCalledOne) {
    const auto director = directorWithLastBlade("PS");
    EXPECT_EQ(lastKind(), "power supply");
}

TEST(Blades, ABladeInTroubleIsShownInItsState) {
    const auto director = sim::create("director-8");
    director->set("Oper.Blade.7.DiagStatus", "Compromised", sim::Notify::no);
    EXPECT_THAT(render(showBlades(), Format::table, true), HasSubstr("\x1b[1;31mDegraded (3)\x1b[0m"));
}

TEST(Blades, AnEmptySlotHoldsNoneAndHasNoStatus) {
    const auto director = sim::create("director-8");
    director->removeBlade(7, sim::Notify::no);
    EXPECT_THAT(render(showBlades(), Format::table, false),
                HasSubstr("\n7     none   -       -                    -\n"));
    EXPECT_EQ(jsonOf(showBlades()).at("blades").at(7).at("operationalStatus"), nullptr);
}

TEST(Blades, ABoxHasNoneAndTellsItsSensors) {
    const auto box = sim::create("fixed-24");
    const Report report = showBlades();
    EXPECT_EQ(render(report, Format::table, false), "slots                1\n"
                                                    "temperature sensors  3\n"
                                                    "voltage sensors      5\n"
                                                    "\n"
                                                    "No blades: the switch is one box.\n");
    EXPECT_EQ(jsonOf(report), support::parseJson(R"({
        "slots": 1, "knownSlot": null, "temperatureSensors": 3, "voltageSensors": 5, "blades": []})"));
    EXPECT_EQ(render(report, Format::terse, false), "slots=1\n"
                                                    "knownSlot=\n"
                                                    "temperatureSensors=3\n"
                                                    "voltageSensors=5\n");
}

TEST(Blades, AChassisWithoutSlotsSaysSo) {
    const auto box = sim::create("fixed-24");
    box->set("Oper.Chassis.0.MaxSlots", "0", sim::Notify::no);
    EXPECT_EQ(render(showBlades(), Format::table, false), "slots  0\n\nNo blades: the chassis has no slots.\n");
}

TEST(Blades, OfMoreSlotsThanTheCacheKeepsNoneIsKnown) {
    const auto director = sim::create("director-8");
    director->set("Oper.Chassis.0.MaxSlots", "33", sim::Notify::no);
    const Report report = showBlades();
    EXPECT_THAT(render(report, Format::table, false),
                EndsWith("\n\nNo slot is known: the last one is kept, and it is above 31.\n"));
    EXPECT_EQ(jsonOf(report).at("knownSlot"), nullptr);
    EXPECT_EQ(jsonOf(report).at("blades").size(), 33u);
    EXPECT_EQ(jsonOf(report).at("blades").at(32).at("kind"), nullptr);
}

TEST(Blades, ASlotThatCannotBeReadIsAFailureThatNamesTheArea) {
    const auto director = sim::create("director-8");
    sim::Fault fault;
    fault.key = "Oper.Blade.3.Type";
    fault.status = 7;
    fault.times = -1;
    director->addFault(fault);
    EXPECT_THAT(showBlades, testing::ThrowsMessage<Failure>(HasSubstr("the blades data could not be read")));
}
