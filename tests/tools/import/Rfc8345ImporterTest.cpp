#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/tools/import/ImportTesting.h"
#include "tools/import/Importer.h"

namespace TopologyTools {
namespace {

using namespace ImportTesting;

// A file with one network "n"; the content starts on line 2.
std::string file(std::string const & content) {
    return "{\"ietf-network:networks\":{\"network\":[{\"network-id\":\"n\",\n" + content + "}]}}";
}

std::string tps(std::string const & list) {
    return "\"ietf-network-topology:termination-point\":[" + list + "]";
}

std::string node(std::string const & id, std::string const & tpList) {
    return "{\"node-id\":\"" + id + "\"," + tps(tpList) + "}";
}

std::string link(std::string const & id, std::string const & source, std::string const & sourceTp,
                 std::string const & dest, std::string const & destTp) {
    return "{\"link-id\":\"" + id + "\",\"source\":{\"source-node\":\"" + source + "\",\"source-tp\":\"" +
           sourceTp + "\"},\"destination\":{\"dest-node\":\"" + dest + "\",\"dest-tp\":\"" + destTp + "\"}}";
}

std::string nodes(std::string const & list) { return "\"node\":[" + list + "]"; }

std::string links(std::string const & list) { return "\"ietf-network-topology:link\":[" + list + "]"; }

std::string lag(std::string const & attributes) {
    return ",\"ietf-l2-topology:l2-termination-point-attributes\":{" + attributes + "}";
}

std::string const twoNodes =
    nodes(node("a", R"({"tp-id":"1"},{"tp-id":"2"})") + ',' + node("b", R"({"tp-id":"1"})"));

std::string const twoNodesRead = "host a\nhost b\nport a:1\nport a:2\nport b:1\n";

TEST(Rfc8345, NodesAreHostsTerminationPointsArePortsLinksAreDestinations) {
    std::string const text = file(twoNodes + ",\n" +
                                  links(link("x", "a", "1", "b", "1") + ',' + link("y", "a", "1", "a", "2") +
                                        ',' + link("z", "b", "1", "a", "1")));
    EXPECT_EQ(operationsOf(text), twoNodesRead + "edge a:1 -> b:1\nedge a:1 -> a:2\nedge b:1 -> a:1\n");
    EXPECT_EQ(warningsOf(text), "");
}

TEST(Rfc8345, TheBareListAndNamesWithoutPrefixAreAccepted) {
    for (std::string const head :
         {"{\"ietf-network:networks\":{\"network\":", "{\"networks\":{\"ietf-network:network\":"}) {
        EXPECT_EQ(operationsOf(head + "[{\"network-id\":\"n\",\"node\":[{\"node-id\":\"a\"}]}]}}"),
                  "host a\n");
    }
    EXPECT_EQ(
        operationsOf("{\"ietf-network:network\":[{\"ietf-network:network-id\":\"n\",\"node\":[{\"node-id\":"
                     "\"a\",\"termination-point\":[{\"ietf-network-topology:tp-id\":\"1\"}]}],\"link\":["
                     "{\"source\":{\"source-node\":\"a\",\"source-tp\":\"1\"},\"ietf-network-topology:"
                     "destination\":{\"dest-node\":\"a\",\"dest-tp\":\"1\"}}]}]}"),
        "host a\nport a:1\nedge a:1 -> a:1\n");
}

TEST(Rfc8345, OtherMembersAreIgnored) {
    EXPECT_EQ(
        operationsOf(
            "{\"x\":[{}],\"ietf-network:networks\":{\"y:z\":1,\"network\":[{\"network-types\":{\"q\":{}},"
            "\"network-id\":\"n\",\"supporting-network\":7,\"node\":[{\"node-id\":\"a\",\"w\":null,"
            "\"termination-point\":[{\"tp-id\":\"1\",\"m:te\":{\"lag\":true}}]}]}]}}"),
        "host a\nport a:1\n");
}

TEST(Rfc8345, ALagOfTheLayerTwoAttributesIsAPortGroup) {
    std::string const text =
        file(nodes(node("a", R"({"tp-id":"bond")" + lag(R"("lag":true,"member-link-tp":["1","2"])") +
                                 R"(},{"tp-id":"1"},{"tp-id":"2")" + lag(R"("lag":false)") +
                                 R"(},{"tp-id":"empty")" + lag(R"("lag":true)") + "}") +
                   ',' + node("b", R"({"tp-id":"1"})")) +
             ',' + links(link("x", "a", "bond", "b", "1") + ',' + link("y", "b", "1", "a", "bond")));
    EXPECT_EQ(operationsOf(text), "host a\nhost b\n"
                                  "group a::bond\nport a:1\nport a:2\ngroup a::empty\nport b:1\n"
                                  "member a::bond <- 1\nmember a::bond <- 2\n"
                                  "edge a::bond -> b:1\nedge b:1 -> a::bond\n");
    EXPECT_EQ(warningsOf(text), "");
}

std::string supporting(std::string const & net, std::string const & onNode, std::string const & tp) {
    return "{\"network-ref\":\"" + net + "\",\"node-ref\":\"" + onNode + "\",\"tp-ref\":\"" + tp + "\"}";
}

TEST(Rfc8345, SupportingTerminationPointsOfTheSameNodeAndNetworkMakeAPortGroup) {
    std::string const list = supporting("n", "a", "1") + ',' + supporting("n", "a", "2");
    EXPECT_EQ(operationsOf(file(nodes(node("a", R"({"tp-id":"1"},{"tp-id":"2"},{"tp-id":"bond",)"
                                                "\"supporting-termination-point\":[" +
                                                    list + "]}")))),
              "host a\nport a:1\nport a:2\ngroup a::bond\nmember a::bond <- 1\nmember a::bond <- 2\n");
    std::string const elsewhere = supporting("n", "b", "1") + ',' + supporting("m", "a", "1");
    EXPECT_EQ(operationsOf(file(nodes(node("a", R"({"tp-id":"1"},{"tp-id":"bond",)"
                                                "\"supporting-termination-point\":[" +
                                                    elsewhere + "]}")))),
              "host a\nport a:1\nport a:bond\n");
}

TEST(Rfc8345, AMemberNamedTwiceForOneGroupIsOneMember) {
    std::string const text = file(nodes(
        node("a", R"({"tp-id":"1"},{"tp-id":"bond","supporting-termination-point":[)" +
                      supporting("n", "a", "1") + "]" + lag(R"("lag":true,"member-link-tp":["1"])") + "}")));
    EXPECT_EQ(operationsOf(text), "host a\nport a:1\ngroup a::bond\nmember a::bond <- 1\n");
    EXPECT_EQ(warningsOf(text), "");
}

TEST(Rfc8345, MembersThatDoNotFitAreReported) {
    std::string const text = file(nodes(
        node("a", "{\"tp-id\":\"1\"},\n{\"tp-id\":\"g\"" + lag(R"("lag":true,"member-link-tp":["1","x"])") +
                      "},\n{\"tp-id\":\"h\"" + lag(R"("lag":true,"member-link-tp":["1","g","h"])") +
                      "},\n{\"tp-id\":\"2\"" + lag(R"("member-link-tp":["1"])") + "}")));
    EXPECT_EQ(operationsOf(text), "host a\nport a:1\ngroup a::g\ngroup a::h\nport a:2\nport a:x\n"
                                  "member a::g <- 1\nmember a::g <- x\n");
    std::string const grouped = " left out; it is a port group itself\n";
    EXPECT_EQ(warningsOf(text),
              at(text, "\"x\"]") + "warning: member \"x\" of \"g\" is not on node \"a\"; created\n" +
                  at(text, "\"1\",\"g\"") +
                  "warning: member \"1\" of \"h\" left out; it is a member of \"g\"\n" +
                  at(text, "\"g\",\"h\"") + "warning: member \"g\" of \"h\"" + grouped + at(text, "\"h\"]") +
                  "warning: member \"h\" of \"h\"" + grouped + at(text, "[\"1\"]") +
                  "warning: member-link-tp of \"2\" ignored; it is no lag\n");
}

TEST(Rfc8345, ALinkToAnAbsentNodeOrTerminationPointCreatesItWithAWarning) {
    std::string const text =
        file(twoNodes + ",\n" + links(link("x", "a", "9", "c", "1") + ",\n" + link("y", "c", "1", "a", "9")));
    EXPECT_EQ(operationsOf(text), "host a\nhost b\nhost c\nport a:1\nport a:2\nport a:9\nport b:1\nport c:1\n"
                                  "edge a:9 -> c:1\nedge c:1 -> a:9\n");
    EXPECT_EQ(warningsOf(text),
              at(text, "\"9\"},") +
                  "warning: link \"x\": termination point \"9\" is not on node \"a\"; created\n" +
                  at(text, "\"c\",\"dest-tp") +
                  "warning: link \"x\": node \"c\" is not in network \"n\"; created\n");
}

TEST(Rfc8345, ALinkEndWithoutATerminationPointGetsAPortWithAWarning) {
    std::string const text =
        file(twoNodes + ",\n" +
             links("{\"source\":{\"source-node\":\"a\"},\"destination\":{\"dest-node\":\"b\","
                   "\"dest-tp\":\"1\"}}") +
             ",\n\"x\":0");
    EXPECT_EQ(operationsOf(text),
              "host a\nhost b\nport a:1\nport a:2\nport a:b\nport b:1\nedge a:b -> b:1\n");
    EXPECT_EQ(warningsOf(text),
              "t:3:41: warning: link: no termination point on node \"a\"; port \"b\" created\n");
    std::string const empty = file(twoNodes + ",\n" + links(link("l", "a", "1", "b", "")));
    EXPECT_EQ(warningsOf(empty),
              at(empty, "{\"dest-node") +
                  "warning: link \"l\": no termination point on node \"b\"; port \"a\" created\n");
}

TEST(Rfc8345, ALinkBetweenTheSamePointsAgainIsLeftOutWithAWarning) {
    std::string const text =
        file(twoNodes + ",\n" + links(link("x", "a", "1", "b", "1") + ",\n" + link("y", "a", "1", "b", "1")));
    EXPECT_EQ(operationsOf(text), twoNodesRead + "edge a:1 -> b:1\n");
    EXPECT_EQ(warningsOf(text),
              "t:4:1: warning: link \"y\" left out; an earlier link joins the same points\n");
}

TEST(Rfc8345, OfSeveralNetworksOneMustBeNamed) {
    std::string const text =
        "{\"ietf-network:networks\":{\"network\":[{\"network-id\":\"l2\",\"node\":[{\"node-id\":\"a\"}]},"
        "{\"network-id\":\"l3\",\"node\":[{\"node-id\":\"b\"}]}]}}";
    EXPECT_EQ(errorOf(text), "t:1:26: 2 networks; expected --network to name one of \"l2\", \"l3\"");
    EXPECT_EQ(errorOf(text, network("l4")), "t:1:26: no network \"l4\"; expected one of \"l2\", \"l3\"");
    EXPECT_EQ(operationsOf(text, network("l2")), "host a\n");
    EXPECT_EQ(operationsOf(text, network("l3")), "host b\n");
    EXPECT_EQ(errorOf(file(twoNodes), network("m")), "t:1:26: no network \"m\"; expected one of \"n\"");
}

TEST(Rfc8345, KeysAreNeededAndNotEmptyAndUnique) {
    EXPECT_EQ(errorOf(file(nodes("{}"))), "t:2:9: no node-id; expected a string");
    EXPECT_EQ(errorOf(file(nodes("{\"node-id\":\"\"}"))), "t:2:20: node-id is empty; expected a name");
    EXPECT_EQ(errorOf(file(nodes("{\"node-id\":7}"))), "t:2:20: node-id: expected a string; found number");
    EXPECT_EQ(errorOf(file(nodes("{\"node-id\":\"a\"},\n{\"node-id\":\"a\"}"))),
              "t:3:12: duplicate node-id \"a\"; first at line 2, column 20");
    EXPECT_EQ(errorOf(file(nodes(node("a", "\n{}")))), "t:3:1: no tp-id; expected a string");
    EXPECT_EQ(errorOf(file(nodes(node("a", "\n{\"tp-id\":\"\"}")))),
              "t:3:10: tp-id is empty; expected a name");
    EXPECT_EQ(errorOf(file(nodes(node("a", "\n{\"tp-id\":\"1\"},\n{\"tp-id\":\"1\"}")))),
              "t:4:10: duplicate tp-id \"1\"; first at line 3, column 10");
    EXPECT_EQ(errorOf("{\"networks\":{\"network\":[\n{\"network-id\":\"n\"},\n{\"network-id\":\"n\"}]}}"),
              "t:3:15: duplicate network-id \"n\"; first at line 2, column 15");
    EXPECT_EQ(errorOf(file(twoNodes + ",\n" + links(link("x", "", "1", "b", "1")))),
              "t:3:70: source-node is empty; expected a name");
}

TEST(Rfc8345, WrongKindsAreErrorsWithTheirPlace) {
    EXPECT_EQ(errorOf("[]", from("rfc8345")), "t:1:1: top level: expected an object; found array");
    EXPECT_EQ(errorOf("{\"networks\":[]}"), "t:1:13: networks: expected an object; found array");
    EXPECT_EQ(errorOf("{\"network\":{}}"), "t:1:12: network: expected an array; found object");
    EXPECT_EQ(errorOf("{\"network\":[]}"),
              "t:1:1: no network; expected \"ietf-network:networks\" with a list \"network\"");
    EXPECT_EQ(errorOf(file(nodes("7"))), "t:2:9: node: expected an object; found number");
    EXPECT_EQ(errorOf(file(nodes(node("a", "{\"tp-id\":\"1\"" + lag("\n\"lag\":\"true\"") + "}")))),
              "t:3:7: lag: expected a boolean; found string");
    EXPECT_EQ(errorOf(file(
                  nodes(node("a", "{\"tp-id\":\"1\"" + lag("\n\"lag\":true,\"member-link-tp\":[1]") + "}")))),
              "t:3:30: member-link-tp: expected a string; found number");
    EXPECT_EQ(errorOf(file(nodes(
                  node("a", "{\"tp-id\":\"1\"" + lag("\n\"lag\":true,\"member-link-tp\":[\"\"]") + "}")))),
              "t:3:30: member-link-tp is empty; expected a name");
    EXPECT_EQ(errorOf(file(twoNodes + ",\n" + links("{\"link-id\":\"x\"}"))),
              "t:3:31: link \"x\" has no source; expected an object");
    EXPECT_EQ(errorOf(file("\"node\":[],\n\"ietf-network:node\":[]")),
              "t:2:1: \"node\" and \"ietf-network:node\"; expected one of them");
}

TEST(Rfc8345, BrokenJsonIsAnErrorWithItsPlace) {
    EXPECT_EQ(errorOf("{\"networks\":{\n\"network\":[}"), "t:2:12: expected a value or ']'; found \"}\"");
    EXPECT_EQ(errorOf("{\"networks\":{},\n\"networks\":{}}"),
              "t:2:1: /networks: duplicate member name \"networks\"; first at line 1, column 2");
}

}  // namespace
}  // namespace TopologyTools
