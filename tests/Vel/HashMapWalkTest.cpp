#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Vel/Members.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

ChosenKey key(std::uint32_t bucketOfSixteen, std::uint32_t rank = 0) { return {bucketOfSixteen << 28, rank}; }

// An object that owns a collection, as the models do.
class Shelf final : public Vel::PtrInterface, public Vel::AllocTracked<Shelf> {
public:
    using Map = Vel::HashMap<ChosenMember, ChosenKey, Shelf>;

    Map::Range members() { return {members_, *this}; }
    Map::ConstRange members() const { return {members_, *this}; }
    Map & map() { return members_; }

private:
    Map members_{16};
};

TEST(HashMapRange, MeetsEveryMemberOnce) {
    Ptr<Shelf> const shelf = new Shelf;
    for (std::uint32_t i = 0; i < 100; ++i) shelf->map().newMember(new ChosenMember(key(i % 16, i)));
    std::set<std::uint32_t> ranks;
    for (auto const & member : shelf->members()) ranks.insert(member->collectionKey().rank);
    EXPECT_EQ(ranks.size(), 100U);
    EXPECT_EQ(shelf->members().size(), 100U);
    EXPECT_FALSE(shelf->members().empty());
    EXPECT_TRUE(Ptr<Shelf>(new Shelf)->members().empty());
}

TEST(HashMapRange, OfAConstantObjectYieldsConstantMembers) {
    Ptr<Shelf> const shelf = new Shelf;
    shelf->map().newMember(new ChosenMember(key(3)));
    Ptr<Shelf const> const constant = shelf;
    for (auto const & member : constant->members()) {
        static_assert(std::is_same_v<decltype(member), Ptr<ChosenMember const> const &>);
        EXPECT_EQ(member, shelf->map()[key(3)]);
    }
    for (auto const & member : shelf->members()) {
        static_assert(std::is_same_v<decltype(member), Ptr<ChosenMember> const &>);
        EXPECT_EQ(member, shelf->map()[key(3)]);
    }
}

TEST(HashMapRange, KeepsTheOwnerForTheWalk) {
    Ptr<Shelf> shelf = new Shelf;
    for (std::uint32_t i = 0; i < 10; ++i) shelf->map().newMember(new ChosenMember(key(i)));
    int met = 0;
    for (auto const & member : shelf->members()) {
        shelf = nullptr;
        EXPECT_EQ(Shelf::velAllocTrackTypeInfo_->live(), 1U);
        EXPECT_TRUE(member);
        ++met;
    }
    EXPECT_EQ(met, 10);
    EXPECT_EQ(Shelf::velAllocTrackTypeInfo_->live(), 0U);
    EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
}

TEST(HashMapRange, OfAnOwnerThatIsNotCountedLeavesItAlone) {
    Shelf shelf;
    shelf.map().newMember(new ChosenMember(key(1)));
    int met = 0;
    for (auto const & member : shelf.members()) met += member ? 1 : 0;
    EXPECT_EQ(met, 1);
    EXPECT_EQ(shelf.references(), 0U);
}

TEST(HashMapRange, StartsAtAKey) {
    Ptr<Shelf> const shelf = new Shelf;
    for (std::uint32_t i = 0; i < 16; ++i) shelf->map().newMember(new ChosenMember(key(i)));
    auto range = shelf->members();
    auto at = range.at(key(5));
    for (std::uint32_t i = 5; i < 16; ++i, ++at) EXPECT_EQ((*at)->collectionKey(), key(i));
    EXPECT_FALSE(at);
    EXPECT_FALSE(range.at(key(5, 1)));
}

TEST(HashMapIterator, StaysAtTheEnd) {
    ChosenCollection collection;
    collection.add(key(1));
    auto i = collection.iterator();
    ++i;
    EXPECT_FALSE(i);
    EXPECT_TRUE(i == std::default_sentinel);
    collection.add(key(2));
    ++i;
    i++;
    EXPECT_FALSE(i) << "what is added now is not met";
    EXPECT_EQ(*i, nullptr);
}

TEST(HashMapIterator, StartsAtAKeyAndGoesOnFromThere) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 50; ++i) collection.add(key(i % 16, i));
    std::vector<ChosenKey> all;
    for (auto i = collection.iterator(); i; ++i) all.push_back((*i)->collectionKey());
    for (std::size_t start = 0; start < all.size(); ++start) {
        std::size_t next = start;
        for (auto i = collection.iteratorAt(all[start]); i; ++i)
            ASSERT_EQ((*i)->collectionKey(), all[next++]);
        EXPECT_EQ(next, all.size());
    }
    EXPECT_FALSE(collection.iteratorAt(key(0, 1000)));
}

TEST(HashMapIterator, HoldsTheMemberInHand) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 3; ++i) collection.add(key(i));
    auto i = collection.iterator();
    collection.emptyAllBuckets();
    EXPECT_EQ(liveMembers<ChosenKey>(), 1U);
    EXPECT_EQ((*i)->collectionKey(), key(0));
    EXPECT_EQ(i->get(), (*i).get());
    ++i;
    EXPECT_FALSE(i);
    EXPECT_EQ(liveMembers<ChosenKey>(), 0U);
}

TEST(HashMapIterator, IsCopied) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 8; ++i) collection.add(key(i));
    auto first = collection.iterator();
    ++first;
    auto second = first;
    ++second;
    EXPECT_EQ((*first)->collectionKey(), key(1));
    EXPECT_EQ((*second)->collectionKey(), key(2));
}

// What happens to the third of eight members while it is in hand, and what comes next.
TEST(HashMapWalk, GoesOnAfterAMemberThatLeft) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 8; ++i) collection.add(key(i));
    auto i = collection.iteratorAt(key(2));
    collection.deleteMember(key(2));
    ++i;
    EXPECT_EQ((*i)->collectionKey(), key(3));
}

TEST(HashMapWalk, StepsOverANextMemberThatLeft) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 8; ++i) collection.add(key(i));
    auto i = collection.iteratorAt(key(2));
    collection.deleteMember(key(3));
    collection.deleteMember(key(4));
    ++i;
    EXPECT_EQ((*i)->collectionKey(), key(5));
}

TEST(HashMapWalk, EndsWhenEveryMemberLeft) {
    ChosenCollection collection;
    for (std::uint32_t i = 0; i < 8; ++i) collection.add(key(i));
    auto i = collection.iteratorAt(key(2));
    for (std::uint32_t j = 0; j < 8; ++j) collection.deleteMember(key(j));
    ++i;
    EXPECT_FALSE(i);
}

TEST(HashMapWalk, GoesOnInAChainOfOneBucket) {
    ChosenCollection collection;
    for (std::uint32_t rank = 0; rank < 8; ++rank) collection.add({0, rank});
    auto i = collection.iteratorAt({0, 2});
    collection.deleteMember({0, 2});
    collection.deleteMember({0, 3});
    ++i;
    EXPECT_EQ((*i)->collectionKey().rank, 4U);
    ++i;
    EXPECT_EQ((*i)->collectionKey().rank, 5U);
}

TEST(HashMapWalk, OfACollectionThatWasEmptiedAndRefilledEnds) {
    for (std::uint32_t refill : {0U, 1U, 3U, 100U}) {
        ChosenCollection collection;
        for (std::uint32_t i = 0; i < 100; ++i) collection.add({i << 25, i});
        auto i = collection.iterator();
        for (int steps = 0; steps < 50; ++steps) ++i;
        collection.emptyAllBuckets();
        for (std::uint32_t j = 0; j < refill; ++j) collection.add({j << 25, j});
        std::uint32_t met = 0;
        for (++i; i; ++i) {
            EXPECT_EQ(*i, collection[(*i)->collectionKey()]);
            ASSERT_LE(++met, refill);
        }
    }
}

TEST(HashMapWalk, EndsEvenIfEachStepEmptiesAndRefillsTheCollection) {
    ChosenCollection collection;
    auto const fill = [&] {
        for (std::uint32_t j = 0; j < 40; ++j) collection.add({j << 26, j});
    };
    fill();
    int steps = 0;
    for (auto i = collection.iterator(); i; ++i) {
        ASSERT_LT(++steps, 1000);
        collection.emptyAllBuckets();
        fill();
    }
}

TEST(HashMapWalk, MeetsEveryMemberOnceWhenTheCollectionGrowsFromEveryPlace) {
    for (std::uint32_t count = 1; count <= 40; ++count) {
        for (std::uint32_t place = 0; place < count; ++place) {
            ChosenCollection collection;
            std::mt19937 random(count);
            std::map<ChosenKey, int> met;
            for (std::uint32_t i = 0; i < count; ++i) {
                ChosenKey const each{static_cast<std::uint32_t>(random()), i};
                collection.add(each);
                met[each] = 0;
            }
            std::uint32_t steps = 0;
            for (auto i = collection.iterator(); i; ++i) {
                if (steps++ == place) {
                    for (std::uint32_t j = 0; j < 3 * count; ++j) {
                        collection.add({static_cast<std::uint32_t>(random()), 1000 + j});
                    }
                }
                ASSERT_LE(steps, 4 * count);
                auto const one = met.find((*i)->collectionKey());
                if (one != met.end()) ++one->second;
            }
            for (auto const & [each, times] : met)
                ASSERT_EQ(times, 1) << each << ", " << count << " at " << place;
        }
    }
}

// The engine's successor function against sorting.
TEST(HashMapEngine, FindsTheNextMemberOfEveryOrder) {
    std::mt19937 random(17);
    for (int round = 0; round < 60; ++round) {
        ChosenCollection collection;
        std::vector<ChosenKey> present;
        std::vector<Ptr<ChosenMember>> left;
        std::uint32_t const count = random() % 40;
        for (std::uint32_t i = 0; i < count; ++i) {
            present.push_back({static_cast<std::uint32_t>(random() % 2 ? random() : random() % 4 << 30), i});
            collection.add(present.back());
        }
        for (std::uint32_t i = 0; i < count / 3; ++i) {
            auto const one = present.begin() + static_cast<std::ptrdiff_t>(random() % present.size());
            left.push_back(collection.deleteMember(*one));
            present.erase(one);
        }
        for (unsigned bits = 0; bits <= collection.bucketBits(); ++bits) {
            auto const before = [bits](ChosenKey const & a, ChosenKey const & b) {
                return ChosenCollection::before(a, b, bits);
            };
            std::sort(present.begin(), present.end(), before);
            auto const check = [&](ChosenMember const * from,
                                   std::vector<ChosenKey>::const_iterator expected) {
                std::uint32_t bucket = 0x5a5a5a5aU;
                auto const * const next = static_cast<ChosenMember const *>(
                    collection.findNextG(from, bits, ChosenCollection::kTable, bucket));
                if (expected == present.cend()) {
                    ASSERT_EQ(next, nullptr);
                    return;
                }
                ASSERT_TRUE(next);
                ASSERT_EQ(next->collectionKey(), *expected);
                ASSERT_EQ(bucket, Vel::HashMapGeneric::bucketOf(expected->chosenHash, bits));
            };
            check(nullptr, present.cbegin());
            for (auto one = present.cbegin(); one != present.cend(); ++one) check(collection[*one], one + 1);
            for (auto const & member : left) {
                check(member.get(),
                      std::upper_bound(present.cbegin(), present.cend(), member->collectionKey(), before));
            }
        }
    }
}

TEST(HashMapEngine, FindsTheNextBucketInUse) {
    ChosenCollection collection(16);
    for (std::uint32_t const bucket : {2U, 3U, 9U}) {
        for (std::uint32_t rank = 0; rank < 2; ++rank) collection.add(key(bucket, rank));
    }
    ASSERT_EQ(collection.bucketBits(), 4U);
    std::map<std::uint32_t, std::uint32_t> const expected{{0, 2}, {1, 2}, {2, 3}, {3, 9}, {8, 9}};
    for (auto const & [from, to] : expected) {
        std::uint32_t bucket = from;
        EXPECT_EQ(collection.findNextBucket(bucket), collection[key(to, 0)]) << from;
        EXPECT_EQ(bucket, to);
    }
    for (std::uint32_t const from : {9U, 14U, 15U}) {
        std::uint32_t bucket = from;
        EXPECT_EQ(collection.findNextBucket(bucket), nullptr) << from;
    }
}

// A walk over a collection that changes at every step, against a map. What is checked:
// a member that stands from beginning to end is met once; whatever is met stands at that moment; the walk
// ends; between changes of the bucket count to less, members come in the order with which the walk began.
class RandomWalk {
public:
    explicit RandomWalk(unsigned seed) : random_(seed), collection_(kHints[random_() % std::size(kHints)]) {}

    void run() {
        hashes_ = 1U << random_() % 8;
        for (std::uint32_t i = random_() % 60; i > 0; --i) insert();
        checkAgainstTheModel();
        walk();
        checkAgainstTheModel();
    }

private:
    static constexpr unsigned kHints[] = {0, 1, 2, 3, 16, 100};

    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    ChosenKey anyKey() {
        std::uint32_t const rank = below(80);
        // A few hashes for many keys, spread over the top bits.
        return {Vel::bitReverse(rank * 0x9e3779b1U % hashes_) ^ (rank & 1U), rank};
    }
    void insert() {
        ChosenKey const key = anyKey();
        if (model_.count(key)) return;
        model_[key] = collection_.add(key);
    }
    void remove(ChosenKey const & key) {
        Ptr<ChosenMember> const member = collection_.deleteMember(key);
        ASSERT_EQ(member != nullptr, model_.erase(key) == 1);
        if (member) stable_.erase(member);
    }
    void removeAny() {
        if (model_.empty()) return;
        auto one = model_.begin();
        std::advance(one, below(static_cast<std::uint32_t>(model_.size())));
        remove(ChosenKey(one->first));
    }
    void empty() {
        collection_.emptyAllBuckets();
        model_.clear();
        stable_.clear();
        emptied_ = true;
    }
    void disturb(Ptr<ChosenMember> const & inHand) {
        if (below(3) == 0) return;
        ChosenKey const key = inHand->collectionKey();
        switch (below(12)) {
        case 0:
        case 1: remove(key); break;
        case 2:
            for (int i = 0; i < 3; ++i) removeAny();
            break;
        case 3:
        case 4: insert(); break;
        case 5:
            for (std::uint32_t i = below(40); i > 0; --i) insert();
            break;
        case 6:  // The same object leaves and enters again.
            if (model_.count(key) && model_[key] == inHand) {
                remove(key);
                collection_.newMember(inHand);
                model_[key] = inHand;
            }
            break;
        case 7:  // Another object takes its key.
            remove(key);
            model_[key] = collection_.add(key);
            break;
        case 8:
            if (below(6) == 0) empty();
            break;
        case 9:
            while (below(10) != 0) removeAny();
            break;
        case 10:
            if (below(6) == 0) {
                empty();
                for (std::uint32_t i = below(30); i > 0; --i) insert();
            }
            break;
        default: removeAny();
        }
    }
    void walk() {
        for (auto const & [key, member] : model_) stable_[member] = 0;
        unsigned const bits = collection_.bucketBits();
        std::uint32_t steps = 0;
        ChosenKey last;
        for (auto i = collection_.iterator(); i; ++i) {
            Ptr<ChosenMember> const member = *i;
            ChosenKey const key = member->collectionKey();
            auto const found = model_.find(key);
            ASSERT_TRUE(found != model_.end() && found->second == member) << key << " does not stand there";
            auto const one = stable_.find(member);
            if (one != stable_.end()) {
                ASSERT_EQ(++one->second, 1) << key << " was met twice";
            }
            if (steps != 0 && !emptied_) {
                ASSERT_TRUE(ChosenCollection::before(last, key, bits)) << last << " before " << key;
            }
            last = key;
            ASSERT_LT(++steps, 10000U) << "the walk does not end";
            ASSERT_NO_FATAL_FAILURE(disturb(member));
        }
        for (auto const & [member, met] : stable_) {
            ASSERT_EQ(met, 1) << member->collectionKey() << " was missed";
        }
    }
    void checkAgainstTheModel() {
        ASSERT_EQ(collection_.size(), model_.size());
        std::vector<ChosenKey> expected;
        for (auto const & [key, member] : model_) {
            ASSERT_EQ(collection_[key], member.get());
            expected.push_back(key);
        }
        std::sort(expected.begin(), expected.end(), [&](ChosenKey const & a, ChosenKey const & b) {
            return ChosenCollection::before(a, b, collection_.bucketBits());
        });
        std::vector<ChosenKey> met;
        for (auto i = collection_.iterator(); i; ++i) met.push_back((*i)->collectionKey());
        ASSERT_EQ(met, expected);
    }

    std::mt19937 random_;
    ChosenCollection collection_;
    std::map<ChosenKey, Ptr<ChosenMember>> model_;
    struct ByAddress {
        bool operator()(Ptr<ChosenMember> const & a, Ptr<ChosenMember> const & b) const {
            return a.get() < b.get();
        }
    };
    std::map<Ptr<ChosenMember>, int, ByAddress>
        stable_;  // How often each was met that stands from the beginning on.
    std::uint32_t hashes_ = 1;
    bool emptied_ = false;
};

TEST(HashMapWalk, OfACollectionThatChangesAtEveryStepFollowsAModel) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomWalk(seed).run();
        if (testing::Test::HasFatalFailure()) return;
    }
}

}  // namespace
}  // namespace VelTest
