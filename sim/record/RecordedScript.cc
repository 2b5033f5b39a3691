#include "sim/record/RecordedScript.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "sim/Status.h"
#include "sim/core/Endpoint.h"
#include "sim/core/Event.h"
#include "sim/record/Scanner.h"

namespace sim {

namespace {

/// How far ahead a call is looked for that is not the next one.
constexpr size_t kLookAhead = 8;

/// How long a call waits for the notifications before it. They are held up when the callback before them waits for
/// something that the caller holds, and then come too late rather than never.
constexpr std::chrono::seconds kNotificationLimit{1};

/// "33 [0:0:0] "Oper.Chassis.0.Fan.1 is now Bad""
zov_event_s eventFrom(const std::string &arguments) {
    Scanner scanner(arguments);
    const std::optional<int32_t> code = scanner.number<int32_t>();
    std::array<int32_t, 3> source{};
    const char *before = " [";
    for (int32_t &number : source) {
        const std::optional<int32_t> read = scanner.take(before) ? scanner.number<int32_t>() : std::nullopt;
        if (!read)
            throw std::invalid_argument("the source of the notification is not understood");
        number = *read;
        before = ":";
    }
    const std::optional<std::string> text = scanner.take("] ") ? scanner.quotedText() : std::nullopt;
    if (!code || !text || !scanner.atEnd() || text->size() > sizeof zov_event_s::text)
        throw std::invalid_argument("the notification is not understood");
    zov_event_s event = makeEvent(*code, source, *text);
    std::copy(text->begin(), text->end(), event.text); // one that fills its field has no terminator
    return event;
}

/// The call as a record of it shows it.
Record recordOf(const Call &call, const Verdict &verdict, uint32_t client) {
    Record record;
    record.client = client;
    record.call = call.name;
    record.arguments = call.arguments;
    record.result = verdict.result.value_or(kOk);
    record.handedOut = verdict.handedOut.value_or("");
    const bool isRegistration = record.call == "zov_enRegisterForEventList";
    for (size_t i = 0; i < call.keys.size(); ++i) {
        if (isRegistration) {
            record.arguments += (i == 0 ? "" : ", ") + call.keys[i];
            continue;
        }
        Exchange exchange{call.keys[i], i < call.values.size() ? call.values[i] : "", kOk};
        if (i < verdict.keys.size()) {
            exchange.status = verdict.keys[i].status.value_or(kOk);
            exchange.value = verdict.keys[i].value.value_or(exchange.value);
        }
        record.exchanges.push_back(exchange);
    }
    if (record.call == "zov_smlGet" || record.call == "zov_smlSet")
        for (const Exchange &exchange : record.exchanges)
            record.result = exchange.status;
    return record;
}

} // namespace

// ---- taking the recording apart ------------------------------------------------------------------------

RecordedScript::RecordedScript(Recording recording)
    : _recording(std::move(recording)), _reports(_recording.passedOver), _told(_reports.size()) {
    std::map<uint32_t, Story *> current; // by the number of the connection
    std::chrono::milliseconds offset{0}; // for clocks that began anew
    std::chrono::milliseconds last{0};
    unsigned part = 0;
    for (size_t place = 0; place < _recording.lines.size(); ++place) {
        RecordedLine &line = _recording.lines[place];
        if (line.part != part) {
            current.clear();
            offset = std::max(last - line.record.time, std::chrono::milliseconds(0));
            part = line.part;
        }
        line.record.time += offset;
        last = std::max(last, line.record.time);
        try {
            addLine(place, current);
        } catch (const std::invalid_argument &error) {
            throw std::invalid_argument(_recording.placeOf(line) + ": " + error.what());
        }
    }
    _time = beginning();
}

RecordedScript::Story &RecordedScript::newStory(uint32_t client, size_t place, bool hasBeginning) {
    Story &story = *_stories.emplace_back(std::make_unique<Story>());
    story.recordedAs = client;
    story.hasBeginning = hasBeginning;
    _connects.push_back({place, &story, hasBeginning});
    return story;
}

void RecordedScript::addLine(size_t place, std::map<uint32_t, Story *> &current) {
    const Record &record = _recording.lines[place].record;
    const bool isConnect = record.call == "zov_IPConnect";
    if (isConnect && record.client == 0) {
        _connects.push_back({place, nullptr, true});
    } else if (isConnect) {
        current[record.client] = &newStory(record.client, place, true);
    } else if (record.client != 0) {
        Story *&story = current[record.client];
        if (!story)
            story = &newStory(record.client, place, false);
        if (record.call == "notification") {
            story->steps.push_back({place, true, {}, eventFrom(record.arguments)});
        } else {
            story->steps.push_back({place, false, expectedCall(record), {}});
            story->answers.add(place, record, story->steps.back().call);
        }
    }
}

std::chrono::milliseconds RecordedScript::beginning() const {
    return _recording.lines.empty() ? std::chrono::milliseconds(0) : _recording.lines.front().record.time;
}

// ---- answering -----------------------------------------------------------------------------------------

Verdict RecordedScript::answer(Endpoint &endpoint, const Call &call) {
    const bool isConnect = call.name == std::string("zov_IPConnect");
    if (call.client == 0 && !isConnect)
        return {};
    if (!isConnect)
        endpoint.notifier.waitUntilHanded(kNotificationLimit);
    Verdict verdict;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        const auto story = _byHandle.find(call.client);
        if (isConnect)
            verdict = answerConnect(call);
        else if (story != _byHandle.end())
            verdict = answerInStory(*story->second, call);
        else
            verdict.result = kNotRecorded;
    }
    tell();
    return verdict;
}

Verdict RecordedScript::answerConnect(const Call &call) {
    Verdict verdict;
    if (_nextConnect == _connects.size()) {
        verdict.result = kNotRecorded;
        deviate(_recording.name, "no further connection", recordOf(call, verdict, 0));
        return verdict;
    }
    const Connecting &connecting = _connects[_nextConnect++];
    const RecordedLine &line = _recording.lines[connecting.place];
    if (!connecting.story && line.record.result != kOk)
        verdict.result = line.record.result;
    verdict.nullHandle = !connecting.story && line.record.result == kOk;
    if (connecting.isRecorded) {
        if (line.record.arguments != call.arguments)
            deviate(_recording.placeOf(line), line.record.line(), recordOf(call, verdict, line.record.client));
        _time = std::max(_time, line.record.time);
    }
    if (connecting.story)
        _connecting[std::this_thread::get_id()] = connecting.story;
    return verdict;
}

void RecordedScript::connected(zov_handle_t connection) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _connecting.find(std::this_thread::get_id());
    if (found == _connecting.end())
        return;
    _byHandle[connection] = found->second;
    _connecting.erase(found);
}

Verdict RecordedScript::answerInStory(Story &story, const Call &call) {
    takeDue(story); // of a story that begins with notifications
    size_t ahead = 0;
    for (size_t i = story.next; i < story.steps.size() && ahead < kLookAhead; ++i) {
        const Step &step = story.steps[i];
        if (step.isNotification)
            continue;
        if (isSame(step.call, call)) {
            const size_t expected = story.next;
            Verdict verdict = consume(story, i);
            if (i != expected) {
                const RecordedLine &line = _recording.lines[story.steps[expected].place];
                deviate(_recording.placeOf(line), line.record.line(), recordOf(call, verdict, story.recordedAs));
            }
            return verdict;
        }
        ++ahead;
    }
    Verdict verdict = story.answers.bestFor(call);
    const bool isOwnRegistration = !story.hasBeginning && call.name == std::string("zov_enRegisterForEventList");
    const Record called = recordOf(call, verdict, story.recordedAs);
    if (story.next == story.steps.size()) {
        deviate(_recording.name, "nothing more on connection " + std::to_string(story.recordedAs), called);
    } else if (!isOwnRegistration) {
        const RecordedLine &line = _recording.lines[story.steps[story.next].place];
        deviate(_recording.placeOf(line), line.record.line(), called);
    }
    return verdict;
}

/// The story goes on behind the step; the notifications that it passes go out.
Verdict RecordedScript::consume(Story &story, size_t step) {
    const Step &found = story.steps[step];
    const Record &record = _recording.lines[found.place].record;
    for (size_t i = story.next; i < step; ++i)
        if (story.steps[i].isNotification)
            story.due.push_back(story.steps[i].event);
    story.next = step + 1;
    story.answers.passed(found.place, found.call);
    _time = std::max(_time, record.time);
    return answerOf(record, found.call);
}

void RecordedScript::takeDue(Story &story) {
    for (; story.next < story.steps.size() && story.steps[story.next].isNotification; ++story.next)
        story.due.push_back(story.steps[story.next].event);
}

void RecordedScript::answered(Endpoint &endpoint, zov_handle_t client) {
    std::vector<zov_event_s> due;
    std::chrono::milliseconds time{0};
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        const auto found = _byHandle.find(client);
        if (found != _byHandle.end()) {
            takeDue(*found->second);
            due.swap(found->second->due);
        }
        if (!_over && isAtEnd()) {
            _over = true;
            report(_recording.name + ": the recording is at its end");
        }
        time = std::max(_time, nextTime());
    }
    for (const zov_event_s &event : due)
        endpoint.notifier.sendTo(client, event);
    const std::chrono::milliseconds missing = time - endpoint.clock.uptime();
    if (missing.count() > 0)
        endpoint.clock.pass(std::chrono::seconds(0), missing);
    tell();
}

/// When the next call of all was made; 0 when there is none. A connection is made when somebody makes it.
std::chrono::milliseconds RecordedScript::nextTime() const {
    std::chrono::milliseconds time{0};
    for (const std::unique_ptr<Story> &story : _stories) {
        if (story->next == story->steps.size())
            continue;
        const std::chrono::milliseconds next = _recording.lines[story->steps[story->next].place].record.time;
        time = time.count() == 0 ? next : std::min(time, next);
    }
    return time;
}

bool RecordedScript::isAtEnd() const {
    return _nextConnect == _connects.size() && std::all_of(_stories.begin(), _stories.end(), [](const auto &story) {
               return story->next == story->steps.size();
           });
}

// ---- reports -------------------------------------------------------------------------------------------

void RecordedScript::deviate(const std::string &place, const std::string &recorded, const Record &called) {
    ++_deviations;
    report(place + ": not as recorded\n    recorded: " + recorded + "\n    called:   " + called.line());
}

/// A client that has gone its own way goes on doing so.
void RecordedScript::report(const std::string &text) {
    constexpr size_t kMostReports = 1000;
    if (_reports.size() < kMostReports)
        _reports.push_back(text);
    else if (_reports.size() == kMostReports)
        _reports.push_back(_recording.name + ": that is enough; what else is not as recorded is counted only");
}

void RecordedScript::tell() {
    std::vector<std::string> news;
    Listener listener;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        news.assign(_reports.begin() + static_cast<std::ptrdiff_t>(_told), _reports.end());
        _told = _reports.size();
        listener = _listener;
    }
    if (listener)
        for (const std::string &text : news)
            listener(text);
}

std::vector<std::string> RecordedScript::reports() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _reports;
}

unsigned RecordedScript::deviations() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _deviations;
}

bool RecordedScript::isOver() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _over;
}

void RecordedScript::listen(Listener listener) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _listener = std::move(listener);
}

} // namespace sim
