// Hashes of numbers, for collections whose members are numbered: how they fill their buckets evenly.
//
// Networks number what they name: ports 1 to 64, every fourth port, hosts 000001 to 004096. Hashed like other
// texts, such names meet in buckets by chance: with as many buckets as members, every third lookup comes upon
// another member first. With these hashes nearly none does.
//
// A collection takes the low bits of a hash for the bucket (String.h).
#pragma once

#include <cstdint>

namespace Vel {

// For the number that tells the members of one group apart. All 2^k multiples of 2^j from a multiple of
// 2^(j+k) on differ in the low k bits of their hashes, whatever j and k are; others spread about as random
// ones do. The bits of the number are multiplied, modulo 2, by Pascal's triangle, as the generators of
// low-discrepancy point sets do (H. Faure, Acta Arithmetica 41, 1982). Every number has a hash of its own;
// the function is its own inverse.
constexpr std::uint32_t numberHash(std::uint32_t number) noexcept {
    number ^= number >> 1 & 0x55555555u;
    number ^= number >> 2 & 0x33333333u;
    number ^= number >> 4 & 0x0f0f0f0fu;
    number ^= number >> 8 & 0x00ff00ffu;
    return number ^ number >> 16;
}

// For the numbers of groups and of what these are in, whose reversed hashes these are: combined by exclusive
// or with that of a member they spread more evenly than at random for most distances between the numbers, and
// not much less evenly for the rest. The multipliers were searched for that. There are two, because the
// members of a group may be groups themselves.
constexpr std::uint32_t reversedGroupHash(std::uint32_t number) noexcept { return number * 0x8d8383f5u; }
constexpr std::uint32_t reversedOuterGroupHash(std::uint32_t number) noexcept { return number * 0xb2795275u; }

}  // namespace Vel
