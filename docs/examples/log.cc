// The provider's own lines in the cache's log.
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "docs/examples/driver.h"

// [log]
#include <foundation/cim_log.h>

void logSomething() {
    DataCacheLogger("PROVIDER: %d subscriptions\n", 3);                       // /tmp/cim.out
    cim_log(CIM_LOG_CRIT, "CRIT:%s: no subscriptions can be read\n", "subs"); // and /tmp/cim.crit.out
}
// [/log]

namespace {

void show(const char *file) {
    struct stat status = {};
    stat(file, &status);
    std::printf("%s, mode %o:\n", file, static_cast<unsigned>(status.st_mode & 07777U));
    for (const std::string &message : example::messagesIn(file))
        std::printf("    %s\n", message.c_str());
}

void logAndShow() {
    logSomething();
    show("/tmp/cim.out");
    show("/tmp/cim.crit.out");
}

constexpr const char *kOutput = R"(
/tmp/cim.out, mode 666:
    PROVIDER: 3 subscriptions
    CRIT:subs: no subscriptions can be read
/tmp/cim.crit.out, mode 666:
    CRIT:subs: no subscriptions can be read
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, logAndShow);
}
