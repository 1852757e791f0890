#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/tools/cli/RunProgram.h"
#include "tools/format/NaturalOrder.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

// A port, a group and an MLAG of one name, and an edge between two hosts; "b" is the local host.
constexpr char const * kDocument = R"({
    "localhost": "/host/b",
    "host": {
        "a": {"hostname": "a.example", "port": {"x": {"type": "port"}}, "portGroup": {"x": {}}, "mlag": {"x": {}}},
        "b": {"hostname": "b.example", "port": {"y": {"type": "port"}}}
    },
    "edge": {"/host/a/port/x": {"toPort": {"/host/b/port/y": true}}}})";

ProgramRun call(std::vector<std::string> arguments, std::string const & document = kDocument) {
    arguments.insert(arguments.begin(), {"call", "-"});
    return runProgram(arguments, {.input = document});
}

std::string answer(std::vector<std::string> const & arguments) {
    ProgramRun const run = call(arguments);
    EXPECT_EQ(run.status, 0) << run.messages;
    EXPECT_THAT(run.messages, IsEmpty());
    return run.output;
}

json answerAsJson(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--format", "json"});
    return json::parse(answer(arguments));
}

// The message of a call that is refused.
std::string refusal(std::vector<std::string> const & arguments) {
    ProgramRun const run = call(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, IsEmpty());
    return run.messages;
}

TEST(Call, ReadsTheTranslator) {
    EXPECT_EQ(answer({"V2Sm.name"}), "topology-sync\n");
    EXPECT_EQ(answer({"V2Sm.v2"}), "\"\"  NetworkTopology::StatusV2\n");
    EXPECT_EQ(answer({"NetworkTopologyAggregator::V2Sm.v3"}), "\"\"  NetworkTopologyV3::Status\n");
    EXPECT_EQ(answerAsJson({"V2Sm.name"}),
              (json{{"result", {{"type", "Vel::Name"}, {"value", "topology-sync"}}}}));
    EXPECT_EQ(answerAsJson({"V2Sm.v2"}),
              (json{{"result", {{"type", "NetworkTopology::StatusV2"}, {"path", ""}}}}));
}

TEST(Call, CallsEveryLookup) {
    EXPECT_EQ(answer({"V2Sm.toHostV3", "/host/a"}), "/host/a  NetworkTopologyV3::Host\n");
    EXPECT_EQ(answer({"V2Sm.toPortV3", "/host/a/port/x"}), "/host/a/port/x  NetworkTopologyV3::Port\n");
    EXPECT_EQ(answer({"V2Sm.toPortGroupV3", "/host/a/portGroup/x"}),
              "/host/a/portGroup/x  NetworkTopologyV3::PortGroup\n");
    EXPECT_EQ(answer({"V2Sm.toMlagV3", "/host/a/mlag/x"}), "/host/a/mlag/x  NetworkTopologyV3::MlagPort\n");
    EXPECT_EQ(answer({"V2Sm.toPortBaseV3", "/host/a/mlag/x"}),
              "/host/a/mlag/x  NetworkTopologyV3::MlagPort\n");
    EXPECT_EQ(answer({"V2Sm.toHostV3", "null"}), "null\n");
    EXPECT_EQ(answerAsJson({"V2Sm.toHostV3", "null"}), (json{{"result", nullptr}}));
}

TEST(Call, TakesEnumeratorsByNameAndByNumber) {
    EXPECT_EQ(answer({"V2Sm.toPortTypeV3", "mlag"}), "mlag\n");
    EXPECT_EQ(answer({"V2Sm.toPortTypeV3", "2"}), "portGroup\n");
    EXPECT_EQ(answer({"V2Sm.toPortTypeV3", "4"}), "unknown\n");
    EXPECT_EQ(answerAsJson({"V2Sm.toPortTypeV3", "port"}),
              (json{{"result", {{"type", "NetworkTopologyV3::PortType"}, {"value", "port"}}}}));
}

TEST(Call, WalksCollections) {
    EXPECT_THAT(answer({"V2Sm.host"}),
                AllOf(HasSubstr("KEY  OBJECT   TYPE\n"), HasSubstr("a    /host/a  NetworkTopology::HostV2\n"),
                      HasSubstr("b    /host/b  NetworkTopology::HostV2\n")));
    EXPECT_THAT(answer({"V2Sm.edge"}),
                HasSubstr("/host/a/port/x  /edge/~1host~1a~1port~1x  NetworkTopology::DirectedEdgeV2\n"));
    json const hosts = answerAsJson({"V2Sm.host"}).at("result");
    ASSERT_EQ(hosts.size(), 2U);
    // From the second one on there is one left; from the first one on, both.
    for (std::size_t i = 0; i < 2; ++i) {
        std::string const key = hosts.at(i).at("key").at("value");
        json const rest = answerAsJson({"V2Sm.host", "--from-key", key}).at("result");
        EXPECT_EQ(rest, json(hosts.begin() + static_cast<std::ptrdiff_t>(i), hosts.end()));
    }
    EXPECT_EQ(answer({"V2Sm.host", "--from-key", "none"}), "");
    EXPECT_EQ(answerAsJson({"V2Sm.host", "--from-key", "none"}), (json{{"result", json::array()}}));
    EXPECT_EQ(answerAsJson({"V2Sm.edge", "--from-key", "/host/a/port/x"}).at("result").at(0).at("key"),
              (json{{"type", "NetworkTopology::PortV2"}, {"path", "/host/a/port/x"}}));
}

// The collection's own order of edges depends on addresses.
TEST(Call, ShowsEdgesByTheNamesOfTheirPorts) {
    json const edges =
        json::parse(runProgram({"call", kFabric, "V2Sm.edge", "--format", "json"}).output).at("result");
    std::vector<std::string> paths;
    for (json const & entry : edges) paths.push_back(entry.at("key").at("path"));
    ASSERT_GT(paths.size(), 20U);
    EXPECT_TRUE(std::is_sorted(paths.begin(), paths.end(), NaturalLess()));
}

TEST(Call, LooksUpMembers) {
    EXPECT_EQ(answer({"V2Sm.host", "--key", "b"}), "/host/b  NetworkTopology::HostV2\n");
    EXPECT_EQ(answer({"V2Sm.host", "--key", "none"}), "null\n");
    EXPECT_EQ(answer({"V2Sm.edge", "--key", "/host/a/port/x"}),
              "/edge/~1host~1a~1port~1x  NetworkTopology::DirectedEdgeV2\n");
    EXPECT_EQ(answer({"V2Sm.edge", "--key", "/host/b/port/y"}), "null\n");
}

TEST(Call, RemovesMembersAndShowsTheEffect) {
    json const removed = answerAsJson({"V2Sm.host", "--remove", "a", "--effect"});
    EXPECT_EQ(removed.at("result"), (json{{"type", "NetworkTopology::HostV2"}, {"path", "/host/a"}}));
    EXPECT_THAT(removed.at("effect"), ::testing::Contains(json{{"op", "remove"}, {"path", "/host/a"}}));
    EXPECT_THAT(
        answer({"V2Sm.edge", "--remove", "/host/a/port/x", "--effect"}),
        StartsWith(
            "/edge/~1host~1a~1port~1x  NetworkTopology::DirectedEdgeV2\n{\"op\":\"remove\",\"path\":"));
    EXPECT_EQ(answerAsJson({"V2Sm.host", "--remove", "none", "--effect"}),
              (json{{"result", nullptr}, {"effect", json::array()}}));
}

TEST(Call, AddsMembers) {
    EXPECT_EQ(answer({"V2Sm.host", "--add", "/host/a"}), "");
    EXPECT_EQ(answer({"V2Sm.edge", "--add", "/edge/~1host~1a~1port~1x"}), "");
    EXPECT_EQ(answerAsJson({"V2Sm.host", "--add", "/host/a", "--effect"}),
              (json{{"result", nullptr}, {"effect", json::array()}}));
}

// The translator that met a full model has no types in the output yet; nor has population written any.
TEST(Call, CallsWhatReturnsNothing) {
    EXPECT_EQ(answer({"V2Sm.populateV3"}), "");
    EXPECT_EQ(answerAsJson({"V2Sm.populateV3", "--effect", "--attach", "after"}),
              (json{{"result", nullptr}, {"effect", json::array()}}));
}

TEST(Call, ConstructsTheTranslatorWithWhatIsGiven) {
    EXPECT_EQ(answer({"V2Sm.name", "--with", "name=other"}), "other\n");
    EXPECT_EQ(answer({"V2Sm.v2", "--with", "v2=null"}), "null\n");
    EXPECT_EQ(answer({"V2Sm.toHostV3", "/host/a", "--with", "v3=null"}), "null\n");
    EXPECT_EQ(answer({"V2Sm.host", "--with", "v2=null", "--with", "v3=null"}), "");
}

TEST(Call, FindsInTheHostThatTheArgumentLiesIn) {
    EXPECT_EQ(answer({"PortBaseFinder.find", "/host/a/portGroup/x"}),
              "/host/a/portGroup/x  NetworkTopologyV3::PortGroup\n");
    EXPECT_EQ(answer({"PortBaseFinder.find", "/host/b/port/y"}), "/host/b/port/y  NetworkTopologyV3::Port\n");
    EXPECT_EQ(answer({"PortBaseFinder.visitPort", "/host/a/port/x"}), "");
}

TEST(Call, FindsInTheHostThatIsGivenOrInTheLocalHost) {
    EXPECT_EQ(answer({"PortBaseFinder.find", "/host/a/port/x", "--with", "hostV3=/host/b"}), "null\n");
    EXPECT_EQ(answer({"PortBaseFinder.find", "/host/a/port/x", "--with", "hostV3=null"}), "null\n");
    EXPECT_EQ(answer({"PortBaseFinder.hostV2"}), "/host/b  NetworkTopology::HostV2\n");
    EXPECT_EQ(answer({"PortBaseFinder.hostV3"}), "/host/b  NetworkTopologyV3::Host\n");
    EXPECT_EQ(answer({"PortBaseFinder.hostV3", "--with", "hostV2=/host/a"}),
              "/host/a  NetworkTopologyV3::Host\n");
    EXPECT_EQ(answer({"PortBaseFinder.result"}), "null\n");
}

TEST(Call, ReachesTheModelsToo) {
    EXPECT_EQ(answer({"Status.localhost"}), "/host/b  NetworkTopologyV3::Host\n");
    EXPECT_EQ(answer({"StatusV2.host", "--add", "new", "--effect"}),
              "/host/new  NetworkTopology::HostV2\n{\"op\":\"add\",\"path\":\"/host/new\",\"value\":{}}\n");
    EXPECT_EQ(answerAsJson({"StatusV2.localhost", "--set", "null", "--effect"}).at("effect").size(), 1U);
}

TEST(Call, SaysWhatItExpectedOfTypeAndAttribute) {
    EXPECT_EQ(refusal({"V2Sm"}),
              "topology-sync: expected TYPE.ATTRIBUTE, such as V2Sm.toPortV3; found \"V2Sm\"\n");
    EXPECT_THAT(refusal({"V3Sm.host"}), StartsWith("topology-sync: no type \"V3Sm\""));
    EXPECT_THAT(refusal({".host"}), StartsWith("topology-sync: no type \"\""));
    EXPECT_EQ(
        refusal({"V2Sm.hosts"}),
        "topology-sync: NetworkTopologyAggregator::V2Sm has no attribute \"hosts\"; expected one of name, "
        "v2, v3, toHostV3, toPortBaseV3, toPortV3, toPortGroupV3, toMlagV3, toPortTypeV3, host, edge, "
        "populateV3\n");
    EXPECT_EQ(refusal({"bool.value"}),
              "topology-sync: bool has no attribute \"value\"; expected none, for it has none\n");
    EXPECT_THAT(refusal({"PortBaseV2.name"}), HasSubstr("cannot be constructed by name"));
}

TEST(Call, SaysWhatItExpectedOfArguments) {
    std::string const where = " of NetworkTopologyAggregator::V2Sm::toPortV3: ";
    EXPECT_EQ(refusal({"V2Sm.toPortV3"}), "topology-sync: argument \"portV2\"" + where + "is missing\n");
    EXPECT_EQ(
        refusal({"V2Sm.toPortV3", "null", "null"}),
        "topology-sync: NetworkTopologyAggregator::V2Sm::toPortV3 takes 1 argument (portV2), found 2\n");
    EXPECT_EQ(refusal({"V2Sm.toPortV3", "/host/a/port/none"}),
              "topology-sync: argument \"portV2\"" + where +
                  "expected the JSON Pointer of a NetworkTopology::PortV2 that is there, or null; found "
                  "\"/host/a/port/none\"\n");
    EXPECT_THAT(refusal({"V2Sm.toPortV3", "eth-1"}),
                StartsWith("topology-sync: argument \"portV2\"" + where));
    EXPECT_EQ(refusal({"V2Sm.toPortV3", "/host/a/portGroup/x"}),
              "topology-sync: argument \"portV2\"" + where +
                  "expected NetworkTopology::PortV2, found NetworkTopology::PortGroupV2\n");
    EXPECT_EQ(
        refusal({"V2Sm.toPortTypeV3", "lagg"}),
        "topology-sync: argument \"portTypeV2\" of NetworkTopologyAggregator::V2Sm::toPortTypeV3: expected "
        "one of unknown, port, portGroup, mlag; found \"lagg\"\n");
    EXPECT_EQ(refusal({"V2Sm.host", "--add", "null"}),
              "topology-sync: null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not "
              "allowed\"\n");
    EXPECT_THAT(refusal({"V2Sm.edge", "--key", "x"}), HasSubstr("argument \"fromPort\""));
}

TEST(Call, SaysWhatAnAttributeDoesNotOffer) {
    EXPECT_EQ(refusal({"V2Sm.v2", "--set", "null"}),
              "topology-sync: cannot set NetworkTopologyAggregator::V2Sm::v2\n");
    EXPECT_EQ(refusal({"V2Sm.toHostV3", "--key", "a"}),
              "topology-sync: cannot look up NetworkTopologyAggregator::V2Sm::toHostV3\n");
    EXPECT_EQ(refusal({"PortBaseFinder.result", "--from-key", "a"}),
              "topology-sync: cannot iterate NetworkTopologyAggregator::PortBaseFinder::result\n");
    EXPECT_EQ(refusal({"V2Sm.host", "a"}),
              "topology-sync: NetworkTopologyAggregator::V2Sm::host is no function and takes no ARG, found "
              "\"a\"\n");
    EXPECT_EQ(refusal({"V2Sm.host", "a", "--key", "a"}),
              "topology-sync: NetworkTopologyAggregator::V2Sm::host takes no ARG beside an option that says "
              "what to do, found \"a\"\n");
    EXPECT_EQ(refusal({"V2Sm.host", "--key", "a", "--remove", "a"}),
              "topology-sync: expected one of --key, --from-key, --add, --remove and --set, found several\n");
}

TEST(Call, SaysWhatItExpectedOfConstructorArguments) {
    EXPECT_EQ(refusal({"V2Sm.name", "--with", "name"}),
              "topology-sync: --with: expected NAME=VALUE, found \"name\"\n");
    EXPECT_EQ(refusal({"V2Sm.name", "--with", "name=a", "--with", "name=b"}),
              "topology-sync: --with: \"name\" is given twice\n");
    EXPECT_EQ(refusal({"V2Sm.name", "--with", "v4=null"}),
              "topology-sync: the constructor of NetworkTopologyAggregator::V2Sm has no argument \"v4\"\n");
    EXPECT_EQ(refusal({"Status.host", "--with", "name=a"}),
              "topology-sync: --with: the NetworkTopologyV3::Status is that of the topology\n");
    ProgramRun const run = call({"PortBaseFinder.hostV2"}, R"({"host": {"a": {}}})");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(
        run.messages,
        "topology-sync: argument \"hostV2\" of the constructor of NetworkTopologyAggregator::PortBaseFinder: "
        "is missing; give it with --with hostV2=POINTER\n");
}

TEST(Call, TellsOfFaultsOfTheTopologyAsEverywhere) {
    ProgramRun const run = call({"V2Sm.host"}, R"({"host": {"a": {"hostnam": "x"}}})");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.messages, AllOf(HasSubstr("/host/a/hostnam"), Not(HasSubstr("internal"))));
}

TEST(Call, WorksOnTheExample) {
    ProgramRun const run = runProgram({"call", kFabric, "V2Sm.toPortBaseV3", "/host/leaf-1/port/eth-1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "/host/leaf-1/port/eth-1  NetworkTopologyV3::Port\n");
}

}  // namespace
}  // namespace TopologyTools
