#include "datacache/translate.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "datacache/DataCache.h"

namespace {

struct Translation {
    std::string_view text;
    unsigned short value;
};

constexpr std::array<Translation, 3> kHardwareStates{{
    {"Good", cim::kGood},
    {"Bad", cim::kBad},
    {"NotInstalled", cim::kNotInstalled},
}};

constexpr std::array<Translation, 2> kHardwareTypes{{
    {"GL", 1},
    {"EXG", 2},
}};

// CIM port types; those from 16000 up are the vendor's.
constexpr std::array<Translation, 10> kPortTypes{{
    {"G", 2},
    {"GL", 3},
    {"E", 4},
    {"F", 5},
    {"FL", 6},
    {"Donor", cim::kDonorPort},
    {"TH", 16001},
    {"TF", 16002},
    {"TR", 16003},
    {"PT", cim::kPassthroughPort},
}};

constexpr std::array<Translation, 4> kSwitchStates{{
    {"Diagnostics", cim::kInService},
    {"Online", cim::kOk},
    {"Offline", cim::kStopped},
    {"Downed", cim::kStopped},
}};

/// The first row with this text decides; 0 without one.
template <std::size_t rows>
unsigned short translate(const std::array<Translation, rows> &table, std::string_view text) {
    for (const Translation &row : table) {
        if (row.text == text)
            return row.value;
    }
    return 0;
}

std::string_view viewOf(const char *text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

bool isDown(std::string_view state) {
    return state == "Down" || state == "Downed";
}

bool isDownOrOffline(std::string_view state) {
    return isDown(state) || state == "Offline";
}

unsigned short portStatus(std::string_view state, std::string_view otherState) {
    if (state == "Online")
        return cim::kOk;
    if (state == "Offline")
        return cim::kStopped;
    if (state == "Diagnostics")
        return cim::kInService;
    // A port that is isolated or down because its administrator wants it down is stopped; otherwise it failed.
    if (state == "Isolated")
        return isDownOrOffline(otherState) ? cim::kStopped : cim::kError;
    if (isDown(state))
        return isDown(otherState) ? cim::kStopped : cim::kError;
    return cim::kUnknown;
}

unsigned short bladeHealth(std::string_view state, std::string_view otherState, std::string_view health) {
    if (isDown(state) && isDown(otherState))
        return cim::kError;
    if (health == "Failed")
        return cim::kError;
    return health == "Compromised" ? cim::kDegraded : cim::kOk;
}

/// What the blade is going through; 0 for nothing worth telling.
unsigned short bladeTransition(std::string_view state, std::string_view otherState) {
    if (state == "Pending")
        return otherState == "PoweredOff" ? cim::kStopping : cim::kStarting;
    if (state == "Diagnostics")
        return cim::kInService;
    return isDownOrOffline(state) ? cim::kDormant : cim::kUnknown;
}

/// What stands before the faults in the status list of a switch.
StatusList switchCondition(unsigned short primary, const StatusList &faults) {
    const auto occurrences = [&faults](unsigned short fault) {
        return std::count(faults.begin(), faults.end(), fault);
    };
    if (primary == cim::kInService || faults.empty())
        return {primary};
    if (occurrences(cim::kSelfTestFault) != 0)
        return {cim::kError}; // a switch that failed its self test is in error, whatever it says of itself
    StatusList condition;
    for (auto i = occurrences(cim::kProcessorFault); i > 0; --i) {
        condition.push_back(primary);
        condition.push_back(cim::kPredictiveFailure);
    }
    if (condition.empty())
        condition.push_back(primary);
    return condition;
}

} // namespace

unsigned short DataCache::_smlConvToHardwareStatus(const char *text) const {
    return translate(kHardwareStates, viewOf(text));
}

unsigned short DataCache::smlHWTypeToCIMHWType(const std::string &type) const {
    return translate(kHardwareTypes, type);
}

unsigned short DataCache::smlTypeToCIMType(const std::string &type) const {
    return translate(kPortTypes, type);
}

StatusList DataCache::smlPortStateToCIMOperationalStatus(const std::string &state,
                                                         const std::string &otherState) const {
    return {portStatus(state, otherState)};
}

StatusList DataCache::smlIOBladeStateToCIMOperationalStatus(const std::string &state, const std::string &otherState,
                                                            const std::string &health) const {
    StatusList status{bladeHealth(state, otherState, health)};
    const unsigned short transition = bladeTransition(state, otherState);
    if (transition != 0)
        status.push_back(transition);
    return status;
}

StatusList DataCache::smlSwitchStateToCIMOperationalStatus(const char *state, const StatusList &faults) const {
    StatusList status = switchCondition(translate(kSwitchStates, viewOf(state)), faults);
    status.insert(status.end(), faults.begin(), faults.end());
    return status;
}
