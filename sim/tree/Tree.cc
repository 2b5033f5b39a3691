#include "sim/tree/Tree.h"

#include <optional>

#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Domain = Rows (*)();

constexpr Domain kDomains[] = {identityRows, portsRows, chassisRows, bladesRows, accountsRows, manufacturingRows};

constexpr char kPlaceholder = '%';
constexpr size_t kPlaceholderSize = 2; // "%u", "%s"

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// What a key has in the place of its pattern's placeholder; none when the key is not of the pattern.
std::optional<std::string_view> placed(std::string_view pattern, size_t position, std::string_view key) {
    const std::string_view start = pattern.substr(0, position);
    const std::string_view end = pattern.substr(position + kPlaceholderSize);
    if (key.size() < start.size() + end.size() || !startsWith(key, start) || !endsWith(key, end))
        return std::nullopt;
    return key.substr(start.size(), key.size() - start.size() - end.size());
}

/// What stands in the place of the placeholder at an index.
std::string placeholderAt(const Switch &device, const Row &row, unsigned index) {
    return row.name ? row.name(device, index) : std::to_string(index);
}

std::optional<unsigned> indexOf(const Switch &device, const Row &row, std::string_view text) {
    const unsigned count = row.count(device);
    if (!row.name) {
        const std::optional<unsigned> index = toNumber(text);
        return index && *index < count ? index : std::nullopt;
    }
    for (unsigned index = 0; index < count; ++index)
        if (row.name(device, index) == text)
            return index;
    return std::nullopt;
}

/// The index in a key of this row (0 for a row without one); none when the key is not one of the row.
std::optional<unsigned> match(const Switch &device, const Row &row, std::string_view key) {
    const std::string_view pattern = row.pattern;
    const size_t position = pattern.find(kPlaceholder);
    if (position == std::string_view::npos)
        return pattern == key ? std::optional<unsigned>(0) : std::nullopt;
    const std::optional<std::string_view> text = placed(pattern, position, key);
    return text ? indexOf(device, row, *text) : std::nullopt;
}

void appendKeys(const Switch &device, const Row &row, std::vector<std::string> &keys) {
    const std::string pattern = row.pattern;
    if (!row.count) {
        keys.push_back(pattern);
        return;
    }
    const size_t position = pattern.find(kPlaceholder);
    for (unsigned index = 0; index < row.count(device); ++index)
        keys.push_back(std::string(pattern).replace(position, kPlaceholderSize, placeholderAt(device, row, index)));
}

} // namespace

Attribute findAttribute(const Switch &device, std::string_view key) {
    for (const Domain rows : kDomains)
        for (const Row &row : rows())
            if (const std::optional<unsigned> index = match(device, row, key))
                return {&row, *index};
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
