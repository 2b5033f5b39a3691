/*
 * Reading the line of a record back. Pure functions.
 */
#ifndef SIM_RECORD_RECORDLINE_H
#define SIM_RECORD_RECORDLINE_H

#include <string>
#include <string_view>

#include "sim/Record.h"

namespace sim {

/// The record that Record::line() made this line of, but for its time. Throws std::invalid_argument saying what is
/// wrong, for a line that it cannot have made.
Record parseRecord(const std::string &line);

/// Whether there are records of this kind: of a call of the switch library, or of a notification.
bool isKindOfRecord(std::string_view call);

} // namespace sim

#endif // SIM_RECORD_RECORDLINE_H
