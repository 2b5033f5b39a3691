#include "sim/record/Recording.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/record/Recorded.h"

using simtest::recordingOf;

namespace {

std::string mistakeIn(const std::string &text) {
    try {
        sim::readRecording(text, "x.rec");
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "none";
}

const std::string kHeader = "zovlib recording, format 1\n";
const std::string kLine = "3600000 zov_smlGet(1) = 0: A=\"b\"\n";

} // namespace

TEST(Recording, ReadsTimesAndRecordsWithTheirLines) {
    const sim::Recording recording = sim::readRecording(
        kHeader + "# a comment\n\n" + kLine + "3600250 notification(1, 33 [0:0:0] \"text\")\n", "x.rec");
    ASSERT_EQ(recording.lines.size(), 2U);
    EXPECT_EQ(recording.lines[0].number, 4U);
    EXPECT_EQ(recording.lines[0].record.time.count(), 3600000);
    EXPECT_EQ(recording.placeOf(recording.lines[1]), "x.rec:5");
    EXPECT_EQ(sim::recordingLine(recording.lines[1].record), "3600250 notification(1, 33 [0:0:0] \"text\")");
    EXPECT_TRUE(recording.passedOver.empty());
}

TEST(Recording, RecordOfAnUnknownKindIsReportedAndPassedOver) {
    const sim::Recording recording =
        sim::readRecording(kHeader + "3600000 zov_later(1) => ?\n3600000 pause\n" + kLine, "x.rec");
    EXPECT_EQ(recording.lines.size(), 1U);
    EXPECT_EQ(recording.passedOver,
              (std::vector<std::string>{"x.rec:2: 'zov_later' is no kind of record that is known; passed over",
                                        "x.rec:3: 'pause' is no kind of record that is known; passed over"}));
}

TEST(Recording, LastLineThatWasCutIsReportedAndPassedOver) {
    for (size_t cut = 1; cut < kLine.size(); ++cut) {
        const sim::Recording recording = sim::readRecording(kHeader + kLine + kLine.substr(0, cut), "x.rec");
        EXPECT_EQ(recording.lines.size(), 1U) << cut;
        EXPECT_EQ(recording.passedOver, std::vector<std::string>{"x.rec:3: the line was cut; passed over"}) << cut;
    }
}

TEST(Recording, GoesOnBehindALineThatWasCutBeforeItWasGoneOnWith) {
    const sim::Recording recording =
        sim::readRecording(kHeader + "3600000 zov_sml\n3600000 zov_smlGet(1\n" + kHeader + kLine, "x.rec");
    EXPECT_EQ(recording.passedOver.size(), 2U);
    ASSERT_EQ(recording.lines.size(), 1U);
    EXPECT_EQ(recording.lines[0].part, 1U);
}

TEST(Recording, SaysWhereAFileIsNoRecording) {
    EXPECT_EQ(mistakeIn(""), "x.rec:1: a recording begins with 'zovlib recording, format 1'");
    EXPECT_EQ(mistakeIn(kLine), "x.rec:1: a recording begins with 'zovlib recording, format 1'");
    EXPECT_EQ(mistakeIn("zovlib recording, format 2\n"),
              "x.rec:1: a recording of format 2, and only format 1 can be read");
    EXPECT_EQ(mistakeIn("zovlib recording, format 1x\n"), "x.rec:1: the number of the format does not end the line");
    EXPECT_EQ(mistakeIn(kHeader + "zov_smlGet(1) = 0\n"),
              "x.rec:2: a line begins with the time in milliseconds and a blank");
    EXPECT_EQ(mistakeIn(kHeader + "-1 zov_smlGet(1) = 0\n"),
              "x.rec:2: a line begins with the time in milliseconds and a blank");
    EXPECT_EQ(mistakeIn(kHeader + kLine + "3600000 zov_smlGet(1) = 0: A\n" + kLine),
              "x.rec:3: KEY=\"VALUE\" must stand at 'A'");
}

TEST(Recording, NoTextIsTooMuchForTheReader) {
    const std::string text = recordingOf({simtest::kConnect, simtest::kRegister, "zov_smlGet(1) = 0: A=\"b\""});
    for (size_t i = 0; i < text.size(); ++i)
        for (const char c : {'\0', '\n', '"', '\\', '9', '('}) {
            std::string other = text;
            other[i] = c;
            const std::string mistake = mistakeIn(other);
            EXPECT_TRUE(mistake == "none" || mistake.rfind("x.rec:", 0) == 0) << mistake;
        }
}
