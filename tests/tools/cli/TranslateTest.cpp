// What translate does with files: formats, options, and what it says of files that it cannot use.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/SourceTree.h"
#include "tests/tools/cli/RunProgram.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::string example(std::string const & name) { return TestSupport::sourcePath("examples/") + name; }

// Published topologies that lie beside the repository; they are not part of it.
std::string const kSharedData = TestSupport::sourcePath("../shared/data/");

json translated(std::vector<std::string> const & arguments, RunOptions const & options = {}) {
    std::vector<std::string> all{"translate"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ProgramRun const run = runProgram(all, options);
    EXPECT_EQ(run.status, 0) << run.messages;
    return json::parse(run.output);
}

struct Counts {
    std::size_t hosts = 0;
    std::size_t ports = 0;
    std::size_t groups = 0;
    std::size_t members = 0;
    std::size_t edges = 0;
    std::size_t destinations = 0;

    bool operator==(Counts const &) const = default;
    friend void PrintTo(Counts const & counts, std::ostream * out) {
        *out << counts.hosts << " hosts, " << counts.ports << " ports, " << counts.groups << " groups, "
             << counts.members << " members, " << counts.edges << " edges, " << counts.destinations
             << " destinations";
    }
};

// Counted in the document, not by the program.
Counts counts(json const & document) {
    Counts counts;
    json const empty = json::object();
    for (json const & host : document.value("host", empty)) {
        ++counts.hosts;
        counts.ports += host.value("port", empty).size();
        for (json const & group : host.value("portGroup", empty)) {
            ++counts.groups;
            counts.members += group.value("memberPort", empty).size();
        }
    }
    for (json const & edge : document.value("edge", empty)) {
        ++counts.edges;
        counts.destinations += edge.value("toPort", empty).size();
    }
    return counts;
}

// Every path that stands anywhere in the document leads to something in it.
void expectReferencesLead(json const & document) {
    for (auto const & [from, edge] : document.at("edge").items()) {
        EXPECT_TRUE(document.contains(json::json_pointer(from))) << from;
        for (auto const & [to, flag] : edge.at("toPort").items()) {
            EXPECT_TRUE(document.contains(json::json_pointer(to))) << to;
            EXPECT_EQ(flag, true);
        }
    }
    for (json const & host : document.at("host")) {
        for (json const & port : host.value("port", json::object())) {
            if (port.contains("portGroup")) {
                EXPECT_TRUE(document.contains(json::json_pointer(port.at("portGroup").get<std::string>())));
            }
        }
    }
}

TEST(Translate, GivesTheHostsOfADocument) {
    json const input = json::parse(fileBytes(example("dual-homed-fabric.json")));
    json const output = translated({example("dual-homed-fabric.json")});
    EXPECT_EQ(counts(output), counts(input));
    EXPECT_EQ(output.at("localhost"), input.at("localhost"));
    for (auto const & [name, host] : input.at("host").items()) {
        json const & made = output.at("host").at(name);
        EXPECT_EQ(made.at("hostname"), host.at("hostname"));
        for (char const * attribute :
             {"mlagSystemId", "mlagDomainId", "mlagState", "mlagPeerLink", "port", "mlagRaw"}) {
            EXPECT_EQ(made.contains(attribute), host.contains(attribute)) << name << ' ' << attribute;
            EXPECT_EQ(made.value(attribute, json()), host.value(attribute, json()))
                << name << ' ' << attribute;
        }
        EXPECT_EQ(made.contains("hostnameAddedByOwner"), false);
    }
    EXPECT_EQ(output.at("edge"), input.at("edge"));
    expectReferencesLead(output);
}

TEST(Translate, AttachedAfterwardsWritesNoTypes) {
    json const before = translated({"--attach", "before", example("dual-homed-fabric.json")});
    EXPECT_EQ(before, translated({example("dual-homed-fabric.json")}));
    json after = translated({"--attach=after", example("dual-homed-fabric.json")});
    EXPECT_NE(after, before);
    for (json & host : after.at("host")) {
        for (char const * kind : {"port", "portGroup", "mlag"}) {
            if (!host.contains(kind)) continue;
            for (json & port : host.at(kind)) {
                EXPECT_FALSE(port.contains("type"));
                port["type"] = kind;
            }
        }
    }
    EXPECT_EQ(after, before);
}

TEST(Translate, ReadsStandardInput) {
    std::string const bytes = fileBytes(example("abilene.graphml"));
    ProgramRun const fromFile = runProgram({"translate", example("abilene.graphml")});
    ProgramRun const fromInput = runProgram({"translate", "-"}, {.input = bytes});
    EXPECT_EQ(fromInput.status, 0);
    EXPECT_EQ(fromInput.output, fromFile.output);

    ProgramRun const bad = runProgram({"translate", "-"}, {.input = "{\"host\": 7}"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_THAT(bad.messages, StartsWith("<stdin>:1:10: /host: "));
}

TEST(Translate, WritesToAFile) {
    TemporaryFolder const folder;
    std::string const path = folder.file("out.json", std::string(100000, 'x'));
    ProgramRun const run = runProgram({"translate", "--output", path, example("abilene.graphml")});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(fileBytes(path), runProgram({"translate", "--output", "-", example("abilene.graphml")}).output);

    // A fault in the input costs no older result.
    std::string const before = fileBytes(path);
    EXPECT_EQ(runProgram({"translate", "--output", path, "-"}, {.input = "{\"host\": 7}"}).status, 2);
    EXPECT_EQ(fileBytes(path), before);
}

TEST(Translate, SaysWhyAFileCannotBeWritten) {
    TemporaryFolder const folder;
    std::vector<std::pair<std::string, std::string>> const cases{
        {folder.path(), "Is a directory"},
        {folder.path("no/such"), "No such file or directory"},
        {"/dev/full", "No space left on device"},
    };
    for (auto const & [path, why] : cases) {
        ProgramRun const run = runProgram({"translate", "--output", path, example("abilene.graphml")});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.messages, "topology-sync: cannot write to " + path + ": " + why + "\n");
    }
}

TEST(Translate, SaysWhyAFileCannotBeRead) {
    TemporaryFolder const folder;
    std::string const unrecognised = "format not recognised; expected a version-2 document, RFC 8345, "
                                     "Graphviz or GraphML, or --from to name the format\n";
    std::vector<std::pair<std::string, std::string>> const cases{
        {folder.path("missing"), "cannot be read: No such file or directory\n"},
        {folder.path(), "cannot be read: Is a directory\n"},
        {folder.file("empty", ""), "is empty; expected a topology\n"},
        {folder.file("binary", "\x7f"
                               "ELF\x02\x01\x01\0\0\0\xff\xfe"s),
         unrecognised},
        {folder.file("prose", "Dear reader,\n"), unrecognised},
        {folder.file("blank", " \n\n"), unrecognised},
    };
    for (auto const & [path, why] : cases) {
        ProgramRun const run = runProgram({"translate", path});
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_EQ(run.messages, path + ": " + why);
    }
}

TEST(Translate, ADocumentIsLoadedWholeOrNotAtAll) {
    std::string const text = R"({
  "host": {
    "a": {"port": {"p": {"type": "port"}}},
    "b": {"port": {"p": {"type": "lagg"}}}
  }
})";
    for (char const * attach : {"before", "after"}) {
        ProgramRun const run = runProgram({"translate", "--attach", attach, "-"}, {.input = text});
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_THAT(run.messages, StartsWith("<stdin>:4:34: /host/b/port/p/type: "));
        EXPECT_THAT(run.messages, HasSubstr("\"lagg\""));
    }
}

TEST(Translate, SaysWhatIsWrongWithAByteOrderMark) {
    for (char const * document : {"{\"host\":{}}", "{\"networks\":{}}"}) {
        ProgramRun const run =
            runProgram({"translate", "-"}, {.input = std::string("\xef\xbb\xbf") + document});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.messages,
                  "<stdin>:1:1: byte order mark; expected JSON text without one (RFC 8259, section 8.1)\n");
    }
}

TEST(Translate, TakesTheFormatThatItIsTold) {
    std::string const document = fileBytes(example("dual-homed-fabric.json"));
    EXPECT_EQ(runProgram({"translate", "--from", "v2", "-"}, {.input = document}).status, 0);
    ProgramRun const wrong = runProgram({"translate", "--from", "dot", "-"}, {.input = document});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.messages, StartsWith("<stdin>:"));
    // Nothing in it says what it is.
    EXPECT_EQ(translated({"--from", "v2", "-"}, {.input = "{}"}), json::object());
    EXPECT_EQ(runProgram({"translate", "--from", "v2", "-"}, {.input = "digraph { a -> b }"}).status, 2);
    EXPECT_EQ(counts(translated({"--from", "dot", "-"}, {.input = "graph { a -- b }"})).hosts, 2u);
    EXPECT_EQ(counts(translated({"--from", "graphml", example("abilene.graphml")})).hosts, 11u);
}

TEST(Translate, NetworkIsForFilesWithSeveral) {
    ProgramRun const run = runProgram({"translate", "--network", "x", example("dual-homed-fabric.json")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.messages, HasSubstr("--network"));
    EXPECT_EQ(runProgram({"translate", "--network", "no such", example("abilene.graphml")}).status, 2);
}

TEST(Translate, TellsOfGuessesAndGoesOn) {
    ProgramRun const run = runProgram({"translate", "-"}, {.input = "graph { a -- b };\n"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.messages, StartsWith("<stdin>:1: warning: "));
    EXPECT_EQ(counts(json::parse(run.output)).hosts, 2u);
}

TEST(Translate, OneModelOneOutputHoweverItsDocumentIsOrdered) {
    json const document = json::parse(fileBytes(example("dual-homed-fabric.json")));  // Sorts all members.
    for (char const * format : {"json", "text", "summary", "dot"}) {
        EXPECT_EQ(runProgram({"translate", "--format", format, "-"}, {.input = document.dump()}).output,
                  runProgram({"translate", "--format", format, example("dual-homed-fabric.json")}).output);
    }
}

TEST(Translate, SvgNeedsGraphviz) {
    TemporaryFolder const folder;
    ProgramRun const run = runProgram({"translate", "--format", "svg", example("abilene.graphml")},
                                      {.environment = {"PATH=" + folder.path()}});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.messages, "topology-sync: cannot find the program dot; pictures are drawn by Graphviz "
                            "(Debian package graphviz)\n");
}

TEST(Translate, SvgTellsHowGraphvizFailed) {
    TemporaryFolder const folder;
    auto const with = [&](std::string const & script) {
        std::string const program = folder.file("dot", "#!/bin/sh\n" + script);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return runProgram({"translate", "--format", "svg", example("dual-homed-fabric.json")},
                          {.environment = {"PATH=" + folder.path() + ":/usr/bin:/bin"}});
    };
    ProgramRun run = with("echo first >&2; echo 'cannot draw' >&2; exit 3\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.messages, "topology-sync: dot failed with status 3: cannot draw\n");

    run = with("kill -9 $$\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.messages, "topology-sync: dot was ended by a signal: Killed\n");

    // Ends well without having read all; complains without failing; gets -Tsvg and nothing else.
    run = with("echo \"$#$1\"; echo 'Warning: ugly' >&2\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "1-Tsvg\n");
    EXPECT_EQ(run.messages, "dot: Warning: ugly\n");

    // Much to read and much to write at the same time.
    run = with("head -c 1000000 /dev/zero | tr '\\0' x; cat\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output.substr(1000000),
              runProgram({"translate", "--format", "dot", example("dual-homed-fabric.json")}).output);
}

struct SharedFile {
    std::string name;
    std::vector<std::string> options;
    Counts counts;
};

// What the list of those files says of each. A host of GraphML has a port for each link's end, and so has one
// of DOT whose links name no ports.
std::vector<SharedFile> sharedFiles() {
    return {
        {"graphml/Abilene.graphml", {}, {11, 28, 0, 0, 28, 28}},
        {"graphml/Geant2012.graphml", {}, {40, 122, 0, 0, 122, 122}},
        {"graphml/Surfnet.graphml", {}, {50, 146, 0, 0, 146, 146}},
        {"dot/clos-dual-homed.dot", {}, {22, 142, 0, 0, 142, 142}},
        {"dot/two-leaf-two-spine.dot", {}, {5, 8, 0, 0, 8, 8}},
        {"dot/unquoted-dual-homed.dot", {}, {12, 32, 0, 0, 32, 32}},
        {"rfc8345/parallel-links.json", {}, {4, 60, 0, 0, 60, 60}},
    };
}

class SharedData : public ::testing::TestWithParam<SharedFile> {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(kSharedData))
            GTEST_SKIP() << "no published topologies beside this repository";
    }
};

TEST_P(SharedData, HasTheCountsThatItsListGives) {
    json const document = translated({kSharedData + GetParam().name});
    EXPECT_EQ(counts(document), GetParam().counts);
    expectReferencesLead(document);
}

TEST_P(SharedData, IsDrawnWithoutAComplaint) {
    ProgramRun const run = runProgram({"translate", "--format", "svg", kSharedData + GetParam().name});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, AllOf(StartsWith("<?xml"), HasSubstr("</svg>")));
    EXPECT_THAT(run.messages, Not(HasSubstr("dot: ")));
}

TEST_P(SharedData, HasTextAndSummary) {
    std::string const file = kSharedData + GetParam().name;
    std::string const text = runProgram({"translate", "--format", "text", file}).output;
    json const document = translated({file});
    for (auto const & [name, host] : document.at("host").items()) EXPECT_THAT(text, HasSubstr(name + "\n"));
    EXPECT_THAT(text, HasSubstr(std::to_string(GetParam().counts.hosts) + " hosts, " +
                                std::to_string(GetParam().counts.ports) + " ports, "));
    EXPECT_THAT(
        runProgram({"translate", "--format", "summary", file}).output,
        HasSubstr("destinations               " + std::to_string(GetParam().counts.destinations) + "\n"));
}

INSTANTIATE_TEST_SUITE_P(Files, SharedData, ::testing::ValuesIn(sharedFiles()), [](auto const & test) {
    std::string name = test.param.name;
    for (char & c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return name;
});

// The text of the examples as it is meant to look. With TOPOLOGY_SYNC_WRITE_GOLDEN=1 in the environment the
// files are written instead, to be looked at before they are committed.
TEST(Golden, TextOfTheExamples) {
    bool const write = std::getenv("TOPOLOGY_SYNC_WRITE_GOLDEN") != nullptr;
    for (auto const & [file, format] :
         std::vector<std::pair<std::string, std::string>>{{"dual-homed-fabric.json", "text"},
                                                          {"abilene.graphml", "text"},
                                                          {"abilene.graphml", "summary"}}) {
        std::string const golden = TestSupport::sourcePath("tests/tools/cli/golden/") +
                                   file.substr(0, file.find('.')) + '.' + format;
        ProgramRun const run = runProgram({"translate", "--format", format, example(file)});
        ASSERT_EQ(run.status, 0) << run.messages;
        if (write) {
            std::ofstream(golden, std::ios::binary) << run.output;
        } else {
            EXPECT_EQ(run.output, fileBytes(golden)) << golden;
        }
    }
    if (write) GTEST_SKIP() << "the golden files were written, and nothing was compared";
}

}  // namespace
}  // namespace TopologyTools
