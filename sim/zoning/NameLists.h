/*
 * The lists of names that the switch library hands out and keeps. A list is good until the thread that asked for it
 * makes its next call; it is then overwritten, so that a client which keeps it finds nothing of use in it.
 *
 * The process has one object for all lists, and it is never destroyed. Thread-safe.
 */
#ifndef SIM_ZONING_NAMELISTS_H
#define SIM_ZONING_NAMELISTS_H

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sim {

class NameLists {
public:
    static NameLists &instance();

    /// Fields of 65 bytes, one after another; one byte when there are no names.
    char *handOut(const std::vector<std::string> &names);
    /// The calling thread makes a call.
    void expire();

private:
    NameLists() = default;

    std::mutex _mutex;
    std::map<std::thread::id, std::vector<char>> _lists;
};

} // namespace sim

#endif // SIM_ZONING_NAMELISTS_H
