/*
 * The cache started and watched from outside, so that a switch that does not answer holds up nobody.
 *
 * Errors: none; what could not be found out is missing from the findings.
 */
#ifndef TOOLS_DCACHE_DOCTOR_EXAMINATION_H
#define TOOLS_DCACHE_DOCTOR_EXAMINATION_H

#include <array>
#include <chrono>
#include <string>
#include <vector>

#include "datacache/DataCache.h"

namespace dcache {

constexpr size_t kAreaCount = 7; // DataCacheArea

/// What was found out of the cache when it was looked at last.
struct Findings {
    bool isConnected = false;
    bool isStarted = false; ///< registered for notifications, the EVAL thread started; from here on the rest counts
    std::vector<zov_eventreg_s> registrations;
    std::array<bool, kAreaCount> isAreaGood = {};
    bool isReady = false;
    long secondsSinceReadyPass = -1; ///< -1: there was none
    unsigned long passes = 0;
    unsigned long queued = 0;
    std::string lockHolder; ///< of the zoning lock, in this process
};

/// Connects the cache, starts it, and lets it load; an area that fails is given a second try. Returns when nothing is left
/// to wait for, or after `patience`. What is under way then goes on until the process ends. Once per process.
Findings examineCache(std::chrono::duration<double> patience);

} // namespace dcache

#endif // TOOLS_DCACHE_DOCTOR_EXAMINATION_H
