#include "platform/Vel/String.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

#include "platform/Vel/NumberHash.h"
#include "platform/Vel/SlabPool.h"

namespace Vel {

namespace {

// 2^32 divided by the golden ratio, made odd.
constexpr std::uint32_t kMultiplier = 0x9e3779b1u;

// The shift after the multiplication carries the high bits, which it mixes best, down to the low ones, which
// choose the bucket.
std::uint32_t folded(std::uint32_t hash, std::uint32_t word) noexcept {
    hash = (hash ^ word) * kMultiplier;
    return hash ^ hash >> 15;
}

// Four bytes a step.
std::uint32_t folded(std::uint32_t hash, std::string_view bytes) noexcept {
    hash = folded(hash, static_cast<std::uint32_t>(bytes.size()));
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes.data() + at, std::min<std::size_t>(4, bytes.size() - at));
        hash = folded(hash, word);
    }
    return hash;
}

bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

// The run of digits, or of other bytes, from `begin` on. Of digits as many as a number of 32 bits holds.
std::string_view pieceAt(std::string_view bytes, std::size_t begin) noexcept {
    bool const digits = isDigit(bytes[begin]);
    constexpr std::size_t kMostDigits = 9;
    std::size_t const limit = digits ? std::min(bytes.size(), begin + kMostDigits) : bytes.size();
    std::size_t end = begin + 1;
    while (end < limit && isDigit(bytes[end]) == digits) ++end;
    return bytes.substr(begin, end - begin);
}

std::uint32_t numberOf(std::string_view digits) noexcept {
    std::uint32_t number = 0;
    for (char const digit : digits) number = number * 10 + static_cast<std::uint32_t>(digit - '0');
    return number;
}

// What numbered names have in common is mixed, and so are all numbers but the last two.
std::uint32_t reversedHashOf(std::string_view bytes) noexcept {
    std::uint32_t common = 0;
    std::uint32_t number = 0;
    std::uint32_t numberBefore = 0;
    std::string_view piece;
    for (std::size_t at = 0; at < bytes.size(); at += piece.size()) {
        piece = pieceAt(bytes, at);
        if (!isDigit(piece[0])) {
            common = folded(common, piece);
            continue;
        }
        // Numbers with leading zeros are of a fixed width, which they have in common.
        std::size_t const width = piece[0] == '0' && piece.size() > 1 ? piece.size() : 0;
        common = folded(folded(common, numberBefore), ~static_cast<std::uint32_t>(width));
        numberBefore = number;
        number = numberOf(piece);
    }
    common *= 0x85ebca6bu;
    common ^= common >> 16;
    return bitReverse(common ^ numberHash(number)) ^ reversedGroupHash(numberBefore);
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
    : size_(static_cast<std::uint32_t>(bytes.size())), reversedHash_(reversedHashOf(bytes)) {}

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
