/*
 * The journal of a watch: one line for each event of the cache and, beside them, what happens on a simulated switch.
 *
 *   table   "12:00:03.121  event   power supply 2 failed, 1 of 2 good", local time
 *   json    one object per line: "time" (UTC, ISO 8601), "kind" ("event", "switch" or "no-event") and "text"; for an
 *           event also "type" (number), "name" and "fields" (an object); "text" of a "no-event" may be empty
 *   terse   the same separated by tabs: time, kind, and for an event its name and each field as key=value, else the text
 *
 * Thread-safety: any thread may write; lines come out whole, in the order of their times.
 * Errors: a line that cannot be written closes the journal and is reported through the function given for that;
 * nothing throws. A closed journal ignores what it is told.
 */
#ifndef TOOLS_DCACHE_JOURNAL_H
#define TOOLS_DCACHE_JOURNAL_H

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tools/dcache/events.h"
#include "tools/dcache/output.h"
#include "tools/dcache/render.h"

namespace dcache {

enum class EntryKind { switchChange, event, noEvent };

struct Entry {
    std::chrono::system_clock::time_point time;
    EntryKind kind = EntryKind::event;
    EventDescription event; ///< of an event; of the others only the words count
};

/// The entry as one line, newline included.
std::string render(const Entry &entry, Format format, bool colour);

class Journal {
public:
    /// `onFailure` gets the error number of a write that failed, at most once.
    Journal(Output &output, Format format, std::function<void(int)> onFailure);

    /// What is told of the switch from now on happens now, although it is known only later: events that it raises
    /// meanwhile wait, and stand behind it.
    void beginSwitchChange();
    void endSwitchChange();

    /// Something happens on the switch.
    void tellSwitchChange(const std::string &words);
    /// The cache delivered an event.
    void tellEvent(const EventDescription &event);
    /// What happened last on the switch has been worked through, and there was no event. `why` may be empty.
    void tellNoEvent(const std::string &why);

    /// Events told so far that tell of a change.
    unsigned long eventCount() const;

    /// Nothing is written any more.
    void close();

private:
    void _tell(EntryKind kind, const EventDescription &event);
    void _write(const Entry &entry);

    mutable std::mutex _mutex;
    Output &_output;
    const Format _format;
    const bool _colour;
    std::function<void(int)> _onFailure;
    unsigned long _events = 0;
    bool _open = true;
    std::optional<std::chrono::system_clock::time_point> _changeSince;
    std::vector<Entry> _waiting; ///< events during the change
};

} // namespace dcache

#endif // TOOLS_DCACHE_JOURNAL_H
