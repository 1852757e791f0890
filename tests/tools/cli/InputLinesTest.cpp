#include "tools/cli/InputLines.h"

#include <csignal>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/tools/cli/RunProgram.h"
#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> linesOf(std::string const & bytes) {
    TemporaryFolder const folder;
    Interruption const interruption;
    InputLines lines(folder.file("input", bytes), interruption);
    std::vector<std::string> all;
    while (auto const line = lines.next()) {
        all.emplace_back(*line);
        EXPECT_EQ(lines.number(), all.size());
    }
    EXPECT_FALSE(lines.next());
    return all;
}

TEST(InputLines, AreWhatLineFeedsEnd) {
    EXPECT_THAT(linesOf(""), IsEmpty());
    EXPECT_THAT(linesOf("\n"), ElementsAre(""));
    EXPECT_THAT(linesOf("a"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\n\n b\r\nc\0d"s), ElementsAre("a", "", " b\r", "c\0d"s));
}

TEST(InputLines, MayBeLongerThanWhatIsReadAtOnce) {
    std::string const a(200000, 'a');
    std::string const b(65536, 'b');
    EXPECT_THAT(linesOf(a + '\n' + b + '\n' + a), ElementsAre(a, b, a));
}

// Standard input as a pipe into which the test writes.
class PipeLines : public ::testing::Test {
protected:
    PipeLines() : standardInput_(dup(STDIN_FILENO)) {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        end_ = ends[1];
    }
    ~PipeLines() override {
        dup2(standardInput_, STDIN_FILENO);
        close(standardInput_);
        close(end_);
    }
    void write(std::string const & bytes) const {
        EXPECT_EQ(::write(end_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    int const standardInput_;
    int end_;
    Interruption const interruption_;
    InputLines lines_{"-", interruption_};
};

TEST_F(PipeLines, ComeAsSoonAsTheyAreThere) {
    EXPECT_EQ(lines_.name(), "<stdin>");
    write("first\nsec");
    EXPECT_EQ(lines_.next(), "first");
    write("ond\n");
    EXPECT_EQ(lines_.next(), "second");
}

TEST_F(PipeLines, EndWithASignal) {
    write("first\nsecond\nthi");
    EXPECT_EQ(lines_.next(), "first");
    raise(SIGINT);
    EXPECT_FALSE(lines_.next());
}

TEST_F(PipeLines, EndWithASignalDuringTheWait) {
    pid_t const child = fork();
    if (child == 0) {
        usleep(100000);
        kill(getppid(), SIGTERM);
        _exit(0);
    }
    write("half");
    EXPECT_FALSE(lines_.next());
    EXPECT_TRUE(interruption_.hasCome());
}

TEST(Interruption, LeavesIgnoredSignalsIgnored) {
    auto const before = std::signal(SIGINT, SIG_IGN);
    {
        Interruption const interruption;
        raise(SIGINT);
        EXPECT_FALSE(interruption.hasCome());
    }
    EXPECT_EQ(std::signal(SIGINT, before), SIG_IGN);
}

TEST(Interruption, ASecondSignalEndsTheProcess) {
    EXPECT_EXIT(
        {
            Interruption const interruption;
            raise(SIGINT);
            if (!interruption.hasCome()) _exit(1);
            raise(SIGINT);
        },
        ::testing::KilledBySignal(SIGINT), "");
}

}  // namespace
}  // namespace TopologyTools
