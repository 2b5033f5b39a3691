#include "sim/record/RecordLine.h"

#include <fstream>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using sim::parseRecord;
using sim::Record;

namespace {

bool operator==(const sim::Exchange &left, const sim::Exchange &right) {
    return left.key == right.key && left.value == right.value && left.status == right.status;
}

void expectReadBack(const Record &record) {
    const std::string line = record.line();
    Record read;
    try {
        read = parseRecord(line);
    } catch (const std::invalid_argument &error) {
        FAIL() << line << ": " << error.what();
    }
    EXPECT_EQ(read.line(), line);
    EXPECT_EQ(read.client, record.client) << line;
    EXPECT_EQ(read.call, record.call) << line;
    EXPECT_EQ(read.arguments, record.arguments) << line;
    EXPECT_EQ(read.result, record.result) << line;
    EXPECT_EQ(read.handedOut, record.handedOut) << line;
    ASSERT_EQ(read.exchanges.size(), record.exchanges.size()) << line;
    for (size_t i = 0; i < read.exchanges.size(); ++i)
        EXPECT_TRUE(read.exchanges[i] == record.exchanges[i]) << line;
}

std::string mistakeIn(const std::string &line) {
    try {
        parseRecord(line);
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST(RecordLine, ReadsBackWhateverASwitchRecords) {
    const auto device = sim::create();
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    simtest::Client client;
    client.registerFor({33, 300});
    client.get("Oper.Switch.Color");
    client.getBatch({"Oper.Switch.WWN", "Oper.X", "a=\"b\", -> c= status 3"});
    client.set("Config.Switch.SymbolicName", "a \"name\"\n\\");
    device->set("Oper.Chassis.0.Fan.1", "Bad");
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    simtest::send(client, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77", "Cmd.Zoning.EditConfig",
                           "Cmd.Zoning.Zone.fig.Create", "Cmd.Zoning.SaveConfig", "Cmd.Zoning.FabricUnlock.77",
                           "Cmd.Switch.RelAdmin"});
    simtest::listedZonesets(client);
    char name[65];
    zov_fzsGetActiveZonesetName(client.handle, name);
    void *zoneset = nullptr;
    ASSERT_EQ(zov_fzsGetZoneset(client.handle, "north", &zoneset), 0);
    simtest::takeApart(zoneset);
    zov_fzs_memberid_s id = {};
    zov_MemberCreate(static_cast<zov_fzs_zonemember_type_e>(77), &id);
    zov_IPConnect(nullptr, "a", "b", nullptr);
    ASSERT_GT(device->records().size(), 40U);
    for (const Record &record : device->records())
        expectReadBack(record);
}

TEST(RecordLine, ReadsBackKeysAndValuesOfAnyBytes) {
    std::mt19937 random(7);
    const std::string alphabet = "aZ09. =\"\\,:()->\x01\x7f\xff\n#";
    const auto text = [&] {
        std::string out;
        for (size_t length = random() % 12; out.size() < length;)
            out += alphabet[random() % alphabet.size()];
        return out;
    };
    for (int i = 0; i < 2000; ++i) {
        Record record;
        record.client = static_cast<uint32_t>(random());
        record.call = "zov_smlGetBatch";
        record.result = static_cast<int32_t>(random());
        for (size_t count = random() % 4; record.exchanges.size() < count;)
            record.exchanges.push_back({text(), text(), static_cast<int32_t>(random() % 3)});
        expectReadBack(record);
        if (HasFailure())
            return;
    }
}

TEST(RecordLine, SaysWhatIsWrong) {
    EXPECT_EQ(mistakeIn("zov_smlGat(1) = 0"), "'zov_smlGat' is no kind of record");
    EXPECT_EQ(mistakeIn("zov_smlGet"), "a '(' must follow the name of the call");
    EXPECT_EQ(mistakeIn("zov_smlGet(1 = 0"), "the arguments do not end with ')'");
    EXPECT_EQ(mistakeIn("zov_smlGet(1)"), "' = ' and the result of the call must follow its arguments");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 99999999999"), "' = ' and the result of the call must follow its arguments");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A"), "KEY=\"VALUE\" must stand at 'A'");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A\"b\""), "KEY=\"VALUE\" must stand at 'A\"b\"'");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A=\"b"), "the value of 'A' is not a text in quotes");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A=\"b\" status x"), "the status of 'A' is not a number");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A=\"b\"; c"), "the line should end at '; c'");
    EXPECT_EQ(mistakeIn("zov_fzsGetZonesetList(1) = 0 -> "), "nothing follows ' -> '");
}

TEST(RecordLine, EveryBeginningOfALineIsReadOrRefused) {
    const std::string line = R"(zov_smlGetBatch(1) = 0: Oper.A="x\x0a\"", Oper.B="" status 12 -> "north")";
    expectReadBack(parseRecord(line));
    for (size_t length = 0; length < line.size(); ++length) {
        const std::string beginning = line.substr(0, length);
        if (mistakeIn(beginning) == "none") {
            EXPECT_EQ(parseRecord(beginning).line(), beginning);
        }
    }
}

TEST(RecordLine, KnowsEveryCallOfTheSwitchLibrary) {
    std::ifstream symbols(SYMBOLS_OF_ZOVLIB);
    unsigned calls = 0;
    for (std::string symbol; std::getline(symbols, symbol);)
        if (symbol.rfind("zov_", 0) == 0) {
            EXPECT_TRUE(sim::isKindOfRecord(symbol)) << symbol;
            ++calls;
        }
    EXPECT_GT(calls, 40U);
    EXPECT_TRUE(sim::isKindOfRecord("notification"));
    EXPECT_FALSE(sim::isKindOfRecord(""));
    EXPECT_FALSE(sim::isKindOfRecord("zov_smlGetB"));
}
