#include <cstdio>
#include <functional>
#include <unistd.h>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/config/session.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/interruptibly.h"
#include "tools/dcache/settings.h"
#include "tools/dcache/simulator.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

void say(const std::string &words) {
    std::fputs(("dcache: " + words + '\n').c_str(), stderr);
}

[[noreturn]] void endAtOnce(bool isFinal) {
    say(isFinal ? "interrupted while the switch is at work on its configuration; see later what it has then"
                : "interrupted; the switch does not answer, and frees admin mode when this connection ends");
    _exit(kFailedExit);
}

/// Connects, and does the work so that Ctrl-C ends it.
Report workOn(const std::function<Report(ConfigSession &)> &work) {
    connect();
    ConfigSession session(say);
    Report report = runInterruptibly<Report>([&] { return work(session); }, [&session] { session.stop(); },
                                             [&session] { endAtOnce(session.isFinal()); });
    if (isSimulated())
        report.notes.emplace_back("This is a simulated switch: what was done to it ends with this command.");
    return report;
}

Fact done(const char *key, const char *label) {
    return {key, label, {true, "yes", Tone::good}};
}

std::vector<std::optional<std::string>> readSettings() {
    std::vector<std::optional<std::string>> texts;
    for (const Setting &setting : allSettings())
        texts.push_back(readSetting(setting));
    return texts;
}

/// The settings that differ.
Listing changedSettings(const std::vector<std::optional<std::string>> &before, bool secrets) {
    Listing listing{"changes",
                    {{"setting", nullptr}, {"label", "SETTING"}, {"before", "BEFORE"}, {"now", "NOW"}},
                    {},
                    "The settings are what they were before."};
    const auto now = readSettings();
    for (size_t i = 0; i < now.size(); ++i) {
        const Setting &setting = allSettings()[i];
        if (now[i] != before[i])
            listing.rows.push_back({{setting.key, setting.key},
                                    {setting.label, setting.label},
                                    settingCell(setting, before[i], secrets),
                                    settingCell(setting, now[i], secrets)});
    }
    return listing;
}

Cell valueCell(const ConfigChange &change, const std::optional<std::string> &value, bool secrets) {
    return isSecretKey(change.key) && !secrets ? maskedCell(value) : settingText(value);
}

Report reportOn(const std::vector<ConfigChange> &changes, bool secrets) {
    Listing listing{"changes", {{"key", "KEY"}, {"before", "BEFORE"}, {"now", "NOW"}}, {}};
    for (const ConfigChange &change : changes)
        listing.rows.push_back({{change.key, printable(change.key)},
                                valueCell(change, change.before, secrets),
                                valueCell(change, change.now, secrets)});
    Report report;
    report.facts = {done("saved", "saved")};
    report.listings = {listing};
    return report;
}

} // namespace

Report backUpConfiguration() {
    return workOn([](ConfigSession &session) {
        session.backUp();
        Report report;
        report.facts = {done("kept", "copy kept")};
        return report;
    });
}

Report restoreConfiguration(bool secrets) {
    return workOn([secrets](ConfigSession &session) {
        const auto before = readSettings();
        try {
            session.restore();
        } catch (const Stopped &stopped) {
            if (stopped.exitCode == kRejectedExit && isSimulated())
                say("a simulated switch keeps a copy only as long as a command lasts");
            throw;
        }
        Report report;
        report.facts = {done("restored", "restored")};
        report.listings = {changedSettings(before, secrets)};
        return report;
    });
}

Report editConfiguration(const std::vector<ConfigEdit> &edits, bool secrets) {
    return workOn([&edits, secrets](ConfigSession &session) { return reportOn(session.edit(edits), secrets); });
}

} // namespace dcache
