#include "tools/dcache/journal.h"

#include <array>
#include <ctime>
#include <fmt/format.h>
#include <utility>

#include "tools/dcache/failure.h"
#include "tools/dcache/json.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

struct KindRow {
    const char *word;
    Tone tone;
};

constexpr std::array<KindRow, 3> kKinds = {
    {{"switch", Tone::plain}, {"event", Tone::accent}, {"no-event", Tone::faint}}};

constexpr size_t kTimeWidth = 12; // HH:MM:SS.mmm
constexpr size_t kKindWidth = 6;  // the longer of "switch" and "event"

const KindRow &rowOf(EntryKind kind) {
    return kKinds.at(static_cast<size_t>(kind));
}

struct SplitTime {
    std::time_t seconds;
    long milliseconds;
};

SplitTime split(std::chrono::system_clock::time_point time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - whole);
    return {std::chrono::system_clock::to_time_t(whole), static_cast<long>(rest.count())};
}

std::string clockTime(std::chrono::system_clock::time_point time) {
    const SplitTime moment = split(time);
    std::tm local = {};
    localtime_r(&moment.seconds, &local);
    return fmt::format("{:02}:{:02}:{:02}.{:03}", local.tm_hour, local.tm_min, local.tm_sec, moment.milliseconds);
}

std::string isoTime(std::chrono::system_clock::time_point time) {
    const SplitTime moment = split(time);
    std::tm utc = {};
    gmtime_r(&moment.seconds, &utc);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                       utc.tm_hour, utc.tm_min, utc.tm_sec, moment.milliseconds);
}

std::string tableLine(const Entry &entry, bool colour) {
    const std::string &words = entry.event.words;
    if (entry.kind == EntryKind::noEvent) {
        const std::string remark = words.empty() ? "(no event)" : fmt::format("(no event: {})", words);
        return std::string(kTimeWidth + 2, ' ') + painted(remark, Tone::faint, colour) + '\n';
    }
    const KindRow &kind = rowOf(entry.kind);
    const std::string word = fmt::format("{:<{}}", kind.word, kKindWidth);
    return fmt::format("{}  {}  {}\n", painted(clockTime(entry.time), Tone::faint, colour),
                       painted(word, kind.tone, colour), painted(words, kind.tone, colour));
}

std::string jsonLine(const Entry &entry) {
    Json object = {{"time", isoTime(entry.time)}, {"kind", rowOf(entry.kind).word}};
    if (entry.kind == EntryKind::event) {
        object["type"] = entry.event.type;
        object["name"] = entry.event.name;
    }
    object["text"] = entry.event.words;
    if (entry.kind == EntryKind::event) {
        auto &fields = object["fields"] = Json::object();
        for (const Field &field : entry.event.fields)
            fields[field.name] = toJson(field.value);
    }
    return jsonText(object, -1);
}

std::string terseLine(const Entry &entry) {
    std::string line = fmt::format("{}\t{}\t", isoTime(entry.time), rowOf(entry.kind).word);
    if (entry.kind != EntryKind::event)
        return line + printable(entry.event.words) + '\n';
    line += entry.event.name;
    for (const Field &field : entry.event.fields)
        line += fmt::format("\t{}={}", field.name, terseValue(field.value));
    return line + '\n';
}

EventDescription justWords(const std::string &words) {
    return {0, "", words, {}, false};
}

} // namespace

std::string render(const Entry &entry, Format format, bool colour) {
    switch (format) {
    case Format::json:
        return jsonLine(entry);
    case Format::terse:
        return terseLine(entry);
    case Format::table:
        break;
    }
    return tableLine(entry, colour);
}

Journal::Journal(Output &output, Format format, std::function<void(int)> onFailure)
    : _output(output), _format(format), _colour(output.wantsColour()), _onFailure(std::move(onFailure)) {}

void Journal::tellSwitchChange(const std::string &words) {
    _tell(EntryKind::switchChange, justWords(words));
}

void Journal::tellEvent(const EventDescription &event) {
    _tell(EntryKind::event, event);
}

void Journal::tellNoEvent(const std::string &why) {
    _tell(EntryKind::noEvent, justWords(why));
}

unsigned long Journal::eventCount() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _events;
}

void Journal::close() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _open = false;
}

void Journal::beginSwitchChange() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _changeSince = std::chrono::system_clock::now();
}

void Journal::endSwitchChange() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _changeSince.reset();
    for (const Entry &entry : std::exchange(_waiting, {}))
        _write(entry);
}

void Journal::_tell(EntryKind kind, const EventDescription &event) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const Entry entry = {std::chrono::system_clock::now(), kind, event};
    if (!_changeSince)
        _write(entry);
    else if (kind == EntryKind::event)
        _waiting.push_back(entry);
    else
        _write({*_changeSince, kind, event});
}

void Journal::_write(const Entry &entry) {
    if (!_open)
        return;
    try {
        _output.print(render(entry, _format, _colour));
        _events += entry.kind == EntryKind::event && entry.event.tellsChange ? 1 : 0;
    } catch (const OutputFailed &failure) {
        _open = false;
        _onFailure(failure.error);
    }
}

} // namespace dcache
