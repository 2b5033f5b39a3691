/*
 * The log files, as tests read them.
 */
#ifndef TESTS_SUPPORT_LOG_H
#define TESTS_SUPPORT_LOG_H

#include <string>
#include <vector>

namespace support {

constexpr const char *kMainLog = "/tmp/cim.out";
constexpr const char *kCriticalLog = "/tmp/cim.crit.out";

/// A whole file, empty if there is none.
std::string readFile(const std::string &name);

/// The messages of a log file in order, without time, ids and newline. A line that does not begin as a log line does
/// throws std::runtime_error.
std::vector<std::string> messagesIn(const std::string &name);

/// Messages of the main log. `logMark()` first, then the messages since.
std::size_t logMark();
std::vector<std::string> messagesSince(std::size_t mark);

/// Messages with the first "[line number]" of each as "[#]", for lines whose number is the source's.
std::vector<std::string> numberless(std::vector<std::string> messages);

} // namespace support

#endif // TESTS_SUPPORT_LOG_H
