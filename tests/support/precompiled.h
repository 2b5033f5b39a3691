/*
 * What most tests include. It is compiled once for all of them; a test still includes what it uses.
 */
#ifndef TESTS_SUPPORT_PRECOMPILED_H
#define TESTS_SUPPORT_PRECOMPILED_H

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#endif // TESTS_SUPPORT_PRECOMPILED_H
