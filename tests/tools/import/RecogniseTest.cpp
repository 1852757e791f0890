#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/tools/import/ImportTesting.h"
#include "tools/import/Importer.h"

namespace TopologyTools {
namespace {

using namespace ImportTesting;

TEST(Recognise, TellsTheFormatsApartByContent) {
    EXPECT_EQ(recognise("{\"ietf-network:networks\":{}}"), "rfc8345");
    EXPECT_EQ(recognise("{\"ietf-interfaces:interfaces\":{},\"ietf-network:network\":[]}"), "rfc8345");
    EXPECT_EQ(recognise("{\"networks\":{}}"), "rfc8345");
    EXPECT_EQ(recognise("graph {}"), "dot");
    EXPECT_EQ(recognise(" /* cables */ // of the lab\n# second floor\nSTRICT DiGraph x {}"), "dot");
    EXPECT_EQ(recognise("<graphml/>"), "graphml");
    EXPECT_EQ(recognise("<?xml version=\"1.0\"?><!DOCTYPE graphml><!-- map -->\n<g:graphml xmlns:g=\"x\"/>"),
              "graphml");
    EXPECT_EQ(recognise("{\"host\":{}}"), "v2");
    EXPECT_EQ(recognise(" {}"), "v2");
}

TEST(Recognise, KnowsABrokenFileSoThatItsReaderCanSayWhatIsWrong) {
    EXPECT_EQ(recognise("{\"ietf-network:networks\":{"), "rfc8345");
    EXPECT_EQ(recognise("{\"edge\":{},"), "v2");
    EXPECT_EQ(recognise("{"), "v2");
    EXPECT_EQ(recognise("{\"wrong"), "v2");
    EXPECT_EQ(recognise("graph {"), "dot");
    EXPECT_EQ(recognise("<graphml><graph>"), "graphml");
    EXPECT_EQ(recognise("\xef\xbb\xbf{\"host\":{}}"), "v2");
    EXPECT_EQ(recognise("\xef\xbb\xbf{\"networks\":{}}"), "rfc8345");
    EXPECT_EQ(recognise("\xef\xbb\xbf"), std::nullopt);
}

TEST(Recognise, GuessesNothingElse) {
    for (std::string_view const other :
         {"", " \n", "[]", "7", "{\"edges\":[]}", "{\"topology\":{\"host\":{}}}", "<html/>",
          "<!-- graphml -->", "graphite {}", "name: lab\ntopology:\n", "\"graph\" {}"}) {
        EXPECT_EQ(recognise(other), std::nullopt) << other;
    }
}

TEST(Import, FollowsTheFormatThatIsNamed) {
    EXPECT_EQ(importTopology("graph{a}", "t", from("dot")).format, "dot");
    EXPECT_EQ(importTopology("graph{a}", "t", {}).format, "dot");
    EXPECT_EQ(importFormats(), (std::vector<std::string_view>{"rfc8345", "dot", "graphml"}));
}

TEST(Import, AnUnknownFormatIsAnError) {
    EXPECT_EQ(errorOf("graph{a}", from("yaml")),
              "t: unknown format \"yaml\"; expected one of rfc8345, dot, graphml");
    EXPECT_EQ(errorOf("name: lab\n"), "t: format not recognised; expected a topology in one of rfc8345, dot, "
                                      "graphml, or --from to name it");
    EXPECT_EQ(errorOf("{\"host\":{}}"),
              "t: a version-2 document; expected a topology in one of rfc8345, dot, graphml");
}

TEST(Import, AWrongFormatIsAnErrorAndNoEmptyTopology) {
    EXPECT_EQ(errorOf("graph{a}", from("rfc8345")), "t:1:1: expected a value; found \"graph\"");
    EXPECT_EQ(errorOf("{\"host\":{}}", from("rfc8345")),
              "t:1:1: no network; expected \"ietf-network:networks\" with a list \"network\"");
    EXPECT_EQ(errorOf("{\"host\":{}}", from("dot")), "t:1: Graphviz: syntax error near '{'");
    EXPECT_EQ(errorOf("<graphml/>", from("dot")), "t:1: Graphviz: syntax error near '>'");
    EXPECT_EQ(errorOf("graph{a}", from("graphml")), "t:1:1: no XML element in it; expected graphml");
    EXPECT_EQ(errorOf("<html/>", from("graphml")), "t:1:1: element \"html\"; expected graphml");
}

TEST(Import, AFileWithoutAHostIsAnError) {
    EXPECT_EQ(errorOf(" digraph {}"), "t:1:2: no host in it, read as dot; expected at least one node");
    EXPECT_EQ(errorOf("<graphml>\n<graph edgedefault=\"directed\"/></graphml>"),
              "t:2:1: no host in it, read as graphml; expected at least one node");
    EXPECT_EQ(errorOf("{\"ietf-network:network\":[\n{\"network-id\":\"n\"}]}"),
              "t:2:1: no host in it, read as rfc8345; expected at least one node");
}

TEST(Import, TextThatIsNotUtf8IsAnError) {
    std::string const message = "invalid UTF-8: byte 0xe9; expected text encoded in UTF-8 (RFC 3629)";
    EXPECT_EQ(errorOf("graph{\n  \"caf\xe9\"}"), "t:2:7: " + message);
    EXPECT_EQ(errorOf("<graphml>caf\xe9</graphml>"), "t:1:13: " + message);
    EXPECT_EQ(errorOf("{\"networks\":\"caf\xe9\"}"), "t:1:17: " + message);
}

TEST(Import, OnlyAFormatWithSeveralNetworksTakesOne) {
    EXPECT_EQ(errorOf("graph{a}", network("x")),
              "t: no network \"x\"; a Graphviz file holds one without a name");
    EXPECT_EQ(errorOf("<graphml/>", network("x")),
              "t: no network \"x\"; a GraphML file holds one without a name");
}

}  // namespace
}  // namespace TopologyTools
