// What check prints, and its exit status.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/tools/cli/RunProgram.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string const kHost = R"({"host":{"a":{"port":{"p":{"type":"port"},"q":{}}}},)"
                          R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/q":true}}}})";

TEST(Check, FindsNothingWhereNothingDiffers) {
    ProgramRun const run = runProgram({"check", kFabric});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "The version-3 model is what the version-2 model calls for.\n");
    EXPECT_EQ(run.messages, "");
    json const report = json::parse(runProgram({"check", "--format", "json", kFabric}).output);
    EXPECT_EQ(report, json::parse(R"({"faults":0,"explained":0,"rules":{},"differences":[]})"));
}

TEST(Check, TellsByRuleWhatDiffers) {
    TemporaryFolder const folder;
    std::string const file = folder.file("a.json", kHost);
    ProgramRun const run = runProgram({"check", "--attach", "after", file});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.output,
        "0 faults; 1 difference follows from how the translator works.\n"
        "\n"
        "type-unwritten: The type of a port base is not written when the port base is made (1 difference)\n"
        "  Making a version-3 port, port group or MLAG port writes no type, and the first translation of a\n"
        "  whole topology writes none either; a type follows from the next change of the version-2 type, or\n"
        "  when another version-2 object takes the place of the one that is followed.\n"
        "  /host/a/port/p/type\n"
        "    present \"unknown\", called for \"port\", since FILE was loaded\n"
        "    to close: Write /host/a/port/p/type with another value and back.\n"
        "      {\"op\":\"remove\",\"path\":\"/host/a/port/p/type\"}\n"
        "      {\"op\":\"add\",\"path\":\"/host/a/port/p/type\",\"value\":\"port\"}\n");
}

TEST(Check, AppliesChangesAndNumbersThem) {
    TemporaryFolder const folder;
    std::string const file = folder.file("a.json", kHost);
    RunOptions const changes{.input = "\n"
                                      R"({"op":"remove","path":"/host/a/port/q"})"
                                      "\n"};
    ProgramRun const run = runProgram({"check", "--format=json", file, "-"}, changes);
    EXPECT_EQ(run.status, 0);
    json const report = json::parse(run.output);
    EXPECT_EQ(report.at("rules"), json::parse(R"({"destination-left-behind":1})"));
    json difference = report.at("differences").at(0);
    EXPECT_THAT(difference.at("why").get<std::string>(), StartsWith("A destination is removed under"));
    difference.erase("why");
    EXPECT_EQ(difference, json::parse(R"({
        "path": "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q", "present": true,
        "verdict": "explained", "rule": "destination-left-behind", "since": 2,
        "close": "Remove /edge/~1host~1a~1port~1p and add it again.",
        "closingLines": [{"op": "remove", "path": "/edge/~1host~1a~1port~1p"},
                         {"op": "add", "path": "/edge/~1host~1a~1port~1p", "value": {}}]})"));
}

TEST(Check, ClosesWhatItSaysItCloses) {
    TemporaryFolder const folder;
    std::string const file = folder.file("a.json", kHost);
    std::string lines = R"({"op":"remove","path":"/host/a/port/q"})"
                        "\n";
    json const report =
        json::parse(runProgram({"check", "--format=json", file, "-"}, {.input = lines}).output);
    for (json const & line : report.at("differences").at(0).at("closingLines")) lines += line.dump() + '\n';
    EXPECT_THAT(runProgram({"check", file, "-"}, {.input = lines}).output,
                StartsWith("The version-3 model is"));
}

TEST(Check, StopsAtABadLineOrGoesOn) {
    TemporaryFolder const folder;
    std::string const file = folder.file("a.json", kHost);
    RunOptions const changes{.input = "nonsense\n"
                                      R"({"op":"remove","path":"/host/a/port/p"})"
                                      "\n"};
    ProgramRun const stopped = runProgram({"check", file, "-"}, changes);
    EXPECT_EQ(stopped.status, 2);
    EXPECT_EQ(stopped.output, "");
    EXPECT_THAT(stopped.messages, StartsWith("<stdin>:1:1: "));
    ProgramRun const wentOn = runProgram({"check", "--keep-going", file, "-"}, changes);
    EXPECT_EQ(wentOn.status, 2);
    EXPECT_THAT(wentOn.output, HasSubstr("edge-left-behind"));
    EXPECT_THAT(wentOn.output, HasSubstr("since line 2"));
    EXPECT_EQ(wentOn.messages, stopped.messages);
}

TEST(Check, RefusesToReadStandardInputTwice) {
    ProgramRun const run = runProgram({"check", "-", "-"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.messages, "topology-sync: FILE and CHANGES cannot both be standard input\n");
}

}  // namespace
}  // namespace TopologyTools
