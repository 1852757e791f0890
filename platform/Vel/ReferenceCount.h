// How many references there are to what is counted but no framework object: the data of strings and keys.
// Counts as `PtrInterface` does, in either pointer mode.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Vel/PtrInterface.h"

namespace Vel {

class ReferenceCount {
public:
    explicit constexpr ReferenceCount(std::uint32_t references) noexcept : references_(references) {}

    [[gnu::always_inline]] void referenceNew() noexcept {
        if (VFPtrInterface::threadSafePointers_) [[unlikely]] {
            std::atomic_ref<std::uint32_t>(references_).fetch_add(1, std::memory_order_relaxed);
        } else {
            ++references_;
        }
    }
    // Tells whether that was the last one.
    [[gnu::always_inline]] bool referenceDel() noexcept {
        if (VFPtrInterface::threadSafePointers_) [[unlikely]]
            return std::atomic_ref<std::uint32_t>(references_).fetch_sub(1, std::memory_order_acq_rel) == 1;
        return --references_ == 0;
    }

private:
    std::uint32_t references_;
};

}  // namespace Vel
