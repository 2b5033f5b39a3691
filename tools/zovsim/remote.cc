#include "tools/zovsim/remote.h"

#include <cstdlib>
#include <sstream>

#include "sim/Server.h"
#include "sim/verbs/perform.h"
#include "tools/dcache/failure.h"
#include "tools/zovsim/version.h"

namespace zovsim {
namespace {

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

/// As it may stand between quotation marks.
std::string shownControl(char c) {
    constexpr const char *digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    return std::string("\\x") + digits[byte >> 4] + digits[byte & 15];
}

/// In quotation marks; of NAME=TEXT, the text.
std::string quotedWord(const std::string &word) {
    const size_t equals = word.find('=');
    const bool isOption =
        equals != std::string::npos && equals > 0 && word.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == equals;
    const size_t begin = isOption ? equals + 1 : 0;
    std::string quoted = word.substr(0, begin) + '"';
    for (const char c : word.substr(begin))
        quoted += isControl(c) ? shownControl(c) : (c == '\\' || c == '"' ? "\\" : "") + std::string(1, c);
    return quoted + '"';
}

/// Whether a text is a word as it stands: what would end it, or the line, is between quotation marks of its own.
bool isOneWord(const std::string &text) {
    bool isInQuotes = false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            isInQuotes = !isInQuotes;
        else if (isInQuotes && text[i] == '\\')
            ++i;
        else if (!isInQuotes && (text[i] == ' ' || text[i] == '#' || isControl(text[i])))
            return false;
    }
    return !text.empty() && !isInQuotes;
}

std::string wordOf(const std::string &argument) {
    if (!isOneWord(argument))
        return quotedWord(argument);
    std::string word;
    for (const char c : argument)
        word += isControl(c) ? shownControl(c) : std::string(1, c);
    return word;
}

std::string ask(const char *command, const std::optional<std::string> &socket) {
    const std::string path = socketPath(socket);
    std::string answer;
    if (zovsim_ask(path.c_str(), command, &answer))
        return answer.empty() || answer.back() == '\n' ? answer : answer + '\n';
    if (answer == "no switch is served at " + path)
        answer += "; \"zovsim serve\" starts one";
    throw dcache::Failure(answer);
}

bool isHelp(const std::string &commands) {
    std::istringstream words(commands);
    std::string first;
    words >> first;
    return first == "help" && commands.find('\n') == std::string::npos;
}

} // namespace

std::string socketPath(const std::optional<std::string> &asked) {
    if (asked && !asked->empty())
        return *asked;
    const char *named = std::getenv("ZOVSIM_SOCKET");
    return named != nullptr && *named != '\0' ? named : sim::defaultSocketPath();
}

std::string commandOf(const std::vector<std::string> &arguments) {
    if (arguments.size() == 1)
        return arguments.front();
    std::string command;
    for (const std::string &argument : arguments)
        command += (command.empty() ? "" : " ") + wordOf(argument);
    return command;
}

std::string carryOut(const std::string &commands, const std::optional<std::string> &socket) {
    if (isHelp(commands))
        return sim::perform(*ofThisVersion(sim::createApart()), commands) + '\n';
    return ask(commands.c_str(), socket);
}

std::string dump(const std::optional<std::string> &socket) {
    return ask(nullptr, socket);
}

} // namespace zovsim
