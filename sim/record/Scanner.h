/*
 * Reading the texts that records are made of: a place in a text that moves on as the text is understood.
 *
 * For one thread at a time. What is not there is not taken, and the place stays.
 */
#ifndef SIM_RECORD_SCANNER_H
#define SIM_RECORD_SCANNER_H

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace sim {

class Scanner {
public:
    explicit Scanner(std::string_view text) : _rest(text) {}

    bool atEnd() const { return _rest.empty(); }
    std::string_view rest() const { return _rest; }

    bool take(std::string_view literal) {
        if (_rest.substr(0, literal.size()) != literal)
            return false;
        _rest.remove_prefix(literal.size());
        return true;
    }

    /// The characters before `end`, which is left; all that is left when it does not come.
    std::string_view before(char end) { return cut(_rest.find(end)); }

    /// The characters before the first `end` that is not within quotes; none when there is no such.
    std::optional<std::string_view> beforeUnquoted(char end) {
        bool isQuoted = false;
        for (size_t i = 0; i < _rest.size(); ++i) {
            if (_rest[i] == end && !isQuoted)
                return cut(i);
            if (_rest[i] == '\\')
                ++i;
            else if (_rest[i] == '"')
                isQuoted = !isQuoted;
        }
        return std::nullopt;
    }

    /// A decimal number within the limits of its type.
    template <class Number> std::optional<Number> number() {
        constexpr uint64_t most = static_cast<uint64_t>(std::numeric_limits<Number>::max());
        size_t length = 0;
        const bool isNegative = std::numeric_limits<Number>::is_signed && _rest.substr(0, 1) == "-";
        if (isNegative)
            length = 1;
        const size_t first = length;
        const uint64_t limit = isNegative ? most + 1 : most;
        uint64_t value = 0;
        for (; length < _rest.size() && _rest[length] >= '0' && _rest[length] <= '9'; ++length) {
            const auto digit = static_cast<uint64_t>(_rest[length] - '0');
            if (value > (limit - digit) / 10)
                return std::nullopt;
            value = value * 10 + digit;
        }
        if (length == first)
            return std::nullopt;
        _rest.remove_prefix(length);
        return isNegative ? static_cast<Number>(-static_cast<int64_t>(value - 1) - 1) : static_cast<Number>(value);
    }

    /// A text in quotes, as quoted() in sim/Record.h makes it.
    std::optional<std::string> quotedText();

private:
    std::string_view cut(size_t length) {
        const std::string_view part = _rest.substr(0, length);
        _rest.remove_prefix(part.size());
        return part;
    }

    std::string_view _rest;
};

/// What escaped() in sim/Record.h was given; none for what it cannot have made.
inline std::optional<std::string> unescaped(std::string_view text) {
    const auto digit = [](char c) { return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1; };
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            return std::nullopt;
        if (text[i] != '\\') {
            out += text[i];
        } else if (const std::string_view two = text.substr(i + 1, 1); two == "\\" || two == "\"") {
            out += two;
            ++i;
        } else {
            const std::string_view code = text.substr(i + 1, 3);
            if (code.size() != 3 || code[0] != 'x' || digit(code[1]) < 0 || digit(code[2]) < 0)
                return std::nullopt;
            out += static_cast<char>(digit(code[1]) * 16 + digit(code[2]));
            i += 3;
        }
    }
    return out;
}

inline std::optional<std::string> Scanner::quotedText() {
    Scanner ahead = *this;
    if (!ahead.take("\""))
        return std::nullopt;
    size_t length = 0;
    while (length < ahead._rest.size() && ahead._rest[length] != '"')
        length += ahead._rest[length] == '\\' ? 2 : 1;
    if (length >= ahead._rest.size())
        return std::nullopt;
    std::optional<std::string> text = unescaped(ahead.cut(length));
    if (text) {
        ahead.take("\"");
        *this = ahead;
    }
    return text;
}

} // namespace sim

#endif // SIM_RECORD_SCANNER_H
