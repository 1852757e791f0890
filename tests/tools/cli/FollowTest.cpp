#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "tests/support/SourceTree.h"
#include "tests/tools/cli/RunProgram.h"
#include "tools/cli/InputFile.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"
#include "tools/follow/FollowVersion3.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// What a reader has who applies all operations of an output; expects their causes to be lines, in order.
json replayed(std::string const & output) {
    std::istringstream lines(output);
    json document;
    std::uint64_t last = 0;
    for (std::string line; std::getline(lines, line);) {
        json const operation = json::parse(line);
        document = document.patch(json::array({operation}));
        EXPECT_GE(operation.at("cause"), last);
        last = operation.at("cause");
    }
    return document;
}

json freshlyTranslated(std::string const & document, std::string const & attach = "before") {
    ProgramRun const run = runProgram({"translate", "--attach", attach, "-"}, {.input = document});
    EXPECT_EQ(run.status, 0) << run.messages;
    return json::parse(run.output);
}

std::string addition(std::string const & path, json const & value) {
    return json{{"op", "add"}, {"path", path}, {"value", value}}.dump() + '\n';
}

TEST(Follow, BeginsWithTheDocumentThatTranslatePrints) {
    for (char const * attach : {"before", "after"}) {
        ProgramRun const run = runProgram({"follow", "--attach", attach, "--verify", kFabric}, {.input = ""});
        EXPECT_EQ(run.status, 0) << run.messages;
        json const line = json::parse(run.output);
        EXPECT_EQ(line, (json{{"op", "replace"},
                              {"path", ""},
                              {"value", freshlyTranslated(fileBytes(kFabric), attach)},
                              {"cause", 0}}));
        EXPECT_THAT(run.output, StartsWith(R"({"op":"replace","path":"","value":{"host":)"));
    }
    EXPECT_EQ(runProgram({"follow", "--from", "v2", "-", "/dev/null"}, {.input = "{}"}).output,
              R"({"op":"replace","path":"","value":{},"cause":0})"
              "\n");
}

TEST(Follow, TellsOfEachOperationWhichLineCausedIt) {
    std::string const changes = "\n" + addition("/host/x", json::object()) + "\r\n" +
                                R"({"op":"test","path":"/host/x","value":{}})"
                                "\r\n \t\n" +
                                addition("/host/x/hostname", "X") + R"({"op":"remove","path":"/host/x"})";
    std::string const expected = R"({"op":"replace","path":"","value":{},"cause":0}
{"op":"add","path":"/host","value":{},"cause":2}
{"op":"add","path":"/host/x","value":{},"cause":2}
{"op":"add","path":"/host/x/hostname","value":"X","cause":6}
{"op":"remove","path":"/host/x","cause":7}
{"op":"remove","path":"/host","cause":7}
)";
    TemporaryFolder const folder;
    std::string const empty = folder.file("v2.json", "{\"host\":{}}");
    EXPECT_EQ(runProgram({"follow", empty}, {.input = changes}).output, expected);
    EXPECT_EQ(runProgram({"follow", empty, "-"}, {.input = changes}).output, expected);
    EXPECT_EQ(runProgram({"follow", "--verify", empty, folder.file("changes", changes)}).output, expected);
    EXPECT_EQ(runProgram({"follow", "--keep-going", "-", folder.file("changes", changes)},
                         {.input = "{\"host\":{}}"})
                  .output,
              expected);
}

TEST(Follow, ABadLineEndsIt) {
    std::string const changes = addition("/host/x", json::object()) +
                                R"({"op":"add","path":"/host/x/port/p/type","value":"lagg"})"
                                "\n" +
                                addition("/host/y", json::object());
    ProgramRun const run = runProgram({"follow", kFabric}, {.input = changes});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.messages, "<stdin>:2:20: /host/x/port/p: expected a PortV2; found nothing\n");
    json const document = replayed(run.output);
    EXPECT_TRUE(document.at("host").contains("x"));
    EXPECT_FALSE(document.at("host").contains("y"));
}

TEST(Follow, KeepsGoingWhenTold) {
    std::string changes = addition("/host/x", {{"port", {{"p", json::object()}}}}) + "nonsense\n" +
                          addition("/host/x/port/p/type", "lagg") + addition("/host/x/port/p/type", "port") +
                          R"({"op":"test","path":"/host/x/port/p/type","value":"mlag"})";
    ProgramRun const run = runProgram({"follow", "--keep-going", "--verify", kFabric}, {.input = changes});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.messages,
                AllOf(StartsWith("<stdin>:2:"),
                      HasSubstr("\n<stdin>:3:50: /host/x/port/p/type: expected one of unknown, port, "),
                      HasSubstr("\n<stdin>:5:"), HasSubstr("test failed")));
    EXPECT_EQ(replayed(run.output).at("host").at("x").at("port").at("p").at("type"), "port");
    EXPECT_THAT(run.output,
                ::testing::EndsWith(R"({"op":"add","path":"/host/x/port/p/type","value":"port","cause":4})"
                                    "\n"));
}

TEST(Follow, SaysWhatItCannotRead) {
    TemporaryFolder const folder;
    ProgramRun run = runProgram({"follow", kFabric, folder.path("missing")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.messages, folder.path("missing") + ": cannot be read: No such file or directory\n");
    run = runProgram({"follow", "-"}, {.input = "{}"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.messages, "topology-sync: FILE and CHANGES cannot both be standard input\n");
    run = runProgram({"follow", folder.file("v2.json", "{\"host\": 7}")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.messages, HasSubstr("v2.json:1:10: /host: expected an object"));
}

TEST(Follow, AnswersEachLineBeforeTheNext) {
    RunningProgram program({"follow", kFabric});
    EXPECT_THAT(program.readLine(), ::testing::Optional(StartsWith(R"({"op":"replace","path":"","value":)")));
    for (int i = 1; i <= 20; ++i) {
        std::string const number = std::to_string(i);
        program.write(addition("/host/leaf-1/hostname", number));
        EXPECT_EQ(program.readLine(), R"({"op":"replace","path":"/host/leaf-1/hostname","value":")" + number +
                                          R"(","cause":)" + number + '}');
    }
    ProgramRun const run = program.wait();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.messages, IsEmpty());
}

TEST(Follow, AnInterruptIsTheEndOfTheChanges) {
    for (int const number : {SIGINT, SIGTERM}) {
        RunningProgram program({"follow", kFabric});
        program.readLine();
        program.write(addition("/host/leaf-1/hostname", "X") + R"({"op":"remove",)");
        EXPECT_THAT(program.readLine(), ::testing::Optional(HasSubstr("\"cause\":1}")));
        program.signal(number);
        EXPECT_EQ(program.readLine(), std::nullopt);
        ProgramRun const run = program.wait();
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.messages, IsEmpty());
    }
}

TEST(Follow, AnInterruptDoesNotHideBadLines) {
    RunningProgram program({"follow", "--keep-going", kFabric});
    program.readLine();
    program.write("bad\n" + addition("/host/leaf-1/hostname", "X"));
    program.readLine();
    program.signal(SIGINT);
    ProgramRun const run = program.wait();
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.messages, StartsWith("<stdin>:1:"));
}

TEST(Follow, EndsQuietlyWhenNobodyReadsAnyMore) {
    RunningProgram program({"follow", kFabric});
    program.readLine();
    program.closeOutput();
    program.write(addition("/host/leaf-1/hostname", "X"));
    ProgramRun const run = program.wait();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.messages, IsEmpty());
}

TEST(Follow, TakesALineOfAnyLength) {
    json ports = json::object();
    for (int i = 0; i < 5000; ++i) ports["eth-" + std::to_string(i)] = {{"type", "port"}};
    std::string const changes =
        addition("/host/big", {{"port", ports}, {"hostname", std::string(1000000, 'x')}});
    ProgramRun const run = runProgram({"follow", "--verify", kFabric}, {.input = changes});
    EXPECT_EQ(run.status, 0) << run.messages;
    EXPECT_EQ(replayed(run.output.substr(0, run.output.find('\n'))).at("host").size(), 20u);
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1 + 1 + 1 + 5000 + 1 + 5000);
}

// Random changes of all kinds to a small topology, many of which do not fit.
std::string randomChanges(unsigned seed, unsigned count) {
    std::mt19937 random(seed);
    auto const pick = [&](std::vector<std::string> const & words) { return words[random() % words.size()]; };
    auto const name = [&] { return pick({"p", "q", "r"}); };
    auto const host = [&] { return "/host/" + pick({"a", "b", "c"}); };
    auto const kind = [&] { return pick({"port", "portGroup", "mlag"}); };
    auto const base = [&] { return host() + '/' + kind() + '/' + name(); };
    auto const of = [&](std::string const & k) { return host() + '/' + k + '/' + name(); };
    auto const edge = [&] { return "/edge/" + escapeJsonPointerToken(base()); };
    auto const quoted = [](std::string const & text) { return '"' + text + '"'; };
    std::string lines;
    for (unsigned i = 0; i < count; ++i) {
        std::string path;
        std::string value;
        switch (random() % 20) {
        case 0:
            path = host(),
            value = pick({"{}", R"({"hostname":"H"})", R"({"port":{"p":{"type":"port"},"q":{}}})"});
            break;
        case 1: path = host() + "/hostname", value = pick({"\"\"", "\"x\"", "\"y\""}); break;
        case 2: path = host() + "/mlagDomainId", value = pick({"\"\"", "\"d\""}); break;
        case 3:
            path = host() + "/mlagSystemId", value = pick({"\"00:00:00:00:00:00\"", "\"02:00:00:00:00:01\""});
            break;
        case 4: path = host() + "/mlagState", value = pick({"\"active\"", "\"unknown\""}); break;
        case 5: path = host() + "/mlagPeerLink", value = quoted(base()); break;
        case 6: path = "/localhost", value = quoted(host()); break;
        case 7:
        case 8: path = of("port"), value = pick({"{}", R"({"type":"port"})"}); break;
        case 9: path = of("portGroup"), value = R"({"memberPort":{"p":)" + quoted(of("port")) + "}}"; break;
        case 10:
            path = of("mlag"),
            value = R"({"secondaryName":"s","localPortGroup":)" + quoted(of("portGroup")) + '}';
            break;
        case 11: path = base() + "/type", value = pick({"\"port\"", "\"unknown\""}); break;
        case 12: path = of("port") + "/portGroup", value = quoted(of("portGroup")); break;
        case 13: path = of("portGroup") + "/memberPort/" + name(), value = quoted(of("port")); break;
        case 14: path = of("portGroup") + "/mlag", value = quoted(of("mlag")); break;
        case 15: path = of("mlag") + "/localPortGroup", value = quoted(of("portGroup")); break;
        case 16: path = host() + "/mlagRaw/" + name(), value = quoted(of("mlag")); break;
        case 17: path = host() + "/logicalPort/" + name(), value = pick({quoted(base()), "null"}); break;
        case 18:
            path = edge(), value = R"({"toPort":{)" + quoted(base()) + ":true," + quoted(base()) + ":false}}";
            break;
        case 19:
            path = edge() + "/toPort/" + escapeJsonPointerToken(base()), value = pick({"true", "false"});
            break;
        }
        std::string const op = pick({"add", "add", "add", "replace", "remove"});
        if (op == "remove" && random() % 12 == 0) path = path.substr(0, path.rfind('/'));
        lines += R"({"op":")" + op + R"(","path":")" + path + '"' +
                 (op == "remove" ? "" : ",\"value\":" + value) + "}\n";
    }
    return lines;
}

TEST(Follow, VerifiesRandomChanges) {
    TemporaryFolder const folder;
    for (unsigned seed = 1; seed <= 3; ++seed) {
        std::string const file = folder.file("changes", randomChanges(seed, 2000));
        for (char const * attach : {"before", "after"}) {
            ProgramRun const run =
                runProgram({"follow", "--verify", "--keep-going", "--attach", attach, "--from=v2", "-", file},
                           {.input = R"({"host":{"a":{"port":{"p":{}}},"b":{"portGroup":{"q":{}}}}})"});
            ASSERT_EQ(run.status, 2) << run.messages;  // Many lines do not fit; a fault would be 1.
            EXPECT_GT(std::count(run.output.begin(), run.output.end(), '\n'), 500);
            json const first = json::parse(run.output.substr(0, run.output.find('\n')));
            EXPECT_EQ(first.at("cause"), 0);
        }
    }
}

// Follows as it should, but does not hear of what happens to a host.
Vel::Ptr<Vel::PtrInterface::NotifieeConst> followDeaf(Vel::GenericIf const & object,
                                                      ObjectFollower & follower) {
    auto const reactor = followVersion3(object, follower);
    reactor->hasNotificationActiveIs(object.type() != &NetworkTopologyV3::Host::_velType);
    return reactor;
}

TEST(Follow, VerifyEndsItWithTheFirstLineWhoseChangesAreNotAllTold) {
    TemporaryFolder const folder;
    std::string const topology = folder.file("v2.json", R"({"host":{"a":{}}})");
    std::string const changes =
        folder.file("changes", addition("/host/b", json::object()) + addition("/host/a/hostname", "A") +
                                   addition("/host/c", json::object()));
    CLI::App program;
    Subcommand const command = followCommand(program, followDeaf);
    program.parse("follow --verify " + topology + ' ' + changes);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    int const status = command.run();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "topology-sync: internal fault: after line 2, the output lacks "
              R"({"op":"add","path":"/host/a/hostname","value":"A"})"
              "\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              R"({"op":"replace","path":"","value":{"host":{"a":{}}},"cause":0})"
              "\n"
              R"({"op":"add","path":"/host/b","value":{},"cause":1})"
              "\n");
    EXPECT_EQ(status, 1);
}

TEST(Follow, SaysTheSameEveryTime) {
    std::string const changes = randomChanges(7, 2000);
    RunOptions const options{.input = changes};
    ProgramRun const run = runProgram({"follow", "--keep-going", kFabric}, options);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(runProgram({"follow", "--keep-going", kFabric}, options).output, run.output);
    }
}

// Everything of a topology but its edges, and then those one by one, gives what all at once gives.
void expectEdgesOneByOne(std::string const & file) {
    auto const status = NetworkTopology::StatusV2::StatusV2Is();
    readTopology(readInput(file), {}).fill(*status);
    json rest = json(documentTree(Vel::GenericIf::of(status)));
    std::string const whole = rest.dump();
    std::string edges;
    for (auto const & [from, edge] : rest.at("edge").items()) {
        std::string const path = "/edge/" + escapeJsonPointerToken(from);
        edges += addition(path, json::object());
        for (auto const & [to, flag] : edge.at("toPort").items()) {
            edges += addition(path + "/toPort/" + escapeJsonPointerToken(to), flag);
        }
    }
    rest.erase("edge");
    TemporaryFolder const folder;
    ProgramRun const run = runProgram({"follow", folder.file("rest.json", rest.dump())}, {.input = edges});
    EXPECT_EQ(run.status, 0) << run.messages;
    EXPECT_EQ(replayed(run.output), freshlyTranslated(whole));
}

TEST(Follow, EdgesOneByOneLeadToTheSameAsAllAtOnce) {
    expectEdgesOneByOne(kFabric);
    expectEdgesOneByOne(TestSupport::sourcePath("examples/abilene.graphml"));
}

TEST(Follow, EdgesOfThePublishedTopologiesToo) {
    std::filesystem::path const published = TestSupport::sourcePath("../shared/data");
    if (!std::filesystem::exists(published)) GTEST_SKIP() << "no published topologies beside this repository";
    std::size_t translatable = 0;
    for (auto const & entry : std::filesystem::recursive_directory_iterator(published)) {
        if (!entry.is_regular_file()) continue;
        if (runProgram({"translate", entry.path()}).status != 0) continue;
        SCOPED_TRACE(entry.path());
        expectEdgesOneByOne(entry.path());
        ++translatable;
    }
    EXPECT_GE(translatable, 7u);
}

}  // namespace
}  // namespace TopologyTools
