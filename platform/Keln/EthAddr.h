// An Ethernet address.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Vel/Export.h"
#include "platform/Vel/VelType.h"

namespace Keln {

// A 48-bit MAC address (EUI-48, IEEE Std 802), in canonical order: the octet with the individual/group bit is
// the first one, and that bit is its least significant.
class VEL_EXPORT EthAddr {
public:
    static Vel::VelType const _velType;

    // The zero address, which stands for "none".
    constexpr EthAddr() noexcept = default;
    constexpr EthAddr(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d, std::uint8_t e,
                      std::uint8_t f) noexcept
        : octets_{a, b, c, d, e, f} {}
    explicit constexpr EthAddr(std::array<std::uint8_t, 6> const & octets) noexcept : octets_(octets) {}

    // The address that `text` spells as six groups of two hexadecimal digits, in either case, with a colon
    // between groups ("02:00:5E:10:00:01"). Nothing for any other text.
    static std::optional<EthAddr> parse(std::string_view text) noexcept;

    constexpr std::array<std::uint8_t, 6> const & octets() const noexcept { return octets_; }
    constexpr bool isZero() const noexcept { return *this == EthAddr(); }
    // The 48 bits as a number, the first octet the most significant.
    constexpr std::uint64_t value() const noexcept {
        std::uint64_t value = 0;
        for (std::uint8_t const octet : octets_) value = value << 8 | octet;
        return value;
    }

    // The form that `parse` takes, in small letters: "02:00:5e:10:00:01". IEEE Std 802 puts hyphens between
    // the octets of the canonical form; network operating systems write colons, and mean the same order of
    // bits.
    std::string text() const;

    friend constexpr bool operator==(EthAddr const &, EthAddr const &) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(EthAddr const &, EthAddr const &) noexcept = default;

private:
    std::array<std::uint8_t, 6> octets_{};
};

// Writes `text()`, whatever number base or case the stream is set to.
VEL_EXPORT std::ostream & operator<<(std::ostream & out, EthAddr const & address);

}  // namespace Keln

template <>
struct std::hash<Keln::EthAddr> {
    std::size_t operator()(Keln::EthAddr const & address) const noexcept {
        return std::hash<std::uint64_t>()(address.value());
    }
};
