#include "tests/support/NamesOfOneHash.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>

namespace TestSupport {

// Found without knowledge of how the hash is computed but for this: bytes are folded, eight at a time at
// most, into a state of 32 bits. So two blocks that lead to one hash lead to one state, and whatever follows
// them leads to one hash again.
std::vector<Vel::Name> namesOfOneHash(unsigned blocks) {
    constexpr std::size_t kBlock = 8;
    std::mt19937_64 random(11);
    std::string text(blocks * kBlock, 'x');
    std::vector<std::array<std::string, 2>> pairs;
    for (std::size_t at = 0; at < text.size(); at += kBlock) {
        std::unordered_map<std::uint32_t, std::uint64_t> seen;
        seen.reserve(1U << 18);
        auto const put = [&](std::uint64_t block) {
            for (std::size_t i = 0; i < kBlock; ++i)
                text[at + i] = static_cast<char>('a' + (block >> 4 * i & 15U));
            return text.substr(at, kBlock);
        };
        for (;;) {
            std::uint64_t const block = random() & 0xffffffffU;
            put(block);
            auto const [found, isNew] = seen.emplace(Vel::String(text).hash(), block);
            if (!isNew && found->second != block) {
                pairs.push_back({put(found->second), put(block)});
                break;
            }
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

}  // namespace TestSupport
