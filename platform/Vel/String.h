// Immutable counted strings of any bytes, NUL included.
//
// A string is one pointer to one allocation that holds the count, the size, the hash and the bytes; the
// empty string is the null pointer. The hash is computed once, when the string is made. It is kept
// bit-reversed, which is the form that collections use: a collection takes the top bits of the reversed hash
// for the bucket, so the low bits of the hash itself choose it.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <utility>

#include "platform/Vel/Export.h"
#include "platform/Vel/ReferenceCount.h"

namespace Vel {

// Bit 0 becomes bit 31, bit 1 becomes bit 30, and so on.
constexpr std::uint32_t bitReverse(std::uint32_t value) noexcept {
    value = (value >> 1 & 0x55555555u) | (value & 0x55555555u) << 1;
    value = (value >> 2 & 0x33333333u) | (value & 0x33333333u) << 2;
    value = (value >> 4 & 0x0f0f0f0fu) | (value & 0x0f0f0f0fu) << 4;
    value = (value >> 8 & 0x00ff00ffu) | (value & 0x00ff00ffu) << 8;
    return value >> 16 | value << 16;
}

class VelType;

// What a string is made of and compares with. Not `nullptr`, which stands for no object and never for a text.
template <class T>
concept Text = std::convertible_to<T, std::string_view> && !std::same_as<T, std::nullptr_t>;

class VEL_EXPORT String {
public:
    static VelType const _velType;

    // What a non-empty string points to; the bytes and a terminating NUL follow it in memory.
    class VEL_EXPORT Data {
    public:
        std::uint32_t hash() const noexcept { return bitReverse(reversedHash_); }
        std::uint32_t reversedHash() const noexcept { return reversedHash_; }
        std::uint32_t size() const noexcept { return size_; }
        char const * bytes() const noexcept { return reinterpret_cast<char const *>(this + 1); }

    private:
        friend class String;
        static Data * newData(std::string_view bytes);
        explicit Data(std::string_view bytes) noexcept;
        void referenceDel() noexcept {
            if (references_.referenceDel()) [[unlikely]]
                dataDel();
        }
        void dataDel() noexcept;

        ReferenceCount references_{1};
        std::uint32_t size_;
        std::uint32_t reversedHash_;
    };

    constexpr String() noexcept = default;
    // REQUIRES: fewer than 2^32 bytes. Throws std::bad_alloc; std::length_error for more.
    String(char const * bytes, unsigned int size) : String(std::string_view(bytes, size)) {}
    String(Text auto const & bytes) : data_(dataOf(bytes)) {}
    String(String const & other) noexcept : data_(other.data_) { take(); }
    String(String && other) noexcept : data_(std::exchange(other.data_, nullptr)) {}
    ~String() { drop(data_); }

    String & operator=(String const & other) noexcept {
        if (data_ != other.data_) {
            other.take();
            drop(std::exchange(data_, other.data_));
        }
        return *this;
    }
    String & operator=(String && other) noexcept {
        if (this != &other) drop(std::exchange(data_, std::exchange(other.data_, nullptr)));
        return *this;
    }

    std::string_view view() const noexcept {
        return data_ ? std::string_view(data_->bytes(), data_->size()) : std::string_view();
    }
    std::size_t size() const noexcept { return data_ ? data_->size() : 0; }
    bool empty() const noexcept { return data_ == nullptr; }
    // Ends with a NUL that is not part of the string.
    char const * c_str() const noexcept { return data_ ? data_->bytes() : ""; }
    // Null for the empty string.
    Data const * data() const noexcept { return data_; }

    // 0 for the empty string; the hash that collections use is its bit reversal.
    std::uint32_t hash() const noexcept { return data_ ? data_->hash() : 0; }
    std::uint32_t reversedHash() const noexcept {
        if (!data_) [[unlikely]]
            return 0;
        return data_->reversedHash();
    }

    friend bool operator==(String const & a, String const & b) noexcept {
        if (a.data_ == b.data_) return true;
        return a.data_ && b.data_ && a.data_->reversedHash() == b.data_->reversedHash() &&
               a.view() == b.view();
    }
    friend bool operator==(String const & a, Text auto const & b) noexcept {
        return a.view() == std::string_view(b);
    }
    // Bytes, unsigned, lexicographically.
    friend std::strong_ordering operator<=>(String const & a, String const & b) noexcept {
        return compare(a, b) <=> 0;
    }
    friend bool operator<(String const & a, String const & b) noexcept { return compare(a, b) < 0; }

private:
    // Less than, equal to or greater than 0, as `a` is to `b`.
    static int compare(String const & a, String const & b) noexcept;
    static Data * dataOf(std::string_view bytes) { return bytes.empty() ? nullptr : Data::newData(bytes); }
    void take() const noexcept {
        if (data_) [[likely]]
            data_->references_.referenceNew();
    }
    static void drop(Data * data) noexcept {
        if (data) [[likely]]
            data->referenceDel();
    }

    Data * data_ = nullptr;
};

// Bytes as they are.
VEL_EXPORT std::ostream & operator<<(std::ostream & out, String const & string);

}  // namespace Vel

template <>
struct std::hash<Vel::String> {
    std::size_t operator()(Vel::String const & string) const noexcept { return string.hash(); }
};
