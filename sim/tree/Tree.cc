#include "sim/tree/Tree.h"

#include <optional>

#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Domain = Rows (*)();

constexpr Domain kDomains[] = {identityRows, chassisRows, manufacturingRows};

constexpr std::string_view kIndex = "%u";

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// The index in a key of this pattern (0 for a pattern without one); none when the key is not of the pattern.
std::optional<unsigned> match(std::string_view pattern, std::string_view key) {
    const size_t position = pattern.find(kIndex);
    if (position == std::string_view::npos)
        return pattern == key ? std::optional<unsigned>(0) : std::nullopt;
    const std::string_view start = pattern.substr(0, position);
    const std::string_view end = pattern.substr(position + kIndex.size());
    if (key.size() < start.size() + end.size() || !startsWith(key, start) || !endsWith(key, end))
        return std::nullopt;
    return toNumber(key.substr(start.size(), key.size() - start.size() - end.size()));
}

void appendKeys(const Switch &device, const Row &row, std::vector<std::string> &keys) {
    const std::string pattern = row.pattern;
    if (!row.count) {
        keys.push_back(pattern);
        return;
    }
    const size_t position = pattern.find(kIndex);
    for (unsigned index = 0; index < row.count(device); ++index)
        keys.push_back(std::string(pattern).replace(position, kIndex.size(), std::to_string(index)));
}

} // namespace

Attribute findAttribute(const Switch &device, std::string_view key) {
    for (const Domain rows : kDomains)
        for (const Row &row : rows()) {
            const std::optional<unsigned> index = match(row.pattern, key);
            if (index && (!row.count || *index < row.count(device)))
                return {&row, *index};
        }
    return {};
}

std::vector<std::string> allKeys(const Switch &device) {
    std::vector<std::string> keys;
    for (const Domain rows : kDomains)
        for (const Row &row : rows())
            appendKeys(device, row, keys);
    return keys;
}

} // namespace sim
