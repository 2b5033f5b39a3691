#include "tools/dcache/commandline/commandline.h"

#include <fmt/format.h>
#include <map>
#include <unistd.h>

#include "tools/dcache/commandline/help.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/input.h"
#include "tools/dcache/simulator.h"
#include "tools/dcache/zoning/otherclient.h"

namespace dcache {
namespace {

Format formatNamed(const std::string &name) {
    static const std::map<std::string, Format> formats = {
        {"table", Format::table}, {"json", Format::json}, {"terse", Format::terse}};
    return formats.at(name);
}

int complain(const std::string &message) {
    fmt::print(stderr, "dcache: {}\nRun \"dcache --help\" for help.\n", message);
    return kUsageExit;
}

} // namespace

int runCommandLine(int argc, char **argv) {
    Output output(STDOUT_FILENO);
    Request request;
    CLI::App app("The in-memory picture of a Fibre Channel switch, shown and watched.", "dcache");
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->column_width(26);
    app.set_version_flag("--version", "dcache " DCACHE_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1);
    addCommon(app, request);
    addNouns(app, request, output);
    addZoning(app, request, output);
    addConfig(app, request, output);
    addDoctor(app, request, output);
    addWatch(app, request, output);
    app.footer("A noun alone shows it: \"dcache switch\" is \"dcache switch show\".\n"
               "Exit codes: 0 done, 1 failed, 2 usage; of zoning and config also 3 to 5, see\n"
               "their help.\n\n"
               "Examples:\n  dcache watch --scenario demo\n  dcache ports --state offline");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        output.print(helpFor(app));
        return 0;
    } catch (const CLI::CallForVersion &version) {
        output.print(std::string(version.what()) + '\n');
        return 0;
    } catch (const CLI::ParseError &error) {
        return complain(error.what());
    }
    if (!request.run)
        return complain("nothing asked for; there are: " + commandNames(app));
    if (request.port && (request.ports.state || request.ports.all))
        return complain("a single port is shown whatever its state: leave out --state and --all");
    if (request.picture && request.format != "table")
        return complain("a drawing is for people: leave out --format, or the output format " + request.format);
    if (request.scenario && request.profile)
        return complain("a scenario brings its own switch: leave out --profile");
    try {
        const PlayHold play = request.scenario ? makePlay(*request.scenario) : nullptr;
        const bool isOther = !play && (request.profile || request.zoning);
        const auto simulator = isOther ? makeSimulator(request.profile.value_or("fixed-24")) : nullptr;
        request.play = play.get();
        if (request.zoning)
            giveZoning(play ? play->device() : *simulator, readInput(*request.zoning));
        return request.run(formatNamed(request.format));
    } catch (const Misuse &misuse) {
        return complain(misuse.what());
    }
}

} // namespace dcache
