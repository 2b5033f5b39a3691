#include "sim/session/ZoningCommands.h"

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;
using simtest::send;
using Statuses = std::vector<int32_t>;

namespace {

class ZoningEdit : public testing::Test {
protected:
    void open() { ASSERT_EQ(send(client, simtest::kOpenEdit), Statuses(4, 0)); }

    /// One more command of the edit.
    int32_t edit(const std::string &command) { return send(client, {"Cmd.Zoning." + command})[0]; }

    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
};

} // namespace

TEST_F(ZoningEdit, DefinesADatabaseInOneBatch) {
    EXPECT_EQ(simtest::commit(client, simtest::kPlantOrchard), simtest::allDone(simtest::kPlantOrchard.size()));
    EXPECT_EQ(device->zoning(), simtest::orchard());
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_F(ZoningEdit, MayComeCommandByCommand) {
    for (const std::vector<std::string> &part : {simtest::kOpenEdit, simtest::kPlantOrchard, simtest::kCloseEdit})
        for (const std::string &key : part)
            EXPECT_EQ(client.set(key, "whatever"), 0) << key;
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(ZoningEdit, EveryCommandNeedsAdminModeThenTheLockThenTheEdit) {
    std::vector<std::string> edits = {"Cmd.Zoning.ClearConfig", "Cmd.Zoning.SaveConfig"};
    edits.insert(edits.end(), simtest::kPlantOrchard.begin(), simtest::kPlantOrchard.end());
    for (const char *key : {"Cmd.Zoning.FabricLock.77", "Cmd.Zoning.FabricUnlock.77", "Cmd.Zoning.EditConfig"})
        EXPECT_EQ(client.set(key), simtest::kAdminRequired) << key;
    EXPECT_EQ(send(client, edits), Statuses(edits.size(), simtest::kAdminRequired));
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Zoning.EditConfig"), simtest::kLockRequired);
    EXPECT_EQ(send(client, edits), Statuses(edits.size(), simtest::kLockRequired));
    ASSERT_EQ(client.set("Cmd.Zoning.FabricLock.77"), 0);
    EXPECT_EQ(send(client, edits), Statuses(edits.size(), simtest::kEditRequired));
    EXPECT_EQ(client.set("Cmd.Zoning.EditConfig"), 0);
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
}

TEST_F(ZoningEdit, ShowsNothingUntilItIsSaved) {
    open();
    EXPECT_EQ(send(client, simtest::kPlantOrchard), Statuses(simtest::kPlantOrchard.size(), 0));
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
    EXPECT_EQ(simtest::listedZonesets(client), std::vector<std::string>());
    EXPECT_EQ(edit("SaveConfig"), 0);
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(ZoningEdit, BeginsWithWhatIsDefinedUnlessItIsCleared) {
    device->setZoning(simtest::orchard());
    ASSERT_EQ(send(client, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77", "Cmd.Zoning.EditConfig",
                            "Cmd.Zoning.ZoneSet.south.AddZone.yew", "Cmd.Zoning.SaveConfig"}),
              Statuses(5, 0));
    sim::ZoningDatabase expected = simtest::orchard();
    expected.zonesets[1].zones.emplace_back("yew");
    EXPECT_EQ(device->zoning(), expected);
    EXPECT_EQ(send(client, {"Cmd.Zoning.EditConfig", "Cmd.Zoning.ClearConfig", "Cmd.Zoning.Zone.yew.Create",
                            "Cmd.Zoning.SaveConfig"}),
              Statuses(4, 0));
    expected = {};
    expected.zones = {{"yew", ZOV_ZT_SOFT, {}}};
    EXPECT_EQ(device->zoning(), expected);
}

TEST_F(ZoningEdit, EndsWhenItIsSavedOnce) {
    open();
    EXPECT_EQ(edit("EditConfig"), simtest::kEditOpen);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditSpoilt);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditRequired);
    EXPECT_EQ(edit("EditConfig"), 0);
    EXPECT_EQ(edit("SaveConfig"), 0);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditRequired);
}

TEST_F(ZoningEdit, RepeatedCommandsAreAcceptedAndChangeNothing) {
    std::vector<std::string> twice;
    for (const std::string &key : simtest::kPlantOrchard)
        twice.insert(twice.end(), 2, key);
    twice.insert(twice.end(), simtest::kPlantOrchard.begin(), simtest::kPlantOrchard.end());
    EXPECT_EQ(simtest::commit(client, twice), simtest::allDone(twice.size()));
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(ZoningEdit, CreatedAgainAThingKeepsWhatItHas) {
    open();
    for (const char *command :
         {"Zone.oak.Create", "Zone.oak.ZoneType.HardACL", "Zone.oak.AddZoneMember.010a", "Zone.oak.Create",
          "Alias.ash.Create", "Alias.ash.AddZoneMember.010a", "Alias.ash.Create", "ZoneSet.set.Create",
          "ZoneSet.set.AddZone.oak", "ZoneSet.set.Create", "SaveConfig"})
        EXPECT_EQ(edit(command), 0) << command;
    sim::ZoningDatabase expected;
    expected.aliases = {{"ash", {{ZOV_ZMT_DOMAINPORT, "1:10"}}}};
    expected.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_DOMAINPORT, "1:10"}}}};
    expected.zonesets = {{"set", {"oak"}}};
    EXPECT_EQ(device->zoning(), expected);
}

namespace {

struct Refusal {
    const char *command;
    int32_t status;
};

void PrintTo(const Refusal &refusal, std::ostream *out) {
    *out << refusal.command;
}

class RefusedZoningEdit : public ZoningEdit, public testing::WithParamInterface<Refusal> {};

INSTANTIATE_TEST_SUITE_P(
    Every, RefusedZoningEdit,
    testing::Values(
        Refusal{"Alias.1ash.Create", simtest::kBadName}, Refusal{"Alias..Create", simtest::kBadName},
        Refusal{"Zone.o k.Create", simtest::kBadName}, Refusal{"Zone.[oak].Create", simtest::kBadName},
        Refusal{"Zone.%s.Create", simtest::kBadName}, Refusal{"ZoneSet._set.Create", simtest::kBadName},
        Refusal{"ZoneSet.n1234567890123456789012345678901234567890123456789012345678901234.Create", simtest::kBadName},
        Refusal{"Alias.fir.AddZoneMember.010a", simtest::kNotFound},
        Refusal{"Zone.elm.AddZoneMember.010a", simtest::kNotFound},
        Refusal{"Zone.OAK.AddZoneMember.010a", simtest::kNotFound},
        Refusal{"Zone.elm.ZoneType.Soft", simtest::kNotFound}, Refusal{"Zone.elm.ZoneType.Hard", simtest::kNotFound},
        Refusal{"ZoneSet.south.AddZone.oak", simtest::kNotFound},
        Refusal{"ZoneSet.north.AddZone.elm", simtest::kNotFound},
        Refusal{"ZoneSet.north.AddZone.ash", simtest::kNotFound}, Refusal{"Zone.oak.ZoneType.soft", simtest::kBadValue},
        Refusal{"Zone.oak.ZoneType.Invalid", simtest::kBadValue}, Refusal{"Zone.oak.ZoneType.", simtest::kBadValue},
        Refusal{"Zone.oak.AddZoneMember.Invalid", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.fir", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.01:0a", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.1:10", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.0001", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.f001", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.0a0b0", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.0a0b0g", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.10:00:00:00:00:00:00:01", simtest::kBadMember},
        Refusal{"Zone.oak.AddZoneMember.210000000000000100", simtest::kBadMember},
        Refusal{"Alias.ash.AddZoneMember.ash", simtest::kBadMember},
        Refusal{"Alias.ash.AddZoneMember.nothing", simtest::kBadMember},
        Refusal{"Alias.ash.Create.", simtest::kNoSuchKey}, Refusal{"Alias.ash", simtest::kNoSuchKey},
        Refusal{"Alias.a.b.Create", simtest::kNoSuchKey}, Refusal{"Alias.ash.Remove", simtest::kNoSuchKey},
        Refusal{"Zone.oak.AddZone.oak", simtest::kNoSuchKey}, Refusal{"", simtest::kNoSuchKey},
        Refusal{"CancelConfig", simtest::kNoSuchKey}, Refusal{"FabricLock.78", simtest::kNoSuchKey},
        Refusal{"FabricUnlock", simtest::kNoSuchKey}, Refusal{"EditConfig", simtest::kEditOpen}));

} // namespace

TEST_P(RefusedZoningEdit, IsNotSavedAndTheRestOfTheBatchRuns) {
    device->setZoning(simtest::orchard());
    Client watcher;
    ASSERT_EQ(watcher.registerFor({ZOV_EVENT_ZONE_CHANGE}), 0);
    const std::vector<std::string> edit = {
        "Cmd.Zoning.Alias.ash.Create", "Cmd.Zoning.Zone.oak.Create", "Cmd.Zoning.ZoneSet.north.Create",
        std::string("Cmd.Zoning.") + GetParam().command, "Cmd.Zoning.ZoneSet.north.AddZone.oak"};
    Statuses expected = simtest::allDone(edit.size());
    expected[simtest::kOpenEdit.size() + 3] = GetParam().status;
    expected[simtest::kOpenEdit.size() + edit.size()] = simtest::kEditSpoilt;
    const std::string before = device->get("Oper.Zoning.InactiveChecksum");
    EXPECT_EQ(simtest::commit(client, edit), expected);
    EXPECT_EQ(device->zoning(), simtest::orchard());
    EXPECT_EQ(device->get("Oper.Zoning.InactiveChecksum"), before);
    EXPECT_EQ(watcher.codes(*device), std::vector<int32_t>());
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_P(RefusedZoningEdit, SpoilsNothingThatComesAfterIt) {
    open();
    send(client, {"Cmd.Zoning.Alias.ash.Create", "Cmd.Zoning.Zone.oak.Create", "Cmd.Zoning.ZoneSet.north.Create"});
    EXPECT_EQ(edit(GetParam().command), GetParam().status);
    EXPECT_EQ(edit("FabricUnlock.77"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(simtest::commit(client, simtest::kPlantOrchard), simtest::allDone(simtest::kPlantOrchard.size()));
}

TEST_F(ZoningEdit, ClearingDoesNotMendIt) {
    open();
    EXPECT_EQ(edit("Zone.1.Create"), simtest::kBadName);
    EXPECT_EQ(edit("ClearConfig"), 0);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditSpoilt);
}

TEST_F(ZoningEdit, WhatALeverRefusesIsRefused) {
    for (const char *key : {"Cmd.Zoning.ClearConfig", "Cmd.Zoning.Zone.oak.AddZoneMember.ash"}) {
        sim::Fault fault;
        fault.key = key;
        fault.status = 33;
        device->addFault(fault);
        std::vector<int32_t> statuses = simtest::commit(client, simtest::kPlantOrchard);
        EXPECT_EQ(statuses[statuses.size() - 3], simtest::kEditSpoilt) << key;
        EXPECT_EQ(device->zoning(), sim::ZoningDatabase()) << key;
    }
    open();
    sim::Fault fault;
    fault.call = "zov_smlSet";
    fault.key = "Cmd.Zoning.Zone.oak.Create";
    fault.status = 33;
    device->addFault(fault);
    EXPECT_EQ(client.set("Cmd.Zoning.Zone.oak.Create"), 33);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditSpoilt);
}

TEST_F(ZoningEdit, ALeverThatClaimsSuccessSpoilsNothing) {
    sim::Fault fault;
    fault.key = "Cmd.Zoning.Alias.fir.AddZoneMember.*";
    fault.status = 0;
    device->addFault(fault);
    EXPECT_EQ(simtest::commit(client, simtest::kPlantOrchard), simtest::allDone(simtest::kPlantOrchard.size()));
    sim::ZoningDatabase expected = simtest::orchard();
    expected.aliases[1].members.clear();
    EXPECT_EQ(device->zoning(), expected);
}

TEST_F(ZoningEdit, OtherRefusedKeysDoNotConcernIt) {
    const Client other;
    open();
    EXPECT_EQ(client.set("Cmd.Switch.Unheard"), simtest::kNoSuchKey);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kEditRequired);
    EXPECT_EQ(other.set("Cmd.Zoning.Zone.oak.Create"), simtest::kAdminRequired);
    EXPECT_EQ(client.get("Cmd.Zoning.Zone.oak.Create").status, simtest::kNotReadable);
    EXPECT_EQ(edit("SaveConfig"), 0);
}

TEST_F(ZoningEdit, AnUnterminatedKeySpoilsIt) {
    open();
    SmlMessage message = simtest::messageOf("Cmd.Zoning.Zone.oak.AddZoneMember.");
    std::memset(message.key + std::strlen(message.key), 'x', sizeof message.key - std::strlen(message.key));
    ASSERT_EQ(zov_smlSetBatch(client.handle, &message, 1), 0);
    EXPECT_EQ(message.status, simtest::kBadKey);
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditSpoilt);
}

TEST_F(ZoningEdit, ATextThatNamesAnAliasMeansTheAlias) {
    open();
    for (const char *command :
         {"Zone.oak.Create", "Zone.oak.AddZoneMember.AB01", "Zone.oak.AddZoneMember.abcdef", "Alias.abcdef.Create",
          "Alias.A.Create", "Zone.oak.AddZoneMember.abcdef", "Zone.oak.AddZoneMember.A", "SaveConfig"})
        EXPECT_EQ(edit(command), 0) << command;
    const std::vector<sim::ZoneMember> expected = {
        {ZOV_ZMT_DOMAINPORT, "171:1"}, {ZOV_ZMT_FCADDRESS, "ABCDEF"}, {ZOV_ZMT_ALIAS, "abcdef"}, {ZOV_ZMT_ALIAS, "A"}};
    EXPECT_EQ(device->zoning().zones[0].members, expected);
}

TEST_F(ZoningEdit, HexadecimalDigitsAreReadInEitherCase) {
    open();
    for (const char *command :
         {"Alias.ash.Create", "Alias.ash.AddZoneMember.210000000000abcd", "Alias.ash.AddZoneMember.210000000000ABCD",
          "Alias.ash.AddZoneMember.01Ff", "Alias.ash.AddZoneMember.0A0b0C", "SaveConfig"})
        EXPECT_EQ(edit(command), 0) << command;
    const std::vector<sim::ZoneMember> expected = {
        {ZOV_ZMT_PORTWWN, "210000000000ABCD"}, {ZOV_ZMT_DOMAINPORT, "1:255"}, {ZOV_ZMT_FCADDRESS, "0A0B0C"}};
    EXPECT_EQ(device->zoning().aliases[0].members, expected);
}

TEST_F(ZoningEdit, LongestNamesAndTextsFitAKey) {
    const std::string longest(64, 'n');
    const std::vector<std::string> edit = {
        "Cmd.Zoning.Alias." + longest + ".Create", "Cmd.Zoning.Zone." + longest + ".Create",
        "Cmd.Zoning.Zone." + longest + ".AddZoneMember." + longest, "Cmd.Zoning.ZoneSet." + longest + ".Create",
        "Cmd.Zoning.ZoneSet." + longest + ".AddZone." + longest};
    EXPECT_EQ(simtest::commit(client, edit), simtest::allDone(edit.size()));
    EXPECT_EQ(device->zoning().zones[0].members[0].text, longest);
}

TEST_F(ZoningEdit, ItsCommandsCannotBeRead) {
    for (const std::vector<std::string> &part : {simtest::kOpenEdit, simtest::kPlantOrchard, simtest::kCloseEdit})
        for (const std::string &key : part)
            EXPECT_EQ(client.get(key).status, simtest::kNotReadable) << key;
    EXPECT_EQ(client.get("Cmd.Zoning.Zone.oak").status, simtest::kNoSuchKey);
}
