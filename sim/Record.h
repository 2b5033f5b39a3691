/*
 * What the simulated switch records: calls and notifications, a line of text each.
 *
 * Plain data and pure functions. Part of the control interface, sim/Simulator.h.
 */
#ifndef SIM_RECORD_H
#define SIM_RECORD_H

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace sim {

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
    std::string handedOut; ///< what a call about the zoning database handed out, ready to read
    /// When the call came in, or the notification went out, by the switch's clock. No part of the line.
    std::chrono::milliseconds time{0};

    /// The whole record as one line of text, without a newline:
    ///
    ///     zov_IPConnect(1, "localhost", "cim", "") = 0
    ///     zov_smlGetBatch(1) = 0: Oper.Switch.WWN="100000C0DD00A1B2", Oper.X="" status 5
    ///     zov_ZoneCreate("oak") = 7
    ///     zov_fzsGetZonesetList(1) = 0 -> "north", "south"
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
    if (!handedOut.empty())
        out += " -> " + handedOut;
    return out;
}

} // namespace sim

#endif // SIM_RECORD_H
