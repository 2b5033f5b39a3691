#include "sim/model/Accounts.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/Record.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

constexpr size_t kLongestName = 64; // with the key that asks for its successor, it fits a message

unsigned accountCount(const Switch &device) {
    return static_cast<unsigned>(device.accounts.size());
}

std::string accountOrNone(const Switch &device, Index at) {
    return at.first < accountCount(device) ? device.accounts[at.first] : std::string();
}

Status accountOrEnd(const Switch &device, Index at) {
    return at.first < accountCount(device) ? kOk : kEndOfList;
}

std::string readNext(const Switch &device, Index at) {
    return accountOrNone(device, {at.first + 1});
}

Status nextStatus(const Switch &device, Index at) {
    return accountOrEnd(device, {at.first + 1});
}

std::optional<unsigned> placeOf(const Switch &device, unsigned, std::string_view name) {
    const auto account = std::find(device.accounts.begin(), device.accounts.end(), name);
    return static_cast<unsigned>(account - device.accounts.begin());
}

constexpr Axis kAccounts = {[](const Switch &device, unsigned) { return accountCount(device); }, nullptr, placeOf,
                            [](const Switch &device, unsigned, unsigned place) { return device.accounts[place]; }};

constexpr Row kRows[] = {
    {"Oper.Switch.FirstPotentialUser", Access::readOnly, &kDerivedRule, 0, accountOrNone, nullptr, nullptr,
     Source::none, accountOrEnd},
    {"Oper.Switch.NextPotentialUser.%s", Access::readOnly, &kDerivedRule, 0, readNext, nullptr, &kAccounts,
     Source::none, nextStatus},
};

bool isName(const std::string &name) {
    return !name.empty() && name.size() <= kLongestName && isPrinting(name) && name.find(' ') == std::string::npos;
}

Announcements changeOf(const std::string &name, const char *change) {
    return {{ZOV_EVENT_USER_ACL_CHANGE, {0, 0, 0}, "account " + name + " " + change}};
}

} // namespace

Rows accountsRows() {
    return {kRows, std::size(kRows)};
}

Announcements addAccount(Switch &device, const std::string &name) {
    if (!isName(name))
        throw std::invalid_argument("'" + escaped(name) +
                                    "' is no account name; allowed: 1 to 64 printing characters without blanks");
    if (std::find(device.accounts.begin(), device.accounts.end(), name) != device.accounts.end())
        throw std::invalid_argument("there is an account '" + name + "' already");
    device.accounts.push_back(name);
    return changeOf(name, "added");
}

Announcements removeAccount(Switch &device, const std::string &name) {
    const auto account = std::find(device.accounts.begin(), device.accounts.end(), name);
    if (account == device.accounts.end())
        throw std::invalid_argument("there is no account '" + escaped(name) + "'");
    device.accounts.erase(account);
    return changeOf(name, "removed");
}

} // namespace sim
