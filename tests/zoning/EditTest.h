/*
 * The setting of the tests of the edits: a table of edits of the database of ZoningTest.h, each with what comes of it.
 */
#ifndef TESTS_ZONING_EDITTEST_H
#define TESTS_ZONING_EDITTEST_H

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/Lock.h"
#include "tests/zoning/ZoningTest.h"

/// Whether an edit ends with counting anew.
enum class Recount { no, yes };

struct Edit {
    const char *what;
    std::function<int(ZoningCache &)> run;
    int result;
    std::vector<std::string> calls; ///< but for those of counting anew
    Recount recount = Recount::no;
    std::vector<scripted::Fault> faults = {};
    int left = 0; ///< objects that belong to nobody afterwards
};

class EditTest : public ZoningTest {
protected:
    EditTest() { load(); }

    /// A database as if nothing had been done to it.
    void startAnew() {
        cache.reset();
        scripted::zoning = {};
        scripted::zoning.limits = {10, 10, 100, 10, 10, 10, 10};
        cache = std::make_unique<ZoningCache>();
        cache->initZoningLimits();
        load();
    }

    void expect(const std::vector<Edit> &edits) {
        for (const Edit &edit : edits) {
            SCOPED_TRACE(edit.what);
            startAnew();
            scripted::zoning.faults = edit.faults;
            EXPECT_EQ(edit.run(*cache), edit.result);
            scripted::zoning.faults.clear();
            EXPECT_EQ(ownerless(), edit.left);
            expectCalls(edit);
            EXPECT_TRUE(support::isLockFree());
        }
    }

    /// Lets every call of a successful edit fail once, and every find come back empty-handed.
    void expectToSurviveEveryFailure(const std::function<int(ZoningCache &)> &run, const std::set<int> &results) {
        startAnew();
        ASSERT_EQ(run(*cache), 0);
        std::vector<std::string> names = calls();
        for (std::size_t i = 0; i < names.size(); ++i) {
            names[i].erase(names[i].find('('));
            const auto nth =
                static_cast<int>(std::count(names.begin(), names.begin() + static_cast<long>(i) + 1, names[i]));
            SCOPED_TRACE(names[i] + " " + std::to_string(nth));
            startAnew();
            fail(names[i].c_str(), nth);
            EXPECT_EQ(results.count(run(*cache)), 1U);
            EXPECT_TRUE(support::isLockFree());
            cache->clearZoningCache(); // finds everything in order, or the test fails
        }
    }

    /// With a limit of exactly what there is, an edit ends with 4, whatever its names are, and one line in the log.
    void expectLimit(const zov_fzs_zoninglimits_s &limits, const std::function<int(ZoningCache &)> &run,
                     const char *line, const Lines &expected) {
        startAnew();
        scripted::zoning.limits = limits;
        cache->initZoningLimits();
        forget();
        EXPECT_EQ(run(*cache), 4);
        EXPECT_EQ(log(), Lines{line});
        EXPECT_EQ(calls(), expected);
        EXPECT_TRUE(support::isLockFree());
    }

private:
    void expectCalls(const Edit &edit) {
        const Lines lines = log();
        if (edit.recount == Recount::yes) {
            ASSERT_EQ(lines.size(), 1U);
            EXPECT_EQ(lines[0].rfind("DCACHE: zsl = ", 0), 0U);
            expectCallsAndRecount(edit.calls);
        } else {
            EXPECT_EQ(lines, Lines());
            EXPECT_EQ(calls(), edit.calls);
        }
    }

    /// Living objects that belong neither to another one nor to the cache.
    int ownerless() const {
        std::set<const void *> entered;
        _ZoneSetTypes kind = ZONESET_INACTIVE;
        for (void *each = cache->getFirstZoneset(kind); each != nullptr; each = cache->getNextZoneset(each, kind))
            entered.insert(each);
        int count = 0;
        for (const scripted::Object &each : scripted::zoning.objects)
            count += !each.destroyed && each.owner == nullptr && entered.count(&each) == 0 ? 1 : 0;
        return count;
    }
};

#endif // TESTS_ZONING_EDITTEST_H
