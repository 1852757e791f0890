#include "platform/Vel/String.h"

#include <algorithm>
#include <bit>
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

// Bytes at `at` as a number that is as much less than another as the bytes come before the other's.
template <class Word>
Word ordered(char const * at) noexcept {
    static_assert(sizeof(Word) == 4 || sizeof(Word) == 8);
    Word word;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::big) {
        return word;
    } else if constexpr (sizeof(Word) == 8) {
        return __builtin_bswap64(word);
    } else {
        return __builtin_bswap32(word);
    }
}

// Compares the first `size` bytes of both, a word at a time, of which the last one may overlap the one
// before. REQUIRES: a word is not longer than that.
template <class Word>
int comparedByWords(char const * a, char const * b, std::size_t size) noexcept {
    for (std::size_t at = 0;; at = std::min(at + sizeof(Word), size - sizeof(Word))) {
        Word const ofA = ordered<Word>(a + at);
        Word const ofB = ordered<Word>(b + at);
        if (ofA != ofB) return ofA < ofB ? -1 : 1;
        if (at == size - sizeof(Word)) return 0;
    }
}

// Names are short, and those that meet in a bucket are compared with each change: a call of std::memcmp would
// take longer than the comparison.
int compared(char const * a, char const * b, std::size_t size) noexcept {
    if (size >= 8) return comparedByWords<std::uint64_t>(a, b, size);
    if (size >= 4) return comparedByWords<std::uint32_t>(a, b, size);
    for (std::size_t at = 0; at < size; ++at) {
        if (a[at] != b[at]) return static_cast<unsigned char>(a[at]) - static_cast<unsigned char>(b[at]);
    }
    return 0;
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

int String::compare(String const & a, String const & b) noexcept {
    if (a.data_ == b.data_) return 0;
    if (!a.data_ || !b.data_) return a.data_ ? 1 : -1;
    std::uint32_t const sizeOfA = a.data_->size();
    std::uint32_t const sizeOfB = b.data_->size();
    int const difference = compared(a.data_->bytes(), b.data_->bytes(), std::min(sizeOfA, sizeOfB));
    if (difference != 0) return difference;
    return sizeOfA == sizeOfB ? 0 : sizeOfA < sizeOfB ? -1 : 1;
}

void String::Data::dataDel() noexcept { SlabPool::cellDel(this, storageSize(size_)); }

std::ostream & operator<<(std::ostream & out, String const & string) { return out << string.view(); }

}  // namespace Vel
