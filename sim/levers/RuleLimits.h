/*
 * How far the numbers of a rule of misbehaviour go. Constants.
 */
#ifndef SIM_LEVERS_RULELIMITS_H
#define SIM_LEVERS_RULELIMITS_H

#include <chrono>

namespace sim {

/// Of what a rule delays, and of the time until it begins: a year.
constexpr std::chrono::hours kLongestTime{24 * 365};
/// Of one notification.
constexpr unsigned kMostCopies = 10000;
/// Per cent.
constexpr unsigned kCertain = 100;

} // namespace sim

#endif // SIM_LEVERS_RULELIMITS_H
