// How well hashes spread over buckets.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TestSupport {

// How many members a lookup that finds one looks at on average, with the least power of two of buckets that
// has one for each. The top bits of a hash choose the bucket. Of random hashes: 1.25 to 1.5.
inline double probes(std::vector<std::uint32_t> const & hashes) {
    auto const bits = static_cast<unsigned>(std::bit_width(hashes.size() - 1));
    std::vector<unsigned> buckets(std::size_t{1} << bits);
    double sum = 0;
    for (std::uint32_t const hash : hashes) sum += ++buckets[std::uint64_t{hash} >> (32 - bits)];
    return sum / static_cast<double>(hashes.size());
}

}  // namespace TestSupport
