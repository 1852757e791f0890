#include "tools/json/LocatedJson.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

JsonValue read(std::string_view bytes) { return parseJson(bytes, "t.json"); }

std::string errorOf(std::string_view bytes, std::size_t firstLine = 1) {
    try {
        parseJson(bytes, "t.json", firstLine);
    } catch (InputError const & error) {
        return error.what();
    }
    return "no error";
}

std::string where(TextPosition position) {
    return std::to_string(position.line) + ':' + std::to_string(position.column);
}

// Every value and name with its place, in order: "1:1 object, 1:2 name a, ...".
void list(JsonValue const & value, std::string & out) {
    out += where(value.position()) + ' ' + std::string(jsonKindName(value.kind())) + '\n';
    if (value.isArray()) {
        for (JsonValue const & element : value.elements()) {
            list(element, out);
        }
    }
    if (value.isObject()) {
        for (JsonMember const & member : value.members()) {
            out += where(member.position) + " name " + member.name + '\n';
            list(member.value, out);
        }
    }
}

std::string listing(std::string_view bytes) {
    std::string out;
    list(read(bytes), out);
    return out;
}

TEST(LocatedJson, KnowsWhereEveryValueAndEveryNameStands) {
    EXPECT_EQ(listing("{\n"
                      "  \"b\" : [ 1,-2.5e+3 ,0,\ttrue],\r\n"
                      "  \"a\"\n"
                      "    :\n"
                      "    {\"x\":null,\"\":\"s\"}\n"
                      "}\n"),
              "1:1 object\n"
              "2:3 name b\n"
              "2:9 array\n"
              "2:11 number\n"
              "2:13 number\n"
              "2:22 number\n"
              "2:25 boolean\n"
              "3:3 name a\n"
              "5:5 object\n"
              "5:6 name x\n"
              "5:10 null\n"
              "5:15 name \n"
              "5:18 string\n");
}

TEST(LocatedJson, ANumberIsFollowedByAnything) {
    EXPECT_EQ(listing("[1]"), "1:1 array\n1:2 number\n");
    EXPECT_EQ(listing("[1,2]"), "1:1 array\n1:2 number\n1:4 number\n");
    EXPECT_EQ(listing("[1\n,2\n]"), "1:1 array\n1:2 number\n2:2 number\n");
    EXPECT_EQ(listing("{\"a\":1}"), "1:1 object\n1:2 name a\n1:6 number\n");
    EXPECT_EQ(listing("  17"), "1:3 number\n");
    EXPECT_EQ(listing("17 "), "1:1 number\n");
    EXPECT_EQ(listing("[0.5e-7,[-0],\"a\"]"), "1:1 array\n1:2 number\n1:9 array\n1:10 number\n1:14 string\n");
}

TEST(LocatedJson, ColumnsCountBytes) {
    EXPECT_EQ(listing("[\"\xc3\xa9\\\"\\u00e9\", true]"), "1:1 array\n1:2 string\n1:16 boolean\n");
}

TEST(LocatedJson, LinesCountFromTheFirstLineThatWasGiven) {
    JsonValue const value = parseJson("{\"op\":\n\"add\"}", "t.json", 7);
    EXPECT_EQ(where(value.position()), "7:1");
    EXPECT_EQ(where(value.member("op")->value.position()), "8:1");
    EXPECT_EQ(errorOf("{\"op\":\nadd}", 7), "t.json:8:1: expected a value; found \"add\"");
}

TEST(LocatedJson, HandsOutTheValues) {
    JsonValue const value =
        read("{\"n\":null,\"t\":true,\"f\":false,\"i\":-12,\"u\":18446744073709551616,\"r\":2.50,"
             "\"s\":\"a\\tb\",\"l\":[3]}");
    EXPECT_TRUE(value.member("n")->value.isNull());
    EXPECT_TRUE(value.member("t")->value.boolean());
    EXPECT_FALSE(value.member("f")->value.boolean());
    EXPECT_EQ(value.member("i")->value.number(), -12.0);
    EXPECT_EQ(value.member("u")->value.numberText(), "18446744073709551616");
    EXPECT_EQ(value.member("r")->value.number(), 2.5);
    EXPECT_EQ(value.member("r")->value.numberText(), "2.50");
    EXPECT_EQ(value.member("s")->value.string(), "a\tb");
    EXPECT_EQ(value.member("l")->value.elements().at(0).number(), 3.0);
    EXPECT_EQ(value.member("x"), nullptr);
    EXPECT_EQ(value.member("nn"), nullptr);
    EXPECT_THROW(static_cast<void>(value.string()), std::bad_variant_access);
}

TEST(LocatedJson, KeepsTheOrderOfMembersAndFindsEachByName) {
    std::string text = "{";
    for (int i = 0; i < 300; ++i) {
        text += (i == 0 ? "\"" : ",\"") + std::to_string((i * 7919) % 300) + "\":" + std::to_string(i);
    }
    JsonValue const value = read(text + "}");
    ASSERT_EQ(value.members().size(), 300U);
    for (int i = 0; i < 300; ++i) {
        JsonMember const & member = value.members()[static_cast<std::size_t>(i)];
        EXPECT_EQ(member.name, std::to_string((i * 7919) % 300));
        EXPECT_EQ(value.member(member.name), &member);
    }
}

TEST(LocatedJson, StringsHoldAnyCharacter) {
    EXPECT_EQ(read("\"a\\u0000b\"").string(), "a\0b"s);
    EXPECT_EQ(read("\"\\ud83d\\ude00\"").string(), "\xf0\x9f\x98\x80");
    EXPECT_EQ(read("\"\xf0\x9f\x98\x80\x7f\"").string(), "\xf0\x9f\x98\x80\x7f");
    EXPECT_EQ(read("{\"\\u0000\":1}").member("\0"sv)->value.number(), 1.0);
    EXPECT_EQ(read("\"\\ufeff\"").string(), "\xef\xbb\xbf");
}

TEST(LocatedJson, SyntaxErrorsSayWhatWasExpectedAndWhatWasFound) {
    EXPECT_EQ(errorOf("{\"a\" 1}"), "t.json:1:6: expected ':'; found \"1\"");
    EXPECT_EQ(errorOf("{\"a\":}"), "t.json:1:6: expected a value; found \"}\"");
    EXPECT_EQ(errorOf("{\"a\":1,}"), "t.json:1:8: expected a member name in quotation marks; found \"}\"");
    EXPECT_EQ(errorOf("{\"a\":1 \"b\":2}"), "t.json:1:8: expected ',' or '}'; found a string");
    EXPECT_EQ(errorOf("{a:1}"), "t.json:1:2: expected a member name in quotation marks or '}'; found \"a\"");
    EXPECT_EQ(errorOf("{\"a\":1]"), "t.json:1:7: expected ',' or '}'; found \"]\"");
    EXPECT_EQ(errorOf("[1,\n  ,2]"), "t.json:2:3: expected a value; found \",\"");
    EXPECT_EQ(errorOf("[1,]"), "t.json:1:4: expected a value; found \"]\"");
    EXPECT_EQ(errorOf("[,]"), "t.json:1:2: expected a value or ']'; found \",\"");
    EXPECT_EQ(errorOf("[1 2]"), "t.json:1:4: expected ',' or ']'; found \"2\"");
    EXPECT_EQ(errorOf("[1}"), "t.json:1:3: expected ',' or ']'; found \"}\"");
    EXPECT_EQ(errorOf("[tru]"), "t.json:1:2: expected a value or ']'; found \"tru\"");
    EXPECT_EQ(errorOf("[1, nul]"), "t.json:1:5: expected a value; found \"nul\"");
    EXPECT_EQ(errorOf("nan"), "t.json:1:1: expected a value; found \"nan\"");
    EXPECT_EQ(errorOf("[1.]"), "t.json:1:2: expected a value or ']'; found \"1.\"");
    EXPECT_EQ(errorOf("[-]"), "t.json:1:2: expected a value or ']'; found \"-\"");
    EXPECT_EQ(errorOf("[1,+1]"), "t.json:1:4: expected a value; found \"+\"");
    EXPECT_EQ(errorOf("[2e]"), "t.json:1:2: expected a value or ']'; found \"2e\"");
    EXPECT_EQ(errorOf("[01]"), "t.json:1:3: expected ',' or ']'; found \"1\"");
    EXPECT_EQ(errorOf("['a']"), "t.json:1:2: expected a value or ']'; found \"'\"");
    EXPECT_EQ(errorOf("[\xc3\xa9]"), "t.json:1:2: expected a value or ']'; found \"\xc3\xa9\"");
    EXPECT_EQ(errorOf("\xef\xbc\x91"), "t.json:1:1: expected a value; found \"\xef\xbc\x91\"");
    EXPECT_EQ(errorOf("// no\n1"), "t.json:1:1: expected a value; found \"/\"");
    EXPECT_EQ(errorOf("]"), "t.json:1:1: expected a value; found \"]\"");
    EXPECT_EQ(errorOf("[1\x01]"), "t.json:1:3: expected ',' or ']'; found byte 0x01");
}

TEST(LocatedJson, ATruncatedTextIsAnErrorAtItsEnd) {
    EXPECT_EQ(errorOf("{"),
              "t.json:1:2: expected a member name in quotation marks or '}'; found end of input");
    EXPECT_EQ(errorOf("{\"a\""), "t.json:1:5: expected ':'; found end of input");
    EXPECT_EQ(errorOf("{\"a\":"), "t.json:1:6: expected a value; found end of input");
    EXPECT_EQ(errorOf("{\"a\":1"), "t.json:1:7: expected ',' or '}'; found end of input");
    EXPECT_EQ(errorOf("{\"a\":1,\n"),
              "t.json:2:1: expected a member name in quotation marks; found end of input");
    EXPECT_EQ(errorOf("[[1]"), "t.json:1:5: expected ',' or ']'; found end of input");
    EXPECT_EQ(errorOf("[\"ab"), "t.json:1:5: end of input in a string; expected '\"'");
    EXPECT_EQ(errorOf("[\"ab\\"), "t.json:1:6: end of input in a string; expected '\"'");
}

TEST(LocatedJson, EmptyInputIsAnError) {
    EXPECT_EQ(errorOf(""), "t.json:1:1: empty input; expected a JSON value");
    EXPECT_EQ(errorOf(" \n "), "t.json:2:2: empty input; expected a JSON value");
    EXPECT_EQ(errorOf(std::string_view()), "t.json:1:1: empty input; expected a JSON value");
}

TEST(LocatedJson, TextAfterTheValueIsAnError) {
    EXPECT_EQ(errorOf("{}\n{}"), "t.json:2:1: expected end of input; found \"{\"");
    EXPECT_EQ(errorOf("1 x"), "t.json:1:3: expected end of input; found \"x\"");
    EXPECT_EQ(errorOf("1-"), "t.json:1:2: expected end of input; found \"-\"");
    EXPECT_EQ(errorOf("[]]"), "t.json:1:3: expected end of input; found \"]\"");
    EXPECT_EQ(errorOf("[],"), "t.json:1:3: expected end of input; found \",\"");
}

TEST(LocatedJson, ANulByteDoesNotEndTheText) {
    EXPECT_EQ(errorOf("[1]\0[2]"sv), "t.json:1:4: expected end of input; found byte 0x00");
    EXPECT_EQ(errorOf("[1,\0"sv), "t.json:1:4: expected a value; found byte 0x00");
    EXPECT_EQ(errorOf("\0"sv), "t.json:1:1: expected a value; found byte 0x00");
    EXPECT_EQ(errorOf("7\0"sv), "t.json:1:2: expected end of input; found byte 0x00");
    EXPECT_EQ(errorOf("\"a\0b\""sv),
              "t.json:1:3: byte 0x00 in a string; expected control characters to be escaped");
}

TEST(LocatedJson, ADuplicateMemberNameIsAnErrorThatNamesTheFirst) {
    EXPECT_EQ(errorOf("{\"a\":1,\n \"b\":2, \"a\":3}"),
              "t.json:2:9: /a: duplicate member name \"a\"; first at line 1, column 2");
    EXPECT_EQ(errorOf("[0,{\"p/q\":[{},{\"x\":1,\"\\u0078\":1}]}]"),
              "t.json:1:22: /1/p~1q/1/x: duplicate member name \"x\"; first at line 1, column 16");
    EXPECT_EQ(errorOf("{\"z\":1,\"b\":2,\"z\":3,\"b\":4,\"a\":5,\"z\":6}"),
              "t.json:1:14: /z: duplicate member name \"z\"; first at line 1, column 2");
    EXPECT_EQ(errorOf("{\"\":1,\"\":2}"),
              "t.json:1:7: /: duplicate member name \"\"; first at line 1, column 2");
    EXPECT_EQ(errorOf("{\"\\u0000\":1,\"\\u0000\":2}"),
              "t.json:1:13: /\\u0000: duplicate member name \"\\u0000\"; first at line 1, column 2");
}

TEST(LocatedJson, InvalidUtf8IsAnErrorAtItsFirstByte) {
    std::string const tail = "; expected text encoded in UTF-8 (RFC 3629)";
    EXPECT_EQ(errorOf("[\"\xff\"]"), "t.json:1:3: invalid UTF-8: byte 0xff" + tail);
    EXPECT_EQ(errorOf("[\"a\xc3\"]"), "t.json:1:4: invalid UTF-8: byte 0xc3" + tail);
    EXPECT_EQ(errorOf("\n\"\xc0\x80\""), "t.json:2:2: invalid UTF-8: byte 0xc0" + tail);
    EXPECT_EQ(errorOf("\"\xed\xa0\x80\""), "t.json:1:2: invalid UTF-8: byte 0xed" + tail);
    EXPECT_EQ(errorOf("\xff\xfe[\0]\0"sv), "t.json:1:1: invalid UTF-8: byte 0xff" + tail);
}

TEST(LocatedJson, ALoneSurrogateIsAnErrorAtItsEscape) {
    EXPECT_EQ(errorOf("[\"a\\ud800\"]"),
              "t.json:1:4: lone surrogate \\ud800; expected an escape from \\udc00 to \\udfff to follow");
    EXPECT_EQ(errorOf("\"\\uD83Dx\""),
              "t.json:1:2: lone surrogate \\uD83D; expected an escape from \\udc00 to \\udfff to follow");
    EXPECT_EQ(errorOf("\"\\ud800\\ud800\""),
              "t.json:1:2: lone surrogate \\ud800; expected an escape from \\udc00 to \\udfff to follow");
    EXPECT_EQ(errorOf("\"\\ud83d\\ude00\\udc00\""),
              "t.json:1:14: lone surrogate \\udc00; expected an escape from \\ud800 to \\udbff before it");
    EXPECT_EQ(errorOf("{\"\\udfff\":1}"),
              "t.json:1:3: lone surrogate \\udfff; expected an escape from \\ud800 to \\udbff before it");
}

TEST(LocatedJson, BrokenEscapesAreErrors) {
    EXPECT_EQ(errorOf("\"a\\qb\""),
              "t.json:1:3: unknown escape; expected one of \\\" \\\\ \\/ \\b \\f \\n \\r \\t \\u");
    EXPECT_EQ(errorOf("\"\\n\\u12g4\""),
              "t.json:1:4: broken escape; expected four hexadecimal digits after \\u");
    EXPECT_EQ(errorOf("\"\\u12"), "t.json:1:2: broken escape; expected four hexadecimal digits after \\u");
    EXPECT_EQ(errorOf("\"a\nb\""),
              "t.json:1:3: byte 0x0a in a string; expected control characters to be escaped");
}

TEST(LocatedJson, AByteOrderMarkIsAnError) {
    EXPECT_EQ(errorOf("\xef\xbb\xbf{}"),
              "t.json:1:1: byte order mark; expected JSON text without one (RFC 8259, section 8.1)");
}

TEST(LocatedJson, ANumberOutOfRangeIsAnError) {
    EXPECT_EQ(errorOf("{\"a\":[1, 1e400]}"),
              "t.json:1:10: /a/1: number out of range: \"1e400\"; expected at most 1.8e308 in magnitude");
    EXPECT_EQ(errorOf("-1e999"),
              "t.json:1:1: number out of range: \"-1e999\"; expected at most 1.8e308 in magnitude");
}

TEST(LocatedJson, NestingHasALimit) {
    std::string const deepest = std::string(maxJsonNesting, '[') + std::string(maxJsonNesting, ']');
    EXPECT_EQ(read(deepest).elements().size(), 1U);
    EXPECT_EQ(errorOf('[' + deepest + ']'),
              "t.json:1:257: values nested too deep; expected at most 256 levels");
    std::string endless;
    for (int i = 0; i < 200000; ++i) {
        endless += "{\"a\":";
    }
    EXPECT_EQ(errorOf(endless), "t.json:1:1281: values nested too deep; expected at most 256 levels");
}

TEST(LocatedJson, TheErrorCarriesItsParts) {
    try {
        parseJson("{\"a\":[{\"x\":1,\"x\":2}]}", "t.json", 3);
        FAIL() << "no error";
    } catch (InputError const & error) {
        EXPECT_EQ(error.file(), "t.json");
        EXPECT_EQ(where(error.position()), "3:14");
        EXPECT_EQ(error.pointer(), "/a/0/x");
        EXPECT_EQ(error.message(), "duplicate member name \"x\"; first at line 3, column 8");
    }
}

TEST(LocatedJson, EveryTruncationOfATextIsAnError) {
    std::string const text =
        "{\"a\":[1,-2.5e3,true,null,\"x\\n\\u00e9\\ud83d\\ude00\xc3\xa9\"],\"b\":{\"c\":{}}}";
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_THROW(read(text.substr(0, length)), InputError) << length;
    }
    EXPECT_NO_THROW(read(text));
}

TEST(LocatedJson, EveryByteReplacedByEveryOtherNeverCrashes) {
    std::string const text = "{\"a\":[1,-2e3,true,\"x\\u00e9\\ud83d\\ude00\xc3\xa9\"]}";
    std::size_t refused = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = text;
            changed[at] = static_cast<char>(byte);
            refused += errorOf(changed) == "no error" ? 0U : 1U;
        }
    }
    EXPECT_GT(refused, 256U * 20U);
    EXPECT_LT(refused, 256U * text.size());
}

TEST(JsonGlance, FindsAMemberOfTheOutermostObjectUpToTheFault) {
    EXPECT_EQ(glanceAtJson("{\"a\":{\"x\":1},\"b\":2}", {"x", "b"}).member, "b");
    EXPECT_EQ(glanceAtJson("{\"a\":{\"x\":1},\"b\":2}", {"b", "a"}).member, "a");
    EXPECT_EQ(glanceAtJson("{\"a\":[{\"b\":1}],\"b\":[{\"y\":", {"b"}).member, "b");
    EXPECT_EQ(glanceAtJson("\xef\xbb\xbf{\"b\":1}", {"b"}).member, "b");
    EXPECT_EQ(glanceAtJson("[{\"b\":1}]", {"c"}).member, std::nullopt);
    EXPECT_EQ(glanceAtJson("{\"a\":1", {"b"}).member, std::nullopt);
    EXPECT_EQ(glanceAtJson("graph {", {"graph"}).member, std::nullopt);
    EXPECT_EQ(glanceAtJson("", {"b"}).member, std::nullopt);
}

TEST(JsonGlance, TellsAnEmptyObjectAndABrokenOne) {
    EXPECT_FALSE(glanceAtJson("{}", {"b"}).hasMembers);
    EXPECT_TRUE(glanceAtJson("{\"a\":1}", {"b"}).hasMembers);
    EXPECT_TRUE(glanceAtJson("{\"a\":1}", {"b"}).wellFormed);
    EXPECT_FALSE(glanceAtJson("{\"a\":1", {"b"}).wellFormed);
}

}  // namespace
}  // namespace TopologyTools
