// The event records: their numbers, their fields, and that a client can tell them apart and keep copies.
#include <memory>
#include <set>
#include <type_traits>

#include "tests/support/CacheTest.h"

namespace {

const Wwn &fabric() {
    static const Wwn name("100000C0DD000001");
    return name;
}

const Wwn &aSwitch() {
    static const Wwn name("100000C0DD000002");
    return name;
}

const Wwn &port() {
    static const Wwn name("200000C0DD000003");
    return name;
}

// A client tells events apart by class or by number, and destroys none of them.
template <class Event> constexpr bool isProper() {
    return std::is_base_of<DataCacheEvent, Event>::value && std::has_virtual_destructor<Event>::value &&
           std::is_convertible<Event *, DataCacheEvent *>::value && std::is_copy_constructible<Event>::value;
}

static_assert(std::is_polymorphic<DataCacheEvent>::value, "clients may look at the class");
static_assert(std::is_same<decltype(DataCacheEvent::type), int32_t>::value, "the number is a signed 32-bit one");
static_assert(sizeof(DCEventCIMChange) == sizeof(DataCacheEvent), "carries its number alone");
static_assert(sizeof(DCEventDataCacheUpdateComplete) == sizeof(DataCacheEvent), "carries its number alone");

/// A new event, handed on as what the callback gets.
template <class Event, class... Fields> std::unique_ptr<DataCacheEvent> make(Fields &&...fields) {
    static_assert(isProper<Event>(), "an event class");
    return std::make_unique<Event>(std::forward<Fields>(fields)...);
}

TEST(DataCacheEvent, EveryClassHasItsNumber) {
    const std::string name = "a name that is too long to be kept without memory of its own";
    const StatusList status(40, 2);
    std::vector<std::pair<std::unique_ptr<DataCacheEvent>, int32_t>> rows;
    const auto add = [&rows](std::unique_ptr<DataCacheEvent> event, int32_t type) {
        rows.emplace_back(std::move(event), type);
    };
    add(make<DCEventFabricAdd>(fabric()), 1);
    add(make<DCEventFabricRemove>(fabric()), 2);
    add(make<DCEventFabricChange>(fabric(), true), 3);
    add(make<DCEventSwitchAdd>(fabric(), aSwitch()), 4);
    add(make<DCEventSwitchRemove>(fabric(), aSwitch()), 5);
    add(make<DCEventSwitchStatusChange>(aSwitch(), fabric(), status, status), 6);
    add(make<DCEventBladeAdd>(aSwitch(), 1), 7);
    add(make<DCEventBladeRemove>(aSwitch(), 1), 8);
    add(make<DCEventPortAdd>(fabric(), port(), 1), 10);
    add(make<DCEventPortRemove>(fabric(), port(), 1), 11);
    add(make<DCEventPortStatusChange>(aSwitch(), port(), fabric(), status, status), 12);
    add(make<DCEventFanAdd>(aSwitch(), 1), 16);
    add(make<DCEventFanRemove>(aSwitch(), 1, 2), 17);
    add(make<DCEventPowerSupplyAdd>(aSwitch(), 1), 19);
    add(make<DCEventPowerSupplyRemove>(aSwitch(), 1, 2), 20);
    add(make<DCEventPowerSupplyFail>(aSwitch(), 1, 2), 21);
    add(make<DCEventCPUAdd>(aSwitch(), 1), 22);
    add(make<DCEventCPURemove>(aSwitch(), 1), 23);
    add(make<DCEventUserAcctAdd>(aSwitch(), name), 25);
    add(make<DCEventUserAcctRemove>(aSwitch(), name), 26);
    add(make<DCEventActiveZonesetChange>(aSwitch(), name, name), 27);
    add(make<DCEventZoningDBChange>(aSwitch()), 28);
    add(make<DCEventUserPasswdChg>(aSwitch(), name), 29);
    add(make<DCEventUserLoginFailure>(aSwitch(), name), 30);
    add(make<DCEventEnvEvent>(aSwitch(), name, name, name), 31);
    add(make<DCEventCIMChange>(), 32);
    add(make<DCEventDataCacheUpdateComplete>(), 33);

    EXPECT_EQ(rows.size(), 27U);
    std::set<int32_t> types;
    for (const auto &[event, type] : rows) {
        EXPECT_EQ(event->type, type);
        types.insert(event->type);
    }
    EXPECT_EQ(types.size(), rows.size()) << "no number is used twice";
}

TEST(DataCacheEvent, FabricEventsNameTheFabricAndTheSwitch) {
    EXPECT_EQ(DCEventFabricAdd(fabric()).fabricWwn, fabric());
    EXPECT_EQ(DCEventFabricRemove(fabric()).fabricWwn, fabric());
    EXPECT_EQ(DCEventFabricChange(fabric(), true).fabricWwn, fabric());
    EXPECT_TRUE(DCEventFabricChange(fabric(), true).added);
    EXPECT_FALSE(DCEventFabricChange(fabric(), false).added);
    EXPECT_EQ(DCEventSwitchAdd(fabric(), aSwitch()).fabricWwn, fabric());
    EXPECT_EQ(DCEventSwitchAdd(fabric(), aSwitch()).switchWwn, aSwitch());
    EXPECT_EQ(DCEventSwitchRemove(fabric(), aSwitch()).fabricWwn, fabric());
    EXPECT_EQ(DCEventSwitchRemove(fabric(), aSwitch()).switchWwn, aSwitch());
}

TEST(DataCacheEvent, StatusEventsHoldThePreviousListFirst) {
    const DCEventSwitchStatusChange change(aSwitch(), fabric(), {2}, {6, 32768});
    EXPECT_EQ(change.switchWwn, aSwitch());
    EXPECT_EQ(change.principalWwn, fabric());
    EXPECT_EQ(change.prevStatus, StatusList{2});
    EXPECT_EQ(change.newStatus, (StatusList{6, 32768}));

    const DCEventPortStatusChange portChange(aSwitch(), port(), fabric(), {2}, {10});
    EXPECT_EQ(portChange.switchWwn, aSwitch());
    EXPECT_EQ(portChange.portWwn, port());
    EXPECT_EQ(portChange.fabricWwn, fabric());
    EXPECT_EQ(portChange.prevStatus, StatusList{2});
    EXPECT_EQ(portChange.newStatus, StatusList{10});
}

TEST(DataCacheEvent, PortEventsTellWhereThePortWasSeen) {
    const DCEventPortAdd added(aSwitch(), port(), 0);
    EXPECT_EQ(added.ownerWwn, aSwitch());
    EXPECT_EQ(added.portWwn, port());
    EXPECT_EQ(added.origin, 0);
    const DCEventPortRemove removed(fabric(), port(), 1);
    EXPECT_EQ(removed.ownerWwn, fabric());
    EXPECT_EQ(removed.portWwn, port());
    EXPECT_EQ(removed.origin, 1);
}

TEST(DataCacheEvent, EventsOfUnitsNumberTheUnit) {
    EXPECT_EQ(DCEventBladeAdd(aSwitch(), 65535).switchWwn, aSwitch());
    EXPECT_EQ(DCEventBladeAdd(aSwitch(), 65535).slot, 65535);
    EXPECT_EQ(DCEventBladeRemove(aSwitch(), 3).slot, 3);
    EXPECT_EQ(DCEventFanAdd(aSwitch(), 4).slot, 4);
    EXPECT_EQ(DCEventFanRemove(aSwitch(), 5, 6).slot, 5);
    EXPECT_EQ(DCEventFanRemove(aSwitch(), 5, 6).count, 6);
    EXPECT_EQ(DCEventCPUAdd(aSwitch(), 7).slot, 7);
    EXPECT_EQ(DCEventCPURemove(aSwitch(), 8).slot, 8);
    EXPECT_EQ(DCEventPowerSupplyAdd(aSwitch(), 9).switchWwn, aSwitch());
    EXPECT_EQ(DCEventPowerSupplyAdd(aSwitch(), 9).number, 9);
    EXPECT_EQ(DCEventPowerSupplyRemove(aSwitch(), 10, 11).number, 10);
    EXPECT_EQ(DCEventPowerSupplyRemove(aSwitch(), 10, 11).count, 11);
    EXPECT_EQ(DCEventPowerSupplyFail(aSwitch(), 12, 13).number, 12);
    EXPECT_EQ(DCEventPowerSupplyFail(aSwitch(), 12, 13).count, 13);
}

TEST(DataCacheEvent, EventsOfUsersZoningAndSurroundingsKeepTheirTextsInOrder) {
    EXPECT_EQ(DCEventUserAcctAdd(aSwitch(), "ann").name, "ann");
    EXPECT_EQ(DCEventUserAcctRemove(aSwitch(), "bob").name, "bob");
    EXPECT_EQ(DCEventUserPasswdChg(aSwitch(), "cid").user, "cid");
    EXPECT_EQ(DCEventUserLoginFailure(aSwitch(), "dan").user, "dan");
    EXPECT_EQ(DCEventZoningDBChange(aSwitch()).switchWwn, aSwitch());
    const DCEventActiveZonesetChange zoning(aSwitch(), "now", "before");
    EXPECT_EQ(zoning.switchWwn, aSwitch());
    EXPECT_EQ(zoning.zoneset, "now");
    EXPECT_EQ(zoning.prevZoneset, "before");
    const DCEventEnvEvent alarm(aSwitch(), "one", "two", "three");
    EXPECT_EQ(alarm.switchWwn, aSwitch());
    EXPECT_EQ(alarm.category, "one");
    EXPECT_EQ(alarm.kind, "two");
    EXPECT_EQ(alarm.detail, "three");
}

// ---- delivery ---------------------------------------------------------------------------------------------

class Delivery : public support::CacheTest {
protected:
    void SetUp() override { load(); }

    static void kick(int32_t code, const std::string &text) {
        cache().zovlibEventKick(static_cast<zov_eventcode_e>(code), nullptr, text.c_str());
    }
};

TEST_F(Delivery, ACopyOutlivesTheCallback) {
    std::unique_ptr<DCEventUserLoginFailure> kept;
    support::onEvent([&kept](DataCacheEvent &event) {
        if (const auto *failure = dynamic_cast<DCEventUserLoginFailure *>(&event))
            kept = std::make_unique<DCEventUserLoginFailure>(*failure);
    });
    const std::string user(200, 'u');
    kick(73, user);
    pass();
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->type, 30);
    EXPECT_EQ(kept->switchWwn.tostring(), support::kSwitchWwn);
    EXPECT_EQ(kept->user, user);
}

TEST_F(Delivery, EachEventIsGoneBeforeTheNextIsMade) {
    // Two local objects of one routine that live one after the other have the same place.
    std::set<const void *> places;
    support::onEvent([&places](DataCacheEvent &event) {
        if (event.type == 30)
            places.insert(&event);
    });
    kick(73, "ann");
    kick(73, "bob");
    pass();
    EXPECT_EQ(places.size(), 1U);
}

TEST_F(Delivery, WhatTheCallbackQueuesHasItsTurnInTheSamePass) {
    support::onEvent([](DataCacheEvent &event) {
        if (event.type == 29)
            kick(73, "kicked");
    });
    kick(72, "first");
    kick(72, "second");
    pass();
    const std::string name = support::kSwitchWwn;
    const std::string kicked = "30: UserLoginFailure switch=" + name + " user=kicked";
    EXPECT_THAT(events(), testing::ElementsAre("29: UserPasswdChg switch=" + name + " user=first",
                                               "29: UserPasswdChg switch=" + name + " user=second", kicked, kicked,
                                               support::kUpdateComplete));
    EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
}

} // namespace
