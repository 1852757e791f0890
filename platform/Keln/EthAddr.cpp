#include "platform/Keln/EthAddr.h"

#include <ostream>

#include "platform/Vel/GenericIf.h"

namespace Keln {

namespace {

constexpr std::size_t kGroup = 3;  // Two digits and a separator.
constexpr std::size_t kTextSize = 6 * kGroup - 1;

// The value of a hexadecimal digit; negative for any other character, whatever the locale.
constexpr int digit(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::optional<EthAddr> EthAddr::parse(std::string_view text) noexcept {
    if (text.size() != kTextSize) return std::nullopt;
    EthAddr address;
    for (std::size_t i = 0; i < address.octets_.size(); ++i) {
        int const high = digit(text[i * kGroup]);
        int const low = digit(text[i * kGroup + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        if (i != 0 && text[i * kGroup - 1] != ':') return std::nullopt;
        address.octets_[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return address;
}

std::string EthAddr::text() const {
    constexpr char const * kDigits = "0123456789abcdef";
    std::string text(kTextSize, ':');
    for (std::size_t i = 0; i < octets_.size(); ++i) {
        text[i * kGroup] = kDigits[octets_[i] >> 4];
        text[i * kGroup + 1] = kDigits[octets_[i] & 0xf];
    }
    return text;
}

std::ostream & operator<<(std::ostream & out, EthAddr const & address) { return out << address.text(); }

constinit Vel::VelType const EthAddr::_velType{{
    .name = "Keln::EthAddr",
    .fromStrRep = [](Vel::VelType const &, std::string_view text) -> Vel::GenericIf {
        if (auto const address = EthAddr::parse(text)) return Vel::GenericIf::wrap(*address);
        throw Vel::RangeException("expected an Ethernet address such as 02:00:5e:10:00:01, found \"" +
                                  std::string(text) + '"');
    },
    .kind = Vel::VelType::Kind::value,
    .toStrRep = [](Vel::GenericIf const & value) { return value.as<EthAddr>().text(); },
}};

namespace {

Vel::TypeRegistration const registration(EthAddr::_velType);

}  // namespace

}  // namespace Keln
