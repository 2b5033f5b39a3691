/*
 * A thread that plays the steps of a scenario on a switch, each when the switch's clock shows its time. The clock may be
 * paused, stepped and made to go at another pace meanwhile, by whomever.
 *
 * While the clock is driven, as fast as possible, time passes from step to step as soon as every client has taken the
 * notifications that came of the last one; a client that does not within kClientLimit is waited for no longer. When all
 * steps have been played, a driven clock goes on in real time, for nobody would drive it any more.
 *
 * Thread-safe, but for the destructor.
 */
#ifndef TOOLS_ZOVSIM_PLAYING_H
#define TOOLS_ZOVSIM_PLAYING_H

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "sim/Simulator.h"
#include "sim/scenario/Player.h"
#include "tools/zovsim/log.h"

namespace zovsim {

/// How long clients may take for what they are told, as fast as possible.
constexpr std::chrono::seconds kClientLimit{10};

struct PlayingOptions {
    // Called on the thread that plays:
    std::function<void()> afterSteps = [] {}; ///< of which some were due
    std::function<void()> nowAndAgain = [] {};
    /// How long a client is waited for.
    std::chrono::milliseconds patience = kClientLimit;
};

class Playing {
public:
    /// Begins. Switch and log must live as long as this.
    Playing(sim::Simulator &device, const sim::Scenario &scenario, Log &log, PlayingOptions options = {});
    Playing(const Playing &) = delete;
    Playing &operator=(const Playing &) = delete;
    /// Ends, with the command that is being carried out.
    ~Playing();

    /// All steps have been played.
    bool isOver() const;

private:
    void run();
    void playOn();
    void waitForClients();
    void rest();
    bool isEnding() const;

    sim::Simulator &_device;
    Log &_log;
    const PlayingOptions _options;
    sim::Player _player;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    bool _ending = false;
    bool _over = false;
    bool _hasLaggard = false; ///< a client has not taken what it was told, and is not waited for
    std::thread _thread;
};

} // namespace zovsim

#endif // TOOLS_ZOVSIM_PLAYING_H
