// Collections whose keys take long to hash and to compare.
#include "platform/Vel/HashMap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Vel/Members.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

// Counts how often it is hashed, and how often two are put in order.
struct ElaborateKey {
    static constexpr bool kHashesLate = true;
    static constexpr bool kOrdersByHash = true;

    std::uint32_t chosenHash = 0;
    std::uint32_t rank = 0;
    int copy = 0;  // Equal keys may be different copies.

    static inline int hashed = 0;
    static inline int ordered = 0;

    std::uint32_t hash() const noexcept {
        ++hashed;
        return chosenHash;
    }
    bool isSame(ElaborateKey const & other) const noexcept { return *this == other && copy == other.copy; }
    friend bool operator==(ElaborateKey const & a, ElaborateKey const & b) noexcept {
        return a.chosenHash == b.chosenHash && a.rank == b.rank;
    }
    // Against the order of the hashes.
    friend bool operator<(ElaborateKey const & a, ElaborateKey const & b) noexcept {
        ++ordered;
        return std::pair(a.rank, ~a.chosenHash) < std::pair(b.rank, ~b.chosenHash);
    }
};

using ElaborateCollection = Collection<ElaborateKey>;

// By hash, which is by bucket, too, whatever the number of buckets; then by key.
bool standsBefore(ElaborateKey const & a, ElaborateKey const & b) {
    return std::pair(a.chosenHash, a.rank) < std::pair(b.chosenHash, b.rank);
}

std::vector<ElaborateKey> keysOf(ElaborateCollection const & collection) {
    std::vector<ElaborateKey> keys;
    for (auto i = collection.iterator(); i; ++i) keys.push_back((*i)->collectionKey());
    return keys;
}

// Many of one bucket, and some of one hash.
ElaborateKey randomKey(std::mt19937 & random) {
    auto const below = [&random](std::uint32_t limit) {
        return static_cast<std::uint32_t>(random() % limit);
    };
    return {.chosenHash = below(4) << 30 | below(8), .rank = below(4)};
}

// No two of them equal.
std::vector<ElaborateKey> randomKeys(std::mt19937 & random, std::size_t count) {
    std::vector<ElaborateKey> keys;
    while (keys.size() < count) {
        ElaborateKey const key = randomKey(random);
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(key);
    }
    return keys;
}

TEST(HashMapElaborateKey, IsNotHashedForTheOnlyMember) {
    ElaborateCollection collection;
    ElaborateKey const key{.chosenHash = 7, .rank = 1};
    auto const member = collection.add(key);
    ElaborateKey::hashed = 0;
    EXPECT_EQ(collection[key], member.get());
    EXPECT_EQ(collection[(ElaborateKey{.chosenHash = 7, .rank = 1, .copy = 1})], member.get());
    EXPECT_EQ(collection[(ElaborateKey{.chosenHash = 7, .rank = 2})], nullptr);
    EXPECT_EQ(collection.deleteMember(ElaborateKey{.chosenHash = 8, .rank = 1}), nullptr);
    EXPECT_EQ(collection.deleteMember(ElaborateKey{.chosenHash = 7, .rank = 1, .copy = 1}), member);
    EXPECT_EQ(ElaborateKey::hashed, 0);
    EXPECT_EQ(collection.size(), 0U);
}

TEST(HashMapElaborateKey, IsHashedForOneOfSeveralMembers) {
    ElaborateCollection collection;
    auto const first = collection.add({.chosenHash = 7});
    auto const second = collection.add({.chosenHash = ~7U});
    ElaborateKey::hashed = 0;
    EXPECT_EQ(collection[ElaborateKey{.chosenHash = 7}], first.get());
    EXPECT_EQ(collection[(ElaborateKey{.chosenHash = ~7U, .copy = 1})], second.get());
    EXPECT_EQ(collection[ElaborateKey{.chosenHash = 8}], nullptr);
    EXPECT_EQ(ElaborateKey::hashed, 3);
    EXPECT_EQ(collection.deleteMember(ElaborateKey{.chosenHash = 7}), first);
    EXPECT_EQ(collection.deleteMember(ElaborateKey{.chosenHash = 7}), nullptr);
    EXPECT_EQ(collection[ElaborateKey{.chosenHash = ~7U}], second.get());
}

TEST(HashMapElaborateKey, IsFoundAtAPlaceOfAnyKind) {
    ElaborateCollection collection;
    for (std::uint32_t i = 0; i < 40; ++i) {
        ElaborateKey const key{.chosenHash = (i % 5 + 1) << 29, .rank = i};
        ElaborateCollection::Place const place(collection, key);
        ASSERT_EQ(collection.find(place, key), nullptr);
        collection.newMember(place, new Member(key));
        ElaborateKey const equal{.chosenHash = key.chosenHash, .rank = i, .copy = 1};
        ElaborateCollection::Place const filled(collection, equal);
        ASSERT_TRUE(collection.find(filled, equal));
        ASSERT_EQ(collection.find(filled, equal), collection[key]);
    }
}

TEST(HashMapElaborateKey, StandsInTheOrderOfTheHashes) {
    std::mt19937 random(5);
    ElaborateCollection collection;
    std::vector<ElaborateKey> expected;
    for (ElaborateKey const & key : randomKeys(random, 100)) {
        collection.add(key);
        expected.insert(std::upper_bound(expected.begin(), expected.end(), key, standsBefore), key);
        ASSERT_EQ(keysOf(collection), expected);
    }
}

TEST(HashMapElaborateKey, IsNotComparedWithThoseOfOtherHashes) {
    ElaborateCollection collection;
    ElaborateKey::ordered = 0;
    for (std::uint32_t i = 0; i < 100; ++i) collection.add({.chosenHash = i * 37 % 101, .rank = i});
    EXPECT_EQ(ElaborateKey::ordered, 0);
    EXPECT_EQ(keysOf(collection).size(), 100U);
}

TEST(HashMapElaborateKey, StandsInTheSameOrderWithoutMemoryForBuckets) {
    std::mt19937 random(6);
    ElaborateCollection collection;
    std::vector<ElaborateKey> expected = randomKeys(random, 50);
    std::vector<Vel::Ptr<ElaborateCollection::Item>> members;
    for (ElaborateKey const & key : expected) members.push_back(new ElaborateCollection::Item(key));
    {
        TestSupport::FailingAllocations const failing;
        for (auto const & member : members) collection.newMember(member);
    }
    ASSERT_EQ(collection.bucketBits(), 0U);
    for (auto const & member : members) EXPECT_EQ(collection[member->collectionKey()], member.get());
    std::sort(expected.begin(), expected.end(), standsBefore);
    EXPECT_EQ(keysOf(collection), expected);
}

TEST(HashMapElaborateKey, IsMetOnceByAWalkWhileOthersComeAndGo) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        ElaborateCollection collection;
        std::vector<ElaborateKey> stable = randomKeys(random, 12);
        for (ElaborateKey const & key : stable) collection.add(key);
        std::map<std::pair<std::uint32_t, std::uint32_t>, int> met;
        for (auto i = collection.iterator(); i; ++i) {
            ElaborateKey const inHand = (*i)->collectionKey();
            ++met[{inHand.chosenHash, inHand.rank}];
            for (unsigned n = random() % 4; n > 0; --n) {
                ElaborateKey const key = randomKey(random);
                if (std::find(stable.begin(), stable.end(), key) != stable.end()) continue;
                if (!collection.deleteMember(key)) collection.add(key);
            }
            // One that the walk has met may go while it stands there.
            auto const found = std::find(stable.begin(), stable.end(), inHand);
            if (found != stable.end() && random() % 3 == 0) {
                collection.deleteMember(inHand);
                ASSERT_EQ(met[std::pair(inHand.chosenHash, inHand.rank)], 1);
                stable.erase(found);
            }
        }
        for (ElaborateKey const & key : stable) {
            ASSERT_EQ(met[std::pair(key.chosenHash, key.rank)], 1) << key.chosenHash << '/' << key.rank;
        }
    }
}

}  // namespace
}  // namespace VelTest
