#include "sim/record/Recording.h"

#include <stdexcept>
#include <utility>

#include "sim/record/RecordLine.h"
#include "sim/record/Scanner.h"

namespace sim {

namespace {

class Reader {
public:
    Reader(const std::string &text, const std::string &name) : _text(text) { _recording.name = name; }

    Recording read() {
        while (!_text.atEnd()) {
            const std::string line(_text.before('\n'));
            const bool isWhole = _text.take("\n");
            ++_number;
            take(line, isWhole);
        }
        if (_headers == 0)
            refuseWithoutHeader();
        return std::move(_recording);
    }

private:
    [[noreturn]] void refuse(const std::string &what) const { throw std::invalid_argument(place() + what); }
    [[noreturn]] void refuseWithoutHeader() const {
        refuse("a recording begins with '" + std::string(kRecordingHeader) + std::to_string(kRecordingFormat) + "'");
    }
    void passOver(const std::string &why) { _recording.passedOver.push_back(place() + why + "; passed over"); }
    std::string place() const { return _recording.name + ":" + std::to_string(_number == 0 ? 1 : _number) + ": "; }

    void take(const std::string &line, bool isWhole) {
        if (Scanner(line).take(kRecordingHeader))
            return takeHeader(line);
        if (_headers == 0)
            refuseWithoutHeader();
        if (line.empty() || line[0] == '#')
            return;
        if (!isWhole) // it may look whole, and lack the end of a number
            return passOver("the line was cut");
        try {
            takeRecord(line);
        } catch (const std::invalid_argument &error) {
            if (!Scanner(_text).take(kRecordingHeader)) // who recorded again ended the line that was cut
                refuse(error.what());
            passOver("the line was cut");
        }
    }

    void takeHeader(const std::string &line) {
        Scanner scanner(line);
        scanner.take(kRecordingHeader);
        const std::optional<unsigned> format = scanner.number<unsigned>();
        if (!format || !scanner.atEnd())
            refuse("the number of the format does not end the line");
        if (*format != kRecordingFormat)
            refuse("a recording of format " + std::to_string(*format) + ", and only format " +
                   std::to_string(kRecordingFormat) + " can be read");
        ++_headers;
    }

    void takeRecord(const std::string &line) {
        Scanner scanner(line);
        const std::optional<int64_t> time = scanner.number<int64_t>();
        if (!time || *time < 0 || !scanner.take(" "))
            throw std::invalid_argument("a line begins with the time in milliseconds and a blank");
        const std::string text(scanner.rest());
        const std::string kind(text, 0, text.find_first_of("( "));
        if (!isKindOfRecord(kind))
            return passOver("'" + kind + "' is no kind of record that is known");
        RecordedLine recorded{_number, _headers - 1, parseRecord(text)};
        recorded.record.time = std::chrono::milliseconds(*time);
        _recording.lines.push_back(std::move(recorded));
    }

    Scanner _text;
    Recording _recording;
    size_t _number = 0;
    unsigned _headers = 0;
};

} // namespace

Recording readRecording(const std::string &text, const std::string &name) {
    return Reader(text, name).read();
}

std::string recordingLine(const Record &record) {
    return std::to_string(record.time.count()) + " " + record.line();
}

} // namespace sim
