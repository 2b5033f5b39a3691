#include "sim/scenario/TomlText.h"

#include <algorithm>

namespace sim {

namespace {

constexpr const char *kDigits = "0123456789ABCDEF";

std::string hexadecimal(const std::string &bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    }
    return text;
}

} // namespace

std::string tomlValue(const std::string &text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x7F)
            return "{ bytes = \"" + hexadecimal(text) + "\" }";
        if (byte < 0x20 || byte == 0x7F)
            quoted.append("\\u00").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
        else if (c == '"' || c == '\\')
            quoted.append(1, '\\').append(1, c);
        else
            quoted.append(1, c);
    }
    return quoted + '"';
}

void TomlText::under(const std::string &header) {
    _pending = header + "\n";
}

void TomlText::plain(const std::string &name, const std::string &value) {
    if (!_pending.empty())
        _text += (_text.empty() ? "" : "\n") + _pending;
    _pending.clear();
    _text += name + " = " + value + "\n";
}

void TomlText::list(const std::string &name, const std::vector<std::string> &texts) {
    std::string value;
    for (const std::string &text : texts)
        value += (value.empty() ? "" : ", ") + tomlValue(text);
    plain(name, "[" + value + "]");
}

void TomlText::comment(const std::string &text) {
    _text += (_text.empty() ? "" : "\n") + ("# " + text + "\n");
}

} // namespace sim
