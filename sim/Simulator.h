/*
 * The control side of the simulated switch.
 *
 * libzovlib.so is a switch in software behind platform/zovlib.h. A program that uses only that
 * interface gets a healthy 24-port switch, made at the first connection. A test, or the tool, that
 * wants to steer the switch makes a Simulator of its own first: new connections to "localhost" then
 * reach the Simulator made last. Destroying it is switching the switch off: connections to it stay
 * dead, calls on them fail, no notification is under way when the destructor returns. To reset a
 * switch, destroy it and make a new one. Several may live side by side.
 *
 * Thread-safety: every operation may be called from any thread, also from a notification callback
 * (but for waitUntilQuiet() and the destructor, which wait for running callbacks).
 *
 * Errors: an operation given a key the switch does not know, a value the attribute cannot take or an
 * index that does not exist throws std::invalid_argument saying what is allowed, and changes nothing.
 *
 * A program that may also run against a real switch library looks zovsim_create up at run time, and
 * works without it when it is not there; the interface is therefore abstract.
 */
#ifndef SIM_SIMULATOR_H
#define SIM_SIMULATOR_H

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/zovlib.h"

namespace sim {

/// Whether a change on the switch is announced by the notification that belongs to it.
enum class Notify { yes, no };

/// One key of a recorded call, as it was when the call returned.
struct Exchange {
    std::string key;
    std::string value;
    int32_t status = 0;
};

/// One call or one notification, as the recorder saw it.
struct Record {
    uint32_t client = 0;   ///< the connection; 0 for calls without one
    std::string call;      ///< "zov_smlGetBatch", ..., or "notification"
    std::string arguments; ///< the arguments of calls that are not about keys, ready to read
    std::vector<Exchange> exchanges;
    int32_t result = 0;

    /// The whole record as one line of text, without a newline:
    ///
    ///     zov_IPConnect(1, "localhost", "cim", "") = 0
    ///     zov_smlGetBatch(1) = 0: Oper.Switch.WWN="100000C0DD00A1B2", Oper.X="" status 5
    ///     zov_ZoneCreate("oak") = 7
    ///     notification(1, 33 [0:0:0] "Oper.Chassis.0.Fan.1 is now Bad")
    ///
    /// The connection comes first, unless there is none; a status only if it is not 0. Zoning objects are
    /// numbers, "#7" as arguments; a call that returns one has its number as the result, 0 for null.
    std::string line() const;
};

/// A text on one line: quotes and backslashes get a backslash, and bytes that do not print become \x and
/// two hexadecimal digits.
inline std::string escaped(const std::string &text) {
    constexpr const char *digits = "0123456789abcdef";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte > 0x7E)
            out.append("\\x").append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
        else if (c == '"' || c == '\\')
            out.append(1, '\\').append(1, c);
        else
            out.append(1, c);
    }
    return out;
}

inline std::string quoted(const std::string &text) {
    return '"' + escaped(text) + '"';
}

inline std::string Record::line() const {
    std::string out = call + "(";
    if (client != 0)
        out += std::to_string(client);
    if (client != 0 && !arguments.empty())
        out += ", ";
    out += arguments + ")";
    if (call != "notification")
        out += " = " + std::to_string(result);
    const char *separator = ": ";
    for (const Exchange &exchange : exchanges) {
        out += separator + escaped(exchange.key) + "=" + quoted(exchange.value);
        if (exchange.status != 0)
            out += " status " + std::to_string(exchange.status);
        separator = ", ";
    }
    return out;
}

/// A rule of misbehaviour. It looks at every call made after it was added; the calls it applies to are
/// those that match `call` and `key`, but for the first `skip` of them, `times` in all.
///
/// Several rules: the first one that applies wins. Rules with a status or a value win key by key, so that
/// several of them may share the keys of one batch; any other rule wins the whole call, unless an earlier
/// rule has won some of it. A rule that did not win is not used up.
///
/// The keys of zov_enRegisterForEventList are its codes in decimal. Calls without a connection are seen by
/// the rules of the switch made last.
struct Fault {
    /// Name of the zov_ function; empty: every call.
    std::string call;
    /// Key pattern, '*' standing for any text; empty: calls match without regard to keys.
    std::string key;
    /// So many matches are left alone first,
    unsigned skip = 0;
    /// to so many it then applies; -1: to all.
    int times = 1;
    /// The call as a whole fails with this and does nothing, its out arguments untouched. A call that returns
    /// a handle returns null, one that returns a count returns this as the count.
    std::optional<int32_t> result;
    /// Matching keys (all keys, with an empty pattern) answer this status instead of being served.
    std::optional<int32_t> status;
    /// Matching keys answer these bytes when they are read, at most 256; 256 bytes come without a terminator.
    std::optional<std::string> value;
    /// The call reports success and hands out no handle.
    bool nullHandle = false;
    /// The call takes this much longer.
    std::chrono::milliseconds delay{0};
};

/// Admin mode's holder when it is a management client that is not one of the connections.
constexpr uint32_t kOtherClient = 0xFFFFFFFF;

/// A simulated switch.
class Simulator {
public:
    Simulator() = default;
    Simulator(const Simulator &) = delete;
    Simulator &operator=(const Simulator &) = delete;
    virtual ~Simulator() = default;

    // ---- the switch's state, by the key under which clients read it ----------------------------------

    /// Sets an attribute as the switch itself would change it: no admin mode is needed, and state that
    /// clients can only read can be set too. With Notify::yes the notification that belongs to the
    /// attribute goes out, if there is one and the value really changed.
    virtual void set(const std::string &key, const std::string &value, Notify notify = Notify::yes) = 0;
    /// The present value of an attribute.
    virtual std::string get(const std::string &key) const = 0;
    /// Every attribute the switch has, in the order of the tree.
    virtual std::vector<std::string> keys() const = 0;

    // ---- notifications -------------------------------------------------------------------------------

    /// Sends a notification to every client that registered for notifications, whether or not it
    /// registered for this code.
    virtual void deliver(const zov_event_s &event) = 0;
    /// The same from its parts; a text of more than 1395 characters is cut.
    virtual void deliver(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) = 0;
    /// Waits until every notification sent so far has been taken by its callbacks; false if that took
    /// longer than `limit`. Not to be called while holding what a callback waits for.
    virtual bool waitUntilQuiet(std::chrono::milliseconds limit = std::chrono::seconds(10)) = 0;

    // ---- misbehaviour --------------------------------------------------------------------------------

    /// Adds a rule; the number it returns takes it away again. Earlier rules win.
    virtual int addFault(const Fault &fault) = 0;
    virtual void removeFault(int number) = 0;
    virtual void clearFaults() = 0;

    // ---- recorder ------------------------------------------------------------------------------------

    /// Everything recorded since construction or the last clearRecords(), in order.
    virtual std::vector<Record> records() const = 0;
    virtual void clearRecords() = 0;

    // ---- who is on the switch ------------------------------------------------------------------------

    /// The connection that holds admin mode, 0 for none, kOtherClient for another management client.
    virtual uint32_t adminModeHolder() const = 0;
    /// Lets another management client take admin mode (true) or give it back (false). It takes it even from a
    /// connection that holds it, as an operator at the console can; what was being edited there is forgotten.
    virtual void holdAdminModeElsewhere(bool hold) = 0;
    /// The number of connections made since construction.
    virtual unsigned connectionCount() const = 0;
};

/// Number of the interface above; it changes whenever a member is added, removed or changed.
constexpr int kInterfaceVersion = 1;

} // namespace sim

/// Makes a switch from a named profile ("fixed-24": a healthy 24-port switch with two power supplies and
/// three fans). `version` is kInterfaceVersion as the caller was compiled with; null if it is not this
/// library's. Throws std::invalid_argument for an unknown profile. The caller owns the result.
extern "C" __attribute__((visibility("default"))) sim::Simulator *zovsim_create(const char *profile, int version);

namespace sim {

/// The switch as tests and other programs linked with this library make it.
inline std::unique_ptr<Simulator> create(const char *profile = "fixed-24") {
    return std::unique_ptr<Simulator>(zovsim_create(profile, kInterfaceVersion));
}

} // namespace sim

#endif // SIM_SIMULATOR_H
