/*
 * Recordings as tests write them: records, one line each, made into the text of a file, and its replay.
 *
 * Thread-safety: pure functions of what they are given.
 */
#ifndef TESTS_SIM_RECORD_RECORDED_H
#define TESTS_SIM_RECORD_RECORDED_H

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "sim/record/Recording.h"
#include "sim/record/Replay.h"
#include "tests/sim/Client.h"

namespace simtest {

constexpr const char *kFileName = "trouble.rec";

/// The recording of records, all of one moment.
inline std::string recordingOf(const std::vector<std::string> &records, const std::string &time = "3600000") {
    std::string text = "zovlib recording, format 1\n";
    for (const std::string &record : records)
        text.append(time).append(" ").append(record).append("\n");
    return text;
}

/// The recording of what a switch recorded.
inline std::string recordingOf(const sim::Simulator &device) {
    std::string text = "zovlib recording, format 1\n";
    for (const sim::Record &record : device.records())
        text += sim::recordingLine(record) + "\n";
    return text;
}

inline std::unique_ptr<sim::Replay> replayOf(const std::vector<std::string> &records) {
    return sim::makeReplay(recordingOf(records), kFileName);
}

/// The lines of a switch's records with the numbers that differ from run to run left out: those of connections and of
/// zoning objects.
inline std::vector<std::string> numberlessLinesOf(const sim::Simulator &device) {
    std::vector<std::string> lines;
    for (sim::Record record : device.records()) {
        if (record.client != 0)
            record.client = 1;
        record.arguments = std::regex_replace(record.arguments, std::regex("#[0-9]+"), "#");
        if (record.call.find("Create") != std::string::npos || record.call.find("List") != std::string::npos)
            record.result = record.result != 0;
        lines.push_back(record.line());
    }
    return lines;
}

constexpr const char *kConnect = "zov_IPConnect(1, \"localhost\", \"test\", \"\") = 0";
constexpr const char *kRegister = "zov_enRegisterForEventList(1, 33, 7) = 0";

} // namespace simtest

#endif // TESTS_SIM_RECORD_RECORDED_H
