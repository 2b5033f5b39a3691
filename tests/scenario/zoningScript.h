/*
 * Random zoning databases, and random edits of them.
 */
#ifndef TESTS_SCENARIO_ZONINGSCRIPT_H
#define TESTS_SCENARIO_ZONINGSCRIPT_H

#include <string>
#include <vector>

#include "tests/scenario/Random.h"
#include "tests/scenario/zoningModel.h"

namespace scenario {

/// So small that edits reach them.
ZoningLimits smallLimits(Random &random);

/// A database that a switch of these limits takes; rather small whatever they are.
sim::ZoningDatabase randomDatabase(Random &random, const ZoningLimits &limits);

/// One that is full in every respect of a switch's own limits: 300 zone sets, 3,000 zones, 3,000 aliases, 12,000 members.
sim::ZoningDatabase fullDatabase();

/// An edit, for a cache and for its model.
struct ZoningEdit {
    std::string name; ///< of the operation
    std::string text; ///< the whole of it, for people
    int onCache = 0;  ///< results
    int onModel = 0;
};

/// One of the thirteen edits, of things that there are, of things that there are not, and of texts that name nothing; made in
/// both.
ZoningEdit editAtRandom(Random &random, ZoningCache &cache, ZoningModel &model);

} // namespace scenario

#endif // TESTS_SCENARIO_ZONINGSCRIPT_H
