#include "tools/json/JsonPointer.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace std::string_literals;
using Tokens = std::vector<std::string>;

std::string pointerErrorOf(std::string_view pointer) {
    try {
        parseJsonPointer(pointer);
    } catch (JsonPointerError const & error) {
        return error.what();
    }
    return "no error";
}

TEST(JsonPointer, EscapesTildeAndSlashOnly) {
    EXPECT_EQ(escapeJsonPointerToken("a/b~c~1%\" "), "a~1b~0c~01%\" ");
    EXPECT_EQ(unescapeJsonPointerToken("a~1b~0c~01%\" "), "a/b~c~1%\" ");
    EXPECT_EQ(escapeJsonPointerToken(""), "");
}

TEST(JsonPointer, ReadsTheExamplesOfTheRfc) {  // RFC 6901, section 5
    EXPECT_EQ(parseJsonPointer(""), Tokens{});
    EXPECT_EQ(parseJsonPointer("/foo"), Tokens{"foo"});
    EXPECT_EQ(parseJsonPointer("/foo/0"), (Tokens{"foo", "0"}));
    EXPECT_EQ(parseJsonPointer("/"), Tokens{""});
    EXPECT_EQ(parseJsonPointer("/a~1b"), Tokens{"a/b"});
    EXPECT_EQ(parseJsonPointer("/c%d"), Tokens{"c%d"});
    EXPECT_EQ(parseJsonPointer("/ "), Tokens{" "});
    EXPECT_EQ(parseJsonPointer("/m~0n"), Tokens{"m~n"});
    EXPECT_EQ(parseJsonPointer("/~01"), Tokens{"~1"});
    EXPECT_EQ(parseJsonPointer("//a/"), (Tokens{"", "a", ""}));
}

TEST(JsonPointer, FormattingIsTheInverseOfReading) {
    for (Tokens const & tokens :
         {Tokens{}, Tokens{""}, Tokens{"", "", ""}, Tokens{"host", "a/b~1", "\0"s, "~"}}) {
        EXPECT_EQ(parseJsonPointer(formatJsonPointer(tokens)), tokens);
    }
    EXPECT_EQ(formatJsonPointer({"host", "a/b"}), "/host/a~1b");
}

TEST(JsonPointer, JoinsATokenThatItEscapes) {
    EXPECT_EQ(joinJsonPointer("", "host"), "/host");
    EXPECT_EQ(joinJsonPointer("/host", "et-0/0/1"), "/host/et-0~10~11");
    EXPECT_EQ(joinJsonPointer("/host", ""), "/host/");
}

TEST(JsonPointer, RefusesABrokenEscapeAndAMissingSlash) {
    std::string const escape = "; expected '0' or '1' after '~' (RFC 6901, section 3)";
    EXPECT_EQ(pointerErrorOf("/a~2"), "not a JSON Pointer: \"/a~2\"" + escape);
    EXPECT_EQ(pointerErrorOf("/a~"), "not a JSON Pointer: \"/a~\"" + escape);
    EXPECT_EQ(pointerErrorOf("/a~/b"), "not a JSON Pointer: \"/a~/b\"" + escape);
    EXPECT_EQ(
        pointerErrorOf("host/a"),
        "not a JSON Pointer: \"host/a\"; expected \"\" or a text that starts with '/' (RFC 6901, section 3)");
    EXPECT_THROW(unescapeJsonPointerToken("~"), JsonPointerError);
}

}  // namespace
}  // namespace TopologyTools
