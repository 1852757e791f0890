// The topology of the benchmarks, as numbers and texts: a fabric of leaf and spine switches. It knows no
// model.
//
// The first half of the hosts are leaves, the others spines. Each host has 64 ports, 16 port groups and 8
// MLAGs:
//     ports       port-1 to port-64; 33 to 64 are members, two to a group
//     groups      group-1 to group-16, each a logical port; group-16 is the MLAG peer link
//     MLAGs       mlag-1 to mlag-8, each raw, too, and on the group of its number
// Each port of a leaf is linked to the port of the same number of one spine. Which spine is drawn per port
// number, from a fixed seed, so that a fabric of one size is always the same.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace Bench {

class Fabric {
public:
    static constexpr unsigned kPorts = 64;
    static constexpr unsigned kGroups = 16;
    static constexpr unsigned kMlags = 8;
    static constexpr unsigned kMembersPerGroup = 2;
    static constexpr unsigned kFirstMember = kPorts - kGroups * kMembersPerGroup;
    static constexpr unsigned kPeerLinkGroup = kGroups - 1;

    struct Port {
        std::uint32_t host;
        std::uint32_t number;  // From 0, as are all numbers here; names count from 1.
    };

    // Of whose targets a benchmark will visit so many at most. REQUIRES: `hosts` is even and not 0.
    explicit Fabric(unsigned hosts, unsigned mostVisited = std::numeric_limits<unsigned>::max());

    unsigned hosts() const noexcept { return hosts_; }
    unsigned ports() const noexcept { return hosts_ * kPorts; }
    // All ports of all hosts have an index, host by host.
    Port port(unsigned index) const noexcept { return {index / kPorts, index % kPorts}; }
    unsigned index(Port port) const noexcept { return port.host * kPorts + port.number; }
    // The port at the other end of a port's link.
    Port otherEnd(Port port) const noexcept;

    // The group of which a port is a member.
    static std::optional<unsigned> groupOf(unsigned port) noexcept;

    static std::string hostName(unsigned host);
    static std::string portName(unsigned port);
    static std::string groupName(unsigned group);
    static std::string mlagName(unsigned mlag);
    static std::string secondaryMlagName(unsigned mlag);
    static std::string hostname(unsigned host);
    static std::string otherHostname(unsigned host);
    // Two hosts share an MLAG domain.
    static std::string mlagDomainId(unsigned host);
    static std::uint64_t mlagSystemId(unsigned host);

    // 0 to n - 1 in the order in which a benchmark visits its n targets: shuffled, always in the same way; as
    // many of them as are visited.
    std::vector<std::uint32_t> visitingOrder(unsigned n) const;

private:
    unsigned hosts_;
    unsigned mostVisited_;
    std::array<unsigned, kPorts> spineOfFirstLeaf_;
};

}  // namespace Bench
