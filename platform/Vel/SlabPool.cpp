#include "platform/Vel/SlabPool.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

#include "platform/Vel/PtrInterface.h"

#ifdef __linux__
// The system's own, in whose header there is much that is not of the standard library.
extern "C" int madvise(void * address, std::size_t length, int advice) noexcept;
#endif

namespace Vel {

namespace {

constexpr std::size_t kGranule = SlabPool::kAlignment;
constexpr std::size_t kSlabBytes = std::size_t{64} << 10;
// A huge page of the common processors, which saves them most of the work of finding where a page is.
constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kChunkBytes = kHugePage;
// The system's allocator keeps its own words between two pieces. Left to it, they let chunks lie side by
// side.
constexpr std::size_t kChunkMargin = 64;
constexpr unsigned kSlabsPerChunk = kChunkBytes / kSlabBytes;
constexpr std::uint32_t kAllSlabs = ~std::uint32_t{0};
static_assert(kSlabsPerChunk == 32);
constexpr unsigned kCellsPerWord = 64;
constexpr std::size_t kWords = kSlabBytes / SlabPool::kSmallestCell / kCellsPerWord + 1;

#ifdef __linux__
// Whether the system has huge pages and lets those have them who ask: whoever runs it may have chosen
// "never", which MADV_COLLAPSE does not look at.
bool systemGivesHugePages() noexcept {
    std::array<char, 64> choice{};
    if (std::FILE * const file = std::fopen("/sys/kernel/mm/transparent_hugepage/enabled", "re")) {
        if (!std::fgets(choice.data(), static_cast<int>(choice.size()), file)) choice[0] = '\0';
        std::fclose(file);
    }
    std::string_view const text(choice.data());
    return !text.empty() && text.find("[never]") == text.npos;
}
#endif

// Memory that wants to be huge pages, aligned for them; null where there is none. Given back with std::free.
void * hugePages(std::size_t bytes) noexcept {
    int const before = errno;
    void * const storage = std::aligned_alloc(kHugePage, bytes);
#ifdef __linux__
    static bool const wanted = systemGivesHugePages();
    if (storage && wanted) {
        constexpr int kHuge = 14;      // MADV_HUGEPAGE
        constexpr int kCollapse = 25;  // MADV_COLLAPSE
        // The first is for pages to come. The system's allocator may have written its own words in the last
        // one already, or used it before, and then it is there in small ones. A system that cannot do either
        // refuses, which does no harm.
        std::size_t const last = (bytes - 1) / kHugePage * kHugePage;
        madvise(storage, bytes, kHuge);
        madvise(static_cast<std::byte *>(storage) + last, kHugePage, kCollapse);
    }
#endif
    if (storage) errno = before;
    return storage;
}

// An item is in one list at a time, or in none.
template <class T>
struct ListLink {
    T * previous = nullptr;
    T * next = nullptr;
};

template <class T>
class List {
public:
    T * first() const noexcept { return first_; }
    void pushFront(T & item) noexcept {
        item.link.previous = nullptr;
        item.link.next = first_;
        if (first_) first_->link.previous = &item;
        first_ = &item;
    }
    void remove(T & item) noexcept {
        (item.link.previous ? item.link.previous->link.next : first_) = item.link.next;
        if (item.link.next) item.link.next->link.previous = item.link.previous;
    }

private:
    T * first_ = nullptr;
};

// As large as a power of two, because it is found by its number each time that a cell comes free.
struct alignas(512) Slab {
    ListLink<Slab> link;  // In the list of its size, while it has a free cell.
    std::byte * cells;
    std::uint32_t cellBytes;
    std::uint32_t reciprocal;  // Of the size of a cell: a multiplication finds the number of a cell.
    std::uint32_t cellsInUse;
    std::uint32_t cellCount;
    std::uint32_t firstWord;  // No cell is free in the words before it.
    std::array<std::uint64_t, kWords> freeCells;

    void init(std::byte * where, std::size_t bytes, std::size_t size) noexcept {
        cells = where;
        cellBytes = static_cast<std::uint32_t>(size);
        reciprocal = static_cast<std::uint32_t>((std::uint64_t{1} << 32) / size + 1);
        cellsInUse = 0;
        cellCount = static_cast<std::uint32_t>(bytes / size);
        firstWord = 0;
        for (std::size_t word = 0; word < kWords; ++word) {
            std::size_t const first = word * kCellsPerWord;
            std::size_t const left = cellCount > first ? cellCount - first : 0;
            freeCells[word] = left >= kCellsPerWord ? ~std::uint64_t{0} : (std::uint64_t{1} << left) - 1;
        }
    }
    bool isFull() const noexcept { return cellsInUse == cellCount; }

    // Takes at least one free cell and at most `most`, the lowest last, and returns how many. REQUIRES: not
    // full.
    std::uint32_t cellsNew(void ** taken, std::uint32_t most) noexcept {
        while (freeCells[firstWord] == 0) ++firstWord;
        std::uint64_t free = freeCells[firstWord];
        std::byte * const first = cells + std::size_t{firstWord} * kCellsPerWord * cellBytes;
        std::uint32_t left = most;
        // In a slab that is being filled for the first time they lie side by side.
        auto const lowest = static_cast<unsigned>(__builtin_ctzll(free));
        std::uint64_t const run = ((std::uint64_t{1} << most) - 1) << lowest;
        if ((free & run) == run && lowest + most <= kCellsPerWord) {
            std::byte * cell = first + lowest * std::size_t{cellBytes};
            for (; left != 0; cell += cellBytes) taken[--left] = cell;
            freeCells[firstWord] = free & ~run;
            cellsInUse += most;
            return most;
        }
        do {
            // Not std::countr_zero, which tests first whether there is a bit.
            taken[--left] = first + static_cast<unsigned>(__builtin_ctzll(free)) * std::size_t{cellBytes};
            free &= free - 1;
        } while (free != 0 && left != 0);
        freeCells[firstWord] = free;
        cellsInUse += most - left;
        if (left != 0) std::copy(taken + left, taken + most, taken);
        return most - left;
    }
    void cellDel(void * storage) noexcept {
        auto const offset = static_cast<std::uint64_t>(static_cast<std::byte *>(storage) - cells);
        auto const cell = static_cast<std::uint32_t>(offset * reciprocal >> 32);
        std::uint32_t const word = cell / kCellsPerWord;
        assert((freeCells[word] >> cell % kCellsPerWord & 1) == 0 && "given back twice");
        freeCells[word] |= std::uint64_t{1} << cell % kCellsPerWord;
        if (word < firstWord) [[unlikely]]
            firstWord = word;
        --cellsInUse;
    }
};

static_assert(std::has_single_bit(sizeof(Slab)));

struct Chunk {
    ListLink<Chunk> link;  // In the list of those with a free slab.
    Chunk * nextOfAll;
    std::uint32_t freeSlabs;
    std::array<Slab, kSlabsPerChunk> slabs;

    static std::size_t offset(void * cell) noexcept {
        return reinterpret_cast<std::uintptr_t>(cell) & (kChunkBytes - 1);
    }
    static Chunk & of(void * cell) noexcept {
        return *reinterpret_cast<Chunk *>(static_cast<std::byte *>(cell) - offset(cell));
    }
    Slab & slabOf(void * cell) noexcept { return slabs[offset(cell) / kSlabBytes]; }
    // REQUIRES: one is free.
    Slab & slabNew(std::size_t cellBytes) noexcept {
        auto const number = static_cast<unsigned>(std::countr_zero(freeSlabs));
        freeSlabs &= freeSlabs - 1;
        // The first slab has what this header leaves of its place.
        std::size_t const begin = number == 0 ? sizeof(Chunk) : number * kSlabBytes;
        std::size_t const end = (number + 1) * kSlabBytes - (number + 1 == kSlabsPerChunk ? kChunkMargin : 0);
        slabs[number].init(reinterpret_cast<std::byte *>(this) + begin, end - begin, cellBytes);
        return slabs[number];
    }
    void slabDel(Slab const & slab) noexcept { freeSlabs |= std::uint32_t{1} << (&slab - slabs.data()); }
    bool isEmpty() const noexcept { return freeSlabs == kAllSlabs; }
};
static_assert(sizeof(Chunk) <= kSlabBytes / 2 && sizeof(Chunk) % 64 == 0);

class Pool {
public:
    // As Slab::cellsNew. Throws std::bad_alloc.
    std::uint32_t cellsNew(std::size_t cellBytes, void ** cells, std::uint32_t most) {
        List<Slab> & slabs = slabs_[cellBytes / kGranule];
        Slab * slab = slabs.first();
        if (!slab) [[unlikely]] {
            slab = &slabNew(cellBytes);
            slabs.pushFront(*slab);
        }
        std::uint32_t const count = slab->cellsNew(cells, most);
        if (slab->isFull()) [[unlikely]]
            slabs.remove(*slab);
        return count;
    }
    void cellDel(void * cell) noexcept {
        Slab & slab = Chunk::of(cell).slabOf(cell);
        bool const full = slab.isFull();
        slab.cellDel(cell);
        if (full || slab.cellsInUse == 0) [[unlikely]]
            place(slab, full);
    }
    // Without a cell in use nothing is held.
    void release() noexcept {
        for (List<Slab> & slabs : slabs_) {
            Slab * const slab = slabs.first();
            if (slab && slab->cellsInUse == 0) slabDel(slabs, *slab);
        }
        if (spare_) chunkDel(*std::exchange(spare_, nullptr));
    }
    bool holds(void * cell) const noexcept {
        // What stands in the margin is somebody else's.
        if (Chunk::offset(cell) >= kChunkBytes - kChunkMargin) return false;
        Chunk const * chunk = all_;
        while (chunk && chunk != &Chunk::of(cell)) chunk = chunk->nextOfAll;
        return chunk;
    }
    SlabPool::Usage usage() const noexcept {
        // With their share of the header, the slabs of a chunk fill it.
        return {chunksHeld_ * kChunkBytes, slabsInUse_ * kSlabBytes};
    }

private:
    List<Slab> & listOf(Slab const & slab) noexcept { return slabs_[slab.cellBytes / kGranule]; }
    // Puts a slab where it belongs that was full or is empty now. One without a cell in use stays where no
    // other of its size has a free cell, so that a cell that comes and goes costs no slab.
    [[gnu::noinline]] void place(Slab & slab, bool wasFull) noexcept {
        List<Slab> & slabs = listOf(slab);
        if (wasFull) {
            if (Slab * const first = slabs.first(); first && first->cellsInUse == 0) slabDel(slabs, *first);
            slabs.pushFront(slab);
        }
        bool const isOnlyOne = slabs.first() == &slab && !slab.link.next;
        if (slab.cellsInUse == 0 && !isOnlyOne) slabDel(slabs, slab);
    }
    Slab & slabNew(std::size_t cellBytes) {
        Chunk * chunk = chunks_.first();
        if (!chunk) {
            chunk = spare_ ? std::exchange(spare_, nullptr) : &chunkNew();
            chunks_.pushFront(*chunk);
        }
        Slab & slab = chunk->slabNew(cellBytes);
        if (chunk->freeSlabs == 0) chunks_.remove(*chunk);
        ++slabsInUse_;
        return slab;
    }
    void slabDel(List<Slab> & slabs, Slab & slab) noexcept {
        slabs.remove(slab);
        Chunk & chunk = Chunk::of(&slab);
        if (chunk.freeSlabs == 0) chunks_.pushFront(chunk);
        chunk.slabDel(slab);
        --slabsInUse_;
        if (!chunk.isEmpty()) return;
        chunks_.remove(chunk);
        if (Chunk * const previous = std::exchange(spare_, &chunk)) chunkDel(*previous);
    }
    Chunk & chunkNew() {
        void * const storage = hugePages(kChunkBytes - kChunkMargin);
        if (!storage) throw std::bad_alloc();
        ++chunksHeld_;
        auto * const chunk = static_cast<Chunk *>(storage);
        chunk->nextOfAll = std::exchange(all_, chunk);
        chunk->freeSlabs = kAllSlabs;  // All else is written when a slab is taken into use.
        return *chunk;
    }
    void chunkDel(Chunk & chunk) noexcept {
        Chunk ** link = &all_;
        while (*link != &chunk) link = &(*link)->nextOfAll;
        *link = chunk.nextOfAll;
        --chunksHeld_;
        std::free(&chunk);
    }

    std::array<List<Slab>, SlabPool::kLargestCell / kGranule + 1> slabs_{};
    List<Chunk> chunks_;
    Chunk * all_ = nullptr;
    Chunk * spare_ = nullptr;  // One without slabs in use.
    std::size_t chunksHeld_ = 0;
    std::size_t slabsInUse_ = 0;
};

// Never destroyed: objects with static lifetime may die after everything here.
constinit Pool pool;
constinit std::mutex poolMutex;

class Guard {
public:
    Guard() {
        if (locked_) [[unlikely]]
            poolMutex.lock();
    }
    ~Guard() {
        if (locked_) [[unlikely]]
            poolMutex.unlock();
    }
    Guard(Guard const &) = delete;
    Guard & operator=(Guard const &) = delete;

private:
    bool const locked_ = VFPtrInterface::threadSafePointers_;
};

}  // namespace

struct ReleaseAtUnload {
    ~ReleaseAtUnload() {
        Guard const guard;
        SlabPool::emptyShelves();
        pool.release();
    }
};

namespace {

ReleaseAtUnload const releaseAtUnload;
constinit bool pooled = true;
constinit bool everWithout = false;

// Once the pool has been done without, cells of both kinds may be in use.
bool isOfPool(void * cell) noexcept { return !everWithout || pool.holds(cell); }

// The pieces that are too large for the pool.

void * largeNew(std::size_t size) {
    if (!SlabPool::kPooled || size < kHugePage) return ::operator new(size);
    if (void * const storage = hugePages(size)) return storage;
    throw std::bad_alloc();
}

void largeDel(void * storage, std::size_t size) noexcept {
    if (!SlabPool::kPooled || size < kHugePage) {
        ::operator delete(storage);
    } else {
        std::free(storage);
    }
}

}  // namespace

constinit std::array<SlabPool::Shelf, SlabPool::kIndices> SlabPool::shelves_{};
constinit std::uint32_t SlabPool::shelfRoom_ = SlabPool::Shelf::kRoom;

// The shelf is empty.
void * SlabPool::slabCell(std::size_t size, std::size_t number) {
    if (!pooled) [[unlikely]]
        return oddCell(size);
    // Half a shelf, so that the next cells that come free find room on it.
    Shelf & shelf = shelves_[number];
    shelf.count = pool.cellsNew(number * kAlignment, shelf.cells.data(), Shelf::kRoom / 2 + 1) - 1;
    return shelf.cells[shelf.count];
}

// Large, in thread-safe pointer mode, or without the pool.
void * SlabPool::oddCell(std::size_t size) {
    if (!kPooled || size > kLargestCell) return largeNew(size);
    Guard const guard;
    if (!pooled) return ::operator new(size);
    void * cell;
    pool.cellsNew(index(size) * kAlignment, &cell, 1);
    return cell;
}

// The shelf is full, or takes nothing.
void SlabPool::slabCellDel(void * cell, std::size_t size) noexcept {
    if (everWithout) [[unlikely]] {
        oddCellDel(cell, size);
    } else {
        pool.cellDel(cell);
    }
}

// Large, in thread-safe pointer mode, or where the pool has been done without.
void SlabPool::oddCellDel(void * cell, std::size_t size) noexcept {
    if (!kPooled || size > kLargestCell) {
        largeDel(cell, size);
        return;
    }
    Guard const guard;
    if (!isOfPool(cell)) {
        ::operator delete(cell);
        return;
    }
    Shelf & shelf = shelves_[index(size)];
    if (shelf.count < Shelf::kRoom && pooled && !VFPtrInterface::threadSafePointers_) {
        shelf.cells[shelf.count++] = cell;
    } else {
        pool.cellDel(cell);
    }
}

void SlabPool::emptyShelves() noexcept {
    for (Shelf & shelf : shelves_) {
        while (shelf.count != 0) pool.cellDel(shelf.cells[--shelf.count]);
    }
}

void SlabPool::pooledIs(bool on) noexcept {
    Guard const guard;
    pooled = on;
    if (on) return;
    everWithout = true;
    shelfRoom_ = 0;
    emptyShelves();
}

SlabPool::Usage SlabPool::usage() noexcept {
    Guard const guard;
    return pool.usage();
}

}  // namespace Vel
