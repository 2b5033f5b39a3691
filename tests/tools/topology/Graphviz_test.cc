// Stand-ins for Graphviz's program, so that the tests need none and know what it does.
#include "tools/dcache/topology/graphviz.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/tools/RunDcache.h"
#include "tools/dcache/failure.h"

using support::runDcache;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

namespace {

/// Stands in for the PATH as long as it lives.
class PathTo {
public:
    explicit PathTo(const std::string &folder) { support::setVariable("PATH", folder); }
    ~PathTo() { support::setVariable("PATH", _before); }
    PathTo(const PathTo &) = delete;
    PathTo &operator=(const PathTo &) = delete;

private:
    const std::string _before = getenv("PATH"); // NOLINT(concurrency-mt-unsafe): no other thread looks
};

/// A folder that is the whole PATH, gone with the test.
class Graphviz : public testing::Test {
protected:
    Graphviz() {
        std::string name = "/tmp/graphviz." + std::string(6, 'X');
        _folder = mkdtemp(name.data()) != nullptr ? name : "";
    }
    ~Graphviz() override {
        unlink((_folder + "/dot").c_str());
        rmdir(_folder.c_str());
    }

    /// From now on `dot` is this script.
    void install(const std::string &script) const {
        std::ofstream(_folder + "/dot") << "#!/bin/sh\n" << script << "\n";
        chmod((_folder + "/dot").c_str(), S_IRWXU);
    }
    std::string svgFrom(const std::string &drawing) const {
        const PathTo path(_folder);
        return dcache::svgFrom(drawing);
    }
    support::Outcome drawTwin() const {
        return runDcache({"--profile", "fabric-2", "topology", "--format", "svg"}, support::Stdout::pipe,
                         {{"PATH", _folder}});
    }

private:
    std::string _folder;
};

} // namespace

TEST_F(Graphviz, ThePictureIsWhatTheProgramMakesOfTheDrawing) {
    install("echo \"<svg>$*\"; while read -r line; do echo \"$line\"; done; echo '</svg>'");
    EXPECT_EQ(svgFrom("graph {\n}\n"), "<svg>-Tsvg\ngraph {\n}\n</svg>\n");
}

TEST_F(Graphviz, LargeDrawingsAndPicturesPass) {
    install("while read -r line; do echo \"$line\"; echo \"$line\"; done; echo warning >&2");
    std::string drawing;
    for (int i = 0; i < 20000; ++i)
        drawing += "0123456789\n";
    EXPECT_EQ(svgFrom(drawing).size(), 2 * drawing.size());
}

TEST_F(Graphviz, AProgramThatDoesNotReadTheDrawingIsNoTrouble) {
    install("echo '<svg/>'");
    EXPECT_EQ(svgFrom(std::string(1000000, ' ')), "<svg/>\n");
}

TEST_F(Graphviz, WithoutTheProgramTheMessageSaysWhatToInstall) {
    EXPECT_THAT(
        [this] { svgFrom("graph {}"); },
        ThrowsMessage<dcache::Failure>(AllOf(HasSubstr("install the package graphviz"), HasSubstr("--format dot"))));
}

TEST_F(Graphviz, AProgramThatFailsIsAFailureWithItsOwnReason) {
    install("echo partly; echo 'Error: no such layout' >&2; echo more >&2; exit 3");
    EXPECT_THAT(
        [this] { svgFrom("graph {}"); },
        ThrowsMessage<dcache::Failure>("Graphviz's program \"dot\" failed with status 3: Error: no such layout"));
}

TEST_F(Graphviz, AProgramThatDiesOrDrawsNothingIsAFailure) {
    install("kill -9 $$");
    EXPECT_THAT([this] { svgFrom("graph {}"); }, ThrowsMessage<dcache::Failure>(HasSubstr("was ended by signal 9")));
    install("exit 0");
    EXPECT_THAT([this] { svgFrom("graph {}"); }, ThrowsMessage<dcache::Failure>(HasSubstr("drew nothing")));
}

TEST_F(Graphviz, TheToolPrintsThePictureAlone) {
    install("read -r line; echo \"<svg>$line</svg>\"; echo 'a warning' >&2");
    const auto run = drawTwin();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "<svg>graph fabric {</svg>\n");
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(Graphviz, TheToolFailsCleanlyWithoutAPicture) {
    const auto missing = drawTwin();
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.out, IsEmpty());
    EXPECT_THAT(missing.err, testing::StartsWith("dcache: an SVG picture takes Graphviz"));
    install("echo partly; exit 1");
    const auto failing = drawTwin();
    EXPECT_EQ(failing.exitCode, 1);
    EXPECT_THAT(failing.out, IsEmpty());
    EXPECT_EQ(failing.err, "dcache: Graphviz's program \"dot\" failed with status 1\n");
}
