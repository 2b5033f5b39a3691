/*
 * What is to be made of the findings about the cache, and of the log files.
 *
 * diagnose() is a pure function. Errors: none; what cannot be checked is a finding itself.
 */
#ifndef TOOLS_DCACHE_DOCTOR_DIAGNOSIS_H
#define TOOLS_DCACHE_DOCTOR_DIAGNOSIS_H

#include <string>
#include <vector>

#include "tools/dcache/commands/commands.h"
#include "tools/dcache/doctor/examination.h"

namespace dcache {

struct LogFile {
    std::string path;
    std::string problem; ///< why it cannot be written; empty when it can
};

/// Opens the file as the cache's log does, but for emptying it; so it is there afterwards if it can be.
LogFile examineLog(const std::string &path);

/// `seconds` is how long the findings were waited for at most.
Diagnosis diagnose(const Findings &findings, const std::vector<LogFile> &logs, double seconds, bool isSimulatedSwitch);

} // namespace dcache

#endif // TOOLS_DCACHE_DOCTOR_DIAGNOSIS_H
