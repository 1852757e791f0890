// References that are not counted and become null when their target dies.
//
// A model object that points back (a port at its group) must neither keep its target alive nor outlive it.
// The target carries a `WeakTarget`. From the first reference on it has a slot, which says who it is, and the
// number of the life that the slot leads with it; a reference keeps both. When the target dies its slot
// begins another life, which no reference fits any more. So a reference that is set again, or goes, touches
// nothing of its old target, and only the first reference to a target takes a slot.
//
// Slots
//     A slot that has come free serves another target. The storage of slots is never given back, not even
//     when the library is unloaded, because a reference may look at its slot long after its target's death:
//     16 bytes for each target that there ever was at one time. After a million lives a slot is left alone.
//
// Threads
//     One topology is the business of one thread. In thread-safe pointer mode (PtrInterface.h) other threads
//     may have theirs.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Vel/Export.h"
#include "platform/Vel/PtrInterface.h"

namespace Vel {

// The end of a target's weak references: a member of every class that `WeakPtr` points at.
class VEL_EXPORT WeakTarget {
public:
    WeakTarget() noexcept = default;
    ~WeakTarget() {
        if (handle_) end();
    }
    WeakTarget(WeakTarget const &) = delete;
    WeakTarget & operator=(WeakTarget const &) = delete;

private:
    friend class WeakPtrBase;
    friend class WeakSlots;

    struct alignas(16) Slot {
        union {
            PtrInterface const * object;  // While a life lasts.
            Slot * nextFree;              // Between two of them.
        };
        // The number of the present life, or the next one. Atomic, because references of old lives look at
        // it on other threads than that of the present one.
        std::atomic<std::uint32_t> life;
    };

    // A slot and the number of a life, in one word: an address has 48 bits, the lowest four of which are
    // zeros here. Zero is none.
    class Handle {
    public:
        static constexpr std::uint32_t kLastLife = (std::uint32_t{1} << 20) - 1;

        constexpr Handle() noexcept = default;
        Handle(Slot const & slot, std::uint32_t life) noexcept
            : bits_(reinterpret_cast<std::uintptr_t>(&slot) << 16 | life) {}

        explicit operator bool() const noexcept { return bits_ != 0; }
        bool operator==(Handle const &) const noexcept = default;
        // REQUIRES: this is one.
        Slot & slot() const noexcept { return *reinterpret_cast<Slot *>(bits_ >> 20 << 4); }
        bool isAlive() const noexcept {
            return (bits_ & kLastLife) == slot().life.load(std::memory_order_relaxed);
        }

    private:
        static_assert(sizeof(void *) == sizeof(std::uint64_t));
        std::uint64_t bits_ = 0;
    };

    // Takes a slot for `object`, whose target this is. Throws std::bad_alloc.
    void begin(PtrInterface const & object);
    void end() noexcept;

    Handle handle_;  // None until somebody refers to the target.
};

class VEL_EXPORT WeakPtrBase {
public:
    WeakPtrBase(WeakPtrBase const &) = delete;
    WeakPtrBase & operator=(WeakPtrBase const &) = delete;

protected:
    WeakPtrBase() noexcept = default;
    ~WeakPtrBase() = default;

    // Null when nothing was set, and from the moment when the target's destruction is certain.
    PtrInterface const * object() const noexcept {
        if (!handle_ || !handle_.isAlive()) return nullptr;
        PtrInterface const * const object = handle_.slot().object;
        return object->isBeingDestroyed() ? nullptr : object;
    }
    // Tells without a look at what was set.
    bool refersTo(WeakTarget const & target) const noexcept {
        if (!handle_) [[unlikely]]
            return false;
        return handle_ == target.handle_;
    }
    void referTo(PtrInterface const & object, WeakTarget & target) {
        if (!target.handle_) [[unlikely]]
            target.begin(object);
        handle_ = target.handle_;
    }
    void letGo() noexcept { handle_ = {}; }

private:
    WeakTarget::Handle handle_;
};

// `T` offers `Vel::WeakTarget & weakTarget() const`.
template <class T>
class WeakPtr : private WeakPtrBase {
public:
    WeakPtr() noexcept = default;

    // Null when nothing was set, and from the moment when the target's destruction is certain.
    T * get() const noexcept { return const_cast<T *>(static_cast<T const *>(object())); }
    // Throws std::bad_alloc, and has then changed nothing.
    WeakPtr & operator=(T * target) {
        targetIs(target);
        return *this;
    }
    // The same; tells whether that was another one.
    bool targetIs(T * target) {
        if (target) {
            // One that is being destroyed is none already, even the one that is set.
            if (refersTo(target->weakTarget()) && !target->isBeingDestroyed()) return false;
            referTo(*target, target->weakTarget());
        } else {
            if (!object()) return false;
            letGo();
        }
        return true;
    }
    friend bool operator==(WeakPtr const & a, T * b) noexcept { return a.get() == b; }
};

}  // namespace Vel
