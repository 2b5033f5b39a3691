// Trouble that was recorded, and what the cache makes of it. A recording, NAME.rec, stands in for the switch; what clients
// are told and what the log says is compared with NAME.golden.
//
// With RENEW_RECORDINGS set in the environment the recordings and what they lead to are made anew, by the cache of now
// and a switch on which the trouble is made. Look at what changed before keeping it.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <stdexcept>

#include <gmock/gmock.h>

#include "datacache/DataCache.h"
#include "sim/record/RecordingFile.h"
#include "sim/record/Replay.h"
#include "tests/support/Events.h"
#include "tests/support/Log.h"
#include "tests/support/Uptime.h"

namespace {

DataCache &cache() {
    DataCache *theCache = DataCache::getInstance();
    DataCache::releaseInstance();
    return *theCache;
}

/// A program with the cache, which writes down what it is told.
class Program {
public:
    explicit Program(sim::Simulator &device) : _device(device) {
        support::setUptimeSource([this] { return _device.uptime(); });
    }
    ~Program() { support::setUptime(_device.uptime()); }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void start() {
        begin("start");
        DataCache::init();
        cache().startEventMonitor(support::recordEvent);
        end();
    }
    void pass() {
        EXPECT_TRUE(_device.waitUntilQuiet(std::chrono::seconds(20)));
        begin("pass");
        const bool isReady = cache().evaluateCaches();
        EXPECT_TRUE(
            _device.waitUntilQuiet(std::chrono::seconds(20))); // what came in the middle of it waited for its end
        say(isReady ? "ready" : "not ready");
        end();
    }
    template <class Work> void step(const std::string &name, const Work &work) {
        begin(name);
        work();
        end();
    }
    void say(const std::string &text) { _told += "says: " + text + "\n"; }

    const std::string &told() const { return _told; }

private:
    void begin(const std::string &name) {
        support::takeEvents();
        _mark = support::logMark();
        _told += "---- " + name + "\n";
    }
    void end() {
        for (const std::string &event : support::takeEvents())
            _told += "event: " + event + "\n";
        for (const std::string &message : support::numberless(support::messagesSince(_mark)))
            _told += "log: " + message + "\n";
    }

    sim::Simulator &_device;
    std::size_t _mark = 0;
    std::string _told;
};

struct Story {
    const char *name;
    const char *profile;
    void (*makeTrouble)(sim::Simulator &device);
    void (*run)(Program &program);
};

/// What happens to the switch when a client reads or sets a key for the first time.
void when(sim::Simulator &device, const std::string &key, std::function<void()> action) {
    sim::Fault fault;
    fault.key = key;
    fault.action = std::move(action);
    device.addFault(fault);
}

/// Does something of which the switch tells its clients, and waits until it has told the first of it.
void tellOf(sim::Simulator &device, const std::function<void()> &action) {
    std::promise<void> told;
    std::atomic<bool> isTold{false};
    const int sink = device.addSink([&](const sim::Record &record) {
        if (record.call == "notification" && !isTold.exchange(true))
            told.set_value();
    });
    action();
    EXPECT_EQ(told.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
    device.removeSink(sink);
}

// ---- a fabric merge in the middle of a load -----------------------------------------------------------------------

/// A switch that becomes the principal, with another behind it, joins while the cache walks the link-state database.
void mergeFabrics(sim::Simulator &device) {
    when(device, "Oper.Eport.LsdbRecord.*.WWN", [&device] {
        sim::Peer principal;
        principal.wwn = "100000C0DDAA0001";
        principal.domain = 7;
        principal.priority = 1;
        sim::Peer behind = principal;
        behind.wwn = "100000C0DDAA0002";
        behind.domain = 9;
        behind.priority = 128;
        device.addPeer(principal);
        device.addPeer(behind);
        device.connect({principal.wwn, 5, behind.wwn, 5});
        device.logIn({behind.wwn, 2, "20000011AA000001", "21000011AA000001"});
        tellOf(device, [&] { device.connect({device.get("Oper.Switch.WWN"), 20, principal.wwn, 0}); });
    });
}

void loadTwice(Program &program) {
    program.start();
    program.pass();
    program.pass();
    program.step("fabric",
                 [&] { program.say("principal " + cache().getFabric(1)->getFabricWorldWideName().tostring()); });
}

// ---- a port whose transceiver text is cut -------------------------------------------------------------------------

void cutTransceiverTexts(sim::Simulator &device) {
    sim::Fault cut;
    cut.times = 1;
    for (const auto &[key, value] : std::vector<std::pair<std::string, std::string>>{
             {"Oper.UserPort.0.3.SFPData32_63", "46494E"},
             {"Oper.UserPort.0.3.SFPSerialNumber", "FNS0331"},
             {"Oper.UserPort.0.4.SFPData0_31", ""},
             {"Oper.UserPort.0.4.SFPSerialNumber", std::string(256, 'F')}}) {
        cut.key = key;
        cut.value = value;
        device.addFault(cut);
    }
    when(device, "Oper.UserPort.0.15.OperState", [&device] {
        tellOf(device, [&device] {
            device.deliver(76, {0, 0, 5}, "0;0;0;5;1;36965;FNS0331A"); // the rest of the notification is missing
            device.deliver(14, {0, 0, 3}, "attributes of port 3");     // it can be read in full by now
        });
    });
}

void loadAndLookAtTransceivers(Program &program) {
    const auto look = [&] {
        for (const char *port : {"3", "4", "5"})
            program.say("port " + std::string(port) + ": '" + cache().getTransceiverVendorOUI(port) + "' '" +
                        cache().getTransceiverVendorSN(port) + "'");
    };
    program.start();
    program.pass();
    program.step("transceivers", look);
    program.pass();
    program.step("transceivers", look);
}

// ---- a commit rejected by the switch ------------------------------------------------------------------------------

/// The switch's limits were lowered after the cache had read them.
void lowerLimits(sim::Simulator &device) {
    sim::ZoningDatabase database;
    database.aliases = {{"disk", {{ZOV_ZMT_PORTWWN, "2100000000000001"}, {ZOV_ZMT_DOMAINPORT, "1:10"}}}};
    database.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_PORTWWN, "21000000000000AB"}, {ZOV_ZMT_ALIAS, "disk"}}},
                      {"elm", ZOV_ZT_SOFT, {{ZOV_ZMT_FCADDRESS, "FFFFFE"}}}};
    database.zonesets = {{"north", {"oak", "elm"}}};
    device.setZoning(database, sim::Notify::no);
    device.activateZoneset("north", sim::Notify::no);
    when(device, "Cmd.Switch.ReqAdmin", [&device] {
        device.passTime(std::chrono::seconds(60));
        device.setZoningLimits({10, 2, 100, 10, 10, 10, 10});
    });
}

void commitOneZoneMore(Program &program) {
    program.start();
    program.pass();
    program.step("edit", [&] {
        program.say(cache().ZoningLock("provider") ? "locked" : "not locked");
        program.say("create " + std::to_string(cache().createZone("fig", ZOV_ZT_SOFT)));
        program.say("add member " + std::to_string(cache().addMemberToZone("fig", ZOV_ZMT_ALIAS, "disk")));
        program.say("add zone " + std::to_string(cache().addZoneToZoneset("north", "fig")));
    });
    program.step("commit", [&] {
        bool isExpired = false;
        program.say(cache().replaceZoningDB() ? "sent" : "not sent");
        program.say(cache().LockIdOK("provider", isExpired) ? "accepted" : "rejected");
        program.say("lock of '" + cache().getZoningLockHolder() + "'");
    });
    program.step("reload", [] { cache().reloadZoning(); });
    program.pass();
    program.step("clear", [] { cache().clearZoningCache(); });
}

// ---- recording and replaying --------------------------------------------------------------------------------------

std::string pathOf(const Story &story, const char *extension) {
    return std::string(RECORDINGS) + "/" + story.name + extension;
}

std::string contentsOf(const std::string &path) {
    std::string text = support::readFile(path);
    if (text.empty())
        throw std::runtime_error("there is no " + path);
    return text;
}

void renew(const Story &story) {
    const std::string path = pathOf(story, ".rec");
    std::remove(path.c_str());
    const auto device = sim::create(story.profile);
    story.makeTrouble(*device);
    const sim::RecordingFile file(*device, path);
    Program program(*device);
    story.run(program);
    std::ofstream(pathOf(story, ".golden"), std::ios::binary) << program.told();
    ADD_FAILURE() << path
                  << " is another one now: look at what changed, and run this test again without RENEW_RECORDINGS";
}

void expectAsRecorded(const Story &story) {
    if (std::getenv("RENEW_RECORDINGS")) // NOLINT(concurrency-mt-unsafe): nobody changes the environment
        return renew(story);
    const auto replay = sim::makeReplay(contentsOf(pathOf(story, ".rec")), std::string(story.name) + ".rec");
    Program program(replay->device());
    story.run(program);
    EXPECT_EQ(program.told(), contentsOf(pathOf(story, ".golden")));
    EXPECT_THAT(replay->reports(), testing::ElementsAre(std::string(story.name) + ".rec: the recording is at its end"));
    EXPECT_THAT(replay->device().misuses(), testing::IsEmpty());
}

} // namespace

TEST(Recordings, FabricMergeInTheMiddleOfALoad) {
    expectAsRecorded({"fabric-merge-in-the-middle-of-a-load", "fabric-2", mergeFabrics, loadTwice});
}

TEST(Recordings, PortWhoseTransceiverTextIsCut) {
    expectAsRecorded(
        {"port-whose-transceiver-text-is-cut", "fixed-24", cutTransceiverTexts, loadAndLookAtTransceivers});
}

TEST(Recordings, CommitRejectedByTheSwitch) {
    expectAsRecorded({"commit-rejected-by-the-switch", "fixed-24", lowerLimits, commitOneZoneMore});
}
