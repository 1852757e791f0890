// What the tag of a value collection may say of its entries.
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/HashMap2018.h"
#include "tests/Vel/Members.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

struct InOneBucketTag {
    static constexpr std::uint32_t kInOneBucket = 3;
};
struct InBucketsTag {};

// An object that stands in a collection under its name.
class Port final : public Vel::PtrInterface, public Vel::AllocTracked<Port> {
public:
    explicit Port(Name name) : name_(std::move(name)) {}
    Name const & name() const noexcept { return name_; }

private:
    Name const name_;
};
struct UnderItsNameTag {
    static constexpr bool kKeyIsValuesName = true;
};

using InOneBucket = Vel::HashMap2018<InOneBucketTag, Name, Ptr<Port>>;
using InBuckets = Vel::HashMap2018<InBucketsTag, Name, Ptr<Port>>;
using UnderItsName = Vel::HashMap2018<UnderItsNameTag, Name, Ptr<Port>>;

static_assert(sizeof(UnderItsName::Node) == sizeof(InBuckets::Node) - sizeof(Name));

template <class Map>
std::vector<Name> namesIn(Map const & map) {
    std::vector<Name> names;
    for (auto i = map.iterator(); i; ++i) names.push_back(i->key());
    return names;
}

// Of the `i`th entry; the first one ever makes the record that tracks them.
template <class Map>
std::uint64_t allocationsOf(Map & map, int i) {
    Name const key = name(i);
    TestSupport::AllocationCount const count;
    map.valueIs(key, nullptr);
    return count.value();
}

TEST(HashMap2018InOneBucket, TakesNoMemoryForSoManyButTheEntries) {
    InBuckets other;
    InOneBucket map;
    allocationsOf(other, 0);
    allocationsOf(map, 0);
    EXPECT_EQ(allocationsOf(other, 1), 2U) << "an entry and the buckets";
    for (int i = 1; i < 3; ++i) EXPECT_EQ(allocationsOf(map, i), 1U) << i;
    EXPECT_EQ(allocationsOf(map, 3), 2U);
    for (int i = 4; i < 40; ++i) map.valueIs(name(i), nullptr);
    for (int i = 0; i < 40; ++i) EXPECT_NE(map[name(i)], nullptr) << i;
    EXPECT_EQ(map[name(40)], nullptr);
    EXPECT_EQ(map.size(), 40U);
}

TEST(HashMap2018InOneBucket, WalksInTheOrderOfTheHashesWhateverComesAndGoes) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        InOneBucket map;
        std::map<std::pair<std::uint32_t, std::string>, Name> model;
        for (int step = 0; step < 40; ++step) {
            Name const key = name(static_cast<int>(random() % (seed % 10 + 2)));
            std::pair const place(key.reversedHash(), std::string(key.view()));
            if (random() % 2 == 0) {
                ASSERT_EQ(map.valueIs(key, nullptr), model.emplace(place, key).second);
            } else {
                ASSERT_EQ(bool(map.valueDel(key)), model.erase(place) == 1);
            }
            std::vector<Name> expected;
            for (auto const & [where, each] : model) expected.push_back(each);
            ASSERT_EQ(namesIn(map), expected);
        }
    }
}

TEST(HashMap2018InOneBucket, WalksOnceOverWhatStaysWhileOthersComeAndGo) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        auto const randomName = [&] { return name(static_cast<int>(random() % (seed % 8 + 2))); };
        InOneBucket map;
        for (int i = 0; i < 6; ++i) map.valueIs(randomName(), nullptr);
        auto const atFirst = namesIn(map);
        std::set<Name> stable(atFirst.begin(), atFirst.end());
        std::map<Name, int> met;
        for (auto i = map.iterator(); i; ++i) {
            ++met[i->key()];
            for (unsigned n = random() % 4; n > 0; --n) {
                Name const key = n == 1 && random() % 2 == 0 ? i->key() : randomName();
                if (random() % 2 == 0) {
                    map.valueIs(key, nullptr);
                } else if (map.valueDel(key)) {
                    stable.erase(key);
                }
            }
        }
        for (Name const & key : stable) ASSERT_EQ(met[key], 1) << key;
    }
}

TEST(HashMap2018UnderItsName, HasTheNameOfTheObjectForAKey) {
    UnderItsName map;
    std::vector<Ptr<Port>> ports;
    for (int i = 0; i < 20; ++i) {
        ports.push_back(new Port(name(i)));
        EXPECT_TRUE(map.valueIs(ports.back()->name(), ports.back()));
        EXPECT_FALSE(map.valueIs(name(i), ports.back()));
    }
    for (int i = 0; i < 20; ++i) {
        ASSERT_NE(map[name(i)], nullptr);
        EXPECT_EQ(&map[name(i)]->key(), &ports[static_cast<std::size_t>(i)]->name());
        EXPECT_EQ(ports[static_cast<std::size_t>(i)]->references(), 2U);
    }
    EXPECT_EQ(namesIn(map).size(), 20U);
}

TEST(HashMap2018UnderItsName, TakesAnotherObjectOfThatName) {
    UnderItsName map;
    Ptr<Port> first = new Port("p");
    Ptr<Port> const second = new Port(std::string("p"));
    map.valueIs(first->name(), first);
    first = nullptr;
    EXPECT_TRUE(map.valueIs(second->name(), second));
    EXPECT_EQ(Port::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(&map[Name("p")]->key(), &second->name());
}

TEST(HashMap2018UnderItsName, ShowsARemovedEntryUntilTheWalkMoves) {
    UnderItsName map;
    map.valueIs("p", new Port("p"));
    auto i = map.iterator();
    map.valueDel(i->key());
    EXPECT_FALSE(i->isPresent());
    EXPECT_EQ(i->key(), Name("p"));
    EXPECT_EQ(Port::velAllocTrackTypeInfo_->live(), 1U);
    ++i;
    EXPECT_FALSE(i);
    EXPECT_EQ(Port::velAllocTrackTypeInfo_->live(), 0U);
}

}  // namespace
}  // namespace VelTest
