// Every notification code, handled or not, from the switch library's call to the last pass that it starts: what it
// refreshes and reads, what it tells, and how many passes follow.
#include <climits>
#include <map>
#include <set>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/WakeUps.h"

namespace {

using Areas = std::set<std::string>;
using Lines = std::vector<std::string>;

constexpr const char *kSwitchRead = "get Oper.Switch.WhoIsPrincipal Oper.Switch.WWN Oper.Switch.OperState";
constexpr const char *kDevice = "21000024FF4A0001";

/// Whether zoning can be read: where it cannot, a request stays pending.
bool zoningIsGood = true;

/// The first key that a refresh of an area reads, which no other refresh begins with.
const std::map<std::string, std::string> &firstReads() {
    static const std::map<std::string, std::string> table = {
        {"switch", kSwitchRead},
        {"chassis", "get Oper.Chassis.0.PowerSupplies"},
        {"blades", "get Oper.Chassis.0.MaxSlots"},
        {"ports", "get Oper.Switch.MaxPorts"},
        {"accounts", "get Oper.Switch.FirstPotentialUser"},
        {"fabric", "get Oper.Switch.WhoIsPrincipal Oper.Switch.WWN Oper.Switch.DomainID"},
    };
    return table;
}

/// What a handled code is answered with. Codes that are not here are logged and dropped.
struct Reaction {
    Areas refreshed;
    bool allPorts;
    const char *text; ///< of the notification
    Lines events;
};

std::string alarm(const char *category, const char *kind) {
    return fmt::format("31: EnvEvent switch={} category={} kind={} detail=unknown", support::kSwitchWwn, category,
                       kind);
}

const std::map<int32_t, Reaction> &reactions() {
    static const std::string port = fmt::format("owner={} port={} origin=1", support::kSwitchWwn, kDevice);
    static const std::string entry = fmt::format("010000,20000024FF4A0001,{}", kDevice);
    static const std::map<int32_t, Reaction> table = {
        {1, {{"fabric"}, false, "", {}}},
        {3, {{"zoning"}, false, "", {}}},
        {7, {{"fabric"}, false, "", {}}},
        {14, {{"ports"}, false, "", {}}},
        {15, {{"ports"}, false, "", {}}},
        {16, {{}, false, "", {}}},
        {28, {{"blades", "ports"}, true, "", {}}},
        {29, {{"blades", "ports"}, true, "", {}}},
        {32, {{"switch"}, false, "", {}}},
        {33, {{"chassis"}, false, "", {}}},
        {39, {{"blades", "ports"}, true, "", {}}},
        {40, {{}, false, "", {alarm("temperature", "overtemp")}}},
        {50, {{"accounts"}, false, "", {}}},
        {52, {{"chassis", "switch", "ports"}, true, "", {}}},
        {57, {{"chassis", "switch", "ports"}, true, "", {}}},
        {68, {{}, false, "", {}}},
        {69, {{}, false, "", {}}},
        {72, {{}, false, "ann", {fmt::format("29: UserPasswdChg switch={} user=ann", support::kSwitchWwn)}}},
        {73, {{}, false, "ann", {fmt::format("30: UserLoginFailure switch={} user=ann", support::kSwitchWwn)}}},
        {74, {{}, false, "", {alarm("power supply", "voltage high")}}},
        {75, {{}, false, "", {alarm("power supply", "voltage low")}}},
        {76, {{}, false, "0;0;0;5;0;0;x;0", {}}},
        {77, {{}, false, "0;0;0;5", {}}},
        {78, {{}, false, "", {"32: CIMChange"}}},
        {79, {{}, false, entry.c_str(), {"10: PortAdd " + port}}},
        {80, {{}, false, entry.c_str(), {"11: PortRemove " + port}}},
        {82, {{"switch", "blades"}, false, "", {}}},
    };
    return table;
}

class EveryCode : public support::CacheTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        zoningIsGood = true;
        load();
        cache().updateAll();
        cache().localPortRefreshSet();
        ASSERT_TRUE(pass());
        zoningIsGood = GetParam();
        if (!zoningIsGood) {
            cache().updateZoning();
            ASSERT_FALSE(pass());
        }
        support::takeWakeUps();
    }

    /// A notification from the third port, on this thread.
    void notify(int32_t code, const char *text) {
        zov_event_s event{};
        event.code = code;
        event.source.number[2] = 3;
        std::snprintf(event.text, sizeof event.text, "%s", text);
        forget();
        DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
    }

    /// Runs the passes that the EVAL thread would: one for any number of wake-ups, until there are none.
    struct Aftermath {
        unsigned passes = 0;
        Areas refreshed;      ///< in the first pass
        Areas refreshedAgain; ///< in those that follow
        unsigned portsRead = 0;
        Lines firstReads;
        Lines events;
    };
    Aftermath runPasses() {
        Aftermath after;
        while (support::takeWakeUps() != 0 && after.passes < 10) {
            pass();
            Areas &areas = after.passes++ == 0 ? after.refreshed : after.refreshedAgain;
            for (const std::string &line : log()) {
                char name[16] = "";
                if (std::sscanf(line.c_str(), "DCACHE: Updating %15s cache", name) == 1)
                    areas.insert(name);
            }
            for (const std::string &line : traffic()) {
                after.portsRead += line.rfind("get Oper.UserPort.0.", 0) == 0 && line.find("OperState") != line.npos;
                after.firstReads.push_back(line);
            }
            for (const std::string &line : events()) {
                if (line != "33: DataCacheUpdateComplete")
                    after.events.push_back(line);
            }
        }
        return after;
    }

    static Areas with(Areas areas, const char *area) {
        areas.insert(area);
        return areas;
    }

    void expectReaction(int32_t code, const Reaction &reaction) {
        notify(code, reaction.text);
        EXPECT_EQ(log().front().rfind("DCACHE: queueing ZOV_EVENT_T[0:0:3] ", 0), 0U);
        EXPECT_EQ(cache().getQueuedNotificationCount(), 1U);
        const Aftermath after = runPasses();
        const bool pending = !zoningIsGood;
        EXPECT_EQ(after.refreshed, pending ? with(reaction.refreshed, "zoning") : reaction.refreshed);
        EXPECT_EQ(after.passes, pending || !reaction.refreshed.empty() ? 2U : 1U);
        EXPECT_EQ(after.refreshedAgain, pending ? Areas{"zoning"} : Areas());
        EXPECT_EQ(after.events, reaction.events);
        const bool readsPorts = reaction.refreshed.count("ports") != 0;
        EXPECT_EQ(after.portsRead, !readsPorts ? 0U : reaction.allPorts ? 24U : 1U);
        for (const auto &[area, first] : firstReads()) {
            const auto begins = [&start = first](const std::string &line) { return line.rfind(start, 0) == 0; };
            EXPECT_EQ(std::any_of(after.firstReads.begin(), after.firstReads.end(), begins),
                      reaction.refreshed.count(area) != 0)
                << area;
        }
    }

    void expectNothing(int32_t code) {
        notify(code, "");
        ASSERT_EQ(log().size(), 1U);
        EXPECT_EQ(log().front().rfind("DCACHE: Unhandled event, ZOV_EVENT_T[0:0:3] ", 0), 0U);
        EXPECT_EQ(cache().getQueuedNotificationCount(), 0U);
        EXPECT_EQ(runPasses().passes, 0U);
    }
};

TEST_P(EveryCode, HasItsReactionOrNone) {
    std::vector<int32_t> codes = {INT_MIN, -255, -1, 256, 257, 300, INT_MAX};
    for (int32_t code = 0; code < 256; ++code)
        codes.push_back(code);
    for (const int32_t code : codes) {
        SCOPED_TRACE(code);
        const auto reaction = reactions().find(code);
        if (reaction != reactions().end())
            expectReaction(code, reaction->second);
        else
            expectNothing(code);
    }
}

INSTANTIATE_TEST_SUITE_P(WithEveryAreaGoodAndWithOnePending, EveryCode, testing::Bool());

} // namespace

// The pass of the library finds this before its own.
bool DataCache::_getZoningInfo() {
    return zoningIsGood;
}
