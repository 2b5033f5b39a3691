#include "tests/tools/Json.h"

#include <ostream>

namespace nlohmann {

void PrintTo(const json &value, std::ostream *stream) {
    *stream << value.dump();
}

} // namespace nlohmann

namespace support {

nlohmann::json parseJson(const std::string &text) {
    return nlohmann::json::parse(text);
}

} // namespace support

namespace dcache {

nlohmann::json jsonOf(const Report &report) {
    return support::parseJson(render(report, Format::json, false));
}

} // namespace dcache
