// kill -9 at every step: the other side gets an error at worst, nothing hangs, nothing stays held, and zoning is all old
// or all new. Each step is played in processes of its own, so that this one never has a thread when it makes one.

#include <dlfcn.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/sim/Ambush.h"

using simtest::Client;
using simtest::kMoments;
using simtest::Moment;
using simtest::Process;
using simtest::Servers;
using simtest::wrong;

namespace {

/// A client's steps one by one; each says whether it was served.
using Step = std::function<bool(Client &client)>;

Step read(const char *key) {
    return [key](Client &client) { return client.get(key).status == 0; };
}

Step send(const std::string &key) {
    return [key](Client &client) { return simtest::send(client, {key}) == std::vector<int32_t>{0}; };
}

/// What a client does when it takes in a switch.
std::vector<Step> load() {
    return {[](Client &client) {
                return client.registerFor({1, 3, 33}) == 0;
            },
            read("Oper.Switch.WWN"),
            [](Client &client) {
                client.getBatch({"Oper.Switch.OperState", "Oper.Switch.DomainID", "Oper.UserPort.0.1.OperState"});
                return client.batchResult == 0;
            },
            [](Client &client) { return simtest::listedZonesets(client) == std::vector<std::string>{"north"}; },
            [](Client &client) {
                void *zoneset = nullptr;
                return zov_fzsGetZoneset(client.handle, "north", &zoneset) == 0 && zov_ZonesetDestroy(zoneset) == 0;
            }};
}

/// A commit of orchard(), command by command.
std::vector<Step> commit() {
    std::vector<Step> steps;
    for (const auto *keys : {&simtest::kOpenEdit, &simtest::kPlantOrchard, &simtest::kCloseEdit})
        for (const std::string &key : *keys)
            steps.push_back(send(key));
    return steps;
}

/// What happens while a server keeps its state.
enum class Keeping { lives, diesBefore, diesAfter };

Keeping &keeping() {
    static Keeping chosen = Keeping::lives;
    return chosen;
}

/// The client does so many of its steps, and dies then, or is killed in the next one.
int clientOfSteps(const std::vector<Step> &steps, size_t count, Moment moment) {
    const auto life = [&] {
        Client client;
        for (size_t i = 0; i < count; ++i)
            if (!steps[i](client))
                return wrong(i, "not served");
        if (moment == Moment::between)
            simtest::dieAtOnce();
        steps[count](client);
        return wrong(count, "the client lives");
    };
    return simtest::watchClientDie(life, count + 1, moment); // the first call is its connection
}

/// Whether a client that comes to a dead server in its steps is served before, and told.
bool meetsDeath(const std::vector<Step> &steps, size_t count, Moment moment, Client &client, Servers &servers) {
    for (size_t i = 0; i < count; ++i)
        if (!steps[i](client))
            return false;
    if (moment == Moment::between ? !servers.killFirst() : steps[count](client) || !servers.isFirstKilled())
        return false;
    return client.get("Oper.Switch.WWN").status == simtest::kNoConnection;
}

/// What a client finds whose server died after so many steps, or in the next one, and then after its return.
int serverOfSteps(const std::vector<Step> &steps, size_t count, Moment moment) {
    Servers servers(moment, count + 1);
    Client client;
    if (!meetsDeath(steps, count, moment, client, servers))
        return wrong(count, "served by a dead server, or not by one that lives");
    servers.comeBack();
    std::vector<sim::Zone> zones;
    return simtest::lookAround(client, count, zones);
}

using Scene = int (*)(const std::vector<Step> &steps, size_t count, Moment moment);

void expectAtEveryStep(Scene scene, const std::vector<Step> &steps) {
    for (const Moment moment : kMoments)
        for (size_t count = 0; count < steps.size() + (moment == Moment::between ? 1 : 0); ++count) {
            Process process([&] { return scene(steps, count, moment); });
            EXPECT_EQ(process.wait(), 0) << "after " << count << " steps, moment " << static_cast<int>(moment);
        }
}

/// The whole commit in one call, as clients that hurry send it.
bool commitAtOnce(Client &client) {
    return simtest::commit(client, simtest::kPlantOrchard) == simtest::allDone(simtest::kPlantOrchard.size());
}

/// What a server that dies around the replacement of its state file has kept.
int watchKeeping(Keeping keeps, bool isServed, const std::vector<sim::Zone> &kept) {
    Servers servers(Moment::between, 0, [keeps] { keeping() = keeps; });
    Client client;
    if (commitAtOnce(client) != isServed)
        return wrong(0, "a commit that was not kept is told as one that was, or the other way round");
    if (isServed ? !servers.killFirst() : !servers.isFirstKilled())
        return wrong(0, "the server keeps nothing");
    servers.comeBack();
    std::vector<sim::Zone> zones;
    if (const int bad = simtest::lookAround(client, 0, zones))
        return bad;
    return zones == kept ? 0 : wrong(0, "something else is kept");
}

} // namespace

/// A server's state file gets its name last.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): libc's are its own
extern "C" int rename(const char *from, const char *to) noexcept {
    static const auto real = reinterpret_cast<decltype(&rename)>(dlsym(RTLD_NEXT, "rename"));
    if (keeping() == Keeping::diesBefore)
        simtest::dieAtOnce();
    const int result = real(from, to);
    if (keeping() == Keeping::diesAfter)
        simtest::dieAtOnce();
    return result;
}

TEST(Kill, AClientThatDiesInALoadLeavesNothingHeld) {
    expectAtEveryStep(clientOfSteps, load());
}

TEST(Kill, AClientThatDiesInACommitLeavesZoningAllOldOrAllNew) {
    expectAtEveryStep(clientOfSteps, commit());
}

TEST(Kill, AServerThatDiesInALoadIsAnErrorAndComesBack) {
    expectAtEveryStep(serverOfSteps, load());
}

TEST(Kill, AServerThatDiesInACommitHasZoningAllOldOrAllNew) {
    expectAtEveryStep(serverOfSteps, commit());
}

TEST(Kill, ACommitInOneCallIsAllOldOrAllNewWhoeverDies) {
    expectAtEveryStep(clientOfSteps, {commitAtOnce});
    expectAtEveryStep(serverOfSteps, {commitAtOnce});
}

TEST(Kill, ACommitThatWasToldOutlivesTheServer) {
    EXPECT_EQ(Process([] { return watchKeeping(Keeping::lives, true, simtest::orchard().zones); }).wait(), 0);
}

TEST(Kill, AServerThatDiesBeforeItsStateIsReplacedHasTheOldOne) {
    EXPECT_EQ(Process([] { return watchKeeping(Keeping::diesBefore, false, simtest::seedling().zones); }).wait(), 0);
}

TEST(Kill, AServerThatDiesWhenItsStateIsReplacedHasTheNewOne) {
    EXPECT_EQ(Process([] { return watchKeeping(Keeping::diesAfter, false, simtest::orchard().zones); }).wait(), 0);
}
