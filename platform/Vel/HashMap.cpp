#include "platform/Vel/HashMap.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <memory>
#include <new>
#include <utility>

#include "platform/Vel/SlabPool.h"

namespace Vel {

namespace {

using Link = HashMapMember *;

// Small arrays lie with the objects; large ones are huge pages.

constexpr std::size_t storageSize(unsigned bits) noexcept {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): of the pointers themselves.
    return sizeof(Link) << bits;
}

// Null without the memory for it.
Link * newLinks(unsigned bits) noexcept {
    try {
        auto * const links = static_cast<Link *>(SlabPool::cell(storageSize(bits)));
        std::uninitialized_value_construct_n(links, std::size_t{1} << bits);
        return links;
    } catch (std::bad_alloc const &) {
        return nullptr;
    }
}

void linksDel(Link * links, unsigned bits) noexcept { SlabPool::cellDel(links, storageSize(bits)); }

}  // namespace

HashMapGeneric::HashMapGeneric(unsigned initialSize) noexcept
    : single_(),
      state_(kHashBits + kInitialBits * std::min<unsigned>(std::bit_width(initialSize ? initialSize - 1 : 0u),
                                                           kMostInitialBucketBits)) {}

void HashMapGeneric::emptyArray() noexcept {
    emptyBuckets([](std::span<Link const>) {});
    unsigned const bits = bucketBits();
    if (bits == 0) return;
    linksDel(buckets_, bits);
    state_ += bits;
    single_ = nullptr;
}

void HashMapGeneric::bucketsIs(std::uint64_t buckets) noexcept {
    auto const bits = static_cast<unsigned>(std::bit_width(buckets ? buckets - 1 : 0u));
    if (bits > bucketBits()) bucketBitsIs(std::max(bits, initialBucketBits()));
}

// More buckets than there are now. Without the memory for them everything stays as it is.
void HashMapGeneric::bucketBitsIs(unsigned bits) noexcept {
    if (bits > kMostBucketBits) return;
    Link * const grown = newLinks(bits);
    if (!grown) return;
    // Buckets are split from the last member to the first by pushing at the front of a reversed chain, which
    // keeps the order of keys without remembering where each new bucket ends.
    unsigned const before = bucketBits();
    Link * const links = buckets();
    for (Link * bucket = links; bucket != links + (std::size_t{1} << before); ++bucket) {
        HashMapMember * reversed = nullptr;
        for (HashMapMember * member = *bucket; member;) {
            HashMapMember * const next = std::exchange(member->bucketNext_, reversed);
            reversed = std::exchange(member, next);
        }
        while (reversed) {
            Link & target = grown[bucketOf(reversed->bucketHash_, bits)];
            HashMapMember * const next = std::exchange(reversed->bucketNext_, target);
            target = std::exchange(reversed, next);
        }
    }
    if (before != 0) linksDel(links, before);
    buckets_ = grown;
    state_ -= bits - before;
    state_ += kModification;
}

HashMapMember * HashMapGeneric::findNextG(HashMapMember const * member, unsigned bucketBits,
                                          KeyTable const & keys, std::uint32_t & bucket) const noexcept {
    assert(bucketBits <= this->bucketBits());
    // Each bucket of the walk's order is this many neighbours now.
    std::uint32_t const split = std::uint32_t{1} << (this->bucketBits() - bucketBits);
    void const * const key = member ? keys.key(*member) : nullptr;
    std::uint32_t const first = member ? bucketOf(member->bucketHash_, bucketBits) : 0;
    for (std::uint32_t b = first; b < std::uint32_t{1} << bucketBits; ++b) {
        HashMapMember * smallest = nullptr;
        for (std::uint32_t part = b * split; part < (b + 1) * split; ++part) {
            HashMapMember * candidate = buckets()[part];
            if (member && b == first) {
                while (candidate && (keys.keyLessThan(*candidate, key) || keys.keyEquals(*candidate, key))) {
                    candidate = candidate->bucketNext_;
                }
            }
            if (candidate && (!smallest || keys.keyLessThan(*candidate, keys.key(*smallest)))) {
                smallest = candidate;
            }
        }
        if (smallest) {
            bucket = b;
            return smallest;
        }
    }
    return nullptr;
}

HashMapMember * HashMapGeneric::findNextBucket(std::uint32_t & bucket) const noexcept {
    Link const * const links = buckets();
    std::uint32_t const count = bucketCount();
    std::uint32_t next = bucket + 1;
    while (next < count && !links[next]) ++next;
    bucket = next;
    return next < count ? links[next] : nullptr;
}

HashMapMember * HashMapCursor::afterChange(HashMapMember const & current) noexcept {
    unsigned const bits = map_->bucketBits();
    // A collection that was emptied has given its buckets back; whatever it holds now was added since.
    if (bits < bucketBits()) last_ = map_->bucketCount() - 1;
    if (bits == bucketBits()) state_ = map_->state_;
    return map_->findNextG(&current, bucketBits(), *keys_, bucket_);
}

}  // namespace Vel
