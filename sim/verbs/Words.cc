#include "sim/verbs/Words.h"

#include <algorithm>
#include <utility>

#include "sim/Record.h"
#include "sim/levers/Nearest.h"
#include "sim/verbs/perform.h"

namespace sim::verbs {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

/// The value of a hexadecimal digit; -1 for any other character.
int digit(char c) {
    constexpr std::string_view digits = "0123456789abcdef0123456789ABCDEF";
    const size_t place = digits.find(c);
    return place == std::string_view::npos ? -1 : static_cast<int>(place % 16);
}

/// Reads the words of a line from left to right.
class Reader {
public:
    explicit Reader(std::string_view line) : _line(line) {}

    /// False at the end of the line, which a comment is too.
    bool next(Word &word) {
        while (_at < _line.size() && isBlank(_line[_at]))
            ++_at;
        if (_at == _line.size() || _line[_at] == '#')
            return false;
        word = {};
        for (; _at < _line.size() && !isBlank(_line[_at]); ++_at) {
            const char c = _line[_at];
            if (c == '"') {
                readQuoted(word);
                continue;
            }
            if (c == '=' && !word.isQuoted && word.equals == std::string::npos)
                word.equals = word.text.size();
            word.text += c;
        }
        return true;
    }

private:
    /// From a quote to the one that closes it.
    void readQuoted(Word &word) {
        word.isQuoted = true;
        for (++_at; _at < _line.size() && _line[_at] != '"'; ++_at)
            word.text += _line[_at] == '\\' ? readEscape() : _line[_at];
        if (_at == _line.size())
            throw CommandError("a double quote is not closed");
    }

    /// From a backslash to the end of what it stands for.
    char readEscape() {
        const std::string_view rest = _line.substr(_at + 1);
        if (!rest.empty() && (rest[0] == '"' || rest[0] == '\\'))
            return _line[++_at];
        if (rest.size() >= 3 && rest[0] == 'x' && digit(rest[1]) >= 0 && digit(rest[2]) >= 0) {
            _at += 3;
            return static_cast<char>(static_cast<unsigned char>(digit(rest[1]) * 16 + digit(rest[2])));
        }
        throw CommandError("'\\' in quotes stands before '\"', '\\', or 'x' and two hexadecimal digits");
    }

    std::string_view _line;
    size_t _at = 0;
};

} // namespace

std::vector<Word> wordsOf(std::string_view line) {
    std::vector<Word> words;
    Reader reader(line);
    for (Word word; reader.next(word);)
        words.push_back(word);
    return words;
}

std::vector<CommandLine> linesOf(const std::string &text) {
    std::vector<CommandLine> lines;
    const bool isOneLine = text.find('\n') == std::string::npos;
    size_t number = 0;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        const std::string mark = isOneLine ? "" : "line " + std::to_string(++number) + ": ";
        try {
            std::vector<Word> words = wordsOf(std::string_view(text).substr(begin, end - begin));
            if (!words.empty())
                lines.push_back({mark, std::move(words)});
        } catch (const CommandError &error) {
            throw CommandError(mark + error.what());
        }
        begin = end + 1;
    }
    return lines;
}

std::string wordFor(const std::string &text) {
    const bool isPlain = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return c > ' ' && c <= '~' && c != '"' && c != '\\' && c != '=' && c != '#';
    });
    return isPlain && !isSameWord(text, "silently") ? text : quoted(text);
}

} // namespace sim::verbs
