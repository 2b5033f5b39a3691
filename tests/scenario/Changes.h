/*
 * Random changes of a simulated switch. What comes next follows from the seed and from the switch's state, and never from
 * who looks on: two switches that begin alike go through the same states with the same seed, with clients or without.
 *
 * One thread at a time; a change in the middle of a pass is made on the thread that runs the pass.
 */
#ifndef TESTS_SCENARIO_CHANGES_H
#define TESTS_SCENARIO_CHANGES_H

#include <functional>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "tests/scenario/Random.h"

namespace scenario {

class Changes {
public:
    /// `tell` hears of every change, in words.
    Changes(sim::Simulator &theSwitch, unsigned seed, std::function<void(const std::string &)> tell);

    /// Tries one change, with its notifications but for once in a while; false when there was nothing to change or the
    /// switch refused it.
    bool make();

    /// Before and after a pass that some client may run. For the time of the pass the switch may misbehave, and something
    /// may change in the middle of it. What the pass did not reach changes at its end.
    void beginPass();
    void endPass();
    /// Whether it is time for a pass.
    bool isPassDue() { return _random.oneIn(20); }

private:
    struct Kind;
    static const std::vector<Kind> kinds;

    std::string setAttribute();
    std::string setName();
    std::string setDomain();
    std::string setPrincipal();
    std::string plugTransceiver();
    std::string pullTransceiver();
    std::string insertBlade();
    std::string removeBlade();
    std::string addAccount();
    std::string removeAccount();
    std::string addPeer();
    std::string removePeer();
    std::string changePeer();
    std::string setPriority();
    std::string connect();
    std::string disconnect();
    std::string flap();
    std::string logIn();
    std::string logOut();
    std::string storm();
    std::string passTime();
    std::string holdAdminMode();

    unsigned number(const char *key) const;
    unsigned anyPort();
    std::string anySwitch();
    unsigned anyPortOf(const std::string &wwn);
    sim::Link anyLink();
    std::string set(const std::string &key, const std::string &value);
    std::string tellLink(const char *what, const sim::Link &link) const;
    void addFault();

    sim::Simulator &_switch;
    Random _random;
    std::function<void(const std::string &)> _tell;
    sim::Notify _notify = sim::Notify::yes;
    unsigned _names = 0;    // that the local switch has had
    unsigned _accounts = 0; // that there have been
    bool _changeDue = false;
};

} // namespace scenario

#endif // TESTS_SCENARIO_CHANGES_H
