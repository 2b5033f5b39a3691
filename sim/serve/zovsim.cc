// The control interface: serving a switch, and asking one that is served.

#include <exception>
#include <stdexcept>

#include "sim/remote/Line.h"
#include "sim/serve/LocalServer.h"

namespace {

using namespace sim;

std::string askAt(const std::string &path, const char *command) {
    const std::shared_ptr<Line> line = Line::open(path);
    if (!line)
        throw std::runtime_error("no switch is served at " + path);
    Json message = {{"call", command ? "do" : "dump"}, {"number", uint64_t{1}}};
    if (command)
        message["text"] = command;
    const std::optional<Bytes> frame = frameOf(message);
    if (!frame || frame->size() > kMaxGreeting)
        throw std::runtime_error("that is too much at once; allowed: some " + std::to_string(kMaxGreeting >> 10) +
                                 " KiB of commands");
    const std::optional<Json> answer = line->send(*frame) ? line->receive() : std::nullopt;
    if (!answer)
        throw std::runtime_error("the switch at " + path +
                                 " does not answer: it is gone, or has no room for more clients");
    const auto &text = answer->at("text").get_ref<const std::string &>();
    if (answer->at("result") != 0)
        throw std::runtime_error(text);
    return text;
}

} // namespace

extern "C" sim::Server *zovsim_serve(sim::Simulator *device, const sim::ServerOptions *options, int version) {
    if (version != sim::kInterfaceVersion)
        return nullptr;
    auto *servable = dynamic_cast<sim::Servable *>(device);
    if (!servable)
        throw std::runtime_error("this switch cannot be served");
    return new sim::LocalServer(servable->served(), *options);
}

extern "C" void zovsim_defaultSocketPath(std::string *path) {
    *path = sim::usualSocketPath();
}

extern "C" bool zovsim_ask(const char *socketPath, const char *command, std::string *answer) {
    try {
        *answer = askAt(socketPath, command);
        return true;
    } catch (const std::exception &error) {
        *answer = error.what();
        return false;
    }
}
