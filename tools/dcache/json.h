/*
 * Values as JSON. Pure functions.
 */
#ifndef TOOLS_DCACHE_JSON_H
#define TOOLS_DCACHE_JSON_H

#include <nlohmann/json.hpp>

#include "tools/dcache/value.h"

namespace dcache {

using Json = nlohmann::ordered_json;

inline Json toJson(const Value &value) {
    const auto convert = [](const auto &content) -> Json {
        if constexpr (std::is_same_v<std::decay_t<decltype(content)>, Value::List>) {
            Json array = Json::array();
            for (const Value &element : content)
                array.push_back(toJson(element));
            return array;
        } else {
            return content;
        }
    };
    return std::visit(convert, value.content());
}

/// Bytes that are not UTF-8 are replaced. On one line with `indent` -1.
inline std::string jsonText(const Json &json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace dcache

#endif // TOOLS_DCACHE_JSON_H
