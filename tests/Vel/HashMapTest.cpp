#include "platform/Vel/HashMap.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Vel/Members.h"
#include "tests/support/Allocations.h"
#include "tests/support/NamesOfOneHash.h"
#include "tests/support/SmallStack.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

template <class Key>
std::vector<Key> walked(Collection<Key> const & collection) {
    std::vector<Key> keys;
    for (auto i = collection.iterator(); i; ++i) keys.push_back((*i)->collectionKey());
    return keys;
}

TEST(HashMapBucket, IsTheTopBitsOfTheHash) {
    using Vel::HashMapGeneric;
    for (std::uint32_t const hash : {0U, 1U, 0x80000000U, 0xdeadbeefU, 0xffffffffU}) {
        EXPECT_EQ(HashMapGeneric::bucketOf(hash, 0), 0U);
        for (unsigned bits = 1; bits < 32; ++bits)
            EXPECT_EQ(HashMapGeneric::bucketOf(hash, bits), hash >> (32 - bits));
    }
}

TEST(HashMapKey, OfANameIsTheReversedHashOfItsString) {
    for (char const * text : {"a", "eth-1", "leaf-1.example.net"}) {
        EXPECT_EQ(Vel::HashMapKey<Name>::hash(Name(text)), Vel::bitReverse(Name(text).data()->hash()));
        EXPECT_EQ(Vel::HashMapKey<Vel::String>::hash(Vel::String(text)),
                  Vel::HashMapKey<Name>::hash(Name(text)));
    }
    EXPECT_EQ(Vel::HashMapKey<Name>::hash(Name()), 0U);
}

TEST(HashMapKey, OfAPointerIsTheHashOfItsValue) {
    using Key = Vel::HashMapKey<Ptr<NamedMember>>;
    Ptr<NamedMember> const a = new NamedMember(Name("same"));
    Ptr<NamedMember> const b = new NamedMember(Name("same"));
    EXPECT_EQ(Key::hash(a), Vel::VelHashBase<false>::hashU32(reinterpret_cast<std::uintptr_t>(a.get())));
    EXPECT_EQ(Key::hash(nullptr), 0U);
    EXPECT_TRUE(Key::equals(a, a));
    EXPECT_FALSE(Key::equals(a, b));
    EXPECT_FALSE(Key::equals(a, nullptr));
    EXPECT_EQ(Key::lessThan(a, b),
              reinterpret_cast<std::uintptr_t>(a.get()) < reinterpret_cast<std::uintptr_t>(b.get()));
    EXPECT_FALSE(Key::lessThan(a, a));
    EXPECT_TRUE(Key::lessThan(nullptr, a));
}

TEST(HashMapKey, OfAPointerSpreadsNeighboursOverTheTopBits) {
    constexpr unsigned kBits = 8;
    for (std::uintptr_t const stride : {8U, 16U, 64U, 192U, 4096U}) {
        std::vector<int> buckets(1U << kBits);
        for (std::uintptr_t i = 0; i < 1024; ++i) {
            std::uint32_t const hash = Vel::VelHashBase<false>::hashU32(0x7f0012345000U + i * stride);
            ++buckets[hash >> (32 - kBits)];
        }
        EXPECT_LE(*std::max_element(buckets.begin(), buckets.end()), 20) << "stride " << stride;
    }
}

TEST(HashMapKey, OfAnIntegerIsReversedOnRequest) {
    for (std::uintptr_t const value : {std::uintptr_t{1}, std::uintptr_t{0x12345678}, ~std::uintptr_t{0}}) {
        EXPECT_EQ(Vel::VelHashBase<true>::hashU32(value),
                  Vel::bitReverse(Vel::VelHashBase<false>::hashU32(value)));
    }
}

TEST(HashMap, FindsNothingWhenEmpty) {
    for (unsigned const hint : {0U, 1U, 3U, 0xffffffffU}) {
        NamedCollection collection(hint);
        EXPECT_EQ(collection.size(), 0U);
        EXPECT_EQ(collection[Name("a")], nullptr);
        EXPECT_EQ(collection[Name()], nullptr);
        EXPECT_EQ(collection.deleteMember(Name("a")), nullptr);
        EXPECT_FALSE(collection.iterator());
        EXPECT_FALSE(collection.iteratorAt(Name("a")));
        collection.emptyAllBuckets();
        EXPECT_EQ(collection.size(), 0U);
    }
}

class HashMapOfInitialSize : public testing::TestWithParam<unsigned> {};

TEST_P(HashMapOfInitialSize, HoldsWhateverEntersAndLeaves) {
    NamedCollection collection(GetParam());
    for (int i = 0; i < 300; ++i) {
        Ptr<NamedMember> const member = collection.add(name(i));
        EXPECT_EQ(collection.size(), static_cast<unsigned>(i + 1));
        EXPECT_EQ(collection[name(i)], member.get());
        EXPECT_EQ(collection[name(i + 1)], nullptr);
        for (int j = 0; j <= i; ++j) ASSERT_TRUE(collection[name(j)]) << j << " of " << i;
    }
    for (int i = 0; i < 300; i += 2) EXPECT_EQ(collection.deleteMember(name(i))->collectionKey(), name(i));
    EXPECT_EQ(collection.size(), 150U);
    EXPECT_EQ(liveMembers<Name>(), 150U);
    for (int i = 0; i < 300; ++i) EXPECT_EQ(collection[name(i)] != nullptr, i % 2 == 1) << i;
    EXPECT_EQ(collection.deleteMember(name(0)), nullptr);
}

TEST_P(HashMapOfInitialSize, TakesTheEmptyName) {
    NamedCollection collection(GetParam());
    for (int i = 0; i < 10; ++i) collection.add(name(i));
    Ptr<NamedMember> const nameless = collection.add(Name());
    EXPECT_EQ(collection[Name()], nameless.get());
    EXPECT_EQ(collection.startAtHash(0), nameless.get()) << "the first of the first bucket";
    EXPECT_EQ(collection.deleteMember(Name()), nameless);
    EXPECT_EQ(collection[Name()], nullptr);
}

INSTANTIATE_TEST_SUITE_P(, HashMapOfInitialSize, testing::Values(0U, 1U, 2U, 3U, 64U, 1000U, 0xffffffffU),
                         testing::PrintToStringParamName());

TEST(HashMap, LooksUpWithoutInserting) {
    NamedCollection collection;
    collection.add(Name("a"));
    collection.add(Name("b"));
    std::uint32_t const modifications = collection.modificationCount();
    for (int i = 0; i < 100; ++i) EXPECT_EQ(collection[name(i)], nullptr);
    EXPECT_EQ(collection.deleteMember(Name("c")), nullptr);
    EXPECT_EQ(collection.size(), 2U);
    EXPECT_EQ(collection.modificationCount(), modifications);
    EXPECT_EQ(walked(collection).size(), 2U);
}

TEST(HashMap, CountsEveryModification) {
    NamedCollection collection;
    std::uint32_t last = collection.modificationCount();
    auto const changed = [&] { return std::exchange(last, collection.modificationCount()) != last; };
    for (int i = 0; i < 10; ++i) {
        collection.add(name(i));
        EXPECT_TRUE(changed());
    }
    collection.deleteMember(name(3));
    EXPECT_TRUE(changed());
    collection.emptyAllBuckets();
    EXPECT_TRUE(changed());
}

TEST(HashMap, NeedsNoBucketArrayForOneMember) {
    Ptr<NamedMember> const first = new NamedMember(Name("a"));
    Ptr<NamedMember> const second = new NamedMember(Name("b"));
    NamedCollection collection(1000);
    TestSupport::AllocationCount const count;
    collection.newMember(first);
    EXPECT_EQ(count.value(), 0U);
    EXPECT_EQ(collection.bucketBits(), 0U);
    collection.newMember(second);
    EXPECT_EQ(count.value(), 1U);
}

TEST(HashMap, MakesItsFirstBucketsForItsInitialSize) {
    struct {
        unsigned initialSize;
        unsigned bits;
    } const expected[] = {{0, 1}, {1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 3}, {64, 6}, {65, 7}, {1000, 10}};
    for (auto const & [initialSize, bits] : expected) {
        NamedCollection collection(initialSize);
        collection.add(Name("a"));
        collection.add(Name("b"));
        EXPECT_EQ(collection.bucketBits(), bits) << initialSize;
    }
}

TEST(HashMap, TakesAHugeInitialSizeForNoMoreThanAHint) {
    NamedCollection collection(0xffffffffU);
    TestSupport::AllocationCount const count;
    collection.add(Name("a"));
    collection.add(Name("b"));
    EXPECT_LE(count.bytes(), 16U << 20);
}

TEST(HashMap, DoublesItsBucketsWhenThereAreMoreMembers) {
    NamedCollection collection;
    for (unsigned i = 1; i <= 1025; ++i) {
        collection.add(name(static_cast<int>(i)));
        unsigned bits = 0;
        while ((1U << bits) < i) ++bits;
        ASSERT_EQ(collection.bucketBits(), bits) << i;
    }
    for (int i = 1; i <= 1024; ++i) collection.deleteMember(name(i));
    EXPECT_EQ(collection.bucketBits(), 11U) << "it never shrinks";
    collection.emptyAllBuckets();
    EXPECT_EQ(collection.bucketBits(), 0U) << "it gives its buckets back when it is emptied";
}

class SparseMember final : public Vel::HashMapMember {
public:
    static constexpr unsigned kBucketsPerMember = 4;

    explicit SparseMember(Name name) : name_(std::move(name)) {}
    Name const & collectionKey() const noexcept { return name_; }

private:
    Name const name_;
};

TEST(HashMap, HasAsManyBucketsForEachMemberAsItsClassAsksFor) {
    using Members = Vel::HashMap<SparseMember, Name, SparseMember>;
    Members grown(4);
    for (int i = 0; i < 4096; ++i) grown.newMember(Ptr<SparseMember>(new SparseMember(name(i))));
    EXPECT_EQ(grown.bucketBits(), 14U);
    Members reserved(4);
    reserved.reserve(1024);
    EXPECT_EQ(reserved.bucketBits(), 12U);
    for (int i = 0; i < 1024; ++i) reserved.newMember(Ptr<SparseMember>(new SparseMember(name(i))));
    EXPECT_EQ(reserved.bucketBits(), 12U);
    for (int i = 0; i < 1024; ++i) EXPECT_TRUE(reserved[name(i)]);
    Members single(4);
    single.reserve(1);
    EXPECT_EQ(single.bucketBits(), 0U) << "one member needs no array";
}

TEST(HashMap, OrdersMembersByBucketAndThenByKey) {
    std::mt19937 random(3);
    ChosenCollection collection;
    std::vector<ChosenKey> keys;
    for (std::uint32_t i = 0; i < 200; ++i) {
        std::uint32_t const hash = (random() % 8) << 29 | random() % 2;
        keys.push_back({hash, i});
    }
    std::shuffle(keys.begin(), keys.end(), random);
    for (ChosenKey const & key : keys) {
        collection.add(key);
        std::vector<ChosenKey> expected(keys.begin(), keys.begin() + collection.size());
        std::sort(expected.begin(), expected.end(), [&](ChosenKey const & a, ChosenKey const & b) {
            return ChosenCollection::before(a, b, collection.bucketBits());
        });
        ASSERT_EQ(walked(collection), expected);
    }
}

TEST(HashMap, StartsAtTheFirstMemberOfABucket) {
    ChosenCollection collection(4);
    collection.add({0x40000000U, 2});
    collection.add({0x4fffffffU, 1});
    collection.add({0xc0000000U, 0});
    ASSERT_EQ(collection.bucketBits(), 2U);
    EXPECT_EQ(collection.startAtHash(0x00000000U), nullptr);
    EXPECT_EQ(collection.startAtHash(0x7fffffffU), (collection[{0x4fffffffU, 1}]));
    EXPECT_EQ(collection.startAtHash(0x80000000U), nullptr);
    EXPECT_EQ(collection.startAtHash(0xffffffffU), (collection[{0xc0000000U, 0}]));
}

TEST(HashMap, TellsKeysOfOneHashApart) {
    ChosenCollection collection;
    for (std::uint32_t rank = 0; rank < 50; ++rank) collection.add({0x12345678U, rank * 2});
    for (std::uint32_t rank = 0; rank < 100; ++rank) {
        EXPECT_EQ((collection[{0x12345678U, rank}] != nullptr), rank % 2 == 0) << rank;
    }
    EXPECT_EQ((collection[{0x12345679U, 2}]), nullptr) << "of another hash in the same bucket";
}

TEST(HashMap, ReturnsTheMemberThatLeaves) {
    NamedCollection collection;
    NamedMember * const raw = collection.add(Name("a")).get();
    collection.add(Name("b"));
    // The key is that of the member itself, which is in nobody's hand but the collection's.
    Ptr<NamedMember> const left = collection.deleteMember(collection[Name("a")]->collectionKey());
    EXPECT_EQ(left, raw);
    EXPECT_EQ(left->references(), 1U);
    EXPECT_EQ(collection[Name("a")], nullptr);
    EXPECT_NE(collection[Name("b")], nullptr);
}

TEST(HashMap, KeepsNoMemberAliveThroughOneThatLeft) {
    ChosenCollection collection;
    for (std::uint32_t rank = 0; rank < 10; ++rank) collection.add({0, rank});
    Ptr<ChosenMember> const left = collection.deleteMember({0, 4});
    Ptr<ChosenMember> const first = collection.deleteMember({0, 0});
    EXPECT_EQ(liveMembers<ChosenKey>(), 10U);
    collection.emptyAllBuckets();
    EXPECT_EQ(liveMembers<ChosenKey>(), 2U);
    EXPECT_EQ(left->references(), 1U);
}

TEST(HashMap, KeepsNoMemberAliveThroughOneThatWasInItWhenItWasEmptied) {
    ChosenCollection collection;
    Ptr<ChosenMember> const kept = collection.add({0, 0});
    for (std::uint32_t rank = 1; rank < 10; ++rank) collection.add({0, rank});
    collection.emptyAllBuckets();
    EXPECT_EQ(liveMembers<ChosenKey>(), 1U);
    EXPECT_EQ(kept->references(), 1U);
}

TEST(HashMap, VisitsEachMemberInOrder) {
    for (unsigned const members : {0U, 1U, 2U, 77U}) {
        ChosenCollection collection;
        for (std::uint32_t i = 0; i < members; ++i) collection.add({i % 5 * 0x30000000U, i * 31 % 77});
        std::vector<ChosenKey> visited;
        collection.forEach([&](ChosenMember & member) { visited.push_back(member.collectionKey()); });
        EXPECT_EQ(visited, walked(collection));
        EXPECT_EQ(visited.size(), members);
    }
}

// What `ahead` is given is not known to be what comes next, but it has to be there.
TEST(HashMap, ThatIsEmptiedShowsWhatComesNextOnce) {
    for (int const members : {0, 1, 2, 50, 1'000}) {
        NamedCollection collection;
        for (int i = 0; i < members; ++i) collection.add(name(i));
        std::set<NamedMember const *> present;
        for (auto member = collection.iterator(); member; ++member) present.insert(member->get());
        std::set<NamedMember const *> seen;
        collection.emptyAllBuckets([&](NamedMember const & member) {
            EXPECT_TRUE(present.contains(&member));
            EXPECT_TRUE(seen.insert(&member).second);
        });
        EXPECT_EQ(collection.size(), 0U);
        EXPECT_EQ(collection.bucketBits(), 0U);
        EXPECT_EQ(liveMembers<Name>(), 0U);
        EXPECT_EQ(seen.empty(), members < 50) << "a few need no look ahead";
    }
}

TEST(HashMap, ThatIsEmptiedTakesWhatComesBackMeanwhile) {
    NamedCollection collection;
    for (int i = 0; i < 200; ++i) {
        collection.add(name(i))->onDestruction = [&collection, i](NamedMember &) {
            if (i % 2 == 0) collection.add(name(1'000 + i));
        };
    }
    collection.emptyAllBuckets([](NamedMember const &) {});
    EXPECT_EQ(collection.size(), 0U);
    EXPECT_EQ(liveMembers<Name>(), 0U);
}

TEST(HashMap, TakesAMemberThatLeftAgain) {
    NamedCollection first;
    NamedCollection second(16);
    for (int i = 0; i < 20; ++i) first.add(name(i));
    for (int i = 0; i < 20; ++i) second.newMember(first.deleteMember(name(i)));
    EXPECT_EQ(first.size(), 0U);
    EXPECT_EQ(second.size(), 20U);
    for (int i = 0; i < 20; ++i) {
        Ptr<NamedMember> const member = second.deleteMember(name(i));
        ASSERT_TRUE(member);
        second.newMember(member);
    }
    EXPECT_EQ(walked(second).size(), 20U);
}

TEST(HashMap, ReleasesItsMembersWhenItIsDestroyed) {
    Ptr<NamedMember> kept;
    {
        NamedCollection collection;
        for (int i = 0; i < 100; ++i) kept = collection.add(name(i));
        EXPECT_EQ(liveMembers<Name>(), 100U);
    }
    EXPECT_EQ(liveMembers<Name>(), 1U);
    EXPECT_EQ(kept->references(), 1U);
}

TEST(HashMap, GrowsItsChainsWhenThereIsNoMemoryForBuckets) {
    std::vector<Ptr<NamedMember>> members;
    for (int i = 0; i < 100; ++i) members.push_back(new NamedMember(name(i)));
    for (unsigned const hint : {1U, 1000U}) {
        NamedCollection collection(hint);
        {
            TestSupport::FailingAllocations const failing;
            for (auto const & member : members) collection.newMember(member);
        }
        EXPECT_EQ(collection.bucketBits(), 0U);
        EXPECT_EQ(collection.size(), 100U);
        for (auto const & member : members) EXPECT_EQ(collection[member->collectionKey()], member.get());
        std::vector<Name> const keys = walked(collection);
        EXPECT_EQ(keys.size(), 100U);
        EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
        // It grows again once memory can be had.
        collection.add(Name("one more"));
        EXPECT_GE(collection.bucketBits(), 1U);
        for (auto const & member : members)
            EXPECT_EQ(collection.deleteMember(member->collectionKey()), member);
    }
}

TEST(HashMap, OfOneBucketLetsADestructorComeBackWhileItIsEmptied) {
    std::function<void(ChosenCollection &)> const acts[] = {
        [](ChosenCollection & collection) {
            collection.add({7, 100});
        },
        [](ChosenCollection & collection) {
            for (std::uint32_t i = 0; i < 100; ++i) collection.add({i << 25, 200 + i});
            EXPECT_NE(collection.bucketBits(), 0U);
        },
        [](ChosenCollection & collection) {
            collection.deleteMember({3U << 30, 3});
        },
        [](ChosenCollection & collection) { collection.emptyAllBuckets(); },
        [](ChosenCollection & collection) {
            for (std::uint32_t i = 0; i < 40; ++i) collection.add({i << 26, 200 + i});
            collection.emptyAllBuckets();
            collection.add({7, 100});
        },
    };
    for (auto const & act : acts) {
        ChosenCollection collection;
        std::vector<Ptr<ChosenMember>> members;
        for (std::uint32_t i = 0; i < 4; ++i) members.push_back(new ChosenMember({i << 30, i}));
        members[1]->onDestruction = [&](ChosenMember &) { act(collection); };
        {
            TestSupport::FailingAllocations const failing;
            for (auto const & member : members) collection.newMember(member);
        }
        EXPECT_EQ(collection.bucketBits(), 0U);
        members.clear();
        collection.emptyAllBuckets();
        EXPECT_EQ(collection.size(), 0U);
        EXPECT_EQ(collection.bucketBits(), 0U);
        EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
    }
}

// Emptying, with a member whose destructor comes back to the collection.
class HashMapEmptying : public testing::TestWithParam<std::uint32_t> {
protected:
    static constexpr std::uint32_t kMembers = 16;

    // One member in each bucket but two in the third.
    HashMapEmptying() : collection_(std::make_unique<ChosenCollection>(kMembers)) {
        for (std::uint32_t i = 0; i < kMembers; ++i) collection_->add({i << 28, i});
        collection_->add({2U << 28, 100});
        EXPECT_EQ(collection_->bucketBits(), 5U);
        key_ = {GetParam() << 28, GetParam()};
    }
    void emptyWith(std::function<void(ChosenCollection &)> act) {
        (*collection_)[key_]->onDestruction = [&, act](ChosenMember &) { act(*collection_); };
        collection_->emptyAllBuckets();
        EXPECT_EQ(collection_->size(), 0U);
        EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
        EXPECT_FALSE(collection_->iterator());
        collection_->add({1, 1});
        EXPECT_EQ(walked(*collection_).size(), 1U);
    }

    std::unique_ptr<ChosenCollection> collection_;
    ChosenKey key_;
};

TEST_P(HashMapEmptying, LetsADestructorLookAround) {
    emptyWith([&](ChosenCollection & collection) {
        EXPECT_EQ(collection[key_], nullptr) << "it has left already";
        EXPECT_EQ(walked(collection).size(), collection.size());
    });
}

TEST_P(HashMapEmptying, LetsADestructorInsert) {
    emptyWith([](ChosenCollection & collection) {
        for (std::uint32_t i = 0; i < 4; ++i) collection.add({i << 30, 200 + i});
    });
}

TEST_P(HashMapEmptying, LetsADestructorInsertUntilTheCollectionGrows) {
    emptyWith([](ChosenCollection & collection) {
        for (std::uint32_t i = 0; i < 100; ++i) collection.add({i << 25, 200 + i});
    });
}

TEST_P(HashMapEmptying, LetsADestructorDeleteTheOthers) {
    emptyWith([](ChosenCollection & collection) {
        for (std::uint32_t i = 0; i < kMembers; ++i) collection.deleteMember({i << 28, i});
    });
}

TEST_P(HashMapEmptying, LetsADestructorDeleteItself) {
    emptyWith([&](ChosenCollection & collection) { EXPECT_EQ(collection.deleteMember(key_), nullptr); });
}

TEST_P(HashMapEmptying, LetsADestructorEmptyTheCollection) {
    emptyWith([](ChosenCollection & collection) {
        collection.emptyAllBuckets();
        EXPECT_EQ(collection.size(), 0U);
    });
}

TEST_P(HashMapEmptying, LetsADestructorEmptyAndRefillTheCollection) {
    emptyWith([](ChosenCollection & collection) {
        collection.emptyAllBuckets();
        for (std::uint32_t i = 0; i < 40; ++i) collection.add({i << 26, 200 + i});
    });
}

TEST_P(HashMapEmptying, LetsADestructorComeBackWhileTheCollectionIsDestroyed) {
    ChosenCollection & collection = *collection_;
    collection[key_]->onDestruction = [&](ChosenMember &) {
        collection.deleteMember({5U << 28, 5});
        collection.add({5U << 28, 500});
        EXPECT_EQ(walked(collection).size(), collection.size());
    };
    collection_.reset();
    EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
}

INSTANTIATE_TEST_SUITE_P(AtMember, HashMapEmptying, testing::Values(0U, 1U, 2U, 7U, 15U),
                         testing::PrintToStringParamName());

TEST(HashMap, HoldsTwentyThousandNamesOfOneHash) {
    std::vector<Name> const & names = TestSupport::twentyThousandNamesOfOneHash();
    for (Name const & each : names) ASSERT_EQ(each.hash(), names[0].hash());
    ASSERT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());

    TestSupport::onASmallStack([&] {
        NamedCollection collection;
        for (Name const & each : names) collection.add(each);
        EXPECT_EQ(collection.size(), 20000U);
        EXPECT_EQ(walked(collection), std::vector<Name>(names.rbegin(), names.rend()));
        for (std::size_t i = 0; i < names.size(); i += 1000) {
            ASSERT_TRUE(collection[names[i]]);
            EXPECT_EQ(collection[names[i]]->collectionKey(), names[i]);
        }
        // A walk that removes what it meets.
        for (auto i = collection.iterator(); collection.size() > 10000; ++i) {
            EXPECT_EQ(collection.deleteMember((*i)->collectionKey()), *i);
        }
        EXPECT_EQ(collection[names[19999]], nullptr);
        EXPECT_EQ(collection[names[9999]]->collectionKey(), names[9999]);
    });
    EXPECT_EQ(liveMembers<Name>(), 0U);
}

TEST(HashMap, HoldsAQuarterOfAMillionMembersWithLittleStack) {
    TestSupport::onASmallStack([] {
        constexpr std::uint32_t kMembers = 1U << 18;
        ChosenCollection collection;
        for (std::uint32_t i = 0; i < kMembers; ++i) collection.add({i * 0x9e3779b1U, i});
        EXPECT_EQ(collection.size(), kMembers);
        EXPECT_EQ(collection.bucketBits(), 18U);
        std::uint32_t met = 0;
        for (auto i = collection.iterator(); i; ++i) ++met;
        EXPECT_EQ(met, kMembers);
        EXPECT_NE((collection[{222222U * 0x9e3779b1U, 222222U}]), nullptr);
        collection.emptyAllBuckets();
        EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
    });
}

// Two and a half bytes of stack for each member would be too much.
TEST(HashMap, ReleasesALongChainWithLittleStack) {
    TestSupport::onASmallStack([] {
        {
            ChosenCollection collection;
            for (std::uint32_t i = 100000; i > 0; --i) collection.add({0x80000000U, i});
            EXPECT_EQ(liveMembers<ChosenKey>(), 100000U);
        }
        EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
    });
}

}  // namespace
}  // namespace VelTest
