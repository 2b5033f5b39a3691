#include "tools/dcache/quiet.h"

#include <array>
#include <cctype>
#include <sstream>

namespace dcache {
namespace {

struct QuietCommand {
    const char *beginning; ///< its words; '*' stands for any one
    const char *why;
};

constexpr const char *kGoesSilently = "a port that goes away raises none, one that comes does";
constexpr const char *kSameSwitches = "the fabric has the same switches as before";
constexpr const char *kFansKept = "fans are kept up to date, but raise no events";
constexpr const char *kFaultsKept = "the fault list is read with the chassis, next time";

constexpr std::array<QuietCommand, 17> kQuietCommands = {{
    {"port * type", "port types are kept up to date, but raise no events"},
    {"port * powered-off", kGoesSilently},
    {"port * absent", kGoesSilently},
    {"media * plug", "the cache knows it now, but tells nobody"},
    {"media * pull", "the cache has forgotten it, without a word"},
    {"blade * pull", "the cache follows the last slot; ports go silently"},
    {"blade * diagnosis", "what a diagnosis finds is not kept"},
    {"blade * fault", "the faults of a blade are not kept"},
    {"fan", kFansKept},
    {"fault", kFaultsKept},
    {"link", kSameSwitches},
    {"unlink", kSameSwitches},
    {"deliver 3", "both checksums are what they were, so nothing is read"},
    {"deliver", "the cache does not follow this code, or no change"},
    {"lock", "who holds a lock shows when somebody asks for it"},
    {"rule", "calls are answered otherwise; nothing has changed yet"},
    {"reboot", "locks and open edits are gone, which raises none"},
}};

std::string lower(std::string word) {
    for (char &c : word)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return word;
}

bool beginsLike(const std::string &command, const char *beginning) {
    std::istringstream given(command);
    std::istringstream wanted(beginning);
    for (std::string pattern, word; wanted >> pattern;)
        if (!(given >> word) || (pattern != "*" && pattern != lower(word)))
            return false;
    return true;
}

} // namespace

std::string whyNoEvent(const std::string &command) {
    for (const QuietCommand &quiet : kQuietCommands)
        if (beginsLike(command, quiet.beginning))
            return quiet.why;
    return "";
}

} // namespace dcache
