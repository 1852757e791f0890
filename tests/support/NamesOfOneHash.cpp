#include "tests/support/NamesOfOneHash.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace TestSupport {

// Found without knowledge of how the hash is computed but for this: bytes are folded, eight at a time at
// most, into a state of 32 bits. So two blocks that lead to one hash lead to one state, and whatever follows
// them leads to one hash again.
std::vector<Vel::Name> namesOfOneHash(unsigned blocks) {
    constexpr std::size_t kBlock = 8;
    constexpr unsigned kSeenBits = 18;
    struct Seen {
        std::uint32_t hash;
        std::uint32_t block;
        bool used = false;
    };
    std::mt19937 random(11);
    std::string text(blocks * kBlock, 'x');
    std::vector<std::array<std::string, 2>> pairs;
    for (std::size_t at = 0; at < text.size(); at += kBlock) {
        auto const put = [&](std::uint32_t block) {
            for (std::size_t i = 0; i < kBlock; ++i)
                text[at + i] = static_cast<char>('a' + (block >> 4 * i & 15U));
        };
        auto const textOf = [&](std::uint32_t block) {
            put(block);
            return text.substr(at, kBlock);
        };
        std::vector<Seen> seen(1U << kSeenBits);  // Of each group of hashes the last one.
        while (pairs.size() == at / kBlock) {
            auto const block = static_cast<std::uint32_t>(random());
            put(block);
            std::uint32_t const hash = Vel::String(text).hash();
            Seen & last = seen[hash >> (32 - kSeenBits)];
            if (last.used && last.hash == hash && last.block != block) {
                pairs.push_back({textOf(last.block), textOf(block)});
            }
            last = {hash, block, true};
        }
    }
    std::vector<Vel::Name> names;
    for (unsigned choice = 0; choice < 1U << blocks; ++choice) {
        std::string chosen;
        for (unsigned i = 0; i < blocks; ++i) chosen += pairs[i][choice >> i & 1U];
        names.emplace_back(chosen);
    }
    return names;
}

std::vector<Vel::Name> const & twentyThousandNamesOfOneHash() {
    static std::vector<Vel::Name> const descending = [] {
        std::vector<Vel::Name> names = namesOfOneHash(15);
        names.resize(20'000);
        std::sort(names.begin(), names.end(), [](Vel::Name const & a, Vel::Name const & b) { return b < a; });
        return names;
    }();
    return descending;
}

}  // namespace TestSupport
