// The key of a port base within the whole topology.
//
// Edges start and end at keys, not at objects: an edge may be there before its port and stay after it. Two
// keys are equal exactly when the port bases have the same kind and name in hosts of the same name; a port, a
// port group and an MLAG port of one name have three different keys.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/String.h"
#include "platform/Vel/VelType.h"

namespace NetworkTopologyV3 {

class VEL_EXPORT PortKey {
public:
    static Vel::VelType const _velType;

    // The kinds of port bases, as keys and documents spell them.
    static constexpr std::string_view kPort = "port";
    static constexpr std::string_view kPortGroup = "portGroup";
    static constexpr std::string_view kMlag = "mlag";

    // The empty key, which no port base has.
    PortKey() noexcept = default;
    // `member` is what `memberOf` makes.
    PortKey(Vel::String host, Vel::String member) noexcept
        : host_(std::move(host)), member_(std::move(member)) {}

    // The second string of a key: the kind, a slash, and the name as it is ("portGroup/bond-1").
    static Vel::String memberOf(std::string_view kind, Vel::Name const & name);

    // The host's name.
    Vel::String const & host() const noexcept { return host_; }
    // Unique over the ports, port groups and MLAG ports of the host together.
    Vel::String const & member() const noexcept { return member_; }
    bool empty() const noexcept { return host_.empty() && member_.empty(); }

    // A JSON Pointer (RFC 6901) to the port base, wherever it stands in a document or if it has left:
    // `/host/leaf-1/port/eth-1`. In both names `~` is written `~0` and `/` is written `~1`. The empty key
    // gives the empty string.
    std::string jsonPointer() const;
    // The key whose JSON Pointer that is; nothing for any other text, the empty one included.
    static std::optional<PortKey> fromJsonPointer(std::string_view pointer);

    // 0 for the empty key.
    std::uint32_t hash() const noexcept;

    friend bool operator==(PortKey const &, PortKey const &) noexcept = default;
    // By host, then by member; bytes, unsigned, lexicographically.
    friend std::strong_ordering operator<=>(PortKey const &, PortKey const &) noexcept = default;

private:
    Vel::String host_;
    Vel::String member_;
};

// Writes `jsonPointer()`.
VEL_EXPORT std::ostream & operator<<(std::ostream & out, PortKey const & key);

}  // namespace NetworkTopologyV3

template <>
struct std::hash<NetworkTopologyV3::PortKey> {
    std::size_t operator()(NetworkTopologyV3::PortKey const & key) const noexcept { return key.hash(); }
};
