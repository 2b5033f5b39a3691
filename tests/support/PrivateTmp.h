/*
 * A /tmp of this process's own, so that the log files of tests that run at the same time do not meet.
 */
#ifndef TESTS_SUPPORT_PRIVATETMP_H
#define TESTS_SUPPORT_PRIVATETMP_H

namespace support {

/// Gives this process, and the children it will have, an empty /tmp. What was there is out of sight, but for the folders
/// that this program and its working directory lie in. Call it while the process has one thread. Throws
/// std::system_error when the system does not allow it.
void enterPrivateTmp();

} // namespace support

#endif // TESTS_SUPPORT_PRIVATETMP_H
