#include "sim/model/Accounts.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

constexpr size_t kLongestName = 64; // with the key that asks for its successor, it fits a message

unsigned accountCount(const Switch &device) {
    return static_cast<unsigned>(device.accounts.size());
}

std::string nameOf(const Switch &device, unsigned index) {
    return device.accounts[index];
}

std::string accountOrNone(const Switch &device, unsigned index) {
    return index < accountCount(device) ? device.accounts[index] : std::string();
}

Status accountOrEnd(const Switch &device, unsigned index) {
    return index < accountCount(device) ? kOk : kEndOfList;
}

std::string readNext(const Switch &device, unsigned index) {
    return accountOrNone(device, index + 1);
}

Status nextStatus(const Switch &device, unsigned index) {
    return accountOrEnd(device, index + 1);
}

constexpr Row kRows[] = {
    {"Oper.Switch.FirstPotentialUser", Access::readOnly, &kDerivedRule, 0, accountOrNone, nullptr, nullptr,
     Source::none, accountOrEnd},
    {"Oper.Switch.NextPotentialUser.%s", Access::readOnly, &kDerivedRule, 0, readNext, nullptr, accountCount,
     Source::none, nextStatus, nameOf},
};

bool isName(const std::string &name) {
    return !name.empty() && name.size() <= kLongestName && isPrinting(name) && name.find(' ') == std::string::npos;
}

Announcement changeOf(const std::string &name, const char *change) {
    return {ZOV_EVENT_USER_ACL_CHANGE, {0, 0, 0}, "account " + name + " " + change};
}

} // namespace

Rows accountsRows() {
    return {kRows, std::size(kRows)};
}

Announcement addAccount(Switch &device, const std::string &name) {
    if (!isName(name))
        throw std::invalid_argument("'" + name +
                                    "' is no account name; allowed: 1 to 64 printing characters without blanks");
    if (std::find(device.accounts.begin(), device.accounts.end(), name) != device.accounts.end())
        throw std::invalid_argument("there is an account '" + name + "' already");
    device.accounts.push_back(name);
    return changeOf(name, "added");
}

Announcement removeAccount(Switch &device, const std::string &name) {
    const auto account = std::find(device.accounts.begin(), device.accounts.end(), name);
    if (account == device.accounts.end())
        throw std::invalid_argument("there is no account '" + name + "'");
    device.accounts.erase(account);
    return changeOf(name, "removed");
}

} // namespace sim
