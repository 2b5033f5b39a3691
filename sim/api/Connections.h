/*
 * The connections of this process's clients, by the numbers they know them by. No number is given twice.
 *
 * There is one table, and it is never destroyed: threads may call into the switch library while the process ends.
 *
 * Thread-safe.
 */
#ifndef SIM_API_CONNECTIONS_H
#define SIM_API_CONNECTIONS_H

#include <map>
#include <memory>
#include <mutex>

#include "sim/core/Connection.h"

namespace sim {

class Connections {
public:
    static Connections &instance();

    /// A connection under the number of its switch, which is one of this process.
    void add(zov_handle_t number, const std::shared_ptr<Connection> &connection);
    /// A connection to a switch elsewhere, which gave it a number: its number here too, unless that is another's.
    zov_handle_t adopt(zov_handle_t number, const std::shared_ptr<Connection> &connection);
    /// Null for a number that is no connection.
    std::shared_ptr<Connection> find(zov_handle_t number) const;

private:
    Connections() = default;

    mutable std::mutex _mutex;
    std::map<zov_handle_t, std::shared_ptr<Connection>> _all;
};

} // namespace sim

#endif // SIM_API_CONNECTIONS_H
