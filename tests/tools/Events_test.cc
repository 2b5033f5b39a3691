#include "tools/dcache/events.h"

#include "tools/dcache/json.h"
#include <gmock/gmock.h>
#include <memory>

using namespace dcache;

namespace {

const Wwn kOwn("100000C0DD00A1B2");
const Wwn kOther("100000C0DD00FFFF");
const Wwn kFabric("100000C0DD000001");
const Wwn kPort("200100C0DD00A1B2");
const Surroundings kAround = {kOwn, 2};

/// The fields as one JSON object.
std::string fieldsOf(const EventDescription &description) {
    Json object = Json::object();
    for (const Field &field : description.fields)
        object[field.name] = toJson(field.value);
    return object.dump();
}

struct Row {
    std::shared_ptr<DataCacheEvent> event;
    int32_t type;
    std::string name;
    std::string words;
    std::string fields;
};

template <class Event, class... Arguments> std::shared_ptr<DataCacheEvent> make(Arguments &&...arguments) {
    return std::make_shared<Event>(std::forward<Arguments>(arguments)...);
}

const std::string kOwnField = R"("switchWwn":"10:00:00:C0:DD:00:A1:B2")";
const std::string kFabricField = R"("fabricWwn":"10:00:00:C0:DD:00:00:01")";
const std::string kPortField = R"("portWwn":"20:01:00:C0:DD:00:A1:B2")";

std::vector<Row> everyEvent() {
    const std::string slot3 = "{" + kOwnField + R"(,"slot":3})";
    const std::string memberSwitch = "{" + kFabricField + R"(,"switchWwn":"10:00:00:C0:DD:00:FF:FF"})";
    const std::string portInFabric = R"({"ownerWwn":"10:00:00:C0:DD:00:00:01",)" + kPortField + R"(,"origin":1})";
    const std::string unit2 = "{" + kOwnField + R"(,"number":2,"count":1})";
    return {
        {make<DCEventFabricAdd>(kFabric), 1, "FabricAdd", "now part of fabric 10:00:00:C0:DD:00:00:01",
         "{" + kFabricField + "}"},
        {make<DCEventFabricRemove>(kFabric), 2, "FabricRemove", "no longer part of fabric 10:00:00:C0:DD:00:00:01",
         "{" + kFabricField + "}"},
        {make<DCEventFabricChange>(kFabric, true), 3, "FabricChange", "switches joined fabric 10:00:00:C0:DD:00:00:01",
         "{" + kFabricField + R"(,"added":true})"},
        {make<DCEventFabricChange>(kFabric, false), 3, "FabricChange", "switches left fabric 10:00:00:C0:DD:00:00:01",
         "{" + kFabricField + R"(,"added":false})"},
        {make<DCEventSwitchAdd>(kFabric, kOther), 4, "SwitchAdd",
         "switch 10:00:00:C0:DD:00:FF:FF joined fabric 10:00:00:C0:DD:00:00:01", memberSwitch},
        {make<DCEventSwitchRemove>(kFabric, kOther), 5, "SwitchRemove",
         "switch 10:00:00:C0:DD:00:FF:FF left fabric 10:00:00:C0:DD:00:00:01", memberSwitch},
        {make<DCEventSwitchStatusChange>(kOwn, kOther, StatusList{2, 0, 0}, StatusList{10, 0, 0}), 6,
         "SwitchStatusChange", "switch status OK -> Stopped",
         "{" + kOwnField + R"(,"principalWwn":"10:00:00:C0:DD:00:FF:FF","prevStatus":[2,0,0],"newStatus":[10,0,0]})"},
        {make<DCEventBladeAdd>(kOwn, 3), 7, "BladeAdd", "I/O blade inserted in slot 3", slot3},
        {make<DCEventBladeRemove>(kOwn, 3), 8, "BladeRemove", "I/O blade removed from slot 3", slot3},
        {make<DCEventPortAdd>(kOwn, kPort, 0), 10, "PortAdd", "port 20:01:00:C0:DD:00:A1:B2 appeared",
         R"({"ownerWwn":"10:00:00:C0:DD:00:A1:B2",)" + kPortField + R"(,"origin":0})"},
        {make<DCEventPortAdd>(kFabric, kPort, 1), 10, "PortAdd",
         "port 20:01:00:C0:DD:00:A1:B2 entered the name server of fabric 10:00:00:C0:DD:00:00:01", portInFabric},
        {make<DCEventPortRemove>(kFabric, kPort, 1), 11, "PortRemove",
         "port 20:01:00:C0:DD:00:A1:B2 left the name server of fabric 10:00:00:C0:DD:00:00:01", portInFabric},
        {make<DCEventPortStatusChange>(kOwn, kPort, kFabric, StatusList{2}, StatusList{6}), 12, "PortStatusChange",
         "port 20:01:00:C0:DD:00:A1:B2 went from online to error",
         "{" + kOwnField + "," + kPortField + "," + kFabricField + R"(,"prevStatus":[2],"newStatus":[6]})"},
        {make<DCEventFanAdd>(kOwn, 3), 16, "FanAdd", "fan blade inserted in slot 3", slot3},
        {make<DCEventFanRemove>(kOwn, 3, 1), 17, "FanRemove", "fan blade removed from slot 3, 1 left",
         "{" + kOwnField + R"(,"slot":3,"count":1})"},
        {make<DCEventPowerSupplyAdd>(kOwn, 2), 19, "PowerSupplyAdd", "power supply 2 installed",
         "{" + kOwnField + R"(,"number":2})"},
        {make<DCEventPowerSupplyRemove>(kOwn, 2, 1), 20, "PowerSupplyRemove", "power supply 2 removed, 1 of 2 good",
         unit2},
        {make<DCEventPowerSupplyFail>(kOwn, 2, 1), 21, "PowerSupplyFail", "power supply 2 failed, 1 of 2 good", unit2},
        {make<DCEventCPUAdd>(kOwn, 3), 22, "CPUAdd", "CPU blade inserted in slot 3", slot3},
        {make<DCEventCPURemove>(kOwn, 3), 23, "CPURemove", "CPU blade removed from slot 3", slot3},
        {make<DCEventUserAcctAdd>(kOwn, "ann"), 25, "UserAcctAdd", "user account \"ann\" added",
         "{" + kOwnField + R"(,"name":"ann"})"},
        {make<DCEventUserAcctRemove>(kOwn, "ann"), 26, "UserAcctRemove", "user account \"ann\" removed",
         "{" + kOwnField + R"(,"name":"ann"})"},
        {make<DCEventActiveZonesetChange>(kOwn, "day", "night"), 27, "ActiveZonesetChange",
         "zone set \"day\" is active now, was \"night\"",
         "{" + kOwnField + R"(,"zoneset":"day","prevZoneset":"night"})"},
        {make<DCEventZoningDBChange>(kOwn), 28, "ZoningDBChange", "zoning database changed", "{" + kOwnField + "}"},
        {make<DCEventUserPasswdChg>(kOwn, "ann"), 29, "UserPasswdChg", "password of user \"ann\" changed",
         "{" + kOwnField + R"(,"user":"ann"})"},
        {make<DCEventUserLoginFailure>(kOwn, "ann"), 30, "UserLoginFailure", "login of user \"ann\" failed",
         "{" + kOwnField + R"(,"user":"ann"})"},
        {make<DCEventEnvEvent>(kOwn, "temperature", "overtemp", "CPU0 sensor"), 31, "EnvEvent",
         "temperature alarm: too hot, CPU0 sensor",
         "{" + kOwnField + R"(,"category":"temperature","kind":"overtemp","detail":"CPU0 sensor"})"},
        {make<DCEventCIMChange>(), 32, "CIMChange", "CIM configuration changed", "{}"},
        {make<DCEventDataCacheUpdateComplete>(), 33, "DataCacheUpdateComplete", "every area of the cache is up to date",
         "{}"},
    };
}

std::string wordsOf(const DataCacheEvent &event, const Surroundings &around = kAround) {
    return describe(event, around).words;
}

} // namespace

TEST(Events, EveryClassHasItsNumberNameWordsAndFields) {
    for (const Row &row : everyEvent()) {
        const EventDescription description = describe(*row.event, kAround);
        EXPECT_EQ(description.type, row.type);
        EXPECT_EQ(description.name, row.name);
        EXPECT_EQ(description.words, row.words);
        EXPECT_EQ(fieldsOf(description), row.fields);
    }
}

TEST(Events, All27ClassesAreKnownAndNoOtherNumberIs) {
    struct Numbered : DataCacheEvent {
        using DataCacheEvent::DataCacheEvent;
    };
    std::set<int32_t> known;
    for (const Row &row : everyEvent())
        known.insert(row.type);
    EXPECT_EQ(known.size(), 27u);
    for (const int32_t type : {-1, 0, 9, 13, 14, 15, 18, 24, 34, 2147483647}) {
        const EventDescription description = describe(Numbered(type), kAround);
        EXPECT_STREQ(description.name, "Unknown");
        EXPECT_EQ(description.words, "event of unknown type " + std::to_string(type));
        EXPECT_TRUE(description.fields.empty());
        EXPECT_EQ(known.count(type), 0u);
    }
}

TEST(Events, AllButTheEndOfAPassTellOfAChange) {
    for (const Row &row : everyEvent())
        EXPECT_EQ(describe(*row.event, kAround).tellsChange, row.type != 33) << row.name;
}

TEST(Events, AnEventOfAnotherSwitchNamesIt) {
    const std::string there = " on switch 10:00:00:C0:DD:00:FF:FF";
    EXPECT_EQ(wordsOf(DCEventSwitchStatusChange(kOther, kOwn, {2}, {10})), "switch status OK -> Stopped" + there);
    EXPECT_EQ(wordsOf(DCEventPowerSupplyFail(kOther, 2, 1)), "power supply 2 failed" + there + ", 1 of 2 good");
    EXPECT_EQ(wordsOf(DCEventUserLoginFailure(kOther, "ann")), "login of user \"ann\" failed" + there);
}

TEST(Events, SuppliesOfAChassisWithoutSuppliesAreBlades) {
    const Surroundings bladed = {kOwn, 0};
    EXPECT_EQ(wordsOf(DCEventPowerSupplyAdd(kOwn, 9), bladed), "power supply blade inserted in slot 9");
    EXPECT_EQ(wordsOf(DCEventPowerSupplyRemove(kOwn, 9, 1), bladed), "power supply blade removed from slot 9, 1 left");
}

TEST(Events, APortOfTheSwitchThatIsWatchedIsToldByItsIndexIfThatIsKnown) {
    Surroundings around = kAround;
    around.portIndex = [](const Wwn &port) { return static_cast<unsigned short>(port == kPort ? 5 : 65535); };
    const std::string portName = "port 20:01:00:C0:DD:00:A1:B2";
    EXPECT_EQ(wordsOf(DCEventPortStatusChange(kOwn, kPort, kFabric, {2}, {10}), around),
              "port 5 went from online to offline");
    EXPECT_EQ(wordsOf(DCEventPortAdd(kOwn, kPort, 0), around), "port 5 appeared");
    EXPECT_EQ(wordsOf(DCEventPortAdd(kOwn, kFabric, 0), around), "port 10:00:00:C0:DD:00:00:01 appeared");
    EXPECT_EQ(wordsOf(DCEventPortStatusChange(kOther, kPort, kFabric, {2}, {10}), around),
              portName + " went from online to offline on switch 10:00:00:C0:DD:00:FF:FF");
    EXPECT_EQ(wordsOf(DCEventPortAdd(kFabric, kPort, 1), around),
              portName + " entered the name server of fabric 10:00:00:C0:DD:00:00:01")
        << "what logs in to the name server is no port of the switch";
}

TEST(Events, TheFabricAndTheSwitchThatAreWatchedAreNotNamed) {
    Surroundings around = kAround;
    around.ownFabric = kFabric;
    EXPECT_EQ(wordsOf(DCEventFabricChange(kFabric, true), around), "switches joined the fabric");
    EXPECT_EQ(wordsOf(DCEventFabricChange(kFabric, false), around), "switches left the fabric");
    EXPECT_EQ(wordsOf(DCEventSwitchAdd(kFabric, kOther), around), "switch 10:00:00:C0:DD:00:FF:FF joined the fabric");
    EXPECT_EQ(wordsOf(DCEventSwitchAdd(kFabric, kOwn), around), "this switch joined the fabric");
    EXPECT_EQ(wordsOf(DCEventSwitchRemove(kFabric, kOther), around), "switch 10:00:00:C0:DD:00:FF:FF left the fabric");
    EXPECT_EQ(wordsOf(DCEventSwitchRemove(kOther, kOwn), around), "this switch left fabric 10:00:00:C0:DD:00:FF:FF");
    EXPECT_EQ(wordsOf(DCEventPortAdd(kFabric, kPort, 1), around),
              "port 20:01:00:C0:DD:00:A1:B2 entered the name server");
    EXPECT_EQ(wordsOf(DCEventPortRemove(kFabric, kPort, 1), around),
              "port 20:01:00:C0:DD:00:A1:B2 left the name server");
    EXPECT_EQ(wordsOf(DCEventFabricAdd(kFabric), around), "now part of fabric 10:00:00:C0:DD:00:00:01")
        << "which fabric it is now is the news";
}

TEST(Events, APortStatusThatWasNotReadIsSaidToBeOne) {
    EXPECT_EQ(wordsOf(DCEventPortStatusChange(kOwn, kPort, kFabric, {}, {2})),
              "port 20:01:00:C0:DD:00:A1:B2 went from not read yet to online");
}

TEST(Events, ASupplyNumberAboveTheChassisSuppliesIsASlot) {
    EXPECT_EQ(wordsOf(DCEventPowerSupplyAdd(kOwn, 3)), "power supply blade inserted in slot 3");
    EXPECT_EQ(wordsOf(DCEventPowerSupplyRemove(kOwn, 7, 1)), "power supply blade removed from slot 7, 1 left");
}

TEST(Events, NoSupplyOfAChassisHasTheNumberZero) {
    EXPECT_EQ(wordsOf(DCEventPowerSupplyAdd(kOwn, 0)), "power supply blade inserted in slot 0");
    EXPECT_EQ(wordsOf(DCEventPowerSupplyRemove(kOwn, 0, 3)), "power supply blade removed from slot 0, 3 left");
}

TEST(Events, ZoneSetChangesReadAsWhatHappened) {
    EXPECT_EQ(wordsOf(DCEventActiveZonesetChange(kOwn, "day", "")), "zone set \"day\" is active now");
    EXPECT_EQ(wordsOf(DCEventActiveZonesetChange(kOwn, "", "day")), "no zone set is active, was \"day\"");
    EXPECT_EQ(wordsOf(DCEventActiveZonesetChange(kOwn, "day", "day")), "active zone set \"day\" changed");
    EXPECT_EQ(wordsOf(DCEventActiveZonesetChange(kOwn, "", "")), "no zone set is active");
}

TEST(Events, AlarmsKeepTheKindOfTheSwitchAndAnUnknownSensorIsSaidToBeOne) {
    EXPECT_EQ(wordsOf(DCEventEnvEvent(kOwn, "power supply", "voltage low", "VCC sensor")),
              "power supply alarm: voltage low, VCC sensor");
    EXPECT_EQ(wordsOf(DCEventEnvEvent(kOwn, "temperature", "overtemp", "unknown")),
              "temperature alarm: too hot, unknown sensor");
}

TEST(Events, TextOfTheSwitchIsMadePrintableInWordsAndKeptInFields) {
    const EventDescription description = describe(DCEventUserLoginFailure(kOwn, "a\x1b[2Jb"), kAround);
    EXPECT_EQ(description.words, "login of user \"a\\x1B[2Jb\" failed");
    EXPECT_EQ(description.fields.back().value, "a\x1b[2Jb");
}
