#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/tools/import/ImportTesting.h"
#include "tools/import/DotOutline.h"
#include "tools/import/Importer.h"

namespace TopologyTools {
namespace {

using namespace ImportTesting;
using namespace std::string_view_literals;

TEST(Dot, AnUndirectedLinkIsAnEdgeEachWay) {
    EXPECT_EQ(operationsOf("graph { \"leaf1\":\"swp1\" -- \"spine1\":\"swp7\" }"),
              "host leaf1\n"
              "host spine1\n"
              "port leaf1:swp1\n"
              "port spine1:swp7\n"
              "edge leaf1:swp1 -> spine1:swp7\n"
              "edge spine1:swp7 -> leaf1:swp1\n");
    EXPECT_EQ(warningsOf("graph { \"leaf1\":\"swp1\" -- \"spine1\":\"swp7\" }"), "");
}

TEST(Dot, ADirectedLinkIsOneEdge) {
    EXPECT_EQ(operationsOf("digraph { a:1 -> b:2; a:1 -> c:3 }"), "host a\nhost b\nhost c\n"
                                                                  "port a:1\nport b:2\nport c:3\n"
                                                                  "edge a:1 -> b:2\n"
                                                                  "edge a:1 -> c:3\n");
}

TEST(Dot, EdgesComeInTheOrderOfTheFile) {
    EXPECT_EQ(operationsOf("digraph { a; b; b:1 -> a:1; a:2 -> b:2; b:3 -> a:3 }"),
              "host a\nhost b\n"
              "port a:1\nport a:2\nport a:3\nport b:1\nport b:2\nport b:3\n"
              "edge b:1 -> a:1\nedge a:2 -> b:2\nedge b:3 -> a:3\n");
}

TEST(Dot, ANodeWithoutLinksIsAHost) {
    EXPECT_EQ(operationsOf("graph { alone; subgraph cluster_rack { inside } }"), "host alone\nhost inside\n");
}

TEST(Dot, APortMayStandInAnAttribute) {
    EXPECT_EQ(operationsOf("digraph { a -> b [tailport=\"swp1\", headport=\"swp2\"] }"),
              "host a\nhost b\nport a:swp1\nport b:swp2\nedge a:swp1 -> b:swp2\n");
}

TEST(Dot, ACompassPointBehindAPortIsLeftOut) {
    EXPECT_EQ(operationsOf("digraph { a:\"swp1\":n -> b:\"swp2:sw\"; a:\"1:1\" -> b:x:7 }"),
              "host a\nhost b\nport a:swp1\nport a:1:1\nport b:swp2\nport b:x:7\n"
              "edge a:swp1 -> b:swp2\nedge a:1:1 -> b:x:7\n");
    EXPECT_EQ(warningsOf("digraph { a:\"swp1\":n -> b:\"swp2:sw\" }"), "");
}

TEST(Dot, ACompassPointAloneIsNoPort) {
    std::string const plan = "digraph {\n  a:n -> b:swp2\n}";
    EXPECT_EQ(operationsOf(plan), "host a\nhost b\nport a:b\nport b:swp2\nedge a:b -> b:swp2\n");
    EXPECT_EQ(warningsOf(plan),
              "t:2:3: warning: \"a\" has only a compass point (n) on this link; port \"b\" created\n");
}

TEST(Dot, AnEndWithoutAPortGetsOneNamedAfterItsPeerWithAWarning) {
    std::string const plan = "graph {\n"
                             "  a:b -- c:1\n"
                             "  a -- b:7;  a -- b\n"
                             "}";
    EXPECT_EQ(operationsOf(plan), "host a\nhost c\nhost b\n"
                                  "port a:b\nport a:b-2\nport a:b-3\nport c:1\nport b:7\nport b:a\n"
                                  "edge a:b -> c:1\nedge c:1 -> a:b\n"
                                  "edge a:b-2 -> b:7\nedge b:7 -> a:b-2\n"
                                  "edge a:b-3 -> b:a\nedge b:a -> a:b-3\n");
    EXPECT_EQ(warningsOf(plan), "t:3:3: warning: \"a\" has no port on this link; port \"b-2\" created\n"
                                "t:3:14: warning: \"a\" has no port on this link; port \"b-3\" created\n"
                                "t:3:14: warning: \"b\" has no port on this link; port \"a\" created\n");
}

TEST(Dot, AGraphThatNamesNoPortAtAllGetsOneWarning) {
    std::string const plan = "graph {\n  a -- b -- c\n  c -- c }";
    EXPECT_EQ(operationsOf(plan), "host a\nhost b\nhost c\n"
                                  "port a:b\nport b:a\nport b:c\nport c:b\nport c:c\nport c:c-2\n"
                                  "edge a:b -> b:a\nedge b:a -> a:b\n"
                                  "edge b:c -> c:b\nedge c:b -> b:c\n"
                                  "edge c:c -> c:c-2\nedge c:c-2 -> c:c\n");
    EXPECT_EQ(warningsOf(plan),
              "t:2:3: warning: no link names a port; each of the 6 link ends got a port named "
              "after the host at its other end\n");
}

TEST(Dot, ALinkBetweenTheSamePortsAgainIsLeftOutWithAWarning) {
    std::string const plan = "graph {\n a:1 -- b:2\n b:2 -- a:1\n a:1 -- b:2 }";
    EXPECT_EQ(operationsOf(plan), "host a\nhost b\nport a:1\nport b:2\nedge a:1 -> b:2\nedge b:2 -> a:1\n");
    EXPECT_EQ(warningsOf(plan), "t:3:2: warning: link left out; an earlier one joins the same ports\n"
                                "t:4:2: warning: link left out; an earlier one joins the same ports\n");
    EXPECT_EQ(operationsOf("digraph { a:1 -> b:2; b:2 -> a:1 }"),
              "host a\nhost b\nport a:1\nport b:2\nedge a:1 -> b:2\nedge b:2 -> a:1\n");
    EXPECT_EQ(warningsOf("digraph { a:1 -> b:2; b:2 -> a:1 }"), "");
}

TEST(Dot, APortMayBeLinkedToItselfAndToItsOwnHost) {
    EXPECT_EQ(operationsOf("graph { a:1 -- a:1; a:2 -- a:3 }"),
              "host a\nport a:1\nport a:2\nport a:3\nedge a:1 -> a:1\nedge a:2 -> a:3\nedge a:3 -> a:2\n");
}

TEST(Dot, AStrictGraphLosesParallelLinksWithAWarning) {
    std::string const plan = "strict graph {\n  a:49 -- b:49\n  b:50 -- a:50\n  a:1 -- c:1 }";
    EXPECT_EQ(operationsOf(plan), "host a\nhost b\nhost c\nport a:50\nport a:1\nport b:50\nport c:1\n"
                                  "edge a:50 -> b:50\nedge b:50 -> a:50\nedge a:1 -> c:1\nedge c:1 -> a:1\n");
    EXPECT_EQ(warningsOf(plan),
              "t:2:3: warning: link left out; a strict graph or an equal key merges it into "
              "another between \"a\" and \"b\"\n");
    EXPECT_EQ(
        warningsOf("graph {\n a:1 -- b:1 [key=k]\n a:2 -- b:2 [key=k] }"),
        "t:2:2: warning: link left out; a strict graph or an equal key merges it into another between \"a\" "
        "and \"b\"\n");
    EXPECT_EQ(warningsOf("strict digraph { a:1 -> b:1; b:1 -> a:1 }"), "");
}

TEST(Dot, SubgraphsLinkEachOfTheirNodes) {
    std::string const plan = "graph {\n  x:1 -- y:1; s -- { a b } }";
    EXPECT_EQ(operationsOf(plan), "host x\nhost y\nhost s\nhost a\nhost b\n"
                                  "port x:1\nport y:1\nport s:a\nport s:b\nport a:s\nport b:s\n"
                                  "edge x:1 -> y:1\nedge y:1 -> x:1\n"
                                  "edge s:a -> a:s\nedge a:s -> s:a\nedge s:b -> b:s\nedge b:s -> s:b\n");
    EXPECT_EQ(warningsOf(plan), "t:2:15: warning: \"s\" has no port on this link; port \"a\" created\n"
                                "t:2:15: warning: \"a\" has no port on this link; port \"s\" created\n"
                                "t:2:15: warning: \"s\" has no port on this link; port \"b\" created\n"
                                "t:2:15: warning: \"b\" has no port on this link; port \"s\" created\n");
}

TEST(Dot, NamesAreReadAsGraphvizReadsThem) {
    EXPECT_EQ(
        operationsOf("digraph { <b<i>x</i>>:<q> -> \"a\\\"b\":\"p\\\"1\"; \"long\" + \"er\":1 -> 1.5:-2 }"),
        "host b<i>x</i>\nhost a\"b\nhost longer\nhost 1.5\n"
        "port b<i>x</i>:q\nport a\"b:p\"1\nport longer:1\nport 1.5:-2\n"
        "edge b<i>x</i>:q -> a\"b:p\"1\nedge longer:1 -> 1.5:-2\n");
    EXPECT_EQ(operationsOf("graph { \"caf\xc3\xa9\"; \"\" }"), "host caf\xc3\xa9\nhost \n");
}

TEST(Dot, AByteOrderMarkAndCarriageReturnsAreSkipped) {
    EXPECT_EQ(operationsOf("\xef\xbb\xbfgraph {\r\n  a:1 -- b:2;\r\n}\r\n"),
              "host a\nhost b\nport a:1\nport b:2\nedge a:1 -> b:2\nedge b:2 -> a:1\n");
    EXPECT_EQ(warningsOf("\xef\xbb\xbfgraph { a:1 -- b }"),
              "t:1:12: warning: \"b\" has no port on this link; port \"a\" created\n");
}

TEST(Dot, ASyntaxErrorNamesItsLine) {
    EXPECT_EQ(errorOf("graph {\n  a -> b\n}"), "t:2: Graphviz: syntax error near '->'");
    EXPECT_EQ(errorOf("graph {\n  a:1 -- -- b\n}"), "t:2: Graphviz: syntax error near '--'");
    EXPECT_EQ(errorOf("graph {\n  a:1\n"), "t:3: Graphviz: syntax error at the end of the text");
    EXPECT_EQ(errorOf("graph"), "t:1: Graphviz: syntax error at the end of the text");
    EXPECT_EQ(errorOf("", from("dot")), "t:1:1: no graph in it; expected \"graph\" or \"digraph\"");
    EXPECT_EQ(errorOf(" // nothing", from("dot")),
              "t:1:1: no graph in it; expected \"graph\" or \"digraph\"");
    EXPECT_EQ(errorOf("graph {\n \"a }\n"),
              "t:2: Graphviz: syntax error scanning a quoted string (missing endquote? "
              "longer than 16384?)");
}

TEST(Dot, AnErrorInAFileThatADirectiveNamesKeepsThatName) {
    EXPECT_EQ(errorOf("graph {\n# 20 \"other.gv\"\n a -> b }"),
              "t: Graphviz: other.gv: syntax error in line 20 near '->'");
}

TEST(Dot, TextBehindTheGraphIsAWarning) {
    EXPECT_EQ(warningsOf("graph {\n a }\n;"),
              "t:3: warning: Graphviz: syntax error near ';'; the graph was read\n");
    EXPECT_EQ(warningsOf("graph {\n a } b"),
              "t:2: warning: Graphviz: syntax error near 'b'; the graph was read\n");
}

TEST(Dot, ASecondGraphIsAnError) {
    EXPECT_EQ(errorOf("graph { a }\n graph { b }"), "t:2:2: a second graph in the file; expected one");
    EXPECT_EQ(errorOf("graph { a };\nstrict digraph { b }"),
              "t:2:1: a second graph in the file; expected one");
}

TEST(Dot, ACommentWithoutEndIsAnError) {
    EXPECT_EQ(errorOf("graph { a }\n /* cables"), "t:2:2: comment without end; expected \"*/\"");
    EXPECT_EQ(errorOf("/* graph { a }", from("dot")), "t:1:1: comment without end; expected \"*/\"");
}

TEST(Dot, ANulByteIsAnError) { EXPECT_EQ(errorOf("graph { a\0 }"sv), "t:1:10: byte 0x00; expected text"); }

TEST(Dot, NothingOfOneReadingReachesTheNext) {
    std::string const good = "graph {\n a:1 -> b:2 }";
    std::string const message = errorOf(good);
    EXPECT_EQ(message, "t:2: Graphviz: syntax error near '->'");
    std::string const deep = "graph { x;" + std::string(20000, '{');
    for (std::string const & disturbance :
         {std::string("graph {\n\n\n \"a"), std::string("graph { a } \n\n } graph"),
          std::string("graph { <a"), std::string("# 20 \"other.gv\"\ngraph { -- }"), std::string("digraph {"),
          deep, std::string("graph { a -- b -- \n\n\n }"), std::string("node"),
          std::string("graph { a [x=\"y\n\n\n")}) {
        errorOf(disturbance, from("dot"));
        EXPECT_EQ(errorOf(good), message) << disturbance.substr(0, 40);
        EXPECT_EQ(operationsOf("graph { a }"), "host a\n") << disturbance.substr(0, 40);
    }
}

TEST(Dot, DeepNestingIsReadOrRefused) {
    std::string const deep = "graph " + std::string(200000, '{') + 'a' + std::string(200000, '}');
    EXPECT_EQ(errorOf(deep), "t:1: Graphviz: memory exhausted near '{'");
    EXPECT_EQ(errorOf("graph { x; " + deep.substr(6) + " }"), "t:1: Graphviz: memory exhausted near '{'");
}

TEST(DotOutline, FindsTheLinksThatAreWrittenOut) {
    std::string const plan = "graph plan { // a -- b\n"
                             " node [shape=box]; rank = same\n"
                             " a:1:n -- b -- subgraph s { c -- d } -- e\n"
                             " a [x=\"y -- z\" w=<p -- q>] f -- g [k=v] h\n"
                             "# i -- j\n"
                             " \"k\" + \"l\":2 -- /* m */ n }";
    DotOutline const outline = outlineDot(SourceText("t", plan));
    std::string links;
    for (DotLink const & link : outline.links) {
        links += link.tail + "--" + link.head + '@' + std::string(plan, link.offset, 3) + ' ';
    }
    EXPECT_EQ(links, "a--b@a:1 c--d@c - f--g@f - kl--n@\"k\" ");
    std::string nodes;
    for (auto const & [name, offset] : outline.mention) {
        nodes += name + ' ';
    }
    EXPECT_EQ(nodes, "a b c d e f g h kl n ");
}

TEST(Dot, EveryByteReplacedNeverCrashes) {
    std::string const plan = "strict digraph g { a:\"p\":n -> {b c}; <d>:1 -> \"e\\\"\" [k=v] /*x*/ }";
    std::size_t refused = 0;
    std::size_t tries = 0;
    for (std::size_t at = 0; at < plan.size(); ++at) {
        for (char const byte : "\"\\<>{}[]-:;=+/*#@ \n\xc3"
                               "a1"sv) {
            std::string changed = plan;
            changed[at] = byte;
            ++tries;
            refused += errorOf(changed, from("dot")) == "no error" ? 0U : 1U;
        }
    }
    EXPECT_GT(refused, tries / 4);
    EXPECT_LT(refused, tries);
}

}  // namespace
}  // namespace TopologyTools
