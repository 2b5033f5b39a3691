/*
 * The file that a switch is recorded to: every call and every notification from now on, a line each, which is in the
 * file before the call returns. The format is that of sim/record/Recording.h.
 *
 * A file that is there already is gone on with if it is a recording. What cannot be written is lost, and error() tells;
 * nothing more is written then.
 *
 * Thread-safe. To be destroyed before the switch.
 */
#ifndef SIM_RECORD_RECORDINGFILE_H
#define SIM_RECORD_RECORDINGFILE_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

#include "sim/Simulator.h"

namespace sim {

class RecordingFile {
public:
    /// No file grows beyond `maximumBytes`, 0 for no limit: its last line says so then. Throws std::runtime_error,
    /// "PATH: why", when the file cannot be written or is something else.
    RecordingFile(Simulator &device, const std::string &path, uint64_t maximumBytes = 0);
    RecordingFile(const RecordingFile &) = delete;
    RecordingFile &operator=(const RecordingFile &) = delete;
    ~RecordingFile();

    /// The limit was reached: what came after it is not in the file.
    bool isFull() const;
    /// "PATH: why" when something could not be written, else empty.
    std::string error() const;

private:
    struct Close {
        void operator()(std::FILE *file) const { static_cast<void>(std::fclose(file)); }
    };

    void open();
    void add(const Record &record);
    void write(const std::string &line);

    Simulator &_device;
    const std::string _path;
    const uint64_t _maximumBytes;
    mutable std::mutex _mutex;
    std::unique_ptr<std::FILE, Close> _file;
    uint64_t _size = 0;
    bool _full = false;
    std::string _error;
    int _sink = 0;
};

} // namespace sim

#endif // SIM_RECORD_RECORDINGFILE_H
