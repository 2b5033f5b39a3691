#include "tests/support/Log.h"

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace support {

std::string readFile(const std::string &name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> messagesIn(const std::string &name) {
    static const std::regex shape(R"(^\d\d/\d\d \d\d:\d\d:\d\d\.\d{3} \d+/\d+ )");
    std::vector<std::string> messages;
    std::istringstream lines(readFile(name));
    for (std::string line; std::getline(lines, line);) {
        std::smatch prefix;
        if (!std::regex_search(line, prefix, shape))
            throw std::runtime_error("not a log line: " + line);
        messages.push_back(prefix.suffix());
    }
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

} // namespace support
