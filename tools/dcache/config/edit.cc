#include "tools/dcache/config/edit.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <string_view>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr size_t kLongest = 255; // of a key, and of a value
constexpr std::string_view kCommands = "Cmd.";
constexpr std::array<std::string_view, 4> kSecretEndings = {"Comm", "Community", "Password", "Secret"};

ConfigEdit parseEdit(const std::string &text) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos)
        throw Misuse(fmt::format("{} is no KEY=VALUE", inQuotes(text)));
    ConfigEdit edit = {text.substr(0, equals), text.substr(equals + 1)};
    if (edit.key.empty())
        throw Misuse(fmt::format("{} has no key", inQuotes(text)));
    if (edit.key.size() > kLongest)
        throw Misuse(fmt::format("a key of {} characters is too long: the switch takes {}", edit.key.size(), kLongest));
    if (edit.value.size() > kLongest)
        throw Misuse(fmt::format("the value of {} has {} characters, and the switch takes {}", printable(edit.key),
                                 edit.value.size(), kLongest));
    if (edit.key.compare(0, kCommands.size(), kCommands) == 0)
        throw Misuse(fmt::format("{} is a command, not a setting", printable(edit.key)));
    return edit;
}

} // namespace

std::vector<ConfigEdit> parseEdits(const std::vector<std::string> &texts) {
    std::vector<ConfigEdit> edits;
    for (const std::string &text : texts) {
        ConfigEdit edit = parseEdit(text);
        const bool isThere =
            std::any_of(edits.begin(), edits.end(), [&edit](const ConfigEdit &each) { return each.key == edit.key; });
        if (isThere)
            throw Misuse(fmt::format("{} is there twice", printable(edit.key)));
        edits.push_back(std::move(edit));
    }
    return edits;
}

bool isSecretKey(const std::string &key) {
    return std::any_of(kSecretEndings.begin(), kSecretEndings.end(), [&key](std::string_view ending) {
        return key.size() >= ending.size() && key.compare(key.size() - ending.size(), ending.size(), ending) == 0;
    });
}

} // namespace dcache
