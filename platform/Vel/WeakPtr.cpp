#include "platform/Vel/WeakPtr.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "platform/Vel/SlabPool.h"

namespace Vel {

// All slots, and those that no target has.
class WeakSlots {
public:
    using Slot = WeakTarget::Slot;

    // Throws std::bad_alloc.
    Slot & slotNew() {
        if (free_) return *std::exchange(free_, free_->nextFree);
        if (unused_ == unusedEnd_) blockNew();
        return *std::construct_at(unused_++);
    }
    // The life of `slot` has ended.
    void slotDel(Slot & slot) noexcept {
        std::uint32_t const ended = slot.life.load(std::memory_order_relaxed);
        slot.life.store(ended + 1, std::memory_order_relaxed);
        // After the last one its number would begin anew, and fit references of old.
        if (ended != WeakTarget::Handle::kLastLife) slot.nextFree = std::exchange(free_, &slot);
    }

private:
    // Twice as large each time, up to a huge page.
    static constexpr std::size_t kFirstBlock = std::size_t{4} << 10;
    static constexpr std::size_t kLargestBlock = std::size_t{2} << 20;

    void blockNew() {
        std::size_t const bytes = blockBytes_;
        auto * const block = static_cast<std::byte *>(SlabPool::cell(bytes));
        // The first slot's place tells where the block before is, so that a memory checker finds them all.
        blocks_ = new (block) Block{.before = blocks_};
        unused_ = reinterpret_cast<Slot *>(block) + 1;
        unusedEnd_ = reinterpret_cast<Slot *>(block + bytes);
        blockBytes_ = std::min(2 * bytes, kLargestBlock);
    }

    struct Block {
        Block * before;
    };
    static_assert(sizeof(Block) <= sizeof(Slot));
    // What is too large for a slab is aligned as the system aligns its pieces.
    static_assert(kFirstBlock > SlabPool::kLargestCell && alignof(Slot) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    Slot * free_ = nullptr;
    // Of the last block.
    Slot * unused_ = nullptr;
    Slot * unusedEnd_ = nullptr;
    std::size_t blockBytes_ = kFirstBlock;
    Block * blocks_ = nullptr;
};

namespace {

// Never destroyed: objects with static lifetime may die after everything here.
constinit WeakSlots slots;
constinit std::mutex slotsMutex;

std::unique_lock<std::mutex> guarded() {
    return VFPtrInterface::threadSafePointers_ ? std::unique_lock(slotsMutex)
                                               : std::unique_lock<std::mutex>();
}

}  // namespace

void WeakTarget::begin(PtrInterface const & object) {
    auto const guard = guarded();
    Slot & slot = slots.slotNew();
    slot.object = &object;
    handle_ = Handle(slot, slot.life.load(std::memory_order_relaxed));
}

void WeakTarget::end() noexcept {
    auto const guard = guarded();
    slots.slotDel(handle_.slot());
}

}  // namespace Vel
