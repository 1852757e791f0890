#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"
#include "tests/tools/import/ImportTesting.h"
#include "tools/import/Importer.h"

namespace TopologyTools {
namespace {

using namespace ImportTesting;
using namespace std::string_view_literals;

std::string const labels =
    "<key id='d0' for='graph' attr.name='label'/><key id='d1' for='node' attr.name='label'/>";

std::string map(std::string const & content, std::string const & attributes = " edgedefault='undirected'") {
    return "<graphml>" + labels + "\n<graph" + attributes + ">\n" + content + "\n</graph></graphml>";
}

std::string labelledNode(std::string const & id, std::string const & label) {
    return "<node id='" + id + "'><data key='d1'>" + label + "</data></node>";
}

TEST(Graphml, AnUndirectedEdgeIsAnEdgeEachWayBetweenPortsNamedAfterThePeer) {
    std::string const text = map(labelledNode("0", "Denver") + labelledNode("1", " Los\n Angeles ") +
                                 "<edge source='0' target='1'/>");
    EXPECT_EQ(operationsOf(text), "host Denver\nhost Los\n Angeles\n"
                                  "port Denver:Los\n Angeles\nport Los\n Angeles:Denver\n"
                                  "edge Denver:Los\n Angeles -> Los\n Angeles:Denver\n"
                                  "edge Los\n Angeles:Denver -> Denver:Los\n Angeles\n");
    EXPECT_EQ(warningsOf(text), "");
}

TEST(Graphml, ParallelEdgesGetPortsOfTheirOwn) {
    std::string const edges =
        "<edge source='0' target='1'/><edge source='1' target='0'/><edge source='0' target='0'/>";
    EXPECT_EQ(
        operationsOf(map(labelledNode("0", "A") + labelledNode("1", "B") + edges, " edgedefault='directed'")),
        "host A\nhost B\nport A:B\nport A:B-2\nport A:A\nport A:A-2\nport B:A\nport B:A-2\n"
        "edge A:B -> B:A\nedge B:A-2 -> A:B-2\nedge A:A -> A:A-2\n");
}

TEST(Graphml, AnEdgeMayBeDirectedOtherwiseThanItsGraph) {
    std::string const nodes = labelledNode("0", "A") + labelledNode("1", "B");
    EXPECT_EQ(operationsOf(map(nodes + "<edge source='1' target='0' directed='true'/>")),
              "host A\nhost B\nport A:B\nport B:A\nedge B:A -> A:B\n");
    EXPECT_EQ(operationsOf(
                  map(nodes + "<edge source='1' target='0' directed='false'/>", " edgedefault='directed'")),
              "host A\nhost B\nport A:B\nport B:A\nedge B:A -> A:B\nedge A:B -> B:A\n");
}

TEST(Graphml, EdgesMayStandBeforeTheirNodes) {
    EXPECT_EQ(
        operationsOf(map("<edge source='0' target='1'/>" + labelledNode("0", "A") + labelledNode("1", "B"),
                         " edgedefault='directed'")),
        "host A\nhost B\nport A:B\nport B:A\nedge A:B -> B:A\n");
}

TEST(Graphml, AHostBearsItsLabelOnlyWhereThatIsUnique) {
    EXPECT_EQ(operationsOf(map(labelledNode("0", "Bonn") + labelledNode("1", "Ulm") +
                               labelledNode("2", "Bonn") + "<node id='3'/>" + labelledNode("4", "") +
                               labelledNode("5", "3") + labelledNode("6", "Bonn (0)"))),
              "host Bonn (0) (0)\nhost Ulm\nhost Bonn (2)\nhost 3\nhost 4\nhost 3 (5)\nhost Bonn (0)\n");
}

TEST(Graphml, WithoutALabelKeyHostsBearTheirIds) {
    EXPECT_EQ(
        operationsOf("<graphml><graph edgedefault='directed'><node id='n&lt;1&gt;'><data key='d1'>x</data>"
                     "</node></graph></graphml>"),
        "host n<1>\n");
}

TEST(Graphml, ALabelKeyForAllCounts) {
    EXPECT_EQ(operationsOf("<graphml><key id='k' attr.name='label'/><graph edgedefault='directed'>"
                           "<node id='0'><data key='k'><![CDATA[A&B]]></data></node></graph></graphml>"),
              "host A&B\n");
}

TEST(Graphml, DeclaredPortsAreUsed) {
    std::string const text =
        map("<node id='a'><port name='p1'><port name='p1.0'/></port><port name='b'/></node><node id='b'>"
            "<port name='q'/></node><edge source='a' target='b' sourceport='p1.0' targetport='q'/>"
            "<edge source='a' target='b' sourceport='p1'/><edge source='a' target='b'/>",
            " edgedefault='directed'");
    EXPECT_EQ(operationsOf(text),
              "host a\nhost b\n"
              "port a:p1\nport a:p1.0\nport a:b\nport a:b-2\nport b:q\nport b:a\nport b:a-2\n"
              "edge a:p1.0 -> b:q\nedge a:p1 -> b:a\nedge a:b-2 -> b:a-2\n");
    EXPECT_EQ(warningsOf(text), "");
}

TEST(Graphml, APortThatIsNotDeclaredIsCreatedWithAWarning) {
    std::string const text =
        map("<node id='a'/>\n<node id='b'/>\n  <edge source='a' target='b' sourceport='p'/>"
            "<edge source='a' target='b' sourceport='p'/>");
    EXPECT_EQ(operationsOf(text), "host a\nhost b\nport a:p\nport b:a\nport b:a-2\n"
                                  "edge a:p -> b:a\nedge b:a -> a:p\nedge a:p -> b:a-2\nedge b:a-2 -> a:p\n");
    EXPECT_EQ(warningsOf(text), "t:5:3: warning: port \"p\" is not declared by node \"a\"; created\n");
}

TEST(Graphml, AnEdgeBetweenTheSamePortsAgainIsLeftOutWithAWarning) {
    std::string const nodes = "<node id='a'><port name='p'/></node><node id='b'><port name='q'/></node>\n";
    std::string const edge = "<edge source='a' target='b' sourceport='p' targetport='q'/>\n";
    EXPECT_EQ(operationsOf(map(nodes + edge + edge)),
              "host a\nhost b\nport a:p\nport b:q\nedge a:p -> b:q\nedge b:q -> a:p\n");
    EXPECT_EQ(warningsOf(map(nodes + edge + edge)),
              "t:5:1: warning: edge left out; an earlier one joins the same ports\n");
}

TEST(Graphml, AGraphThatDoesNotSayIsTakenAsUndirected) {
    std::string const text = map("<node id='a'/><edge source='a' target='a'/>", "");
    EXPECT_EQ(operationsOf(text), "host a\nport a:a\nport a:a-2\nedge a:a -> a:a-2\nedge a:a-2 -> a:a\n");
    EXPECT_EQ(warningsOf(text), "t:2:1: warning: graph without edgedefault; taken as undirected\n");
}

TEST(Graphml, NamespacePrefixesAreAccepted) {
    EXPECT_EQ(operationsOf("<g:graphml xmlns:g='x'><g:graph edgedefault='directed'><g:node id='a'/>"
                           "<x:node2 id='b'/></g:graph></g:graphml>"),
              "host a\n");
}

TEST(Graphml, WhatCannotBeReadIsAnErrorWithItsPlace) {
    std::string const a = "<node id='a'/>";
    EXPECT_EQ(errorOf(map(a + "\n  <edge source='a' target='x'/>")),
              "t:4:3: target=\"x\"; expected the id of a node");
    EXPECT_EQ(errorOf(map(a + "<edge source='' target='a'/>")), "t:3:15: edge without source; expected one");
    EXPECT_EQ(errorOf(map(a + "<edge source='a'/>")), "t:3:15: edge without target; expected one");
    EXPECT_EQ(errorOf(map("<node/>")), "t:3:1: node without id; expected one");
    EXPECT_EQ(errorOf(map(a + "\n" + a)), "t:4:1: duplicate node \"a\"; first at line 3, column 1");
    EXPECT_EQ(errorOf(map("<node id='a'><port name='p'/><port name='p'/></node>")),
              "t:3:30: duplicate port \"p\" of node \"a\"");
    EXPECT_EQ(errorOf(map("<node id='a'><port/></node>")), "t:3:14: port without name; expected one");
    EXPECT_EQ(errorOf(map(a + "<hyperedge><endpoint node='a'/></hyperedge>")),
              "t:3:15: a hyperedge; expected edges between two nodes only");
    EXPECT_EQ(errorOf(map("<node id='a'>\n<graph edgedefault='directed'/></node>")),
              "t:4:1: a graph within element \"node\"; expected nodes and edges of one graph only");
    EXPECT_EQ(errorOf(map(a + "<edge source='a' target='a'><graph/></edge>")),
              "t:3:43: a graph within element \"edge\"; expected nodes and edges of one graph only");
    EXPECT_EQ(errorOf(map(a + "<edge source='a' target='a' directed='yes'/>")),
              "t:3:15: directed=\"yes\"; expected \"true\" or \"false\"");
    EXPECT_EQ(errorOf(map(a, " edgedefault='both'")),
              "t:2:1: edgedefault=\"both\"; expected \"directed\" or \"undirected\"");
    EXPECT_EQ(errorOf("<graphml>\n</graphml>"), "t:1:1: no graph in it; expected one");
    EXPECT_EQ(errorOf("<graphml><graph edgedefault='directed'/>\n<graph/></graphml>"),
              "t:2:1: a second graph in the file; expected one");
    EXPECT_EQ(errorOf(map("<node id='a&#xd800;'/>")),
              "t:3:1: a character reference to a surrogate; expected a character");
}

TEST(Graphml, BrokenXmlIsAnErrorWithItsPlace) {
    EXPECT_EQ(errorOf("<graphml>\n<graph>\n</graphml>"), "t:3:3: XML: Start-end tags mismatch");
    EXPECT_EQ(errorOf("<graphml>\n<graph edgedefault=directed/>"),
              "t:2:20: XML: Error parsing element attribute");
    EXPECT_EQ(errorOf("", from("graphml")), "t:1:1: no XML element in it; expected graphml");
    EXPECT_EQ(errorOf("<graphml>\0</graphml>"sv), "t:1:10: byte 0x00; expected text");
}

TEST(Graphml, AByteOrderMarkIsSkippedAndCounted) {
    EXPECT_EQ(errorOf("\xef\xbb\xbf<graphml><graph edgedefault='directed'/></graphml>"),
              "t:1:13: no host in it, read as graphml; expected at least one node");
    EXPECT_EQ(errorOf("\xef\xbb\xbf<graphml><"), "t:1:13: XML: Could not determine tag type");
}

TEST(Graphml, EntitiesOfADocumentTypeAreNotExpanded) {
    std::string const text =
        "<!DOCTYPE graphml [<!ENTITY a 'xxxxxxxxxx'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>]>"
        "<graphml><graph edgedefault='directed'><node id='&b;&amp;'/></graph></graphml>";
    EXPECT_EQ(operationsOf(text), "host &b;&\n");
}

TEST(Graphml, DeepNestingIsReadOrRefused) {
    std::string deep;
    std::string ends;
    for (int i = 0; i < 100000; ++i) {
        deep += "<port name='" + std::to_string(i) + "'>";
        ends += "</port>";
    }
    EXPECT_EQ(countsOf(importTopology(map("<node id='a'>" + deep + ends + "</node>"), "t", {})),
              (Counts{1, 100000, 0, 0, 0}));
}

TEST(Graphml, TheExampleTranslates) {
    std::ifstream file(TestSupport::sourcePath("examples/abilene.graphml"), std::ios::binary);
    std::string const text(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(countsOf(importTopology(text, "abilene.graphml", {})), (Counts{11, 28, 0, 0, 28}));
    std::string const operations = operationsOf(text);
    EXPECT_NE(operations.find("\nedge New York:Chicago -> Chicago:New York\n"), std::string::npos);
    EXPECT_NE(operations.find("\nedge Chicago:New York -> New York:Chicago\n"), std::string::npos);
}

TEST(Graphml, EveryByteReplacedNeverCrashes) {
    std::string const text =
        map("<node id='a'><port name='p'/></node><edge source='a' target='a' sourceport='p'/>");
    std::size_t refused = 0;
    std::size_t tries = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (char const byte : "<>/='\"&;!?[] \nxa\xc3\0"sv) {
            std::string changed = text;
            changed[at] = byte;
            ++tries;
            refused += errorOf(changed, from("graphml")) == "no error" ? 0U : 1U;
        }
    }
    EXPECT_GT(refused, tries / 4);
    EXPECT_LT(refused, tries);
}

}  // namespace
}  // namespace TopologyTools
