#include "tools/format/DotFormat.h"

#include <cstdlib>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "tests/tools/format/FormatTesting.h"
#include "tools/format/Graphviz.h"
#include "tools/format/PrintedName.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

std::string dot(Status::Ptr const & status) { return dotFormat(topologyView(*status)); }

// What Graphviz makes of it; it must not complain.
pugi::xml_document drawn(std::string const & graph) {
    GraphvizResult const result = runGraphviz(graph, "svg");
    EXPECT_EQ(result.complaints, "");
    pugi::xml_document svg;
    pugi::xml_parse_result const parsed = svg.load_string(result.output.c_str());
    EXPECT_TRUE(parsed) << parsed.description();
    return svg;
}

std::vector<pugi::xml_node> withClass(pugi::xml_document const & svg, std::string const & name) {
    std::vector<pugi::xml_node> found;
    for (auto const & match : svg.select_nodes(("//*[@class='" + name + "']").c_str()))
        found.push_back(match.node());
    return found;
}

// The texts in a picture, with the no-break spaces of Graphviz taken back.
std::multiset<std::string> texts(pugi::xml_document const & svg) {
    std::multiset<std::string> all;
    for (auto const & match : svg.select_nodes("//text")) {
        all.insert(std::regex_replace(std::string(match.node().child_value()), std::regex("\u00a0"), " "));
    }
    return all;
}

// The tooltip is where an edge says in words what it joins.
std::map<std::string, pugi::xml_node> edgesByTooltip(pugi::xml_document const & svg) {
    std::map<std::string, pugi::xml_node> edges;
    for (pugi::xml_node const & edge : withClass(svg, "edge")) {
        edges[edge.select_node(".//a/@*[name()='xlink:title']").attribute().value()] = edge;
    }
    return edges;
}

std::string strokes(pugi::xml_node const & edge) {
    return edge.select_node(".//path").node().attribute("stroke-dasharray").value();
}
std::string colour(pugi::xml_node const & edge) {
    return edge.select_node(".//path").node().attribute("stroke").value();
}
std::size_t arrows(pugi::xml_node const & edge) { return edge.select_nodes(".//polygon").size(); }

TEST(DotFormat, DrawsEveryHostWithItsCellsAndEveryLinkOnce) {
    Status::Ptr const status = rack();
    pugi::xml_document const svg = drawn(dot(status));
    EXPECT_EQ(withClass(svg, "node").size(), 4u);
    EXPECT_EQ(withClass(svg, "edge").size(), 6u);
    auto const all = texts(svg);
    EXPECT_EQ(all.count("leaf-1"), 1u);
    EXPECT_EQ(all.count("leaf-1.example"), 1u);
    EXPECT_EQ(all.count("localhost"), 1u);
    EXPECT_EQ(all.count("MLAG rack, active, 02:00:00:00:00:01"), 2u);
    EXPECT_EQ(all.count("m-1"), 2u);
    EXPECT_EQ(all.count("bond-1"), 2u);
    EXPECT_EQ(all.count("peer"), 2u);
    EXPECT_EQ(all.count("eth-3"), 2u);
    EXPECT_EQ(all.count("eth-1"), 2u);  // of the server and the spine
}

TEST(DotFormat, MarksPeerLinksOneWayLinksAndFalseFlags) {
    Status::Ptr const status = rack();
    Port::Ptr const idle = status->host("leaf-1")->port("eth-3");
    edge(*status, *idle, *status->host("spine")->portIs("eth-7"));
    edge(*status, *status->host("spine")->portIs("eth-8"), *idle, false);
    pugi::xml_document const svg = drawn(dot(status));
    auto const edges = edgesByTooltip(svg);
    ASSERT_EQ(edges.size(), 8u);

    pugi::xml_node const plain = edges.at("eth-1 of spine <-> eth-11 of leaf-1");
    EXPECT_EQ(arrows(plain), 0u);
    EXPECT_EQ(strokes(plain), "");

    pugi::xml_node const peer = edges.at("eth-9 of leaf-1 <-> eth-9 of leaf-2");
    EXPECT_EQ(arrows(peer), 0u);
    EXPECT_NE(colour(peer), colour(plain));
    EXPECT_EQ(edges.at("eth-10 of leaf-1 <-> eth-10 of leaf-2").empty(), false);

    EXPECT_EQ(arrows(edges.at("eth-7 of spine <-- eth-3 of leaf-1")), 1u);
    EXPECT_EQ(strokes(edges.at("eth-7 of spine <-- eth-3 of leaf-1")), "");
    EXPECT_EQ(arrows(edges.at("eth-8 of spine --> eth-3 of leaf-1")), 1u);
    EXPECT_NE(strokes(edges.at("eth-8 of spine --> eth-3 of leaf-1")), "");
}

TEST(DotFormat, DrawsALoopWithoutArrows) {
    Status::Ptr const status = rack();
    Port::Ptr const looped = status->host("leaf-1")->port("eth-3");
    edge(*status, *looped, *looped);
    auto const svg = drawn(dot(status));
    EXPECT_EQ(arrows(edgesByTooltip(svg).at("eth-3 of leaf-1 <-> eth-3 of leaf-1")), 0u);
}

TEST(DotFormat, DrawsTheArrowOfAOneWayPeerLink) {
    Status::Ptr const status = rack();
    status->edgeIs(status->host("leaf-1")->port("eth-9")->portKey())->toPortDelAll();
    auto const svg = drawn(dot(status));
    EXPECT_EQ(arrows(edgesByTooltip(svg).at("eth-9 of leaf-1 <-- eth-9 of leaf-2")), 1u);
}

double topOf(pugi::xml_document const & svg, std::string const & text) {
    return svg.select_node(("//text[.='" + text + "']").c_str()).node().attribute("y").as_double();
}

TEST(DotFormat, SpinesStandAboveTheHostsOfAnMlagAndServersBelow) {
    auto const svg = drawn(dot(rack()));
    EXPECT_LT(topOf(svg, "spine"), topOf(svg, "leaf-1"));
    EXPECT_EQ(topOf(svg, "leaf-1"),
              topOf(svg, "leaf-1.example") - (topOf(svg, "leaf-2.example") - topOf(svg, "leaf-2")));
    EXPECT_LT(topOf(svg, "leaf-1"), topOf(svg, "server"));
}

TEST(DotFormat, PortsStandOnTheSideToWhichTheirLinksLead) {
    auto const svg = drawn(dot(rack()));
    EXPECT_LT(topOf(svg, "eth-11"), topOf(svg, "leaf-1"));  // to the spine
    EXPECT_GT(topOf(svg, "bond-1"), topOf(svg, "leaf-1"));  // to the server
    EXPECT_LT(topOf(svg, "bond-1"), topOf(svg, "eth-2"));
    EXPECT_LT(topOf(svg, "bond"), topOf(svg, "server"));  // to the leaves, ports outermost
}

TEST(DotFormat, DrawsWhatHasLeftAndWhatLeadsNowhere) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const host = status->hostIs("h");
    Port::Ptr const goes = host->portIs("goes");
    edge(*status, *host->portIs("stays"), *goes);
    status->edgeIs(host->portIs("alone")->portKey());
    host->portDel("goes");
    auto const svg = drawn(dot(status));
    auto const edges = edgesByTooltip(svg);
    EXPECT_EQ(edges.size(), 2u);
    EXPECT_TRUE(edges.contains("alone of h --> nowhere"));
    EXPECT_EQ(texts(svg).count("goes (port) of h (has left)"), 1u);
}

TEST(DotFormat, AnEmptyModelIsAnEmptyPicture) {
    auto const svg = drawn(dot(Status::StatusIs()));
    EXPECT_TRUE(withClass(svg, "node").empty());
}

TEST(DotFormat, NamesAreOnlyText) {
    for (std::string const & name : hostileNames()) {
        SCOPED_TRACE(printedName(name));
        auto const svg = drawn(dot(hostileModel({name})));
        // Port, group and MLAG, the host's name and its hostname, which may be empty.
        EXPECT_EQ(texts(svg).count(printedName(name)), name.empty() ? 4u : 5u);
        // The host, the port that has left, and the end of the MLAG's edge; from nowhere to nowhere.
        EXPECT_EQ(withClass(svg, "node").size(), 5u);
        EXPECT_EQ(withClass(svg, "edge").size(), 5u);
    }
}

TEST(DotFormat, AllHostileNamesTogether) {
    std::size_t const count = hostileNames().size();
    auto const svg = drawn(dot(hostileModel()));
    EXPECT_EQ(withClass(svg, "node").size(), 3 * count + 2);
    EXPECT_EQ(withClass(svg, "edge").size(), 4 * count + 1);
}

TEST(DotFormat, BytesThatAreNotUtf8AreNoHarm) {
    EXPECT_EQ(withClass(drawn(dot(hostileModel({"\xff\xc3", "\xed\xa0\x80", "ok"}))), "edge").size(), 13u);
}

TEST(Graphviz, SaysWhatIsMissing) {
    std::string const path = std::getenv("PATH");
    setenv("PATH", "/nonexistent", 1);
    EXPECT_THROW(runGraphviz("graph {}", "svg"), GraphvizError);
    setenv("PATH", path.c_str(), 1);
}

TEST(Graphviz, PassesOnWhatIsWrongWithAGraph) {
    try {
        runGraphviz("digraph { a -> ", "svg");
        FAIL();
    } catch (GraphvizError const & error) {
        EXPECT_THAT(error.what(), HasSubstr("syntax error"));
    }
    EXPECT_THAT(runGraphviz("digraph { a [shape=nonsense] }", "svg").complaints, HasSubstr("nonsense"));
}

}  // namespace
}  // namespace TopologyTools
