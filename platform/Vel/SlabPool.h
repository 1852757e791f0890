// The storage of framework objects and strings: cells of equal size, side by side in slabs.
//
// What is made together lies together, without a word of administration between, and a cell that comes free
// is used again before one at a higher place: a model that changes for years stays as dense as on its first
// day.
//
// A chunk of 2 MiB holds 32 slabs of 64 KiB, each with cells of one size; what is known of the slabs stands
// at the front of the chunk, where it takes a quarter of the first one, so that a free cell is found without
// touching any slab. A slab without cells in use goes back to its chunk, a chunk without slabs in use to the
// system. The system is asked to make each chunk, and each piece that is as large, huge pages: in a model of
// many megabytes it takes the processor as long to find out where a page is as to load from it.
//
// Threads
//     In thread-safe pointer mode (PtrInterface.h) a lock guards every call. In the plain mode the framework
//     belongs to one thread, and so does the pool.
//
// Larger pieces come from the system, one by one; so do all in a build with a sanitizer, and without the pool
// (`pooledIs`).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Vel/Export.h"
#include "platform/Vel/PtrInterface.h"

namespace Vel {

class VEL_EXPORT SlabPool {
public:
    static constexpr std::size_t kLargestCell = 512;

    // Cells are aligned for pointers and whatever needs no more.
    static constexpr std::size_t kAlignment = alignof(void *);

    // Storage for `size` bytes. Throws std::bad_alloc. Callers that have looked already say whether pointers
    // are thread-safe.
    static void * cell(std::size_t size, bool threadSafe = VFPtrInterface::threadSafePointers_) {
        if (!kPooled || size > kLargestCell || threadSafe) [[unlikely]]
            return oddCell(size);
        std::size_t const number = index(size);
        Shelf & shelf = shelves_[number];
        return shelf.count != 0 ? shelf.cells[--shelf.count] : slabCell(size, number);
    }
    // Gives back what `cell(size)` returned.
    static void cellDel(void * cell, std::size_t size,
                        bool threadSafe = VFPtrInterface::threadSafePointers_) noexcept {
        if (!kPooled || size > kLargestCell || threadSafe) [[unlikely]] {
            oddCellDel(cell, size);
            return;
        }
        Shelf & shelf = shelves_[index(size)];
        if (shelf.count < shelfRoom_) [[likely]] {
            shelf.cells[shelf.count++] = cell;
        } else {
            slabCellDel(cell, size);
        }
    }

    // Whether pieces come from the pool from now on, which they do at first. Without it every piece comes
    // from the system, as a memory checker wants it. Cells that are in use stay where they are.
    static void pooledIs(bool on) noexcept;

    // Bytes. What is held but not in slabs has not been touched, or waits to be used again.
    struct Usage {
        std::size_t held;  // Of the system's memory.
        std::size_t
            inSlabs;  // In slabs with cells in use, with their share of what the chunks need themselves.
    };
    static Usage usage() noexcept;

    // Whether this build has a pool.
#if defined(__has_feature)
    static constexpr bool kPooled = !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer) &&
                                    !__has_feature(memory_sanitizer);
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool kPooled = false;
#else
    static constexpr bool kPooled = true;
#endif
    static constexpr std::size_t kSmallestCell = 24;

private:
    friend struct ReleaseAtUnload;
    static constexpr std::size_t kIndices = kLargestCell / kAlignment + 1;

    static constexpr std::size_t kCacheLine = 64;
    // What is larger begins with a cache line of its own: objects of that size are few, and have at their
    // front what is needed most.
    static constexpr std::size_t kUnaligned = 128;
    // What fills more than three quarters of a cache line gets a whole one: side by side, most of them would
    // lie in two.
    static constexpr bool fillsLine(std::size_t size) noexcept {
        return size > kCacheLine * 3 / 4 && size <= kCacheLine;
    }

    // Of a size's cells: how many words one has.
    static constexpr std::size_t index(std::size_t size) noexcept {
        if (size <= kSmallestCell) return kSmallestCell / kAlignment;
        std::size_t const excess = (size > kUnaligned || fillsLine(size) ? kCacheLine : kAlignment) - 1;
        return ((size + excess) & ~excess) / kAlignment;
    }
    static void * slabCell(std::size_t size, std::size_t number);
    static void slabCellDel(void * cell, std::size_t size) noexcept;
    [[gnu::cold, gnu::noinline]] static void * oddCell(std::size_t size);
    [[gnu::cold, gnu::noinline]] static void oddCellDel(void * cell, std::size_t size) noexcept;
    static void emptyShelves() noexcept;

    // A few free cells of one size, out of their slabs and at hand: what comes and goes with each change
    // costs next to nothing.
    struct alignas(64) Shelf {
        static constexpr std::uint32_t kRoom = 15;
        std::uint32_t count;
        std::array<void *, kRoom> cells;
    };

    static std::array<Shelf, kIndices> shelves_;
    // How many cells a shelf takes unseen; none where a cell may be one of the system's.
    static std::uint32_t shelfRoom_;
};

}  // namespace Vel
