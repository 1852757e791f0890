#include "platform/Vel/String.h"

#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

#include "platform/Vel/SlabPool.h"

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

// The terminating NUL included.
constexpr std::size_t storageSize(std::size_t bytes) noexcept { return sizeof(String::Data) + bytes + 1; }

}  // namespace

String::Data * String::Data::newData(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("Vel::String");
    auto * const data = new (SlabPool::cell(storageSize(bytes.size()))) Data(bytes);
    auto * const target = reinterpret_cast<char *>(data + 1);
    std::memcpy(target, bytes.data(), bytes.size());
    target[bytes.size()] = '\0';
    return data;
}

String::Data::Data(std::string_view bytes) noexcept
    : size_(static_cast<std::uint32_t>(bytes.size())), reversedHash_(bitReverse(hashOf(bytes))) {}

void String::Data::dataDel() noexcept { SlabPool::cellDel(this, storageSize(size_)); }

std::ostream & operator<<(std::ostream & out, String const & string) { return out << string.view(); }

}  // namespace Vel
