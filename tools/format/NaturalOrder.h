#pragma once

#include <compare>
#include <string_view>

namespace TopologyTools {

// The order in which people list names: runs of digits count as numbers, so that eth-2 comes before eth-10;
// everything else goes by bytes. Numbers may have any length. Two names are equal only when their bytes are:
// of 7 and 07 the shorter one comes first, once all else is equal.
std::strong_ordering naturalOrder(std::string_view a, std::string_view b);

// For containers and algorithms.
struct NaturalLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return naturalOrder(a, b) < 0; }
};

}  // namespace TopologyTools
