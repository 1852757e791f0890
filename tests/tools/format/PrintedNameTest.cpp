#include "tools/format/PrintedName.h"

#include <string>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace std::string_literals;

TEST(PrintedName, LeavesNamesAsTheyAreWhereNothingCanBeMistaken) {
    for (std::string const & name : {"eth-1"s, "et-0/0/1:2"s, "New York"s, "a,b"s, "caf\u00e9"s,
                                     "\u4e2d\u6587"s, "back\\slash"s, "it's"s, "--"s, "\U0001f600"s}) {
        EXPECT_EQ(printedName(name), name);
    }
}

TEST(PrintedName, QuotesWhatCouldBeTakenForSomethingElse) {
    EXPECT_EQ(printedName(""), "\"\"");
    EXPECT_EQ(printedName("-"), "\"-\"");
    EXPECT_EQ(printedName(" a"), "\" a\"");
    EXPECT_EQ(printedName("a "), "\"a \"");
    EXPECT_EQ(printedName("a  b"), "\"a  b\"");
    EXPECT_EQ(printedName("a, b"), "\"a, b\"");
    EXPECT_EQ(printedName("a\"b"), "\"a\\\"b\"");
    EXPECT_EQ(printedName("a\\\"b"), "\"a\\\\\\\"b\"");
}

TEST(PrintedName, EscapesWhatCannotBeSeenOrWouldSteerATerminal) {
    EXPECT_EQ(printedName("a\nb\r\t"), "\"a\\nb\\r\\t\"");
    EXPECT_EQ(printedName("\0"s), "\"\\u0000\"");
    EXPECT_EQ(printedName("\x1b[2J"), "\"\\u001b[2J\"");
    EXPECT_EQ(printedName("\u009b"), "\"\\u009b\"");  // the eight-bit form of ESC [
    EXPECT_EQ(printedName("\u202egnp.exe"), "\"\\u202egnp.exe\"");
    EXPECT_EQ(printedName("\u200b"), "\"\\u200b\"");
    EXPECT_EQ(printedName("\uffff"), "\"\\uffff\"");
    EXPECT_EQ(printedName("\U000e0041"), "\"\\U000e0041\"");
}

TEST(PrintedName, EscapesBytesThatAreNotUtf8) {
    EXPECT_EQ(printedName("a\xff"
                          "b"),
              "\"a\\xffb\"");
    EXPECT_EQ(printedName("\xc3"), "\"\\xc3\"");                    // cut short
    EXPECT_EQ(printedName("\xc0\xaf"), "\"\\xc0\\xaf\"");           // overlong
    EXPECT_EQ(printedName("\xed\xa0\x80"), "\"\\xed\\xa0\\x80\"");  // a surrogate
}

TEST(PrintedName, WidthIsWhatATerminalShows) {
    EXPECT_EQ(displayWidth(""), 0u);
    EXPECT_EQ(displayWidth("eth-1"), 5u);
    EXPECT_EQ(displayWidth("caf\u00e9"), 4u);
    EXPECT_EQ(displayWidth("cafe\u0301"), 4u);
    EXPECT_EQ(displayWidth("\u4e2d\u6587"), 4u);
}

}  // namespace
}  // namespace TopologyTools
