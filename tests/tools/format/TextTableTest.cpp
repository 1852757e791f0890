#include "tools/format/TextTable.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

TEST(TextTable, AlignsColumnsByWhatIsSeen) {
    TextTable table({"NAME", "N", "WHAT"});
    table.alignRight(1);
    table.add({{"a"}, {"7"}, {"x"}});
    table.add({{"\u4e2d\u6587\u4e2d"}, {"123"}, {"y"}});
    table.add({{""}, {""}, {"z"}});
    EXPECT_EQ(table.text("  ", false), "  NAME      N  WHAT\n"
                                       "  a         7  x\n"
                                       "  \u4e2d\u6587\u4e2d  123  y\n"
                                       "               z\n");
}

TEST(TextTable, LeavesOutColumnsThatSayNothing) {
    TextTable table({"A", "B", "C", "D"});
    table.add({{"1"}, TextCell::none(), {""}, {"2"}});
    table.add({{"3"}, TextCell::none()});
    EXPECT_EQ(table.text("", false), "A  D\n1  2\n3\n");
    table.add({{"4"}, {"-"}});  // A text that happens to look like nothing.
    EXPECT_EQ(table.text("", false), "A  B  D\n1  -  2\n3  -\n4  -\n");
}

TEST(TextTable, LeavesOutHeadingsThatAreEmpty) {
    TextTable table({"", ""});
    EXPECT_EQ(table.text("", false), "");
    table.add({{"a"}, {"b"}});
    EXPECT_EQ(table.text("", false), "a  b\n");
}

TEST(TextTable, WithoutRowsIsEmpty) { EXPECT_EQ(TextTable({"A"}).text("  ", true), ""); }

TEST(TextTable, ColoursDoNotMoveColumns) {
    TextTable table({"A", "B"});
    table.add({{"x", Ink::attention}, {"y"}});
    table.add({{"long"}, {"z", Ink::good}});
    EXPECT_EQ(table.text("", true), "\x1b[2mA\x1b[0m     \x1b[2mB\x1b[0m\n"
                                    "\x1b[33mx\x1b[0m     y\n"
                                    "long  \x1b[32mz\x1b[0m\n");
}

TEST(TextTable, BreaksListsBetweenItemsOnly) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(wrappedList({}, 10), Lines{});
    EXPECT_EQ(wrappedList({"a", "b"}, 10), Lines{"a, b"});
    EXPECT_EQ(wrappedList({"aaaa", "bbbb", "cccc"}, 10), (Lines{"aaaa,", "bbbb,", "cccc"}));
    EXPECT_EQ(wrappedList({"aaaa", "bbbb", "cccc"}, 11), (Lines{"aaaa, bbbb,", "cccc"}));
    EXPECT_EQ(wrappedList({"longer than that", "b"}, 5), (Lines{"longer than that,", "b"}));
}

}  // namespace
}  // namespace TopologyTools
