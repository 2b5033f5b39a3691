/*
 * Zoning for tests: a description of a small database, and ways to have it in the switch and in the cache.
 */
#ifndef TESTS_TOOLS_ZONING_SAMPLES_H
#define TESTS_TOOLS_ZONING_SAMPLES_H

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "sim/Simulator.h"
#include "tools/dcache/cache.h"
#include "tools/dcache/zoning/otherclient.h"

namespace support {

/// The order is the one in which a dump has things.
inline const std::string kZoning = "create alias tape\n"
                                   "add alias-member tape 50:06:01:60:3B:A0:11:22\n"
                                   "create zone db acl\n"
                                   "add member db 10:00:00:00:C9:2B:44:01\n"
                                   "add member db 1:7\n"
                                   "add member db 010A00\n"
                                   "add member db alias tape\n"
                                   "create zone mail soft\n"
                                   "add member mail 10:00:00:00:C9:2B:44:02\n"
                                   "create zone old vpf\n"
                                   "create set day\n"
                                   "add zone day db\n"
                                   "add zone day mail\n"
                                   "create set night\n"
                                   "add zone night db\n"
                                   "commit\n";

/// The zoning above, "day" being active.
inline const std::string kActiveZoning = kZoning + "activate day\n";

/// A switch with this zoning, in the cache.
class ZonedSwitch {
public:
    explicit ZonedSwitch(const std::string &zoning = kActiveZoning) {
        dcache::giveZoning(*_switch, zoning);
        dcache::loadOnce(DataCacheArea::zoning);
    }

    sim::Simulator &operator*() { return *_switch; }
    sim::Simulator *operator->() { return _switch.get(); }

private:
    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

/// A file that is gone with this.
class TextFile {
public:
    explicit TextFile(const std::string &text) {
        const int descriptor = mkstemp(_name.data());
        if (descriptor < 0)
            throw std::runtime_error("no file");
        close(descriptor);
        std::ofstream(_name) << text;
    }
    ~TextFile() { unlink(_name.c_str()); }
    TextFile(const TextFile &) = delete;
    TextFile &operator=(const TextFile &) = delete;

    const std::string &name() const { return _name; }

private:
    std::string _name = "/tmp/zoning-" + std::string(6, 'X');
};

} // namespace support

#endif // TESTS_TOOLS_ZONING_SAMPLES_H
