/*
 * A scenario being played: the switch that it describes, and what happens to it as time passes.
 *
 * For programs that look zovsim_play up at run time and do without it when the switch library is a real one; the
 * interface is therefore abstract. Those that are linked with the simulated switch may as well use its parts,
 * sim/scenario/Scenario.h and sim/scenario/Player.h.
 *
 * The play lets no time pass: that is for whoever has it, with the switch's clock (Simulator::setPace()). The scenario
 * begins when it is made.
 *
 * For one thread at a time, but for device(), which is as thread-safe as a Simulator. Destroying it switches the switch off.
 */
#ifndef SIM_PLAY_H
#define SIM_PLAY_H

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "sim/scenario/Player.h"

namespace sim {

class Play {
public:
    Play() = default;
    Play(const Play &) = delete;
    Play &operator=(const Play &) = delete;
    virtual ~Play() = default;

    /// The switch. It is there as long as the play.
    virtual Simulator &device() = 0;
    /// The name of the file that the scenario came from, or of the shipped scenario.
    virtual std::string name() const = 0;
    /// The uptime of the switch at which the next step is due; none when all has been played.
    virtual std::optional<std::chrono::milliseconds> next() const = 0;
    /// What that step is called in the scenario; empty if it has no name there.
    virtual std::string nextName() const = 0;
    /// Carries out that one step if it is due by now, and tells each of its commands; where it has a name, its name comes
    /// first, as the command "step NAME". One that the switch refuses is told like the others, with the reason.
    virtual std::vector<Played> play() = 0;
};

} // namespace sim

/// Makes the switch of a scenario, which connections made from now on reach. `scenario` is the text of a scenario file and
/// `fileName` what mistakes are reported under; with `fileName` null, `scenario` is the name of one that is shipped with
/// the library.
///
/// `version` is sim::kInterfaceVersion as the caller was compiled with; null if it is not this library's. Throws
/// std::invalid_argument with everything that is wrong with the text, a line for each mistake, or with the names there are
/// when it is none of them. The caller owns the result.
extern "C" __attribute__((visibility("default"))) sim::Play *zovsim_play(const char *scenario, const char *fileName,
                                                                         int version);

namespace sim {

/// The play as programs linked with this library make it.
inline std::unique_ptr<Play> playShipped(const char *name) {
    return std::unique_ptr<Play>(zovsim_play(name, nullptr, kInterfaceVersion));
}

} // namespace sim

#endif // SIM_PLAY_H
