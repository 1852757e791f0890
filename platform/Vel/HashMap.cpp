#include "platform/Vel/HashMap.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <new>
#include <utility>

namespace Vel {

HashMapGeneric::HashMapGeneric(unsigned initialSize) noexcept
    : initialBucketBits_(static_cast<std::uint8_t>(
          std::min<unsigned>(std::bit_width(initialSize ? initialSize - 1 : 0u), kMostInitialBucketBits))) {}

void HashMapGeneric::newMemberG(Ptr<HashMapMember> member, std::uint32_t hash,
                                KeyTable const & keys) noexcept {
    member->bucketHash_ = hash;
    if (size_ >= buckets()) [[unlikely]]
        bucketBitsIs(std::max<unsigned>(bucketBits_ + 1u, initialBucketBits_));
    Ptr<HashMapMember> * link = linkAtHash(hash);
    if (*link) {
        void const * const key = keys.key(*member);
        while (*link && keys.keyLessThan(**link, key)) link = nextLink(*link);
        member->bucketNext_ = std::move(*link);
    }
    *link = std::move(member);
    ++size_;
    ++modificationCount_;
}

void HashMapGeneric::emptyAllBuckets() noexcept {
    // A member's destructor may come back to this collection, so nothing is assumed between two members.
    while (size_ != 0) {
        for (std::uint32_t bucket = 0; bucket < buckets(); ++bucket) {
            while (bucket < buckets() && buckets_[bucket]) {
                Ptr<HashMapMember> const member = std::move(buckets_[bucket]);
                buckets_[bucket] = std::move(member->bucketNext_);
                --size_;
                ++modificationCount_;
            }
        }
    }
    if (buckets_ == &single_) return;
    delete[] std::exchange(buckets_, &single_);
    bucketBits_ = 0;
}

void HashMapGeneric::reserve(std::uint32_t members) noexcept {
    auto const bits = static_cast<unsigned>(std::bit_width(members ? members - 1 : 0u));
    if (bits > bucketBits_) bucketBitsIs(std::max<unsigned>(bits, initialBucketBits_));
}

// More buckets than there are now. Without the memory for them everything stays as it is.
void HashMapGeneric::bucketBitsIs(unsigned bits) noexcept {
    if (bits > kMostBucketBits) return;
    auto * const grown = new (std::nothrow) Ptr<HashMapMember>[std::size_t{1} << bits];
    if (!grown) return;
    // Buckets are split from the last member to the first by pushing at the front of a reversed chain, which
    // keeps the order of keys without remembering where each new bucket ends.
    for (std::uint32_t bucket = 0; bucket < buckets(); ++bucket) {
        Ptr<HashMapMember> reversed;
        while (buckets_[bucket]) {
            Ptr<HashMapMember> member = std::move(buckets_[bucket]);
            buckets_[bucket] = std::move(member->bucketNext_);
            member->bucketNext_ = std::move(reversed);
            reversed = std::move(member);
        }
        while (reversed) {
            Ptr<HashMapMember> member = std::move(reversed);
            reversed = std::move(member->bucketNext_);
            Ptr<HashMapMember> & target = grown[bucketOf(member->bucketHash_, bits)];
            member->bucketNext_ = std::move(target);
            target = std::move(member);
        }
    }
    if (buckets_ != &single_) delete[] buckets_;
    buckets_ = grown;
    bucketBits_ = static_cast<std::uint8_t>(bits);
    ++modificationCount_;
}

HashMapMember * HashMapGeneric::findNextG(HashMapMember const * member, unsigned bucketBits,
                                          KeyTable const & keys, std::uint32_t & bucket) const noexcept {
    assert(bucketBits <= bucketBits_);
    // Each bucket of the walk's order is this many neighbours now.
    std::uint32_t const split = std::uint32_t{1} << (bucketBits_ - bucketBits);
    void const * const key = member ? keys.key(*member) : nullptr;
    std::uint32_t const first = member ? bucketOf(member->bucketHash_, bucketBits) : 0;
    for (std::uint32_t b = first; b < std::uint32_t{1} << bucketBits; ++b) {
        HashMapMember * smallest = nullptr;
        for (std::uint32_t part = b * split; part < (b + 1) * split; ++part) {
            HashMapMember * candidate = buckets_[part].get();
            if (member && b == first) {
                while (candidate && (keys.keyLessThan(*candidate, key) || keys.keyEquals(*candidate, key))) {
                    candidate = candidate->bucketNext_.get();
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
    while (++bucket < buckets()) {
        if (buckets_[bucket]) return buckets_[bucket].get();
    }
    return nullptr;
}

HashMapMember * HashMapCursor::afterChange(HashMapMember const & current) noexcept {
    if (map_->modificationCount_ != modificationCount_) {
        modificationCount_ = map_->modificationCount_;
        // A collection that was emptied has given its buckets back; whatever it holds now was added since.
        bucketBits_ = std::min(bucketBits_, map_->bucketBits_);
    }
    return map_->findNextG(&current, bucketBits_, *keys_, bucket_);
}

}  // namespace Vel
