/*
 * A batch of SML reads over the shared entries.
 *
 * All refresh routines fill the same 64 statically allocated entries: the EVAL thread's small stack has no room for
 * them, and only one routine runs at a time, under the cache's lock. Starting a batch clears nothing: an entry holds
 * its last value until a read fills it anew.
 */
#ifndef DATACACHE_SMLENTRIES_H
#define DATACACHE_SMLENTRIES_H

#include <cstring>

#include "common/numbers.h"
#include "platform/zovlib.h"

/// What the switch answered for one key.
class SmlEntry {
public:
    explicit SmlEntry(const SmlMessage &message) : _message(message) {}

    const char *text() const { return _message.value; }
    bool is(const char *value) const { return std::strcmp(text(), value) == 0; }
    bool contains(const char *part) const { return std::strstr(text(), part) != nullptr; }
    int32_t status() const { return _message.status; }
    bool failed() const { return status() != 0; }
    unsigned short decimal() const { return numbers::decimal16(text()); }

private:
    const SmlMessage &_message;
};

class SmlEntries {
public:
    static constexpr int kCapacity = 64;

    /// Starts an empty batch.
    SmlEntries() = default;
    SmlEntries(const SmlEntries &) = delete;
    SmlEntries &operator=(const SmlEntries &) = delete;

    /// Adds a key, cut to 255 characters; its row. A full batch takes no more.
    int add(const char *format, ...) __attribute__((format(printf, 2, 3)));

    /// Keys that still fit.
    int room() const { return kCapacity - _count; }

    /// Reads all keys in one exchange; false when the exchange or any key failed, which the access layer logs.
    bool get(zov_handle_t handle);
    /// The same, but keys may fail: false only when the exchange did.
    bool read(zov_handle_t handle);

    /// Whether the answer to any key was a failure; the access layer logs the first.
    bool hasErrors() const;

    /// The answer in a row that add() gave.
    SmlEntry operator[](int row) const;

private:
    int _count = 0;
};

#endif // DATACACHE_SMLENTRIES_H
