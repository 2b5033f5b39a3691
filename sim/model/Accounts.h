/*
 * The accounts of the switch's users: names, listed as a chain in which each leads to the next. Plain data;
 * guarded by its owner.
 */
#ifndef SIM_MODEL_ACCOUNTS_H
#define SIM_MODEL_ACCOUNTS_H

#include <string>

#include "sim/model/Announcement.h"
#include "sim/tree/Row.h"

namespace sim {

Rows accountsRows();

/// What can be done about accounts; errors as in Simulator.h.
Announcements addAccount(Switch &device, const std::string &name);
Announcements removeAccount(Switch &device, const std::string &name);

} // namespace sim

#endif // SIM_MODEL_ACCOUNTS_H
