#include "tests/support/Log.h"

#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace support {

std::string readFile(const std::string &name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

namespace {

std::size_t skipDigits(const std::string &line, std::size_t from) {
    while (from < line.size() && std::isdigit(static_cast<unsigned char>(line[from])) != 0)
        ++from;
    return from;
}

/// Where the message of a line begins: after "01/31 23:59:59.000 123/456 ".
std::size_t startOfMessage(const std::string &line) {
    const std::string time = "##/## ##:##:##.### ";
    for (std::size_t i = 0; i < time.size(); ++i) {
        const bool fits = i < line.size() && (time[i] == '#' ? skipDigits(line, i) > i : line[i] == time[i]);
        if (!fits)
            throw std::runtime_error("not a log line: " + line);
    }
    const std::size_t process = skipDigits(line, time.size());
    const std::size_t thread = skipDigits(line, process + 1);
    if (process == time.size() || line.compare(process, 1, "/") != 0 || thread == process + 1 ||
        line.compare(thread, 1, " ") != 0)
        throw std::runtime_error("not a log line: " + line);
    return thread + 1;
}

} // namespace

std::vector<std::string> messagesIn(const std::string &name) {
    std::vector<std::string> messages;
    std::istringstream lines(readFile(name));
    for (std::string line; std::getline(lines, line);)
        messages.push_back(line.substr(startOfMessage(line)));
    return messages;
}

std::size_t logMark() {
    return messagesIn(kMainLog).size();
}

std::vector<std::string> messagesSince(std::size_t mark) {
    std::vector<std::string> messages = messagesIn(kMainLog);
    messages.erase(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(mark));
    return messages;
}

std::vector<std::string> numberless(std::vector<std::string> messages) {
    for (std::string &line : messages) {
        const std::size_t open = line.find('[');
        const std::size_t close = line.find_first_not_of("0123456789", open + 1);
        if (open != std::string::npos && close > open + 1 && close != std::string::npos && line[close] == ']')
            line.replace(open + 1, close - open - 1, "#");
    }
    return messages;
}

} // namespace support
