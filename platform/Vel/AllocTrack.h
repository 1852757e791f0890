// Counts of the objects of each tracked class: how many live, how many allocations were ever begun.
//
// Usage
//     class Lamp final : public Vel::PtrInterface, public Vel::AllocTracked<Lamp> { ... };
//     Vel::Ptr<Lamp> lamp = new Lamp;
//     Lamp::velAllocTrackTypeInfo_->live();    // 1
//
// An object is counted before its storage is asked for, and no longer lives when the storage cannot be had or
// the constructor throws. Records are never destroyed; a library that is unloaded and loaded again finds
// those of its classes by name.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <typeinfo>
#include <vector>

#include "platform/Vel/Export.h"
#include "platform/Vel/PtrInterface.h"
#include "platform/Vel/SlabPool.h"

namespace Vel {

class VEL_EXPORT AllocTrackTypeInfo {
public:
    // Counts one more object of the class whose record `*record` is; makes the record on first use. Throws
    // std::bad_alloc, and has then counted nothing. Callers that have looked already say whether pointers are
    // thread-safe.
    static void trackAllocation(AllocTrackTypeInfo ** record, std::type_info const & type, unsigned int size,
                                bool threadSafe = VFPtrInterface::threadSafePointers_) {
        // Objects may be made on several threads where pointers are thread-safe; all of them find one record.
        std::atomic_ref<AllocTrackTypeInfo *> const known(*record);
        AllocTrackTypeInfo * counted = known.load(std::memory_order_acquire);
        if (!counted) [[unlikely]]
            known.store(counted = recordOf(type, size), std::memory_order_release);
        countOne(counted->total_, threadSafe);
    }
    static void trackDeallocation(AllocTrackTypeInfo * record,
                                  bool threadSafe = VFPtrInterface::threadSafePointers_) noexcept {
        countOne(record->gone_, threadSafe);
    }

    // The demangled name of the class.
    std::string const & typeName() const noexcept { return typeName_; }
    // Bytes of one object.
    unsigned int size() const noexcept { return size_; }
    std::uint64_t live() const noexcept {
        // First those that are gone, which are never more than those that there were.
        std::uint64_t const gone = loaded(gone_);
        return loaded(total_) - gone;
    }
    std::uint64_t total() const noexcept { return loaded(total_); }

private:
    AllocTrackTypeInfo(std::string typeName, unsigned int size)
        : typeName_(std::move(typeName)), size_(size) {}
    static AllocTrackTypeInfo * recordOf(std::type_info const & type, unsigned int size);
    static std::uint64_t loaded(std::uint64_t & counter) noexcept {
        return std::atomic_ref<std::uint64_t>(counter).load(std::memory_order_acquire);
    }
    static void countOne(std::uint64_t & counter, bool threadSafe) noexcept {
        if (threadSafe) [[unlikely]] {
            std::atomic_ref<std::uint64_t>(counter).fetch_add(1, std::memory_order_acq_rel);
        } else {
            ++counter;
        }
    }

    std::string const typeName_;
    unsigned int const size_;
    // Changed on several threads only where pointers are thread-safe.
    mutable std::uint64_t total_ = 0;
    mutable std::uint64_t gone_ = 0;
};

// Every tracked class of which an object has been made, in the order of their first objects.
VEL_EXPORT std::vector<AllocTrackTypeInfo const *> allocTrackTypes();

// Gives class `T`, which names itself here among its bases, tracked `new` and `delete`.
template <class T>
class VEL_EXPORT AllocTracked {
public:
    static void * operator new(std::size_t size) {
        static_assert(alignof(T) <= SlabPool::kAlignment, "cells are aligned for pointers");
        bool const threadSafe = VFPtrInterface::threadSafePointers_;
        AllocTrackTypeInfo::trackAllocation(&velAllocTrackTypeInfo_, typeid(T), static_cast<unsigned>(size),
                                            threadSafe);
        try {
            return SlabPool::cell(size, threadSafe);
        } catch (...) {
            trackDeallocation(threadSafe);
            throw;
        }
    }
    static void * operator new(std::size_t, void * storage) noexcept { return storage; }
    // Runs after the destructor, and when a constructor has thrown.
    static void operator delete(void * storage, std::size_t size) noexcept {
        bool const threadSafe = VFPtrInterface::threadSafePointers_;
        SlabPool::cellDel(storage, size, threadSafe);
        trackDeallocation(threadSafe);
    }
    static void operator delete(void *, void *) noexcept {}

    static AllocTrackTypeInfo * velAllocTrackTypeInfo_;

protected:
    AllocTracked() noexcept = default;
    ~AllocTracked() = default;

private:
    static void trackDeallocation(bool threadSafe) noexcept {
        std::atomic_ref<AllocTrackTypeInfo *> const known(velAllocTrackTypeInfo_);
        AllocTrackTypeInfo::trackDeallocation(known.load(std::memory_order_acquire), threadSafe);
    }
};

template <class T>
AllocTrackTypeInfo * AllocTracked<T>::velAllocTrackTypeInfo_ = nullptr;

// The readable name of a class.
VEL_EXPORT std::string demangled(char const * mangled);

}  // namespace Vel
