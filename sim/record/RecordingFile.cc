#include "sim/record/RecordingFile.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "sim/record/Recording.h"

namespace sim {

namespace {

constexpr const char *kFull = "# the recording may not grow beyond this; what came after is not in it\n";

[[noreturn]] void refuse(const std::string &path, const std::string &why) {
    throw std::runtime_error(path + ": " + why);
}

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// The first bytes of a file, as many as there are.
std::string beginning(std::FILE *file, size_t count) {
    std::string text(count, '\0');
    std::rewind(file);
    text.resize(std::fread(&text[0], 1, count, file));
    return text;
}

/// Whether the last line of a file was cut.
bool lacksNewline(std::FILE *file) {
    return std::fseek(file, -1, SEEK_END) == 0 && std::fgetc(file) != '\n';
}

} // namespace

RecordingFile::RecordingFile(Simulator &device, const std::string &path, uint64_t maximumBytes)
    : _device(device), _path(path), _maximumBytes(maximumBytes) {
    open();
    _sink = _device.addSink([this](const Record &record) { add(record); });
}

RecordingFile::~RecordingFile() {
    _device.removeSink(_sink);
}

void RecordingFile::open() {
    _file.reset(std::fopen(_path.c_str(), "a+e"));
    if (!_file)
        refuse(_path, reason(errno));
    const std::string header = kRecordingHeader + std::to_string(kRecordingFormat) + "\n";
    if (std::fseek(_file.get(), 0, SEEK_END) != 0)
        refuse(_path, reason(errno)); // a pipe, for one
    _size = static_cast<uint64_t>(std::ftell(_file.get()));
    bool isCut = false;
    if (_size > 0) {
        if (beginning(_file.get(), header.size()) != header)
            refuse(_path, "there is a file of this name that is no recording of this format");
        isCut = lacksNewline(_file.get());
        std::fseek(_file.get(), 0, SEEK_END);
    }
    write((isCut ? "\n" : "") + header);
    if (!_error.empty())
        throw std::runtime_error(_error);
}

void RecordingFile::add(const Record &record) {
    write(recordingLine(record) + "\n");
}

void RecordingFile::write(const std::string &line) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_full || !_error.empty())
        return;
    _full = _maximumBytes != 0 && _size + line.size() + std::string(kFull).size() > _maximumBytes;
    const std::string text = _full ? kFull : line;
    if (std::fwrite(text.data(), 1, text.size(), _file.get()) != text.size() || std::fflush(_file.get()) != 0)
        _error = _path + ": " + reason(errno);
    _size += text.size();
}

bool RecordingFile::isFull() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _full;
}

std::string RecordingFile::error() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _error;
}

} // namespace sim
