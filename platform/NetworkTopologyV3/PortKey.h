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

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/ReferenceCount.h"
#include "platform/Vel/String.h"
#include "platform/Vel/VelType.h"

namespace NetworkTopologyV3 {

// A key is one pointer to counted data, which a port base and the edges that begin or end there share.
class VEL_EXPORT PortKey {
public:
    static Vel::VelType const _velType;

    // The kinds of port bases, as keys and documents spell them.
    static constexpr std::string_view kPort = "port";
    static constexpr std::string_view kPortGroup = "portGroup";
    static constexpr std::string_view kMlag = "mlag";

    // The empty key, which no port base has.
    PortKey() noexcept = default;
    // The key of a port base; `kind` is one of the three above. Throws std::bad_alloc.
    PortKey(Vel::String const & host, std::string_view kind, Vel::Name const & name);
    // `member` is what `memberOf` makes, or any other text. Throws std::bad_alloc.
    PortKey(Vel::String const & host, Vel::String const & member);

    // The second string of a key: the kind, a slash, and the name as it is ("portGroup/bond-1").
    static Vel::String memberOf(std::string_view kind, Vel::Name const & name);

    // The host's name.
    Vel::String host() const noexcept { return data_ ? data_->host : Vel::String(); }
    // Unique over the ports, port groups and MLAG ports of the host together. Throws std::bad_alloc.
    Vel::String member() const;
    bool empty() const noexcept { return !data_; }

    // A JSON Pointer (RFC 6901) to the port base, wherever it stands in a document or if it has left:
    // `/host/leaf-1/port/eth-1`. In both names `~` is written `~0` and `/` is written `~1`. The empty key
    // gives the empty string.
    std::string jsonPointer() const;
    // The key whose JSON Pointer that is; nothing for any other text, the empty one included.
    static std::optional<PortKey> fromJsonPointer(std::string_view pointer);

    // For collections: the hash lies in what copies of a key share, where a comparison of two copies does not
    // look, and the bytes of the texts lie elsewhere again.
    static constexpr bool kHashesLate = true;
    static constexpr bool kOrdersByHash = true;
    // 0 for the empty key.
    std::uint32_t hash() const noexcept {
        if (!data_) [[unlikely]]
            return 0;
        return data_->hash;
    }

    // Whether both are copies of one key, which equal keys need not be.
    bool isSame(PortKey const & other) const noexcept { return data_ == other.data_; }

    friend bool operator==(PortKey const & a, PortKey const & b) noexcept {
        if (a.isSame(b)) [[likely]]
            return true;
        return equalData(a, b);
    }
    // By host, then by member; bytes, unsigned, lexicographically.
    friend VEL_EXPORT std::strong_ordering operator<=>(PortKey const & a, PortKey const & b) noexcept;
    friend bool operator<(PortKey const & a, PortKey const & b) noexcept { return (a <=> b) < 0; }

private:
    enum class Kind : std::uint8_t { none, port, portGroup, mlag };

    // Equal keys have equal data: a member that begins with a kind is always taken apart. There is one for
    // each port base that an edge begins or ends at, so it is no framework object, which would be larger.
    class Data final : public Vel::AllocTracked<Data> {
    public:
        Data(Vel::String const & host, Kind kind, Vel::Name const & name) noexcept;

        Vel::String const host;
        Vel::Name const
            name;  // What follows the kind and the slash; the whole member where there is no kind.
        // The kind in the two bits that say least of the bucket.
        std::uint32_t const hash;

        Kind kind() const noexcept { return static_cast<Kind>(hash & 3); }

        void referenceNew() const noexcept { references_.referenceNew(); }
        void referenceDel() const noexcept {
            if (references_.referenceDel()) [[unlikely]]
                delete this;
        }

    private:
        mutable Vel::ReferenceCount references_{0};
    };

    friend class PortBase;
    PortKey(Vel::String const & host, Kind kind, Vel::Name const & name)
        : data_(new Data(host, kind, name)) {}

    static std::string_view textOf(Kind kind) noexcept;
    static std::uint32_t hashOf(Vel::String const & host, Kind kind, Vel::Name const & name) noexcept;
    static bool equalData(PortKey const & a, PortKey const & b) noexcept;

    Vel::Ptr<Data const> data_;
};

// Writes `jsonPointer()`.
VEL_EXPORT std::ostream & operator<<(std::ostream & out, PortKey const & key);

}  // namespace NetworkTopologyV3

template <>
struct std::hash<NetworkTopologyV3::PortKey> {
    std::size_t operator()(NetworkTopologyV3::PortKey const & key) const noexcept { return key.hash(); }
};
