#include "tools/format/NaturalOrder.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace std::string_literals;

TEST(NaturalOrder, CountsRunsOfDigitsAsNumbers) {
    std::vector<std::string> const expected = {"",      "1",       "2",       "10",       "eth",
                                               "eth-1", "eth-2",   "eth-10",  "eth-10/2", "eth-10/11",
                                               "eth10", "leaf-1a", "leaf-1b", "leaf-02",  "leaf-11"};
    std::vector<std::string> names = expected;
    std::reverse(names.begin(), names.end());
    std::sort(names.begin(), names.end(), NaturalLess());
    EXPECT_EQ(names, expected);
}

TEST(NaturalOrder, TakesNumbersOfAnyLength) {
    std::string const many(100, '9');
    EXPECT_TRUE(naturalOrder("x" + many, "x1" + std::string(100, '0')) < 0);
    EXPECT_TRUE(naturalOrder("x" + many, "x" + std::string(99, '9')) > 0);
}

TEST(NaturalOrder, TellsNumbersApartThatDifferInZerosOnly) {
    EXPECT_TRUE(naturalOrder("eth7", "eth07") < 0);
    EXPECT_TRUE(naturalOrder("0", "00") < 0);
    EXPECT_TRUE(naturalOrder("eth07", "eth8") < 0);
}

TEST(NaturalOrder, ComparesBytesAsUnsigned) {
    EXPECT_TRUE(naturalOrder("z", "\xc3\xa9") < 0);
    EXPECT_TRUE(naturalOrder("a\0"s, "a\1"s) < 0);
}

TEST(NaturalOrder, IsATotalOrder) {
    std::vector<std::string> const names = {"",    "0",  "00",  "1",   "01",   "a",    "a0",
                                            "a00", "a1", "a01", "a1b", "a01b", "a1b0", "a01b00",
                                            "b",   "1a", "01a", "10",  "\xff", "a\0b"s};
    for (std::string const & a : names) {
        for (std::string const & b : names) {
            EXPECT_EQ(naturalOrder(a, b) == 0, a == b) << a << ' ' << b;
            EXPECT_EQ(naturalOrder(a, b) < 0, naturalOrder(b, a) > 0) << a << ' ' << b;
            for (std::string const & c : names) {
                if (naturalOrder(a, b) < 0 && naturalOrder(b, c) < 0) {
                    EXPECT_TRUE(naturalOrder(a, c) < 0) << a << ' ' << b << ' ' << c;
                }
            }
        }
    }
}

}  // namespace
}  // namespace TopologyTools
