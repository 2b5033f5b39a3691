/*
 * What the tool prints for programs, read back.
 */
#ifndef TESTS_TOOLS_JSON_H
#define TESTS_TOOLS_JSON_H

#include <nlohmann/json.hpp>

#include "tools/dcache/render.h"

namespace dcache {

inline nlohmann::json jsonOf(const Report &report) {
    return nlohmann::json::parse(render(report, Format::json, false));
}

} // namespace dcache

#endif // TESTS_TOOLS_JSON_H
