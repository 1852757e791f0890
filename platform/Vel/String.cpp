#include "platform/Vel/String.h"

#include <atomic>
#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

#include "platform/Vel/PtrInterface.h"

namespace Vel {

namespace {

// Four bytes a step; the multiplier is 2^32 divided by the golden ratio, made odd. The shifts after each
// multiplication carry the high bits, which it mixes best, down to the low ones, which choose the bucket.
std::uint32_t hashOf(std::string_view bytes) noexcept {
    constexpr std::uint32_t kMultiplier = 0x9e3779b1u;
    std::uint32_t hash = static_cast<std::uint32_t>(bytes.size()) * kMultiplier;
    std::size_t at = 0;
    for (; at + 4 <= bytes.size(); at += 4) {
        std::uint32_t word;
        std::memcpy(&word, bytes.data() + at, 4);
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 15;
    }
    if (at < bytes.size()) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes.data() + at, bytes.size() - at);
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 15;
    }
    hash *= 0x85ebca6bu;
    return hash ^ hash >> 16;
}

}  // namespace

String::Data * String::Data::newData(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("Vel::String");
    auto * const storage = ::operator new(sizeof(Data) + bytes.size() + 1);
    auto * const data = new (storage) Data;
    data->references_ = 1;
    data->size_ = static_cast<std::uint32_t>(bytes.size());
    data->reversedHash_ = bitReverse(hashOf(bytes));
    auto * const target = reinterpret_cast<char *>(data + 1);
    std::memcpy(target, bytes.data(), bytes.size());
    target[bytes.size()] = '\0';
    return data;
}

void String::Data::referenceNew() noexcept {
    // A count at its end stays there, as that of objects does.
    if (VFPtrInterface::threadSafePointers_) {
        std::atomic_ref<std::uint32_t> references(references_);
        std::uint32_t seen = references.load(std::memory_order_relaxed);
        while (seen != std::numeric_limits<std::uint32_t>::max() &&
               !references.compare_exchange_weak(seen, seen + 1, std::memory_order_relaxed)) {
        }
    } else if (references_ != std::numeric_limits<std::uint32_t>::max()) {
        ++references_;
    }
}

void String::Data::referenceDel() noexcept {
    bool last;
    if (VFPtrInterface::threadSafePointers_) {
        std::atomic_ref<std::uint32_t> references(references_);
        std::uint32_t seen = references.load(std::memory_order_relaxed);
        do {
            if (seen == std::numeric_limits<std::uint32_t>::max()) return;
        } while (!references.compare_exchange_weak(seen, seen - 1, std::memory_order_acq_rel));
        last = seen == 1;
    } else {
        if (references_ == std::numeric_limits<std::uint32_t>::max()) return;
        last = --references_ == 0;
    }
    if (last) ::operator delete(this);
}

std::ostream & operator<<(std::ostream & out, String const & string) { return out << string.view(); }

}  // namespace Vel
