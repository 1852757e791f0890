// The plan of a made-up leaf-spine fabric: how many hosts there are of which kind, and which port is cabled
// to which. Nothing is stored; every answer is computed from the three numbers that a fabric is made of, so a
// fabric of any size takes no memory, and both ends of a cable agree.
//
// Hosts
//     One spine for every four leaves. Leaves stand in pairs, two to a rack; the last one may be alone.
// Ports of a leaf
//     First the uplinks, a quarter of all; then those of the servers; the last two lead to the other leaf of
//     the pair.
// Cables
//     The uplinks of all leaves, leaf by leaf, are dealt out to the spines in rounds, one to each. In every
//     round the seed tells which spine comes first; for every spine it tells which of its ports the first
//     round takes.
#pragma once

#include <cstdint>
#include <optional>

namespace TopologyTools {

struct FabricNumbers {
    std::uint64_t hosts = 2;
    std::uint64_t portsPerHost = 8;
    std::uint64_t seed = 0;
};

class Fabric {
public:
    static constexpr std::uint64_t fewestHosts = 2;
    static constexpr std::uint64_t mostHosts = 100000;
    static constexpr std::uint64_t fewestPorts = 4;
    static constexpr std::uint64_t mostPorts = 1024;

    // Of the leaves or of the spines, and of the ports of one host, all from 0.
    struct PortIndex {
        std::uint64_t host;
        std::uint64_t port;
    };

    // REQUIRES: the numbers of hosts and ports are within the bounds above.
    explicit Fabric(FabricNumbers const & numbers) : numbers_(numbers) {}

    std::uint64_t ports() const { return numbers_.portsPerHost; }
    std::uint64_t spines() const { return (numbers_.hosts + 4) / 5; }
    std::uint64_t leaves() const { return numbers_.hosts - spines(); }
    std::uint64_t uplinks() const { return ports() / 4; }
    std::uint64_t serverPorts() const { return ports() - uplinks() - 2; }

    // The other leaf of the pair; nothing for one that is alone.
    std::optional<std::uint64_t> otherLeaf(std::uint64_t leaf) const;
    // Where the cable of an uplink ends. REQUIRES: it is an uplink.
    PortIndex spineEnd(PortIndex leafPort) const;
    // The reverse; nothing for a port of a spine without a cable.
    std::optional<PortIndex> leafEnd(PortIndex spinePort) const;

    // A number for `index` that only the seed, and what it is for, tell.
    std::uint64_t chance(char purpose, std::uint64_t index) const;

private:
    FabricNumbers numbers_;
};

}  // namespace TopologyTools
