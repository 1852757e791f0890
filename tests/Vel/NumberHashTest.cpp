#include "platform/Vel/NumberHash.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/String.h"
#include "tests/support/Probes.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::numberHash;

static_assert(numberHash(0) == 0 && numberHash(1) == 1 && numberHash(2) == 3);

std::uint32_t lowBits(std::uint32_t hash, unsigned bits) { return hash & ((std::uint32_t{1} << bits) - 1); }

TEST(NumberHash, TellsEvenlySpacedNumbersApartByItsLowBits) {
    for (unsigned k = 0; k <= 10; ++k) {
        for (unsigned j = 0; j + k <= 31; ++j) {
            for (std::uint32_t const begin : {std::uint32_t{0}, std::uint32_t{0xa5a5a5a5}}) {
                std::uint32_t const first = begin >> (j + k) << (j + k);
                std::vector<bool> seen(std::size_t{1} << k);
                for (std::uint32_t i = 0; i < std::uint32_t{1} << k; ++i) {
                    std::uint32_t const low = lowBits(numberHash(first + (i << j)), k);
                    ASSERT_FALSE(seen[low]) << "2^" << k << " multiples of 2^" << j << " from " << first;
                    seen[low] = true;
                }
            }
        }
    }
}

TEST(NumberHash, IsItsOwnInverse) {
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        auto const number = static_cast<std::uint32_t>(random());
        ASSERT_EQ(numberHash(numberHash(number)), number);
    }
}

// What collections of that many members, of which `nameOf` names each, find in their way.
double probesOfNames(unsigned members, std::function<std::string(unsigned)> const & nameOf) {
    std::vector<std::uint32_t> hashes;
    for (unsigned i = 0; i < members; ++i) hashes.push_back(Name(nameOf(i)).reversedHash());
    return TestSupport::probes(hashes);
}

std::string padded(unsigned number, std::size_t width) {
    std::string const digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

TEST(NameHash, GivesNumberedNamesBucketsOfTheirOwn) {
    for (unsigned const members : {8U, 16U, 32U, 48U, 64U, 256U, 1000U, 4096U}) {
        SCOPED_TRACE(members);
        EXPECT_LT(probesOfNames(members, [](unsigned i) { return "port-" + std::to_string(i + 1); }), 1.15);
        EXPECT_LT(probesOfNames(members, [](unsigned i) { return "host-" + padded(i + 1, 6); }), 1.15);
        EXPECT_LT(probesOfNames(members, [](unsigned i) { return "Ethernet" + std::to_string(4 * i); }),
                  1.15);
        EXPECT_LT(probesOfNames(members, [](unsigned i) { return "xe-0/0/" + std::to_string(i); }), 1.15);
        EXPECT_LT(probesOfNames(members, [](unsigned i) { return padded(i, 4) + ".example.net"; }), 1.15);
    }
}

TEST(NameHash, SpreadsNamesOfTwoNumbersMoreEvenlyThanAtRandom) {
    for (unsigned const members : {16U, 32U, 36U, 48U}) {
        auto const name = [members](unsigned i) {
            return "Ethernet" + std::to_string(i / members + 1) + "/" + std::to_string(i % members + 1);
        };
        for (unsigned const groups : {2U, 4U, 8U, 30U}) {
            EXPECT_LT(probesOfNames(groups * members, name), 1.45) << groups << " times " << members;
        }
    }
}

TEST(NameHash, SpreadsNumbersAtAnyDistanceThatAreNotTheLastOfTheirName) {
    for (unsigned const distance : {1U, 2U, 4U, 8U, 10U, 16U, 100U, 256U, 1000U, 4096U}) {
        for (unsigned const members : {16U, 64U, 256U}) {
            auto const name = [distance](unsigned i) {
                return "leaf" + std::to_string(i * distance) + "-dc1";
            };
            EXPECT_LT(probesOfNames(members, name), 2.0) << members << " at a distance of " << distance;
        }
    }
}

TEST(NameHash, TellsNamesApartThatDifferInTheFormOfTheirNumbersAlone) {
    std::vector<std::string> const texts{
        "",         "0",         "00",         "000",       "1",          "01",          "10",      "010",
        "1-2",      "2-1",       "12",         "1-02",      "01-2",       "1-2-3",       "3-2-1",   "2-1-3",
        "1a2",      "a12",       "12a",        "1a2a",      "a1a2",       "a",           "aa",      "a1a",
        "99999999", "999999999", "9999999999", "000000000", "0000000000", "00000000000", "1000000", "-1",
        "1-",       "1--2",      "4294967296", "4294967297"};
    std::set<std::uint32_t> hashes;
    for (std::string const & text : texts) EXPECT_TRUE(hashes.insert(Name(text).hash()).second) << text;
}

TEST(NameHash, TellsAllPairsOfSmallNumbersApart) {
    std::set<std::uint32_t> hashes;
    for (unsigned slot = 0; slot < 256; ++slot) {
        for (unsigned port = 0; port < 256; ++port) {
            hashes.insert(Name("eth" + std::to_string(slot) + "/" + std::to_string(port)).hash());
        }
    }
    EXPECT_EQ(hashes.size(), 256U * 256U);
}

TEST(PointerHash, SpreadsNeighboursMoreEvenlyThanAtRandom) {
    double sum = 0;
    unsigned sets = 0;
    for (std::uintptr_t const size : {64U, 72U, 80U, 88U, 96U, 104U, 112U, 120U, 128U}) {
        for (std::size_t const objects : {16U, 64U, 256U, 1024U, 4096U}) {
            std::vector<std::uint32_t> hashes;
            for (std::size_t i = 0; i < objects; ++i) {
                hashes.push_back(Vel::VelHashBase<false>::hashU32(0x7f0012345000U + i * size));
            }
            double const probes = TestSupport::probes(hashes);
            EXPECT_LT(probes, 1.75) << objects << " of " << size << " bytes";
            sum += probes;
            ++sets;
        }
    }
    EXPECT_LT(sum / sets, 1.35);
}

}  // namespace
}  // namespace VelTest
