#include "tools/dcache/doctor/diagnosis.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr mode_t kLogMode = 0666; // anybody's process may log

enum class State { good, bad, unknown, info };

struct Check {
    std::string name;
    State state;
    std::string detail;
};
using Checks = std::vector<Check>;

Check verdict(std::string name, bool isGood, const std::string &good, const std::string &bad) {
    return {std::move(name), isGood ? State::good : State::bad, isGood ? good : bad};
}

Check notMade(std::string name) {
    return {std::move(name), State::unknown, "not checked"};
}

std::string counted(unsigned long count, const char *one, const char *many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

void checkConnection(Checks &checks, const Findings &findings, double seconds, bool isSimulatedSwitch) {
    checks.push_back(verdict("connection", findings.isConnected,
                             isSimulatedSwitch ? "the simulated switch of this process answers" : "the switch answers",
                             fmt::format("the switch did not answer within {:g} s", seconds)));
}

/// A row for all codes, and one for each that the switch refused.
void checkRegistrations(Checks &checks, const Findings &findings) {
    if (!findings.isStarted) {
        checks.push_back(notMade("registration"));
        return;
    }
    const auto &all = findings.registrations;
    const auto refused =
        std::count_if(all.begin(), all.end(), [](const zov_eventreg_s &each) { return each.result != 0; });
    checks.push_back(verdict("registration", refused == 0, fmt::format("all {} notifications", all.size()),
                             fmt::format("{} of {} notifications refused", refused, all.size())));
    for (const zov_eventreg_s &each : all)
        if (each.result != 0)
            checks.push_back({fmt::format("notification {}", each.code), State::bad,
                              fmt::format("{} refused, result {}", DataCache::_tagToString(each.code), each.result)});
}

void checkAreas(Checks &checks, const Findings &findings) {
    for (size_t i = 0; i < kAreaCount; ++i) {
        const std::string name = fmt::format("area {}", areaWord(static_cast<DataCacheArea>(i)));
        const char *bad = findings.passes == 0 ? "not loaded yet" : "could not be read; see /tmp/cim.out";
        checks.push_back(findings.isStarted ? verdict(name, findings.isAreaGood[i], "loaded", bad) : notMade(name));
    }
}

void checkWork(Checks &checks, const Findings &findings, double seconds) {
    if (!findings.isStarted) {
        for (const char *name : {"readiness", "complete pass", "EVAL thread", "queue"})
            checks.push_back(notMade(name));
        return;
    }
    const long age = findings.secondsSinceReadyPass;
    checks.push_back(verdict("readiness", findings.isReady, "the cache is ready", "the cache is not ready"));
    checks.push_back(verdict("complete pass", age >= 0, fmt::format("{} s ago", age), "none so far"));
    checks.push_back(verdict("EVAL thread", findings.passes != 0, counted(findings.passes, "pass", "passes"),
                             fmt::format("no pass has ended within {:g} s; see /tmp/cim.out", seconds)));
    checks.push_back(verdict("queue", findings.queued == 0, "no notification waits",
                             counted(findings.queued, "notification still waits", "notifications still wait")));
}

/// Taking the lock would tell whether somebody else has it, and would keep him from it: so it is not taken.
void checkLock(Checks &checks, const Findings &findings) {
    if (!findings.isStarted)
        checks.push_back({"zoning lock", State::info, "not known"});
    else if (findings.lockHolder.empty())
        checks.push_back({"zoning lock", State::info, "not held here; other clients' locks do not show"});
    else
        checks.push_back({"zoning lock", State::info, "held here by " + inQuotes(findings.lockHolder)});
}

Cell stateCell(State state) {
    switch (state) {
    case State::good:
        return {"good", "good", Tone::good};
    case State::bad:
        return {"bad", "bad", Tone::bad};
    case State::unknown:
        return {"unknown", "unknown", Tone::bad};
    case State::info:
        break;
    }
    return {"info", "-", Tone::faint};
}

bool isTrouble(const Check &check) {
    return check.state == State::bad || check.state == State::unknown;
}

Listing registrationsOf(const Findings &findings) {
    Listing listing{"registrations", {{"code", nullptr}, {"name", nullptr}, {"result", nullptr}}, {}};
    for (const zov_eventreg_s &each : findings.registrations)
        listing.rows.push_back({{each.code, ""}, {DataCache::_tagToString(each.code), ""}, {each.result, ""}});
    return listing;
}

} // namespace

LogFile examineLog(const std::string &path) {
    // Without O_NONBLOCK a pipe in its place would have this wait for a reader.
    constexpr int flags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK;
    int descriptor = open(path.c_str(), flags | O_EXCL, kLogMode);
    if (descriptor >= 0)
        fchmod(descriptor, kLogMode); // as the log itself makes them, whatever mask the process has
    else if (errno == EEXIST)
        descriptor = open(path.c_str(), flags, kLogMode);
    if (descriptor < 0)
        return {path, std::generic_category().message(errno)};
    struct stat facts = {};
    const bool isFile = fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
    close(descriptor);
    return {path, isFile ? "" : "not a regular file"};
}

Diagnosis diagnose(const Findings &findings, const std::vector<LogFile> &logs, double seconds, bool isSimulatedSwitch) {
    Checks checks;
    checkConnection(checks, findings, seconds, isSimulatedSwitch);
    checkRegistrations(checks, findings);
    checkAreas(checks, findings);
    checkWork(checks, findings, seconds);
    checkLock(checks, findings);
    for (const LogFile &log : logs)
        checks.push_back(verdict("log " + log.path, log.problem.empty(), "can be written", log.problem));

    const auto troubles = std::count_if(checks.begin(), checks.end(), isTrouble);
    const bool isHealthy = troubles == 0;
    Diagnosis diagnosis{isHealthy, {}};
    const std::string words = fmt::format("{} of {} checks in trouble", troubles, checks.size());
    diagnosis.report.facts = {
        {"healthy", "health", {isHealthy, isHealthy ? "good" : words, isHealthy ? Tone::good : Tone::bad}}};
    Listing listing{"checks", {{"check", "CHECK"}, {"state", "STATE"}, {"detail", "DETAIL"}}, {}};
    for (const Check &check : checks)
        listing.rows.push_back(
            {{check.name, check.name}, stateCell(check.state), {check.detail, printable(check.detail)}});
    diagnosis.report.listings = {listing, registrationsOf(findings)};
    return diagnosis;
}

} // namespace dcache
