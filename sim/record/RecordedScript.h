/*
 * A recording as a script: calls are answered as they were when it was made, and its notifications go out at their place.
 *
 * Connections are told apart by the order in which they were made, and each has its own story: the calls made on it and
 * the notifications it got. A call that is next in the story is answered by its record. Any other is a deviation, which is
 * reported with both lines. It is answered by its record when that is one of the next few, and the story goes on behind
 * that; otherwise key by key by what was answered next to the key, by the last answer again when there is no other, and by
 * a status of its own when there never was one; the story then waits where it is.
 *
 * A notification goes out when the call before it in the story has been answered, and has reached its callback before the
 * next call is. The clock goes on to the next call as soon as there is nothing more to tell before it.
 *
 * Calls without a connection, those about zoning objects, are the client's own work and are not compared.
 *
 * Thread-safe.
 */
#ifndef SIM_RECORD_RECORDEDSCRIPT_H
#define SIM_RECORD_RECORDEDSCRIPT_H

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sim/core/Script.h"
#include "sim/record/Answers.h"
#include "sim/record/Recording.h"

namespace sim {

class RecordedScript final : public Script {
public:
    using Listener = std::function<void(const std::string &)>;

    /// Throws std::invalid_argument, "FILE:LINE: what", for a record that says what no switch library answers.
    explicit RecordedScript(Recording recording);

    Verdict answer(Endpoint &endpoint, const Call &call) override;
    void connected(zov_handle_t connection) override;
    void answered(Endpoint &endpoint, zov_handle_t client) override;

    /// Everything that was found so far: lines that were passed over, deviations, and the end of the recording.
    std::vector<std::string> reports() const;
    unsigned deviations() const;
    bool isOver() const;
    /// Told of every report from now on, on the thread of the call and with no lock held.
    void listen(Listener listener);

    /// When the first call was made.
    std::chrono::milliseconds beginning() const;

private:
    struct Step {
        size_t place = 0;            ///< in the recording
        bool isNotification = false; ///< else a call
        ExpectedCall call;
        zov_event_s event = {};
    };
    struct Story {
        uint32_t recordedAs = 0;   ///< the number of the connection
        bool hasBeginning = false; ///< zov_IPConnect() itself was recorded
        std::vector<Step> steps;
        size_t next = 0;
        Answers answers;
        std::vector<zov_event_s> due; ///< notifications that are to go out now
    };
    /// A zov_IPConnect(): the story of its connection, if it made one.
    struct Connecting {
        size_t place;
        Story *story;
        bool isRecorded; ///< else the recording began after it
    };

    void addLine(size_t place, std::map<uint32_t, Story *> &current);
    Story &newStory(uint32_t client, size_t place, bool hasBeginning);
    Verdict answerConnect(const Call &call);
    Verdict answerInStory(Story &story, const Call &call);
    Verdict consume(Story &story, size_t step);
    void deviate(const std::string &place, const std::string &recorded, const Record &called);
    void takeDue(Story &story);
    std::chrono::milliseconds nextTime() const;
    bool isAtEnd() const;
    void report(const std::string &text);
    void tell();

    Recording _recording;
    std::vector<std::unique_ptr<Story>> _stories;
    std::vector<Connecting> _connects;

    mutable std::mutex _mutex;
    size_t _nextConnect = 0;
    std::map<std::thread::id, Story *> _connecting; ///< on which thread a connection is being made, and for what story
    std::map<zov_handle_t, Story *> _byHandle;
    std::chrono::milliseconds _time{0}; ///< of what was answered last
    std::vector<std::string> _reports;
    size_t _told = 0; ///< of the reports
    unsigned _deviations = 0;
    bool _over = false;
    Listener _listener;
};

} // namespace sim

#endif // SIM_RECORD_RECORDEDSCRIPT_H
