/*
 * What a switch tells its clients when something was done to it. Plain data.
 */
#ifndef SIM_MODEL_ANNOUNCEMENT_H
#define SIM_MODEL_ANNOUNCEMENT_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace sim {

struct Announcement {
    int32_t code;
    std::array<int32_t, 3> source;
    std::string text;
};

/// In the order in which they are sent.
using Announcements = std::vector<Announcement>;

} // namespace sim

#endif // SIM_MODEL_ANNOUNCEMENT_H
