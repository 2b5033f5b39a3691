/*
 * The diagnostic log: one process-wide facility that appends time-stamped lines to two text files.
 *
 *   /tmp/cim.out       every line; moved to /tmp/cim.out.1 (newest) ... .5 (oldest) by the line after the 1000th, which
 *                      is the first of the new file; from then on by every 1001st line
 *   /tmp/cim.crit.out  the critical lines since the last rotation; emptied by every rotation
 *
 * Both are emptied when a process logs its first line, and are created with mode 0666 whatever the process umask is.
 * A line is "month/day hour:minute:second.milliseconds pid/tid " followed by the caller's message. Nothing is
 * added after the message: end the format in "\n". A line longer than 2055 bytes is cut there and then
 * has no newline.
 *
 * Thread-safety: any thread may call at any time, but not from a signal handler. Lines never interleave and stand
 * in the files in the order of their time stamps. A line has left the process when the call returns.
 *
 * Errors: the caller is told of none; a line that cannot be written is lost. A file that programs started by this
 * process would inherit is told to the system log. errno stays as the caller had it.
 *
 * Serves C and C++.
 */
#ifndef FOUNDATION_CIM_LOG_H
#define FOUNDATION_CIM_LOG_H

#include "foundation/Export.h"

/* Levels are bits. A level whose low four bits are all zero logs nothing; one with bit value 4 goes to the
   critical file as well; higher bits are ignored. */
#define CIM_LOG_INFO 2u   /* what the cache does */
#define CIM_LOG_CRIT 4u   /* failures */
#define CIM_LOG_CLIENT 8u /* the embedding client's own lines */

#ifdef __cplusplus
extern "C" {
#endif

/* Logs one line at `level`. A null format logs an empty message. */
DATACACHE_EXPORT void cim_log(unsigned int level, const char *format, ...) __attribute__((format(printf, 2, 3)));

/* Logs one line of the embedding client, at CIM_LOG_CLIENT. */
DATACACHE_EXPORT void DataCacheLogger(const char *format, ...) __attribute__((format(printf, 1, 2)));

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* FOUNDATION_CIM_LOG_H */
