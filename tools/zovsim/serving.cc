#include "tools/zovsim/serving.h"

#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/Server.h"
#include "sim/record/RecordingFile.h"
#include "sim/record/Replay.h"
#include "sim/verbs/perform.h"
#include "tools/dcache/failure.h"
#include "tools/zovsim/playing.h"
#include "tools/zovsim/remote.h"
#include "tools/zovsim/scenarios.h"
#include "tools/zovsim/signals.h"
#include "tools/zovsim/version.h"

namespace zovsim {
namespace {

constexpr size_t kLargestRecording = size_t{1} << 30;

sim::Scenario wantedScenario(const ServeRequest &request) {
    return request.scenario ? scenarioNamed(*request.scenario)
                            : scenarioOfProfile(request.profile.value_or("fixed-24"));
}

std::unique_ptr<sim::Simulator> wantedDevice(const ServeRequest &request, const sim::Scenario &scenario) {
    try {
        return makeDevice(scenario, request.seed);
    } catch (const std::invalid_argument &error) { // what a scenario says has been tried
        throw dcache::Misuse(error.what());
    }
}

/// The file that a switch is recorded to, if one is asked for.
class Recording {
public:
    Recording(sim::Simulator &device, const ServeRequest &request) {
        if (request.recording.empty())
            return;
        struct stat status = {};
        if (!request.goesOn && stat(request.recording.c_str(), &status) == 0)
            throw dcache::Failure(request.recording + ": is there already; --force goes on with it");
        _file = std::make_unique<sim::RecordingFile>(device, request.recording);
    }

    /// Tells once when nothing more can be written.
    void look(Log &log) {
        if (!_file || _isTold || _file->error().empty())
            return;
        _isTold = true;
        log.complain("zovsim: the recording ends here: " + _file->error());
    }

private:
    std::unique_ptr<sim::RecordingFile> _file;
    bool _isTold = false;
};

/// As every process finds it, wherever it works.
std::string wantedSocket(const std::optional<std::string> &asked) {
    return std::filesystem::absolute(socketPath(asked)).string();
}

std::string shown(const sim::Scenario &scenario) {
    const size_t steps = scenario.steps.size();
    return scenario.fileName.empty()
               ? scenario.profile
               : fmt::format("{} on {}, {} step{}", scenario.fileName, scenario.profile, steps, steps == 1 ? "" : "s");
}

std::unique_ptr<sim::Server> serveAt(sim::Simulator &device, const sim::ServerOptions &options) {
    return ofThisVersion(sim::serve(device, options));
}

/// Nothing is lost: what clients saved is in the state file, and what was recorded is in its file.
void endServing(const std::string &socket, int exitCode, const std::function<void()> &end) {
    endInTime(end, [&] {
        unlink(socket.c_str());
        std::_Exit(exitCode);
    });
}

} // namespace

std::string exportLine(const std::string &socket) {
    constexpr const char *kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/_.-+:@%,";
    if (socket.find_first_not_of(kPlain) == std::string::npos)
        return "export ZOVSIM_SOCKET=" + socket;
    std::string quoted;
    for (const char c : socket)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return "export ZOVSIM_SOCKET='" + quoted + "'";
}

int serve(const ServeRequest &request, dcache::Output &output) {
    EndingSignals signals;
    const sim::Scenario scenario = wantedScenario(request);
    std::unique_ptr<sim::Simulator> device = wantedDevice(request, scenario);
    device->keepRecords(false);
    device->setPace(request.speed.pace, request.speed.factor);
    auto recording = std::make_unique<Recording>(*device, request);
    sim::ServerOptions options;
    options.socketPath = wantedSocket(request.socket);
    options.stateFile = request.stateFile;
    options.perform = [&device](const std::string &command) { return sim::perform(*device, command); };
    options.dump = [&device] { return sim::dumpScenario(*device); };
    std::unique_ptr<sim::Server> server = serveAt(*device, options);
    output.print(exportLine(options.socketPath) + '\n');
    Log log(output, request.quiet);
    log.tell(fmt::format("Serving {}, {}; seed {}.", shown(scenario), speedWords(request.speed), request.seed));
    auto playing = std::make_unique<Playing>(*device, scenario, log,
                                             PlayingOptions{[&] { server->keep(); }, [&] { recording->look(log); }});
    signals.wait();
    endServing(options.socketPath, 0, [&] {
        playing.reset();
        server.reset();
        recording.reset();
        device.reset();
    });
    return 0;
}

int replay(const ReplayRequest &request, dcache::Output &output) {
    EndingSignals signals;
    std::unique_ptr<sim::Replay> played =
        ofThisVersion(sim::makeReplay(readText(request.recording, kLargestRecording), request.recording));
    sim::Simulator &device = played->device();
    device.keepRecords(false);
    Log log(output, request.quiet);
    const auto report = [&](const std::string &text) {
        if (!request.quiet)
            log.complain(text);
    };
    for (const std::string &text : played->reports())
        report(text);
    played->onReport(report);
    sim::ServerOptions options;
    options.socketPath = wantedSocket(request.socket);
    options.perform = [&device](const std::string &command) { return sim::perform(device, command); };
    options.dump = []() -> std::string {
        throw std::runtime_error("a replay has no state of its own to dump; it answers as was recorded");
    };
    std::unique_ptr<sim::Server> server = serveAt(device, options);
    output.print(exportLine(options.socketPath) + '\n');
    signals.wait();
    const unsigned deviations = played->deviations();
    const int exitCode = deviations == 0 ? 0 : dcache::kFailedExit;
    log.tell(fmt::format("{}: {} deviation{}, {}", request.recording, deviations, deviations == 1 ? "" : "s",
                         played->isOver() ? "played to its end" : "not played to its end"));
    endServing(options.socketPath, exitCode, [&] {
        server.reset();
        played.reset();
    });
    return exitCode;
}

} // namespace zovsim
