#include "tools/dcache/commands/commands.h"
#include "tools/dcache/doctor/diagnosis.h"
#include "tools/dcache/simulator.h"

namespace dcache {

Diagnosis examine(std::chrono::duration<double> patience) {
    const Findings findings = examineCache(patience);
    // The logs come last: by then the cache has had occasion to make them itself.
    return diagnose(findings, {examineLog("/tmp/cim.out"), examineLog("/tmp/cim.crit.out")}, patience.count(),
                    isSimulated());
}

} // namespace dcache
