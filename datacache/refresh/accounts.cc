#include <algorithm>
#include <utility>

#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"

namespace {

constexpr int32_t kEndOfList = 24;

// A chain that leads back into itself would never end.
constexpr std::size_t kMostAccounts = 65536;

} // namespace

bool DataCache::_getAcctInfo() {
    cim_log(CIM_LOG_INFO, "DCACHE: _getAcctInfo()\n");
    _oldUsers = _users;
    const auto failed = [this](int line) {
        _users = _oldUsers;
        return refreshFailed("_getAcctInfo", line);
    };
    _users.clear();
    int32_t end = 0;
    if (!_walkAccounts(end))
        return failed(1923);
    if (end != kEndOfList)
        return failed(1940);
    // A list that was empty fills silently: after start-up every account would be news.
    if (!_oldUsers.empty())
        _tellAccountChanges();
    return true;
}

/// Follows the chain of account names to its end and tells the status that ended it; false when the switch did not
/// answer.
bool DataCache::_walkAccounts(int32_t &end) {
    std::string key = "Oper.Switch.FirstPotentialUser";
    for (;;) {
        SmlEntries entries;
        const int row = entries.add("%s", key.c_str());
        if (!entries.read(_hSwitch))
            return false;
        end = entries[row].status();
        if (end != 0 || _users.size() == kMostAccounts)
            return true;
        _users.emplace_back(entries[row].text());
        key = "Oper.Switch.NextPotentialUser." + _users.back();
    }
}

/// What is left of the old names after taking each new name out once is gone. All of it is known before the client hears
/// of any: a callback that refreshes the accounts changes both lists.
void DataCache::_tellAccountChanges() {
    std::vector<std::string> come;
    for (const std::string &name : _users) {
        const auto known = std::find(_oldUsers.begin(), _oldUsers.end(), name);
        if (known != _oldUsers.end())
            _oldUsers.erase(known);
        else
            come.push_back(name);
    }
    const std::vector<std::string> gone = _oldUsers;
    const Wwn theSwitch = getRootSwitchWorldWideName();
    for (const std::string &name : come)
        _deliver(DCEventUserAcctAdd(theSwitch, name));
    for (const std::string &name : gone)
        _deliver(DCEventUserAcctRemove(theSwitch, name));
}
