#include "sim/scenario/Fields.h"

#include <algorithm>

#include "sim/levers/Duration.h"
#include "sim/levers/Nearest.h"

namespace sim {

namespace {

int digitOf(char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const char capital = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const size_t place = digits.find(capital);
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

std::optional<std::string> bytesIn(const std::string &text) {
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::string bytes;
    for (size_t i = 0; i < text.size(); i += 2) {
        const int high = digitOf(text[i]);
        const int low = digitOf(text[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.append(1, static_cast<char>(static_cast<unsigned char>(high * 16 + low)));
    }
    return bytes;
}

std::string listed(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

constexpr const char *kText = "must be a text, in quotes";
constexpr const char *kDuration = "must be a time: a whole number of seconds, or a text such as \"500 ms\", \"90 s\", "
                                  "\"2 min\", \"1 h\", \"1 d\", of ten years at most";

std::optional<std::chrono::milliseconds> durationIn(const toml::node &node) {
    if (const auto *number = node.as_integer())
        return parseDuration(std::to_string(number->get()));
    if (const auto *text = node.as_string())
        return parseDuration(text->get());
    return std::nullopt;
}

} // namespace

// ---- complaints --------------------------------------------------------------------------------------

std::string shownPosition(const std::string &fileName, FilePosition at) {
    return fileName + ":" + std::to_string(at.line) + ":" + std::to_string(at.column);
}

void Complaints::add(FilePosition at, const std::string &what) {
    _byPosition.emplace(std::make_pair(at.line, at.column), onOneLine(what));
}

std::string onOneLine(const std::string &text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte == 0x7F)
            line += escaped(std::string(1, c));
        else
            line += c;
    }
    return line;
}

std::vector<std::string> Complaints::lines(const std::string &fileName) const {
    std::vector<std::string> lines;
    for (const auto &[at, what] : _byPosition)
        lines.push_back(shownPosition(fileName, {at.first, at.second}) + ": " + what);
    return lines;
}

FilePosition positionOf(const toml::source_region &region) {
    if (!region.begin)
        return {};
    return {static_cast<unsigned>(region.begin.line), static_cast<unsigned>(region.begin.column)};
}

// ---- values ------------------------------------------------------------------------------------------

std::optional<std::string> textIn(const toml::node &node) {
    if (const auto *text = node.as_string())
        return text->get();
    const toml::table *table = node.as_table();
    const toml::node *bytes = table && table->size() == 1 ? table->get("bytes") : nullptr;
    return bytes && bytes->is_string() ? bytesIn(bytes->as_string()->get()) : std::nullopt;
}

std::optional<std::string> valueIn(const toml::node &node) {
    if (const auto *number = node.as_integer())
        return std::to_string(number->get());
    if (const auto *flag = node.as_boolean())
        return flag->get() ? "True" : "False";
    return textIn(node);
}

// ---- tables ------------------------------------------------------------------------------------------

Fields::Fields(const toml::table &table, std::string what, Complaints &complaints)
    : _table(table), _what(std::move(what)), _complaints(complaints) {}

const toml::node *Fields::find(const std::string &name) {
    if (std::find(_known.begin(), _known.end(), name) == _known.end())
        _known.push_back(name);
    return _table.get(name);
}

FilePosition Fields::at(const std::string &name) const {
    const toml::node *node = _table.get(name);
    return node ? positionOf(node->source()) : at();
}

void Fields::complainOf(const std::string &name, const std::string &what) const {
    _complaints.add(at(name), "'" + name + "' of " + _what + " " + what);
}

std::optional<std::string> Fields::text(const std::string &name) {
    const toml::node *node = find(name);
    if (!node)
        return std::nullopt;
    std::optional<std::string> text = textIn(*node);
    if (!text)
        complainOf(name, kText);
    return text;
}

std::optional<std::string> Fields::word(const std::string &name, const std::vector<std::string> &allowed) {
    std::optional<std::string> text = this->text(name);
    if (!text || std::find(allowed.begin(), allowed.end(), *text) != allowed.end())
        return text;
    complainOf(name, "cannot be '" + escaped(*text) + "'; allowed: " + listed(allowed) + didYouMean(*text, allowed));
    return std::nullopt;
}

std::optional<std::string> Fields::value(const std::string &name) {
    const toml::node *node = find(name);
    if (!node)
        return std::nullopt;
    std::optional<std::string> value = valueIn(*node);
    if (!value)
        complainOf(name, "must be a text in quotes, a whole number, true or false");
    return value;
}

std::optional<int64_t> Fields::number(const std::string &name, int64_t lowest, int64_t highest) {
    const toml::node *node = find(name);
    if (!node)
        return std::nullopt;
    const auto *number = node->as_integer();
    if (number && number->get() >= lowest && number->get() <= highest)
        return number->get();
    complainOf(name, "must be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return std::nullopt;
}

std::optional<bool> Fields::flag(const std::string &name) {
    const toml::node *node = find(name);
    if (!node)
        return std::nullopt;
    if (const auto *flag = node->as_boolean())
        return flag->get();
    complainOf(name, "must be true or false");
    return std::nullopt;
}

std::optional<std::chrono::milliseconds> Fields::duration(const std::string &name) {
    const toml::node *node = find(name);
    if (!node)
        return std::nullopt;
    const std::optional<std::chrono::milliseconds> time = durationIn(*node);
    if (!time)
        complainOf(name, kDuration);
    return time;
}

std::vector<ScenarioCommand> Fields::texts(const std::string &name) {
    std::vector<ScenarioCommand> texts;
    const toml::node *node = find(name);
    if (!node)
        return texts;
    const toml::array *list = node->as_array();
    if (!list) {
        complainOf(name, "must be a list of texts");
        return texts;
    }
    for (const toml::node &element : *list) {
        const FilePosition place = positionOf(element.source());
        if (const std::optional<std::string> text = textIn(element))
            texts.push_back({place, *text});
        else
            _complaints.add(place, "'" + name + "' of " + _what + " must be a list of texts, each in quotes");
    }
    return texts;
}

std::vector<const toml::table *> Fields::tables(const std::string &name) {
    std::vector<const toml::table *> tables;
    const toml::node *node = find(name);
    if (!node)
        return tables;
    const toml::array *list = node->as_array();
    bool isRight = list != nullptr;
    for (size_t i = 0; isRight && i < list->size(); ++i) {
        tables.push_back(list->get_as<toml::table>(i));
        isRight = tables.back() != nullptr;
    }
    if (isRight)
        return tables;
    complainOf(name, "must be a list of tables, each under [[...]]");
    return {};
}

const toml::table *Fields::table(const std::string &name) {
    const toml::node *node = find(name);
    if (node && !node->is_table())
        complainOf(name, "must be a table, under [...]");
    return node ? node->as_table() : nullptr;
}

bool Fields::require(const std::string &name) {
    if (has(name))
        return true;
    complain(_what + " needs '" + name + "'");
    return false;
}

void Fields::refuseOthers() {
    for (const auto &[key, node] : _table)
        if (std::find(_known.begin(), _known.end(), key.str()) == _known.end())
            _complaints.add(positionOf(key.source()), _what + " has no '" + escaped(std::string(key.str())) +
                                                          "'; allowed: " + listed(_known) +
                                                          didYouMean(key.str(), _known));
}

} // namespace sim
