/*
 * The TOML library, as it is used here: reading only.
 *
 * The library takes some broken texts for a mistake of its own, and would end the process, or go on as if nothing was
 * wrong in a build without assertions. Here it throws a TomlStumbled in every build.
 */
#ifndef SIM_SCENARIO_TOML_H
#define SIM_SCENARIO_TOML_H

#include <stdexcept>

namespace sim {

class TomlStumbled : public std::runtime_error {
public:
    TomlStumbled() : std::runtime_error("is no TOML") {}
};

[[noreturn]] inline void stumble() {
    throw TomlStumbled();
}

} // namespace sim

#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_FORMATTERS 0
#define TOML_ASSERT(expression) ((expression) ? static_cast<void>(0) : ::sim::stumble())

#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

#endif // SIM_SCENARIO_TOML_H
