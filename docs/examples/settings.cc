// Settings of the switch, and a session that changes its configuration.
#include <atomic>
#include <cstdio>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

// [read]
#include <swlib/MERO_Zov_Lib.h>

// The text of a setting; empty when the switch does not have it or did not answer.
std::string setting(char *(*read)()) {
    char *value = read();
    if (value == nullptr)
        return {};
    std::string text = value;
    zov_libFreeMemory(value); // the text came from the switch library and goes back to it
    return text;
}
// [/read]

// [edit]
// Sets one key of the configuration; false when the switch refuses. Nothing is changed then, unless all that it refused
// was to take admin mode back.
bool configure(const char *key, const char *value) {
    if (getConfigEditMode() != 0) { // admin mode, then the edit
        releaseAdminMode();         // does nothing unless admin mode was granted and only the edit refused
        return false;
    }
    if (zov_smlSetV(hSwitch, value, "%s", key) == 0 && saveConfigEdit() == 0)
        return true; // saved, and admin mode given back
    if (cancelConfigEdit() != 0)
        releaseAdminMode(); // no edit is open any more, or it cannot be ended: giving admin mode back is what is left
    return false;
}
// [/edit]

namespace {

std::atomic<int> changes{0};

void onEvent(DataCacheEvent *event) {
    if (dynamic_cast<DCEventCIMChange *>(event) != nullptr)
        ++changes;
}

/// What came of an edit, once the cache has followed it.
void say(const char *what, bool configured) {
    example::waitUntilSettled();
    std::printf("%s: %s, DCEventCIMChange: %d, admin mode %s\n", what, configured ? "done" : "refused",
                changes.exchange(0), example::theSwitch().adminModeHolder() == 0 ? "free" : "taken");
}

void readAndEdit() {
    DataCache::init();
    CacheHold()->start(onEvent);
    example::waitUntilSettled();
    sim::Fault missing; // this switch is not equipped for SSL
    missing.key = "Config.Services.SSLEnable";
    missing.status = 103;
    missing.times = -1;
    example::theSwitch().addFault(missing);

    // [show]
    std::printf("brand '%s', domain %s, SSL '%s'\n", setting(get_Switch_Brand_Name).c_str(),
                setting(get_Switch_Domain_ID).c_str(), setting(is_Switch_SSLEnabled).c_str());
    // [/show]

    say("a port's type", configure("Config.UserPort.0.20.Type", "F"));
    say("that of no port", configure("Config.UserPort.0.99.Type", "F"));
    example::theSwitch().holdAdminModeElsewhere(true);
    say("while another client edits", configure("Config.UserPort.0.20.Type", "G"));
}

constexpr const char *kOutput = R"(
brand 'FC Switch', domain 1, SSL ''
a port's type: done, DCEventCIMChange: 1, admin mode free
that of no port: refused, DCEventCIMChange: 0, admin mode free
while another client edits: refused, DCEventCIMChange: 0, admin mode taken
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, readAndEdit);
}
