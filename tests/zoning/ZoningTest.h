/*
 * The setting of the tests of the cached zoning database: a cache of its own, over a scripted switch library.
 *
 * load() enters this database:
 *
 *     uber               oak: 010100, web     elm: 1:10     alias web: 010200, 010300
 *     Alpha (inactive)   oak: 010100, web                   alias web: 010200
 *     beta (inactive)    oak: 010100
 *     live (active)      oak: 010100                        alias web: 010200
 *
 * The keys stand in the order Alpha, live, uber, beta: '[' comes after the capitals and before the small letters.
 */
#ifndef TESTS_ZONING_ZONINGTEST_H
#define TESTS_ZONING_ZONINGTEST_H

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/zoning/ScriptedZoning.h"
#include "zoning/ZoningCache.h"

constexpr const char *kActiveKey = "[ActiveZoneSetKey]";
constexpr const char *kUberKey = "[UberZoneSetKey]";
constexpr const char *kFirst = "010100";
constexpr const char *kSecond = "010200";
constexpr const char *kThird = "010300";

class ZoningTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    ZoningTest() {
        scripted::zoning = {};
        scripted::zoning.limits = {10, 10, 100, 10, 10, 10, 10};
        cache = std::make_unique<ZoningCache>();
        cache->initZoningLimits();
        forget();
    }
    /// What is not said to be a failure of the cache stays out of the critical log.
    ~ZoningTest() override {
        cache.reset();
        for (const std::string &line : support::messagesIn(support::kCriticalLog))
            EXPECT_EQ(line.rfind("Exception[CRIT]:", 0), 0U) << line;
        scripted::zoning = {};
    }

    void forget() {
        scripted::zoning.calls.clear();
        _mark = support::logMark();
    }
    Lines log() const { return support::messagesSince(_mark); }
    static Lines calls() { return scripted::zoning.takeCalls(); }

    void enter(scripted::Object *zoneset, _ZoneSetTypes kind) { EXPECT_EQ(cache->addZoneset(zoneset, kind), 0); }

    void load() {
        uber = scripted::zoneset("uber");
        fillOak(uber, true);
        scripted::member(scripted::zone(uber, "elm", ZOV_ZT_HARDACL), ZOV_ZMT_DOMAINPORT, "1:10");
        scripted::Object *web = scripted::alias(uber, "web");
        scripted::member(web, ZOV_ZMT_FCADDRESS, kSecond);
        scripted::member(web, ZOV_ZMT_FCADDRESS, kThird);
        alpha = scripted::zoneset("Alpha");
        fillOak(alpha, true);
        scripted::member(scripted::alias(alpha, "web"), ZOV_ZMT_FCADDRESS, kSecond);
        beta = scripted::zoneset("beta");
        fillOak(beta, false);
        live = scripted::zoneset("live");
        fillOak(live, false);
        scripted::member(scripted::alias(live, "web"), ZOV_ZMT_FCADDRESS, kSecond);
        enter(live, ZONESET_ACTIVE);
        enter(beta, ZONESET_INACTIVE);
        enter(alpha, ZONESET_INACTIVE);
        enter(uber, ZONESET_UBER);
        forget();
    }

    /// The calls of counting anew, as the database is now.
    Lines recount() {
        const Lines before = calls();
        cache->updateZoningCounts();
        Lines counting = calls();
        scripted::zoning.calls = before;
        return counting;
    }

    /// The calls so far are these, and those of counting anew behind them. Ask for the log first.
    void expectCallsAndRecount(Lines expected) {
        const Lines counting = recount();
        expected.insert(expected.end(), counting.begin(), counting.end());
        EXPECT_EQ(calls(), expected);
    }

    static void fail(const char *call, int nth = 1, int32_t result = 7) {
        scripted::zoning.faults.push_back({call, nth, result, false});
    }

    /// The names of a zone set's zones and aliases.
    static Lines names(const std::vector<scripted::Object *> &parts) {
        Lines all;
        for (const scripted::Object *part : parts)
            all.push_back(part->name);
        return all;
    }
    /// The members of a zone or alias.
    static Lines membersOf(scripted::Object *zoneset, const std::string &name) {
        for (const auto &parts : {zoneset->zones, zoneset->aliases}) {
            for (const scripted::Object *part : parts) {
                if (part->name == name)
                    return names(part->members);
            }
        }
        return {"none of this name"};
    }

    std::unique_ptr<ZoningCache> cache;
    scripted::Object *uber = nullptr;
    scripted::Object *alpha = nullptr;
    scripted::Object *beta = nullptr;
    scripted::Object *live = nullptr;

private:
    static void fillOak(scripted::Object *zoneset, bool withAlias) {
        scripted::Object *oak = scripted::zone(zoneset, "oak", ZOV_ZT_SOFT);
        scripted::member(oak, ZOV_ZMT_FCADDRESS, kFirst);
        if (withAlias)
            scripted::member(oak, ZOV_ZMT_ALIAS, "web");
    }

    std::size_t _mark = 0;
};

#endif // TESTS_ZONING_ZONINGTEST_H
