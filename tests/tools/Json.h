/*
 * What the tool prints for programs, read back. Compiled once, in Json.cc: every test that did it for itself took seconds.
 */
#ifndef TESTS_TOOLS_JSON_H
#define TESTS_TOOLS_JSON_H

#include <iosfwd>
#include <string>

#include <nlohmann/json.hpp>

#include "tools/dcache/render.h"

namespace nlohmann {

/// How a failed test shows one.
void PrintTo(const json &value, std::ostream *stream); // NOLINT(readability-identifier-naming): as GoogleTest calls it

} // namespace nlohmann

namespace support {

/// Throws nlohmann::json::exception for a text that is none.
nlohmann::json parseJson(const std::string &text);

} // namespace support

namespace dcache {

nlohmann::json jsonOf(const Report &report);

} // namespace dcache

#endif // TESTS_TOOLS_JSON_H
