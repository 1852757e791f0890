#include "platform/Vel/String.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/Name.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using Vel::Name;
using Vel::String;

static_assert(sizeof(String) == sizeof(void *));
static_assert(sizeof(Name) == sizeof(void *));
static_assert(std::is_nothrow_move_constructible_v<Name>);
static_assert(!std::is_convertible_v<String, Name>, "a text is no name until somebody says so");
static_assert(std::is_convertible_v<Name, String>);
static_assert(!std::is_constructible_v<String, std::nullptr_t>, "null is no text");
static_assert(!std::is_constructible_v<Name, std::nullptr_t>, "portIs(nullptr) means a port");

TEST(BitReverse, PutsEachBitInItsMirroredPlace) {
    for (unsigned bit = 0; bit < 32; ++bit) EXPECT_EQ(Vel::bitReverse(1U << bit), 1U << (31 - bit)) << bit;
}

TEST(BitReverse, IsItsOwnInverseAndWorksBitByBit) {
    std::mt19937 random(1);
    for (int i = 0; i < 10000; ++i) {
        auto const value = static_cast<std::uint32_t>(random());
        std::uint32_t expected = 0;
        for (unsigned bit = 0; bit < 32; ++bit) expected |= (value >> bit & 1U) << (31 - bit);
        ASSERT_EQ(Vel::bitReverse(value), expected);
        ASSERT_EQ(Vel::bitReverse(expected), value);
    }
}

TEST(String, IsEmptyByDefault) {
    for (String const & empty : {String(), String(""), String("", 0), String(nullptr, 0), String(""sv),
                                 String(std::string()), String(Name())}) {
        EXPECT_TRUE(empty.empty());
        EXPECT_EQ(empty.size(), 0U);
        EXPECT_EQ(empty.view(), ""sv);
        EXPECT_STREQ(empty.c_str(), "");
        EXPECT_EQ(empty.data(), nullptr);
        EXPECT_EQ(empty.hash(), 0U);
        EXPECT_EQ(empty.reversedHash(), 0U);
        EXPECT_EQ(empty, String());
    }
}

TEST(String, KeepsAnyBytes) {
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    for (std::string const & bytes : {all, "\0"s, "a\0b"s, "\0\0"s, "\xff"s, std::string(100000, 'x')}) {
        String const string(bytes.data(), static_cast<unsigned>(bytes.size()));
        EXPECT_EQ(string.view(), bytes);
        EXPECT_EQ(string.size(), bytes.size());
        EXPECT_EQ(string.data()->size(), bytes.size());
        EXPECT_EQ(string.c_str()[bytes.size()], '\0');
        EXPECT_FALSE(string.empty());
    }
}

TEST(String, IsMadeFromWhateverHasAView) {
    String const expected("eth-1", 5);
    EXPECT_EQ(String("eth-1"), expected);
    EXPECT_EQ(String("eth-1"sv), expected);
    EXPECT_EQ(String(std::string("eth-1")), expected);
    char const * const pointer = "eth-1";
    EXPECT_EQ(String(pointer), expected);
    EXPECT_EQ(String("eth-1/2", 5), expected) << "only as many bytes as asked for";
    EXPECT_EQ(Name("eth-1"), expected);
}

TEST(String, IsOneAllocation) {
    TestSupport::AllocationCount const count;
    String const string("Ethernet-12/3/4, a name that is too long for any buffer inside an object"sv);
    EXPECT_EQ(count.value(), 1U);
    String copy = string;
    Name const name(copy);
    String moved = std::move(copy);
    copy = moved;
    static_cast<void>(string == moved);
    static_cast<void>(string.hash());
    EXPECT_EQ(count.value(), 1U) << "nothing else allocates";
    String const empty("");
    EXPECT_EQ(count.value(), 1U) << "the empty string is no allocation";
}

TEST(String, SharesItsBytesWithItsCopies) {
    String const string("leaf-1");
    String const copy = string;
    Name const name(string);
    EXPECT_EQ(copy.data(), string.data());
    EXPECT_EQ(name.data(), string.data());
}

TEST(String, SurvivesWhatItWasCopiedFrom) {
    auto original = std::make_unique<String>("leaf-1");
    String const copy = *original;
    original.reset();
    EXPECT_EQ(copy.view(), "leaf-1");
}

TEST(String, IsAssignedToItself) {
    String string("leaf-1");
    auto & same = string;
    string = same;
    EXPECT_EQ(string, "leaf-1");
    string = std::move(same);
    EXPECT_EQ(string, "leaf-1");
    String const copy = string;
    string = copy;
    EXPECT_EQ(string, "leaf-1");
}

TEST(String, IsAssignedFromOtherStrings) {
    String a("a");
    String b("b");
    a = b;
    EXPECT_EQ(a, "b");
    EXPECT_EQ(b, "b");
    String c("c");
    a = std::move(c);
    EXPECT_EQ(a, "c");
    EXPECT_TRUE(c.empty());  // NOLINT: the moved-from string is the empty one.
    a = String();
    EXPECT_TRUE(a.empty());
    a = b;
    EXPECT_EQ(a, "b");
}

TEST(String, IsEqualByItsBytes) {
    String const one("leaf-1");
    String const other(std::string("leaf-") + "1");
    ASSERT_NE(one.data(), other.data());
    EXPECT_EQ(one, other);
    EXPECT_EQ(one.hash(), other.hash());
    EXPECT_NE(one, String("leaf-2"));
    EXPECT_NE(one, String("leaf-10"));
    EXPECT_NE(one, String());
    EXPECT_NE(String("a\0b"sv), String("a\0c"sv));
    EXPECT_NE(String("a\0"sv), String("a"));
    EXPECT_NE(String("\0"sv), String());
}

TEST(String, ComparesWithEveryKindOfText) {
    String const string("leaf-1");
    EXPECT_TRUE(string == "leaf-1");
    EXPECT_TRUE("leaf-1" == string);
    EXPECT_TRUE(string == "leaf-1"sv);
    EXPECT_TRUE("leaf-1"sv == string);
    EXPECT_TRUE(string == std::string("leaf-1"));
    EXPECT_TRUE(std::string("leaf-1") == string);
    EXPECT_TRUE(string != "leaf-2");
    EXPECT_TRUE(string != std::string("leaf-2"));
    EXPECT_TRUE(Name("leaf-1") == std::string("leaf-1"));
    EXPECT_TRUE(Name("leaf-1") == string);
    TestSupport::AllocationCount const count;
    static_cast<void>(string == "leaf-1, or any other long text that would need an allocation of its own");
    EXPECT_EQ(count.value(), 0U) << "comparing makes no string";
}

TEST(String, OrdersByUnsignedBytes) {
    std::vector<String> const ordered{
        String(),         String("\0"sv),     String("\0\0"sv), String("\0\x01"sv),
        String("\x01"),   String("a"),        String("a\0"sv),  String("a\0b"sv),
        String("aa"),     String("ab"),       String("b"),      String("\x7f"),
        String("\x80"sv), String("\x80\x01"), String("\xff"sv), String("\xff\xff")};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            EXPECT_EQ(ordered[i] < ordered[j], i < j) << i << ' ' << j;
            EXPECT_EQ(ordered[i] > ordered[j], i > j) << i << ' ' << j;
            EXPECT_EQ(ordered[i] <= ordered[j], i <= j) << i << ' ' << j;
            EXPECT_EQ((ordered[i] <=> ordered[j]) == 0, i == j) << i << ' ' << j;
            EXPECT_EQ(ordered[i] == ordered[j], i == j) << i << ' ' << j;
        }
    }
}

TEST(String, OrdersTextsOfEveryLengthAsTheirViews) {
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        // Few different bytes, so that texts part late; some above 0x7f, and zeros.
        auto const text = [&] {
            std::string bytes(random() % 20, 'a');
            for (char & byte : bytes) {
                if (random() % 10 == 0) byte = "\0b\x80\xff"[random() % 4];
            }
            return bytes;
        };
        std::string const a = text();
        std::string const b = random() % 4 == 0 ? a + text() : text();
        EXPECT_EQ(String(a) <=> String(b), a <=> b) << testing::PrintToString(a) << testing::PrintToString(b);
        EXPECT_EQ(String(a) < String(b), a < b) << testing::PrintToString(a) << testing::PrintToString(b);
    }
}

TEST(String, PrintsItsBytes) {
    std::ostringstream out;
    out << String("a\0\n\xff"sv) << Name("n") << String();
    EXPECT_EQ(out.str(), "a\0\n\xffn"sv);
}

TEST(String, CannotBeMadeWithoutMemory) {
    TestSupport::FailingAllocations const failing;
    EXPECT_THROW(String("leaf-1"), std::bad_alloc);
    EXPECT_NO_THROW(String(""));
}

TEST(StringHash, IsThatOfTheBytes) {
    std::mt19937 random(5);
    for (int i = 0; i < 1000; ++i) {
        std::string bytes(random() % 40 + 1, '\0');
        for (char & c : bytes) c = static_cast<char>(random());
        // At every alignment of the source.
        std::string const shifted = std::string(i % 8, ' ') + bytes;
        String const a(bytes);
        String const b(std::string_view(shifted).substr(static_cast<std::size_t>(i % 8)));
        ASSERT_EQ(a.hash(), b.hash());
        ASSERT_EQ(a.hash(), a.data()->hash());
        ASSERT_EQ(a.reversedHash(), Vel::bitReverse(a.hash()));
        ASSERT_EQ(a.data()->reversedHash(), a.reversedHash());
    }
}

TEST(StringHash, IsStoredOnce) {
    // Bytes that have been changed beneath the string show that its hash is not computed again.
    String const string("leaf-1");
    std::uint32_t const hash = string.hash();
    auto * const bytes = const_cast<char *>(string.data()->bytes());
    bytes[0] = 'L';
    EXPECT_EQ(string.hash(), hash);
    EXPECT_NE(String("Leaf-1").hash(), hash);
    bytes[0] = 'l';
}

TEST(StringHash, SeesEveryByteAndTheLength) {
    for (std::size_t length = 1; length <= 20; ++length) {
        std::string const zeros(length, '\0');
        std::set<std::uint32_t> hashes{String(zeros).hash(), String(zeros + '\0').hash()};
        for (std::size_t at = 0; at < length; ++at) {
            std::string changed = zeros;
            changed[at] = '\x01';
            hashes.insert(String(changed).hash());
            changed[at] = '\x80';
            hashes.insert(String(changed).hash());
        }
        EXPECT_EQ(hashes.size(), 2 + 2 * length) << "length " << length;
    }
}

TEST(StringHash, IsThatOfStandardContainers) {
    EXPECT_EQ(std::hash<String>()(String("leaf-1")), String("leaf-1").hash());
    EXPECT_EQ(std::hash<Name>()(Name("leaf-1")), String("leaf-1").hash());
    std::unordered_set<Name> const names{Name("a"), Name("b"), Name("a")};
    EXPECT_EQ(names.size(), 2U);
}

// The names of one collection of a network.
struct NameSet {
    char const * name;
    std::vector<std::string> names;
};

std::vector<NameSet> realisticNames() {
    std::vector<NameSet> sets{{"eth-S/P", {}}, {"EthernetN", {}}, {"Port-ChannelN", {}}, {"leaf-N", {}},
                              {"host", {}},    {"N", {}},         {"vlan NNNN", {}},     {"address", {}}};
    for (int i = 0; i < 4096; ++i) {
        std::string const n = std::to_string(i);
        std::string padded = "000" + n;
        padded = padded.substr(padded.size() - 4);
        sets[0].names.push_back("eth-" + std::to_string(i / 64 + 1) + "/" + std::to_string(i % 64 + 1));
        sets[1].names.push_back("Ethernet" + n);
        sets[2].names.push_back("Port-Channel" + n);
        sets[3].names.push_back("leaf-" + n);
        sets[4].names.push_back("rack" + std::to_string(i / 16) + "-tor" + std::to_string(i % 16) +
                                ".example.net");
        sets[5].names.push_back(n);
        sets[6].names.push_back("vlan " + padded);
        sets[7].names.push_back("02:00:00:00:" + padded.substr(0, 2) + ":" + padded.substr(2));
    }
    return sets;
}

// Chi-square of what `bits` low bits of the hashes choose, in standard deviations from its mean.
double deviation(std::vector<std::string> const & names, unsigned bits) {
    std::vector<double> buckets(std::size_t{1} << bits, 0.0);
    for (std::string const & name : names) buckets[String(name).hash() & (buckets.size() - 1)] += 1.0;
    double const expected = static_cast<double>(names.size()) / static_cast<double>(buckets.size());
    double sum = 0.0;
    for (double const found : buckets) sum += (found - expected) * (found - expected) / expected;
    double const freedom = static_cast<double>(buckets.size() - 1);
    return (sum - freedom) / std::sqrt(2.0 * freedom);
}

TEST(StringHash, SpreadsRealisticNamesOverItsLowBits) {
    for (NameSet const & set : realisticNames()) {
        for (unsigned bits = 1; bits <= 12; ++bits) {
            EXPECT_LT(deviation(set.names, bits), 5.0) << set.name << ", " << bits << " bits";
        }
        std::unordered_set<std::uint32_t> hashes;
        for (std::string const & name : set.names) hashes.insert(String(name).hash());
        EXPECT_GE(hashes.size(), set.names.size() - 2) << set.name;
    }
}

}  // namespace
}  // namespace VelTest
