#include "tools/document/JsonSink.h"

#include <functional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tools/json/LocatedJson.h"

namespace TopologyTools {
namespace {

using namespace std::string_literals;

void sample(JsonSink & sink) {
    sink.beginObject();
    sink.name("b");
    sink.beginObject();
    sink.endObject();
    sink.name("a");
    sink.beginObject();
    sink.name("");
    sink.null();
    sink.name("x");
    sink.beginObject();
    sink.name("y");
    sink.boolean(true);
    sink.endObject();
    sink.name("n");
    sink.number(4294967295U);
    sink.endObject();
    sink.name("s");
    sink.string("t");
    sink.endObject();
}

std::string text(int indent, std::function<void(JsonSink &)> const & make) {
    std::ostringstream out;
    JsonTextSink sink(out, indent);
    make(sink);
    return out.str();
}

TEST(JsonTextSink, GivesEveryMemberALineOfItsOwn) {
    EXPECT_EQ(text(2, sample), "{\n"
                               "  \"b\": {},\n"
                               "  \"a\": {\n"
                               "    \"\": null,\n"
                               "    \"x\": {\n"
                               "      \"y\": true\n"
                               "    },\n"
                               "    \"n\": 4294967295\n"
                               "  },\n"
                               "  \"s\": \"t\"\n"
                               "}");
    EXPECT_EQ(text(0, [](JsonSink & s) { s.beginObject(), s.name("a"), s.boolean(false), s.endObject(); }),
              "{\n\"a\": false\n}");
}

TEST(JsonTextSink, WritesOneLineWithoutWhiteSpace) {
    EXPECT_EQ(text(-1, sample), R"({"b":{},"a":{"":null,"x":{"y":true},"n":4294967295},"s":"t"})");
}

TEST(JsonTextSink, EscapesWhatTheGrammarWantsEscapedAndNothingElse) {  // RFC 8259, section 7
    std::string every;
    for (char c = 0; c >= 0 && c < 0x7f; ++c) every += c;
    every += "\x7f\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e";
    std::string const quoted = text(-1, [&](JsonSink & s) { s.string(every); });
    EXPECT_EQ(quoted.substr(0, 49), R"("\u0000\u0001\u0002\u0003\u0004\u0005\u0006\u0007)");
    EXPECT_NE(quoted.find(R"(\u0007\b\t\n\u000b\f\r\u000e)"), std::string::npos);
    EXPECT_NE(quoted.find(R"(\u001f !\"#$)"), std::string::npos);
    EXPECT_NE(quoted.find(R"([\\]^)"), std::string::npos);
    EXPECT_NE(quoted.find("~\x7f\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e\""), std::string::npos);
    EXPECT_NE(quoted.find("./0"), std::string::npos);
    EXPECT_EQ(parseJson(quoted, "t.json").string(), every);
}

TEST(JsonTreeSink, KeepsTheOrderOfMembers) {
    JsonTreeSink sink;
    sample(sink);
    EXPECT_EQ(sink.takeRoot().dump(), text(-1, sample));
}

TEST(JsonTreeSink, TakesAValueThatIsNoObject) {
    JsonTreeSink sink;
    sink.string("a\0b"s);
    EXPECT_EQ(sink.takeRoot(), nlohmann::ordered_json("a\0b"s));
}

}  // namespace
}  // namespace TopologyTools
