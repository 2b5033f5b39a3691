#include "tools/dcache/input.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using support::TextFile;
using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(Input, AFileIsReadWhole) {
    const std::string text = std::string(200000, 'x') + '\0' + "end";
    EXPECT_EQ(readInput(TextFile(text).name()), text);
    EXPECT_EQ(readInput(TextFile("").name()), "");
}

TEST(Input, AMinusIsStandardInput) {
    const TextFile file("commit\n");
    const int descriptor = open(file.name().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(dup2(descriptor, STDIN_FILENO), STDIN_FILENO);
    close(descriptor);
    EXPECT_EQ(readInput("-"), "commit\n");
    close(STDIN_FILENO);
    EXPECT_THAT([] { readInput("-"); }, ThrowsMessage<Failure>(HasSubstr("cannot read standard input: ")));
}

TEST(Input, WhatIsNoFileIsAFailureWithAReason) {
    EXPECT_THAT([] { readInput("/nonexistent"); },
                ThrowsMessage<Failure>("cannot read /nonexistent: No such file or directory"));
    EXPECT_THAT([] { readInput("/"); }, ThrowsMessage<Failure>("cannot read /: Is a directory"));
}

TEST(Input, WhatIsTooLargeIsNoScript) {
    EXPECT_THAT([] { readInput("/dev/zero"); }, ThrowsMessage<Failure>(HasSubstr("too large")));
}
