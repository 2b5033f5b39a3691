#include "sim/record/RecordingFile.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/record/Recorded.h"

using simtest::Client;

namespace {

const std::string kPath = "/tmp/recording"; // of this process alone

class RecordingFile : public testing::Test {
protected:
    void SetUp() override { std::remove(kPath.c_str()); }
};

std::string contents(const std::string &path = kPath) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void put(const std::string &text) {
    std::ofstream(kPath, std::ios::binary) << text;
}

std::string mistakeOf(sim::Simulator &device, const std::string &path) {
    try {
        const sim::RecordingFile file(device, path);
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST_F(RecordingFile, HasEveryCallAndNotificationWithItsTime) {
    const auto device = sim::create();
    const sim::RecordingFile file(*device, kPath);
    Client client;
    client.registerFor({33});
    client.get("Oper.Switch.DomainID");
    device->passTime(std::chrono::seconds(5));
    device->set("Oper.Chassis.0.Fan.1", "Bad");
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    const std::string n = std::to_string(client.handle);
    EXPECT_EQ(contents(), "zovlib recording, format 1\n"
                          "3600000 zov_IPConnect(" +
                              n + ", \"localhost\", \"test\", \"\") = 0\n3600000 zov_enRegisterForEventList(" + n +
                              ", 33) = 0\n3600000 zov_smlGet(" + n +
                              ") = 0: Oper.Switch.DomainID=\"1\"\n3600000 zov_libFreeMemory() = 0\n"
                              "3605000 notification(" +
                              n + ", 33 [0:0:0] \"Oper.Chassis.0.Fan.1 is now Bad\")\n");
    EXPECT_EQ(contents(), simtest::recordingOf(*device));
    EXPECT_EQ(file.error(), "");
    EXPECT_FALSE(file.isFull());
}

TEST_F(RecordingFile, EndsWithItsObject) {
    const auto device = sim::create();
    const Client client;
    { const sim::RecordingFile file(*device, kPath); }
    client.get("Oper.Switch.DomainID");
    EXPECT_EQ(contents(), "zovlib recording, format 1\n");
}

TEST_F(RecordingFile, GoesOnWithARecording) {
    const auto device = sim::create();
    const Client client;
    for (int i = 0; i < 2; ++i) {
        const sim::RecordingFile file(*device, kPath);
        client.set("Cmd.Switch.RelAdmin");
    }
    const sim::Recording recording = sim::readRecording(contents(), kPath);
    ASSERT_EQ(recording.lines.size(), 2U);
    EXPECT_EQ(recording.lines[0].part, 0U);
    EXPECT_EQ(recording.lines[1].part, 1U);
}

TEST_F(RecordingFile, GoesOnBehindALineThatWasCut) {
    const auto device = sim::create();
    put("zovlib recording, format 1\n3600000 zov_smlGet(1) =");
    const sim::RecordingFile file(*device, kPath);
    const Client client;
    const sim::Recording recording = sim::readRecording(contents(), kPath);
    EXPECT_EQ(recording.passedOver.size(), 1U);
    EXPECT_EQ(recording.lines.size(), 1U);
}

TEST_F(RecordingFile, LeavesAFileOfAnotherKindAlone) {
    const auto device = sim::create();
    for (const char *text : {"a letter", "zovlib recording, format 2\n", "zovlib"}) {
        put(text);
        EXPECT_EQ(mistakeOf(*device, kPath),
                  kPath + ": there is a file of this name that is no recording of this format");
        EXPECT_EQ(contents(), text);
    }
}

TEST_F(RecordingFile, SaysWhyAFileCannotBeWritten) {
    const auto device = sim::create();
    EXPECT_EQ(mistakeOf(*device, "/tmp/no/such/folder"), "/tmp/no/such/folder: No such file or directory");
    const Client client;
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1") << "the switch goes on without it";
}

TEST_F(RecordingFile, TellsThatTheDiskIsFull) {
    const auto device = sim::create();
    EXPECT_EQ(mistakeOf(*device, "/dev/full"), "/dev/full: No space left on device");
}

TEST_F(RecordingFile, StopsAtItsLimitAndSaysSo) {
    const auto device = sim::create();
    const Client client;
    const sim::RecordingFile file(*device, kPath, 1000);
    for (int i = 0; i < 100; ++i)
        client.set("Cmd.Switch.RelAdmin");
    EXPECT_TRUE(file.isFull());
    const std::string text = contents();
    EXPECT_LE(text.size(), 1000U);
    EXPECT_GT(text.size(), 850U);
    const std::string last = "# the recording may not grow beyond this; what came after is not in it\n";
    EXPECT_EQ(text.substr(text.size() - last.size()), last);
    EXPECT_GT(sim::readRecording(text, kPath).lines.size(), 10U);
    EXPECT_EQ(device->records().size(), 101U) << "only the file has a limit";
}

TEST_F(RecordingFile, LosesNothingOfManyThreads) {
    const auto device = sim::create();
    const sim::RecordingFile file(*device, kPath);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([] {
            const Client client;
            for (int i = 0; i < 100; ++i)
                client.set("Cmd.Switch.RelAdmin");
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(contents(), simtest::recordingOf(*device));
    EXPECT_EQ(sim::readRecording(contents(), kPath).lines.size(), 404U);
}
