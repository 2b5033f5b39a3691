/*
 * A recording: what happened on a switch, as a file keeps it. The format, a line each:
 *
 *     zovlib recording, format 1
 *     3600000 zov_IPConnect(1, "localhost", "cim", "") = 0
 *     3601000 notification(1, 33 [0:0:0] "Oper.Chassis.0.Fan.1 is now Bad")
 *     # whatever a reader should know
 *
 * A line is the time of the switch's clock in milliseconds and the record as sim/Record.h shows it. A file that was
 * recorded to again has the first line again, and connections are numbered anew from there.
 *
 * Plain data and pure functions.
 */
#ifndef SIM_RECORD_RECORDING_H
#define SIM_RECORD_RECORDING_H

#include <string>
#include <vector>

#include "sim/Record.h"

namespace sim {

constexpr const char *kRecordingHeader = "zovlib recording, format ";
constexpr unsigned kRecordingFormat = 1;

struct RecordedLine {
    size_t number = 0; ///< in the file, from 1
    unsigned part = 0; ///< how many first lines there were before it, but for one
    Record record;
};

struct Recording {
    std::string name; ///< of the file, for messages
    std::vector<RecordedLine> lines;
    /// Lines that were passed over, as "FILE:LINE: why": records of a kind that is not known, as a later version may make
    /// them, and a last line that was cut.
    std::vector<std::string> passedOver;

    /// "FILE:LINE"
    std::string placeOf(const RecordedLine &line) const { return name + ":" + std::to_string(line.number); }
};

/// Throws std::invalid_argument, "FILE:LINE: what", for a text that is no recording.
Recording readRecording(const std::string &text, const std::string &name);

/// The record as a line of the file, without a newline.
std::string recordingLine(const Record &record);

} // namespace sim

#endif // SIM_RECORD_RECORDING_H
