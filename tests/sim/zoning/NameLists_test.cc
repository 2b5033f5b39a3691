#include "sim/zoning/NameLists.h"

#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;

namespace {

class NameList : public testing::Test {
protected:
    void SetUp() override {
        sim::ZoningDatabase database;
        database.zonesets = {{"north", {}}, {longest, {}}, {"a", {}}};
        device->setZoning(database);
    }

    char *list() {
        char *names = nullptr;
        EXPECT_EQ(zov_fzsGetZonesetList(client.handle, &count, &names), 0);
        return names;
    }

    const std::string longest = std::string(64, 'n');
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    int32_t count = -1;
};

} // namespace

TEST_F(NameList, HasAFieldOf65BytesForEachName) {
    const char *names = list();
    EXPECT_EQ(count, 3);
    EXPECT_STREQ(names, "north");
    EXPECT_EQ(names + 65, longest);
    EXPECT_STREQ(names + 130, "a");
}

TEST_F(NameList, IsOverwrittenByTheNextCallOfTheSameThread) {
    for (const auto &next : {+[](const Client &by) { by.get("Oper.Switch.WWN"); },
                             +[](const Client &by) {
                                 void *zoneset = nullptr;
                                 zov_fzsGetZoneset(by.handle, "north", &zoneset);
                             },
                             +[](const Client &) { zov_ZonesetTestName("north"); }}) {
        const char *names = list();
        next(client);
        EXPECT_STREQ(names, std::string(3 * 65 - 1, '?').c_str());
    }
}

TEST_F(NameList, OfAnotherThreadIsItsOwn) {
    const char *names = list();
    std::thread([this] { EXPECT_STREQ(list(), "north"); }).join();
    EXPECT_STREQ(names, "north");
}

TEST_F(NameList, FollowsTheDatabase) {
    EXPECT_EQ(simtest::listedZonesets(client), (std::vector<std::string>{"north", longest, "a"}));
    device->setZoning(simtest::orchard());
    EXPECT_EQ(simtest::listedZonesets(client), (std::vector<std::string>{"north", "south"}));
    device->setZoning({});
    EXPECT_EQ(simtest::listedZonesets(client), std::vector<std::string>());
    EXPECT_STREQ(list(), "");
}
