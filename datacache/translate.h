/*
 * Names for the CIM values that the cache computes and looks at. Internal.
 */
#ifndef DATACACHE_TRANSLATE_H
#define DATACACHE_TRANSLATE_H

namespace cim {

// Values of the CIM property OperationalStatus.
constexpr unsigned short kUnknown = 0;
constexpr unsigned short kOk = 2;
constexpr unsigned short kDegraded = 3;
constexpr unsigned short kPredictiveFailure = 5;
constexpr unsigned short kError = 6;
constexpr unsigned short kStarting = 8;
constexpr unsigned short kStopping = 9;
constexpr unsigned short kStopped = 10;
constexpr unsigned short kInService = 11;
constexpr unsigned short kDormant = 15;

// Elements of the fault vector; they also end up in status lists.
constexpr unsigned short kNoFault = 0;
constexpr unsigned short kSelfTestFault = 32768; ///< a power-on self test of the firmware failed
constexpr unsigned short kProcessorFault =
    32769; ///< the management processor could not be reached, or its data are wrong

// States of power supplies and fans.
constexpr unsigned short kUnknownHardware = 0;
constexpr unsigned short kGood = 1;
constexpr unsigned short kBad = 2;
constexpr unsigned short kNotInstalled = 3;

// CIM port types that are treated in a way of their own.
constexpr unsigned short kDonorPort = 16000;       ///< lends its buffers to other ports and is none itself
constexpr unsigned short kPassthroughPort = 16004; ///< passes through to a blade

} // namespace cim

#endif // DATACACHE_TRANSLATE_H
