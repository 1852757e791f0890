#include "platform/Vel/SlabPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace VelTest {
namespace {

using Vel::SlabPool;

// With the pool, which this program does without elsewhere. In a build that has none nothing is held.
class Pool : public ::testing::Test {
protected:
    Pool() { SlabPool::pooledIs(true); }
    ~Pool() override {
        SlabPool::pooledIs(false);
        if (!SlabPool::kPooled) {
            EXPECT_EQ(SlabPool::usage().held, 0U);
        }
    }

    static std::vector<std::byte *> cells(std::size_t count, std::size_t size) {
        std::vector<std::byte *> made(count);
        for (std::byte *& cell : made) {
            cell = static_cast<std::byte *>(SlabPool::cell(size));
            std::memset(cell, 0x5a, size);
        }
        return made;
    }
    static void cellsDel(std::vector<std::byte *> const & cells, std::size_t size) {
        for (std::byte * const cell : cells) SlabPool::cellDel(cell, size);
    }
    static void expectAligned(std::vector<std::byte *> const & cells, std::size_t alignment,
                              std::size_t size) {
        for (std::byte * const cell : cells) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(cell) % alignment, 0U) << size;
        }
    }
    static constexpr std::size_t kCacheLine = 64;
    static constexpr std::size_t kChunk = std::size_t{2} << 20;
    static constexpr std::size_t kSlab = std::size_t{64} << 10;
    // Whole cache lines, which cells of this size are anyway, and a size that no other test uses.
    static constexpr std::size_t kSize = 320;
};

TEST_F(Pool, PutsCellsOfOneSizeSideBySide) {
    auto const made = cells(100, kSize);
    if (SlabPool::kPooled) {
        for (std::size_t i = 1; i < made.size(); ++i) EXPECT_EQ(made[i], made[i - 1] + kSize);
    }
    cellsDel(made, kSize);
}

TEST_F(Pool, AlignsCellsOfAnySizeAndRoundsThemUp) {
    for (std::size_t size = 1; size <= SlabPool::kLargestCell + 1; ++size) {
        auto const made = cells(3, size);
        expectAligned(made, SlabPool::kAlignment, size);
        cellsDel(made, size);
    }
}

TEST_F(Pool, GivesWhatNearlyFillsACacheLineAWholeOne) {
    for (std::size_t const size : {49, 56, 57, 64}) {
        auto const made = cells(50, size);
        if (SlabPool::kPooled) expectAligned(made, kCacheLine, size);
        cellsDel(made, size);
    }
}

TEST_F(Pool, BeginsLargeCellsWithACacheLine) {
    for (std::size_t size = 129; size <= SlabPool::kLargestCell; size += 5) {
        auto const made = cells(3, size);
        if (SlabPool::kPooled) expectAligned(made, kCacheLine, size);
        cellsDel(made, size);
    }
}

TEST_F(Pool, AlignsWhatFillsAHugePageForOne) {
    constexpr std::size_t kHugePage = std::size_t{2} << 20;
    for (std::size_t const size : {kHugePage - 1, kHugePage, kHugePage + 1, 3 * kHugePage}) {
        auto const made = cells(2, size);
        if (SlabPool::kPooled && size >= kHugePage) expectAligned(made, kHugePage, size);
        cellsDel(made, size);
    }
}

TEST_F(Pool, UsesFreeCellsAgain) {
    constexpr std::size_t kCells = 104;  // Of which none is left at hand: they are put there by eights.
    constexpr std::size_t kFreed = 40;
    auto made = cells(kCells, kSize);
    std::shuffle(made.begin(), made.end(), std::mt19937(1));
    std::vector const freed(made.end() - kFreed, made.end());
    made.resize(kCells - kFreed);
    cellsDel(freed, kSize);
    auto const again = cells(kFreed, kSize);
    if (SlabPool::kPooled) {
        EXPECT_EQ(std::set(again.begin(), again.end()), std::set(freed.begin(), freed.end()));
    }
    cellsDel(again, kSize);
    cellsDel(made, kSize);
}

TEST_F(Pool, HasAFewCellsAtHandAndTakesTheOthersFromTheLowestOn) {
    constexpr std::size_t kFreed = 40;
    auto made = cells(100, kSize);
    std::vector<std::byte *> freed(made.begin(), made.begin() + kFreed);
    made.erase(made.begin(), made.begin() + kFreed);
    std::shuffle(freed.begin(), freed.end(), std::mt19937(1));
    cellsDel(freed, kSize);
    auto const again = cells(kFreed, kSize);
    if (SlabPool::kPooled) {
        constexpr std::ptrdiff_t kMostAtHand = 15;
        EXPECT_TRUE(std::is_sorted(again.begin() + kMostAtHand, again.end()));
    }
    cellsDel(again, kSize);
    cellsDel(made, kSize);
}

TEST_F(Pool, TakesOverNoCellThatIsInUse) {
    constexpr std::size_t kCells = 3'000;
    std::mt19937 random(1);
    struct Piece {
        std::byte * bytes;
        std::size_t size;
        std::byte mark;
    };
    std::vector<Piece> inUse;
    for (int step = 0; step < 40'000; ++step) {
        if (inUse.size() < kCells && (inUse.empty() || random() % 2 == 0)) {
            std::size_t const size = 1 + random() % (SlabPool::kLargestCell + 40);
            auto const mark = static_cast<std::byte>(random());
            auto * const bytes = static_cast<std::byte *>(SlabPool::cell(size));
            std::memset(bytes, static_cast<int>(mark), size);
            inUse.push_back({bytes, size, mark});
        } else {
            std::swap(inUse[random() % inUse.size()], inUse.back());
            Piece const piece = inUse.back();
            inUse.pop_back();
            ASSERT_TRUE(std::all_of(piece.bytes, piece.bytes + piece.size,
                                    [&](std::byte byte) { return byte == piece.mark; }));
            SlabPool::cellDel(piece.bytes, piece.size);
        }
    }
    for (Piece const & piece : inUse) SlabPool::cellDel(piece.bytes, piece.size);
}

TEST_F(Pool, GivesItsMemoryBack) {
    auto const before = SlabPool::usage();
    constexpr std::size_t kCells = 100'000;
    auto const made = cells(kCells, kSize);
    if (SlabPool::kPooled) {
        EXPECT_GE(SlabPool::usage().inSlabs, before.inSlabs + kCells * kSize);
        EXPECT_LE(SlabPool::usage().inSlabs, before.inSlabs + kCells * kSize * 102 / 100 + kSlab * 2);
        EXPECT_GE(SlabPool::usage().held, SlabPool::usage().inSlabs);
    }
    cellsDel(made, kSize);
    auto const after = SlabPool::usage();
    EXPECT_LE(after.inSlabs, before.inSlabs + 3 * kSlab)
        << "a slab stays for the next cell of its size, and those of the cells at hand";
    EXPECT_LE(after.held, before.held + 2 * kChunk) << "with it its chunk, and one for the next slab";
}

TEST_F(Pool, GivesTheSlabsOfOneSizeToAnother) {
    constexpr std::size_t kOther = 384;
    cellsDel(cells(20'000, kSize), kSize);
    std::size_t const held = SlabPool::usage().held;
    cellsDel(cells(5'000, kOther), kOther);
    EXPECT_EQ(SlabPool::usage().held, held);
}

TEST_F(Pool, HoldsNothingOfLargePieces) {
    auto const before = SlabPool::usage();
    auto const made = cells(1'000, SlabPool::kLargestCell + 1);
    EXPECT_EQ(SlabPool::usage().inSlabs, before.inSlabs);
    cellsDel(made, SlabPool::kLargestCell + 1);
}

TEST_F(Pool, SwitchedOffTakesBackWhatItGave) {
    auto const before = SlabPool::usage();
    auto const pooled = cells(1'000, kSize);
    SlabPool::pooledIs(false);
    std::size_t const inSlabs = SlabPool::usage().inSlabs;
    auto const single = cells(1'000, kSize);
    EXPECT_EQ(SlabPool::usage().inSlabs, inSlabs);
    cellsDel(pooled, kSize);
    cellsDel(single, kSize);
    EXPECT_LE(SlabPool::usage().inSlabs, before.inSlabs + 2 * kSlab);
}

TEST_F(Pool, SwitchedOnAgainGivesBackWhatIsNotItsOwn) {
    SlabPool::pooledIs(false);
    auto const single = cells(100, kSize);
    SlabPool::pooledIs(true);
    auto const pooled = cells(100, kSize);
    cellsDel(single, kSize);
    cellsDel(pooled, kSize);
    auto const again = cells(100, kSize);
    cellsDel(again, kSize);
}

}  // namespace
}  // namespace VelTest
