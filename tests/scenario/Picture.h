/*
 * All that the cache's public queries tell, one line each, to be compared with what another cache tells.
 *
 * Lines that come in numbers have a number or a name in the middle: "port.7.status", "member.100000C0DD00A1B2.ports". A
 * switch of the fabric is known by its name, a port by its index, so their order does not matter.
 *
 * The caller sees to it that no pass runs.
 */
#ifndef TESTS_SCENARIO_PICTURE_H
#define TESTS_SCENARIO_PICTURE_H

#include <map>
#include <string>

#include "datacache/DataCache.h"

namespace scenario {

using Lines = std::map<std::string, std::string>;

/// What a line says that is not there.
constexpr const char *kNoLine = "(nothing)";
const std::string &lineOf(const Lines &lines, const std::string &name);

Lines pictureOf(DataCache &cache);

} // namespace scenario

#endif // TESTS_SCENARIO_PICTURE_H
