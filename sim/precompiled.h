/*
 * What most files of the simulated switch include. It is compiled once for all of them; a file still includes what it
 * uses.
 */
#ifndef SIM_PRECOMPILED_H
#define SIM_PRECOMPILED_H

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "sim/Simulator.h"

#endif // SIM_PRECOMPILED_H
