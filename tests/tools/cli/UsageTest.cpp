// What holds for the program as a whole: arguments, exit status, what goes where.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/cli/RunProgram.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

TEST(Usage, HelpIsAResult) {
    for (std::vector<std::string> const & arguments :
         std::vector<std::vector<std::string>>{{"--help"},
                                               {"-h"},
                                               {"translate", "--help"},
                                               {"inspect", "-h"},
                                               {"schema", "--help"},
                                               {"generate", "--help"},
                                               {"follow", "--help"},
                                               {"check", "--help"},
                                               {"call", "--help"}}) {
        ProgramRun const run = runProgram(arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.output, HasSubstr("Usage: topology-sync"));
        EXPECT_THAT(run.messages, IsEmpty());
    }
}

TEST(Usage, HelpNamesWhatThereIs) {
    std::string const help = runProgram({"--help"}).output;
    for (char const * word :
         {"translate", "follow", "check", "generate", "inspect", "call", "schema", "--version", "--help"}) {
        EXPECT_THAT(help, HasSubstr(word));
    }
    std::string const translate = runProgram({"translate", "--help"}).output;
    for (char const * word : {"FILE", "--attach", "--format", "--from", "--network", "--output"}) {
        EXPECT_THAT(translate, HasSubstr(word));
    }
}

TEST(Usage, VersionIsAResult) {
    ProgramRun const run = runProgram({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, MatchesRegex("topology-sync [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_THAT(run.messages, IsEmpty());
}

TEST(Usage, BadUsageSaysWhatIsWrongAndWhereHelpIs) {
    struct Case {
        std::vector<std::string> arguments;
        char const * message;
        char const * command;
    };
    for (Case const & bad :
         std::vector<Case>{{{}, "subcommand", "topology-sync"},
                           {{"sync", "x"}, "sync", "topology-sync"},
                           {{"--nonsense"}, "--nonsense", "topology-sync"},
                           {{"translate"}, "FILE", "topology-sync translate"},
                           {{"translate", kFabric, "another"}, "another", "topology-sync translate"},
                           {{"translate", kFabric, "--format", "jpeg"}, "jpeg", "topology-sync translate"},
                           {{"translate", kFabric, "--format"}, "--format", "topology-sync translate"},
                           {{"translate", kFabric, "--attach", "never"}, "never", "topology-sync translate"},
                           {{"translate", kFabric, "--from", "v3"}, "v3", "topology-sync translate"},
                           {{"translate", kFabric, "--output"}, "--output", "topology-sync translate"},
                           {{"translate", kFabric, "--network"}, "--network", "topology-sync translate"},
                           {{"translate", kFabric, "--bogus"}, "--bogus", "topology-sync translate"},
                           {{"follow"}, "FILE", "topology-sync follow"},
                           {{"follow", kFabric, "a", "b"}, "b", "topology-sync follow"},
                           {{"follow", kFabric, "--attach", "never"}, "never", "topology-sync follow"},
                           {{"check"}, "FILE", "topology-sync check"},
                           {{"check", kFabric, "--format", "svg"}, "svg", "topology-sync check"},
                           {{"inspect", "--format", "xml"}, "xml", "topology-sync inspect"},
                           {{"inspect", "a", "b"}, "b", "topology-sync inspect"},
                           {{"schema"}, "MODEL", "topology-sync schema"},
                           {{"schema", "v4"}, "v4", "topology-sync schema"}}) {
        ProgramRun const run = runProgram(bad.arguments);
        EXPECT_EQ(run.status, 2) << bad.message;
        EXPECT_THAT(run.output, IsEmpty()) << bad.message;
        EXPECT_THAT(run.messages, StartsWith(std::string(bad.command) + ": "));
        EXPECT_THAT(run.messages, HasSubstr(bad.message));
        EXPECT_THAT(run.messages, HasSubstr("\nSee " + std::string(bad.command) + " --help\n"));
    }
}

std::vector<std::vector<std::string>> writers() {
    return {{"--help"},
            {"--version"},
            {"inspect"},
            {"schema", "v3"},
            {"generate", "--hosts", "300"},
            {"follow", kFabric},
            {"check", kFabric},
            {"check", "--rules"},
            {"translate", kFabric},
            {"translate", "--format", "svg", kFabric}};
}

TEST(Usage, OutputThatCannotBeWrittenIsAnError) {
    for (auto const & arguments : writers()) {
        ProgramRun const full = runProgram(arguments, {.outputFile = "/dev/full"});
        EXPECT_EQ(full.status, 2);
        EXPECT_EQ(full.messages, "topology-sync: cannot write to standard output: No space left on device\n");
        ProgramRun const closed = runProgram(arguments, {.outputIsClosed = true});
        EXPECT_EQ(closed.status, 2);
        EXPECT_EQ(closed.messages, "topology-sync: cannot write to standard output: Bad file descriptor\n");
    }
}

TEST(Usage, AReaderThatHasGoneIsNoError) {
    for (auto const & arguments : writers()) {
        ProgramRun const run = runProgram(arguments, {.outputIsClosedPipe = true});
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.messages, IsEmpty());
    }
}

TEST(Usage, ColoursAreForTerminalsWhoseUsersWantThem) {
    std::vector<std::string> const environment{"TERM=xterm", "NO_COLOR="};
    for (std::vector<std::string> const & arguments :
         std::vector<std::vector<std::string>>{{"translate", "--format", "text", kFabric},
                                               {"translate", "--format", "summary", kFabric},
                                               {"inspect"}}) {
        std::string const escape = "\x1b[";
        EXPECT_THAT(runProgram(arguments, {.environment = environment, .outputIsTerminal = true}).output,
                    HasSubstr(escape));
        EXPECT_THAT(
            runProgram(arguments, {.environment = {"TERM=xterm", "NO_COLOR=1"}, .outputIsTerminal = true})
                .output,
            ::testing::Not(HasSubstr(escape)));
        EXPECT_THAT(
            runProgram(arguments, {.environment = {"TERM=dumb", "NO_COLOR="}, .outputIsTerminal = true})
                .output,
            ::testing::Not(HasSubstr(escape)));
        EXPECT_THAT(runProgram(arguments, {.environment = environment}).output,
                    ::testing::Not(HasSubstr(escape)));
    }
    for (char const * format : {"json", "dot", "svg"}) {
        EXPECT_THAT(runProgram({"translate", "--format", format, kFabric},
                               {.environment = environment, .outputIsTerminal = true})
                        .output,
                    ::testing::Not(HasSubstr("\x1b[")))
            << format;
    }
}

TEST(Usage, ColoursChangeNothingButColours) {
    std::vector<std::string> const arguments{"translate", "--format", "text", kFabric};
    std::string coloured =
        runProgram(arguments, {.environment = {"TERM=xterm", "NO_COLOR="}, .outputIsTerminal = true}).output;
    for (std::size_t at; (at = coloured.find('\x1b')) != std::string::npos;) {
        coloured.erase(at, coloured.find('m', at) - at + 1);
    }
    std::erase(coloured, '\r');  // The terminal's own.
    EXPECT_EQ(coloured, runProgram(arguments).output);
}

}  // namespace
}  // namespace TopologyTools
