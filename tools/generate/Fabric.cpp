#include "tools/generate/Fabric.h"

namespace TopologyTools {
namespace {

// Every bit of the argument reaches every bit of the result.
std::uint64_t mixed(std::uint64_t bits) {
    bits = (bits ^ (bits >> 32)) * 0xd6e8feb86659fd93u;
    bits = (bits ^ (bits >> 32)) * 0xd6e8feb86659fd93u;
    return bits ^ (bits >> 32);
}

}  // namespace

std::optional<std::uint64_t> Fabric::otherLeaf(std::uint64_t leaf) const {
    std::uint64_t const other = leaf ^ 1;
    if (other >= leaves()) return std::nullopt;
    return other;
}

Fabric::PortIndex Fabric::spineEnd(PortIndex leafPort) const {
    std::uint64_t const cable = leafPort.host * uplinks() + leafPort.port;
    std::uint64_t const round = cable / spines();
    std::uint64_t const spine = (cable + chance('r', round)) % spines();
    return {spine, (round + chance('s', spine)) % ports()};
}

std::optional<Fabric::PortIndex> Fabric::leafEnd(PortIndex spinePort) const {
    std::uint64_t const round = (spinePort.port + ports() - chance('s', spinePort.host) % ports()) % ports();
    std::uint64_t const place = (spinePort.host + spines() - chance('r', round) % spines()) % spines();
    std::uint64_t const cable = round * spines() + place;
    if (cable >= leaves() * uplinks()) return std::nullopt;
    return PortIndex{cable / uplinks(), cable % uplinks()};
}

std::uint64_t Fabric::chance(char purpose, std::uint64_t index) const {
    // 32 bits, so that adding to it does not overflow.
    return mixed(mixed(numbers_.seed + static_cast<unsigned char>(purpose)) + index) >> 32;
}

}  // namespace TopologyTools
