#include "tools/json/SourceText.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace std::string_view_literals;

TEST(SourceText, TellsLineAndColumnOfEveryOffset) {
    SourceText const text("f", "ab\r\n\nc", 5);
    EXPECT_EQ(text.position(0), (TextPosition{5, 1}));
    EXPECT_EQ(text.position(3), (TextPosition{5, 4}));
    EXPECT_EQ(text.position(4), (TextPosition{6, 1}));
    EXPECT_EQ(text.position(5), (TextPosition{7, 1}));
    EXPECT_EQ(text.position(6), (TextPosition{7, 2}));
}

TEST(SourceText, AnEmptyTextHasAPosition) {
    EXPECT_EQ(SourceText("f", "").position(0), (TextPosition{1, 1}));
}

TEST(InvalidUtf8, AcceptsWhatTheRfcAllows) {  // RFC 3629, section 4: the ends of every range
    for (std::string_view const good :
         {""sv, "\0\x7f"sv, "\xc2\x80\xdf\xbf"sv,
          "\xe0\xa0\x80\xe1\x80\x80\xec\xbf\xbf\xed\x80\x80\xed\x9f\xbf"sv, "\xee\x80\x80\xef\xbf\xbf"sv,
          "\xf0\x90\x80\x80\xf1\x80\x80\x80\xf3\xbf\xbf\xbf\xf4\x8f\xbf\xbf"sv}) {
        EXPECT_EQ(findInvalidUtf8(good), std::string_view::npos);
    }
}

TEST(InvalidUtf8, FindsTheFirstByteOfWhatItRefuses) {
    for (std::string_view const bad :
         {"\x80"sv, "\xbf"sv, "\xc0\x80"sv, "\xc1\xbf"sv, "\xc2"sv, "\xc2\x20"sv, "\xe0\x9f\xbf"sv,
          "\xe0\xa0"sv, "\xe1\x80\x20"sv, "\xed\xa0\x80"sv, "\xed\xbf\xbf"sv, "\xf0\x8f\xbf\xbf"sv,
          "\xf0\x90\x80"sv, "\xf1\x80\x80\x20"sv, "\xf4\x90\x80\x80"sv, "\xf5\x80\x80\x80"sv, "\xff"sv}) {
        EXPECT_EQ(findInvalidUtf8("a\xc3\xa9" + std::string(bad) + "z"), 3U);
    }
}

TEST(InputError, PrintsWhatIsKnown) {
    EXPECT_STREQ(InputError("f", {2, 3}, "m", "/a").what(), "f:2:3: /a: m");
    EXPECT_STREQ(InputError("f", {2, 3}, "m").what(), "f:2:3: m");
    EXPECT_STREQ(InputError("f", {2, 0}, "m").what(), "f:2: m");
    EXPECT_STREQ(InputError("f", {}, "m").what(), "f: m");
}

TEST(QuotedText, KeepsAMessageOnOneLineAndShort) {
    EXPECT_EQ(quotedText("a\"b\\c\n\0\x7f"sv), R"("a\"b\\c\u000a\u0000\u007f")");
    EXPECT_EQ(quotedText(std::string(60, 'x')), '"' + std::string(60, 'x') + '"');
    EXPECT_EQ(quotedText(std::string(61, 'x')), '"' + std::string(60, 'x') + "...\"");
    EXPECT_EQ(quotedText(std::string(59, 'x') + "\xc3\xa9"), '"' + std::string(59, 'x') + "...\"");
}

}  // namespace
}  // namespace TopologyTools
