// The base of every framework object: a virtual table and one reference word.
//
// Usage
//     class Lamp final : public Vel::PtrInterface { ... };
//     Vel::Ptr<Lamp> lamp = new Lamp;     // one reference; the last one to go destroys the lamp
//
// The reference word
//     bit 31      marked for deletion: the object is a zombie
//     bit 30      held: the object is being destroyed, so its count never reaches zero again
//     bit 29      notification active: a reactor gets callbacks
//     bits 0..28  the number of references
// The count is zero when none of the bits under 0x5fffffff is set. References made while the destructor runs
// (a reactor hands out references to itself when it retires) come and go without a second destruction,
// because bit 30 belongs to that mask. The 29 bits of the count are never exhausted: as many references, one
// pointer each, would fill 4 GiB.
//
// Threads
//     `VFPtrInterface::threadSafePointers_` makes every change of the word an atomic read-modify-write
//     operation. It must be set before the first object is made and never changed after that. Everything but
//     the word itself stays the business of one thread.
//
// Objects outside the heap
//     An object on the stack, or one still inside its constructor, has count 0. A reference to it that comes
//     and goes would destroy it; `KeepAlive` therefore takes one only where the count is not zero.
//
// Destruction
//     Long chains of references do not overflow the stack: past a small depth, objects whose count reaches
//     zero wait in a work list until the outer destructor has ended.
#pragma once

#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "platform/Vel/Export.h"

namespace Vel {

class NotifieeList;
class VelType;

struct VEL_EXPORT VFPtrInterface {
    static bool threadSafePointers_;
};

class VEL_EXPORT PtrInterface {
public:
    class NotifieeConst;

    // The record of objects of which nothing else is known.
    static VelType const _velType;

    static constexpr std::uint32_t kMarkedForDeletion = 1u << 31;
    static constexpr std::uint32_t kHeld = 1u << 30;
    static constexpr std::uint32_t kNotificationActive = 1u << 29;
    static constexpr std::uint32_t kReferences = kNotificationActive - 1;
    static constexpr std::uint32_t kCountMask = 0x5fffffff;

    PtrInterface(PtrInterface const &) = delete;
    PtrInterface & operator=(PtrInterface const &) = delete;

    // The reactors that follow this object; null when nothing can follow it.
    virtual NotifieeList * notifieeList() const;
    virtual void hasNotificationActiveIs(bool active);
    // Called with true when the last reference has gone. The default destroys the object.
    virtual void zeroReferencesIs(bool zero);
    // The type record of the object's class; null when it has none.
    virtual VelType const * fwkType() const;
    virtual ~PtrInterface() { assert((word_ & kReferences) == 0 && "destroyed while referenced"); }

    bool hasNotificationActive() const noexcept { return (word() & kNotificationActive) != 0; }
    bool velMarkedForDeletion() const noexcept { return (word() & kMarkedForDeletion) != 0; }
    void velMarkedForDeletionIs(bool marked) const noexcept { flagIs(kMarkedForDeletion, marked); }

    // How many counted references there are now.
    std::uint32_t references() const noexcept { return word() & kReferences; }

    // True once the last reference has gone or the destructor runs.
    bool isBeingDestroyed() const noexcept { return (word() & kHeld) != 0; }

    // True while a counted reference may come and go without destroying the object.
    bool isCounted() const noexcept { return (word() & kCountMask) != 0; }

    // In place wherever they are used, which on the path of a change is everywhere.
    [[gnu::always_inline]] void referenceNew() const noexcept;
    [[gnu::always_inline]] void referenceDel() const noexcept;

    // Destroys the object through `zeroReferencesIs(true)`: now, or when the destructors that are running on
    // this thread, or the delivery that keeps it, have ended. REQUIRES: the count has just become zero.
    void handleZeroRef() const noexcept;

    // The storage of framework objects, which `SlabPool::cellDel` takes back. Throws std::bad_alloc.
    static void * velMemAlloc(unsigned int size);

protected:
    PtrInterface() noexcept = default;

    // The first act of a destructor that hands out references to its object.
    void heldIs() const noexcept {
        if (!isBeingDestroyed()) [[likely]]
            flagIs(kHeld, true);
    }
    void notificationActiveFlagIs(bool active) const noexcept { flagIs(kNotificationActive, active); }
    // Gives a reference back and tells whether it was the last one, which leaves the end of the object to the
    // caller. For the `referenceDel` with which a final class hides the one above, so that its objects end in
    // place: they hold others, but no chain of them, and nothing refers to them from their own destructor.
    [[gnu::always_inline]] bool referenceDelIsLast() const noexcept {
        if (VFPtrInterface::threadSafePointers_) [[unlikely]]
            return lessOneAtomic() == 0;
        assert((word_ & kReferences) != 0 && "more references released than taken");
        return (--word_ & kCountMask) == 0;
    }
    // The reference word, to test several things at once. An ordinary load on most processors, so both
    // pointer modes read alike.
    std::uint32_t word() const noexcept {
        return std::atomic_ref<std::uint32_t>(word_).load(std::memory_order_acquire);
    }

private:
    void flagIs(std::uint32_t flag, bool on) const noexcept;
    [[gnu::always_inline]] void referenceDelPlain() const noexcept;
    // Cold, so that they stand aside wherever counting is compiled in.
    [[gnu::cold]] void referenceNewAtomic() const noexcept;
    [[gnu::cold]] void referenceDelAtomic() const noexcept;
    // What counts after one reference less.
    [[gnu::cold]] std::uint32_t lessOneAtomic() const noexcept;

    mutable std::uint32_t word_ = 0;
};

inline void PtrInterface::referenceNew() const noexcept {
    if (VFPtrInterface::threadSafePointers_) [[unlikely]] {
        referenceNewAtomic();
    } else {
        ++word_;
    }
}

inline void PtrInterface::referenceDel() const noexcept {
    if (VFPtrInterface::threadSafePointers_) [[unlikely]] {
        referenceDelAtomic();
    } else {
        referenceDelPlain();
    }
}

inline void PtrInterface::referenceDelPlain() const noexcept {
    assert((word_ & kReferences) != 0 && "more references released than taken");
    if ((--word_ & kCountMask) == 0) [[unlikely]]
        handleZeroRef();
}

// Begins to fetch an object into the processor's caches that is going to be needed after some other work.
// Changes nothing; null is allowed.
//
// This, and whatever else does nothing but fetch, is always compiled in place: a call of it is without effect
// for g++, which leaves it out.
template <class Object>
[[gnu::always_inline]] inline void fetch(Object const * object) noexcept {
    constexpr std::size_t kCacheLine = 64;
    __builtin_prefetch(object);
    if constexpr (sizeof(Object) > kCacheLine) {
        // By its number, because null has no next line.
        auto const next = reinterpret_cast<std::uintptr_t>(object) + kCacheLine;
        __builtin_prefetch(reinterpret_cast<void const *>(next));
    }
}

// Keeps an object alive for a scope, whoever lets go of it meanwhile; does nothing for an object that is not
// counted (yet), because a passing reference would destroy it.
class KeepAlive {
public:
    explicit KeepAlive(PtrInterface const & object) noexcept {
        if (!object.isCounted()) [[unlikely]]
            return;
        object_ = &object;
        object.referenceNew();
    }
    ~KeepAlive() {
        if (object_) [[likely]]
            object_->referenceDel();
    }
    KeepAlive(KeepAlive const &) = delete;
    KeepAlive & operator=(KeepAlive const &) = delete;

    bool holds() const noexcept { return object_ != nullptr; }

private:
    PtrInterface const * object_ = nullptr;
};

}  // namespace Vel
